// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "kivglobal.h"
#include "metroStyle.h"

#include <QtWidgets/QAbstractButton>

/// A tab: checkable, exclusive among its siblings, with its icon in the middle and, while there is
/// an alarm, a state LED of 21 x 21 pixels at (4, 39), whatever the tab's size.
///
/// Two finished images are cached, one for each checked state. A new state, a change of the
/// enabled state and a removed child drop both; a plain resize keeps them, and they are shown
/// stretched until the next drop. A new icon, too, shows with the next drop. A tab smaller than its
/// icon size plus two pixels grows, its size limits included. Use it only in the GUI thread, except
/// for MetroStyle::setState().
///
/// It has no size hint: in a layout, give it a minimum or a fixed size. 64 x 64 pixels hold an icon
/// of 24 x 24 and the LED. Set the icon size to that of the icon: it is the icon size that centres
/// it.
class KIVWIDGETS_EXPORT MetroTabicon : public QAbstractButton, public MetroStyle
{
    Q_OBJECT

public:
    explicit MetroTabicon(QWidget *parent = nullptr);
    ~MetroTabicon() override;

    void createImages();
    void paintImages();
    void paintEvent(QPaintEvent *event) override;
    void repaintSchedule(QImage **cached);

protected:
    bool event(QEvent *event) override;

    QImage *image;
    QImage *imagePressed;

private:
    Q_DECL_HIDDEN void dropBoth();
    Q_DECL_HIDDEN void paintLook(QImage *look, QIcon::State iconState, const QPixmap &led);
};

// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "kivglobal.h"
#include "metroStyle.h"

#include <QtWidgets/QAbstractButton>

/// A tab: a checkable button, exclusive among its siblings, with its icon in the middle. Unless the
/// alarm state is AlarmState::None, a state LED of 21 x 21 pixels is shown at (4, 39), whatever the
/// tab's size.
///
/// Two finished images are cached, one for each checked state. A new state, a change of the enabled
/// state and the removal of a child drop both. A resize keeps them and shows them stretched until
/// the next drop. A new icon also becomes visible with the next drop. If the tab is painted or
/// resized while it is less than two pixels larger than its icon size, it grows to the icon size
/// plus two pixels, raises its size limits if necessary, and drops both images. Use the tab only in
/// the GUI thread, except for MetroStyle::setState().
///
/// The tab has no size hint. Recommended minimum size: 64 x 64 pixels. Set the icon size to that of
/// the icon, because the icon size decides where the icon is drawn.
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

// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "kivglobal.h"

#include <QtCore/QPoint>
#include <QtWidgets/QAbstractButton>

/// A push button without a background: only its icon in the middle, and its text in the middle plus
/// an offset. Nothing is cached.
///
/// The icon is in active mode while the pointer is over the button, in disabled mode while the
/// button is disabled. The button keeps itself at least two pixels larger than its icon size: a
/// paint or a resize that finds it smaller makes it grow, its size limits included. GUI thread
/// only.
///
/// It has no size hint: in a layout, give it a minimum or a fixed size. 80 x 60 pixels suit an icon
/// of 24 x 24 with a text under it. An `&` in the text is drawn as it is, and still makes the
/// letter after it a shortcut, as in every QAbstractButton.
class KIVWIDGETS_EXPORT TranspButton : public QAbstractButton
{
    Q_OBJECT
    Q_PROPERTY(QPoint posLabel READ getPosLabel WRITE setPosLabel)

public:
    explicit TranspButton(QWidget *parent = nullptr);
    ~TranspButton() override;

    /// Offset of the text from the middle, in pixels to the right and down. Default: (0, 0). A
    /// change repaints.
    QPoint getPosLabel() const;
    void setPosLabel(const QPoint &posLabel);

Q_SIGNALS:
    /// Handles the pointer entering the button.
    void mouseEnter();
    /// Handles the pointer leaving the button.
    void mouseLeave();

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

    QPoint posLabel;
    bool hover;
};

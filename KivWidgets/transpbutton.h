// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "kivglobal.h"

#include <QtCore/QPoint>
#include <QtWidgets/QAbstractButton>

/// A push button without a background. It shows only its icon in the middle, and its text in the
/// middle plus an offset. Nothing is cached.
///
/// The icon is in active mode while the pointer is over the button, and in disabled mode while the
/// button is disabled. If the button is painted or resized while it is less than two pixels larger
/// than its icon size, it grows to the icon size plus two pixels, and raises its size limits if
/// necessary. Use the button only in the GUI thread.
///
/// The button has no size hint. Recommended minimum size: 80 x 60 pixels. An `&` in the text is
/// drawn as it is. It still makes the letter after it a shortcut, as in every QAbstractButton.
class KIVWIDGETS_EXPORT TranspButton : public QAbstractButton
{
    Q_OBJECT
    Q_PROPERTY(QPoint posLabel READ getPosLabel WRITE setPosLabel)

public:
    explicit TranspButton(QWidget *parent = nullptr);
    ~TranspButton() override;

    /// Offset of the text from the middle in pixels, to the right and downwards. Default: (0, 0). A
    /// change repaints.
    QPoint getPosLabel() const;
    void setPosLabel(const QPoint &posLabel);

Q_SIGNALS:
    /// Emitted when the pointer enters the button.
    void mouseEnter();
    /// Emitted when the pointer leaves the button.
    void mouseLeave();

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

    QPoint posLabel;
    bool hover;
};

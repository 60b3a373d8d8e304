// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "kivglobal.h"
#include "metroStyle.h"

#include <QtGui/QPixmap>
#include <QtWidgets/QFrame>

/// The strip across the top of a page. It shows one image at its natural size, and the application
/// places its own widgets on it.
///
/// After every resize, including the one at the first show, the strip returns to the size of its
/// image: 800 x 42 pixels with the library's image. The finished image is cached. It is dropped by
/// a new background, by a change of the enabled state and when a child is removed, but not by a
/// resize. The element state of MetroStyle is not used. Use the strip only in the GUI thread,
/// except for MetroStyle::setState().
///
/// In a resizable QScrollArea, and as a maximised or full-screen window, the strip accepts the size
/// that it gets. Size limits that the application sets override its own size.
///
/// The strip has no size hint. Recommended fixed size: 800 x 42 pixels with the library's image,
/// and otherwise the size of the image.
class KIVWIDGETS_EXPORT MetroStatusbar : public QFrame, public MetroStyle
{
    Q_OBJECT
    Q_PROPERTY(QPixmap background READ getBackground WRITE setBackground)

public:
    explicit MetroStatusbar(QWidget *parent = nullptr);
    ~MetroStatusbar() override;

    /// The image. Default: the library's strip. Every write rebuilds the image. The strip takes the
    /// new size with the next resize.
    QPixmap getBackground() const;
    void setBackground(const QPixmap &newBackground);

    void repaintSchedule(QImage **cached);
    void createImages();
    void paintEvent(QPaintEvent *event) override;

protected:
    bool event(QEvent *event) override;

    void paintImage();

    QPixmap background;
    QImage *image;
};

// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "kivglobal.h"
#include "metroStyle.h"

#include <QtGui/QPixmap>
#include <QtWidgets/QFrame>

/// The strip across the top of a page: one image at its natural size; the application lays its own
/// widgets on it.
///
/// Every resize, the one at the first show included, ends at the image's size, 800 x 42 pixels
/// with the library's. The finished image is cached; it is dropped by a new background, a change
/// of the enabled state and a removed child, not by a resize. The state of the Metro base plays no
/// part here. Use it only in the GUI thread, except for MetroStyle::setState().
///
/// It accepts the size that a resizable QScrollArea gives it, or that it has as a maximised or
/// full-screen window.
///
/// It has no size hint: in a layout, give it the size of its image as its fixed size. Size limits
/// of the application override the image's size.
class KIVWIDGETS_EXPORT MetroStatusbar : public QFrame, public MetroStyle
{
    Q_OBJECT
    Q_PROPERTY(QPixmap background READ getBackground WRITE setBackground)

public:
    explicit MetroStatusbar(QWidget *parent = nullptr);
    ~MetroStatusbar() override;

    /// The image. Default: the library's strip. Every write rebuilds; the size follows with the
    /// next resize.
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

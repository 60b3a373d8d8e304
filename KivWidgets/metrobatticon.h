// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "kivglobal.h"
#include "metrobatttemplate.h"

#include <QtWidgets/QAbstractButton>

/// A button that shows a battery in the state of an element, with the button's icon over its
/// middle.
///
/// The button returns to the size of the battery image, 72 x 72 pixels, after every resize. Its
/// icon size follows the first size of its icon. The finished image is cached. It is dropped by a
/// new state or icon, by a change of the enabled state, and when a child is removed. A disabled
/// button shows a lightened battery on a light grey background, and its icon in disabled mode. Use
/// the button only in the GUI thread, except for MetroStyle::setState().
///
/// In a resizable QScrollArea, and as a maximised or full-screen window, it accepts the size that
/// it gets. Size limits that the application sets override its own size.
///
/// The button has no size hint. Recommended fixed size: 72 x 72 pixels.
class KIVWIDGETS_EXPORT MetroBattIcon : public QAbstractButton, public MetroBattTemplate
{
    Q_OBJECT

public:
    explicit MetroBattIcon(QWidget *parent = nullptr);
    ~MetroBattIcon() override;

    /// Sets the icon and rebuilds the image. Hides the base class's function, which does not
    /// rebuild the image.
    void setIcon(const QIcon &icon);

    void repaintSchedule(QImage **cached);
    void createImages();
    void paintImage();
    /// Paints the icon over the finished battery.
    virtual void paintIcon(QPainter *painter);
    void paintEvent(QPaintEvent *event) override;

protected:
    bool event(QEvent *event) override;

    QImage *image;
};

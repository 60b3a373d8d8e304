// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "kivglobal.h"
#include "metrobatttemplate.h"

#include <QtWidgets/QAbstractButton>

/// A button that shows a battery in the state of an element, with the button's icon over its
/// middle.
///
/// Its size is that of the battery image, 72 x 72 pixels: any resize ends there, unless size
/// limits of the application prevent it. The icon size follows the icon's first size. The
/// finished image is cached; it is dropped by a new state or icon, by a change of the enabled
/// state, and when a child is removed. Disabled, the battery is lightened on a light grey
/// background and the icon in disabled mode. Use it only in the GUI thread, except for
/// MetroStyle::setState().
///
/// It accepts the size that a resizable QScrollArea gives it, or that it has as a maximised or
/// full-screen window.
///
/// It has no size hint: in a layout, give it a fixed size of 72 x 72 pixels.
class KIVWIDGETS_EXPORT MetroBattIcon : public QAbstractButton, public MetroBattTemplate
{
    Q_OBJECT

public:
    explicit MetroBattIcon(QWidget *parent = nullptr);
    ~MetroBattIcon() override;

    /// Sets the icon and rebuilds. Hides the base class's function, which does not rebuild the
    /// image.
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

// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "kivglobal.h"
#include "metroStyle.h"

#include <QtWidgets/QAbstractButton>

/// A flat button that shows its icon on a rounded plate in the colour of an element's state.
///
/// The button sizes itself: its icon size follows the icon's first size, and it is `border` pixels
/// larger than that on every side. The finished image is cached; it is dropped by a new state,
/// icon or property, by a change of the enabled state, when the pointer enters or leaves, and when
/// a child is removed. A changed checked state shows with the next drop. Under the pointer the icon
/// is in active mode; disabled, the plate is lightened on a light grey background and the icon in
/// disabled mode. Use it only in the GUI thread, except for MetroStyle::setState().
///
/// It accepts the size that a resizable QScrollArea gives it, or that it has as a maximised or
/// full-screen window.
///
/// It has no size hint: in a layout, give it its own size as its fixed size, which is 36 x 36
/// pixels for an icon of 16 x 16 and the default border. Size limits of the application override
/// the size that it gives itself.
class KIVWIDGETS_EXPORT MetroSysIcon : public QAbstractButton, public MetroStyle
{
    Q_OBJECT
    Q_PROPERTY(int border READ getBorder WRITE setBorder)
    Q_PROPERTY(int roundness READ getRoundness WRITE setRoundness)

public:
    explicit MetroSysIcon(QWidget *parent = nullptr);
    ~MetroSysIcon() override;

    /// Margin around the icon in pixels, and width of the plate's outline. Default: 10. With 0 no
    /// icon shows. A change posts an update request, which resizes and rebuilds.
    int getBorder() const;
    void setBorder(int border);
    /// Corner rounding in percent of half the plate's shorter side. Default: 50. A change posts an
    /// update request, which rebuilds.
    int getRoundness() const;
    void setRoundness(int roundness);

    /// Sets the icon and rebuilds. Hides the base class's function, which does not rebuild the
    /// image.
    void setIcon(const QIcon &icon);

    void paintBase(QPainter *painter);
    void paintImage();
    /// Paints the icon over the finished plate.
    virtual void paintIcon(QPainter *painter);
    void repaintSchedule(QImage **cached);
    void createImages();
    void paintEvent(QPaintEvent *event) override;

Q_SIGNALS:
    /// Handles the pointer entering the button.
    void mouseEnter();
    /// Handles the pointer leaving the button.
    void mouseLeave();

protected:
    bool event(QEvent *event) override;

    QImage *image;
    bool hover;
    int border;
    int roundness;

private:
    Q_DECL_HIDDEN void fitToIcon();
};

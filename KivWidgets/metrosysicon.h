// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "kivglobal.h"
#include "metroStyle.h"

#include <QtWidgets/QAbstractButton>

/// A flat button that shows its icon on a rounded plate in the colour of an element's state.
///
/// The button sets its own size. Its icon size follows the first size of its icon, and the button
/// is `border` pixels larger than the icon size on every side. The finished image is cached. It is
/// dropped by a new state, icon or property, by a change of the enabled state, when the pointer
/// enters or leaves, and when a child is removed. A change of the checked state becomes visible
/// with the next drop.
///
/// Under the pointer the icon is in active mode. A disabled button shows a lightened plate on a
/// light grey background, and its icon in disabled mode. Use the button only in the GUI thread,
/// except for MetroStyle::setState().
///
/// In a resizable QScrollArea, and as a maximised or full-screen window, the button accepts the
/// size that it gets. Size limits that the application sets override its own size.
///
/// The button has no size hint. Recommended fixed size: 36 x 36 pixels for an icon of 16 x 16 and
/// the default border, and otherwise the size that the button sets.
class KIVWIDGETS_EXPORT MetroSysIcon : public QAbstractButton, public MetroStyle
{
    Q_OBJECT
    Q_PROPERTY(int border READ getBorder WRITE setBorder)
    Q_PROPERTY(int roundness READ getRoundness WRITE setRoundness)

public:
    explicit MetroSysIcon(QWidget *parent = nullptr);
    ~MetroSysIcon() override;

    /// Margin around the icon in pixels, and width of the plate's outline. Default: 10. With 0 the
    /// icon is not drawn. A change posts an update request, which resizes the button and rebuilds
    /// the image.
    int getBorder() const;
    void setBorder(int border);
    /// Corner radius in percent of half the plate's shorter side. Default: 50. A change posts an
    /// update request, which rebuilds the image.
    int getRoundness() const;
    void setRoundness(int roundness);

    /// Sets the icon and rebuilds the image. Hides the base class's function, which does not
    /// rebuild the image.
    void setIcon(const QIcon &icon);

    void paintBase(QPainter *painter);
    void paintImage();
    /// Paints the icon over the finished plate.
    virtual void paintIcon(QPainter *painter);
    void repaintSchedule(QImage **cached);
    void createImages();
    void paintEvent(QPaintEvent *event) override;

Q_SIGNALS:
    /// Emitted when the pointer enters the button.
    void mouseEnter();
    /// Emitted when the pointer leaves the button.
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

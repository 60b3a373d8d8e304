// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "kivglobal.h"

#include <QtCore/QPoint>
#include <QtWidgets/QAbstractButton>

/// A checkable switch drawn from the library's images, with a round knob that the user drags from
/// one end to the other.
///
/// `locked` shows the locked images. Both `locked` and `partialON` put the knob in the middle,
/// where a drag must then start. Otherwise a drag starts anywhere on the knob's side of the switch.
/// A drag that ends short of the other side puts the knob back. A click or a press elsewhere does
/// nothing. A drag from the middle to the side of the present state emits toggled() twice. A change
/// of the checked state through the base class only repaints. A disabled switch shows its image
/// without a knob. Use the switch only in the GUI thread.
///
/// The switch returns to the size of its images after every resize. In a resizable QScrollArea, and
/// as a maximised or full-screen window, it accepts the size that it gets.
///
/// The switch has no size hint. Recommended fixed size: 190 x 60 pixels. An `&` in the text is
/// drawn as it is. It still makes the letter after it a shortcut, as in every QAbstractButton.
class KIVWIDGETS_EXPORT SlideSwitch : public QAbstractButton
{
    Q_OBJECT
    Q_PROPERTY(bool locked READ getLocked WRITE setLocked)
    Q_PROPERTY(bool partialON READ getPartialON WRITE setPartialON)

public:
    explicit SlideSwitch(QWidget *parent = nullptr);
    ~SlideSwitch() override;

    /// Whether the switch looks locked. Default: false. A change repaints. A drag from the middle
    /// to either side clears the property.
    bool getLocked() const;
    void setLocked(bool locked);
    /// Whether the switch is neither on nor off. Default: false. A change repaints. A drag from the
    /// middle to either side clears the property.
    bool getPartialON() const;
    void setPartialON(bool partialON);

protected:
    bool event(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

    QPoint textOffset;
    bool locked;
    bool partialON;
    bool dragFromOn;
    bool dragFromOff;
    bool dragFromMiddle;
    QPoint pointerPos;
    int leftLimit;
    int rightLimit;
    int middleZone;

private:
    Q_DECL_HIDDEN bool dragging() const;
    Q_DECL_HIDDEN void endDrag();
    Q_DECL_HIDDEN bool restsInMiddle() const;
    Q_DECL_HIDDEN void landOn(bool checked, QMouseEvent *release);
    Q_DECL_HIDDEN QIcon::State shownState() const;
    Q_DECL_HIDDEN QRect knobRect() const;
};

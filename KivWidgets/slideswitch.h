// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "kivglobal.h"

#include <QtCore/QPoint>
#include <QtWidgets/QAbstractButton>

/// A checkable switch of 190 x 60 pixels drawn from the library's images, with a round knob that
/// the user drags from one end to the other.
///
/// `locked` shows the locked images; it and `partialON` put the knob in the middle, where a drag
/// must then start. A drag starts anywhere on the knob's side of the switch, and one that ends
/// short of the other side puts the knob back; a press elsewhere, and a click, do nothing. A drag
/// from the middle to the side of the present state emits toggled() twice. Changes of the checked
/// state through the base class only repaint. A disabled switch shows its image without a knob.
/// The switch keeps the size of its images. GUI thread only.
///
/// It accepts the size that a resizable QScrollArea gives it, or that it has as a maximised or
/// full-screen window.
///
/// It has no size hint: in a layout, give it a fixed size of 190 x 60 pixels. An `&` in the text is
/// drawn as it is, and still makes the letter after it a shortcut, as in every QAbstractButton.
class KIVWIDGETS_EXPORT SlideSwitch : public QAbstractButton
{
    Q_OBJECT
    Q_PROPERTY(bool locked READ getLocked WRITE setLocked)
    Q_PROPERTY(bool partialON READ getPartialON WRITE setPartialON)

public:
    explicit SlideSwitch(QWidget *parent = nullptr);
    ~SlideSwitch() override;

    /// Whether the switch looks locked. Default: false. A change repaints; a drag from the middle
    /// to either side clears it.
    bool getLocked() const;
    void setLocked(bool locked);
    /// Whether the switch is neither on nor off. Default: false. A change repaints; a drag from the
    /// middle to either side clears it.
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

// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "kivglobal.h"

#include <QtCore/QVariant>
#include <QtWidgets/QStackedWidget>

class QPropertyAnimation;
class QSequentialAnimationGroup;

/// A stacked widget that can change its page as if it turned a card: the page shrinks, turns about
/// its vertical centre line, with the new page on its back, and grows again.
///
/// Animation is off until the application enables it. During an animated change, the pages are
/// hidden, and every frame paints a new image of a page. currentIndex() returns the old page until
/// the end. If the new page, or a slot connected to currentChanged(), requests another page at the
/// end of a change, the next change starts. If the stack is resized during a change, the new page
/// fills the frame's contents at the end.
///
/// The requested page is stored as an index. If pages are inserted or removed before it, the index
/// refers to another page. An event loop inside a slot connected to currentChanged() stops all of
/// Qt's animations until the loop ends. Use the stack only in the GUI thread.
///
/// The size hint is that of QStackedWidget, from the pages. Recommended minimum size: 160 x 120
/// pixels.
class KIVWIDGETS_EXPORT RotateStackedWidget : public QStackedWidget
{
    Q_OBJECT
    Q_PROPERTY(double rotate READ getRotate WRITE rotateTo)
    Q_PROPERTY(double scale READ getScale WRITE scaleTo)
    Q_PROPERTY(double endPositionAnimate READ getEndPositionAnimate WRITE changeEndPosition)
    Q_PROPERTY(int timeRotationAnimate READ getTimeRotationAnimate WRITE changeTimeRotation)
    Q_PROPERTY(int timePositionAnimate READ getTimePositionAnimate WRITE changeTimePosition)

public:
    explicit RotateStackedWidget(QWidget *parent = nullptr);
    ~RotateStackedWidget() override;

    /// Angle of the card in degrees. Default: 0.0. The animation writes it; a write only stores.
    double getRotate() const;
    void rotateTo(double degrees);
    /// Scale of the card. Default: 0.0; 1.0 after a change. The animation writes it; a write only
    /// stores.
    double getScale() const;
    void scaleTo(double factor);
    /// Scale at which the card turns. Default: 0.2.
    double getEndPositionAnimate() const;
    void changeEndPosition(double factor);
    /// Duration of the turn in milliseconds. Default: 1000. A negative value counts as 0.
    int getTimeRotationAnimate() const;
    void changeTimeRotation(int msecs);
    /// Duration of the shrinking, and of the growing, in milliseconds. Default: 2000. A negative
    /// value counts as 0.
    int getTimePositionAnimate() const;
    void changeTimePosition(int msecs);

    /// Enables or disables the animation of later page changes. Default: disabled. It does not end
    /// a change that is running.
    void setAnimationEnabled(bool enabled);

    /// Sets up the three animations from the properties. The setters call it.
    void initAnimation();

    /// Changes the page. Without animation, it changes at once. With animation, a change starts; if
    /// one is already running, it ends at the page requested last. During a change, a request for
    /// the old page does nothing. An index without a page leaves the current page. Hides the slot
    /// of the base class, which always changes at once.
    void setCurrentIndex(int index);

protected:
    void paintEvent(QPaintEvent *event) override;

    double rotate;
    double scale;
    int animPhase;
    double endPositionAnimate;
    int timePositionAnimate;
    int timeRotationAnimate;
    bool animationEnabled;
    bool animating;
    int nextIndex;
    QSequentialAnimationGroup *group;
    QPropertyAnimation *shrinkAnimation;
    QPropertyAnimation *turnAnimation;
    QPropertyAnimation *growAnimation;

private Q_SLOTS:
    Q_DECL_HIDDEN void valChanged(QVariant value);
    Q_DECL_HIDDEN void animDone();
    Q_DECL_HIDDEN void animPositionDone();
    Q_DECL_HIDDEN void animPositionRestoreDone();
};

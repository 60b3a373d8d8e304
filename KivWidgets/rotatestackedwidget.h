// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "kivglobal.h"

#include <QtCore/QVariant>
#include <QtWidgets/QStackedWidget>

class QPropertyAnimation;
class QSequentialAnimationGroup;

/// A stacked widget that can change its page like a card: the page shrinks, turns about its
/// vertical centre line until the new page has come into view from its back, and grows again.
///
/// Animation is off until the application switches it on. While a change runs, the pages are hidden
/// and their images are grabbed again for every frame; currentIndex() reports the old page until
/// the end. A page that asks for another one when it is shown, or a slot on currentChanged() that
/// does, begins the next change. After a resize during a change the new page fills the frame's
/// contents.
///
/// The page that was asked for is kept as an index: pages inserted or removed before it change
/// which page that is. An event loop inside a slot on currentChanged() stops all of Qt's animations
/// until it ends. GUI thread only.
///
/// Its size hint is that of QStackedWidget, from its pages.
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

    /// Angle of the card in degrees. Default: 0.0. Written by the animation; a write only stores.
    double getRotate() const;
    void rotateTo(double degrees);
    /// Scale of the card. Default: 0.0; 1.0 after a change. Written by the animation; a write only
    /// stores.
    double getScale() const;
    void scaleTo(double factor);
    /// Scale at which the card turns. Default: 0.2.
    double getEndPositionAnimate() const;
    void changeEndPosition(double factor);
    /// Duration of the turn in milliseconds. Default: 1000. A negative one counts as 0.
    int getTimeRotationAnimate() const;
    void changeTimeRotation(int msecs);
    /// Duration of the shrinking and of the growing, in milliseconds each. Default: 2000. A
    /// negative one counts as 0.
    int getTimePositionAnimate() const;
    void changeTimePosition(int msecs);

    /// Switches the animation of the following page changes on or off. Default: off. A change that
    /// runs is not ended.
    void setAnimationEnabled(bool enabled);

    /// Sets the three animations up from the properties.
    void initAnimation();

    /// Changes the page: at once while animation is off; else by a running change, which ends on
    /// the page that was asked for last; asking for the old page meanwhile does nothing. An index
    /// without a page leaves the current page. Hides the base class's slot, which always changes at
    /// once.
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

// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "simpleslideswitch.h"

#include "iconpainting_p.h"
#include "numbers_p.h"
#include "ownsize_p.h"
#include "pixmaps_p.h"
#include "qtversion_p.h"
#include "text_p.h"

#include <QtCore/QPointer>
#include <QtGui/QFontMetrics>
#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>

#include <algorithm>
#include <limits>

using namespace KivPrivate;

namespace {

// A drag toggles when it passes the middle of the travel by this share of it.
constexpr double leftShare = 0.45;
constexpr double rightShare = 0.55;

/// Margins may be any number; a place beyond the range of int is as far off as its limit.
int heldInInt(qint64 place)
{
    using Limits = std::numeric_limits<int>;
    return int(std::clamp<qint64>(place, Limits::min(), Limits::max()));
}

} // namespace

SimpleSlideSwitch::SimpleSlideSwitch(QWidget *parent)
    : QAbstractButton(parent)
    , uncheckedImg(libraryImage(QStringLiteral("slide_unchecked")))
    , marginLeft(0)
    , checkedImg(libraryImage(QStringLiteral("slide_checked")))
    , marginRight(0)
    , checkedDisImg(libraryImage(QStringLiteral("slide_checked_disabled")))
    , uncheckedDisImg(libraryImage(QStringLiteral("slide_unchecked_disabled")))
    , btnImg(libraryImage(QStringLiteral("slide_button")))
    , btnDisImg(libraryImage(QStringLiteral("button_slide_disabled")))
    , dragFromOn(false)
    , dragFromOff(false)
    , moved(false)
{
    setAttribute(Qt::WA_MouseTracking);
    setCheckable(true);
    updateWidgetsIcon(logicalSize(uncheckedImg));
}

SimpleSlideSwitch::~SimpleSlideSwitch() = default;

QPixmap SimpleSlideSwitch::getUncheckedImg() const
{
    return uncheckedImg;
}

void SimpleSlideSwitch::setUncheckedImg(const QPixmap &pixmap)
{
    setTrack(uncheckedImg, pixmap);
}

int SimpleSlideSwitch::getMarginLeft() const
{
    return marginLeft;
}

void SimpleSlideSwitch::setMarginLeft(int margin)
{
    setMargin(marginLeft, margin);
}

QPixmap SimpleSlideSwitch::getCheckedImg() const
{
    return checkedImg;
}

void SimpleSlideSwitch::setCheckedImg(const QPixmap &pixmap)
{
    setTrack(checkedImg, pixmap);
}

int SimpleSlideSwitch::getMarginRight() const
{
    return marginRight;
}

void SimpleSlideSwitch::setMarginRight(int margin)
{
    setMargin(marginRight, margin);
}

QPixmap SimpleSlideSwitch::getUncheckedDisImg() const
{
    return uncheckedDisImg;
}

void SimpleSlideSwitch::setUncheckedDisImg(const QPixmap &pixmap)
{
    setTrack(uncheckedDisImg, pixmap);
}

QPixmap SimpleSlideSwitch::getCheckedDisImg() const
{
    return checkedDisImg;
}

void SimpleSlideSwitch::setCheckedDisImg(const QPixmap &pixmap)
{
    setTrack(checkedDisImg, pixmap);
}

QPixmap SimpleSlideSwitch::getBtnImg() const
{
    return btnImg;
}

void SimpleSlideSwitch::setBtnImg(const QPixmap &pixmap)
{
    btnImg = pixmap;
    update();
}

QPixmap SimpleSlideSwitch::getBtnDisImg() const
{
    return btnDisImg;
}

void SimpleSlideSwitch::setBtnDisImg(const QPixmap &pixmap)
{
    btnDisImg = pixmap;
    update();
}

void SimpleSlideSwitch::updateWidgetsIcon(QSize size)
{
    QIcon tracks;
    tracks.addPixmap(uncheckedImg, QIcon::Normal, QIcon::Off);
    tracks.addPixmap(checkedImg, QIcon::Normal, QIcon::On);
    tracks.addPixmap(checkedDisImg, QIcon::Disabled, QIcon::On);
    tracks.addPixmap(uncheckedDisImg, QIcon::Disabled, QIcon::Off);
    setIcon(tracks);
    setIconSize(size);
    resize(size);
    updateLimits(size.width());
    setMaximumSize(size);
    setMinimumSize(size);
    // Until here, its old minimum size has kept the switch from becoming smaller.
    resize(size);
}

void SimpleSlideSwitch::setChecked(bool checked)
{
    const int place = restingPlace(checked);
    if (pointerPos.x() != place) {
        pointerPos.setX(place);
        update();
    }
    QAbstractButton::setChecked(checked);
}

bool SimpleSlideSwitch::event(QEvent *event)
{
    if (event->type() == QEvent::Resize) {
        resizeToOwn(this, iconSize());
        return true;
    }
    return QAbstractButton::event(event);
}

void SimpleSlideSwitch::mousePressEvent(QMouseEvent *event)
{
    pointerPos = roundedPosition(pointerPosition(event));
    const int x = pointerPos.x();
    if (isChecked() && rightLimit < x && x < travelEnd())
        dragFromOn = true;
    else if (!isChecked() && marginLeft < x && x < leftLimit)
        dragFromOff = true;
    moved = false;
    if (dragFromOn || dragFromOff)
        QAbstractButton::mousePressEvent(event);
}

void SimpleSlideSwitch::mouseMoveEvent(QMouseEvent *event)
{
    if (dragFromOn || dragFromOff) {
        pointerPos = roundedPosition(pointerPosition(event));
        update();
    }
    moved = true;
}

void SimpleSlideSwitch::mouseReleaseEvent(QMouseEvent *event)
{
    // A slot on toggled(), clicked() or released() may delete the switch.
    const QPointer<SimpleSlideSwitch> self(this);
    pointerPos = roundedPosition(pointerPosition(event));
    const int x = pointerPos.x();
    const bool switchedOn = dragFromOff && rightLimit < x && x < travelEnd();
    const bool switchedOff = !switchedOn && dragFromOn && marginLeft < x && x < leftLimit;
    dragFromOn = dragFromOff = false;

    if (switchedOn || switchedOff) {
        // Switched off, the place kept is the knob's right edge: the track stays revealed under it.
        pointerPos.setX(switchedOn ? restingPlace(true)
                                   : heldInInt(qint64(logicalSize(btnImg).width()) + marginLeft));
        QAbstractButton::mouseReleaseEvent(event);
        if (!self)
            return;
        moved = false;
        // The base class makes no click of a release off the switch, or of another button.
        if (isChecked() != switchedOn) {
            pointerPos.setX(restingPlace(isChecked()));
            update();
        }
        return;
    }

    if (!moved)
        toggle();
    if (!self)
        return; // GCOVR_EXCL_LINE: Qt 5.15 needs the button until toggled() returns
    pointerPos.setX(restingPlace(isChecked()));
    update();
    moved = false;
}

void SimpleSlideSwitch::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    drawStretched(&painter, QRectF(0, 0, width(), height()),
                  iconPixmap(this, QIcon::Normal, QIcon::Off));

    const QRectF revealed(0, 0, std::max(pointerPos.x(), 0), height());
    drawPart(&painter, revealed, iconPixmap(this, QIcon::Normal, QIcon::On), revealed);

    if (!text().isEmpty()) {
        const QFontMetrics metrics(font());
        const int textWidth = singleLineSize(font(), text()).width();
        painter.setFont(font());
        drawLine(&painter,
                 QPointF((width() - textWidth) / 2 - 1, centredBaseline(metrics, height())),
                 text());
    }

    const QPixmap &knob = isEnabled() ? btnImg : btnDisImg;
    drawStretched(&painter, QRectF(QPointF(knobLeft(), 0), logicalSize(btnImg)), knob);
}

void SimpleSlideSwitch::setTrack(QPixmap &track, const QPixmap &pixmap)
{
    track = pixmap;
    updateWidgetsIcon(logicalSize(pixmap));
}

void SimpleSlideSwitch::setMargin(int &margin, int value)
{
    margin = value;
    updateLimits(width());
    update();
}

void SimpleSlideSwitch::updateLimits(int width)
{
    const auto travel = double(qint64(width) - marginLeft - marginRight);
    leftLimit = truncatedToInt(travel * leftShare + marginLeft);
    rightLimit = truncatedToInt(travel * rightShare + marginLeft);
}

/// The right end of the knob's travel.
qint64 SimpleSlideSwitch::travelEnd() const
{
    return qint64(width()) - marginRight;
}

/// The knob's left edge while it is not dragged.
int SimpleSlideSwitch::restingPlace(bool checked) const
{
    return checked ? heldInInt(travelEnd() - logicalSize(btnImg).width()) : marginLeft;
}

int SimpleSlideSwitch::knobLeft() const
{
    if (!dragFromOn && !dragFromOff)
        return restingPlace(isChecked());
    const int half = logicalSize(btnImg).width() / 2;
    const qint64 centred = qint64(pointerPos.x()) - half;
    if (centred < marginLeft)
        return marginLeft;
    if (qint64(pointerPos.x()) + half > travelEnd())
        return restingPlace(true);
    return heldInInt(centred);
}

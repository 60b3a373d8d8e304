// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "slideswitch.h"

#include "assign_p.h"
#include "iconpainting_p.h"
#include "imagememory_p.h"
#include "numbers_p.h"
#include "ownsize_p.h"
#include "pixmaps_p.h"
#include "qtversion_p.h"
#include "text_p.h"

#include <QtCore/QPointer>
#include <QtGui/QFontMetrics>
#include <QtGui/QMouseEvent>
#include <QtGui/QPaintEngine>
#include <QtGui/QPaintEvent>

#include <algorithm>
#include <cmath>

using namespace KivPrivate;

namespace {

// Places of the knob in the images, in pixels.
constexpr int knobSide = 40;
constexpr int knobTop = 10;
constexpr int knobAtOff = 36;
constexpr int knobInMiddle = 75;
constexpr int knobAtOn = 114;
/// The knob follows the pointer from the first of these columns to before the second.
constexpr int followsFrom = 56;
constexpr int followsTo = 135;

// Where a drag from the middle may end.
constexpr int leftmostRelease = 1;
constexpr int rightmostRelease = 188;
constexpr int topmostRelease = 2;
constexpr int lowestRelease = 58;

constexpr QRgb knobColor = qRgb(65, 64, 66);

QPixmap face(const char *name)
{
    return libraryImage(QStringLiteral("SlideSwitch-%1").arg(QLatin1String(name)));
}

void drawKnob(QPainter *painter, const QRect &knob)
{
    painter->setBrush(QBrush(QColor(knobColor)));
    painter->setPen(QColor(knobColor));
    painter->drawEllipse(knob);
}

bool isOpaque(const QImage &image, const QRect &part)
{
    if (!image.rect().contains(part))
        return false;
    for (int y = part.top(); y <= part.bottom(); ++y) {
        const auto *const row = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        if (!std::all_of(row + part.left(), row + part.right() + 1,
                         [](QRgb pixel) { return qAlpha(pixel) == 255; })) {
            return false;
        }
    }
    return true;
}

/// Whether a shape that is painted on opaque parts of an image of @p size looks the same on the
/// device of @p painter as when it was painted on the image before. Where it is cut off by the
/// @p region to paint or by the edge of the device, its edges have other pixels.
bool addsUp(const QPainter &painter, const QRegion &region, QSize size)
{
    const QRect whole(QPoint(), size);
    if (!painter.isActive() || painter.hasClipping() || region.rectCount() != 1 ||
        !region.boundingRect().contains(whole))
        return false;
    const QPaintEngine *const engine = painter.paintEngine();
    if (!engine || engine->type() != QPaintEngine::Raster)
        return false;
    const QPaintDevice *const device = engine->paintDevice();
    if (!device || device->devType() != QInternal::Image)
        return false;
    const QImage::Format format = static_cast<const QImage *>(device)->format();
    const double ratio = device->devicePixelRatioF();
    const QTransform &transform = painter.deviceTransform();
    const auto isWhole = [](double number) { return number == std::floor(number); };
    return (format == QImage::Format_RGB32 || format == QImage::Format_ARGB32_Premultiplied) &&
           transform.type() <= QTransform::TxScale && transform.m11() == ratio &&
           transform.m22() == ratio && isWhole(ratio) && isWhole(transform.dx()) &&
           isWhole(transform.dy()) && painter.opacity() == 1.0 &&
           QRectF(0, 0, device->width(), device->height())
               .contains(transform.mapRect(QRectF(whole))) &&
           painter.compositionMode() == QPainter::CompositionMode_SourceOver;
}

/// @p face with the knob on it for a whole @p ratio, painted once; a null image where it cannot be
/// remembered, or the face is not opaque below the knob.
QImage faceWithKnob(const QPixmap &face, const QRect &knob, double ratio)
{
    const ImageKey key(ImageKey::SwitchFace, face.cacheKey(), atRatio(face, ratio).cacheKey(),
                       knob.left(), ratio);
    const QSize size = pixelSize(face.size(), ratio);
    if (!isRememberable(key, qsizetype(size.width()) * size.height() * 4))
        return QImage();
    QImage known = rememberedImage(key);
    if (!known.isNull())
        return known;
    QImage whole = newImage(face.size(), ratio);
    {
        ImagePainter painter(&whole);
        drawStretched(&painter, QRectF(QPointF(), face.size()), face);
    }
    // The knob's outline takes part in the pixels around it.
    const QRect reached = knob.adjusted(-2, -2, 2, 2);
    if (!isOpaque(whole, QRect(reached.topLeft() * ratio, reached.size() * ratio)))
        return QImage();
    {
        QPainter painter(&whole);
        painter.setRenderHint(QPainter::Antialiasing);
        drawKnob(&painter, knob);
    }
    rememberImage(key, whole);
    return whole;
}

} // namespace

SlideSwitch::SlideSwitch(QWidget *parent)
    : QAbstractButton(parent)
    , locked(false)
    , partialON(false)
    , dragFromOn(false)
    , dragFromOff(false)
    , dragFromMiddle(false)
{
    setAttribute(Qt::WA_MouseTracking);
    setCheckable(true);

    const QPixmap off = face("OFF");
    const QPixmap disabled = face("DISABLED");
    QIcon faces;
    faces.addPixmap(off, QIcon::Normal, QIcon::Off);
    faces.addPixmap(face("ON"), QIcon::Normal, QIcon::On);
    faces.addPixmap(disabled, QIcon::Disabled, QIcon::On);
    faces.addPixmap(disabled, QIcon::Disabled, QIcon::Off);
    faces.addPixmap(face("LOCKED-ON"), QIcon::Active, QIcon::On);
    faces.addPixmap(face("LOCKED-OFF"), QIcon::Active, QIcon::Off);
    setIcon(faces);
    setIconSize(off.size());
    resize(off.size());

    leftLimit = int(0.45 * off.width());
    rightLimit = int(0.55 * off.width());
    middleZone = int(0.1 * off.width());
}

SlideSwitch::~SlideSwitch() = default;

bool SlideSwitch::getLocked() const
{
    return locked;
}

void SlideSwitch::setLocked(bool newLocked)
{
    if (assignIfChanged(locked, newLocked))
        update();
}

bool SlideSwitch::getPartialON() const
{
    return partialON;
}

void SlideSwitch::setPartialON(bool newPartialON)
{
    if (assignIfChanged(partialON, newPartialON))
        update();
}

bool SlideSwitch::event(QEvent *event)
{
    if (event->type() == QEvent::Resize) {
        resizeToOwn(this, iconSize());
        return true;
    }
    return QAbstractButton::event(event);
}

void SlideSwitch::mousePressEvent(QMouseEvent *event)
{
    pointerPos = roundedPosition(pointerPosition(event));
    const int x = pointerPos.x();
    if (restsInMiddle()) {
        const int centre = width() / 2;
        if (centre - middleZone < x && x < centre + middleZone)
            dragFromMiddle = true;
    } else if (isChecked() && x > rightLimit) {
        dragFromOn = true;
    } else if (!isChecked() && x < leftLimit) {
        dragFromOff = true;
    }
    if (!dragging())
        return;
    // A press that the base class takes repaints the switch; the knob follows any.
    if (event->button() != Qt::LeftButton || !hitButton(pointerPos))
        update();
    QAbstractButton::mousePressEvent(event);
}

void SlideSwitch::mouseMoveEvent(QMouseEvent *event)
{
    if (!dragging())
        return;
    pointerPos = roundedPosition(pointerPosition(event));
    repaint();
}

void SlideSwitch::mouseReleaseEvent(QMouseEvent *event)
{
    pointerPos = roundedPosition(pointerPosition(event));
    const int x = pointerPos.x();
    const int y = pointerPos.y();
    // The base class ignores the release, which ends the drag all the same.
    if (event->button() != Qt::LeftButton)
        update();

    bool reached = dragFromOff && x > rightLimit;
    if (dragFromOn && x < leftLimit) {
        if (!dragFromMiddle) {
            endDrag();
            QAbstractButton::mouseReleaseEvent(event);
            return;
        }
        reached = true;
    }
    if (dragFromMiddle && topmostRelease <= y && y <= lowestRelease) {
        if (rightLimit < x && x <= rightmostRelease) {
            landOn(true, event);
            return;
        }
        if (leftmostRelease < x && x < leftLimit) {
            landOn(false, event);
            return;
        }
    }
    endDrag();
    if (reached) {
        QAbstractButton::mouseReleaseEvent(event);
        return;
    }
    // A drag that falls short: the base class does not hear of the release, so no click follows.
    pointerPos.setX(restsInMiddle() ? knobInMiddle : isChecked() ? knobAtOn : knobAtOff);
    repaint();
}

void SlideSwitch::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);

    const QIcon::Mode mode = locked ? QIcon::Active : QIcon::Normal;
    const QPixmap shownFace = iconPixmap(this, mode, shownState());
    if (!dragging() && text().isEmpty() && isEnabled() && shownFace.size() == size() &&
        addsUp(painter, event->region(), size())) {
        const QImage whole = faceWithKnob(shownFace, knobRect(), devicePixelRatioF());
        if (!whole.isNull() && painter.device()->devicePixelRatioF() == devicePixelRatioF()) {
            drawAt(&painter, QPointF(0, 0), whole);
            return;
        }
    }
    drawStretched(&painter, QRectF(0, 0, width(), height()), shownFace);

    if (!text().isEmpty()) {
        const QFontMetrics metrics(font());
        const int textWidth = singleLineSize(font(), text()).width();
        painter.setFont(font());
        drawLine(&painter,
                 QPointF((width() - textWidth) / 2 - 1 + textOffset.x(),
                         centredBaseline(metrics, height()) + textOffset.y()),
                 text());
    }

    if (isEnabled())
        drawKnob(&painter, knobRect());
}

bool SlideSwitch::dragging() const
{
    return dragFromOn || dragFromOff || dragFromMiddle;
}

void SlideSwitch::endDrag()
{
    dragFromOn = dragFromOff = dragFromMiddle = false;
}

bool SlideSwitch::restsInMiddle() const
{
    return locked || partialON;
}

/// Ends a drag from the middle on one side: the opposite state, which the click of the base class's
/// release then toggles.
void SlideSwitch::landOn(bool checked, QMouseEvent *release)
{
    // A slot on toggled() may delete the switch.
    const QPointer<SlideSwitch> self(this);
    setChecked(!checked);
    if (!self)
        return; // GCOVR_EXCL_LINE: Qt 5.15 needs the button until toggled() returns
    locked = false;
    partialON = false;
    endDrag();
    QAbstractButton::mouseReleaseEvent(release);
}

QIcon::State SlideSwitch::shownState() const
{
    const int x = pointerPos.x();
    bool on = isChecked();
    if (dragFromMiddle) {
        if (x >= rightLimit)
            on = true;
        else if (x <= leftLimit)
            on = false;
    } else if (dragFromOff) {
        on = x > rightLimit;
    } else if (dragFromOn) {
        on = x >= leftLimit;
    }
    return on ? QIcon::On : QIcon::Off;
}

QRect SlideSwitch::knobRect() const
{
    int left = isChecked() ? knobAtOn : knobAtOff;
    if (dragging()) {
        const int x = pointerPos.x();
        left = x < followsFrom ? knobAtOff : x < followsTo ? x - knobSide / 2 : knobAtOn;
    } else if (restsInMiddle()) {
        left = knobInMiddle;
    }
    return {left, knobTop, knobSide, knobSide};
}

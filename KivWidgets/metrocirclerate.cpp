// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "metrocirclerate.h"

#include "assign_p.h"
#include "elementstate_p.h"
#include "errorline_p.h"
#include "events_p.h"
#include "gaugelayers_p.h"
#include "imagememory_p.h"
#include "numbers_p.h"
#include "ownsize_p.h"
#include "pie_p.h"
#include "text_p.h"
#include "valueformat_p.h"

#include <QtCore/QCoreApplication>
#include <QtGui/QFontMetrics>
#include <QtGui/QImage>
#include <QtGui/QResizeEvent>

#include <algorithm>
#include <cmath>
#include <limits>

using namespace KivPrivate;

namespace {

constexpr int fullTurn = 360;
/// QPainter counts angles in these parts of a degree.
constexpr int angleParts = 16;
/// A value up to this many percent of the maximum is shown in orange, beyond in red.
constexpr double warningPercent = 125.0;
constexpr double shortestRange = 1.0;
constexpr int longestArc = 359;
/// The label's font, in percent of the widget's.
constexpr int labelPercent = 70;

/// The bounding box of an arc on the unit circle, y upward.
struct ArcBox
{
    double minX;
    double maxX;
    double minY;
    double maxY;
};

/// Whether the clockwise sweep from @p from down to @p to passes the direction @p axis (0 to 359).
bool sweeps(int from, int to, int axis)
{
    return (to <= axis && axis <= from) || (to <= axis - fullTurn && axis - fullTurn <= from);
}

/// Multiplied before it is divided: a ready-made quotient would move some ends by their last bit,
/// and with them sizes by a pixel.
double radians(int degrees)
{
    return degrees * 3.141592653589793 / 180.0;
}

ArcBox boxOfArc(int from, int to)
{
    const double start = radians(from);
    const double end = radians(to);
    const auto [leftEnd, rightEnd] = std::minmax({std::cos(start), std::cos(end)});
    const auto [lowerEnd, upperEnd] = std::minmax({std::sin(start), std::sin(end)});
    ArcBox box{};
    box.minX = sweeps(from, to, 180) ? -1.0 : leftEnd;
    box.maxX = sweeps(from, to, 0) ? 1.0 : rightEnd;
    box.minY = sweeps(from, to, 270) ? -1.0 : lowerEnd;
    box.maxY = sweeps(from, to, 90) ? 1.0 : upperEnd;
    return box;
}

void usePlainColor(QPainter *painter, const QColor &color)
{
    painter->setBrush(QBrush(color, Qt::SolidPattern));
    painter->setPen(QPen(color));
}

/// Makes the resize event compute the dial's size and drop its layers, which the size 0 x 0 does.
void forceGeometry(QWidget *dial)
{
    const QSize nothing(0, 0);
    if (dial->minimumSize().isNull() && !isSizeEnforced(dial)) {
        dial->resize(nothing);
        return;
    }
    // That size is out of reach, and the size that the dial has may well stay.
    QResizeEvent event(nothing, dial->size());
    QCoreApplication::sendEvent(dial, &event);
}

} // namespace

MetroCirclerate::MetroCirclerate(QWidget *parent)
    : QWidget(parent)
    , MetroStyle(this)
    , value(35.0)
    , paintFromZero(false)
    , formatStr(QStringLiteral("%d%%"))
    , posStr(0, 0)
    , numTick(20)
    , tickness(11)
    , radius(37)
    , minValue(0.0)
    , maxValue(100.0)
    , arcSize(200)
    , minAngle(200)
    , label(QStringLiteral("L?"))
    , posLabel(0, 0)
    , cursor(lightBlue)
    , background(lightGrey)
    , Image(nullptr)
    , ImageBG(nullptr)
    , ImageFG(nullptr)
{
    dropAll();
}

MetroCirclerate::~MetroCirclerate()
{
    for (QImage **layer : layers())
        MetroStyle::repaintSchedule(layer);
    forgetComposed(this);
}

double MetroCirclerate::getValue() const
{
    return value;
}

void MetroCirclerate::setValue(double newValue)
{
    if (assignIfChanged(value, newValue))
        repaintSchedule(&Image);
}

bool MetroCirclerate::getPaintFromZero() const
{
    return paintFromZero;
}

void MetroCirclerate::setPaintFromZero(bool fromZero)
{
    if (assignIfChanged(paintFromZero, fromZero))
        repaintSchedule(&Image);
}

double MetroCirclerate::getMinValue() const
{
    return minValue;
}

void MetroCirclerate::setMinValue(double minimum)
{
    if (minimum <= maxValue - shortestRange && assignIfChanged(minValue, minimum))
        repaintSchedule(&Image);
}

double MetroCirclerate::getMaxValue() const
{
    return maxValue;
}

void MetroCirclerate::setMaxValue(double maximum)
{
    if (maximum >= minValue + shortestRange && assignIfChanged(maxValue, maximum))
        repaintSchedule(&Image);
}

int MetroCirclerate::getRadius() const
{
    return radius;
}

void MetroCirclerate::setRadius(int pixels)
{
    const auto narrow = quint16(pixels);
    if (narrow >= 2 && assignIfChanged(radius, narrow))
        forceGeometry(this);
}

int MetroCirclerate::getArcSize() const
{
    return arcSize;
}

void MetroCirclerate::setArcSize(int degrees)
{
    const auto narrow = quint16(degrees);
    if (narrow <= longestArc && assignIfChanged(arcSize, narrow))
        forceGeometry(this);
}

int MetroCirclerate::getMinAngle() const
{
    return minAngle;
}

void MetroCirclerate::setMinAngle(int degrees)
{
    const auto narrow = quint16(degrees);
    if (narrow < fullTurn && assignIfChanged(minAngle, narrow))
        forceGeometry(this);
}

int MetroCirclerate::getNumTick() const
{
    return numTick;
}

void MetroCirclerate::setNumTick(int segments)
{
    const auto narrow = quint8(segments);
    if (narrow != 0 && assignIfChanged(numTick, narrow))
        repaintSchedule(&ImageFG);
}

int MetroCirclerate::getTickness() const
{
    return tickness;
}

void MetroCirclerate::setTickness(int pixels)
{
    const auto narrow = quint8(pixels);
    if (narrow >= 2 && assignIfChanged(tickness, narrow))
        repaintSchedule(&ImageFG);
}

QString MetroCirclerate::getFormatStr() const
{
    return formatStr;
}

void MetroCirclerate::setFormat(const QString &format)
{
    if (assignIfChanged(formatStr, format))
        repaintSchedule(&Image);
}

QPoint MetroCirclerate::getPosStr() const
{
    return posStr;
}

void MetroCirclerate::setPosStr(const QPoint &offset)
{
    if (assignIfChanged(posStr, offset))
        repaintSchedule(&Image);
}

QString MetroCirclerate::getLabel() const
{
    return label;
}

void MetroCirclerate::setLabel(const QString &newLabel)
{
    if (assignIfChanged(label, newLabel))
        repaintSchedule(&Image);
}

QPoint MetroCirclerate::getPosLabel() const
{
    return posLabel;
}

void MetroCirclerate::setPosLabel(const QPoint &offset)
{
    if (assignIfChanged(posLabel, offset))
        repaintSchedule(&Image);
}

QColor MetroCirclerate::getBackground() const
{
    return background;
}

void MetroCirclerate::setBackground(const QColor &newBackground)
{
    if (assignIfChanged(background, newBackground))
        repaintSchedule(&ImageBG);
}

QColor MetroCirclerate::getCursor() const
{
    return cursor;
}

void MetroCirclerate::setCursor(const QColor &newCursor)
{
    if (assignIfChanged(cursor, newCursor))
        repaintSchedule(&Image);
}

// NOLINTNEXTLINE(readability-make-member-function-const): the public interface.
int MetroCirclerate::val2angle(double v)
{
    // Limits far from 0 can be equal, since a distance of 1.0 is lost there.
    const double share = quotient(v - minValue, maxValue - minValue);
    return truncatedToInt(angleParts * (minAngle - share * arcSize));
}

bool MetroCirclerate::event(QEvent *event)
{
    if (isOneOf(event, unsizedDropEvents)) {
        dropAll();
        absorbUpdateRequests(this, event);
    }
    return QWidget::event(event);
}

void MetroCirclerate::paintEvent(QPaintEvent *)
{
    dropOutdated(this, lock, dirty, layers());
    if (dirty) {
        createImages();
        dirty = false;
    }
    const GaugeLook look(this, layers(), GaugeLook::OfImages, palette().color(QPalette::WindowText),
                         {value, double(tickness), double(posLabel.x()), double(posLabel.y()),
                          double(posStr.x()), double(posStr.y())},
                         formatStr, label);
    showComposed(this, look, [this](QImage &composed) { buildGraph(composed); });
}

void MetroCirclerate::resizeEvent(QResizeEvent *event)
{
    const ArcBox box = boxOfArc(val2angle(minValue) / angleParts, val2angle(maxValue) / angleParts);
    const QSize wanted(truncatedToInt(radius * (box.maxX - box.minX) + 2.0),
                       truncatedToInt(radius * (box.maxY - box.minY) + 2.0));
    // This ends the nested resizes, one later than comparing with the new size would.
    if (event->size() != QSize(0, 0) && wanted == event->oldSize())
        return;
    const int side = 2 * radius - 2;
    arcRect = QRect(truncatedToInt(1.0 - radius * (box.minX + 1.0)),
                    truncatedToInt(1.0 - radius * (1.0 - box.maxY)), side, side);
    resizeToOwn(this, wanted);
    dropAll();
}

void MetroCirclerate::paintImageBG()
{
    if (ImageBG->isNull()) {
        reportNullImage(KIV_HERE, this, "ImageBG");
        return;
    }
    const int start = val2angle(minValue);
    const int span = spanBetween(minValue, maxValue);
    // Equal dials share this layer and the mask.
    const ImageKey key(ImageKey::DialBackground, background, arcRect.topLeft(), arcRect.size(),
                       start, span);
    paintShared(ImageBG, key, [&] { paintPie(ImageBG, background, arcRect, start, span); });
}

void MetroCirclerate::paintImage()
{
    if (Image->isNull()) {
        reportNullImage(KIV_HERE, this, "Image");
        return;
    }
    QColor color = cursor;
    if (value > maxValue)
        color = maxValue * warningPercent / 100.0 >= value ? orange : red;
    const double start = paintFromZero ? std::max(minValue, 0.0) : minValue;
    const double held = std::max(minValue, std::min(value, maxValue));
    paintPie(Image, color, arcRect, val2angle(start),
             spanBetween(maxValue - held + start, maxValue));
}

void MetroCirclerate::paintImageFG()
{
    if (ImageFG->isNull()) {
        reportNullImage(KIV_HERE, this, "ImageFG");
        return;
    }
    const ImageKey key(ImageKey::DialMask, arcRect.topLeft(), arcRect.size(), minValue, maxValue,
                       int(minAngle), int(arcSize), int(numTick), int(tickness));
    paintOnce(ImageFG, key, ImagePainter::Antialiased, [this](QPainter *painter) {
        painter->setCompositionMode(QPainter::CompositionMode_DestinationOver);
        usePlainColor(painter, Qt::black);
        for (int i = 1; i < numTick; ++i) {
            const double tick = i * (maxValue - minValue) / numTick + minValue;
            painter->drawPie(QRectF(arcRect), val2angle(tick), -angleParts);
        }
        const int t = tickness;
        const QRectF disc(arcRect.left() + t, arcRect.top() + t, arcRect.width() - 2 * t,
                          arcRect.height() - 2 * t);
        painter->drawPie(disc, val2angle(minValue), -fullTurn * angleParts);
    });
}

void MetroCirclerate::repaintSchedule(QImage **layer)
{
    MetroStyle::repaintSchedule(layer);
    update();
}

void MetroCirclerate::createImages()
{
    if (createIfMissing(&ImageFG, this))
        paintImageFG();
    if (createIfMissing(&ImageBG, this))
        paintImageBG();
    if (createIfMissing(&Image, this))
        paintImage();
}

void MetroCirclerate::buildGraph(QImage &img)
{
    composeLayers(img, *ImageBG, *Image, *ImageFG);
    QPainter painter(&img);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.setPen(palette().color(QPalette::WindowText));
    const int longer = std::max(width(), height());

    const QFont labelFont = smallerFont(font(), labelPercent);
    const QFontMetrics labelMetrics(labelFont);
    painter.setFont(labelFont);
    const int labelWidth = singleLineSize(labelFont, label).width();
    drawLine(&painter,
             QPointF((longer - labelWidth) / 2 + double(posLabel.x()),
                     tickness + labelMetrics.ascent() + double(posLabel.y())),
             label);

    const QFontMetrics metrics(font());
    painter.setFont(font());
    const QString text = formatValue(formatStr, value);
    const int textWidth = singleLineSize(font(), text).width();
    drawLine(&painter,
             QPointF((longer - textWidth) / 2 + double(posStr.x()),
                     height() / 2 + metrics.ascent() + double(posStr.y())),
             text);
}

std::array<QImage **, 3> MetroCirclerate::layers()
{
    return {&Image, &ImageBG, &ImageFG};
}

void MetroCirclerate::dropAll()
{
    for (QImage **layer : layers())
        repaintSchedule(layer);
}

/// The angle from value @p from to value @p to, each truncated on its own.
int MetroCirclerate::spanBetween(double from, double to)
{
    using Limits = std::numeric_limits<int>;
    const qint64 span = qint64(val2angle(to)) - val2angle(from);
    return int(std::clamp<qint64>(span, Limits::min(), Limits::max()));
}

// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "aerolinebar.h"

#include "aeropanel_p.h"
#include "assign_p.h"
#include "cachedimage_p.h"
#include "errorline_p.h"
#include "events_p.h"
#include "numbers_p.h"
#include "pixmaps_p.h"
#include "text_p.h"
#include "valueformat_p.h"

#include <QtGui/QFontMetrics>
#include <QtGui/QImage>
#include <QtGui/QLinearGradient>
#include <QtGui/QPainterPath>

#include <algorithm>
#include <utility>

using namespace KivPrivate;

namespace {

/// Free rows between the bar and the tick strip.
constexpr int gapHeight = 2;
/// Ticks that an interval may give before it is replaced, and the number it is replaced by.
constexpr double mostTicks = 50.0;
constexpr double replacementTicks = 10.0;
/// How close to a limit a tick counts as an end tick.
constexpr double endTolerance = 0.005;
/// Ticks that are computed at most; far more than any screen shows, it ends the loop.
constexpr int tickBound = 100000;
/// Ticks that are drawn in one place at most. Their soft edges darken each other up to the 17th;
/// more would only cost time.
constexpr int ticksInOnePlace = 20;
/// The rounded ends of the fill are at least this long.
constexpr double shortestEnd = 2.0;
/// Free pixels between the value text and what it stands next to.
constexpr int textGap = 2;

PanelColors troughColors(const QColor &edge)
{
    return {QColor(230, 230, 230, 250), QColor(192, 192, 192, 200), edge};
}

/// The fill's length, and the lengths of its three slices: its rounded ends and the straight piece
/// between. Where the first end takes more than half of the bar, the straight piece is negative.
struct Fill
{
    int length;
    int left;
    int middle;
    int right;

    /// Where the last slice begins.
    int end() const
    {
        return left + middle;
    }
};

Fill sliceFill(int length, double endRadius, int width)
{
    const int left = length <= endRadius ? length : truncatedToInt(endRadius);
    const int rest = length - left;
    const int middle = std::min(rest, width - 2 * left);
    return {length, left, middle, std::max(rest - middle, 0)};
}

double fillEndRadius(int width, int barHeight, int widthPen, int roundness)
{
    const double rw = double(width) - widthPen;
    const double rh = double(barHeight) - widthPen;
    const double radius = std::min(rw, rh) * 0.5 * roundness / 100.0;
    return radius > shortestEnd ? radius : shortestEnd;
}

int fillLength(double value, double minimum, double maximum, int width)
{
    const double held = std::min(std::max(value, minimum), maximum);
    // Equal limits make no bar.
    return std::min(truncatedToInt(quotient((held - minimum) * width, maximum - minimum)), width);
}

/// The left edge of a value text of @p textWidth in a bar of @p width.
qint64 textColumn(AeroLinebar::ValPos position, const Fill &fill, int textWidth, int width,
                  qint64 widthPen)
{
    const qint64 leftmost = widthPen + textGap;
    const qint64 rightmost = width - textWidth - widthPen - textGap;
    switch (position) {
    case AeroLinebar::CenterVal:
        return std::max(leftmost, std::min<qint64>(fill.length - textWidth / 2, rightmost));
    case AeroLinebar::leftVal: {
        const qint64 inside = fill.end() - textWidth - textGap;
        return widthPen + 1 < inside ? inside : leftmost;
    }
    default:
        return std::min<qint64>(fill.end() + textGap, rightmost);
    }
}

/// Copies a slice of the finished panel to the same height of the widget; no slice for length 0. Qt
/// takes a negative length for all that is left of the panel.
void drawSlice(QPainter *painter, const QImage &panel, int from, int to, int length, int height)
{
    if (length != 0)
        drawPart(painter, {double(to), 0}, panel, QRectF(from, 0, length, height));
}

void drawFill(QPainter *painter, const QImage &panel, const Fill &fill, int width, int height)
{
    drawSlice(painter, panel, 0, 0, fill.left, height);
    drawSlice(painter, panel, fill.left, fill.left, fill.middle, height);
    drawSlice(painter, panel, width - fill.left, fill.end(), fill.right, height);
}

} // namespace

AeroLinebar::AeroLinebar(QWidget *parent)
    : QWidget(parent)
    , AeroStyle(this)
    , tickSize(20)
    , tickInterval(10.0)
    , tickHeight(0)
    , barHeight(0)
    , minValueF(0.0)
    , maxValueF(100.0)
    , valueF(50.0)
    , valuePosition(NoVal)
    , valueFormat(QStringLiteral("%.02f%%"))
    , bold(true)
    , image(nullptr)
    , imageShadow(nullptr)
    , imageText(nullptr)
    , imageTick(nullptr)
{
    SplitArea();
    dropAll();
}

AeroLinebar::~AeroLinebar()
{
    for (QImage **cached : images())
        AeroStyle::repaintSchedule(cached);
}

double AeroLinebar::getMinValueF() const
{
    return minValueF;
}

void AeroLinebar::setMinValue(double minimum)
{
    minValueF = minimum;
    update();
}

double AeroLinebar::getMaxValueF() const
{
    return maxValueF;
}

void AeroLinebar::setMaxValue(double maximum)
{
    maxValueF = maximum;
    update();
}

int AeroLinebar::getTickSize() const
{
    return tickSize;
}

void AeroLinebar::setTickHeight(int percent)
{
    tickSize = qBound(0, percent, 100);
    SplitArea();
    dropAll();
}

double AeroLinebar::getTickInterval() const
{
    return tickInterval;
}

void AeroLinebar::setTickStep(double interval)
{
    const double range = maxValueF - minValueF;
    tickInterval = quotient(range, interval) > mostTicks ? range / replacementTicks : interval;
    repaintSchedule(&imageTick);
}

double AeroLinebar::getValueF() const
{
    return valueF;
}

void AeroLinebar::setValue(double v)
{
    const QString text = formatValue(valueFormat, v);
    if (text == valueText)
        return;
    setText(text);
    valueF = v;
}

AeroLinebar::ValPos AeroLinebar::getValuePosition() const
{
    return valuePosition;
}

void AeroLinebar::setValuePosition(ValPos position)
{
    valuePosition = position;
    update();
}

QString AeroLinebar::getValueFormat() const
{
    return valueFormat;
}

void AeroLinebar::setValueFormat(QString vFormat)
{
    valueFormat = std::move(vFormat);
    setValue(valueF);
}

QColor AeroLinebar::getColorText() const
{
    return colorText;
}

void AeroLinebar::setColorText(const QColor &newColorText)
{
    if (assignIfChanged(colorText, newColorText))
        repaintSchedule(&imageText);
}

bool AeroLinebar::getBold() const
{
    return bold;
}

void AeroLinebar::setTextBold(bool newBold)
{
    if (assignIfChanged(bold, newBold))
        repaintSchedule(&imageText);
}

void AeroLinebar::setText(const QString &text)
{
    valueText = text;
    repaintSchedule(&imageText);
}

QString AeroLinebar::getText() const
{
    return valueText;
}

void AeroLinebar::SplitArea()
{
    tickHeight = std::max(int(qint64(height()) * tickSize / 100), 0);
    barHeight = tickHeight != 0 ? height() - tickHeight - gapHeight : height();
}

bool AeroLinebar::event(QEvent *event)
{
    if (event->type() == QEvent::Resize)
        SplitArea();
    if (isOneOf(event, sizedDropEvents)) {
        dropAll();
        absorbUpdateRequests(this, event);
    }
    return QWidget::event(event);
}

void AeroLinebar::paintEvent(QPaintEvent *)
{
    dropOutdated(this, lock, dirty, images());
    if (dirty) {
        createImages();
        dirty = false;
    }
    const int length = fillLength(valueF, minValueF, maxValueF, width());
    const double endRadius = fillEndRadius(width(), barHeight, widthPen, roundness);
    const Fill fill = sliceFill(length, endRadius, width());

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(opacity);
    drawInto(&painter, QRectF(0, 0, width(), barHeight), *imageShadow);
    drawFill(&painter, *image, fill, width(), barHeight);
    if (imageText && valuePosition != NoVal) {
        const QSize text = logicalSize(*imageText);
        const qint64 x = textColumn(valuePosition, fill, text.width(), width(), widthPen);
        const int y = (barHeight - text.height()) / 2;
        drawAt(&painter, QPointF(double(x), y), *imageText);
    }
    if (tickHeight > 1 && imageTick) {
        drawInto(&painter, QRectF(0, height() - tickHeight, width(), tickHeight), *imageTick);
    }
}

void AeroLinebar::createImages()
{
    const QSize barSize(width(), barHeight);
    if (createIfMissing(&image, this, barSize) && !image->isNull())
        paintImage();
    if (createIfMissing(&imageShadow, this, barSize) && !imageShadow->isNull())
        paintImageShadow();
    if (!valueText.isNull()) {
        if (createIfMissing(&imageText, this,
                            singleLineSize(withWeight(font(), bold), valueText))) {
            if (imageText->isNull()) {
                reportNullImage(KIV_HERE, this, "ImageText");
                return;
            }
            ImagePainter painter(imageText);
            paintText(&painter);
        }
    }
    if (createIfMissing(&imageTick, this, QSize(width(), tickHeight)))
        paintTick();
}

void AeroLinebar::paintImage()
{
    if (image->isNull()) {
        reportNullImage(KIV_HERE, this, "Image");
        return;
    }
    paintGlassPanel(image, logicalSize(*image), {widthPen, roundness, opacity},
                    PanelColors{color, shadow, colorPen}.shownBy(this));
}

void AeroLinebar::paintImageShadow()
{
    if (imageShadow->isNull()) {
        reportNullImage(KIV_HERE, this, "ImageShadow");
        return;
    }
    ImagePainter painter(imageShadow);
    const auto [light, dark, edge] = troughColors(colorPen).shownBy(this);
    const QSize trough = logicalSize(*imageShadow);
    const double iw = double(trough.width()) - widthPen;
    const double ih = double(trough.height()) - widthPen;
    const auto radius = double(cornerRadius(trough, widthPen, roundness));
    const int halfPen = widthPen / 2;

    QPainterPath outline;
    outline.addRoundedRect(QRectF(halfPen, halfPen, iw, ih), radius, radius, Qt::AbsoluteSize);
    painter.setPen(QPen(QBrush(edge), widthPen));
    painter.setOpacity(opacity);
    painter.drawPath(outline);

    QLinearGradient gradient(0, 0, 0, ih);
    gradient.setSpread(QGradient::ReflectSpread);
    gradient.setColorAt(0.0, light);
    gradient.setColorAt(0.4, dark);
    gradient.setColorAt(0.6, dark);
    gradient.setColorAt(1.0, light);
    painter.setBrush(gradient);
    painter.setPen(QPen(QBrush(light), halfPen));
    const double innerRadius = radius - halfPen;
    painter.drawRoundedRect(QRectF(widthPen, widthPen, iw - widthPen, ih - widthPen), innerRadius,
                            innerRadius, Qt::AbsoluteSize);
}

void AeroLinebar::paintText(QPainter *painter)
{
    if (valueText.isNull() || !imageText)
        return;
    const QFont textFont = withWeight(font(), bold);
    painter->setFont(textFont);
    painter->setPen(colorText);
    painter->setOpacity(1.0);
    drawLine(painter,
             QPointF(0, centredBaseline(QFontMetrics(textFont), logicalSize(*imageText).height())),
             valueText);
}

void AeroLinebar::paintTick()
{
    if (tickHeight < 2)
        return;
    if (imageTick->isNull()) {
        reportNullImage(KIV_HERE, this, "ImageTick");
        return;
    }
    ImagePainter painter(imageTick);
    const double step = tickInterval > 0.0 ? tickInterval : 1.0;
    const double range = maxValueF - minValueF;
    const int bottom = tickHeight - 1;
    double t = minValueF / step * step;
    QPoint lastFoot(-1, -1);
    int inOnePlace = 0;
    for (int count = 0; t <= maxValueF && count < tickBound; ++count) {
        int x = truncatedToInt(quotient(t - minValueF, range) * width());
        int y = bottom;
        // The ticks at both ends stand one pixel further in and reach one pixel lower.
        if (t <= minValueF + endTolerance)
            ++x;
        else if (t >= maxValueF - endTolerance)
            --x;
        else
            --y;
        const QPoint foot(x, y);
        inOnePlace = assignIfChanged(lastFoot, foot) ? 1 : inOnePlace + 1;
        if (inOnePlace <= ticksInOnePlace)
            painter.drawLine(foot, QPoint(x, bottom - tickHeight));
        const double next = t + step;
        if (!(next > t))
            break;
        t = next;
    }
}

void AeroLinebar::repaintSchedule(QImage **cached)
{
    AeroStyle::repaintSchedule(cached);
    update();
}

std::array<QImage **, 4> AeroLinebar::images()
{
    return {&image, &imageShadow, &imageText, &imageTick};
}

void AeroLinebar::dropAll()
{
    for (QImage **cached : images())
        repaintSchedule(cached);
}

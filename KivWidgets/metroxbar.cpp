// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "metroxbar.h"

#include "assign_p.h"
#include "elementstate_p.h"
#include "errorline_p.h"
#include "events_p.h"
#include "gaugelayers_p.h"
#include "imagememory_p.h"

#include <QtGui/QImage>

#include <algorithm>
#include <limits>
#include <optional>

using namespace KivPrivate;

namespace {

/// Room is kept for the text of this value.
constexpr int widestValue = 138;

QString textOf(int value, const QString &unit)
{
    return QStringLiteral("%1%2").arg(value).arg(unit);
}

/// The last column of the bar of @p value; none where the limits leave it open.
std::optional<int> lastColumn(int value, int minimum, int maximum, int barWidth)
{
    if (value > maximum)
        return barWidth;
    const qint64 range = qint64(maximum) - minimum;
    if (range == 0)
        return std::nullopt;
    using Limits = std::numeric_limits<int>;
    const qint64 column = (qint64(value) - minimum) * barWidth / range;
    return int(std::clamp<qint64>(column, Limits::min(), Limits::max()));
}

} // namespace

MetroXbar::MetroXbar(QWidget *parent)
    : QWidget(parent)
    , MetroStyle(this)
    , foregroundcolor(lightBlue)
    , backgroundcolor(lightGrey)
    , value(35)
    , maxValue(300)
    , minValue(0)
    , barWidth(0)
    , Image(nullptr)
    , ImageBG(nullptr)
    , ImageFG(nullptr)
{
    // Volts are the usual unit; the unit set by the application counts from the first event on.
    measureBar(QStringLiteral("V"));
    dropAll();
}

MetroXbar::~MetroXbar()
{
    for (QImage **layer : layers())
        MetroStyle::repaintSchedule(layer);
    forgetComposed(this);
}

QColor MetroXbar::getBackgroundcolor() const
{
    return backgroundcolor;
}

void MetroXbar::setBackgroundColor(const QColor &color)
{
    if (assignIfChanged(backgroundcolor, color))
        repaintSchedule(&Image);
}

QColor MetroXbar::getForegroundcolor() const
{
    return foregroundcolor;
}

void MetroXbar::setForegroundColor(const QColor &color)
{
    if (assignIfChanged(foregroundcolor, color))
        repaintSchedule(&Image);
}

int MetroXbar::getValue() const
{
    return value;
}

void MetroXbar::setValue(int newValue)
{
    if (assignIfChanged(value, newValue))
        repaintSchedule(&Image);
}

int MetroXbar::getMaxValue() const
{
    return maxValue;
}

void MetroXbar::setMaxValue(int maximum)
{
    if (assignIfChanged(maxValue, maximum))
        repaintSchedule(&Image);
}

int MetroXbar::getMinValue() const
{
    return minValue;
}

void MetroXbar::setMinValue(int minimum)
{
    if (assignIfChanged(minValue, minimum))
        repaintSchedule(&Image);
}

QString MetroXbar::getMeasure() const
{
    return measure;
}

void MetroXbar::setMeasure(const QString &unit)
{
    if (assignIfChanged(measure, unit))
        update();
}

bool MetroXbar::event(QEvent *event)
{
    if (isOneOf(event, paintedDropEvents)) {
        measureBar(measure);
        if (event->type() == QEvent::Paint) {
            // Scheduling from a paint would repaint for ever, so the layers are only dropped.
            for (QImage **layer : layers())
                MetroStyle::repaintSchedule(layer);
        } else {
            dropAll();
            absorbUpdateRequests(this, event);
        }
    }
    return QWidget::event(event);
}

void MetroXbar::paintEvent(QPaintEvent *)
{
    dropOutdated(this, lock, dirty, layers());
    const bool hasLayers = Image || ImageBG || ImageFG;
    if (dirty) {
        createImages();
        dirty = false;
    }
    const GaugeLook look(
        this, layers(), hasLayers ? GaugeLook::OfImages : GaugeLook::OfSettings, backgroundcolor,
        {double(value), double(minValue), double(maxValue), double(barWidth), double(hasLayers)},
        measure);
    showComposed(this, look, [this](QImage &composed) { buildGraph(composed); });
}

void MetroXbar::paintImageBG()
{
    if (isMissing(ImageBG)) {
        reportNullImage(KIV_HERE, this, "ImageBG");
        return;
    }
    paintBarBackground(ImageBG, backgroundcolor, barWidth, height());
}

void MetroXbar::paintImage()
{
    if (isMissing(Image)) {
        reportNullImage(KIV_HERE, this, "Image");
        return;
    }
    const std::optional<int> column = lastColumn(value, minValue, maxValue, barWidth);
    const ImageKey key(ImageKey::BarValue, height(), int(column.has_value()), column.value_or(0));
    paintOnce(Image, key, ImagePainter::Plain, [&](QPainter *painter) {
        if (column)
            fillBar(painter, lightBlue, 1, 1, *column, height());
    });
}

void MetroXbar::paintImageFG()
{
    if (isMissing(ImageFG)) {
        reportNullImage(KIV_HERE, this, "ImageFG");
        return;
    }
    const ImageKey key(ImageKey::BarScale, barWidth, height());
    paintOnce(ImageFG, key, ImagePainter::Plain, [this](QPainter *painter) {
        for (int i = 0; i <= 10; ++i) {
            const int x = scaleColumn(barWidth, i);
            drawScaleLine(painter, x, 1, x, height() - 1);
        }
        drawBarFrame(painter, barWidth, height());
    });
}

void MetroXbar::repaintSchedule(QImage **layer)
{
    MetroStyle::repaintSchedule(layer);
    update();
}

void MetroXbar::createImages()
{
    if (createIfMissing(&ImageFG, this))
        paintImageFG();
    if (createIfMissing(&ImageBG, this))
        paintImageBG();
    if (createIfMissing(&Image, this))
        paintImage();
}

void MetroXbar::buildGraph(QImage &img)
{
    if (!ImageBG || !Image || !ImageFG)
        createImages();
    // NOLINTNEXTLINE(clang-analyzer-core.NonNullParamChecker): all layers are there now
    composeLayers(img, *ImageBG, *Image, *ImageFG);
    QPainter painter(&img);
    drawBarText(&painter, font(), barWidth, height(), textOf(value, measure));
}

void MetroXbar::measureBar(const QString &unit)
{
    barWidth = barWidthBeside(width(), font(), textOf(widestValue, unit));
}

std::array<QImage **, 3> MetroXbar::layers()
{
    return {&Image, &ImageBG, &ImageFG};
}

void MetroXbar::dropAll()
{
    for (QImage **layer : layers())
        repaintSchedule(layer);
}

// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "metrolinerate.h"

#include "assign_p.h"
#include "elementstate_p.h"
#include "errorline_p.h"
#include "events_p.h"
#include "gaugelayers_p.h"
#include "imagememory_p.h"

#include <QtGui/QImage>

#include <algorithm>

using namespace KivPrivate;

namespace {

constexpr int full = 100;
/// Values up to here are orange, beyond red.
constexpr int highestWarning = 125;
/// The excess that fills the thin bar.
constexpr int fullExcess = 50;
/// Room is kept for the text of this value.
constexpr int widestValue = 138;

QString textOf(int value)
{
    return QString::asprintf("%d%%", value);
}

QColor excessColor(int value)
{
    return value <= highestWarning ? orange : red;
}

} // namespace

MetroLinerate::MetroLinerate(QWidget *parent)
    : QWidget(parent)
    , MetroStyle(this)
    , foregroundcolor(lightBlue)
    , backgroundcolor(lightGrey)
    , value(35)
    , barWidth(0)
    , Image(nullptr)
    , ImageBG(nullptr)
    , ImageFG(nullptr)
{
    measureBar();
    dropAll();
}

MetroLinerate::~MetroLinerate()
{
    for (QImage **layer : layers())
        MetroStyle::repaintSchedule(layer);
    forgetComposed(this);
}

QColor MetroLinerate::getBackgroundcolor() const
{
    return backgroundcolor;
}

void MetroLinerate::setBackgroundColor(const QColor &color)
{
    if (assignIfChanged(backgroundcolor, color))
        repaintSchedule(&Image);
}

QColor MetroLinerate::getForegroundcolor() const
{
    return foregroundcolor;
}

void MetroLinerate::setForegroundColor(const QColor &color)
{
    if (assignIfChanged(foregroundcolor, color))
        repaintSchedule(&Image);
}

int MetroLinerate::getValue() const
{
    return value;
}

void MetroLinerate::setValue(int percent)
{
    if (assignIfChanged(value, quint8(percent)))
        repaintSchedule(&Image);
}

bool MetroLinerate::event(QEvent *event)
{
    if (isOneOf(event, sizedDropEvents)) {
        measureBar();
        dropAll();
        absorbUpdateRequests(this, event);
    }
    return QWidget::event(event);
}

void MetroLinerate::paintEvent(QPaintEvent *)
{
    dropOutdated(this, lock, dirty, layers());
    if (dirty) {
        createImages();
        dirty = false;
    }
    const GaugeLook look(this, layers(), GaugeLook::OfImages, QColor(),
                         {double(value), double(barWidth)}, QString());
    showComposed(this, look, [this](QImage &composed) { buildGraph(composed); });
}

void MetroLinerate::paintImageBG()
{
    if (isMissing(ImageBG)) {
        reportNullImage(KIV_HERE, this, "ImageBG");
        return;
    }
    paintBarBackground(ImageBG, backgroundcolor, barWidth, height());
}

void MetroLinerate::paintImage()
{
    if (isMissing(Image)) {
        reportNullImage(KIV_HERE, this, "Image");
        return;
    }
    ImagePainter painter(Image, ImagePainter::Plain);
    const int third = height() / 3;
    const int bottom = third + 2 * height() / 3 - 1;
    if (value > full) {
        const QColor color = excessColor(value);
        const int excess = std::min(value - full, fullExcess);
        fillBar(&painter, color, 1, third, barWidth, bottom);
        fillBar(&painter, color, 1, 1, int(qint64(excess) * barWidth / fullExcess), third);
    } else {
        fillBar(&painter, lightBlue, 1, third, int(qint64(value) * barWidth / full), bottom);
    }
}

void MetroLinerate::paintImageFG()
{
    if (isMissing(ImageFG)) {
        reportNullImage(KIV_HERE, this, "ImageFG");
        return;
    }
    const ImageKey key(ImageKey::DivisionScale, barWidth, height());
    paintOnce(ImageFG, key, ImagePainter::Plain, [this](QPainter *painter) {
        const int third = height() / 3;
        for (int i = 0; i <= 10; ++i) {
            const int x = scaleColumn(barWidth, i);
            drawScaleLine(painter, x, third, x, height() - 1);
            if (i % 2 == 0)
                drawScaleLine(painter, x, 1, x, third);
        }
        drawBarFrame(painter, barWidth, height());
        drawScaleLine(painter, 1, third, barWidth, third);
    });
}

void MetroLinerate::repaintSchedule(QImage **layer)
{
    MetroStyle::repaintSchedule(layer);
    update();
}

void MetroLinerate::createImages()
{
    if (createIfMissing(&ImageFG, this))
        paintImageFG();
    if (createIfMissing(&ImageBG, this))
        paintImageBG();
    if (createIfMissing(&Image, this))
        paintImage();
}

void MetroLinerate::buildGraph(QImage &img)
{
    if (!ImageBG || !Image || !ImageFG)
        createImages();
    // NOLINTNEXTLINE(clang-analyzer-core.NonNullParamChecker): all layers are there now
    composeLayers(img, *ImageBG, *Image, *ImageFG);
    QPainter painter(&img);
    if (value > full) {
        painter.setBrush(QBrush(excessColor(value)));
        painter.setPen(excessColor(value));
    }
    drawBarText(&painter, font(), barWidth, height(), textOf(value));
}

void MetroLinerate::measureBar()
{
    barWidth = barWidthBeside(width(), font(), textOf(widestValue));
}

std::array<QImage **, 3> MetroLinerate::layers()
{
    return {&Image, &ImageBG, &ImageFG};
}

void MetroLinerate::dropAll()
{
    for (QImage **layer : layers())
        repaintSchedule(layer);
}

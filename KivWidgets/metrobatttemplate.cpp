// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "metrobatttemplate.h"

#include "elementstate_p.h"
#include "errorline_p.h"
#include "pixmaps_p.h"

#include <QtGui/QPainter>
#include <QtGui/QPixmap>
#include <QtWidgets/QWidget>

#include <iterator>

using namespace KivPrivate;

namespace {

constexpr QSize sizeWithoutImages(22, 22);

/// The two warnings are two pixmaps, as they are two colours.
constexpr Keyed<ColorIndex, const char *> imageNames[] = {
    {DarkGreyIndex, "none"},     {LightBlueIndex, "ok"},       {OnBatteryIndex, "warning"},
    {DarkBlueIndex, "onBypass"}, {LightGreyIndex, "COMMLOST"}, {WarningIndex, "warning"},
    {RedIndex, "fault"},
};

} // namespace

QPixmap *MetroBattTemplate::background[7] = {};
bool MetroBattTemplate::initialized = false;

static_assert(isComplete(imageNames, colorCount), "one image for each colour");

MetroBattTemplate::MetroBattTemplate(QWidget *ownerWidget)
    : MetroStyle(ownerWidget)
{
    if (initialized)
        return;
    for (std::size_t i = 0; i < std::size(imageNames); ++i) {
        const QLatin1String name(imageNames[i].value);
        background[i] = new QPixmap(libraryImage(QStringLiteral("batt_%1").arg(name)));
    }
    initialized = true;
}

MetroBattTemplate::~MetroBattTemplate() = default;

void MetroBattTemplate::paintBase(QPainter *painter)
{
    const QPixmap *symbol = background[getColorIdx()];
    if (!symbol) {
        writeErrorLine(KIV_HERE, "pixmap non inizializzata\n");
        return;
    }
    drawAt(painter, QPointF(0, 0), *symbol);
}

QSize MetroBattTemplate::getBackGroundSize()
{
    return background[0] ? background[0]->size() : sizeWithoutImages;
}

#include "dial.h"

#include "setup.h"
#include "theme.h"

#include <metrocirclerate.h>

#include <QtWidgets/QWidget>

#include <algorithm>

namespace {

constexpr int dialRadius = 70;
constexpr int ringWidth = 15;
constexpr int startAngle = 225;
constexpr int span = 270;
/// What radius and angles make of the dial.
constexpr QSize roomSize(142, 121);
/// A dial cannot have a shorter scale.
constexpr double shortestScale = 1.0;

const QColor outOfLimits(247, 148, 50);

bool outsideLimits(const Measure &measure)
{
    return measure.value && ((measure.low && *measure.value < *measure.low) ||
                             (measure.high && *measure.value > *measure.high));
}

} // namespace

Dial::Dial(QWidget *parent, Quantity shownQuantity, const QString &label, double minimum,
           double maximum)
    : place(new QWidget(parent))
    , circle(new MetroCirclerate(place))
    , quantity(shownQuantity)
    , defaultMinimum(minimum)
    , defaultMaximum(maximum)
{
    place->setFixedSize(roomSize);
    circle->setObjectName(label);
    circle->setFont(Theme::font(Theme::Large, true));
    setUp(circle, {{"radius", dialRadius},
                   {"minAngle", startAngle},
                   {"arcSize", span},
                   {"tickness", ringWidth},
                   {"numTick", 20},
                   {"label", label},
                   {"posLabel", QPoint(0, 20)},
                   {"posStr", QPoint(0, 4)}});
}

QWidget *Dial::room() const
{
    return place;
}

void Dial::showSnapshot(const Snapshot &snapshot)
{
    const Measure &measure = snapshot.measure(quantity);
    setScale(measure.minimum.value_or(defaultMinimum), measure.maximum.value_or(defaultMaximum));
    if (!measure.value) {
        setUp(circle, {{"formatStr", QObject::tr("no data")},
                       {"value", circle->property("minValue")},
                       {"cursor", circle->property("background")}});
        return;
    }
    const QString format = quantity == Quantity::Load || quantity == Quantity::BatteryCharge
                               ? QStringLiteral("%.0f %%")
                               : QStringLiteral("%.0f ") + unitOf(quantity);
    setUp(circle, {{"formatStr", format},
                   {"value", *measure.value},
                   {"cursor", outsideLimits(measure) ? outOfLimits : Theme::accent()}});
}

void Dial::setScale(double minimum, double maximum)
{
    maximum = std::max(maximum, minimum + shortestScale);
    // The dial refuses a limit that crosses the other one, so the one that makes room goes first.
    if (minimum <= circle->property("maxValue").toDouble() - shortestScale)
        setUp(circle, {{"minValue", minimum}, {"maxValue", maximum}});
    else
        setUp(circle, {{"maxValue", maximum}, {"minValue", minimum}});
}

// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "gaugeinterface.h"

#include <aerolinebar.h>
#include <metrocirclerate.h>
#include <metrolinerate.h>
#include <metroxbar.h>
#include <valueformat_p.h>

using KivPrivate::formatValue;

namespace {

/// An application may set the text apart from the value; a new bar has none yet.
QString textOf(const AeroLinebar &bar)
{
    const QString text = bar.getText();
    return text.isNull() ? formatValue(bar.getValueFormat(), bar.getValueF()) : text;
}

/// The percentage of a full bar.
constexpr int fullBar = 100;

} // namespace

GaugeInterface::Reading GaugeInterface::reading() const
{
    if (const auto *bar = as<AeroLinebar>()) {
        return {bar->getValueF(), bar->getMinValueF(), bar->getMaxValueF(), textOf(*bar),
                QString()};
    }
    if (const auto *dial = as<MetroCirclerate>()) {
        return {dial->getValue(), dial->getMinValue(), dial->getMaxValue(),
                formatValue(dial->getFormatStr(), dial->getValue()), dial->getLabel()};
    }
    if (const auto *bar = as<MetroLinerate>()) {
        return {bar->getValue(), 0, fullBar, QStringLiteral("%1%").arg(bar->getValue()), QString()};
    }
    if (const auto *bar = as<MetroXbar>()) {
        return {bar->getValue(), bar->getMinValue(), bar->getMaxValue(),
                QString::number(bar->getValue()) + bar->getMeasure(), QString()};
    }
    return {};
}

void *GaugeInterface::interface_cast(QAccessible::InterfaceType type)
{
    if (type == QAccessible::ValueInterface)
        return static_cast<QAccessibleValueInterface *>(this);
    return WidgetInterface::interface_cast(type);
}

QAccessible::State GaugeInterface::state() const
{
    QAccessible::State state = WidgetInterface::state();
    state.readOnly = true;
    return state;
}

Announcement GaugeInterface::announcement() const
{
    const Reading now = reading();
    return {now.label, now.text, now.value.toDouble(), QAccessible::State()};
}

QVariant GaugeInterface::currentValue() const
{
    return reading().value;
}

void GaugeInterface::setCurrentValue(const QVariant &)
{}

QVariant GaugeInterface::maximumValue() const
{
    return reading().maximum;
}

QVariant GaugeInterface::minimumValue() const
{
    return reading().minimum;
}

QVariant GaugeInterface::minimumStepSize() const
{
    return 0;
}

QString GaugeInterface::label() const
{
    return reading().label;
}

QString GaugeInterface::status() const
{
    return reading().text;
}

// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "model/upsmodel.h"

#include <array>

/// The elements of the single-line diagram.
enum class Node { Mains, Bypass, Rectifier, Battery, Inverter, Load };
constexpr int nodeCount = 6;

/// The ways that energy takes between them, in its usual direction.
enum class Flow {
    MainsToRectifier,
    RectifierToInverter,
    InverterToLoad,
    RectifierToBattery, ///< the battery is charged
    BatteryToInverter,  ///< the battery feeds the load
    MainsToBypass,
    BypassToLoad,
};
constexpr int flowCount = 7;

/// What the single-line diagram shows of one element.
struct DiagramNode
{
    bool present = false; ///< whether this UPS has it at all
    ElementState state;
    QString title;
    QString caption;     ///< what it does: "Off · mains failed"
    QStringList shorter; ///< the same in ever fewer words, for less room
    QString value;       ///< what is measured there: "230 V · 50.0 Hz"; may be empty
    QString shortValue;  ///< the value that matters more

    bool operator==(const DiagramNode &other) const;
};

/// All that the single-line diagram shows.
struct Diagram
{
    std::array<DiagramNode, nodeCount> nodes;
    std::array<bool, flowCount> flows = {}; ///< where energy flows

    const DiagramNode &node(Node which) const;
    bool isFlowing(Flow which) const;
    bool operator==(const Diagram &other) const;
    /// The flows in words, for a screen reader: "Mains to Rectifier, Rectifier to Inverter".
    QString flowText() const;
};

/// The diagram of @p ups. Of a silent one the elements are as in @p before, since it still has
/// them.
Diagram diagramOf(const UpsModel &ups, const Diagram &before = Diagram());

// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "snapshot.h"

#include <array>
#include <optional>

/// A stretch of a scale.
struct ScaleArc
{
    double from = 0.0;
    double to = 0.0;
};

/// The scale on which a quantity is shown, the same on every page; whole numbers, the minimum
/// below the maximum.
struct Scale
{
    double minimum = 0.0;
    double maximum = 100.0;
    std::optional<double> nominal; ///< inside the scale
    std::optional<double> low;     ///< a value below is too low; inside the scale
    std::optional<double> high;    ///< a value above is too high; inside the scale
    /// Whether the ends rest on what the UPS said, or are the same for every UPS; a guess
    /// otherwise.
    bool isKnown = false;

    /// The stretches where a value is too low or too high; none without limits.
    QVector<ScaleArc> limitArcs() const;
    /// The place of @p value as a share of the scale, from 0 to 1 and not beyond.
    double shareOf(double value) const;
};
bool operator==(const Scale &a, const Scale &b);
bool operator!=(const Scale &a, const Scale &b);

/// Derives the scales from what a UPS says: nominal values ± 25 % (frequencies ± 10 %), widened to
/// its limits. Where it gives no nominal value, the standard one nearest to what was measured
/// stands in, and stays: a scale must not move with its value.
class ScaleBook
{
public:
    ScaleBook();

    /// @p before is what was taken before, if anything: what is as it was then costs nothing.
    void take(const Snapshot &snapshot, const Snapshot &before = Snapshot());
    Scale scale(Quantity quantity) const;

private:
    void learnStandIn(const Snapshot &snapshot, Quantity quantity);
    std::optional<double> nominalOf(const Snapshot &snapshot, Quantity quantity) const;
    Scale scaleOf(const Snapshot &snapshot, Quantity quantity);

    std::array<Scale, quantityCount> scales;
    std::array<std::optional<double>, quantityCount> standIns; // for nominal values
    std::array<double, quantityCount> ends = {};               // of scales that only grow
};

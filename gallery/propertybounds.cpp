// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "propertybounds.h"

#include <QtCore/QObject>

namespace {

struct BoundsEntry
{
    const char *className; ///< null for any class
    const char *property;
    PropertyBounds bounds;
};

constexpr PropertyBounds anyNumber = {-1e6, 1e6, 1};

constexpr BoundsEntry entries[] = {
    {"AeroLinebar", "tickSize", {0, 100, 5}},
    {"MetroCirclerate", "radius", {2, 400, 5}},
    {"MetroCirclerate", "arcSize", {0, 359, 5}},
    {"MetroCirclerate", "minAngle", {0, 359, 5}},
    {"MetroCirclerate", "numTick", {1, 255, 1}},
    {"MetroCirclerate", "tickness", {2, 255, 1}},
    {"MetroLinerate", "value", {0, 255, 1}},
    {"MetroSysIcon", "border", {0, 100, 1}},
    {"RotateStackedWidget", "scale", {0, 4, 0.05}},
    {"RotateStackedWidget", "endPositionAnimate", {0, 2, 0.05}},
    {"RotateStackedWidget", "timeRotationAnimate", {0, 10000, 100}},
    {"RotateStackedWidget", "timePositionAnimate", {0, 10000, 100}},
    {nullptr, "autoRepeatDelay", {0, 10000, 50}},
    {nullptr, "autoRepeatInterval", {10, 10000, 50}},
    {nullptr, "currentIndex", {-1, 99, 1}},
    {nullptr, "iconSize", {0, 256, 4}},
    {nullptr, "lineWidth", {0, 50, 1}},
    {nullptr, "midLineWidth", {0, 50, 1}},
    {nullptr, "opacity", {0, 1, 0.05}},
    {nullptr, "rotate", {-360, 360, 5}},
    {nullptr, "roundness", {0, 100, 5}},
    {nullptr, "widthPen", {0, 50, 1}},
};

} // namespace

PropertyBounds boundsOf(const QObject *object, const char *property)
{
    for (const BoundsEntry &entry : entries) {
        if (qstrcmp(entry.property, property) == 0 &&
            (!entry.className || object->inherits(entry.className)))
            return entry.bounds;
    }
    return anyNumber;
}

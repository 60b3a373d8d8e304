// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "propertybounds.h"

#include <aerolinebar.h>
#include <metrocirclerate.h>
#include <metrolinerate.h>
#include <metrosysicon.h>
#include <rotatestackedwidget.h>

namespace {

struct BoundsEntry
{
    const QMetaObject *widgetClass; ///< null for any class
    const char *property;
    PropertyBounds bounds;
};

constexpr PropertyBounds anyNumber = {-1e6, 1e6, 1};

const BoundsEntry entries[] = {
    {&AeroLinebar::staticMetaObject, "tickSize", {0, 100, 5}},
    {&MetroCirclerate::staticMetaObject, "radius", {2, 400, 5}},
    {&MetroCirclerate::staticMetaObject, "arcSize", {0, 359, 5}},
    {&MetroCirclerate::staticMetaObject, "minAngle", {0, 359, 5}},
    {&MetroCirclerate::staticMetaObject, "numTick", {1, 255, 1}},
    {&MetroCirclerate::staticMetaObject, "tickness", {2, 255, 1}},
    {&MetroLinerate::staticMetaObject, "value", {0, 255, 1}},
    {&MetroSysIcon::staticMetaObject, "border", {0, 100, 1}},
    {&RotateStackedWidget::staticMetaObject, "scale", {0, 4, 0.05}},
    {&RotateStackedWidget::staticMetaObject, "endPositionAnimate", {0, 2, 0.05}},
    {&RotateStackedWidget::staticMetaObject, "timeRotationAnimate", {0, 10000, 100}},
    {&RotateStackedWidget::staticMetaObject, "timePositionAnimate", {0, 10000, 100}},
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
            (!entry.widgetClass || entry.widgetClass->cast(object)))
            return entry.bounds;
    }
    return anyNumber;
}

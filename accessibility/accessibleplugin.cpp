// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "accessibleplugin.h"

#include "boxinterfaces.h"
#include "buttoninterfaces.h"
#include "gaugeinterface.h"
#include "widgetcatalogue.h"

#include <metronavdrawer.h>
#include <simpleslideswitch.h>
#include <slideswitch.h>

namespace {

template <typename Interface>
WidgetInterface *create(QWidget *widget)
{
    return new Interface(widget);
}

/// The classes with an interface of their own; the others' follows from their role.
const struct
{
    const QMetaObject &widgetClass;
    WidgetInterface *(*create)(QWidget *widget);
} ownInterfaces[] = {
    {MetroNavdrawer::staticMetaObject, create<DrawerInterface>},
    {SlideSwitch::staticMetaObject, create<SlideSwitchInterface>},
    {SimpleSlideSwitch::staticMetaObject, create<SimpleSlideSwitchInterface>},
};

WidgetInterface *createFor(const WidgetDescription &description, QWidget *widget)
{
    for (const auto &[widgetClass, create] : ownInterfaces) {
        if (description.metaObject == &widgetClass)
            return create(widget);
    }
    switch (description.role) {
    case QAccessible::Button:
        if (description.setState)
            return new StateButtonInterface(widget);
        return new ButtonInterface(widget, description.role);
    case QAccessible::CheckBox:
        return new ButtonInterface(widget, description.role);
    case QAccessible::PageTab:
        return new TabInterface(widget);
    case QAccessible::ProgressBar:
    case QAccessible::Dial:
        return new GaugeInterface(widget, description.role);
    case QAccessible::StatusBar:
        return new StripInterface(widget);
    case QAccessible::Grouping:
        return new GroupInterface(widget);
    case QAccessible::LayeredPane:
        return new StackInterface(widget);
    default:
        return new WidgetInterface(widget, description.role);
    }
}

} // namespace

QAccessibleInterface *AccessiblePlugin::create(const QString &key, QObject *object)
{
    const WidgetDescription *description = findWidget(key);
    QObject *widget = description ? description->metaObject->cast(object) : nullptr;
    if (!widget)
        return nullptr;
    WidgetInterface *made = createFor(*description, static_cast<QWidget *>(widget));
    made->watch();
    return made;
}

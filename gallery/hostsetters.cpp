// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "hostsetters.h"

#include <aerobutton.h>
#include <aerogroupbox.h>
#include <metrobatticon.h>
#include <metroshelter.h>
#include <metrosysicon.h>
#include <simpleslideswitch.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QMetaProperty>

namespace {

struct HostSetter
{
    const QMetaObject *meta;
    const char *property;
    void (*set)(QWidget *widget, const QVariant &value);
};

template <typename W>
void setIcon(QWidget *widget, const QVariant &value)
{
    static_cast<W *>(widget)->setIcon(value.value<QIcon>());
}

template <typename W>
void setText(QWidget *widget, const QVariant &value)
{
    static_cast<W *>(widget)->setText(value.toString());
}

void setTitle(QWidget *widget, const QVariant &value)
{
    static_cast<AeroGroupbox *>(widget)->setTitle(value.toString());
}

void setChecked(QWidget *widget, const QVariant &value)
{
    static_cast<SimpleSlideSwitch *>(widget)->setChecked(value.toBool());
}

const HostSetter hostSetters[] = {
    {&AeroButton::staticMetaObject, "text", setText<AeroButton>},
    {&AeroButton::staticMetaObject, "icon", setIcon<AeroButton>},
    {&AeroGroupbox::staticMetaObject, "title", setTitle},
    {&MetroSysIcon::staticMetaObject, "icon", setIcon<MetroSysIcon>},
    {&MetroBattIcon::staticMetaObject, "icon", setIcon<MetroBattIcon>},
    {&MetroShelter::staticMetaObject, "text", setText<MetroShelter>},
    {&MetroShelter::staticMetaObject, "icon", setIcon<MetroShelter>},
    {&SimpleSlideSwitch::staticMetaObject, "checked", setChecked},
};

bool callHostSetter(QWidget *widget, const char *property, const QVariant &value)
{
    for (const HostSetter &setter : hostSetters) {
        if (setter.meta->cast(widget) && qstrcmp(setter.property, property) == 0) {
            setter.set(widget, value);
            return true;
        }
    }
    return false;
}

} // namespace

void writeAsHost(QWidget *widget, const QMetaProperty &property, const QVariant &value)
{
    if (!callHostSetter(widget, property.name(), value))
        property.write(widget, value);
    // Every widget that keeps images drops all of them on this one.
    QEvent drop(QEvent::EnabledChange);
    QCoreApplication::sendEvent(widget, &drop);
    widget->update();
}

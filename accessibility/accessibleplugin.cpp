#include "accessibleplugin.h"

#include "boxinterfaces.h"
#include "buttoninterfaces.h"
#include "gaugeinterface.h"

#include <aerobutton.h>
#include <aerogroupbox.h>
#include <aerolinebar.h>
#include <aerostatusbar.h>
#include <aeroswitch.h>
#include <metrobatticon.h>
#include <metrocirclerate.h>
#include <metrolinerate.h>
#include <metronavdrawer.h>
#include <metroshelter.h>
#include <metrostatusbar.h>
#include <metrosysicon.h>
#include <metrotabicon.h>
#include <metroxbar.h>
#include <rotatestackedwidget.h>
#include <simpleslideswitch.h>
#include <slideswitch.h>
#include <transpbutton.h>

namespace {

WidgetInterface *pushButton(QWidget *widget)
{
    return new ButtonInterface(widget, QAccessible::Button);
}

WidgetInterface *checkBox(QWidget *widget)
{
    return new ButtonInterface(widget, QAccessible::CheckBox);
}

WidgetInterface *bar(QWidget *widget)
{
    return new GaugeInterface(widget, QAccessible::ProgressBar);
}

WidgetInterface *dial(QWidget *widget)
{
    return new GaugeInterface(widget, QAccessible::Dial);
}

template <typename Interface>
WidgetInterface *create(QWidget *widget)
{
    return new Interface(widget);
}

struct Maker
{
    const QMetaObject &widgetClass;
    WidgetInterface *(*create)(QWidget *widget);
};

const Maker makers[] = {
    {AeroButton::staticMetaObject, pushButton},
    {AeroSwitch::staticMetaObject, checkBox},
    {TranspButton::staticMetaObject, pushButton},
    {AeroStatusbar::staticMetaObject, create<StripInterface>},
    {AeroGroupbox::staticMetaObject, create<GroupInterface>},
    {AeroLinebar::staticMetaObject, bar},
    {MetroSysIcon::staticMetaObject, create<StateButtonInterface>},
    {MetroBattIcon::staticMetaObject, create<StateButtonInterface>},
    {MetroShelter::staticMetaObject, create<StateButtonInterface>},
    {MetroTabicon::staticMetaObject, create<TabInterface>},
    {MetroStatusbar::staticMetaObject, create<StripInterface>},
    {MetroNavdrawer::staticMetaObject, create<DrawerInterface>},
    {MetroLinerate::staticMetaObject, bar},
    {MetroCirclerate::staticMetaObject, dial},
    {MetroXbar::staticMetaObject, bar},
    {SlideSwitch::staticMetaObject, create<SlideSwitchInterface>},
    {SimpleSlideSwitch::staticMetaObject, create<SimpleSlideSwitchInterface>},
    {RotateStackedWidget::staticMetaObject, create<StackInterface>},
};

} // namespace

QAccessibleInterface *AccessiblePlugin::create(const QString &key, QObject *object)
{
    for (const Maker &maker : makers) {
        if (key != QLatin1String(maker.widgetClass.className()))
            continue;
        QObject *widget = maker.widgetClass.cast(object);
        if (!widget)
            return nullptr;
        WidgetInterface *made = maker.create(static_cast<QWidget *>(widget));
        made->watch();
        return made;
    }
    return nullptr;
}

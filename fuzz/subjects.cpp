// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "subjects.h"

#include "values.h"
#include "widgetcatalogue.h"

#include <aerobutton.h>
#include <aerogroupbox.h>
#include <aerolinebar.h>
#include <aerostatusbar.h>
#include <aeroswitch.h>
#include <metrobatticon.h>
#include <metrocirclerate.h>
#include <metronavdrawer.h>
#include <metroshelter.h>
#include <metrostatusbar.h>
#include <metrosysicon.h>
#include <metrotabicon.h>
#include <rotatestackedwidget.h>
#include <simpleslideswitch.h>
#include <slideswitch.h>
#include <transpbutton.h>

#include <QtGui/QImage>
#include <QtGui/QPainter>

using namespace Values;

namespace {

elemDesc_t someState(Bytes &bytes)
{
    const std::uint8_t alarm = bytes.byte();
    return {alarm, bytes.byte()};
}

/// A painter on an image of its own, for the public painting steps.
struct Canvas
{
    QImage image{60, 40, QImage::Format_ARGB32_Premultiplied};
    QPainter painter{&image};
};

void callOwn(AeroButton *button, Bytes &bytes)
{
    if (bytes.flag())
        button->setText(someString(bytes));
    else
        button->setIcon(someIcon(bytes));
}

void callOwn(AeroSwitch *button, Bytes &bytes)
{
    switch (bytes.below(5)) {
    case 0:
        button->selectSwitch();
        break;
    case 1:
        button->unselectSwitch();
        break;
    case 2:
        button->clickedSwitch();
        break;
    default:
        callOwn(static_cast<AeroButton *>(button), bytes);
        break;
    }
}

void callOwn(TranspButton *button, Bytes &bytes)
{
    button->setIcon(someIcon(bytes));
}

void callOwn(AeroStatusbar *strip, Bytes &bytes)
{
    strip->setFrameStyle(someInt(bytes));
}

void callOwn(AeroGroupbox *box, Bytes &bytes)
{
    box->setTitle(someString(bytes));
}

void callOwn(AeroLinebar *bar, Bytes &bytes)
{
    switch (bytes.below(3)) {
    case 0:
        bar->setText(someString(bytes));
        break;
    case 1:
        bar->setValueFormat(someString(bytes));
        break;
    default:
        bar->SplitArea();
        break;
    }
}

template <typename Icon>
void callIcon(Icon *icon, Bytes &bytes)
{
    switch (bytes.below(4)) {
    case 0:
        icon->createImages();
        break;
    case 1: {
        Canvas canvas;
        icon->paintBase(&canvas.painter);
        icon->paintIcon(&canvas.painter);
        break;
    }
    case 2:
        icon->paintImage();
        break;
    default:
        icon->setIcon(someIcon(bytes));
        break;
    }
}

void callOwn(MetroSysIcon *icon, Bytes &bytes)
{
    callIcon(icon, bytes);
}

void callOwn(MetroBattIcon *icon, Bytes &bytes)
{
    callIcon(icon, bytes);
}

void callOwn(MetroShelter *tile, Bytes &bytes)
{
    switch (bytes.below(5)) {
    case 0:
        tile->createImages();
        break;
    case 1: {
        Canvas canvas;
        tile->paintText(&canvas.painter);
        break;
    }
    case 2:
        tile->paintImage();
        break;
    case 3:
        tile->setText(someString(bytes));
        break;
    default:
        tile->setIcon(someIcon(bytes));
        break;
    }
}

void callOwn(MetroTabicon *tab, Bytes &bytes)
{
    switch (bytes.below(3)) {
    case 0:
        tab->createImages();
        break;
    case 1:
        tab->paintImages();
        break;
    default:
        tab->setIcon(someIcon(bytes));
        break;
    }
}

void callOwn(MetroStatusbar *strip, Bytes &bytes)
{
    if (bytes.flag())
        strip->createImages();
    else
        strip->setFrameStyle(someInt(bytes));
}

void callOwn(MetroNavdrawer *drawer, Bytes &bytes)
{
    switch (bytes.below(4)) {
    case 0:
        drawer->setState(static_cast<MetroNavdrawer::state_E>(bytes.below(3)));
        break;
    case 1: {
        const QSize size = someWidgetSize(bytes);
        drawer->setGeometry(QRect(QPoint(bytes.byte(), bytes.byte()), size));
        break;
    }
    case 2: {
        drawer->move(somePoint(bytes));
        break;
    }
    default:
        drawer->createImages();
        break;
    }
}

void callOwn(MetroCirclerate *dial, Bytes &bytes)
{
    dial->val2angle(someDouble(bytes));
}

void callOwn(SlideSwitch *button, Bytes &bytes)
{
    button->setIcon(someIcon(bytes));
}

void callOwn(SimpleSlideSwitch *button, Bytes &bytes)
{
    if (bytes.flag())
        button->setChecked(bytes.flag());
    else
        button->updateWidgetsIcon(someWidgetSize(bytes));
}

void callOwn(RotateStackedWidget *stack, Bytes &bytes)
{
    switch (bytes.below(6)) {
    case 0:
        stack->setAnimationEnabled(bytes.flag());
        break;
    case 1:
        stack->initAnimation();
        break;
    case 2:
        static_cast<QStackedWidget *>(stack)->setCurrentIndex(bytes.below(5) - 1);
        break;
    default:
        stack->setAnimationEnabled(true);
        stack->setCurrentIndex(bytes.below(5) - 1);
        break;
    }
}

template <typename Widget>
void callOwnOf(QWidget *widget, Bytes &bytes)
{
    callOwn(static_cast<Widget *>(widget), bytes);
}

/// The classes with public methods that neither a property nor a style base reaches.
const struct
{
    const QMetaObject &widgetClass;
    void (*callOwn)(QWidget *widget, Bytes &bytes);
} withMethods[] = {
    {AeroButton::staticMetaObject, callOwnOf<AeroButton>},
    {AeroGroupbox::staticMetaObject, callOwnOf<AeroGroupbox>},
    {AeroLinebar::staticMetaObject, callOwnOf<AeroLinebar>},
    {AeroStatusbar::staticMetaObject, callOwnOf<AeroStatusbar>},
    {AeroSwitch::staticMetaObject, callOwnOf<AeroSwitch>},
    {MetroBattIcon::staticMetaObject, callOwnOf<MetroBattIcon>},
    {MetroCirclerate::staticMetaObject, callOwnOf<MetroCirclerate>},
    {MetroNavdrawer::staticMetaObject, callOwnOf<MetroNavdrawer>},
    {MetroShelter::staticMetaObject, callOwnOf<MetroShelter>},
    {MetroStatusbar::staticMetaObject, callOwnOf<MetroStatusbar>},
    {MetroSysIcon::staticMetaObject, callOwnOf<MetroSysIcon>},
    {MetroTabicon::staticMetaObject, callOwnOf<MetroTabicon>},
    {RotateStackedWidget::staticMetaObject, callOwnOf<RotateStackedWidget>},
    {SimpleSlideSwitch::staticMetaObject, callOwnOf<SimpleSlideSwitch>},
    {SlideSwitch::staticMetaObject, callOwnOf<SlideSwitch>},
    {TranspButton::staticMetaObject, callOwnOf<TranspButton>},
};

void callAero(AeroStyle *style, Bytes &bytes)
{
    QColor color = someColor(bytes);
    QColor shadow = someColor(bytes);
    const int kind = bytes.below(8);
    if (kind < 4) {
        style->setAeroProperty(kind & 1 ? &color : nullptr, kind & 2 ? &shadow : nullptr);
    } else {
        Canvas canvas;
        style->paintBase(&canvas.painter, color, shadow, color, someRect(bytes));
    }
}

void callMetro(MetroStyle *style, Bytes &bytes)
{
    style->setState(someState(bytes));
    style->getColorIdx();
}

void call(QWidget *widget, Bytes &bytes)
{
    if (bytes.flag()) {
        for (const auto &[widgetClass, callOwn] : withMethods) {
            if (widget->metaObject() == &widgetClass) {
                callOwn(widget, bytes); // may delete the widget
                return;
            }
        }
        return;
    }
    if (auto *style = dynamic_cast<AeroStyle *>(widget))
        callAero(style, bytes);
    if (auto *style = dynamic_cast<MetroStyle *>(widget))
        callMetro(style, bytes);
}

} // namespace

std::vector<Subject> subjects()
{
    std::vector<Subject> all;
    for (const WidgetDescription &description : widgetCatalogue())
        all.push_back({QByteArray(description.className).toLower(), description.create, call});
    return all;
}

const Subject *subjectNamed(const char *name)
{
    static const std::vector<Subject> all = subjects();
    for (const Subject &known : all) {
        if (known.name == name)
            return &known;
    }
    return nullptr;
}

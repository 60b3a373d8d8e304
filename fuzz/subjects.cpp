#include "subjects.h"

#include "values.h"

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

#include <QtGui/QImage>
#include <QtGui/QPainter>

#include <cstring>
#include <type_traits>

using namespace Values;

namespace {

elemDesc_t someState(Bytes &bytes)
{
    const std::uint8_t alarm = bytes.byte();
    return {alarm, bytes.byte()};
}

/// A painter on a picture of its own, for the public painting steps.
struct Canvas
{
    QImage picture{60, 40, QImage::Format_ARGB32_Premultiplied};
    QPainter painter{&picture};
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

void callOwn(MetroSysIcon *icon, Bytes &bytes)
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

void callOwn(MetroBattIcon *icon, Bytes &bytes)
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

void callOwn(MetroLinerate *, Bytes &)
{}

void callOwn(MetroCirclerate *dial, Bytes &bytes)
{
    dial->val2angle(someDouble(bytes));
}

void callOwn(MetroXbar *, Bytes &)
{}

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
QWidget *make(QWidget *parent)
{
    return new Widget(parent);
}

template <typename Widget>
void call(QWidget *widget, Bytes &bytes)
{
    auto *own = static_cast<Widget *>(widget);
    if (bytes.flag()) {
        callOwn(own, bytes);
        return;
    }
    if constexpr (std::is_base_of_v<AeroStyle, Widget>) {
        QColor color = someColor(bytes);
        QColor shadow = someColor(bytes);
        const int kind = bytes.below(8);
        if (kind < 4) {
            own->setAeroProperty(kind & 1 ? &color : nullptr, kind & 2 ? &shadow : nullptr);
        } else {
            Canvas canvas;
            own->paintBase(&canvas.painter, color, shadow, color, someRect(bytes));
        }
    }
    if constexpr (std::is_base_of_v<MetroStyle, Widget>) {
        own->MetroStyle::setState(someState(bytes));
        own->getColorIdx();
    }
}

template <typename Widget>
constexpr Subject subject(const char *name)
{
    return {name, make<Widget>, call<Widget>};
}

} // namespace

const std::vector<Subject> &subjects()
{
    static const std::vector<Subject> all = {
        subject<AeroButton>("aerobutton"),
        subject<AeroGroupbox>("aerogroupbox"),
        subject<AeroLinebar>("aerolinebar"),
        subject<AeroStatusbar>("aerostatusbar"),
        subject<AeroSwitch>("aeroswitch"),
        subject<MetroBattIcon>("metrobatticon"),
        subject<MetroCirclerate>("metrocirclerate"),
        subject<MetroLinerate>("metrolinerate"),
        subject<MetroNavdrawer>("metronavdrawer"),
        subject<MetroShelter>("metroshelter"),
        subject<MetroStatusbar>("metrostatusbar"),
        subject<MetroSysIcon>("metrosysicon"),
        subject<MetroTabicon>("metrotabicon"),
        subject<MetroXbar>("metroxbar"),
        subject<RotateStackedWidget>("rotatestackedwidget"),
        subject<SimpleSlideSwitch>("simpleslideswitch"),
        subject<SlideSwitch>("slideswitch"),
        subject<TranspButton>("transpbutton"),
    };
    return all;
}

const Subject *subjectNamed(const char *name)
{
    for (const Subject &known : subjects()) {
        if (std::strcmp(known.name, name) == 0)
            return &known;
    }
    return nullptr;
}

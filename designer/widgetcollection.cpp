#include "widgetcollection.h"

#include "customwidget.h"

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

#include <QtGui/QPainter>

namespace {

constexpr char aero[] = "KivWidgets: Aero";
constexpr char metro[] = "KivWidgets: Metro";
constexpr char pages[] = "KivWidgets: Switches and Pages";

constexpr elemDesc_t inOrder{1, 5};

template <typename W>
QWidget *create(QWidget *parent)
{
    return new W(parent);
}

/// A dot in the middle, for widgets that are made to carry an icon.
QIcon dot(const QColor &color)
{
    QPixmap pixmap(24, 24);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(color, 4));
    painter.drawEllipse(5, 5, 14, 14);
    return QIcon(pixmap);
}

template <typename W>
void showState(QWidget *widget)
{
    static_cast<W *>(widget)->setState(inOrder);
}

void addIcon(QWidget *widget)
{
    static_cast<QAbstractButton *>(widget)->setIconSize(QSize(24, 24));
    static_cast<QAbstractButton *>(widget)->setIcon(dot(QColor(0, 174, 240)));
}

void showText(QWidget *widget)
{
    static_cast<AeroButton *>(widget)->setText(QStringLiteral("OK"));
}

void showLit(QWidget *widget)
{
    auto *control = static_cast<AeroSwitch *>(widget);
    control->setHighlight(QColor(0, 174, 240));
    control->setChecked(true);
}

void showSysIcon(QWidget *widget)
{
    auto *icon = static_cast<MetroSysIcon *>(widget);
    icon->setIconSize(QSize(24, 24));
    icon->setIcon(dot(Qt::white));
    icon->setState(inOrder);
}

void showTab(QWidget *widget)
{
    addIcon(widget);
    static_cast<MetroTabicon *>(widget)->setState({2, 5});
}

void check(QWidget *widget)
{
    static_cast<QAbstractButton *>(widget)->setChecked(true);
}

void checkSimple(QWidget *widget)
{
    static_cast<SimpleSlideSwitch *>(widget)->setChecked(true);
}

/// The icon of the stack: a card that is about to turn.
void showCard(QWidget *widget)
{
    auto *stack = static_cast<RotateStackedWidget *>(widget);
    auto *page = new QWidget;
    page->setAutoFillBackground(true);
    QPalette palette = page->palette();
    palette.setColor(QPalette::Window, QColor(0, 108, 160));
    page->setPalette(palette);
    stack->addWidget(page);
}

#define TEXT_PROPERTY(name, text) "<property name=\"" name "\"><string>" text "</string></property>"

// clang-format off
const WidgetDescription descriptions[] = {
    {"AeroButton", aero, "Glass push button with text and icon",
     TEXT_PROPERTY("text", "Button"), 120, 40, false, create<AeroButton>, showText},
    {"AeroSwitch", aero, "Glass button that stays in and lights up",
     TEXT_PROPERTY("text", "Switch"), 120, 40, false, create<AeroSwitch>, showLit},
    {"TranspButton", aero, "Icon and text on a transparent ground",
     TEXT_PROPERTY("text", "Button"), 80, 60, false, create<TranspButton>, addIcon},
    {"AeroStatusbar", aero, "Glass strip for a status area", "", 300, 40, true,
     create<AeroStatusbar>, nullptr},
    {"AeroGroupbox", aero, "Group box on glass or on a picture",
     TEXT_PROPERTY("title", "Group"), 240, 140, true, create<AeroGroupbox>, nullptr},
    {"AeroLinebar", aero, "Glass bar gauge with ticks and value text", "", 240, 50, false,
     create<AeroLinebar>, nullptr},
    {"MetroSysIcon", metro, "Icon on a plate in the colour of a state", "", 36, 36, false,
     create<MetroSysIcon>, showSysIcon},
    {"MetroBattIcon", metro, "Battery in the state of an element", "", 72, 72, false,
     create<MetroBattIcon>, showState<MetroBattIcon>},
    {"MetroShelter", metro, "Tile with a label and a state LED",
     TEXT_PROPERTY("text", "Element"), 140, 44, false, create<MetroShelter>, showState<MetroShelter>},
    {"MetroTabicon", metro, "Tab with an icon and an alarm LED", "", 64, 64, false,
     create<MetroTabicon>, showTab},
    {"MetroStatusbar", metro, "Strip across the top of a page", "", 800, 42, true,
     create<MetroStatusbar>, nullptr},
    {"MetroNavdrawer", metro, "Drawer that opens over the page", "", 200, 90, true,
     create<MetroNavdrawer>, nullptr},
    {"MetroLinerate", metro, "Percentage bar with over-range display", "", 240, 30, false,
     create<MetroLinerate>, nullptr},
    {"MetroCirclerate", metro, "Dial gauge on a segmented ring",
     TEXT_PROPERTY("label", "Load"), 76, 51, false, create<MetroCirclerate>, nullptr},
    {"MetroXbar", metro, "Bar gauge for a number with its unit",
     TEXT_PROPERTY("measure", "V"), 240, 30, false, create<MetroXbar>, nullptr},
    {"SlideSwitch", pages, "Large slide switch with locked and partly-on looks", "", 190, 60, false,
     create<SlideSwitch>, check},
    {"SimpleSlideSwitch", pages, "Small slide switch made of pictures", "", 78, 27, false,
     create<SimpleSlideSwitch>, checkSimple},
    {"RotateStackedWidget", pages, "Stack that turns its pages like cards", "", 300, 200, true,
     create<RotateStackedWidget>, showCard},
};
// clang-format on

} // namespace

WidgetCollection::WidgetCollection(QObject *parent)
    : QObject(parent)
{
    for (const WidgetDescription &description : descriptions)
        widgets.append(new CustomWidget(description, this));
}

QList<QDesignerCustomWidgetInterface *> WidgetCollection::customWidgets() const
{
    return widgets;
}

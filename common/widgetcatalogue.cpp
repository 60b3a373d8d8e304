// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "widgetcatalogue.h"

#include "elementstate_p.h"

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

#include <QtCore/QCoreApplication>
#include <QtGui/QPainter>

#include <algorithm>
#include <memory>

namespace {

constexpr elemDesc_t inOrder{1, 5};

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

void addIcon(QWidget *widget)
{
    static_cast<QAbstractButton *>(widget)->setIconSize(QSize(24, 24));
    static_cast<QAbstractButton *>(widget)->setIcon(dot(QColor(KivPrivate::lightBlue)));
}

void showText(QWidget *widget)
{
    static_cast<AeroButton *>(widget)->setText(QStringLiteral("OK"));
}

void showLit(QWidget *widget)
{
    auto *control = static_cast<AeroSwitch *>(widget);
    control->setHighlight(QColor(KivPrivate::lightBlue));
    control->setChecked(true);
}

void showSysIcon(QWidget *widget)
{
    auto *icon = static_cast<MetroSysIcon *>(widget);
    icon->setIconSize(QSize(24, 24));
    icon->setIcon(dot(Qt::white));
}

void showTab(QWidget *widget)
{
    addIcon(widget);
    // Its LED shows only with an alarm.
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
    palette.setColor(QPalette::Window, QColor(KivPrivate::deepBlue));
    page->setPalette(palette);
    stack->addWidget(page);
}

/// Lists show 16 pixels and more, Qt Designer 22; the larger ones are for dense screens.
constexpr int iconSides[] = {16, 22, 24, 32, 44, 48};

/// An image of @p widget, shrunk into a square of each size.
QIcon iconOf(QWidget *widget)
{
    // A window that is never shown lets the widget find its own size without a trace on screen.
    QWidget window;
    widget->setParent(&window);
    widget->move(0, 0);
    window.resize(widget->size());
    window.setAttribute(Qt::WA_DontShowOnScreen);
    window.setAttribute(Qt::WA_TranslucentBackground);
    window.show();
    QCoreApplication::sendPostedEvents();
    // On a dense screen the widget has more pixels than its size.
    const qreal ratio = window.devicePixelRatioF();
    QPixmap large(widget->size() * ratio);
    large.setDevicePixelRatio(ratio);
    large.fill(Qt::transparent);
    widget->render(&large, QPoint(), QRegion(), QWidget::DrawChildren);
    large.setDevicePixelRatio(1);
    window.hide();
    widget->setParent(nullptr);

    QIcon icon;
    for (const int side : iconSides) {
        QPixmap square(side, side);
        square.fill(Qt::transparent);
        const QPixmap small =
            large.scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        QPainter painter(&square);
        painter.drawPixmap((side - small.width()) / 2, (side - small.height()) / 2, small);
        painter.end();
        icon.addPixmap(square);
    }
    return icon;
}

/// A row of the catalogue, from what every widget has and what only some have.
template <typename W>
class Row
{
public:
    Row(WidgetFamily family, const char *toolTip, QSize size)
    {
        row.className = W::staticMetaObject.className();
        row.metaObject = &W::staticMetaObject;
        row.create = [](QWidget *parent) -> QWidget * { return new W(parent); };
        row.family = family;
        row.toolTip = toolTip;
        row.size = size;
        row.minimumSize = size;
    }
    Row &minimum(QSize size)
    {
        row.minimumSize = size;
        return *this;
    }
    Row &role(QAccessible::Role role)
    {
        row.role = role;
        return *this;
    }
    Row &container()
    {
        row.isContainer = true;
        return *this;
    }
    Row &sizesItself()
    {
        row.sizesItself = true;
        return *this;
    }
    Row &needsLightBackground()
    {
        row.needsLightBackground = true;
        return *this;
    }
    Row &label(const char *property, const char *text)
    {
        row.label = {property, text};
        return *this;
    }
    Row &use(const char *text)
    {
        row.use = text;
        return *this;
    }
    Row &form(const char *contents, const char *hints = "")
    {
        row.formContents = contents;
        row.formHints = hints;
        return *this;
    }
    Row &decorate(void (*function)(QWidget *widget))
    {
        row.decorate = function;
        return *this;
    }
    Row &showsState()
    {
        row.setState = [](QWidget *widget, elemDesc_t state) {
            static_cast<W *>(widget)->setState(state);
        };
        return *this;
    }
    operator WidgetDescription() const
    {
        return row;
    }

private:
    WidgetDescription row;
};

#define KIV_PROPERTY(name, value) "<property name=\"" name "\">" value "</property>"
/// The setter has another name than the form's compiler would make up.
#define KIV_NO_SETTER(name, value) "<property name=\"" name "\" stdset=\"0\">" value "</property>"
#define KIV_BOOL(name, value) KIV_PROPERTY(name, "<bool>" value "</bool>")
#define KIV_NUMBER(name, value) KIV_PROPERTY(name, "<number>" value "</number>")
#define KIV_DOUBLE(name, value) KIV_PROPERTY(name, "<double>" value "</double>")
#define KIV_ENUM(name, value) KIV_PROPERTY(name, "<enum>" value "</enum>")
#define KIV_COLOR(name, red, green, blue)                                                          \
    KIV_PROPERTY(name,                                                                             \
                 "<color><red>" red "</red><green>" green "</green><blue>" blue "</blue></color>")
/// One of the library's own images, which every program that uses the library has.
#define KIV_ICON(file, side)                                                                       \
    KIV_PROPERTY("icon", "<iconset><normaloff>:/Images/" file "</normaloff></iconset>")            \
    KIV_PROPERTY("iconSize", "<size><width>" side "</width><height>" side "</height></size>")
#define KIV_PAGE(name) "<widget class=\"QWidget\" name=\"" name "\"/>"
/// A printf format is one line and is not translated.
#define KIV_FORMAT(property)                                                                       \
    "<propertyspecifications>"                                                                     \
    "<tooltip name=\"" property "\">printf format for one number</tooltip>"                        \
    "<stringpropertyspecification name=\"" property "\" notr=\"true\" type=\"singleline\"/>"       \
    "</propertyspecifications>"

} // namespace

void WidgetDescription::populate(QWidget *widget) const
{
    if (setState)
        setState(widget, inOrder);
    if (decorate)
        decorate(widget);
}

QIcon WidgetDescription::drawIcon() const
{
    const std::unique_ptr<QWidget> widget(create(nullptr));
    // A long widget would shrink to a line.
    widget->resize(std::min(size.width(), size.height() * 5 / 2), size.height());
    populate(widget.get());
    return iconOf(widget.get());
}

const std::vector<WidgetDescription> &widgetCatalogue()
{
    // clang-format off
    static const std::vector<WidgetDescription> catalogue = {
        Row<AeroButton>(WidgetFamily::Aero, "Glass push button with text and icon", {120, 40})
            .minimum({80, 32})
            .role(QAccessible::Button)
            .label("text", "Button")
            .decorate(showText)
            .use("Set color and shadow for the glass, colorPen and widthPen for the outline. "
                 "Its look does not change when it is pressed; clicked() reports a click."),
        Row<AeroSwitch>(WidgetFamily::Aero, "Glass button that stays in and lights up", {120, 40})
            .minimum({80, 32})
            .role(QAccessible::CheckBox)
            .label("text", "Switch")
            .decorate(showLit)
            .use("While checked it takes its highlight colour; toggled() reports a change.")
            .form(KIV_BOOL("checked", "true") KIV_COLOR("highlight", "0", "174", "240")),
        Row<TranspButton>(WidgetFamily::Aero, "Icon and text on a transparent background", {80, 60})
            .role(QAccessible::Button)
            .label("text", "Button")
            .decorate(addIcon)
            .use("Grows to the size of its icon. posLabel moves the text away from the middle.")
            .form(KIV_ICON("batt_ok.png", "36") KIV_PROPERTY("posLabel", "<point><x>0</x><y>22</y></point>")),
        Row<AeroStatusbar>(WidgetFamily::Aero, "Glass strip for a status area", {300, 40})
            .minimum({120, 36})
            .role(QAccessible::StatusBar)
            .container()
            .use("Put lamps, labels and buttons into it and give it a horizontal layout."),
        Row<AeroGroupbox>(WidgetFamily::Aero, "Group box on glass or on an image", {240, 140})
            .minimum({120, 80})
            .role(QAccessible::Grouping)
            .container()
            .label("title", "Group")
            .use("backgroudType chooses the background: the glass panel, which takes color and shadow, "
                 "or the image backgroundGroup. What does not apply is greyed out."),
        Row<AeroLinebar>(WidgetFamily::Aero, "Glass bar gauge with ticks and value text", {240, 50})
            .minimum({160, 50})
            .role(QAccessible::ProgressBar)
            .needsLightBackground()
            .use("minValueF and maxValueF are the ends of the scale, valueF is what is shown, "
                 "valuePosition where the text of the value stands.")
            .form(KIV_NO_SETTER("valueF", "<double>60.0</double>") KIV_ENUM("valuePosition", "AeroLinebar::rightVal"), KIV_FORMAT("valueFormat")),
        Row<MetroSysIcon>(WidgetFamily::Metro, "Icon on a plate in the colour of a state", {36, 36})
            .role(QAccessible::Button)
            .sizesItself()
            .decorate(showSysIcon)
            .showsState()
            .use("Sizes itself to its icon and border. The state is set in code, with setState().")
            .form(KIV_ICON("stato-LED-OK-ON.png", "16")),
        Row<MetroBattIcon>(WidgetFamily::Metro, "Battery in the state of an element", {72, 72})
            .role(QAccessible::Button)
            .sizesItself()
            .showsState()
            .use("The state is set in code, with setState(); until then it is unknown."),
        Row<MetroShelter>(WidgetFamily::Metro, "Tile with a label and a state LED", {140, 44})
            .minimum({120, 40})
            .role(QAccessible::Button)
            .label("text", "Element")
            .showsState()
            .use("xLabel is where the text begins. The state is set in code, with setState()."),
        Row<MetroTabicon>(WidgetFamily::Metro, "Tab with an icon and an alarm LED", {64, 64})
            .role(QAccessible::PageTab)
            .decorate(showTab)
            .showsState()
            .use("One tab among its siblings is checked. The state is set in code, with setState().")
            .form(KIV_ICON("batt_ok.png", "48")),
        Row<MetroStatusbar>(WidgetFamily::Metro, "Strip across the top of a page", {800, 42})
            .role(QAccessible::StatusBar)
            .container()
            .sizesItself()
            .use("Takes the size of its image at a resize. Put tabs, labels and lamps into it."),
        Row<MetroNavdrawer>(WidgetFamily::Metro, "Drawer that opens over the page", {200, 90})
            .minimum({62, 76})
            .role(QAccessible::Grouping)
            .container()
            .use("Open, it is as wide as its children side by side and the tab; its right edge stays. "
                 "Place that edge at the edge of the page."),
        Row<MetroLinerate>(WidgetFamily::Metro, "Percentage bar with over-range display", {240, 30})
            .minimum({140, 30})
            .role(QAccessible::ProgressBar)
            .needsLightBackground()
            .use("Orange above 100, red from 126.")
            .form(KIV_NUMBER("value", "60")),
        Row<MetroCirclerate>(WidgetFamily::Metro, "Dial gauge on a segmented ring", {76, 51})
            .role(QAccessible::Dial)
            .sizesItself()
            .label("label", "Load")
            .use("radius, arcSize and minAngle decide its size; label and the value, written with "
                 "formatStr, stand over it.")
            .form(KIV_DOUBLE("value", "60.0"), KIV_FORMAT("formatStr")),
        Row<MetroXbar>(WidgetFamily::Metro, "Bar gauge for a number with its unit", {240, 30})
            .minimum({160, 30})
            .role(QAccessible::ProgressBar)
            .label("measure", " V ")
            .needsLightBackground()
            .use("minValue and maxValue are the ends of the scale; measure is the unit.")
            .form(KIV_NUMBER("value", "230")),
        Row<SlideSwitch>(WidgetFamily::SwitchesAndPages, "Large slide switch with locked and partly-on looks", {190, 60})
            .role(QAccessible::CheckBox)
            .sizesItself()
            .decorate(check)
            .use("Drag the knob to the other side; toggled() reports a change. locked and partialON put "
                 "the knob in the middle.")
            .form(KIV_BOOL("checked", "true")),
        Row<SimpleSlideSwitch>(WidgetFamily::SwitchesAndPages, "Small slide switch made of images", {78, 27})
            .role(QAccessible::CheckBox)
            .sizesItself()
            .decorate(checkSimple)
            .use("Takes the size of the track image that was set last; marginLeft and marginRight bound "
                 "the way of the knob."),
        Row<RotateStackedWidget>(WidgetFamily::SwitchesAndPages, "Stack that turns its pages like cards", {300, 200})
            .minimum({160, 120})
            .role(QAccessible::LayeredPane)
            .container()
            .decorate(showCard)
            .use("Add pages with its context menu. Animation is switched on in code, with "
                 "setAnimationEnabled(), and setCurrentIndex() changes the page.")
            .form(KIV_PAGE("page") KIV_PAGE("page_2")),
    };
    // clang-format on
    return catalogue;
}

const WidgetDescription *findWidget(const QString &className)
{
    const std::vector<WidgetDescription> &all = widgetCatalogue();
    const auto found = std::find_if(all.begin(), all.end(), [&](const WidgetDescription &each) {
        return className.compare(QLatin1String(each.className), Qt::CaseInsensitive) == 0;
    });
    return found == all.end() ? nullptr : &*found;
}

#include "widgetcatalogue.h"

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
void setState(QWidget *widget, elemDesc_t state)
{
    static_cast<W *>(widget)->setState(state);
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
    palette.setColor(QPalette::Window, QColor(0, 108, 160));
    page->setPalette(palette);
    stack->addWidget(page);
}

/// Lists show 16 pixels and more, Qt Designer 22; the larger ones are for dense screens.
constexpr int iconSides[] = {16, 22, 24, 32, 44, 48};

/// A picture of @p widget, shrunk into a square of each size.
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
    QPixmap large(widget->size());
    large.fill(Qt::transparent);
    widget->render(&large, QPoint(), QRegion(), QWidget::DrawChildren);
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
        {"AeroButton", WidgetFamily::Aero, "Glass push button with text and icon",
         {120, 40}, false, create<AeroButton>, {"text", "Button"}, showText},
        {"AeroSwitch", WidgetFamily::Aero, "Glass button that stays in and lights up",
         {120, 40}, false, create<AeroSwitch>, {"text", "Switch"}, showLit},
        {"TranspButton", WidgetFamily::Aero, "Icon and text on a transparent ground",
         {80, 60}, false, create<TranspButton>, {"text", "Button"}, addIcon},
        {"AeroStatusbar", WidgetFamily::Aero, "Glass strip for a status area",
         {300, 40}, true, create<AeroStatusbar>, {}},
        {"AeroGroupbox", WidgetFamily::Aero, "Group box on glass or on a picture",
         {240, 140}, true, create<AeroGroupbox>, {"title", "Group"}},
        {"AeroLinebar", WidgetFamily::Aero, "Glass bar gauge with ticks and value text",
         {240, 50}, false, create<AeroLinebar>, {}},
        {"MetroSysIcon", WidgetFamily::Metro, "Icon on a plate in the colour of a state",
         {36, 36}, false, create<MetroSysIcon>, {}, showSysIcon, setState<MetroSysIcon>, true},
        {"MetroBattIcon", WidgetFamily::Metro, "Battery in the state of an element",
         {72, 72}, false, create<MetroBattIcon>, {}, nullptr, setState<MetroBattIcon>, true},
        {"MetroShelter", WidgetFamily::Metro, "Tile with a label and a state LED",
         {140, 44}, false, create<MetroShelter>, {"text", "Element"}, nullptr, setState<MetroShelter>},
        {"MetroTabicon", WidgetFamily::Metro, "Tab with an icon and an alarm LED",
         {64, 64}, false, create<MetroTabicon>, {}, showTab, setState<MetroTabicon>},
        {"MetroStatusbar", WidgetFamily::Metro, "Strip across the top of a page",
         {800, 42}, true, create<MetroStatusbar>, {}, nullptr, nullptr, true},
        {"MetroNavdrawer", WidgetFamily::Metro, "Drawer that opens over the page",
         {200, 90}, true, create<MetroNavdrawer>, {}},
        {"MetroLinerate", WidgetFamily::Metro, "Percentage bar with over-range display",
         {240, 30}, false, create<MetroLinerate>, {}},
        {"MetroCirclerate", WidgetFamily::Metro, "Dial gauge on a segmented ring",
         {76, 51}, false, create<MetroCirclerate>, {"label", "Load"}, nullptr, nullptr, true},
        {"MetroXbar", WidgetFamily::Metro, "Bar gauge for a number with its unit",
         {240, 30}, false, create<MetroXbar>, {"measure", "V"}},
        {"SlideSwitch", WidgetFamily::SwitchesAndPages, "Large slide switch with locked and partly-on looks",
         {190, 60}, false, create<SlideSwitch>, {}, check, nullptr, true},
        {"SimpleSlideSwitch", WidgetFamily::SwitchesAndPages, "Small slide switch made of pictures",
         {78, 27}, false, create<SimpleSlideSwitch>, {}, checkSimple, nullptr, true},
        {"RotateStackedWidget", WidgetFamily::SwitchesAndPages, "Stack that turns its pages like cards",
         {300, 200}, true, create<RotateStackedWidget>, {}, showCard},
    };
    // clang-format on
    return catalogue;
}

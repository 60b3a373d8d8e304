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

#include <utility>

namespace {

/// Seen on a light and on a dark background.
const QColor plainInk(0x80, 0x8a, 0x94);

QIcon lampIcon(int side, const QColor &normal = Qt::white)
{
    const auto lamp = [side](const QColor &color) {
        QPixmap pixmap(side, side);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(color, side / 10.0));
        painter.drawEllipse(QRectF(side * 0.15, side * 0.15, side * 0.7, side * 0.7));
        painter.drawLine(QPointF(side * 0.5, side * 0.3), QPointF(side * 0.5, side * 0.6));
        return pixmap;
    };
    QIcon icon;
    icon.addPixmap(lamp(normal), QIcon::Normal, QIcon::Off);
    icon.addPixmap(lamp(QColor(240, 190, 40)), QIcon::Normal, QIcon::On);
    icon.addPixmap(lamp(QColor(40, 200, 255)), QIcon::Active, QIcon::Off);
    icon.addPixmap(lamp(QColor(190, 190, 190)), QIcon::Disabled, QIcon::Off);
    return icon;
}

const char *const alarmNames[] = {"lost", "no alarm", "warning", "anomaly", "fault", "locked"};
const char *const elementNames[] = {"unknown", "stand-by", "precharge", "calibration",
                                    "waiting", "on",       "battery",   "bypass"};

QString stateName(elemDesc_t state)
{
    return QStringLiteral("%1, %2").arg(QLatin1String(alarmNames[state.alarmSt]),
                                        QLatin1String(elementNames[state.elemSt]));
}

/// Collects the states of one class.
class States
{
public:
    /// Adds a widget of class W in the size given, or in its own, set up by @p populate.
    template <typename W>
    void add(const QString &caption, QSize size, std::function<void(W *)> populate)
    {
        all.push_back({caption,
                       [size, populate = std::move(populate)](QWidget *parent) {
                           auto *widget = new W(parent);
                           if (size.isValid())
                               widget->QWidget::resize(size);
                           populate(widget);
                           return widget;
                       },
                       nextBeginsRow});
        nextBeginsRow = false;
    }

    /// The next state stands apart.
    void beginRow()
    {
        nextBeginsRow = true;
    }

    std::vector<WidgetState> all;

private:
    bool nextBeginsRow = false;
};

std::vector<WidgetState> aeroButtons()
{
    States states;
    const QSize size(130, 40);
    const auto text = [](AeroButton *button) { button->setText(QStringLiteral("Start")); };
    states.add<AeroButton>(QStringLiteral("text"), size, text);
    states.add<AeroButton>(QStringLiteral("icon"), size,
                           [](AeroButton *button) { button->setIcon(lampIcon(16)); });
    states.add<AeroButton>(QStringLiteral("icon and text"), size, [=](AeroButton *button) {
        text(button);
        button->setIcon(lampIcon(16));
    });
    states.add<AeroButton>(QStringLiteral("coloured"), size, [=](AeroButton *button) {
        text(button);
        button->setColor(QColor(KivPrivate::lightBlue));
        button->setShadow(QColor(KivPrivate::darkBlue));
    });
    states.add<AeroButton>(QStringLiteral("disabled"), size, [=](AeroButton *button) {
        text(button);
        button->setColor(QColor(KivPrivate::lightBlue));
        button->setShadow(QColor(KivPrivate::darkBlue));
        button->setEnabled(false);
    });
    states.add<AeroButton>(QStringLiteral("opacity 0.5"), size, [=](AeroButton *button) {
        text(button);
        button->setOpacity(0.5);
    });
    for (const double angle : {40.0, 140.0, 180.0}) {
        states.add<AeroButton>(QStringLiteral("rotate %1").arg(angle), size,
                               [=](AeroButton *button) {
                                   text(button);
                                   button->setRotate(angle);
                               });
    }
    for (const int roundness : {0, 100}) {
        states.add<AeroButton>(QStringLiteral("roundness %1").arg(roundness), size,
                               [=](AeroButton *button) {
                                   text(button);
                                   button->setRoundness(roundness);
                               });
    }
    return std::move(states.all);
}

std::vector<WidgetState> aeroSwitches()
{
    States states;
    for (const bool enabled : {true, false}) {
        for (const bool checked : {false, true}) {
            const QString caption = QStringLiteral("%1%2").arg(
                checked ? QStringLiteral("checked") : QStringLiteral("unchecked"),
                enabled ? QString() : QStringLiteral(", disabled"));
            states.add<AeroSwitch>(caption, QSize(150, 40), [=](AeroSwitch *control) {
                control->setText(QStringLiteral("Bypass"));
                control->setHighlight(QColor(KivPrivate::lightBlue));
                control->setChecked(checked);
                control->setEnabled(enabled);
            });
        }
    }
    return std::move(states.all);
}

void enter(QWidget *widget)
{
    QEvent event(QEvent::Enter);
    QCoreApplication::sendEvent(widget, &event);
}

std::vector<WidgetState> transparentButtons()
{
    States states;
    const QSize size(110, 60);
    const auto populate = [](TranspButton *button) {
        button->setIconSize(QSize(32, 32));
        button->setIcon(lampIcon(32, plainInk));
        button->setText(QStringLiteral("Lamp"));
        button->setPosLabel(QPoint(0, 22));
    };
    states.add<TranspButton>(QStringLiteral("normal"), size, populate);
    states.add<TranspButton>(QStringLiteral("under the pointer"), size, [=](TranspButton *button) {
        populate(button);
        enter(button);
    });
    states.add<TranspButton>(QStringLiteral("disabled"), size, [=](TranspButton *button) {
        populate(button);
        button->setEnabled(false);
    });
    return std::move(states.all);
}

std::vector<WidgetState> aeroStatusbars()
{
    States states;
    for (const bool enabled : {true, false}) {
        states.add<AeroStatusbar>(enabled ? QStringLiteral("enabled") : QStringLiteral("disabled"),
                                  QSize(380, 36), [=](AeroStatusbar *strip) {
                                      strip->setColor(QColor(62, 78, 94));
                                      strip->setShadow(QColor(27, 34, 42));
                                      strip->setEnabled(enabled);
                                  });
    }
    return std::move(states.all);
}

std::vector<WidgetState> aeroGroupboxes()
{
    States states;
    const QSize size(250, 120);
    const QString title = QStringLiteral("Battery");
    const auto populate = [](AeroGroupbox *box) {
        box->setColor(QColor(62, 78, 94));
        box->setShadow(QColor(27, 34, 42));
        box->setRoundness(15);
    };
    states.add<AeroGroupbox>(QStringLiteral("with a title"), size, [=](AeroGroupbox *box) {
        populate(box);
        box->setTitle(title);
    });
    states.add<AeroGroupbox>(QStringLiteral("without a title"), size, populate);
    states.add<AeroGroupbox>(QStringLiteral("disabled"), size, [=](AeroGroupbox *box) {
        populate(box);
        box->setTitle(title);
        box->setEnabled(false);
    });
    states.add<AeroGroupbox>(QStringLiteral("an image"), size, [=](AeroGroupbox *box) {
        QPixmap image(64, 64);
        QPainter painter(&image);
        QLinearGradient gradient(0, 0, 64, 64);
        gradient.setColorAt(0, QColor(KivPrivate::darkBlue));
        gradient.setColorAt(1, QColor(KivPrivate::lightBlue));
        painter.fillRect(image.rect(), gradient);
        painter.end();
        box->setBackgroundType(AeroGroupbox::ImageBG);
        box->setBackgroundGroup(image);
        box->setTitle(title);
    });
    return std::move(states.all);
}

std::vector<WidgetState> aeroLinebars()
{
    States states;
    const QSize size(260, 50);
    const auto populate = [](AeroLinebar *bar) {
        bar->setColor(QColor(KivPrivate::lightBlue));
        bar->setShadow(QColor(KivPrivate::deepBlue));
        bar->setColorText(Qt::black);
    };
    const struct
    {
        const char *caption;
        AeroLinebar::ValPos position;
        double value;
    } rows[] = {
        {"no text", AeroLinebar::NoVal, 40},       {"text centred", AeroLinebar::CenterVal, 60},
        {"text inside", AeroLinebar::leftVal, 70}, {"text after", AeroLinebar::rightVal, 30},
        {"empty", AeroLinebar::rightVal, 0},       {"full", AeroLinebar::rightVal, 100},
    };
    for (const auto &row : rows) {
        states.add<AeroLinebar>(QLatin1String(row.caption), size, [=](AeroLinebar *bar) {
            populate(bar);
            bar->setValuePosition(row.position);
            bar->setValue(row.value);
        });
    }
    states.add<AeroLinebar>(QStringLiteral("without ticks"), size, [=](AeroLinebar *bar) {
        populate(bar);
        bar->setTickHeight(0);
        bar->setValue(55);
    });
    states.add<AeroLinebar>(QStringLiteral("disabled"), size, [=](AeroLinebar *bar) {
        populate(bar);
        bar->setValuePosition(AeroLinebar::CenterVal);
        bar->setValue(60);
        bar->setEnabled(false);
    });
    return std::move(states.all);
}

/// The states whose colours differ.
const elemDesc_t colorStates[] = {{1, 5}, {1, 6}, {1, 7}, {0, 0}, {2, 5}, {4, 5}};

std::vector<WidgetState> metroSysIcons()
{
    States states;
    const auto add = [&](const QString &caption, elemDesc_t state,
                         const std::function<void(MetroSysIcon *)> &populate) {
        states.add<MetroSysIcon>(caption, QSize(), [=](MetroSysIcon *icon) {
            icon->setIconSize(QSize(40, 40));
            icon->setIcon(lampIcon(40));
            icon->setState(state);
            populate(icon);
        });
    };
    for (const elemDesc_t state : colorStates)
        add(stateName(state), state, [](MetroSysIcon *) {});
    add(QStringLiteral("under the pointer"), {1, 5}, [](MetroSysIcon *icon) { enter(icon); });
    add(QStringLiteral("disabled"), {1, 5}, [](MetroSysIcon *icon) { icon->setEnabled(false); });
    return std::move(states.all);
}

std::vector<WidgetState> metroBattIcons()
{
    States states;
    for (const elemDesc_t state : colorStates) {
        states.add<MetroBattIcon>(stateName(state), QSize(),
                                  [=](MetroBattIcon *icon) { icon->setState(state); });
    }
    states.add<MetroBattIcon>(QStringLiteral("disabled"), QSize(), [=](MetroBattIcon *icon) {
        icon->setState({1, 5});
        icon->setEnabled(false);
    });
    return std::move(states.all);
}

std::vector<WidgetState> metroShelters()
{
    States states;
    const auto add = [&](elemDesc_t state, int height) {
        const QString caption =
            height == 40 ? stateName(state) : stateName(state) + QStringLiteral(", small");
        states.add<MetroShelter>(caption, QSize(190, height), [=](MetroShelter *tile) {
            tile->setText(QStringLiteral("Inverter"));
            tile->setState(state);
        });
    };
    for (const quint8 alarm : {quint8(1), quint8(2), quint8(4)}) {
        for (quint8 element = 1; element < 8; ++element)
            add({alarm, element}, 40);
    }
    for (const elemDesc_t state : {elemDesc_t{0, 0}, elemDesc_t{5, 1}})
        add(state, 40);
    states.beginRow();
    for (const elemDesc_t state : {elemDesc_t{1, 5}, elemDesc_t{0, 0}, elemDesc_t{5, 1}})
        add(state, 24);
    return std::move(states.all);
}

std::vector<WidgetState> metroTabicons()
{
    States states;
    for (const quint8 alarm : {quint8(1), quint8(0), quint8(2), quint8(3), quint8(4), quint8(5)}) {
        for (const bool checked : {false, true}) {
            const QString caption =
                QStringLiteral("%1%2").arg(QLatin1String(alarmNames[alarm]),
                                           checked ? QStringLiteral(", checked") : QString());
            states.add<MetroTabicon>(caption, QSize(64, 64), [=](MetroTabicon *tab) {
                tab->setAutoExclusive(false);
                tab->setIconSize(QSize(40, 40));
                tab->setIcon(lampIcon(40, plainInk));
                tab->setState({alarm, 5});
                tab->setChecked(checked);
            });
        }
    }
    return std::move(states.all);
}

std::vector<WidgetState> metroStatusbars()
{
    States states;
    states.add<MetroStatusbar>(QStringLiteral("the strip"), QSize(), [](MetroStatusbar *) {});
    return std::move(states.all);
}

std::vector<WidgetState> metroNavdrawers()
{
    States states;
    states.add<MetroNavdrawer>(QStringLiteral("open"), QSize(252, 90), [](MetroNavdrawer *) {});
    states.add<MetroNavdrawer>(QStringLiteral("closed"), QSize(62, 76), [](MetroNavdrawer *drawer) {
        drawer->setState(MetroNavdrawer::close);
    });
    return std::move(states.all);
}

std::vector<WidgetState> metroLinerates()
{
    States states;
    for (const int value : {0, 35, 100, 110, 125, 140, 200}) {
        states.add<MetroLinerate>(QStringLiteral("%1 %").arg(value), QSize(260, 30),
                                  [=](MetroLinerate *bar) { bar->setValue(value); });
    }
    return std::move(states.all);
}

std::vector<WidgetState> metroCirclerates()
{
    States states;
    const auto dial = [&](const QString &caption, double value,
                          const std::function<void(MetroCirclerate *)> &populate) {
        states.add<MetroCirclerate>(caption, QSize(), [=](MetroCirclerate *gauge) {
            gauge->setLabel(QStringLiteral("Load"));
            gauge->setValue(value);
            gauge->setRadius(60);
            gauge->setTickness(14);
            populate(gauge);
        });
    };
    for (const double value : {35.0, 0.0, 100.0, 120.0, 130.0})
        dial(QStringLiteral("%1 %").arg(value), value, [](MetroCirclerate *) {});
    dial(QStringLiteral("from zero"), -20, [](MetroCirclerate *gauge) {
        gauge->setMinValue(-50);
        gauge->setMaxValue(50);
        gauge->setPaintFromZero(true);
    });
    dial(QStringLiteral("270 degrees"), 60, [](MetroCirclerate *gauge) {
        gauge->setMinAngle(225);
        gauge->setArcSize(270);
    });
    dial(QStringLiteral("a quarter"), 60, [](MetroCirclerate *gauge) {
        gauge->setMinAngle(180);
        gauge->setArcSize(90);
    });
    dial(QStringLiteral("one segment"), 60, [](MetroCirclerate *gauge) { gauge->setNumTick(1); });
    return std::move(states.all);
}

std::vector<WidgetState> metroXbars()
{
    States states;
    for (const int value : {-20, 0, 115, 230, 300, 400}) {
        states.add<MetroXbar>(QStringLiteral("%1 V").arg(value), QSize(260, 30),
                              [=](MetroXbar *bar) {
                                  bar->setMeasure(QStringLiteral(" V "));
                                  bar->setValue(value);
                              });
    }
    return std::move(states.all);
}

std::vector<WidgetState> slideSwitches()
{
    States states;
    for (const bool checked : {false, true}) {
        const QString state = checked ? QStringLiteral("on") : QStringLiteral("off");
        const auto add = [&](const QString &caption,
                             const std::function<void(SlideSwitch *)> &populate) {
            states.add<SlideSwitch>(state + caption, QSize(), [=](SlideSwitch *control) {
                control->setChecked(checked);
                populate(control);
            });
        };
        add(QString(), [](SlideSwitch *) {});
        add(QStringLiteral(", partly"), [](SlideSwitch *control) { control->setPartialON(true); });
        add(QStringLiteral(", locked"), [](SlideSwitch *control) { control->setLocked(true); });
        add(QStringLiteral(", disabled"), [](SlideSwitch *control) { control->setEnabled(false); });
    }
    return std::move(states.all);
}

std::vector<WidgetState> simpleSlideSwitches()
{
    States states;
    for (const bool enabled : {true, false}) {
        for (const bool checked : {false, true}) {
            const QString caption =
                QStringLiteral("%1%2").arg(checked ? QStringLiteral("on") : QStringLiteral("off"),
                                           enabled ? QString() : QStringLiteral(", disabled"));
            states.add<SimpleSlideSwitch>(caption, QSize(), [=](SimpleSlideSwitch *control) {
                control->setChecked(checked);
                control->setEnabled(enabled);
            });
        }
    }
    return std::move(states.all);
}

/// A page of the rotating stack.
class Page : public QWidget
{
public:
    Page(const QColor &pageColor, const QString &pageTitle)
        : color(pageColor)
        , title(pageTitle)
    {}

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.fillRect(rect(), color);
        painter.setPen(Qt::white);
        painter.drawText(rect(), Qt::AlignCenter, title);
    }

private:
    QColor color;
    QString title;
};

/// A stack that stands still in the middle of a page change.
class StillStack : public RotateStackedWidget
{
public:
    using RotateStackedWidget::RotateStackedWidget;
    void standAt(int phase, double factor, double degrees)
    {
        currentWidget()->hide();
        animating = true;
        animPhase = phase;
        nextIndex = 1;
        scaleTo(factor);
        rotateTo(degrees);
    }
};

std::vector<WidgetState> rotatingStacks()
{
    States states;
    const struct
    {
        const char *caption;
        int phase;
        double scale;
        double degrees;
    } frames[] = {
        {"shrinking", 0, 0.8, 0},      {"turning", 1, 0.6, 50},  {"almost edge-on", 1, 0.6, 80},
        {"the new page", 1, 0.6, 130}, {"growing", 2, 0.8, 180},
    };
    for (const auto &frame : frames) {
        states.add<StillStack>(
            QLatin1String(frame.caption), QSize(150, 96), [=](StillStack *stack) {
                stack->addWidget(
                    new Page(QColor(KivPrivate::deepBlue), QStringLiteral("Old page")));
                stack->addWidget(new Page(QColor(200, 110, 20), QStringLiteral("New page")));
                for (int i = 0; i < stack->count(); ++i)
                    stack->widget(i)->resize(stack->size());
                stack->standAt(frame.phase, frame.scale, frame.degrees);
            });
    }
    return std::move(states.all);
}

/// A row for each class; their order does not matter.
const struct
{
    const QMetaObject &widgetClass;
    std::vector<WidgetState> (*states)();
} classes[] = {
    {AeroButton::staticMetaObject, aeroButtons},
    {AeroSwitch::staticMetaObject, aeroSwitches},
    {TranspButton::staticMetaObject, transparentButtons},
    {AeroStatusbar::staticMetaObject, aeroStatusbars},
    {AeroGroupbox::staticMetaObject, aeroGroupboxes},
    {AeroLinebar::staticMetaObject, aeroLinebars},
    {MetroSysIcon::staticMetaObject, metroSysIcons},
    {MetroBattIcon::staticMetaObject, metroBattIcons},
    {MetroShelter::staticMetaObject, metroShelters},
    {MetroTabicon::staticMetaObject, metroTabicons},
    {MetroStatusbar::staticMetaObject, metroStatusbars},
    {MetroNavdrawer::staticMetaObject, metroNavdrawers},
    {MetroLinerate::staticMetaObject, metroLinerates},
    {MetroCirclerate::staticMetaObject, metroCirclerates},
    {MetroXbar::staticMetaObject, metroXbars},
    {SlideSwitch::staticMetaObject, slideSwitches},
    {SimpleSlideSwitch::staticMetaObject, simpleSlideSwitches},
    {RotateStackedWidget::staticMetaObject, rotatingStacks},
};

} // namespace

std::vector<WidgetState> widgetStates(const QString &className)
{
    for (const auto &[widgetClass, states] : classes) {
        if (className == QLatin1String(widgetClass.className()))
            return states();
    }
    return {};
}

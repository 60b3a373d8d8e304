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

#include <QtCore/QDir>
#include <QtGui/QPainter>
#include <QtWidgets/QApplication>
#include <QtWidgets/QStyleFactory>

#include <cstdio>
#include <functional>
#include <memory>
#include <vector>

// Draws every widget of the library in its states, a PNG file for each class, for people to look
// at.

namespace {

constexpr int cellGap = 14;
constexpr int captionHeight = 18;
constexpr int sheetWidth = 860;
const QColor lightGround(0xe8, 0xec, 0xef);
const QColor darkGround(0x1d, 0x21, 0x25);
/// Seen on both grounds.
const QColor plainInk(0x80, 0x8a, 0x94);

/// One widget with what it shows.
struct Cell
{
    QString caption;
    QWidget *widget;
};

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

/// All cells of one class.
class Sheet
{
public:
    explicit Sheet(const char *className)
        : name(QString::fromLatin1(className))
    {}

    /// Adds a widget of class W in the size given, or in its own, set up by @p populate.
    template <typename W>
    void add(const QString &caption, QSize size, const std::function<void(W *)> &populate)
    {
        auto *widget = new W(window.get());
        if (size.isValid())
            widget->QWidget::resize(size);
        populate(widget);
        cells.push_back({caption, widget});
    }

    /// Shows the widgets on light and on dark ground, each under its caption.
    bool save(const QDir &directory)
    {
        window->resize(sheetWidth, 2000);
        window->show();
        settle();
        window->resize(sheetWidth, place());
        settle();
        const QImage light = picture(lightGround, Qt::black);
        const QImage dark = picture(darkGround, Qt::white);
        QImage both(light.width(), light.height() + dark.height(), QImage::Format_RGB32);
        QPainter painter(&both);
        painter.drawImage(0, 0, light);
        painter.drawImage(0, light.height(), dark);
        painter.end();
        const QString file = directory.filePath(name.toLower() + QStringLiteral(".png"));
        if (!both.save(file)) {
            std::fprintf(stderr, "kivwidgetsheet: cannot write %s\n", qPrintable(file));
            return false;
        }
        std::puts(qPrintable(file));
        return true;
    }

private:
    static void settle()
    {
        for (int i = 0; i < 4; ++i) {
            QCoreApplication::sendPostedEvents();
            QCoreApplication::processEvents();
        }
    }

    /// Lays the widgets out in rows; returns the height that they take.
    int place()
    {
        int x = cellGap;
        int y = cellGap;
        int rowHeight = 0;
        const QFontMetrics metrics(window->font());
        for (const Cell &cell : cells) {
            const int width = qMax(cell.widget->width(), metrics.horizontalAdvance(cell.caption));
            if (x + width + cellGap > sheetWidth && x > cellGap) {
                x = cellGap;
                y += rowHeight + cellGap;
                rowHeight = 0;
            }
            cell.widget->move(x, y + captionHeight);
            x += width + cellGap;
            rowHeight = qMax(rowHeight, captionHeight + cell.widget->height());
        }
        return y + rowHeight + cellGap;
    }

    QImage picture(const QColor &ground, const QColor &ink)
    {
        QPalette palette = window->palette();
        palette.setColor(QPalette::Window, ground);
        palette.setColor(QPalette::WindowText, ink);
        palette.setColor(QPalette::ButtonText, ink);
        window->setPalette(palette);
        settle();
        QImage image = window->grab().toImage();
        QPainter painter(&image);
        painter.setPen(ink);
        painter.setFont(window->font());
        const QFontMetrics metrics(window->font());
        for (const Cell &cell : cells)
            painter.drawText(cell.widget->pos() - QPoint(0, metrics.descent() + 2), cell.caption);
        return image;
    }

    QString name;
    std::unique_ptr<QWidget> window = std::make_unique<QWidget>();
    std::vector<Cell> cells;
};

Sheet aeroButtons()
{
    Sheet sheet("AeroButton");
    const QSize size(130, 40);
    const auto text = [](AeroButton *button) { button->setText(QStringLiteral("Start")); };
    sheet.add<AeroButton>(QStringLiteral("text"), size, text);
    sheet.add<AeroButton>(QStringLiteral("icon"), size,
                          [](AeroButton *button) { button->setIcon(lampIcon(16)); });
    sheet.add<AeroButton>(QStringLiteral("icon and text"), size, [&](AeroButton *button) {
        text(button);
        button->setIcon(lampIcon(16));
    });
    sheet.add<AeroButton>(QStringLiteral("coloured"), size, [&](AeroButton *button) {
        text(button);
        button->setColor(QColor(0, 174, 240));
        button->setShadow(QColor(0, 56, 117));
    });
    sheet.add<AeroButton>(QStringLiteral("disabled"), size, [&](AeroButton *button) {
        text(button);
        button->setColor(QColor(0, 174, 240));
        button->setShadow(QColor(0, 56, 117));
        button->setEnabled(false);
    });
    sheet.add<AeroButton>(QStringLiteral("opacity 0.5"), size, [&](AeroButton *button) {
        text(button);
        button->setOpacity(0.5);
    });
    for (const double angle : {40.0, 140.0, 180.0}) {
        sheet.add<AeroButton>(QStringLiteral("rotate %1").arg(angle), size,
                              [&](AeroButton *button) {
                                  text(button);
                                  button->setRotate(angle);
                              });
    }
    for (const int roundness : {0, 100}) {
        sheet.add<AeroButton>(QStringLiteral("roundness %1").arg(roundness), size,
                              [&](AeroButton *button) {
                                  text(button);
                                  button->setRoundness(roundness);
                              });
    }
    return sheet;
}

Sheet aeroSwitches()
{
    Sheet sheet("AeroSwitch");
    for (const bool enabled : {true, false}) {
        for (const bool checked : {false, true}) {
            const QString caption = QStringLiteral("%1%2").arg(
                checked ? QStringLiteral("checked") : QStringLiteral("unchecked"),
                enabled ? QString() : QStringLiteral(", disabled"));
            sheet.add<AeroSwitch>(caption, QSize(150, 40), [&](AeroSwitch *control) {
                control->setText(QStringLiteral("Bypass"));
                control->setHighlight(QColor(0, 174, 240));
                control->setChecked(checked);
                control->setEnabled(enabled);
            });
        }
    }
    return sheet;
}

void enter(QWidget *widget)
{
    QEvent event(QEvent::Enter);
    QCoreApplication::sendEvent(widget, &event);
}

Sheet transparentButtons()
{
    Sheet sheet("TranspButton");
    const QSize size(110, 60);
    const auto populate = [](TranspButton *button) {
        button->setIconSize(QSize(32, 32));
        button->setIcon(lampIcon(32, plainInk));
        button->setText(QStringLiteral("Lamp"));
        button->setPosLabel(QPoint(0, 22));
    };
    sheet.add<TranspButton>(QStringLiteral("normal"), size, populate);
    sheet.add<TranspButton>(QStringLiteral("under the pointer"), size, [&](TranspButton *button) {
        populate(button);
        enter(button);
    });
    sheet.add<TranspButton>(QStringLiteral("disabled"), size, [&](TranspButton *button) {
        populate(button);
        button->setEnabled(false);
    });
    return sheet;
}

Sheet aeroStatusbars()
{
    Sheet sheet("AeroStatusbar");
    for (const bool enabled : {true, false}) {
        sheet.add<AeroStatusbar>(enabled ? QStringLiteral("enabled") : QStringLiteral("disabled"),
                                 QSize(380, 36), [&](AeroStatusbar *strip) {
                                     strip->setColor(QColor(62, 78, 94));
                                     strip->setShadow(QColor(27, 34, 42));
                                     strip->setEnabled(enabled);
                                 });
    }
    return sheet;
}

Sheet aeroGroupboxes()
{
    Sheet sheet("AeroGroupbox");
    const QSize size(250, 120);
    const QString title = QStringLiteral("Battery");
    const auto populate = [](AeroGroupbox *box) {
        box->setColor(QColor(62, 78, 94));
        box->setShadow(QColor(27, 34, 42));
        box->setRoundness(15);
    };
    sheet.add<AeroGroupbox>(QStringLiteral("with a title"), size, [&](AeroGroupbox *box) {
        populate(box);
        box->setTitle(title);
    });
    sheet.add<AeroGroupbox>(QStringLiteral("without a title"), size, populate);
    sheet.add<AeroGroupbox>(QStringLiteral("disabled"), size, [&](AeroGroupbox *box) {
        populate(box);
        box->setTitle(title);
        box->setEnabled(false);
    });
    sheet.add<AeroGroupbox>(QStringLiteral("a picture"), size, [&](AeroGroupbox *box) {
        QPixmap picture(64, 64);
        QPainter painter(&picture);
        QLinearGradient gradient(0, 0, 64, 64);
        gradient.setColorAt(0, QColor(0, 56, 117));
        gradient.setColorAt(1, QColor(0, 174, 240));
        painter.fillRect(picture.rect(), gradient);
        painter.end();
        box->setBackgroundType(AeroGroupbox::ImageBG);
        box->setBackgroundGroup(picture);
        box->setTitle(title);
    });
    return sheet;
}

Sheet aeroLinebars()
{
    Sheet sheet("AeroLinebar");
    const QSize size(260, 50);
    const auto populate = [](AeroLinebar *bar) {
        bar->setColor(QColor(0, 174, 240));
        bar->setShadow(QColor(0, 108, 160));
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
        sheet.add<AeroLinebar>(QLatin1String(row.caption), size, [&](AeroLinebar *bar) {
            populate(bar);
            bar->setValuePosition(row.position);
            bar->setValue(row.value);
        });
    }
    sheet.add<AeroLinebar>(QStringLiteral("without ticks"), size, [&](AeroLinebar *bar) {
        populate(bar);
        bar->setTickHeight(0);
        bar->setValue(55);
    });
    sheet.add<AeroLinebar>(QStringLiteral("disabled"), size, [&](AeroLinebar *bar) {
        populate(bar);
        bar->setValuePosition(AeroLinebar::CenterVal);
        bar->setValue(60);
        bar->setEnabled(false);
    });
    return sheet;
}

/// The states whose colours differ.
const elemDesc_t colorStates[] = {{1, 5}, {1, 6}, {1, 7}, {0, 0}, {2, 5}, {4, 5}};

Sheet metroSysIcons()
{
    Sheet sheet("MetroSysIcon");
    const auto add = [&](const QString &caption, elemDesc_t state,
                         const std::function<void(MetroSysIcon *)> &populate) {
        sheet.add<MetroSysIcon>(caption, QSize(), [&](MetroSysIcon *icon) {
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
    return sheet;
}

Sheet metroBattIcons()
{
    Sheet sheet("MetroBattIcon");
    for (const elemDesc_t state : colorStates) {
        sheet.add<MetroBattIcon>(stateName(state), QSize(),
                                 [&](MetroBattIcon *icon) { icon->setState(state); });
    }
    sheet.add<MetroBattIcon>(QStringLiteral("disabled"), QSize(), [&](MetroBattIcon *icon) {
        icon->setState({1, 5});
        icon->setEnabled(false);
    });
    return sheet;
}

Sheet metroShelters()
{
    Sheet sheet("MetroShelter");
    const auto add = [&](elemDesc_t state, int height) {
        sheet.add<MetroShelter>(stateName(state), QSize(190, height), [&](MetroShelter *tile) {
            tile->setText(QStringLiteral("Inverter"));
            tile->setState(state);
        });
    };
    for (const quint8 alarm : {quint8(1), quint8(2), quint8(4)}) {
        for (quint8 element = 1; element < 8; ++element)
            add({alarm, element}, 40);
    }
    for (const elemDesc_t state : {elemDesc_t{0, 0}, elemDesc_t{5, 1}, elemDesc_t{1, 5}}) {
        for (const int height : {40, 24})
            add(state, height);
    }
    return sheet;
}

Sheet metroTabicons()
{
    Sheet sheet("MetroTabicon");
    for (quint8 alarm = 0; alarm < 6; ++alarm) {
        for (const bool checked : {false, true}) {
            const QString caption =
                QStringLiteral("%1%2").arg(QLatin1String(alarmNames[alarm]),
                                           checked ? QStringLiteral(", checked") : QString());
            sheet.add<MetroTabicon>(caption, QSize(64, 64), [&](MetroTabicon *tab) {
                tab->setAutoExclusive(false);
                tab->setIconSize(QSize(40, 40));
                tab->setIcon(lampIcon(40, plainInk));
                tab->setState({alarm, 5});
                tab->setChecked(checked);
            });
        }
    }
    return sheet;
}

Sheet metroStatusbars()
{
    Sheet sheet("MetroStatusbar");
    sheet.add<MetroStatusbar>(QStringLiteral("the strip"), QSize(), [](MetroStatusbar *) {});
    return sheet;
}

Sheet metroNavdrawers()
{
    Sheet sheet("MetroNavdrawer");
    sheet.add<MetroNavdrawer>(QStringLiteral("open"), QSize(252, 90), [](MetroNavdrawer *) {});
    sheet.add<MetroNavdrawer>(QStringLiteral("closed"), QSize(62, 76), [](MetroNavdrawer *drawer) {
        drawer->setState(MetroNavdrawer::close);
    });
    return sheet;
}

Sheet metroLinerates()
{
    Sheet sheet("MetroLinerate");
    for (const int value : {0, 35, 100, 110, 125, 140, 200}) {
        sheet.add<MetroLinerate>(QStringLiteral("%1 %").arg(value), QSize(260, 30),
                                 [&](MetroLinerate *bar) { bar->setValue(value); });
    }
    return sheet;
}

Sheet metroCirclerates()
{
    Sheet sheet("MetroCirclerate");
    const auto dial = [&](const QString &caption, double value,
                          const std::function<void(MetroCirclerate *)> &populate) {
        sheet.add<MetroCirclerate>(caption, QSize(), [&](MetroCirclerate *gauge) {
            gauge->setLabel(QStringLiteral("Load"));
            gauge->setValue(value);
            gauge->setRadius(60);
            gauge->setTickness(14);
            populate(gauge);
        });
    };
    for (const double value : {0.0, 35.0, 100.0, 120.0, 130.0})
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
    return sheet;
}

Sheet metroXbars()
{
    Sheet sheet("MetroXbar");
    for (const int value : {-20, 0, 115, 230, 300, 400}) {
        sheet.add<MetroXbar>(QStringLiteral("%1 V").arg(value), QSize(260, 30),
                             [&](MetroXbar *bar) {
                                 bar->setMeasure(QStringLiteral(" V"));
                                 bar->setValue(value);
                             });
    }
    return sheet;
}

Sheet slideSwitches()
{
    Sheet sheet("SlideSwitch");
    for (const bool checked : {false, true}) {
        const QString state = checked ? QStringLiteral("on") : QStringLiteral("off");
        const auto add = [&](const QString &caption,
                             const std::function<void(SlideSwitch *)> &populate) {
            sheet.add<SlideSwitch>(state + caption, QSize(), [&](SlideSwitch *control) {
                control->setChecked(checked);
                populate(control);
            });
        };
        add(QString(), [](SlideSwitch *) {});
        add(QStringLiteral(", partly"), [](SlideSwitch *control) { control->setPartialON(true); });
        add(QStringLiteral(", locked"), [](SlideSwitch *control) { control->setLocked(true); });
        add(QStringLiteral(", disabled"), [](SlideSwitch *control) { control->setEnabled(false); });
    }
    return sheet;
}

Sheet simpleSlideSwitches()
{
    Sheet sheet("SimpleSlideSwitch");
    for (const bool enabled : {true, false}) {
        for (const bool checked : {false, true}) {
            const QString caption =
                QStringLiteral("%1%2").arg(checked ? QStringLiteral("on") : QStringLiteral("off"),
                                           enabled ? QString() : QStringLiteral(", disabled"));
            sheet.add<SimpleSlideSwitch>(caption, QSize(), [&](SimpleSlideSwitch *control) {
                control->setChecked(checked);
                control->setEnabled(enabled);
            });
        }
    }
    return sheet;
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

Sheet rotatingStacks()
{
    Sheet sheet("RotateStackedWidget");
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
        sheet.add<StillStack>(QLatin1String(frame.caption), QSize(150, 96), [&](StillStack *stack) {
            stack->addWidget(new Page(QColor(0, 108, 160), QStringLiteral("Old page")));
            stack->addWidget(new Page(QColor(200, 110, 20), QStringLiteral("New page")));
            for (int i = 0; i < stack->count(); ++i)
                stack->widget(i)->resize(stack->size());
            stack->standAt(frame.phase, frame.scale, frame.degrees);
        });
    }
    return sheet;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2 || argv[1][0] == '-') {
        std::fprintf(stderr, "usage: kivwidgetsheet DIRECTORY\n");
        return 2;
    }
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QApplication::setFont(QFont(QStringLiteral("DejaVu Sans"), 9));

    const QDir directory(QString::fromLocal8Bit(argv[1]));
    if (!QDir().mkpath(directory.path())) {
        std::fprintf(stderr, "kivwidgetsheet: cannot make the directory %s\n", argv[1]);
        return 1;
    }
    Sheet (*const sheets[])() = {
        aeroButtons,     aeroSwitches,        transparentButtons, aeroStatusbars,   aeroGroupboxes,
        aeroLinebars,    metroSysIcons,       metroBattIcons,     metroShelters,    metroTabicons,
        metroStatusbars, metroNavdrawers,     metroLinerates,     metroCirclerates, metroXbars,
        slideSwitches,   simpleSlideSwitches, rotatingStacks,
    };
    for (const auto makeSheet : sheets) {
        if (!makeSheet().save(directory))
            return 1;
    }
    return 0;
}

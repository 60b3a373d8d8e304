// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "testmain.h"
#include "widgetclasses.h"
#include "widgetprobe.h"

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
#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>
#include <QtCore/QPluginLoader>
#include <QtCore/QPointer>
#include <QtGui/QAccessible>
#include <QtGui/QAccessiblePlugin>
#include <QtTest/QSignalSpy>
#include <QtWidgets/QLabel>

#include <private/qguiapplication_p.h>
#include <qpa/qplatformaccessibility.h>
#include <qpa/qplatformintegration.h>

#include <functional>
#include <limits>
#include <memory>
#include <utility>

namespace {

const QString press = QStringLiteral("Press");
const QString toggle = QStringLiteral("Toggle");
const QString setFocus = QStringLiteral("SetFocus");

struct WidgetCase
{
    QByteArray className;
    QWidget *(*construct)(QWidget *parent);
    QAccessible::Role role;
    QString action;

    QWidget *create() const
    {
        return construct(nullptr);
    }
};

/// What a new widget of this role can be made to do.
QString actionOf(const WidgetDescription &description)
{
    switch (description.role) {
    case QAccessible::Button:
    case QAccessible::PageTab:
        return press;
    case QAccessible::CheckBox:
        return toggle;
    default:
        // The press on the drawer is what a person opens and closes it with.
        return description.metaObject == &MetroNavdrawer::staticMetaObject ? press : QString();
    }
}

const std::vector<WidgetCase> widgetCases = [] {
    std::vector<WidgetCase> cases;
    for (const WidgetDescription &description : widgetCatalogue())
        cases.push_back(
            {description.className, description.create, description.role, actionOf(description)});
    return cases;
}();

void addWidgetRows()
{
    QTest::addColumn<int>("index");
    for (int i = 0; i < int(widgetCases.size()); ++i)
        QTest::newRow(widgetCases[i].className.constData()) << i;
}

QAccessibleInterface *interfaceOf(QObject *object)
{
    return QAccessible::queryAccessibleInterface(object);
}

QString nameOf(QObject *object)
{
    return interfaceOf(object)->text(QAccessible::Name);
}

QString descriptionOf(QObject *object)
{
    return interfaceOf(object)->text(QAccessible::Description);
}

QString valueTextOf(QObject *object)
{
    return interfaceOf(object)->text(QAccessible::Value);
}

QAccessible::State stateOf(QObject *object)
{
    return interfaceOf(object)->state();
}

QStringList actionsOf(QObject *object)
{
    return interfaceOf(object)->actionInterface()->actionNames();
}

void act(QObject *object, const QString &action)
{
    interfaceOf(object)->actionInterface()->doAction(action);
}

/// Records in words what assistive technology receives while it exists.
class UpdateLog
{
public:
    UpdateLog()
    {
        setActive(true);
        current = this;
        previous = QAccessible::installUpdateHandler(record);
    }
    ~UpdateLog()
    {
        QAccessible::installUpdateHandler(previous);
        setActive(false);
        current = nullptr;
    }
    /// What was announced of @p object since the last call, once all is delivered.
    QStringList take(QObject *object)
    {
        deliverAll();
        QStringList taken;
        for (const auto &[source, words] : std::as_const(entries)) {
            if (source == object)
                taken.append(words);
        }
        entries.clear();
        return taken;
    }
    /// Called for each note, as by assistive technology.
    std::function<void()> reaction;

private:
    /// Only the platform can switch the notes on.
    static void setActive(bool active)
    {
        QGuiApplicationPrivate::platformIntegration()->accessibility()->setActive(active);
    }

    static void record(QAccessibleEvent *event)
    {
        QString words;
        if (event->type() == QAccessible::NameChanged) {
            words = QStringLiteral("name");
        } else if (event->type() == QAccessible::DescriptionChanged) {
            words = QStringLiteral("description");
        } else if (event->type() == QAccessible::ValueChanged) {
            words = QStringLiteral("value %1")
                        .arg(static_cast<QAccessibleValueChangeEvent *>(event)->value().toDouble());
        } else if (event->type() == QAccessible::Selection) {
            words = QStringLiteral("selection");
        } else if (event->type() == QAccessible::StateChanged) {
            const auto bits = static_cast<QAccessibleStateChangeEvent *>(event)->changedStates();
            words = QStringLiteral("state");
            words += bits.checked ? QStringLiteral(" checked") : QString();
            words += bits.checkStateMixed ? QStringLiteral(" mixed") : QString();
            words += bits.selected ? QStringLiteral(" selected") : QString();
            words += bits.expanded ? QStringLiteral(" expanded") : QString();
            words += bits.collapsed ? QStringLiteral(" collapsed") : QString();
            words += bits.disabled ? QStringLiteral(" disabled") : QString();
        } else {
            return;
        }
        current->entries.append({event->object(), words});
        if (current->reaction)
            current->reaction();
    }

    static inline UpdateLog *current = nullptr;
    QAccessible::UpdateHandler previous;
    QList<QPair<QObject *, QString>> entries;
};

/// Lets an interface be asked when its widget is gone, which is the last moment of its life.
class LastWords : public QObject
{
public:
    explicit LastWords(QObject *dying, std::function<void()> asked)
    {
        connect(dying, &QObject::destroyed, this, [asked] { asked(); });
    }
};

class OwnButton : public AeroButton
{
    Q_OBJECT

public:
    using AeroButton::AeroButton;
};

} // namespace

/// The widgets as assistive technology meets them, through the plugin that Qt finds.
class AccessibilityTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void keysNameEveryWidget();
    void roleAndActions_data();
    void roleAndActions();
    void disabledAndFocus_data();
    void disabledAndFocus();
    void leavesTheWidgetAlone_data();
    void leavesTheWidgetAlone();
    void deletedWidget_data();
    void deletedWidget();
    void otherObjects();
    void subclassOfAnApplication();

    void nameFromTheApplication_data();
    void nameFromTheApplication();
    void surroundingsNeedNoName();
    void boxesDoNotNameTheirChildren();
    void windows();
    void descriptions();
    void mnemonics();

    void pressesButtons();
    void checkableButton();
    void togglesSwitches();
    void slideSwitchInTheMiddle();
    void simpleSwitchMovesItsTrack();
    void slotDeletesTheButton();
    void tabs();
    void elementStates_data();
    void elementStates();
    void alarmsOfTabs_data();
    void alarmsOfTabs();

    void gaugesTellWhatTheyShow();
    void gaugesAreReadOnly_data();
    void gaugesAreReadOnly();
    void gaugesBeyondTheirScale();

    void groupBoxes();
    void drawer();
    void drawerHidesItsEntries();
    void strips();
    void pages();
    void turningPages();

    void announcesValues();
    void announcesStates();
    void announcesSwitches();
    void announcesTabsDrawerAndPages();
    void announcesOnce();
    void listenerDeletesTheWidget();
};

void AccessibilityTest::initTestCase()
{
    QCoreApplication::addLibraryPath(QStringLiteral(KIV_PLUGINS));
}

void AccessibilityTest::keysNameEveryWidget()
{
    const QPluginLoader loader(QStringLiteral(KIV_ACCESSIBLE_PLUGIN));
    const QJsonArray keys = loader.metaData()
                                .value(QStringLiteral("MetaData"))
                                .toObject()
                                .value(QStringLiteral("Keys"))
                                .toArray();
    QStringList named;
    for (const QJsonValue &key : keys)
        named.append(key.toString());
    QStringList expected = widgetClasses();
    named.sort();
    expected.sort();
    QCOMPARE(named, expected);
}

void AccessibilityTest::roleAndActions_data()
{
    addWidgetRows();
}

void AccessibilityTest::roleAndActions()
{
    QFETCH(int, index);
    const WidgetCase &expected = widgetCases[index];
    const std::unique_ptr<QWidget> widget(expected.create());
    QCOMPARE(QByteArray(widget->metaObject()->className()), expected.className);
    QAccessibleInterface *interface = interfaceOf(widget.get());
    QVERIFY2(interface && interface->role() == expected.role,
             "accessibility/accessibleplugin.cpp makes an interface of another role than "
             "common/widgetcatalogue.cpp names");
    QVERIFY(interface->isValid());
    QCOMPARE(interface->object(), widget.get());
    QStringList actions;
    if (!expected.action.isEmpty())
        actions.append(expected.action);
    if (widget->focusPolicy() != Qt::NoFocus)
        actions.append(setFocus);
    QCOMPARE(actionsOf(widget.get()), actions);
    QCOMPARE(interfaceOf(widget.get()), interface);
}

void AccessibilityTest::disabledAndFocus_data()
{
    addWidgetRows();
}

void AccessibilityTest::disabledAndFocus()
{
    QFETCH(int, index);
    QWidget window;
    QWidget *widget = widgetCases[index].create();
    widget->setParent(&window);
    widget->resize(100, 40);
    window.resize(900, 600);
    QVERIFY(stateOf(widget).invisible);
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    deliverAll();
    QVERIFY(!stateOf(widget).invisible);
    QVERIFY(!stateOf(widget).offscreen);
    QCOMPARE(interfaceOf(widget)->rect(), QRect(widget->mapToGlobal(QPoint()), widget->size()));
    QCOMPARE(interfaceOf(widget)->parent()->object(), &window);
    QVERIFY(!stateOf(widget).disabled);
    QCOMPARE(bool(stateOf(widget).focusable), widget->focusPolicy() != Qt::NoFocus);

    widget->setFocusPolicy(Qt::StrongFocus);
    QVERIFY(stateOf(widget).focusable);
    window.setFocus();
    QVERIFY(!stateOf(widget).focused);
    act(widget, setFocus);
    QVERIFY(stateOf(widget).focused);

    widget->setEnabled(false);
    QVERIFY(stateOf(widget).disabled);
    QCOMPARE(actionsOf(widget), QStringList());

    widget->setEnabled(true);
    widget->move(window.width(), 0);
    QVERIFY(stateOf(widget).offscreen);
    widget->hide();
    QVERIFY(stateOf(widget).invisible);
    QVERIFY(!stateOf(widget).offscreen);
    deliverAll();
}

void AccessibilityTest::leavesTheWidgetAlone_data()
{
    addWidgetRows();
}

void AccessibilityTest::leavesTheWidgetAlone()
{
    QFETCH(int, index);
    const std::unique_ptr<QWidget> widget(widgetCases[index].create());
    const QObjectList children = widget->children();
    const QRect geometry = widget->geometry();
    deliverAll();
    EventCounter events(widget.get());
    interfaceOf(widget.get())->text(QAccessible::Description);
    stateOf(widget.get());
    deliverAll();
    QCOMPARE(widget->children(), children);
    QCOMPARE(widget->geometry(), geometry);
    QCOMPARE(events.count(QEvent::UpdateRequest), 0);
    QCOMPARE(events.count(QEvent::UpdateLater), 0);
    QCOMPARE(events.count(QEvent::ChildAdded), 0);
}

void AccessibilityTest::deletedWidget_data()
{
    addWidgetRows();
}

void AccessibilityTest::deletedWidget()
{
    QFETCH(int, index);
    QWidget *widget = widgetCases[index].create();
    bool asked = false;
    QAccessibleInterface *interface = nullptr;
    // Connected before the interface is made, so that it is still there.
    const LastWords lastWords(widget, [&] {
        asked = true;
        QVERIFY(!interface->isValid());
        QVERIFY(interface->state().invalid);
        for (int kind = QAccessible::Name; kind <= QAccessible::Accelerator; ++kind)
            QCOMPARE(interface->text(QAccessible::Text(kind)), QString());
        QCOMPARE(interface->rect(), QRect());
        QCOMPARE(interface->parent(), nullptr);
        QCOMPARE(interface->window(), nullptr);
        QCOMPARE(interface->focusChild(), nullptr);
        QCOMPARE(interface->childCount(), 0);
        QCOMPARE(interface->child(0), nullptr);
        QCOMPARE(interface->childAt(0, 0), nullptr);
        QCOMPARE(interface->indexOfChild(interface), -1);
        QVERIFY(interface->relations().isEmpty());
        QVERIFY(!interface->foregroundColor().isValid());
        QVERIFY(!interface->backgroundColor().isValid());
        QCOMPARE(interface->actionInterface()->actionNames(), QStringList());
        QCOMPARE(interface->actionInterface()->keyBindingsForAction(press), QStringList());
        for (const QString &action : {press, toggle, setFocus, QString()})
            interface->actionInterface()->doAction(action);
        interface->role();
        if (QAccessibleValueInterface *value = interface->valueInterface()) {
            QVERIFY(!value->currentValue().isValid());
            QVERIFY(!value->minimumValue().isValid());
            QVERIFY(!value->maximumValue().isValid());
            value->setCurrentValue(1);
        }
    });
    interface = interfaceOf(widget);
    const QAccessible::Id id = QAccessible::uniqueId(interface);
    QCOMPARE(QAccessible::accessibleInterface(id), interface);
    delete widget;
    QVERIFY(asked);
    QCOMPARE(QAccessible::accessibleInterface(id), nullptr);
}

void AccessibilityTest::otherObjects()
{
    QPluginLoader loader(QStringLiteral(KIV_ACCESSIBLE_PLUGIN));
    auto *plugin = qobject_cast<QAccessiblePlugin *>(loader.instance());
    QVERIFY2(plugin, qPrintable(loader.errorString()));
    QObject object;
    QWidget widget;
    const AeroButton button;
    const QString key = QStringLiteral("AeroSwitch");
    QCOMPARE(plugin->create(key, nullptr), nullptr);
    QCOMPARE(plugin->create(key, &object), nullptr);
    QCOMPARE(plugin->create(key, &widget), nullptr);
    QCOMPARE(plugin->create(key, const_cast<AeroButton *>(&button)), nullptr);
    QCOMPARE(plugin->create(QStringLiteral("QWidget"), &widget), nullptr);
    QCOMPARE(plugin->create(QString(), &widget), nullptr);
    QCOMPARE(interfaceOf(nullptr), nullptr);
}

void AccessibilityTest::subclassOfAnApplication()
{
    OwnButton button;
    button.setText(QStringLiteral("Start"));
    QCOMPARE(interfaceOf(&button)->role(), QAccessible::Button);
    QCOMPARE(nameOf(&button), QStringLiteral("Start"));
}

void AccessibilityTest::nameFromTheApplication_data()
{
    addWidgetRows();
}

void AccessibilityTest::nameFromTheApplication()
{
    QFETCH(int, index);
    QWidget window;
    QWidget *widget = widgetCases[index].create();
    widget->setParent(&window);
    const auto *dial = qobject_cast<MetroCirclerate *>(widget);
    // A new dial shows "L?".
    if (dial)
        widget->setProperty("label", QString());
    QCOMPARE(nameOf(widget), QString());
    widget->setObjectName(QStringLiteral("object"));
    const QStringList surroundings = {
        QStringLiteral("AeroStatusbar"), QStringLiteral("MetroStatusbar"),
        QStringLiteral("AeroGroupbox"), QStringLiteral("RotateStackedWidget")};
    if (!surroundings.contains(QString::fromLatin1(widgetCases[index].className)))
        QCOMPARE(nameOf(widget), QStringLiteral("object"));
    widget->setToolTip(QStringLiteral("<b>Tool</b> tip"));
    QCOMPARE(nameOf(widget), QStringLiteral("Tool tip"));
    QLabel buddy(QStringLiteral("&Buddy"), &window);
    buddy.setBuddy(widget);
    QCOMPARE(nameOf(widget), QStringLiteral("Buddy"));
    QCOMPARE(interfaceOf(widget)->relations(QAccessible::Label).size(), 1);
    for (const char *property : {"text", "title", "label"}) {
        if (widget->setProperty(property, QStringLiteral("Shown")) &&
            widget->metaObject()->indexOfProperty(property) >= 0)
            QCOMPARE(nameOf(widget), QStringLiteral("Shown"));
    }
    widget->setAccessibleName(QStringLiteral("Given"));
    QCOMPARE(nameOf(widget), QStringLiteral("Given"));
}

void AccessibilityTest::surroundingsNeedNoName()
{
    QWidget window;
    AeroGroupbox box(&window);
    for (QWidget *widget :
         {static_cast<QWidget *>(new AeroStatusbar(&window)),
          static_cast<QWidget *>(new MetroStatusbar(&window)),
          static_cast<QWidget *>(new RotateStackedWidget(&window)), static_cast<QWidget *>(&box)}) {
        widget->setObjectName(QStringLiteral("object"));
        QCOMPARE(nameOf(widget), QString());
    }
    box.setCheckable(true);
    QCOMPARE(nameOf(&box), QStringLiteral("object"));
}

void AccessibilityTest::boxesDoNotNameTheirChildren()
{
    QWidget window;
    AeroGroupbox box(&window);
    box.setTitle(QStringLiteral("Commands"));
    AeroSwitch first(&box);
    first.setText(QStringLiteral("Lock"));
    TranspButton second(&box);
    second.setToolTip(QStringLiteral("Silence the beeper"));
    QCOMPARE(nameOf(&first), QStringLiteral("Lock"));
    QCOMPARE(nameOf(&second), QStringLiteral("Silence the beeper"));
}

void AccessibilityTest::windows()
{
    // Any widget may be a window of its own.
    MetroXbar bar;
    bar.setObjectName(QStringLiteral("bar"));
    bar.setWindowTitle(QStringLiteral("Output voltage"));
    QCOMPARE(nameOf(&bar), QStringLiteral("Output voltage"));
    QCOMPARE(interfaceOf(&bar)->parent()->role(), QAccessible::Application);

    // One with a parent may lie anywhere on the screen.
    Stage<QWidget> parent;
    AeroButton button(parent.widget);
    button.setWindowFlag(Qt::Window);
    button.setGeometry(700, 500, 60, 40);
    button.show();
    deliverAll();
    QVERIFY(!stateOf(&button).offscreen);
}

void AccessibilityTest::descriptions()
{
    QWidget window;
    MetroShelter tile(&window);
    tile.setState({1, 5});
    QCOMPARE(descriptionOf(&tile), QStringLiteral("On, no alarm"));
    tile.setToolTip(QStringLiteral("From the mains"));
    // The tool tip is the name while there is no better one.
    QCOMPARE(descriptionOf(&tile), QStringLiteral("On, no alarm"));
    tile.setText(QStringLiteral("Rectifier"));
    QCOMPARE(descriptionOf(&tile), QStringLiteral("On, no alarm. From the mains"));
    tile.setAccessibleDescription(QStringLiteral("First cabinet"));
    QCOMPARE(descriptionOf(&tile), QStringLiteral("On, no alarm. First cabinet"));

    AeroButton button(&window);
    QCOMPARE(descriptionOf(&button), QString());
    button.setAccessibleDescription(QStringLiteral("Silences the beeper"));
    QCOMPARE(descriptionOf(&button), QStringLiteral("Silences the beeper"));
    button.setWhatsThis(QStringLiteral("help"));
    QCOMPARE(interfaceOf(&button)->text(QAccessible::Help), QStringLiteral("help"));
}

void AccessibilityTest::mnemonics()
{
    QWidget window;
    AeroButton button(&window);
    button.setText(QStringLiteral("S&tart && stop &"));
    QCOMPARE(nameOf(&button), QStringLiteral("Start & stop "));
    QCOMPARE(interfaceOf(&button)->text(QAccessible::Accelerator), QStringLiteral("Alt+T"));
    QCOMPARE(interfaceOf(&button)->actionInterface()->keyBindingsForAction(press),
             QStringList(QStringLiteral("Alt+T")));
    QCOMPARE(interfaceOf(&button)->actionInterface()->keyBindingsForAction(setFocus),
             QStringList());
    AeroGroupbox box(&window);
    box.setTitle(QStringLiteral("&Battery"));
    QCOMPARE(nameOf(&box), QStringLiteral("Battery"));
}

void AccessibilityTest::pressesButtons()
{
    QWidget window;
    const QList<QAbstractButton *> buttons = {new AeroButton(&window), new TranspButton(&window),
                                              new MetroSysIcon(&window), new MetroBattIcon(&window),
                                              new MetroShelter(&window)};
    for (QAbstractButton *button : buttons) {
        const QSignalSpy clicked(button, &QAbstractButton::clicked);
        QVERIFY(!stateOf(button).checkable);
        act(button, press);
        QCOMPARE(clicked.count(), 1);
        act(button, toggle);
        act(button, QString());
        act(button, QStringLiteral("press"));
        QCOMPARE(clicked.count(), 1);
        button->setEnabled(false);
        act(button, press);
        QCOMPARE(clicked.count(), 1);
        button->setEnabled(true);
        button->setDown(true);
        QVERIFY(stateOf(button).pressed);
        button->setDown(false);
        QVERIFY(!stateOf(button).pressed);
    }
}

void AccessibilityTest::checkableButton()
{
    AeroButton button;
    button.setCheckable(true);
    QCOMPARE(interfaceOf(&button)->role(), QAccessible::Button);
    QVERIFY(stateOf(&button).checkable);
    QCOMPARE(actionsOf(&button).first(), toggle);
    act(&button, toggle);
    QVERIFY(button.isChecked());
    QVERIFY(stateOf(&button).checked);
}

void AccessibilityTest::togglesSwitches()
{
    QWidget window;
    const QList<QAbstractButton *> switches = {new AeroSwitch(&window), new SlideSwitch(&window),
                                               new SimpleSlideSwitch(&window)};
    for (QAbstractButton *control : switches) {
        // Only the small slide switch has no clicked() in answer to a click of the user.
        const int clicks = qobject_cast<SimpleSlideSwitch *>(control) ? 0 : 1;
        const QSignalSpy clicked(control, &QAbstractButton::clicked);
        const QSignalSpy toggled(control, &QAbstractButton::toggled);
        QVERIFY(stateOf(control).checkable);
        QVERIFY(!stateOf(control).checked);
        act(control, toggle);
        QVERIFY(control->isChecked());
        QVERIFY(stateOf(control).checked);
        QVERIFY(!stateOf(control).checkStateMixed);
        QCOMPARE(toggled.count(), 1);
        QCOMPARE(clicked.count(), clicks);
        act(control, toggle);
        QVERIFY(!stateOf(control).checked);
        control->setChecked(true);
        QVERIFY(stateOf(control).checked);
        act(control, press);
        QVERIFY(control->isChecked());
        control->setEnabled(false);
        act(control, toggle);
        QVERIFY(control->isChecked());
    }
}

void AccessibilityTest::slideSwitchInTheMiddle()
{
    QWidget window;
    SlideSwitch control(&window);
    control.setText(QStringLiteral("UPS"));
    QCOMPARE(nameOf(&control), QStringLiteral("UPS"));
    QCOMPARE(valueTextOf(&control), QString());
    control.setPartialON(true);
    QVERIFY(stateOf(&control).checkStateMixed);
    QCOMPARE(valueTextOf(&control), QStringLiteral("Partly on"));
    QCOMPARE(descriptionOf(&control), QStringLiteral("Partly on"));
    control.setLocked(true);
    QCOMPARE(valueTextOf(&control), QStringLiteral("Locked"));
    control.setPartialON(false);
    QVERIFY(!stateOf(&control).checkStateMixed);
    QCOMPARE(valueTextOf(&control), QStringLiteral("Locked"));
}

void AccessibilityTest::simpleSwitchMovesItsTrack()
{
    Stage<SimpleSlideSwitch> byAction;
    Stage<SimpleSlideSwitch> bySetter;
    act(byAction.widget, toggle);
    bySetter->setChecked(true);
    deliverAll();
    QCOMPARE(byAction->grab().toImage(), bySetter->grab().toImage());
}

void AccessibilityTest::slotDeletesTheButton()
{
    QWidget window;
    for (QAbstractButton *button : {static_cast<QAbstractButton *>(new AeroButton(&window)),
                                    static_cast<QAbstractButton *>(new AeroSwitch(&window)),
                                    static_cast<QAbstractButton *>(new SlideSwitch(&window)),
                                    static_cast<QAbstractButton *>(new MetroTabicon(&window))}) {
        const QPointer<QAbstractButton> guard(button);
        connect(button, &QAbstractButton::clicked, button, [button] { delete button; });
        act(button, actionsOf(button).first());
        QVERIFY(guard.isNull());
    }
    auto *box = new AeroGroupbox(&window);
    box->setCheckable(true);
    const QPointer<QGroupBox> guard(box);
    connect(box, &QGroupBox::clicked, box, [box] { delete box; });
    act(box, toggle);
    QVERIFY(guard.isNull());
}

void AccessibilityTest::tabs()
{
    QWidget rail;
    auto *first = new MetroTabicon(&rail);
    auto *second = new MetroTabicon(&rail);
    const QSignalSpy clicked(second, &MetroTabicon::clicked);
    first->setChecked(true);
    QVERIFY(stateOf(first).selectable);
    QVERIFY(stateOf(first).selected);
    QVERIFY(!stateOf(second).selected);
    // A tab is not a check box as well.
    QVERIFY(!stateOf(first).checkable);
    QVERIFY(!stateOf(first).checked);
    act(second, press);
    QCOMPARE(clicked.count(), 1);
    QVERIFY(!stateOf(first).selected);
    QVERIFY(stateOf(second).selected);
    act(second, press);
    QVERIFY(stateOf(second).selected);
}

void AccessibilityTest::elementStates_data()
{
    QTest::addColumn<int>("alarm");
    QTest::addColumn<int>("element");
    QTest::addColumn<QString>("words");

    const QString operating[] = {
        QStringLiteral("stand-by"),    QStringLiteral("precharge"),
        QStringLiteral("calibration"), QStringLiteral("waiting for battery voltage"),
        QStringLiteral("on"),          QStringLiteral("on battery"),
        QStringLiteral("on bypass")};
    const QPair<int, QString> alarms[] = {
        {2, QStringLiteral("Warning")},       {3, QStringLiteral("Anomaly")},
        {4, QStringLiteral("Fault")},         {5, QStringLiteral("Locked")},
        {6, QStringLiteral("Unknown alarm")}, {255, QStringLiteral("Unknown alarm")}};
    for (int element = 1; element <= 7; ++element) {
        QString words = operating[element - 1];
        for (const auto &[alarm, name] : alarms) {
            QTest::addRow("alarm %d, element %d", alarm, element)
                << alarm << element << name + QStringLiteral(", ") + words;
        }
        words[0] = words.at(0).toUpper();
        QTest::addRow("element %d", element)
            << 1 << element << words + QStringLiteral(", no alarm");
        QTest::addRow("lost, element %d", element)
            << 0 << element << QStringLiteral("Communication lost");
    }
    for (const int element : {0, 8, 255}) {
        for (const auto &[alarm, name] : alarms)
            QTest::addRow("alarm %d, unknown element %d", alarm, element)
                << alarm << element << name;
        QTest::addRow("unknown element %d", element)
            << 1 << element << QStringLiteral("Unknown, no alarm");
        QTest::addRow("lost, unknown element %d", element)
            << 0 << element << QStringLiteral("Communication lost");
    }
}

void AccessibilityTest::elementStates()
{
    QFETCH(int, alarm);
    QFETCH(int, element);
    QFETCH(QString, words);
    const elemDesc_t state{quint8(alarm), quint8(element)};
    QWidget window;
    MetroShelter tile(&window);
    MetroSysIcon icon(&window);
    MetroBattIcon battery(&window);
    tile.setState(state);
    icon.setState(state);
    battery.setState(state);
    for (QWidget *widget : {static_cast<QWidget *>(&tile), static_cast<QWidget *>(&icon),
                            static_cast<QWidget *>(&battery)}) {
        QCOMPARE(valueTextOf(widget), words);
        QCOMPARE(descriptionOf(widget), words);
    }
}

void AccessibilityTest::alarmsOfTabs_data()
{
    QTest::addColumn<int>("alarm");
    QTest::addColumn<QString>("words");
    QTest::newRow("communication lost") << 0 << QStringLiteral("Communication lost");
    QTest::newRow("no alarm") << 1 << QString();
    QTest::newRow("warning") << 2 << QStringLiteral("Warning");
    QTest::newRow("anomaly") << 3 << QStringLiteral("Anomaly");
    QTest::newRow("fault") << 4 << QStringLiteral("Fault");
    QTest::newRow("locked") << 5 << QStringLiteral("Locked");
    QTest::newRow("unforeseen") << 200 << QStringLiteral("Unknown alarm");
}

void AccessibilityTest::alarmsOfTabs()
{
    QFETCH(int, alarm);
    QFETCH(QString, words);
    MetroTabicon tab;
    tab.setState({quint8(alarm), 6});
    QCOMPARE(descriptionOf(&tab), words);
    QCOMPARE(valueTextOf(&tab), words);
}

void AccessibilityTest::gaugesTellWhatTheyShow()
{
    QWidget window;
    const auto check = [](QWidget *gauge, double minimum, double value, double maximum,
                          const QString &text) {
        QAccessibleValueInterface *values = interfaceOf(gauge)->valueInterface();
        QCOMPARE(values->minimumValue().toDouble(), minimum);
        QCOMPARE(values->currentValue().toDouble(), value);
        QCOMPARE(values->maximumValue().toDouble(), maximum);
        QCOMPARE(valueTextOf(gauge), text);
        QCOMPARE(descriptionOf(gauge), text);
    };

    AeroLinebar linebar(&window);
    check(&linebar, 0, 50, 100, QStringLiteral("50.00%"));
    linebar.setValueFormat(QStringLiteral("%.1f V"));
    linebar.setMinValue(-20);
    linebar.setMaxValue(60);
    linebar.setValue(23.46);
    check(&linebar, -20, 23.46, 60, QStringLiteral("23.5 V"));
    // The bar keeps a value whose text is the present one.
    linebar.setValue(23.51);
    check(&linebar, -20, 23.46, 60, QStringLiteral("23.5 V"));
    linebar.setText(QStringLiteral("no data"));
    check(&linebar, -20, 23.46, 60, QStringLiteral("no data"));
    linebar.setText(QStringLiteral(""));
    check(&linebar, -20, 23.46, 60, QString());

    MetroCirclerate dial(&window);
    check(&dial, 0, 35, 100, QStringLiteral("35%"));
    QCOMPARE(nameOf(&dial), QStringLiteral("L?"));
    dial.setLabel(QStringLiteral("Load"));
    dial.setMaxValue(5000);
    dial.setMinValue(-10);
    dial.setValue(42.7);
    check(&dial, -10, 42.7, 5000, QStringLiteral("42%"));
    dial.setFormat(QStringLiteral("%.2f kW"));
    check(&dial, -10, 42.7, 5000, QStringLiteral("42.70 kW"));
    dial.setFormat(QStringLiteral("%s %d"));
    check(&dial, -10, 42.7, 5000, QStringLiteral("%s %d"));
    QCOMPARE(nameOf(&dial), QStringLiteral("Load"));

    MetroLinerate rate(&window);
    check(&rate, 0, 35, 100, QStringLiteral("35%"));
    rate.setValue(0);
    check(&rate, 0, 0, 100, QStringLiteral("0%"));

    MetroXbar bar(&window);
    check(&bar, 0, 35, 300, QStringLiteral("35"));
    bar.setMeasure(QStringLiteral(" V"));
    bar.setMinValue(160);
    bar.setMaxValue(280);
    bar.setValue(231);
    check(&bar, 160, 231, 280, QStringLiteral("231 V"));
}

void AccessibilityTest::gaugesAreReadOnly_data()
{
    QTest::addColumn<int>("index");
    for (int i = 0; i < int(widgetCases.size()); ++i) {
        const QAccessible::Role role = widgetCases[i].role;
        if (role == QAccessible::ProgressBar || role == QAccessible::Dial)
            QTest::newRow(widgetCases[i].className.constData()) << i;
    }
}

void AccessibilityTest::gaugesAreReadOnly()
{
    QFETCH(int, index);
    const std::unique_ptr<QWidget> gauge(widgetCases[index].create());
    QVERIFY(stateOf(gauge.get()).readOnly);
    QVERIFY(!stateOf(gauge.get()).focusable);
    QAccessibleValueInterface *values = interfaceOf(gauge.get())->valueInterface();
    QVERIFY(values);
    QVERIFY2(values->currentValue().isValid() && values->minimumValue().isValid() &&
                 values->maximumValue().isValid(),
             qPrintable(QStringLiteral("%1 has no value for screen readers: add its reading to "
                                       "accessibility/gaugeinterface.cpp")
                            .arg(QLatin1String(widgetCases[index].className))));
    const double before = values->currentValue().toDouble();
    values->setCurrentValue(before + 7);
    QCOMPARE(values->currentValue().toDouble(), before);
    QCOMPARE(values->minimumStepSize().toDouble(), 0.0);
}

void AccessibilityTest::gaugesBeyondTheirScale()
{
    QWidget window;
    MetroLinerate rate(&window);
    rate.setValue(130);
    QCOMPARE(interfaceOf(&rate)->valueInterface()->currentValue().toInt(), 130);
    QCOMPARE(valueTextOf(&rate), QStringLiteral("130%"));
    MetroXbar bar(&window);
    bar.setValue(std::numeric_limits<int>::min());
    QCOMPARE(interfaceOf(&bar)->valueInterface()->currentValue().toInt(),
             std::numeric_limits<int>::min());
    QCOMPARE(valueTextOf(&bar), QStringLiteral("-2147483648"));
    AeroLinebar linebar(&window);
    linebar.setValueFormat(QStringLiteral("%.0f"));
    linebar.setValue(qQNaN());
    QVERIFY(qIsNaN(interfaceOf(&linebar)->valueInterface()->currentValue().toDouble()));
    QCOMPARE(valueTextOf(&linebar), QStringLiteral("nan"));
}

void AccessibilityTest::groupBoxes()
{
    QWidget window;
    AeroGroupbox box(&window);
    box.setTitle(QStringLiteral("Battery"));
    auto *inside = new QLabel(QStringLiteral("inside"), &box);
    QCOMPARE(nameOf(&box), QStringLiteral("Battery"));
    QVERIFY(!stateOf(&box).checkable);
    QVERIFY(!stateOf(&box).checked);
    QCOMPARE(interfaceOf(&box)->indexOfChild(interfaceOf(inside)),
             interfaceOf(&box)->childCount() - 1);

    const QSignalSpy clicked(&box, &QGroupBox::clicked);
    act(&box, toggle);
    QCOMPARE(clicked.count(), 0);
    box.setCheckable(true);
    box.setChecked(false);
    QCOMPARE(interfaceOf(&box)->role(), QAccessible::CheckBox);
    QVERIFY(stateOf(&box).checkable);
    QVERIFY(!stateOf(&box).checked);
    QCOMPARE(actionsOf(&box).first(), toggle);
    act(&box, toggle);
    QVERIFY(box.isChecked());
    QVERIFY(stateOf(&box).checked);
    QCOMPARE(clicked.count(), 1);
    QCOMPARE(clicked.first().first().toBool(), true);
    box.setEnabled(false);
    act(&box, toggle);
    QVERIFY(box.isChecked());
}

void AccessibilityTest::drawer()
{
    QWidget window;
    MetroNavdrawer drawer(&window);
    const QSignalSpy clicked(&drawer, &QGroupBox::clicked);
    QVERIFY(stateOf(&drawer).expandable);
    QVERIFY(stateOf(&drawer).expanded);
    QVERIFY(!stateOf(&drawer).collapsed);
    drawer.setState(MetroNavdrawer::close);
    QVERIFY(!stateOf(&drawer).expanded);
    QVERIFY(stateOf(&drawer).collapsed);
    drawer.setState(MetroNavdrawer::state_E(7));
    QVERIFY(stateOf(&drawer).expandable);
    QVERIFY(!stateOf(&drawer).expanded);
    QVERIFY(!stateOf(&drawer).collapsed);

    act(&drawer, press);
    QCOMPARE(clicked.count(), 1);
    drawer.setCheckable(true);
    drawer.setChecked(false);
    QCOMPARE(actionsOf(&drawer).first(), toggle);
    connect(&drawer, &QGroupBox::clicked, &drawer, [&drawer](bool checked) {
        drawer.setState(checked ? MetroNavdrawer::open : MetroNavdrawer::close);
    });
    act(&drawer, toggle);
    QVERIFY(stateOf(&drawer).expanded);
    act(&drawer, toggle);
    QVERIFY(stateOf(&drawer).collapsed);
    QCOMPARE(interfaceOf(&drawer)->role(), QAccessible::Grouping);
}

void AccessibilityTest::drawerHidesItsEntries()
{
    Stage<MetroNavdrawer> drawer;
    auto *entry = new TranspButton(drawer.widget);
    entry->setGeometry(62, 4, 60, 60);
    entry->show();
    drawer->setGeometry(QRect(300, 100, 200, 76));
    deliverAll();
    QVERIFY(!stateOf(entry).offscreen);
    drawer->setState(MetroNavdrawer::close);
    deliverAll();
    // Closed, the drawer neither hides nor moves its children: they lie beside it.
    QVERIFY(entry->isVisible());
    QVERIFY(stateOf(entry).offscreen);
}

void AccessibilityTest::strips()
{
    QWidget window;
    for (QWidget *strip : {static_cast<QWidget *>(new AeroStatusbar(&window)),
                           static_cast<QWidget *>(new MetroStatusbar(&window))}) {
        strip->setAccessibleName(QStringLiteral("Status"));
        QLabel text(QStringLiteral("Link in order"), strip);
        QCOMPARE(nameOf(strip), QStringLiteral("Status"));
        QCOMPARE(descriptionOf(strip), QString());
        QCOMPARE(interfaceOf(strip)->childCount(), 1);
        QCOMPARE(nameOf(interfaceOf(strip)->child(0)->object()), QStringLiteral("Link in order"));
    }
}

void AccessibilityTest::pages()
{
    Stage<RotateStackedWidget> stack(QSize(200, 100));
    QCOMPARE(interfaceOf(stack.widget)->childCount(), 0);
    QCOMPARE(interfaceOf(stack.widget)->child(0), nullptr);
    QCOMPARE(valueTextOf(stack.widget), QString());
    auto *first = new QWidget;
    auto *second = new QLabel(QStringLiteral("text"));
    auto *third = new QWidget;
    for (QWidget *page : {first, static_cast<QWidget *>(second), third})
        stack->addWidget(page);
    deliverAll();
    QAccessibleInterface *interface = interfaceOf(stack.widget);
    QCOMPARE(interface->childCount(), 3);
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(interface->child(i)->object(), stack->widget(i));
        QCOMPARE(interface->indexOfChild(interface->child(i)), i);
        QCOMPARE(interface->child(i)->parent(), interface);
    }
    QCOMPARE(interface->child(3), nullptr);
    QCOMPARE(interface->child(-1), nullptr);
    QCOMPARE(interface->indexOfChild(nullptr), -1);
    QCOMPARE(interface->indexOfChild(interface), -1);

    QCOMPARE(valueTextOf(stack.widget), QStringLiteral("page 1 of 3"));
    first->setObjectName(QStringLiteral("overview"));
    QCOMPARE(valueTextOf(stack.widget), QStringLiteral("overview, page 1 of 3"));
    first->setWindowTitle(QStringLiteral("Title"));
    QCOMPARE(valueTextOf(stack.widget), QStringLiteral("Title, page 1 of 3"));
    first->setAccessibleName(QStringLiteral("Overview"));
    QCOMPARE(valueTextOf(stack.widget), QStringLiteral("Overview, page 1 of 3"));
    stack->setCurrentIndex(2);
    QCOMPARE(descriptionOf(stack.widget), QStringLiteral("page 3 of 3"));

    const QPoint inside = stack->mapToGlobal(QPoint(5, 5));
    QCOMPARE(interface->childAt(inside.x(), inside.y())->object(), third);
    const QPoint outside = stack->mapToGlobal(QPoint(200, 100));
    QCOMPARE(interface->childAt(outside.x(), outside.y()), nullptr);
    stack->hide();
    QCOMPARE(interface->childAt(inside.x(), inside.y()), nullptr);
}

void AccessibilityTest::turningPages()
{
    Stage<RotateStackedWidget> stack(QSize(200, 100));
    for (int i = 0; i < 2; ++i)
        stack->addWidget(new QWidget);
    stack->changeTimePosition(20);
    stack->changeTimeRotation(20);
    stack->setAnimationEnabled(true);
    stack->setCurrentIndex(1);
    QAccessibleInterface *interface = interfaceOf(stack.widget);
    QCOMPARE(interface->childCount(), 2);
    QVERIFY(interface->child(0)->state().invisible);
    QVERIFY(interface->child(1)->state().invisible);
    QCOMPARE(valueTextOf(stack.widget), QStringLiteral("page 1 of 2"));
    QTRY_COMPARE(valueTextOf(stack.widget), QStringLiteral("page 2 of 2"));
    QTRY_VERIFY(!interface->child(1)->state().invisible);
}

void AccessibilityTest::announcesValues()
{
    UpdateLog log;
    Stage<MetroCirclerate> dial;
    Stage<AeroLinebar> linebar;
    Stage<MetroLinerate> rate;
    Stage<MetroXbar> bar;
    for (QWidget *gauge :
         {static_cast<QWidget *>(dial.widget), static_cast<QWidget *>(linebar.widget),
          static_cast<QWidget *>(rate.widget), static_cast<QWidget *>(bar.widget)})
        interfaceOf(gauge);
    log.take(nullptr);

    const QStringList both = {QStringLiteral("description"), QStringLiteral("value 61")};
    dial->setValue(61);
    QCOMPARE(log.take(dial.widget), both);
    linebar->setValue(61);
    QCOMPARE(log.take(linebar.widget), both);
    rate->setValue(61);
    QCOMPARE(log.take(rate.widget), both);
    bar->setValue(61);
    QCOMPARE(log.take(bar.widget), both);

    // Several changes until the next paint are one.
    dial->setValue(62);
    dial->setValue(63);
    QCOMPARE(log.take(dial.widget),
             QStringList({QStringLiteral("description"), QStringLiteral("value 63")}));
    // A text that stays, and a text alone.
    dial->setValue(63.5);
    QCOMPARE(log.take(dial.widget), QStringList(QStringLiteral("value 63.5")));
    dial->setFormat(QStringLiteral("no data"));
    QCOMPARE(log.take(dial.widget), QStringList(QStringLiteral("description")));
    dial->setLabel(QStringLiteral("Load"));
    QCOMPARE(log.take(dial.widget), QStringList(QStringLiteral("name")));
    // A value that is not a number is no news twice.
    linebar->setValue(qQNaN());
    QCOMPARE(log.take(linebar.widget),
             QStringList({QStringLiteral("description"), QStringLiteral("value nan")}));
    linebar->update();
    QCOMPARE(log.take(linebar.widget), QStringList());
    // What nobody sees is announced when it is shown.
    rate->hide();
    rate->setValue(70);
    QCOMPARE(log.take(rate.widget), QStringList());
    rate->show();
    QCOMPARE(log.take(rate.widget),
             QStringList({QStringLiteral("description"), QStringLiteral("value 70")}));
}

void AccessibilityTest::announcesStates()
{
    UpdateLog log;
    Stage<MetroShelter> tile;
    Stage<MetroSysIcon> icon;
    Stage<MetroBattIcon> battery;
    Stage<MetroTabicon> tab;
    for (QWidget *widget :
         {static_cast<QWidget *>(tile.widget), static_cast<QWidget *>(icon.widget),
          static_cast<QWidget *>(battery.widget), static_cast<QWidget *>(tab.widget)})
        interfaceOf(widget);
    log.take(nullptr);
    const QStringList description(QStringLiteral("description"));
    tile->setState({1, 6});
    QCOMPARE(log.take(tile.widget), description);
    icon->setState({1, 6});
    QCOMPARE(log.take(icon.widget), description);
    battery->setState({1, 6});
    QCOMPARE(log.take(battery.widget), description);
    tab->setState({1, 6});
    QCOMPARE(log.take(tab.widget), QStringList());
    tab->setState({4, 6});
    QCOMPARE(log.take(tab.widget), description);
    // Two alarms of one colour are not one state.
    icon->setState({4, 6});
    QCOMPARE(log.take(icon.widget), description);
    icon->setState({5, 6});
    QCOMPARE(log.take(icon.widget), description);
    icon->setEnabled(false);
    QCOMPARE(log.take(icon.widget), QStringList(QStringLiteral("state disabled")));
}

void AccessibilityTest::announcesSwitches()
{
    UpdateLog log;
    Stage<AeroSwitch> aero;
    Stage<SimpleSlideSwitch> simple;
    Stage<SlideSwitch> slide;
    for (QWidget *widget :
         {static_cast<QWidget *>(aero.widget), static_cast<QWidget *>(simple.widget),
          static_cast<QWidget *>(slide.widget)})
        interfaceOf(widget);
    log.take(nullptr);
    const QStringList checked(QStringLiteral("state checked"));
    aero->selectSwitch();
    QCOMPARE(log.take(aero.widget), checked);
    simple->setChecked(true);
    QCOMPARE(log.take(simple.widget), checked);
    act(slide.widget, toggle);
    QCOMPARE(log.take(slide.widget), checked);
    slide->setPartialON(true);
    QCOMPARE(log.take(slide.widget),
             QStringList({QStringLiteral("description"), QStringLiteral("state mixed")}));
    slide->setLocked(true);
    QCOMPARE(log.take(slide.widget), QStringList(QStringLiteral("description")));
}

void AccessibilityTest::announcesTabsDrawerAndPages()
{
    UpdateLog log;
    Stage<QWidget> rail(QSize(100, 300));
    auto *first = new MetroTabicon(rail.widget);
    auto *second = new MetroTabicon(rail.widget);
    second->move(0, 100);
    first->show();
    second->show();
    first->setChecked(true);
    Stage<MetroNavdrawer> drawer;
    Stage<RotateStackedWidget> stack;
    for (int i = 0; i < 2; ++i) {
        auto *page = new QWidget;
        page->setAutoFillBackground(true);
        stack->addWidget(page);
    }
    for (QWidget *widget :
         {static_cast<QWidget *>(first), static_cast<QWidget *>(second),
          static_cast<QWidget *>(drawer.widget), static_cast<QWidget *>(stack.widget)})
        interfaceOf(widget);
    log.take(nullptr);

    second->click();
    QCOMPARE(log.take(second),
             QStringList({QStringLiteral("state checked"), QStringLiteral("state selected"),
                          QStringLiteral("selection")}));
    first->click();
    QCOMPARE(log.take(second),
             QStringList({QStringLiteral("state checked"), QStringLiteral("state selected")}));
    drawer->setState(MetroNavdrawer::close);
    QCOMPARE(log.take(drawer.widget), QStringList(QStringLiteral("state expanded collapsed")));
    drawer->setState(MetroNavdrawer::open);
    QCOMPARE(log.take(drawer.widget), QStringList(QStringLiteral("state expanded collapsed")));
    stack->setCurrentIndex(1);
    QCOMPARE(log.take(stack.widget), QStringList(QStringLiteral("description")));
}

void AccessibilityTest::announcesOnce()
{
    UpdateLog log;
    Stage<MetroShelter> tile;
    interfaceOf(tile.widget);
    log.take(nullptr);
    tile->update();
    QCOMPARE(log.take(tile.widget), QStringList());
    tile->setState({2, 5});
    log.take(nullptr);
    tile->update();
    QCOMPARE(log.take(tile.widget), QStringList());
    // There and back before anything was announced.
    tile->setState({1, 5});
    tile->setState({2, 5});
    QCOMPARE(log.take(tile.widget), QStringList());
}

void AccessibilityTest::listenerDeletesTheWidget()
{
    UpdateLog log;
    Stage<SlideSwitch> slide;
    interfaceOf(slide.widget);
    log.take(nullptr);
    const QPointer<SlideSwitch> guard(slide.widget);
    log.reaction = [&guard] { delete guard; };
    slide->setPartialON(true);
    log.take(nullptr);
    QVERIFY(guard.isNull());
}

KIV_TEST_MAIN(AccessibilityTest)
#include "tst_accessibility.moc"

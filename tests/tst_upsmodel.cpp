// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "nutmapping.h"
#include "sitemodel.h"

#include "testmain.h"
#include "widgetprobe.h"

#include <memory>

namespace {

/// A clock that goes when the test says so.
struct TestClock
{
    Clock clock() const
    {
        return [now = now] { return *now; };
    }
    void pass(int seconds) const
    {
        *now = now->addSecs(seconds);
    }

    std::shared_ptr<QDateTime> now =
        std::make_shared<QDateTime>(QDate(2024, 2, 29), QTime(12, 0), Qt::UTC);
};

Snapshot ups(const char *status, const NutVariables &more = NutVariables())
{
    NutVariables variables = more;
    variables.insert(QStringLiteral("ups.status"), QLatin1String(status));
    return snapshotOf(QStringLiteral("demo"), variables);
}

NutVariables with(const char *name, const char *value)
{
    return {{QLatin1String(name), QString::fromUtf8(value)}};
}

Snapshot silence()
{
    return Snapshot::lost(QStringLiteral("demo"), QStringLiteral("connection refused"));
}

QStringList idsOf(const UpsModel &model)
{
    QStringList ids;
    for (const Condition &condition : model.conditions())
        ids += condition.id;
    return ids;
}

QStringList list(const char *joined)
{
    return QString::fromUtf8(joined).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

/// A feed that takes some commands and keeps them.
class CommandFeed : public UpsFeed
{
public:
    void start() override
    {}
    void stop() override
    {}
    bool supports(Command command) const override
    {
        return command != Command::Lock;
    }
    bool command(Command command) override
    {
        given.append(command);
        return command == Command::BeeperOn;
    }

    QVector<Command> given;
};

} // namespace

class UpsModelTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void hoveringValuesStay();
    void overloadWithoutAWordForIt();
    void beginsWithoutCommunication();
    void conditions_data();
    void conditions();
    void conditionValues();
    void alarmTexts();
    void beginsAreKept();
    void silenceEndsNothing();
    void waitingEndsNothing();
    void signalsOnlyForChanges();
    void deletedByAReceiver();
    void timeLeft_data();
    void timeLeft();
    void commands();
    void finishedCommands();
    void site();
};

void UpsModelTest::beginsWithoutCommunication()
{
    const TestClock time;
    const UpsModel model(QStringLiteral("demo"), time.clock());
    QCOMPARE(model.id(), QStringLiteral("demo"));
    QVERIFY(model.snapshot().isLost());
    QCOMPARE(model.headline().text, QStringLiteral("No communication"));
    QCOMPARE(model.severity(), Severity::Unknown);
    QCOMPARE(idsOf(model), list("no-communication"));
    QCOMPARE(model.worst()->since, *time.now);
    QVERIFY(!model.heardAt().isValid());
}

void UpsModelTest::conditions_data()
{
    QTest::addColumn<QString>("status");
    QTest::addColumn<QString>("ids");
    QTest::addColumn<int>("worst");
    const auto row = [](const char *status, const char *ids, Severity worst) {
        QTest::newRow(status) << status << ids << int(worst);
    };
    row("OL", "", Severity::Normal);
    row("OL CHRG", "", Severity::Normal);
    row("OB", "on-battery", Severity::Warning);
    row("OB LB", "low-battery on-battery", Severity::Critical);
    row("OL LB", "low-battery", Severity::Warning);
    row("OL RB OVER HB", "overload replace-battery high-battery", Severity::Warning);
    row("OL TRIM BOOST", "trim boost", Severity::Warning);
    row("OL BYPASS", "bypass", Severity::Warning);
    row("OL OFF", "output-off", Severity::Information);
    row("OL CAL OVER", "overload calibrating", Severity::Warning);
    row("OB ALARM FSD", "forced-shutdown alarm on-battery", Severity::Critical);
}

void UpsModelTest::conditions()
{
    QFETCH(QString, status);
    QFETCH(QString, ids);
    QFETCH(int, worst);
    UpsModel model(QStringLiteral("demo"));
    model.take(ups(status.toLatin1().constData()));
    QCOMPARE(idsOf(model), list(ids.toLatin1().constData()));
    QCOMPARE(int(model.severity()), worst);
    QCOMPARE(model.worst() == nullptr, ids.isEmpty());
}

void UpsModelTest::conditionValues()
{
    UpsModel model(QStringLiteral("demo"));
    model.take(ups("OB", with("input.voltage", "0")));
    QCOMPARE(model.worst()->valueText, QStringLiteral("0 V"));
    model.take(ups("OB"));
    QCOMPARE(model.worst()->valueText, QString());

    // A value beyond a limit is a condition of its own, unless the UPS says so itself.
    const NutVariables charge{{QStringLiteral("battery.charge"), QStringLiteral("15")},
                              {QStringLiteral("battery.charge.low"), QStringLiteral("20")}};
    model.take(ups("OL", charge));
    QCOMPARE(idsOf(model), list("charge-too-low"));
    QCOMPARE(model.worst()->text, QStringLiteral("Battery charge too low"));
    QCOMPARE(model.worst()->valueText, QStringLiteral("15 %"));
    QCOMPARE(model.severity(), Severity::Warning);
    model.take(ups("OL LB", charge));
    QCOMPARE(idsOf(model), list("low-battery"));
    QCOMPARE(model.worst()->valueText, QStringLiteral("15 %"));

    // Also that of one phase.
    model.take(ups("OL", {{QStringLiteral("ups.load"), QStringLiteral("70")},
                          {QStringLiteral("ups.load.high"), QStringLiteral("100")},
                          {QStringLiteral("ups.L1.load"), QStringLiteral("30")},
                          {QStringLiteral("ups.L2.load"), QStringLiteral("110")},
                          {QStringLiteral("ups.L3.load"), QStringLiteral("70")}}));
    QCOMPARE(idsOf(model), list("load-too-high"));
    QCOMPARE(model.worst()->valueText, QStringLiteral("L2 110 %"));
}

void UpsModelTest::alarmTexts()
{
    UpsModel model(QStringLiteral("demo"));
    model.take(ups("OL", with("ups.alarm", "Fan failure! Battery <b>gone</b>!")));
    QCOMPARE(idsOf(model), (QStringList{QStringLiteral("alarm:Fan failure!"),
                                        QStringLiteral("alarm:Battery <b>gone</b>!")}));
    QCOMPARE(model.severity(), Severity::Critical);
    model.take(ups("OL ALARM"));
    QCOMPARE(idsOf(model), list("alarm"));

    // However much a server sends, there are few of them.
    QString many;
    for (int i = 0; i < 500; ++i)
        many += QStringLiteral("A%1! ").arg(i);
    model.take(ups("OL", {{QStringLiteral("ups.alarm"), many}}));
    QVERIFY(model.conditions().size() <= 16);
    QVERIFY(model.conditions().last().text.endsWith(QStringLiteral("A499!")));
}

void UpsModelTest::beginsAreKept()
{
    const TestClock time;
    UpsModel model(QStringLiteral("demo"), time.clock());
    model.take(ups("OB"));
    const QDateTime begin = *time.now;
    time.pass(60);
    model.take(ups("OB LB"));
    QCOMPARE(model.conditions().at(0).since, *time.now); // low battery
    QCOMPARE(model.conditions().at(1).since, begin);
    QCOMPARE(model.heardAt(), *time.now);
    time.pass(60);
    model.take(ups("OL"));
    time.pass(60);
    model.take(ups("OB"));
    QCOMPARE(model.worst()->since, *time.now);
}

/// What was there before a lost link, and is there after it, neither ended nor began meanwhile.
void UpsModelTest::silenceEndsNothing()
{
    const TestClock time;
    UpsModel model(QStringLiteral("demo"), time.clock());
    model.take(ups("OB RB"));
    const QDateTime begin = *time.now;
    QStringList log;
    connect(&model, &UpsModel::conditionBegan, this,
            [&](const Condition &condition) { log += QLatin1Char('+') + condition.id; });
    connect(&model, &UpsModel::conditionEnded, this, [&](const Condition &condition) {
        log += QLatin1Char('-') + condition.id;
        QVERIFY(condition.since.isValid());
    });
    time.pass(10);
    model.take(silence());
    QCOMPARE(log, list("+no-communication"));
    QCOMPARE(idsOf(model), list("no-communication"));
    QCOMPARE(model.severity(), Severity::Unknown);
    QCOMPARE(model.heardAt(), begin);
    time.pass(10);
    model.take(Snapshot::lost(QStringLiteral("demo"), QStringLiteral("another reason")));
    QCOMPARE(log, list("+no-communication"));
    QCOMPARE(model.worst()->since, begin.addSecs(10));
    QCOMPARE(model.worst()->text, QStringLiteral("No communication: another reason"));
    model.take(ups("OB OVER"));
    QCOMPARE(log, list("+no-communication -no-communication -replace-battery +overload"));
    QCOMPARE(model.conditions().at(0).since, begin);
    log.clear();
    model.take(ups("OL"));
    QCOMPARE(log, list("-on-battery -overload"));
}

void UpsModelTest::waitingEndsNothing()
{
    const TestClock time;
    UpsModel model(QStringLiteral("demo"), time.clock());
    model.take(ups("OB"));
    const QDateTime begin = *time.now;
    int events = 0;
    connect(&model, &UpsModel::conditionBegan, this, [&] { ++events; });
    connect(&model, &UpsModel::conditionEnded, this, [&] { ++events; });
    time.pass(5);
    model.take(ups("WAIT"));
    QCOMPARE(model.headline().text, QStringLiteral("Waiting for the first data"));
    QVERIFY(model.conditions().isEmpty());
    model.take(ups("OB"));
    QCOMPARE(model.worst()->since, begin);
    QCOMPARE(events, 0);
}

void UpsModelTest::signalsOnlyForChanges()
{
    UpsModel model(QStringLiteral("demo"));
    int changes = 0;
    int heard = 0;
    connect(&model, &UpsModel::changed, this, [&] { ++changes; });
    connect(&model, &UpsModel::heard, this, [&] { ++heard; });
    for (int i = 0; i < 3; ++i)
        model.take(ups("OL", with("ups.load", "40")));
    QCOMPARE(changes, 1);
    QCOMPARE(heard, 3);
    model.take(ups("OL", with("ups.load", "41")));
    QCOMPARE(changes, 2);
    model.take(ups("OL", {{QStringLiteral("ups.load"), QStringLiteral("41")},
                          {QStringLiteral("ups.id"), QStringLiteral("rack")}}));
    QCOMPARE(changes, 3);
}

void UpsModelTest::deletedByAReceiver()
{
    for (int which = 0; which < 4; ++which) {
        auto *model = new UpsModel(QStringLiteral("demo"));
        const QPointer<UpsModel> guard(model);
        const auto remove = [model] { delete model; };
        if (which == 0)
            connect(model, &UpsModel::conditionBegan, this, remove);
        else if (which == 1)
            connect(model, &UpsModel::conditionEnded, this, remove);
        else if (which == 2)
            connect(model, &UpsModel::changed, this, remove);
        else
            connect(model, &UpsModel::heard, this, remove);
        model->take(ups("OB RB"));
        QVERIFY(!guard);
    }
}

void UpsModelTest::timeLeft_data()
{
    QTest::addColumn<QString>("status");
    QTest::addColumn<QString>("runtime");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("low");
    QTest::newRow("on battery") << "OB"
                                << "1200"
                                << "20 min" << false;
    QTest::newRow("nearly empty") << "OB LB"
                                  << "130"
                                  << "2:10" << true;
    QTest::newRow("at the limit") << "OB"
                                  << "180"
                                  << "3:00" << false;
    QTest::newRow("empty") << "OB LB"
                           << "0"
                           << "0:00" << true;
    QTest::newRow("in reserve") << "OL"
                                << "3700"
                                << "1 h 01 min" << false;
    QTest::newRow("bypass") << "OL BYPASS"
                            << "130"
                            << "" << false;
    QTest::newRow("off") << "OB OFF"
                         << "130"
                         << "" << false;
    QTest::newRow("shutdown") << "OB FSD"
                              << "130"
                              << "" << false;
    QTest::newRow("unknown") << "OB"
                             << ""
                             << "" << false;
    QTest::newRow("-1 for unknown") << "OB"
                                    << "-1"
                                    << "" << false;
}

void UpsModelTest::timeLeft()
{
    QFETCH(QString, status);
    QFETCH(QString, runtime);
    QFETCH(QString, text);
    QFETCH(bool, low);
    UpsModel model(QStringLiteral("demo"));
    model.take(ups(status.toLatin1().constData(),
                   {{QStringLiteral("battery.runtime"), runtime},
                    {QStringLiteral("battery.runtime.low"), QStringLiteral("180")}}));
    QCOMPARE(model.timeLeft(), text);
    QCOMPARE(model.isTimeLeftLow(), low);
}

void UpsModelTest::commands()
{
    UpsModel model(QStringLiteral("demo"));
    QStringList outcomes;
    int offers = 0;
    connect(&model, &UpsModel::commandGiven, this, [&](Command command, bool taken) {
        outcomes += QStringLiteral("%1 %2").arg(int(command)).arg(taken);
    });
    connect(&model, &UpsModel::commandsChanged, this, [&] { ++offers; });
    QVERIFY(!model.supports(Command::BeeperOn));
    QVERIFY(!model.command(Command::BeeperOn));
    QCOMPARE(outcomes.size(), 1);
    {
        CommandFeed feed;
        model.setFeed(&feed);
        QCOMPARE(offers, 1);
        QVERIFY(model.supports(Command::BeeperOn));
        QVERIFY(!model.supports(Command::Lock));
        QVERIFY(model.command(Command::BeeperOn));
        QVERIFY(!model.command(Command::BeeperOff));
        QCOMPARE(feed.given, (QVector<Command>{Command::BeeperOn, Command::BeeperOff}));
        QCOMPARE(outcomes.size(), 3);
        Q_EMIT feed.snapshotReady(ups("OB"));
        QCOMPARE(model.headline().state, QStringLiteral("On battery"));
    }
    QCOMPARE(offers, 2);
    QVERIFY(!model.supports(Command::BeeperOn));
}

void UpsModelTest::site()
{
    const TestClock time;
    SiteModel site(time.clock());
    QVERIFY(!site.worst());
    QCOMPARE(site.severity(), Severity::Normal);
    UpsModel *first = site.add(QStringLiteral("first"));
    UpsModel *second = site.add(QStringLiteral("second"));
    UpsModel *third = site.add(QStringLiteral("third"));
    QCOMPARE(site.add(QStringLiteral("second")), second);
    QCOMPARE(site.count(), 3);
    QCOMPARE(site.at(2), third);
    QCOMPARE(site.find(QStringLiteral("first")), first);
    QVERIFY(!site.find(QStringLiteral("fourth")));

    QStringList log;
    connect(&site, &SiteModel::changed, this, [&](UpsModel *model) { log += model->id(); });
    connect(&site, &SiteModel::conditionBegan, this,
            [&](UpsModel *model, const Condition &condition) {
                log += model->id() + QLatin1Char('+') + condition.id;
            });
    for (UpsModel *model : {first, second, third})
        model->take(ups("OL"));
    QCOMPARE(site.severity(), Severity::Normal);
    QCOMPARE(site.worst(), first);
    log.clear();
    second->take(ups("OB"));
    QCOMPARE(log, (QStringList{QStringLiteral("second+on-battery"), QStringLiteral("second")}));
    QCOMPARE(site.worst(), second);
    first->take(silence());
    QCOMPARE(site.worst(), first);
    third->take(ups("OL ALARM"));
    QCOMPARE(site.worst(), third);
    QCOMPARE(site.severity(), Severity::Critical);
    QCOMPARE(site.worst()->worst()->since, *time.now);
}

/// How a command ended goes to whoever observes the UPS, or the whole site.
void UpsModelTest::finishedCommands()
{
    const TestClock time;
    SiteModel site(time.clock());
    site.add(QStringLiteral("first"));
    UpsModel *second = site.add(QStringLiteral("second"));
    QVector<CommandRecord> records;
    QVector<UpsModel *> whose;
    connect(&site, &SiteModel::commandFinished, this,
            [&](UpsModel *model, const CommandRecord &record) {
                whose += model;
                records += record;
            });
    time.pass(7);
    CommandResult result;
    result.name = QStringLiteral("ups.delay.shutdown");
    result.value = QStringLiteral("30");
    result.user = QStringLiteral("oper");
    result.outcome = CommandOutcome::Failed;
    result.text = QStringLiteral("the UPS could not");
    second->finishCommand(result);
    QCOMPARE(whose, QVector<UpsModel *>{second});
    const CommandRecord record = records.constFirst();
    QCOMPARE(record.ups, QStringLiteral("second"));
    QCOMPARE(record.name, result.name);
    QCOMPARE(record.value, result.value);
    QCOMPARE(record.user, result.user);
    QCOMPARE(int(record.outcome), int(CommandOutcome::Failed));
    QCOMPARE(record.text, result.text);
    QCOMPARE(record.time, *time.now);
}

/// A value at its limit neither comes nor goes with each digit.
void UpsModelTest::hoveringValuesStay()
{
    UpsModel model(QStringLiteral("demo"));
    int began = 0;
    int ended = 0;
    connect(&model, &UpsModel::conditionBegan, this, [&began] { ++began; });
    connect(&model, &UpsModel::conditionEnded, this, [&ended] { ++ended; });
    const auto mains = [&](const char *value) {
        NutVariables variables = with("input.voltage", value);
        variables.insert(QStringLiteral("input.transfer.low"), QStringLiteral("200"));
        variables.insert(QStringLiteral("input.transfer.high"), QStringLiteral("250"));
        model.take(ups("OL", variables));
    };
    mains("230");
    began = 0;
    ended = 0;
    for (const char *value : {"199.9", "200.1", "199.8", "201.9", "199.9"}) {
        mains(value);
        QCOMPARE(idsOf(model), list("input-voltage-too-low"));
    }
    QCOMPARE(began, 1);
    QCOMPARE(ended, 0);
    mains("202.1");
    QCOMPARE(idsOf(model), QStringList());
    QCOMPARE(ended, 1);
    // Now it is not too low until it is.
    mains("200.1");
    QCOMPARE(idsOf(model), QStringList());
    for (const char *value : {"250.1", "249.9", "247.6"}) {
        mains(value);
        QCOMPARE(idsOf(model), list("input-voltage-too-high"));
    }
    mains("247.4");
    QCOMPARE(idsOf(model), QStringList());
    // From one side to the other.
    mains("251");
    mains("199");
    QCOMPARE(idsOf(model), list("input-voltage-too-low"));
    // A lost link between does not end it.
    model.take(silence());
    mains("201");
    QCOMPARE(idsOf(model), list("input-voltage-too-low"));
}

void UpsModelTest::overloadWithoutAWordForIt()
{
    UpsModel model(QStringLiteral("demo"));
    model.take(ups("OL", with("ups.load", "100")));
    QCOMPARE(idsOf(model), QStringList());
    model.take(ups("OL", with("ups.load", "110")));
    QCOMPARE(idsOf(model), list("load-too-high"));
    model.take(ups("OL OVER", with("ups.load", "110")));
    QCOMPARE(idsOf(model), list("overload"));
}

KIV_TEST_MAIN(UpsModelTest)

#include "tst_upsmodel.moc"

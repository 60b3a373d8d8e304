// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "consolewindow.h"
#include "elidedlabel.h"
#include "feed/nutfeed.h"

#include "nutserver.h"
#include "testmain.h"
#include "widgetprobe.h"

#include <aerolinebar.h>
#include <metrosysicon.h>
#include <metroxbar.h>

#include <QtCore/QDir>
#include <QtCore/QRegularExpression>

#include <memory>

namespace {

/// What the console must show while the UPS is in a state.
struct State
{
    const char *status;
    const char *more; // variables besides the usual ones, separated by ';'
    const char *headline;
    Severity severity;
    Protection protection;
    const char *timeLeft; // nothing: it is not shown
    const char *worst;    // the worst condition
    const char *input;    // the text of the input voltage
};

// The UPS has 130 s left wherever it says so.
const State states[] = {
    {"OL", "", "On line – load protected", Severity::Normal, Protection::Protected, "2:10", "",
     "231 V"},
    {"OL CHRG", "", "On line – load protected", Severity::Normal, Protection::Protected, "2:10", "",
     "231 V"},
    {"OB DISCHRG", "input.voltage: 0", "On battery – load protected", Severity::Warning,
     Protection::Protected, "2:10", "On battery", "0 V"},
    {"OB DISCHRG LB", "input.voltage: 0", "On battery – battery nearly empty", Severity::Critical,
     Protection::Limited, "2:10", "Battery low", "0 V"},
    {"OB FSD LB", "input.voltage: 0", "On battery – forced shutdown", Severity::Critical,
     Protection::Limited, "", "Forced shutdown", "0 V"},
    {"OL FSD", "", "On line – forced shutdown", Severity::Critical, Protection::Limited, "",
     "Forced shutdown", "231 V"},
    {"OL LB CHRG", "", "On line – battery low", Severity::Warning, Protection::Limited, "2:10",
     "Battery low", "231 V"},
    {"OL HB", "", "On line – load protected", Severity::Warning, Protection::Protected, "2:10",
     "Battery voltage high", "231 V"},
    {"OL RB", "", "On line – replace the battery", Severity::Warning, Protection::Limited, "2:10",
     "Replace the battery", "231 V"},
    {"OL OVER", "ups.load: 131", "On line – overload", Severity::Warning, Protection::Limited,
     "2:10", "Overload", "231 V"},
    {"OL TRIM", "input.voltage: 262", "On line – load protected", Severity::Warning,
     Protection::Protected, "2:10", "Input voltage high", "262 V"},
    {"OL BOOST", "input.voltage: 185", "On line – load protected", Severity::Warning,
     Protection::Protected, "2:10", "Input voltage low", "185 V"},
    {"OL BYPASS", "", "Bypass – load NOT protected", Severity::Warning, Protection::NotProtected,
     "", "On bypass, load not protected", "231 V"},
    {"OL BYPASS ALARM", "", "Bypass – load NOT protected", Severity::Critical,
     Protection::NotProtected, "", "Alarm", "231 V"},
    {"OL OFF", "ups.load: 0", "Output off", Severity::Information, Protection::NotFed, "",
     "Output off", "231 V"},
    {"OB OFF", "input.voltage: 0", "Output off", Severity::Warning, Protection::NotFed, "",
     "On battery", "0 V"},
    {"OL CAL DISCHRG", "", "Calibrating – load protected", Severity::Information,
     Protection::Protected, "2:10", "Calibrating", "231 V"},
    {"OB CAL", "", "Calibrating on battery – load protected", Severity::Warning,
     Protection::Protected, "2:10", "On battery", "231 V"},
    {"ALARM OL", "", "On line – alarm", Severity::Critical, Protection::Limited, "2:10", "Alarm",
     "231 V"},
    {"OL", "ups.alarm: Fan failure!", "On line – alarm", Severity::Critical, Protection::Limited,
     "2:10", "Fan failure!", "231 V"},
    {"OL ECO", "input.voltage: \"\"", "On line – load protected", Severity::Normal,
     Protection::Protected, "2:10", "", "no data"},
    {"CHRG", "", "State unknown", Severity::Unknown, Protection::Unknown, "", "", "231 V"},
};
constexpr int stateCount = int(sizeof states / sizeof states[0]);

/// The lines of a device file; what is given more stands in the place of the usual value.
QByteArray variables(const State &state)
{
    QMap<QByteArray, QByteArray> values{{"ups.load", "42"},
                                        {"battery.charge", "60"},
                                        {"battery.runtime", "130"},
                                        {"input.voltage", "231"},
                                        {"input.voltage.nominal", "230"},
                                        {"output.voltage", "230"},
                                        {"ups.alarm", "\"\""},
                                        {"ups.mfr", "Maker"}};
    values.insert("ups.status", state.status);
    for (const QByteArray &line : QByteArray(state.more).split(';')) {
        const auto colon = line.indexOf(':');
        if (colon > 0)
            values.insert(line.left(colon), line.mid(colon + 1).trimmed());
    }
    QByteArray lines;
    for (auto value = values.cbegin(); value != values.cend(); ++value)
        lines += value.key() + ": " + value.value() + '\n';
    return lines;
}

QString textOf(const QWidget &window, const char *name)
{
    const auto *label = window.findChild<QLabel *>(QLatin1String(name));
    return label ? label->text() : QStringLiteral("(no such label)");
}

} // namespace

#define VERIFY_SERVER(step) QVERIFY2(server.step, qPrintable(server.problem()))

/// The console on a real server whose UPS goes through every state that it knows.
class ConsoleStatesTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void everyState();
};

void ConsoleStatesTest::everyState()
{
    static_assert(stateCount == 22, "states that are gone through");
    NutServer server;
    VERIFY_SERVER(writeVariables(variables(states[0])));
    VERIFY_SERVER(start());
    QString error;
    NutTimes times;
    times.poll = 100;
    NutFeed feed(*NutAddress::parse(server.address(), &error), times);
    SiteModel site;
    UpsModel *ups = site.add(QStringLiteral("demo"));
    ups->setFeed(&feed);
    ConsoleWindow window(&site);
    window.show();
    feed.start();
    for (int i = 0; i < stateCount; ++i) {
        const State &state = states[i];
        const QByteArray report = QByteArray::number(i) + ' ' + state.status;
        VERIFY_SERVER(writeVariables(variables(state)));
        const auto arrived = [&] {
            const QHash<QString, QString> &given = ups->snapshot().variables;
            const QString alarm = given.value(QStringLiteral("ups.alarm"));
            const bool wantsAlarm = QByteArray(state.more).contains("ups.alarm");
            return given.value(QStringLiteral("ups.status")) == QLatin1String(state.status) &&
                   wantsAlarm == !alarm.isEmpty() &&
                   ups->reading(Quantity::InputVoltage).text == QLatin1String(state.input);
        };
        QTRY_VERIFY2(arrived(), report.constData());
        deliverAll();

        // The model.
        const Headline headline = ups->headline();
        QCOMPARE(headline.text, QString::fromUtf8(state.headline));
        QVERIFY2(headline.severity == state.severity, report);
        QVERIFY2(headline.protection == state.protection, report);
        QCOMPARE(ups->timeLeft(), QLatin1String(state.timeLeft));
        QCOMPARE(ups->worst() ? ups->worst()->text : QString(), QLatin1String(state.worst));
        // What the pages show: the headline, the time left and the numbers are the model's.
        QCOMPARE(textOf(window, "headline"), headline.text);
        QCOMPARE(textOf(window, "Input voltage value"), QLatin1String(state.input));
        const auto *bar = window.findChild<MetroXbar *>(QStringLiteral("Input voltage"));
        QCOMPARE(bar->isHidden(), QLatin1String(state.input) == QLatin1String("no data"));
        QCOMPARE(bar->getMinValue(), 170);
        QCOMPARE(bar->getMaxValue(), 290);
        QCOMPARE(textOf(window, "Load value"), ups->reading(Quantity::Load).text);
        QCOMPARE(window.findChild<AeroLinebar *>()->getText(), QStringLiteral("60 %"));
        // By itself: at some seconds of the day the clock has these characters, too.
        static const QRegularExpression timeLeft(QStringLiteral("(?<![0-9:])2:10(?![0-9:])"));
        bool timeShown = false;
        for (const QLabel *label : window.findChildren<QLabel *>())
            timeShown = timeShown || (!label->isHidden() && label->text().contains(timeLeft));
        QVERIFY2(timeShown == (*state.timeLeft != '\0'), report);
        // For looking at them.
        const QString directory = qEnvironmentVariable("KIV_PAGE_IMAGES");
        for (int page = 0; !directory.isEmpty() && page < window.pageNames().size(); ++page) {
            window.showPage(page);
            deliverAll();
            QVERIFY(window.grab().save(
                QStringLiteral("%1/state%2-%3.png")
                    .arg(directory, QString::number(i), window.pageNames().at(page))));
        }
    }
}

KIV_TEST_MAIN(ConsoleStatesTest)

#include "tst_consolestates.moc"

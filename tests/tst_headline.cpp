// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "condition.h"
#include "headline.h"
#include "nutmapping.h"

#include "testmain.h"
#include "widgetprobe.h"

#include <algorithm>
#include <vector>

namespace {

using Token = StatusToken;

/// What a server sends, without WAIT.
const char *const words[] = {"OL",  "OB",  "LB",   "HB",   "RB",    "CHRG", "DISCHRG", "BYPASS",
                             "CAL", "OFF", "OVER", "TRIM", "BOOST", "FSD",  "ALARM"};
constexpr int wordCount = 15;

/// One of all the statuses that can be made of the words.
struct Case
{
    explicit Case(int choice, const QString &more = QString())
    {
        for (int i = 0; i < wordCount; ++i) {
            if (choice & (1 << i))
                chosen += QLatin1String(words[i]);
        }
        status = chosen.join(QLatin1Char(' ')) + more;
        snapshot = snapshotOf(QStringLiteral("demo"), {{QStringLiteral("ups.status"), status}});
        headline = headlineOf(snapshot);
    }
    bool has(const char *word) const
    {
        return chosen.contains(QLatin1String(word));
    }
    bool hasAny(std::initializer_list<const char *> some) const
    {
        return std::any_of(some.begin(), some.end(),
                           [this](const char *word) { return has(word); });
    }
    QByteArray report() const
    {
        return (status + QStringLiteral(": ") + headline.text).toUtf8();
    }

    QStringList chosen;
    QString status;
    Snapshot snapshot;
    Headline headline;
};

const std::vector<Case> &allCases()
{
    static const std::vector<Case> cases = [] {
        std::vector<Case> all;
        for (int choice = 0; choice < 1 << wordCount; ++choice)
            all.emplace_back(choice);
        return all;
    }();
    return cases;
}

} // namespace

class HeadlineTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void texts_data();
    void texts();
    void promisesNothingFalse();
    void agreesWithTheElements();
    void agreesWithTheConditions();
    void unknownTokensChangeNothing();
    void withoutCommunication();
    void simulatedStates();
    void tokenWords();
};

void HeadlineTest::texts_data()
{
    QTest::addColumn<QString>("status");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("severity");
    QTest::addColumn<bool>("timeLeft");
    const auto row = [](const char *status, const char *text, Severity severity, bool timeLeft) {
        QTest::newRow(status) << status << QString::fromUtf8(text) << int(severity) << timeLeft;
    };
    row("OL", "On line – load protected", Severity::Normal, true);
    row("OL CHRG", "On line – load protected", Severity::Normal, true);
    row("OB DISCHRG", "On battery – load protected", Severity::Warning, true);
    row("OB LB", "On battery – battery nearly empty", Severity::Critical, true);
    row("OB OVER", "On battery – overload", Severity::Warning, true);
    row("OB FSD", "On battery – forced shutdown", Severity::Critical, false);
    row("OB CAL", "Calibrating on battery – load protected", Severity::Warning, true);
    row("OL CAL DISCHRG", "Calibrating – load protected", Severity::Information, true);
    row("BYPASS OL", "Bypass – load NOT protected", Severity::Warning, false);
    row("BYPASS OL OVER", "Bypass – load NOT protected", Severity::Warning, false);
    row("BYPASS OB", "Bypass – load NOT protected", Severity::Warning, false);
    row("ALARM BYPASS OL", "Bypass – load NOT protected", Severity::Critical, false);
    row("OL OFF", "Output off", Severity::Information, false);
    row("OB OFF LB", "Output off", Severity::Critical, false);
    row("OL RB", "On line – replace the battery", Severity::Warning, true);
    row("OL LB CHRG", "On line – battery low", Severity::Warning, true);
    row("OL OVER", "On line – overload", Severity::Warning, true);
    row("ALARM OL", "On line – alarm", Severity::Critical, true);
    row("OL TRIM", "On line – load protected", Severity::Warning, true);
    row("OL BOOST", "On line – load protected", Severity::Warning, true);
    row("OL HB", "On line – load protected", Severity::Warning, true);
    row("OL FSD", "On line – forced shutdown", Severity::Critical, false);
    row("", "State unknown", Severity::Unknown, false);
    row("ALARM", "State unknown – alarm", Severity::Critical, false);
    row("CHRG", "State unknown", Severity::Unknown, false);
    row("WAIT", "Waiting for the first data", Severity::Unknown, false);
    row("WAIT OL", "Waiting for the first data", Severity::Unknown, false);
}

void HeadlineTest::texts()
{
    QFETCH(QString, status);
    QFETCH(QString, text);
    QFETCH(int, severity);
    QFETCH(bool, timeLeft);
    const Headline headline =
        headlineOf(snapshotOf(QStringLiteral("demo"), {{QStringLiteral("ups.status"), status}}));
    QCOMPARE(headline.text, text);
    QCOMPARE(int(headline.severity), severity);
    QCOMPARE(headline.showsTimeLeft, timeLeft);
}

void HeadlineTest::promisesNothingFalse()
{
    for (const Case &it : allCases()) {
        const Headline &headline = it.headline;
        const QByteArray report = it.report();
        QString text = headline.text;
        const bool saysUnprotected = text.contains(QLatin1String("load NOT protected"));
        const bool saysProtected = text.contains(QLatin1String("load protected"));
        const bool saysOff = text.contains(QLatin1String("output off"), Qt::CaseInsensitive);
        QCOMPARE(saysProtected, headline.protection == Protection::Protected);
        QCOMPARE(saysUnprotected, headline.protection == Protection::NotProtected);
        QCOMPARE(saysOff, headline.protection == Protection::NotFed);

        // A load that is not fed through a UPS in order is never called protected.
        QVERIFY2(!saysProtected || it.hasAny({"OL", "OB"}), report);
        QVERIFY2(!saysProtected ||
                     !it.hasAny({"BYPASS", "OFF", "OVER", "LB", "RB", "FSD", "ALARM"}),
                 report);
        QVERIFY2(saysUnprotected == it.has("BYPASS"), report);
        QVERIFY2(saysOff == (it.has("OFF") && !it.has("BYPASS")), report);

        // Time left: while the battery feeds the load or could.
        QVERIFY2(!headline.showsTimeLeft || it.hasAny({"OL", "OB"}), report);
        QVERIFY2(!headline.showsTimeLeft || !it.hasAny({"BYPASS", "OFF", "FSD"}), report);
        if (it.has("OB") && !it.hasAny({"BYPASS", "OFF", "FSD"}))
            QVERIFY2(headline.showsTimeLeft &&
                         text.contains(QLatin1String("on battery"), Qt::CaseInsensitive),
                     report);

        // Severity: normal is what is in order, and nothing else.
        const bool inOrder =
            it.has("OL") && !it.hasAny({"OB", "LB", "HB", "RB", "BYPASS", "CAL", "OFF", "OVER",
                                        "TRIM", "BOOST", "FSD", "ALARM"});
        QCOMPARE(headline.severity == Severity::Normal, inOrder);
        const bool urgent = it.hasAny({"ALARM", "FSD"}) || (it.has("OB") && it.has("LB"));
        QCOMPARE(headline.severity == Severity::Critical, urgent);
        if (it.hasAny({"OB", "BYPASS", "OVER", "LB", "RB", "HB", "TRIM", "BOOST"}))
            QVERIFY2(urgencyOf(headline.severity) >= urgencyOf(Severity::Warning), report);
    }
}

/// Headline and tiles are two views of one state.
void HeadlineTest::agreesWithTheElements()
{
    for (const Case &it : allCases()) {
        const QByteArray report = it.report();
        const OperatingState load = it.snapshot.element(Element::Load).operating;
        QVERIFY2((load == OperatingState::StandBy) ==
                     (it.headline.protection == Protection::NotFed),
                 report);
        QVERIFY2((load == OperatingState::OnBypass) ==
                     (it.headline.protection == Protection::NotProtected),
                 report);
        if (it.headline.protection == Protection::Protected ||
            it.headline.protection == Protection::Limited)
            QVERIFY2(load == OperatingState::On || load == OperatingState::OnBattery, report);

        const QString state = it.headline.state;
        switch (it.snapshot.system.operating) {
        case OperatingState::OnBattery:
            QVERIFY2(state.contains(QLatin1String("on battery"), Qt::CaseInsensitive), report);
            break;
        case OperatingState::OnBypass:
            QVERIFY2(state == QLatin1String("Bypass"), report);
            break;
        case OperatingState::StandBy:
            QVERIFY2(state == QLatin1String("Output off"), report);
            break;
        case OperatingState::Calibration:
            QVERIFY2(state == QLatin1String("Calibrating"), report);
            break;
        case OperatingState::On: // or an alarm without a word on what the UPS is doing
            QVERIFY2(state == QLatin1String(it.has("OL") ? "On line" : "State unknown"), report);
            break;
        default:
            QVERIFY2(state == QLatin1String("State unknown"), report);
        }

        const Severity system = severityOf(it.snapshot.system.alarm);
        QVERIFY2(urgencyOf(it.headline.severity) >= urgencyOf(system), report);
        QCOMPARE(it.headline.severity == Severity::Critical, system == Severity::Critical);
    }
}

void HeadlineTest::agreesWithTheConditions()
{
    for (const Case &it : allCases()) {
        Severity worst = Severity::Normal;
        for (const Condition &condition : conditionsOf(it.snapshot))
            worst = worseOf(worst, condition.severity);
        if (it.headline.severity == Severity::Unknown)
            QVERIFY2(worst != Severity::Critical, it.report());
        else
            QVERIFY2(worst == it.headline.severity, it.report());
    }
}

void HeadlineTest::unknownTokensChangeNothing()
{
    for (int choice = 0; choice < 1 << wordCount; ++choice) {
        const Case &plain = allCases().at(choice);
        const Case more(choice, QStringLiteral(" ECO OBSERVED ol"));
        QVERIFY2(plain.headline == more.headline, more.report());
        QCOMPARE(more.snapshot.otherTokens.size(), 3);
    }
}

void HeadlineTest::withoutCommunication()
{
    Snapshot snapshot = Snapshot::lost(QStringLiteral("demo"), QStringLiteral("refused"));
    for (int choice = 0; choice < 1 << wordCount; ++choice) {
        snapshot.tokens = StatusTokens(QFlag(choice)); // left over
        const Headline headline = headlineOf(snapshot);
        QCOMPARE(headline.text, QStringLiteral("No communication"));
        QCOMPARE(headline.severity, Severity::Unknown);
        QCOMPARE(headline.protection, Protection::Unknown);
        QVERIFY(!headline.showsTimeLeft);
    }
}

void HeadlineTest::simulatedStates()
{
    const Headline locked = headlineOf(Snapshot::Link::Ok, Token::Locked | Token::Alarm);
    QCOMPARE(locked.text, QStringLiteral("Locked – output off"));
    QCOMPARE(locked.severity, Severity::Critical);
    QCOMPARE(locked.protection, Protection::NotFed);
    QVERIFY(!locked.showsTimeLeft);
    const Headline starting = headlineOf(Snapshot::Link::Ok, Token::Starting | Token::Calibrating);
    QCOMPARE(starting.text, QStringLiteral("Starting – output off"));
    QCOMPARE(starting.severity, Severity::Information);
}

void HeadlineTest::tokenWords()
{
    for (int i = 0; i < wordCount; ++i) {
        const StatusTokens tokens = tokensOf({QLatin1String(words[i])});
        QCOMPARE(int(tokens), 1 << i);
        QCOMPARE(wordOf(StatusToken(1 << i)), QLatin1String(words[i]));
    }
    QStringList others;
    QVERIFY(!tokensOf({QStringLiteral("OLD"), QStringLiteral("ob")}, &others));
    QCOMPARE(others, (QStringList{QStringLiteral("OLD"), QStringLiteral("ob")}));
    QVERIFY(wordOf(Token::Locked).isEmpty());
}

KIV_TEST_MAIN(HeadlineTest)

#include "tst_headline.moc"

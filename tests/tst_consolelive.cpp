// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "consolewindow.h"
#include "feed/nutfeed.h"
#include "options.h"
#include "screenshots.h"

#include "nutserver.h"
#include "testmain.h"
#include "widgetprobe.h"

#include <aerolinebar.h>
#include <metrobatticon.h>
#include <metrocirclerate.h>
#include <metrolinerate.h>
#include <metroshelter.h>
#include <metrosysicon.h>
#include <metroxbar.h>

#include <QtCore/QDir>
#include <QtWidgets/QLabel>

namespace {

QByteArray variables(const QByteArray &status, const QByteArray &load)
{
    return "ups.status: " + status + "\nups.load: " + load +
           "\n"
           "battery.charge: 95.5\n"
           "battery.voltage: 26.8\n"
           "input.voltage: 231.4\n"
           "output.voltage: 230.0\n";
}

constexpr elemDesc_t lost{0, 0};
constexpr elemDesc_t on{1, 5};

/// The console's window on a real server, asked at the usual pace.
struct LiveConsole
{
    explicit LiveConsole(const NutServer &server)
    {
        QString error;
        feed = std::make_unique<NutFeed>(*NutAddress::parse(server.address(), &error));
        ups->setFeed(feed.get());
        window.show();
        feed->start();
    }
    elemDesc_t system() const
    {
        return window.findChild<MetroSysIcon *>()->getElementState();
    }
    elemDesc_t battery() const
    {
        return window.findChild<MetroBattIcon *>()->getElementState();
    }
    elemDesc_t tile(const char *text) const
    {
        for (const MetroShelter *shelter : window.findChildren<MetroShelter *>()) {
            if (shelter->text() == QLatin1String(text))
                return shelter->getElementState();
        }
        qFatal("no tile %s", text);
    }
    const MetroCirclerate *dial(const char *label) const
    {
        return window.findChild<MetroCirclerate *>(QLatin1String(label));
    }
    /// Whether no gauge shows a value.
    bool showsNoValue() const
    {
        for (const MetroCirclerate *gauge : window.findChildren<MetroCirclerate *>()) {
            if (gauge->getFormatStr() != QLatin1String("no data") ||
                gauge->getValue() != gauge->getMinValue())
                return false;
        }
        for (const MetroXbar *bar : window.findChildren<MetroXbar *>()) {
            if (!bar->isHidden())
                return false;
        }
        return window.findChild<MetroLinerate *>()->isHidden() &&
               window.findChild<AeroLinebar *>()->getValueF() == 0.0;
    }

    SiteModel site;
    UpsModel *ups = site.add(QStringLiteral("demo"));
    ConsoleWindow window{&site};
    std::unique_ptr<NutFeed> feed;
};

} // namespace

#define VERIFY_SERVER(step) QVERIFY2(server.step, qPrintable(server.problem()))

/// The values of the console's widgets follow a real server.
class ConsoleLiveTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void followsTheServer();
    void refusedFromTheStart();
    void screenshotsOfARealUps();
};

void ConsoleLiveTest::followsTheServer()
{
    NutServer server;
    VERIFY_SERVER(writeVariables(variables("OL", "42.5")));
    VERIFY_SERVER(start());
    LiveConsole console(server);
    QTRY_VERIFY(console.system() == on);
    QVERIFY(console.tile("Inverter") == on);
    QCOMPARE(console.dial("Load")->getValue(), 42.5);
    QCOMPARE(console.dial("Battery")->getValue(), 95.5);
    QCOMPARE(console.dial("Input")->getValue(), 231.4);
    QCOMPARE(console.window.findChild<MetroLinerate *>()->getValue(), 43);
    QCOMPARE(console.window.findChild<AeroLinebar *>()->getValueF(), 95.5);

    VERIFY_SERVER(writeVariables(variables("OB DISCHRG", "61")));
    QTRY_COMPARE(int(console.system().elemSt), 6);
    QCOMPARE(int(console.battery().elemSt), 6);
    // The driver hands over one variable after the other.
    QTRY_COMPARE(console.dial("Load")->getValue(), 61.0);

    // An alarm is never shown as in order, wherever it stands in the status.
    VERIFY_SERVER(writeVariables(variables("ALARM OL", "61")));
    QTRY_COMPARE(int(console.system().alarmSt), 4);

    VERIFY_SERVER(writeVariables(variables("OL BYPASS", "131")));
    QTRY_COMPARE(int(console.tile("Bypass").elemSt), 7);
    QTRY_COMPARE(console.dial("Load")->getValue(), 131.0);
    QCOMPARE(console.window.findChild<MetroLinerate *>()->getValue(), 131);

    VERIFY_SERVER(killServer());
    QTRY_VERIFY(console.system() == lost);
    QVERIFY(console.battery() == lost);
    QVERIFY(console.tile("Load") == lost);
    QVERIFY(console.showsNoValue());

    VERIFY_SERVER(writeVariables(variables("OL", "44")));
    VERIFY_SERVER(startServer());
    QTRY_VERIFY(console.system() == on);
    QTRY_COMPARE(console.dial("Load")->getValue(), 44.0);
}

void ConsoleLiveTest::refusedFromTheStart()
{
    NutServer server;
    VERIFY_SERVER(writeVariables(variables("OL", "42")));
    VERIFY_SERVER(start());
    VERIFY_SERVER(killServer());
    LiveConsole console(server);
    const auto showsRefusal = [&] {
        for (const QLabel *label : console.window.findChildren<QLabel *>()) {
            if (label->text().startsWith(QLatin1String("Connection refused (")))
                return true;
        }
        return false;
    };
    QTRY_VERIFY(showsRefusal());
    QVERIFY(console.system() == lost);
    QVERIFY(console.showsNoValue());
}

void ConsoleLiveTest::screenshotsOfARealUps()
{
    NutServer server;
    VERIFY_SERVER(writeVariables(variables("OL", "42")));
    VERIFY_SERVER(start());
    QTemporaryDir directory;
    Options options;
    options.directory = directory.path();
    QString error;
    NutFeed feed(*NutAddress::parse(server.address(), &error));
    SiteModel site;
    UpsModel *ups = site.add(QStringLiteral("demo"));
    ups->setFeed(&feed);
    ConsoleWindow window(&site);
    feed.start();
    QStringList lines;
    QVERIFY2(takeLiveScreenshots(window, site, options, &lines) == LiveScreenshots::Taken,
             qPrintable(lines.join(QLatin1Char('\n'))));
    QCOMPARE(QDir(directory.path()).entryList({QStringLiteral("*.png")}).size(),
             window.pageNames().size());
    QVERIFY(window.findChild<MetroSysIcon *>()->getElementState() == on);
}

KIV_TEST_MAIN(ConsoleLiveTest)

#include "tst_consolelive.moc"

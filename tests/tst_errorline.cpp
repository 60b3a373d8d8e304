// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "metroStyle.h"

#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

#include <sys/socket.h>
#include <unistd.h>

/// How error lines reach the standard error stream; their texts are tested with their widgets.
class ErrorLineTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void oneWriteEach();
    void localTime();
};

/// What one call of @p report writes to the standard error stream, a string for each write.
template <typename Report>
static QStringList writesOf(Report report)
{
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_SEQPACKET, 0, ends) != 0)
        qFatal("no socket pair");
    const int saved = dup(STDERR_FILENO);
    dup2(ends[1], STDERR_FILENO);
    close(ends[1]);
    report();
    dup2(saved, STDERR_FILENO);
    close(saved);
    QStringList writes;
    char packet[4096];
    ssize_t length = 0;
    while ((length = recv(ends[0], packet, sizeof packet, MSG_DONTWAIT)) > 0)
        writes.append(QString::fromLatin1(packet, int(length)));
    close(ends[0]);
    return writes;
}

static void reportUnforeseenState()
{
    QObject owner;
    MetroStyle style(&owner);
    style.setState({9, 0});
    style.getColorIdx();
}

void ErrorLineTest::oneWriteEach()
{
    const QStringList writes = writesOf([] {
        reportUnforeseenState();
        reportUnforeseenState();
    });
    QCOMPARE(writes.size(), 2);
    const QRegularExpression form(QStringLiteral(
        "\\A\\[\\d\\d:\\d\\d:\\d\\d\\]KivWidgets/metroStyle\\.cpp Err \\(getColorIdx\\): "
        "Caso alarmSt non previsto:0x09\\n\\z"));
    QVERIFY2(form.match(writes.at(0)).hasMatch(), qPrintable(writes.at(0)));
    QVERIFY2(form.match(writes.at(1)).hasMatch(), qPrintable(writes.at(1)));
}

void ErrorLineTest::localTime()
{
    // Twelve hours off, so that the clock cannot agree by chance.
    for (const char *zone : {"UTC", "FAR-12"}) {
        qputenv("TZ", zone);
        tzset();
        const QTime before = QTime::currentTime();
        const QString line = writesOf(reportUnforeseenState).value(0);
        const QTime shown = QTime::fromString(line.mid(1, 8), QStringLiteral("hh:mm:ss"));
        QVERIFY2(shown.isValid(), qPrintable(line));
        const int seconds = (before.secsTo(shown) + 86400) % 86400;
        QVERIFY2(seconds <= 5 || seconds == 86399, qPrintable(line));
    }
}

QTEST_GUILESS_MAIN(ErrorLineTest)

#include "tst_errorline.moc"

// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "nutaddress.h"
#include "nutlistreader.h"

#include "testmain.h"
#include "widgetprobe.h"

#include <cstring>

using State = NutListReader::State;

Q_DECLARE_METATYPE(NutListReader::State)

namespace {

const QByteArray begin = "BEGIN LIST VAR demo\n";
const QByteArray end = "END LIST VAR demo\n";

QByteArray variableLine(int number, int valueLength)
{
    return "VAR demo v" + QByteArray::number(number) + " \"" + QByteArray(valueLength, 'x') +
           "\"\n";
}

} // namespace

class TestUpsFeedProtocol : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void addresses_data();
    void addresses();
    void wrongAddresses_data();
    void wrongAddresses();
    void lines_data();
    void lines();
    void wrongLines_data();
    void wrongLines();
    void wholeList();
    void listInPieces_data();
    void listInPieces();
    void emptyList();
    void laterValueWins();
    void refusals_data();
    void refusals();
    void brokenAnswers_data();
    void brokenAnswers();
    void unfinishedAnswers_data();
    void unfinishedAnswers();
    void longestLine();
    void tooLongLine();
    void endlessLineIsNotKept();
    void mostVariables();
    void longestAnswer();
    void staysBroken();
};

void TestUpsFeedProtocol::addresses_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("host");
    QTest::addColumn<int>("port");
    QTest::addColumn<QString>("whole");
    QTest::newRow("demo@localhost") << "demo"
                                    << "localhost" << 3493 << "demo@localhost:3493";
    QTest::newRow("demo@192.168.0.7:4000") << "demo"
                                           << "192.168.0.7" << 4000 << "demo@192.168.0.7:4000";
    QTest::newRow("Ups-1_b.c@ups.example.org:1")
        << "Ups-1_b.c"
        << "ups.example.org" << 1 << "Ups-1_b.c@ups.example.org:1";
    QTest::newRow("demo@[::1]") << "demo"
                                << "::1" << 3493 << "demo@[::1]:3493";
    QTest::newRow("demo@[fe80::1%eth0]:65535")
        << "demo"
        << "fe80::1%eth0" << 65535 << "demo@[fe80::1%eth0]:65535";
}

void TestUpsFeedProtocol::addresses()
{
    QFETCH(QString, name);
    QFETCH(QString, host);
    QFETCH(int, port);
    QFETCH(QString, whole);
    QString error;
    const std::optional<NutAddress> address =
        NutAddress::parse(QString::fromLatin1(QTest::currentDataTag()), &error);
    QVERIFY2(address, qPrintable(error));
    QCOMPARE(error, QString());
    QCOMPARE(address->upsName, name);
    QCOMPARE(address->host, host);
    QCOMPARE(int(address->port), port);
    QCOMPARE(address->toString(), whole);
}

void TestUpsFeedProtocol::wrongAddresses_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("about"); // what the error speaks of
    QTest::newRow("empty") << ""
                           << "NAME@HOST";
    QTest::newRow("no host") << "demo"
                             << "NAME@HOST";
    QTest::newRow("empty host") << "demo@"
                                << "host";
    QTest::newRow("only a port") << "demo@:3493"
                                 << "host";
    QTest::newRow("no name") << "@localhost"
                             << "name";
    QTest::newRow("space in the name") << "de mo@localhost"
                                       << "name";
    QTest::newRow("line end in the name") << "demo\nLOGIN demo@localhost"
                                          << "name";
    QTest::newRow("line end after the name") << "demo\n@localhost"
                                             << "name";
    QTest::newRow("quote in the name") << "de\"mo@localhost"
                                       << "name";
    QTest::newRow("letter beyond ASCII") << QString::fromUtf8("dèmo@localhost") << "name";
    QTest::newRow("too long a name")
        << QString::fromLatin1(QByteArray(65, 'a') + "@localhost") << "name";
    QTest::newRow("two at signs") << "a@b@c"
                                  << "host";
    QTest::newRow("space in the host") << "demo@local host"
                                       << "host";
    QTest::newRow("line end in the host") << "demo@localhost\n"
                                          << "host";
    QTest::newRow("too long a host")
        << QString::fromLatin1("demo@" + QByteArray(254, 'a')) << "host";
    QTest::newRow("IPv6 without brackets") << "demo@::1"
                                           << "brackets";
    QTest::newRow("IPv6 with port without brackets") << "demo@fe80::1:3493"
                                                     << "brackets";
    QTest::newRow("name in brackets") << "demo@[localhost]"
                                      << "brackets";
    QTest::newRow("nothing in brackets") << "demo@[]"
                                         << "brackets";
    QTest::newRow("line end in a scope") << "demo@[fe80::1%a\nb]"
                                         << "brackets";
    QTest::newRow("open bracket") << "demo@[::1"
                                  << "brackets";
    QTest::newRow("text after the bracket") << "demo@[::1]x"
                                            << "brackets";
    QTest::newRow("port 0") << "demo@localhost:0"
                            << "port";
    QTest::newRow("port too great") << "demo@localhost:65536"
                                    << "port";
    QTest::newRow("far too great a port") << "demo@localhost:99999999999"
                                          << "port";
    QTest::newRow("empty port") << "demo@localhost:"
                                << "port";
    QTest::newRow("negative port") << "demo@localhost:-1"
                                   << "port";
    QTest::newRow("port with a space") << "demo@localhost: 80"
                                       << "port";
    QTest::newRow("port in words") << "demo@localhost:nut"
                                   << "port";
}

void TestUpsFeedProtocol::wrongAddresses()
{
    QFETCH(QString, text);
    QFETCH(QString, about);
    QString error;
    QVERIFY(!NutAddress::parse(text, &error));
    QVERIFY2(error.contains(about), qPrintable(error));
    QVERIFY(!error.contains(QLatin1Char('\n')));
}

void TestUpsFeedProtocol::lines_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QVector<QByteArray>>("words");
    const auto row = [](const char *name, const char *line, const QVector<QByteArray> &words) {
        QTest::newRow(name) << QByteArray(line) << words;
    };
    row("empty", "", {});
    row("spaces", "   ", {});
    row("words", "BEGIN LIST VAR demo", {"BEGIN", "LIST", "VAR", "demo"});
    row("more spaces", " a   b ", {"a", "b"});
    row("quoted", "VAR demo ups.status \"OL CHRG\"", {"VAR", "demo", "ups.status", "OL CHRG"});
    row("empty quotes", "VAR demo ups.alarm \"\"", {"VAR", "demo", "ups.alarm", ""});
    row("escapes", R"(x "a \"b\" \\ c")", {"x", R"(a "b" \ c)"});
    row("escaped backslash at the end", R"(x "a\\")", {"x", R"(a\)"});
    row("backslash in a word", R"(a\b)", {R"(a\b)"});
    row("beyond ASCII", "x \"\xc3\xa8\"", {"x", "\xc3\xa8"});
}

void TestUpsFeedProtocol::lines()
{
    QFETCH(QByteArray, line);
    QFETCH(QVector<QByteArray>, words);
    const std::optional<QVector<QByteArray>> split = splitNutLine(line);
    QVERIFY(split);
    QCOMPARE(*split, words);
}

void TestUpsFeedProtocol::wrongLines_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("open quotes") << QByteArray("VAR demo x \"a");
    QTest::newRow("escape at the end") << QByteArray("\"a\\");
    QTest::newRow("escaped end quote") << QByteArray("\"a\\\"");
    QTest::newRow("unknown escape") << QByteArray("\"a\\n\"");
    QTest::newRow("quote within a word") << QByteArray("a\"b\"");
    QTest::newRow("text after the quotes") << QByteArray("\"a\"b");
    QTest::newRow("NUL") << QByteArray("a\0b", 3);
    QTest::newRow("tab") << QByteArray("a\tb");
    QTest::newRow("carriage return within") << QByteArray("a\rb");
    QTest::newRow("escape character") << QByteArray("\"\x1b[31m\"");
}

void TestUpsFeedProtocol::wrongLines()
{
    QFETCH(QByteArray, line);
    QVERIFY(!splitNutLine(line));
}

void TestUpsFeedProtocol::wholeList()
{
    NutListReader reader(QStringLiteral("demo"));
    QCOMPARE(reader.state(), State::Reading);
    QCOMPARE(
        reader.take(begin + "VAR demo battery.charge \"60\"\nVAR demo ups.status \"OL\"\n" + end),
        State::Complete);
    QCOMPARE(reader.variables(),
             (NutVariables{{QStringLiteral("battery.charge"), QStringLiteral("60")},
                           {QStringLiteral("ups.status"), QStringLiteral("OL")}}));
    QCOMPARE(reader.problem(), QString());
}

void TestUpsFeedProtocol::listInPieces_data()
{
    QTest::addColumn<int>("piece");
    QTest::addColumn<QByteArray>("lineEnd");
    for (int piece : {1, 2, 3, 7, 19, 20, 21, 1000}) {
        QTest::addRow("%d bytes", piece) << piece << QByteArray("\n");
        QTest::addRow("%d bytes, carriage returns", piece) << piece << QByteArray("\r\n");
    }
}

void TestUpsFeedProtocol::listInPieces()
{
    QFETCH(int, piece);
    QFETCH(QByteArray, lineEnd);
    QByteArray answer = begin + "VAR demo a \"1 \\\" 2\"\nVAR demo b \"\"\n" + end;
    answer.replace("\n", lineEnd);
    NutListReader reader(QStringLiteral("demo"));
    for (int i = 0; i < answer.size(); i += piece) {
        QCOMPARE(reader.state(), State::Reading);
        reader.take(answer.mid(i, piece));
    }
    QCOMPARE(reader.state(), State::Complete);
    QCOMPARE(reader.variables(), (NutVariables{{QStringLiteral("a"), QStringLiteral("1 \" 2")},
                                               {QStringLiteral("b"), QString::fromLatin1("")}}));
}

void TestUpsFeedProtocol::emptyList()
{
    NutListReader reader(QStringLiteral("demo"));
    QCOMPARE(reader.take(begin + end), State::Complete);
    QVERIFY(reader.variables().isEmpty());
}

void TestUpsFeedProtocol::laterValueWins()
{
    NutListReader reader(QStringLiteral("demo"));
    QCOMPARE(reader.take(begin + "VAR demo a \"1\"\nVAR demo a \"2\"\n" + end), State::Complete);
    QCOMPARE(reader.variables().value(QStringLiteral("a")), QStringLiteral("2"));
}

void TestUpsFeedProtocol::refusals_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("code");
    for (const char *code :
         {"DATA-STALE", "DRIVER-NOT-CONNECTED", "UNKNOWN-UPS", "ACCESS-DENIED", "SOMETHING-NEW"}) {
        QTest::newRow(code) << "ERR " + QByteArray(code) + "\n" << QString::fromLatin1(code);
    }
    QTest::newRow("with more words")
        << QByteArray("ERR DATA-STALE since noon\n") << QStringLiteral("DATA-STALE");
}

void TestUpsFeedProtocol::refusals()
{
    QFETCH(QByteArray, line);
    QFETCH(QString, code);
    NutListReader reader(QStringLiteral("demo"));
    QCOMPARE(reader.take(line), State::Refused);
    QCOMPARE(reader.problem(), code);
    QVERIFY(reader.variables().isEmpty());
}

void TestUpsFeedProtocol::brokenAnswers_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::newRow("web server") << QByteArray("HTTP/1.1 400 Bad Request\r\n");
    QTest::newRow("mail server") << QByteArray("220 mail.example.org ESMTP\r\n");
    QTest::newRow("binary") << QByteArray("\x16\x03\x01\x00\xff\n", 6);
    QTest::newRow("empty line") << QByteArray("\n");
    QTest::newRow("empty line in the list") << begin + "\n";
    QTest::newRow("variable before the list") << QByteArray("VAR demo a \"1\"\n");
    QTest::newRow("end before the list") << end;
    QTest::newRow("begun twice") << begin + begin;
    QTest::newRow("another list") << QByteArray("BEGIN LIST UPS\n");
    QTest::newRow("another UPS's list") << QByteArray("BEGIN LIST VAR other\n");
    QTest::newRow("another UPS's variable") << begin + "VAR other a \"1\"\n";
    QTest::newRow("another UPS's end") << begin + "END LIST VAR other\n";
    QTest::newRow("variable without a value") << begin + "VAR demo a\n";
    QTest::newRow("value in too many words") << begin + "VAR demo a \"1\" \"2\"\n";
    QTest::newRow("open quotes") << begin + "VAR demo a \"1\n";
    QTest::newRow("error within the list") << begin + "VAR demo a \"1\"\nERR DATA-STALE\n";
    QTest::newRow("error without a code") << QByteArray("ERR\n");
    QTest::newRow("lower case") << QByteArray("begin list var demo\n");
    QTest::newRow("more after the list") << begin + end + "x";
    QTest::newRow("two lists") << begin + end + begin + end;
    QTest::newRow("more after an error") << QByteArray("ERR DATA-STALE\nERR DATA-STALE\n");
}

void TestUpsFeedProtocol::brokenAnswers()
{
    QFETCH(QByteArray, answer);
    NutListReader reader(QStringLiteral("demo"));
    QCOMPARE(reader.take(answer), State::Broken);
    QVERIFY(!reader.problem().isEmpty());
    QVERIFY(reader.variables().isEmpty());
}

void TestUpsFeedProtocol::unfinishedAnswers_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("half a line") << QByteArray("BEGIN LI");
    QTest::newRow("line without its end") << begin.chopped(1);
    QTest::newRow("list without its end") << begin + "VAR demo a \"1\"\n";
    QTest::newRow("end line without its end") << begin + "VAR demo a \"1\"\n" + end.chopped(1);
}

void TestUpsFeedProtocol::unfinishedAnswers()
{
    QFETCH(QByteArray, answer);
    NutListReader reader(QStringLiteral("demo"));
    QCOMPARE(reader.take(answer), State::Reading);
}

void TestUpsFeedProtocol::longestLine()
{
    const int overhead = int(std::strlen("VAR demo a \"\""));
    const QByteArray value(NutListReader::maxLine - overhead, 'x');
    NutListReader reader(QStringLiteral("demo"));
    QCOMPARE(reader.take(begin + "VAR demo a \"" + value + "\"\n" + end), State::Complete);
    QCOMPARE(reader.variables().value(QStringLiteral("a")).size(), value.size());
}

void TestUpsFeedProtocol::tooLongLine()
{
    const int overhead = int(std::strlen("VAR demo a \"\""));
    const QByteArray value(NutListReader::maxLine - overhead + 1, 'x');
    NutListReader reader(QStringLiteral("demo"));
    QCOMPARE(reader.take(begin + "VAR demo a \"" + value + "\"\n" + end), State::Broken);
}

void TestUpsFeedProtocol::endlessLineIsNotKept()
{
    NutListReader reader(QStringLiteral("demo"));
    for (int i = 0; i < NutListReader::maxLine; ++i) {
        QCOMPARE(reader.take("x"), State::Reading);
        QCOMPARE(reader.heldBytes(), i + 1);
    }
    QCOMPARE(reader.take("x"), State::Broken);
    QCOMPARE(reader.heldBytes(), 0);
    reader.take(QByteArray(100000, 'x'));
    QCOMPARE(reader.heldBytes(), 0);
}

void TestUpsFeedProtocol::mostVariables()
{
    NutListReader reader(QStringLiteral("demo"));
    reader.take(begin);
    for (int i = 0; i < NutListReader::maxVariables; ++i)
        QCOMPARE(reader.take(variableLine(i, 10)), State::Reading);
    QCOMPARE(reader.variables().size(), NutListReader::maxVariables);
    NutListReader greedy = reader;
    QCOMPARE(reader.take(end), State::Complete);

    // The same names over and over count too: the list must end some day.
    QCOMPARE(greedy.take(variableLine(0, 10)), State::Broken);
    QVERIFY(greedy.variables().isEmpty());
}

void TestUpsFeedProtocol::longestAnswer()
{
    NutListReader reader(QStringLiteral("demo"));
    reader.take(begin);
    const int most = NutListReader::maxAnswer / 4000 + 1;
    QVERIFY(most < NutListReader::maxVariables);
    int count = 0;
    while (count <= most && reader.take(variableLine(count, 4000)) == State::Reading)
        ++count;
    QCOMPARE(reader.state(), State::Broken);
    QVERIFY(count > most - 10);
    QVERIFY(reader.variables().isEmpty());
}

void TestUpsFeedProtocol::staysBroken()
{
    NutListReader reader(QStringLiteral("demo"));
    QCOMPARE(reader.take("garbage\n"), State::Broken);
    const QString problem = reader.problem();
    QCOMPARE(reader.take(begin + end), State::Broken);
    QCOMPARE(reader.problem(), problem);
}

KIV_TEST_MAIN(TestUpsFeedProtocol)
#include "tst_upsfeedprotocol.moc"

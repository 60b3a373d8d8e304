// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "journal.h"
#include "store.h"

#include "testmain.h"
#include "widgetprobe.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QRandomGenerator>
#include <QtCore/QTemporaryDir>

#include <cmath>
#include <csignal>
#include <limits>

#include <sys/resource.h>
#include <sys/stat.h>

namespace {

const QString ups = QStringLiteral("demo@host:3493");
constexpr float none = std::numeric_limits<float>::quiet_NaN();

/// A Sunday, 2026-11-22 10:00 UTC.
constexpr qint64 start = 1795341600LL * 1000;

QDateTime now()
{
    return QDateTime::fromMSecsSinceEpoch(start, Qt::UTC);
}

UpsSample sampleAt(qint64 at, float value, Quantity quantity = Quantity::Load)
{
    return {ups, {at, quantity, value}};
}

int modeOf(const QString &path)
{
    struct stat info = {};
    return ::stat(QFile::encodeName(path).constData(), &info) == 0 ? int(info.st_mode & 07777) : -1;
}

/// A directory with a history in it, of some size, which is closed.
QString makeHistory(const QTemporaryDir &place, int events = 200)
{
    const QString directory = place.filePath(QStringLiteral("kivconsole"));
    Store store;
    if (!store.open(directory, Store::Mode::Writing, now()) || !store.begin())
        return {};
    for (int i = 0; i < events; ++i) {
        Event event;
        event.ups = ups;
        event.condition = QStringLiteral("on-battery");
        event.text = QString(100, QLatin1Char('x'));
        event.begin = start + i * hourMsecs;
        event.end = event.begin + minuteMsecs;
        if (!store.write(&event))
            return {};
    }
    return store.commit() ? directory : QString();
}

bool overwrite(const QString &file, qint64 from, qint64 length, char with)
{
    QFile out(file);
    return out.open(QIODevice::ReadWrite) && out.seek(from) &&
           out.write(QByteArray(int(length), with)) == length;
}

EventChange change(EventChange::What what, qint64 at, Severity severity = Severity::Warning)
{
    EventChange one;
    one.what = what;
    one.ups = ups;
    one.condition = QStringLiteral("on-battery");
    one.text = QStringLiteral("On battery");
    one.value = QStringLiteral("0 V");
    one.severity = severity;
    one.at = at;
    return one;
}

} // namespace

class HistoryStoreTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void anyOrderGivesTheSameMinutes_data();
    void anyOrderGivesTheSameMinutes();
    void rollUpWeighsByTime();
    void hoursAreWhatTheirMinutesAre();
    void longTexts();
    void packingKeepsEverySample();
    void isPrivate();
    void relativePlaceIsRefused();
    void oneWrites();
    void damagedFiles_data();
    void damagedFiles();
    void newerFileIsLeftAlone();
    void placesThatCannotBeWritten();
    void networks();
    void fullDisk();
    void keepsWhatItShould();
    void becomesSmaller();
    void adoptsWhatWentOnElsewhere();
    void curveHasGaps();
    void curveShowsPeaksWhateverItsSpan_data();
    void curveShowsPeaksWhateverItsSpan();
    void curveKeepsSteps();
    void curveOfWhatIsNotWrittenYet();
    void flickerIsOneEvent();
    void aWorseConditionAsksAgain();
    void clockSetBack();
    void filters();
    void spreadsheetsExecuteNothing();
};

void HistoryStoreTest::anyOrderGivesTheSameMinutes_data()
{
    QTest::addColumn<quint32>("seed");
    for (quint32 seed = 1; seed <= 20; ++seed)
        QTest::addRow("seed %u", seed) << seed;
}

/// The roll-up of random samples, in random order and in random portions, is that of a plain sum
/// over each tenth of a second.
void HistoryStoreTest::anyOrderGivesTheSameMinutes()
{
    QFETCH(quint32, seed);
    QRandomGenerator random(seed);
    constexpr int minutes = 7;
    constexpr int step = 100;
    constexpr int ticks = int(minuteMsecs) / step;
    QVector<UpsSample> samples;
    QVector<float> tickValues(minutes * ticks, none);
    for (int minute = 0; minute < minutes; ++minute) {
        const int count = random.bounded(1, 40);
        QMap<int, float> values;
        for (int i = 0; i < count; ++i)
            values.insert(random.bounded(ticks),
                          random.bounded(8) == 0 ? none : float(random.bounded(2000)) / 8.0F);
        for (auto value = values.cbegin(); value != values.cend(); ++value) {
            samples.append(sampleAt(start + minute * minuteMsecs + value.key() * step, *value));
            const auto next = std::next(value);
            const int until = next == values.cend() ? ticks : next.key();
            for (int tick = value.key(); tick < until; ++tick)
                tickValues[minute * ticks + tick] = *value;
        }
    }
    for (int i = int(samples.size()) - 1; i > 0; --i)
        std::swap(samples[i], samples[random.bounded(i + 1)]);

    Store store;
    QVERIFY(store.openInMemory());
    for (int done = 0; done < samples.size();) {
        const int portion = random.bounded(1, 20);
        QVERIFY(store.addSamples(samples.mid(done, portion)));
        done += portion;
    }
    const auto stored =
        store.rollups(ups, Quantity::Load, minuteMsecs, start, start + minutes * minuteMsecs);
    int found = 0;
    for (int minute = 0; minute < minutes; ++minute) {
        double sum = 0;
        double low = 1e9;
        double high = -1e9;
        int covered = 0;
        for (int tick = 0; tick < ticks; ++tick) {
            const float value = tickValues.at(minute * ticks + tick);
            if (std::isnan(value))
                continue;
            sum += double(value);
            low = std::min(low, double(value));
            high = std::max(high, double(value));
            ++covered;
        }
        if (covered == 0)
            continue;
        QVERIFY(found < stored.size());
        const auto &[at, rollup] = stored.at(found++);
        QCOMPARE(at, start + minute * minuteMsecs);
        QCOMPARE(rollup.low, low);
        QCOMPARE(rollup.high, high);
        QCOMPARE(rollup.covered, qint64(covered) * step);
        QVERIFY2(std::abs(rollup.mean - sum / covered) < 1e-6,
                 qPrintable(QStringLiteral("%1 %2").arg(rollup.mean).arg(sum / covered)));
    }
    QCOMPARE(found, int(stored.size()));
}

void HistoryStoreTest::rollUpWeighsByTime()
{
    const auto at = [](qint64 seconds, float value) {
        return Sample{start + seconds * secondMsecs, Quantity::Load, value};
    };
    // 10 for 45 s, 50 for 15 s.
    const auto rollup = rollUp(QVector<Sample>{at(0, 10), at(45, 50)}, start + minuteMsecs);
    QVERIFY(rollup.has_value());
    QCOMPARE(rollup->mean, 20.0);
    QCOMPARE(rollup->low, 10.0);
    QCOMPARE(rollup->high, 50.0);
    QCOMPARE(rollup->covered, minuteMsecs);
    QVERIFY(!rollUp(QVector<Sample>{at(5, none)}, start + minuteMsecs));
    QVERIFY(!rollUp(QVector<Sample>(), start + minuteMsecs));
}

void HistoryStoreTest::hoursAreWhatTheirMinutesAre()
{
    Store store;
    QVERIFY(store.openInMemory());
    QVector<UpsSample> samples;
    for (int minute = 0; minute < 60; ++minute)
        samples.append(sampleAt(start + minute * minuteMsecs, float(minute)));
    QVERIFY(store.addSamples(samples));
    QVERIFY(store.rollUpHours(start + hourMsecs - 1));
    QVERIFY(store.rollups(ups, Quantity::Load, hourMsecs, start, start + dayMsecs).isEmpty());
    QVERIFY(store.rollUpHours(start + hourMsecs));
    auto hours = store.rollups(ups, Quantity::Load, hourMsecs, start, start + dayMsecs);
    QCOMPARE(hours.size(), 1);
    QCOMPARE(hours.first().first, start);
    QCOMPARE(hours.first().second, (Rollup{0.0, 59.0, 29.5, hourMsecs}));
    // A sample that comes late still counts.
    QVERIFY(store.addSamples({sampleAt(start + 30 * secondMsecs, 100.0F)}));
    QVERIFY(store.rollUpHours(start + 2 * hourMsecs));
    hours = store.rollups(ups, Quantity::Load, hourMsecs, start, start + dayMsecs);
    QCOMPARE(hours.first().second.high, 100.0);
    QCOMPARE(hours.first().second.mean, (29.5 * 60 + 50) / 60);
}

/// A text that is cut says so; its event is found again all the same.
void HistoryStoreTest::longTexts()
{
    const QTemporaryDir place;
    Store store;
    QVERIFY(store.open(place.filePath(QStringLiteral("kivconsole")), Store::Mode::Writing, now()));
    EventChange one = change(EventChange::What::Begin, start);
    const QString text(600, QLatin1Char('x'));
    one.condition = one.text = text;
    QVERIFY(Journal::apply(&store, {one}));
    one.what = EventChange::What::End;
    one.at += 1000;
    QVERIFY(Journal::apply(&store, {one}));
    const QVector<Event> events = store.events({}, 10);
    QCOMPARE(events.size(), 1);
    QCOMPARE(events.first().text, text.left(499) + QString::fromUtf8("…"));
    QVERIFY(!events.first().isPresent());
}

void HistoryStoreTest::packingKeepsEverySample()
{
    QVector<Sample> samples;
    for (int i = 0; i < quantityCount; ++i)
        samples.append({start + i * 4999, Quantity(i), i == 3 ? none : float(i) * -1234.5F});
    QCOMPARE(unpacked(packed(samples, start), start), samples);
    // What is garbled is left out, and nothing is read beyond the end.
    const QByteArray bytes = packed(samples, start);
    for (int cut = 0; cut < bytes.size(); ++cut)
        QCOMPARE(int(unpacked(bytes.left(cut), start).size()), cut / 7);
    QVERIFY(unpacked(QByteArray(700, '\xff'), start).isEmpty());
}

void HistoryStoreTest::isPrivate()
{
    const QTemporaryDir place;
    const QString directory = place.filePath(QStringLiteral("share/kivconsole"));
    Store store;
    QVERIFY2(store.open(directory, Store::Mode::Writing, now()), qPrintable(store.problemText()));
    QVERIFY(store.addSamples({sampleAt(start, 1.0F)}));
    QCOMPARE(modeOf(directory), 0700);
    const QStringList files = QDir(directory).entryList(QDir::Files);
    QVERIFY(files.contains(QStringLiteral("history.db-wal")));
    for (const QString &file : files)
        QVERIFY2(modeOf(directory + QLatin1Char('/') + file) == 0600, qPrintable(file));
}

void HistoryStoreTest::relativePlaceIsRefused()
{
    Store store;
    for (const char *place : {"", "share", "./kivconsole", "../x"}) {
        QVERIFY(!store.open(QLatin1String(place), Store::Mode::Writing, now()));
        QCOMPARE(store.problem(), Store::Problem::NoPlace);
    }
}

void HistoryStoreTest::oneWrites()
{
    const QTemporaryDir place;
    const QString directory = makeHistory(place);
    QVERIFY(!directory.isEmpty());
    Store first;
    QVERIFY(first.open(directory, Store::Mode::Writing, now()));
    Store second;
    QVERIFY(!second.open(directory, Store::Mode::Writing, now()));
    QCOMPARE(second.problem(), Store::Problem::Busy);
    QVERIFY2(second.open(directory, Store::Mode::Reading, now()), qPrintable(second.problemText()));
    QCOMPARE(second.events({}, 1000).size(), 200);
    QVERIFY(!second.addSamples({sampleAt(start, 1.0F)}));
    QVERIFY(!second.begin());
    // It sees what the other writes.
    const qint64 version = second.version();
    QVERIFY(Journal::apply(&first, {change(EventChange::What::Begin, start + 500 * dayMsecs)}));
    QVERIFY(second.version() != version);
    QCOMPARE(second.events({}, 1000).size(), 201);
    first.close();
    QVERIFY(second.open(directory, Store::Mode::Writing, now()));
}

void HistoryStoreTest::damagedFiles_data()
{
    QTest::addColumn<QString>("damage");
    for (const char *damage : {"text", "zeros", "cut", "garbled", "foreign", "wal"})
        QTest::newRow(damage) << QString::fromLatin1(damage);
}

void HistoryStoreTest::damagedFiles()
{
    QFETCH(QString, damage);
    const QTemporaryDir place;
    const QString directory = makeHistory(place);
    QVERIFY(!directory.isEmpty());
    const QString file = directory + QStringLiteral("/history.db");
    const qint64 size = QFileInfo(file).size();
    QVERIFY(size > 20000);
    bool survives = false;
    if (damage == QLatin1String("text")) {
        QVERIFY(overwrite(file, 0, 4096, 'x'));
    } else if (damage == QLatin1String("zeros")) {
        QVERIFY(overwrite(file, 100, size - 100, '\0'));
    } else if (damage == QLatin1String("cut")) {
        QVERIFY(QFile::resize(file, size / 2));
    } else if (damage == QLatin1String("garbled")) {
        QVERIFY(overwrite(file, 4096, size - 4096, '\x5a'));
    } else if (damage == QLatin1String("wal")) {
        // A log that does not belong to it is no harm.
        QFile log(file + QStringLiteral("-wal"));
        QVERIFY(log.open(QIODevice::WriteOnly));
        QCOMPARE(log.write(QByteArray(8192, '\x77')), 8192);
        survives = true;
    } else {
        QVERIFY(QFile::remove(file));
        {
            QSqlDatabase other = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), damage);
            other.setDatabaseName(file);
            QVERIFY(other.open());
            QSqlQuery query(other);
            QVERIFY(query.exec(QStringLiteral("CREATE TABLE mail(id INTEGER)")));
        }
        QSqlDatabase::removeDatabase(damage);
    }
    Store store;
    QVERIFY2(store.open(directory, Store::Mode::Writing, now()), qPrintable(store.problemText()));
    QCOMPARE(store.events({}, 1000).size(), survives ? 200 : 0);
    QCOMPARE(store.setAsideAs(),
             survives ? QString() : QStringLiteral("history.db.damaged-2026-11-22T10-00-00"));
    if (!survives)
        QVERIFY(QFile::exists(directory + QLatin1Char('/') + store.setAsideAs()));
    QVERIFY(Journal::apply(&store, {change(EventChange::What::Begin, start)}));
    QVERIFY(store.addSamples({sampleAt(start, 1.0F)}));
}

void HistoryStoreTest::newerFileIsLeftAlone()
{
    const QTemporaryDir place;
    const QString directory = makeHistory(place);
    const QString file = directory + QStringLiteral("/history.db");
    {
        QSqlDatabase other = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), file);
        other.setDatabaseName(file);
        QVERIFY(other.open());
        QSqlQuery query(other);
        QVERIFY(query.exec(QStringLiteral("PRAGMA user_version=2")));
    }
    QSqlDatabase::removeDatabase(file);
    QFile in(file);
    QVERIFY(in.open(QIODevice::ReadOnly));
    const QByteArray before = in.readAll();
    Store store;
    QVERIFY(!store.open(directory, Store::Mode::Writing, now()));
    QCOMPARE(store.problem(), Store::Problem::Newer);
    QVERIFY(!store.problemText().isEmpty());
    QVERIFY(in.seek(0));
    QCOMPARE(in.readAll(), before);
    QCOMPARE(QDir(directory).entryList({QStringLiteral("*.damaged*")}).size(), 0);
}

void HistoryStoreTest::placesThatCannotBeWritten()
{
    Store store;
    // Not even root makes a directory there.
    QVERIFY(!store.open(QStringLiteral("/proc/self/kivconsole"), Store::Mode::Writing, now()));
    QCOMPARE(store.problem(), Store::Problem::NoPlace);
    QVERIFY(store.problemText().contains(QLatin1String("/proc/self")));
    // A directory that exists and takes no files.
    QVERIFY(!store.open(QStringLiteral("/proc/self"), Store::Mode::Writing, now()));
    QCOMPARE(store.problem(), Store::Problem::NoPlace);
    // A file in the way.
    const QTemporaryDir place;
    QFile file(place.filePath(QStringLiteral("file")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(
        !store.open(file.fileName() + QStringLiteral("/kivconsole"), Store::Mode::Writing, now()));
    QCOMPARE(store.problem(), Store::Problem::NoPlace);
    // A link that leads elsewhere.
    QVERIFY(QFile::link(file.fileName(), place.filePath(QStringLiteral("history.db"))));
    QVERIFY(!store.open(place.path(), Store::Mode::Writing, now()));
    QCOMPARE(store.problem(), Store::Problem::NoPlace);
}

void HistoryStoreTest::networks()
{
    for (const char *type : {"nfs", "nfs4", "cifs", "smb3", "fuse.sshfs", "9p", "NFS"})
        QVERIFY2(Store::isNetwork(type), type);
    for (const char *type : {"ext4", "btrfs", "tmpfs", "overlay", "xfs", "zfs", "", "fuse"})
        QVERIFY2(!Store::isNetwork(type), type);
}

/// A limit of the file size stands for the full disk: a write beyond it fails.
void HistoryStoreTest::fullDisk()
{
    const QTemporaryDir place;
    const QString directory = makeHistory(place);
    Store store;
    QVERIFY(store.open(directory, Store::Mode::Writing, now()));
    std::signal(SIGXFSZ, SIG_IGN);
    struct rlimit before = {};
    QCOMPARE(::getrlimit(RLIMIT_FSIZE, &before), 0);
    struct rlimit small = before;
    small.rlim_cur = 100 * 1024;
    QCOMPARE(::setrlimit(RLIMIT_FSIZE, &small), 0);
    int written = 0;
    for (; written < 1000; ++written) {
        EventChange one = change(EventChange::What::Moment, start + written);
        one.text = QString(400, QLatin1Char('y'));
        if (!Journal::apply(&store, {one}))
            break;
    }
    const Store::Problem problem = store.problem();
    const bool canWrite = store.tryToWrite();
    QCOMPARE(::setrlimit(RLIMIT_FSIZE, &before), 0);
    std::signal(SIGXFSZ, SIG_DFL);
    QVERIFY2(written < 1000, "the limit of the file size does not work here");
    QVERIFY(problem == Store::Problem::Full || problem == Store::Problem::Failed);
    QVERIFY(!canWrite);
    QVERIFY(!store.problemText().isEmpty());
    // What was written is there, and it goes on when there is room.
    QCOMPARE(store.events({}, 10000).size(), 200 + written);
    QVERIFY(store.tryToWrite());
    QVERIFY(Journal::apply(&store, {change(EventChange::What::Moment, start)}));
    store.close();
    QVERIFY(store.open(directory, Store::Mode::Writing, now()));
    QVERIFY(store.setAsideAs().isEmpty());
    QCOMPARE(store.events({}, 10000).size(), 201 + written);
}

void HistoryStoreTest::keepsWhatItShould()
{
    Store store;
    QVERIFY(store.openInMemory());
    QVector<UpsSample> samples;
    for (int day = 0; day < 120; ++day)
        samples.append(sampleAt(start - day * dayMsecs, float(day)));
    QVERIFY(store.addSamples(samples));
    QVERIFY(store.rollUpHours(start + dayMsecs));
    const auto count = [&](qint64 step) {
        return int(store.rollups(ups, Quantity::Load, step, 0, start + dayMsecs).size());
    };
    QVERIFY(store.prune(Retention(), start));
    QCOMPARE(int(store.samples(ups, 0, start + dayMsecs).size()), 8);
    QCOMPARE(count(minuteMsecs), 91);
    QCOMPARE(count(hourMsecs), 120);
    QVERIFY(store.prune({3, 30, 60}, start));
    QCOMPARE(int(store.samples(ups, 0, start + dayMsecs).size()), 4);
    QCOMPARE(count(minuteMsecs), 31);
    QCOMPARE(count(hourMsecs), 61);
    QVERIFY(store.prune({0, 0, 0}, start + 1000 * dayMsecs));
    QCOMPARE(count(hourMsecs), 61);
}

void HistoryStoreTest::becomesSmaller()
{
    const QTemporaryDir place;
    const QString directory = makeHistory(place, 1);
    Store store;
    QVERIFY(store.open(directory, Store::Mode::Writing, now()));
    QVector<UpsSample> samples;
    for (int second = 0; second < 20 * 3600; ++second)
        samples.append(sampleAt(start + second * secondMsecs, float(second % 97)));
    QVERIFY(store.addSamples(samples));
    store.close();
    const QFileInfo file(directory + QStringLiteral("/history.db"));
    const qint64 before = file.size();
    QVERIFY(before > 500 * 1024);
    QVERIFY(store.open(directory, Store::Mode::Writing, now()));
    QVERIFY(store.prune(Retention(), start + 200 * dayMsecs));
    store.close();
    const qint64 after = QFileInfo(file.filePath()).size();
    QVERIFY2(after < before / 2, qPrintable(QString::number(after)));
    QVERIFY(store.open(directory, Store::Mode::Writing, now()));
    QVERIFY(store.setAsideAs().isEmpty());
    QCOMPARE(store.events({}, 10).size(), 1);
}

void HistoryStoreTest::adoptsWhatWentOnElsewhere()
{
    const QTemporaryDir place;
    Store file;
    QVERIFY(file.open(makeHistory(place, 0), Store::Mode::Writing, now()));
    QVERIFY(Journal::apply(&file, {change(EventChange::What::Begin, start)}));
    const Event mine = file.presentEvents().value(0);
    QVERIFY(Journal::acknowledge(&file, {mine.id}, QStringLiteral("Ann"), start + 5000));
    // It is seen again ten minutes later, and ends after five more.
    Store memory;
    QVERIFY(memory.openInMemory());
    const qint64 later = start + 10 * minuteMsecs;
    QVERIFY(Journal::apply(&memory, {change(EventChange::What::Begin, later),
                                     change(EventChange::What::End, later + 5 * minuteMsecs)}));
    QVERIFY(file.adopt(&memory, later + hourMsecs));
    const QVector<Event> all = file.events({}, 10);
    QCOMPARE(all.size(), 1);
    const Event &one = all.first();
    QCOMPARE(one.id, mine.id);
    QCOMPARE(one.begin, start);
    QCOMPARE(one.end.value_or(0), later + 5 * minuteMsecs);
    QCOMPARE(one.lasted, 15 * minuteMsecs);
    QCOMPARE(one.acknowledgedBy, QStringLiteral("Ann"));
    // What was worse meanwhile was not acknowledged.
    QVERIFY(Journal::apply(&file, {change(EventChange::What::Begin, later + hourMsecs)}));
    const Event next = file.presentEvents().value(0);
    QVERIFY(Journal::acknowledge(&file, {next.id}, QStringLiteral("Ann"), later + hourMsecs));
    QVERIFY(memory.openInMemory());
    QVERIFY(Journal::apply(
        &memory, {change(EventChange::What::Begin, later + 2 * hourMsecs, Severity::Critical)}));
    QVERIFY(file.adopt(&memory, later + 3 * hourMsecs));
    const Event worse = file.presentEvents().value(0);
    QCOMPARE(worse.id, next.id);
    QCOMPARE(worse.severity, Severity::Critical);
    QVERIFY(!worse.isAcknowledged());
}

void HistoryStoreTest::curveHasGaps()
{
    Store store;
    QVERIFY(store.openInMemory());
    QVERIFY(store.addSamples({sampleAt(start, 10.0F), sampleAt(start + minuteMsecs, 10.0F),
                              // a value that is away, and comes back
                              sampleAt(start + 70 * secondMsecs, none),
                              sampleAt(start + 90 * secondMsecs, 20.0F),
                              // nothing for a long time
                              sampleAt(start + 10 * minuteMsecs, 30.0F)}));
    const auto points = store.curve(ups, Quantity::Load, {start, start + 20 * minuteMsecs}, 1000);
    QVector<qint64> begins;
    for (const TrendPoint &point : points) {
        if (!point.joined)
            begins.append((point.at - start) / secondMsecs);
    }
    QCOMPARE(begins, (QVector<qint64>{0, 90, 600}));
    // Just before it went away it was there.
    QVERIFY(std::any_of(points.cbegin(), points.cend(), [](const TrendPoint &point) {
        return point.at == start + 70 * secondMsecs - 1 && point.mean == 10.0F;
    }));
    // Of what was never measured there is nothing.
    QVERIFY(store.curve(ups, Quantity::Temperature, {start, start + hourMsecs}, 100).isEmpty());
    QVERIFY(store.curve(QStringLiteral("other"), Quantity::Load, {start, start + hourMsecs}, 100)
                .isEmpty());
}

void HistoryStoreTest::curveShowsPeaksWhateverItsSpan_data()
{
    QTest::addColumn<qint64>("span");
    QTest::newRow("10 min") << 10 * minuteMsecs;
    QTest::newRow("1 h") << hourMsecs;
    QTest::newRow("24 h") << dayMsecs;
    QTest::newRow("7 d") << 7 * dayMsecs;
    QTest::newRow("30 d") << 30 * dayMsecs;
}

void HistoryStoreTest::curveShowsPeaksWhateverItsSpan()
{
    QFETCH(qint64, span);
    Store store;
    QVERIFY(store.openInMemory());
    QVector<UpsSample> samples;
    for (qint64 at = start - span; at < start; at += minuteMsecs)
        samples.append(sampleAt(at, 50.0F));
    // One second of 99 and one of 3.
    samples.append({sampleAt(start - 5 * minuteMsecs + 7000, 99.0F),
                    sampleAt(start - 5 * minuteMsecs + 8000, 3.0F),
                    sampleAt(start - 5 * minuteMsecs + 9000, 50.0F)});
    QVERIFY(store.addSamples(samples));
    QVERIFY(store.rollUpHours(start));
    QVERIFY(store.prune(Retention(), start));
    const auto points = store.curve(ups, Quantity::Load, {start - span, start}, 300);
    QVERIFY(!points.isEmpty());
    QVERIFY(points.size() <= 301);
    float low = 100.0F;
    float high = 0.0F;
    int breaks = 0;
    for (const TrendPoint &point : points) {
        low = std::min(low, point.low);
        high = std::max(high, point.high);
        breaks += point.joined ? 0 : 1;
        QVERIFY(point.low <= point.mean && point.mean <= point.high);
    }
    QCOMPARE(low, 3.0F);
    QCOMPARE(high, 99.0F);
    QCOMPARE(breaks, 1);
}

/// A value that seldom changes is drawn as the steps that it makes, also with few columns.
void HistoryStoreTest::curveKeepsSteps()
{
    Store store;
    QVERIFY(store.openInMemory());
    QVector<UpsSample> samples;
    for (int minute = 0; minute < 60; ++minute) {
        const float carried = minute > 10 && minute <= 20 ? 0.0F : 230.0F;
        samples.append(sampleAt(start + minute * minuteMsecs, carried));
    }
    samples.append(sampleAt(start + 10 * minuteMsecs + 30000, 0.0F));
    samples.append(sampleAt(start + 20 * minuteMsecs + 30000, 230.0F));
    QVERIFY(store.addSamples(samples));
    for (const int columns : {40, 60, 97, 118, 120, 240, 3000}) {
        const auto points = store.curve(ups, Quantity::Load, {start, start + hourMsecs}, columns);
        QVERIFY(points.size() <= std::max(columns, 130));
        const qint64 width = hourMsecs / columns + 1;
        for (const TrendPoint &point : points) {
            const qint64 at = point.at - start;
            const bool nearStep = std::abs(at - 10 * minuteMsecs - 30000) <= width ||
                                  std::abs(at - 20 * minuteMsecs - 30000) <= width;
            const bool down = at > 10 * minuteMsecs + 30000 && at < 20 * minuteMsecs + 30000;
            if (!nearStep)
                QCOMPARE(point.mean, down ? 0.0F : 230.0F);
        }
        // No longer stretch without a point that the line would cross aslant.
        for (int i = 1; i < points.size(); ++i) {
            QVERIFY(points.at(i).joined);
            if (points.at(i).mean != points.at(i - 1).mean)
                QVERIFY(points.at(i).at - points.at(i - 1).at <= width);
        }
    }
}

void HistoryStoreTest::curveOfWhatIsNotWrittenYet()
{
    Store store;
    QVERIFY(store.openInMemory());
    const QVector<Sample> more = {{start, Quantity::Load, 10.0F},
                                  {start + 5000, Quantity::Load, 20.0F},
                                  {start + 5000, Quantity::Temperature, 30.0F}};
    auto points = store.curve(ups, Quantity::Load, {start - hourMsecs, start + 6000}, 1000, more);
    QCOMPARE(points.size(), 3);
    QCOMPARE(points.last().mean, 20.0F);
    points = store.curve(ups, Quantity::Load, {start - dayMsecs, start + 6000}, 1000, more);
    QCOMPARE(points.size(), 1);
    QCOMPARE(points.first().high, 20.0F);
}

void HistoryStoreTest::flickerIsOneEvent()
{
    Store store;
    QVERIFY(store.openInMemory());
    qint64 at = start;
    for (int i = 0; i < 50; ++i) {
        QVERIFY(Journal::apply(&store, {change(EventChange::What::Begin, at)}));
        QVERIFY(Journal::apply(&store, {change(EventChange::What::End, at + 2000)}));
        at += 10000;
    }
    QVector<Event> events = store.events({}, 1000);
    QCOMPARE(events.size(), 1);
    QCOMPARE(events.first().count, 50);
    QCOMPARE(events.first().begin, start);
    QCOMPARE(*events.first().end, at - 8000);
    QCOMPARE(events.first().lasted, 100000);
    // After a rest it is another one.
    QVERIFY(Journal::apply(&store, {change(EventChange::What::Begin, at + Journal::settleTime)}));
    events = store.events({}, 1000);
    QCOMPARE(events.size(), 2);
    QVERIFY(events.first().isPresent());
    QCOMPARE(events.first().count, 1);
}

void HistoryStoreTest::aWorseConditionAsksAgain()
{
    Store store;
    QVERIFY(store.openInMemory());
    QVERIFY(Journal::apply(&store, {change(EventChange::What::Begin, start)}));
    const qint64 id = store.events({}, 10).first().id;
    QVERIFY(Journal::acknowledge(&store, {id}, QStringLiteral("Ann"), start + 1));
    // A second one changes nothing.
    QCOMPARE(Journal::acknowledge(&store, {id, 77}, QStringLiteral("Bob"), start + 2)->size(), 0);
    Event event = *store.event(id);
    QCOMPARE(event.acknowledgedBy, QStringLiteral("Ann"));
    QCOMPARE(*event.acknowledgedAt, start + 1);
    QVERIFY(
        Journal::apply(&store, {change(EventChange::What::Begin, start + 3, Severity::Critical)}));
    event = *store.event(id);
    QCOMPARE(event.severity, Severity::Critical);
    QVERIFY(!event.isAcknowledged());
    QCOMPARE(event.begin, start);
    QCOMPARE(event.count, 1);
}

void HistoryStoreTest::clockSetBack()
{
    Store store;
    QVERIFY(store.openInMemory());
    QVERIFY(Journal::apply(&store, {change(EventChange::What::Begin, start)}));
    QVERIFY(Journal::apply(&store, {change(EventChange::What::End, start - hourMsecs)}));
    const Event event = store.events({}, 10).first();
    QCOMPARE(*event.end, event.begin);
    QCOMPARE(event.lasted, 0);
}

void HistoryStoreTest::filters()
{
    Event event;
    event.ups = ups;
    event.severity = Severity::Warning;
    event.text = QStringLiteral("Battery low");
    event.begin = start;
    event.end = start + minuteMsecs;
    EventFilter filter;
    QVERIFY(filter.matches(event));
    filter.least = Severity::Information;
    QVERIFY(filter.matches(event));
    filter.least = Severity::Critical;
    QVERIFY(!filter.matches(event));
    filter = {};
    filter.text = QStringLiteral("bATT");
    QVERIFY(filter.matches(event));
    filter.text = QStringLiteral("fan");
    QVERIFY(!filter.matches(event));
    filter = {};
    filter.ups = QStringLiteral("other");
    QVERIFY(!filter.matches(event));
    filter = {};
    filter.from = start + minuteMsecs;
    QVERIFY(filter.matches(event));
    filter.from = start + minuteMsecs + 1;
    QVERIFY(!filter.matches(event));
    event.end.reset();
    QVERIFY(filter.matches(event));
}

void HistoryStoreTest::spreadsheetsExecuteNothing()
{
    QCOMPARE(csvCell(QStringLiteral("plain")), QStringLiteral("plain"));
    QCOMPARE(csvCell(QStringLiteral("-12.5")), QStringLiteral("-12.5"));
    QCOMPARE(csvCell(QStringLiteral("a,b")), QStringLiteral("\"a,b\""));
    QCOMPARE(csvCell(QStringLiteral("say \"x\"")), QStringLiteral("\"say \"\"x\"\"\""));
    QCOMPARE(csvCell(QStringLiteral("two\nlines")), QStringLiteral("\"two\nlines\""));
    for (const char *formula : {"=1+1", "+cmd|' /C calc'!A0", "-2+3", "@SUM(A1)", "\t=1", "\r=1"}) {
        const QString cell = csvCell(QLatin1String(formula));
        QVERIFY2(cell.startsWith(QLatin1String("\"'")), formula);
    }
    Event event;
    event.text = QStringLiteral("=HYPERLINK(\"http://x\")");
    event.begin = start;
    const QString text = csvOf({event});
    QCOMPARE(text.count(QStringLiteral("\r\n")), 2);
    QVERIFY(text.contains(QLatin1String("2026-11-22 10:00:00,,")));
    QVERIFY(text.contains(QLatin1String("\"'=HYPERLINK(\"\"http://x\"\")\"")));
}

KIV_TEST_MAIN(HistoryStoreTest)

#include "tst_historystore.moc"

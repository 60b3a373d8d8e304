// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "store.h"

#include "plaintext.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QLockFile>
#include <QtCore/QStorageInfo>
#include <QtSql/QSqlError>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <limits>
#include <map>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr int formatVersion = 1;
constexpr int applicationId = 0x4b697648; // "KivH": what makes the file ours

// SQLite's own numbers.
constexpr int sqliteBusy = 5;
constexpr int sqliteReadOnly = 8;
constexpr int sqliteCorrupt = 11;
constexpr int sqliteFull = 13;
constexpr int sqliteCannotOpen = 14;
constexpr int sqliteNotADatabase = 26;

/// Longer texts from a UPS are cut.
constexpr int longestText = 500;

const char *const tables[] = {
    "CREATE TABLE ups(id INTEGER PRIMARY KEY, name TEXT NOT NULL UNIQUE)",
    // at: seconds since 1970 UTC, the begin of the minute or hour; covered: milliseconds. What is
    // left out: high and mean are low, and covered is all of the time.
    "CREATE TABLE raw(ups INTEGER, at INTEGER, samples BLOB, PRIMARY KEY(ups, at)) WITHOUT ROWID",
    "CREATE TABLE minute(ups INTEGER, quantity INTEGER, at INTEGER, low REAL, high REAL, mean REAL,"
    " covered INTEGER, PRIMARY KEY(ups, quantity, at)) WITHOUT ROWID",
    "CREATE TABLE hour(ups INTEGER, quantity INTEGER, at INTEGER, low REAL, high REAL, mean REAL,"
    " covered INTEGER, PRIMARY KEY(ups, quantity, at)) WITHOUT ROWID",
    // Times: milliseconds since 1970 UTC.
    "CREATE TABLE event(id INTEGER PRIMARY KEY, ups INTEGER NOT NULL, kind INTEGER, condition TEXT,"
    " severity INTEGER, text TEXT, value TEXT, begin INTEGER, end INTEGER, end_seen INTEGER,"
    " lasted INTEGER, resumed INTEGER, count INTEGER, user TEXT, acknowledged_at INTEGER,"
    " acknowledged_by TEXT)",
    "CREATE INDEX event_begin ON event(begin)",
    "CREATE INDEX event_condition ON event(ups, condition, begin)",
    "CREATE INDEX event_present ON event(ups) WHERE end IS NULL",
    "CREATE INDEX event_unacknowledged ON event(severity) WHERE acknowledged_at IS NULL",
};

#define KIV_EVENT_COLUMNS                                                                          \
    "id, ups, kind, condition, severity, text, value, begin, end, end_seen, lasted, resumed, "     \
    "count, user, acknowledged_at, acknowledged_by"

Store::Problem problemOf(int native)
{
    switch (native & 0xff) { // the rest says more than is needed
    case sqliteCorrupt:
    case sqliteNotADatabase:
        return Store::Problem::Damaged;
    case sqliteFull:
        return Store::Problem::Full;
    case sqliteReadOnly:
    case sqliteCannotOpen:
        return Store::Problem::NoPlace;
    case sqliteBusy:
        return Store::Problem::Busy;
    default:
        return Store::Problem::Failed;
    }
}

qint64 toSeconds(qint64 at)
{
    return floorTo(at, secondMsecs) / secondMsecs;
}

QVariant orNull(std::optional<qint64> number)
{
    return number ? QVariant(*number) : QVariant();
}

std::optional<qint64> numberOrNone(const QVariant &value)
{
    return value.isNull() ? std::nullopt : std::optional<qint64>(value.toLongLong());
}

/// The last columns of a row of roll-ups, and back.
QVariantList columnsOf(const Rollup &sum, qint64 step)
{
    const bool flat = sum.high == sum.low;
    return {sum.low, flat ? QVariant() : QVariant(sum.high), flat ? QVariant() : QVariant(sum.mean),
            sum.covered == step ? QVariant() : QVariant(sum.covered)};
}

Rollup rollupFrom(const QSqlQuery &query, int first, qint64 step)
{
    Rollup sum;
    sum.low = sum.high = sum.mean = query.value(first).toDouble();
    sum.covered = step;
    if (!query.isNull(first + 1))
        sum.high = query.value(first + 1).toDouble();
    if (!query.isNull(first + 2))
        sum.mean = query.value(first + 2).toDouble();
    if (!query.isNull(first + 3))
        sum.covered = query.value(first + 3).toLongLong();
    return sum;
}

/// Values as they change: the old one stays until the new one is there.
QVector<TrendPoint> stepsOf(const QVector<Sample> &samples)
{
    QVector<TrendPoint> points;
    const Sample *before = nullptr;
    for (const Sample &sample : samples) {
        const bool joined = before && !before->isGap() && sample.at - before->at <= longestHold;
        if (joined && (sample.isGap() || sample.value != before->value) &&
            sample.at - before->at > 1)
            points.append({sample.at - 1, before->value, before->value, before->value, true});
        if (!sample.isGap())
            points.append({sample.at, sample.value, sample.value, sample.value, joined});
        before = &sample;
    }
    return points;
}

/// Joins what falls into one column.
QVector<TrendPoint> reduced(const QVector<TrendPoint> &points, TimeSpan span, int columns)
{
    if (points.size() <= columns || columns < 1 || span.to <= span.from)
        return points;
    QVector<TrendPoint> result;
    const double share = double(columns) / double(span.to - span.from);
    int last = -1;
    int joined = 0;
    for (const TrendPoint &point : points) {
        const int column = int(double(point.at - span.from) * share);
        if (column == last && point.joined) {
            TrendPoint &one = result.last();
            ++joined;
            one.low = std::min(one.low, point.low);
            one.high = std::max(one.high, point.high);
            one.mean += (point.mean - one.mean) / float(joined);
        } else {
            result.append(point);
            joined = 1;
        }
        last = column;
    }
    return result;
}

/// The samples as one point for each of @p columns in which there was a value: what each value was
/// there for counts, however seldom it changed.
QVector<TrendPoint> resampled(const QVector<Sample> &samples, TimeSpan span, int columns)
{
    QVector<TrendPoint> points;
    const double width = double(span.to - span.from) / columns;
    int last = -1;    // the column of the last point
    double sum = 0.0; // of its values, each times its time
    double time = 0.0;
    qint64 coveredUntil = std::numeric_limits<qint64>::min();
    for (int i = 0; i < samples.size(); ++i) {
        const Sample &sample = samples.at(i);
        if (sample.isGap())
            continue;
        // The last one, and one before a long silence, is there for an instant.
        qint64 until = sample.at + 1;
        if (i + 1 < samples.size() && samples.at(i + 1).at - sample.at <= longestHold)
            until = std::max(samples.at(i + 1).at, until);
        const qint64 from = std::max(sample.at, span.from);
        until = std::min(until, span.to);
        if (from >= until)
            continue;
        const int first = std::min(int(double(from - span.from) / width), columns - 1);
        const int end = std::min(int(double(until - 1 - span.from) / width), columns - 1);
        for (int column = first; column <= end; ++column) {
            const double begin = std::max(double(from - span.from), column * width);
            const double part = std::min(double(until - span.from), (column + 1) * width) - begin;
            const bool goesOn = column > first || from <= coveredUntil;
            if (column != last || !goesOn) {
                const qint64 middle = span.from + qint64((column + 0.5) * width);
                points.append({middle, sample.value, sample.value, sample.value, goesOn});
                sum = time = 0.0;
                last = column;
            }
            TrendPoint &point = points.last();
            sum += double(sample.value) * part;
            time += part;
            point.low = std::min(point.low, sample.value);
            point.high = std::max(point.high, sample.value);
            if (time > 0.0)
                point.mean = std::clamp(float(sum / time), point.low, point.high);
        }
        coveredUntil = until;
    }
    return points;
}

/// What one event comes to whose begin is known as @p first, and whose end as @p rest.
Event joined(const Event &first, Event rest)
{
    rest.id = first.id;
    if (first.begin < rest.begin) {
        rest.lasted += first.length(rest.begin);
        rest.begin = first.begin;
        rest.value = first.value;
    }
    if (urgencyOf(first.severity) < urgencyOf(rest.severity))
        return rest; // what was acknowledged was less
    rest.severity = first.severity;
    if (!rest.isAcknowledged()) {
        rest.acknowledgedAt = first.acknowledgedAt;
        rest.acknowledgedBy = first.acknowledgedBy;
    }
    return rest;
}

TrendPoint pointOf(qint64 begin, qint64 step, const Rollup &rollup)
{
    return {begin + step / 2, float(rollup.low), float(rollup.high), float(rollup.mean), false};
}

QVector<TrendPoint> pointsOf(const QVector<QPair<qint64, Rollup>> &rollups, qint64 step)
{
    QVector<TrendPoint> points;
    points.reserve(rollups.size());
    for (const auto &[at, rollup] : rollups)
        points.append(pointOf(at, step, rollup));
    return points;
}

/// Connects what is one @p step apart.
void join(QVector<TrendPoint> *points, qint64 step)
{
    for (int i = 1; i < points->size(); ++i) {
        TrendPoint &point = (*points)[i];
        point.joined = point.joined || point.at - points->at(i - 1).at <= step * 3 / 2;
    }
}

} // namespace

Store::Store()
{
    static std::atomic<int> count{0};
    connection = QStringLiteral("kivhistory-%1").arg(++count);
}

Store::~Store()
{
    close();
}

Store::Mode Store::mode() const
{
    return current;
}

Store::Problem Store::problem() const
{
    return lastProblem;
}

QString Store::problemText() const
{
    return lastText;
}

bool Store::fail(Problem problem, const QString &text)
{
    lastProblem = problem;
    lastText = text;
    return false;
}

bool Store::fail(const QSqlError &error, const QString &doing)
{
    bool isNumber = false;
    const int native = error.nativeErrorCode().toInt(&isNumber);
    return fail(isNumber ? problemOf(native) : Problem::Failed,
                QStringLiteral("%1: %2").arg(doing, error.databaseText()));
}

bool Store::isNetwork(const QByteArray &type)
{
    static const char *const types[] = {"nfs",       "cifs",  "smb",  "fuse.sshfs",
                                        "fuse.gvfs", "afs",   "ceph", "fuse.glusterfs",
                                        "9p",        "ncpfs", "davfs"};
    return std::any_of(std::begin(types), std::end(types),
                       [&type](const char *one) { return type.toLower().startsWith(one); });
}

QString Store::setAsideAs() const
{
    return aside;
}

bool Store::prepareDirectory(const QString &directory)
{
    if (!QDir::isAbsolutePath(directory))
        return fail(Problem::NoPlace, QStringLiteral("there is no directory for it"));
    const QString shown = QDir::toNativeSeparators(directory);
    if (!QDir().mkpath(directory))
        return fail(Problem::NoPlace, QStringLiteral("cannot make the directory %1").arg(shown));
    if (isNetwork(QStorageInfo(directory).fileSystemType()))
        return fail(Problem::Network, QStringLiteral("%1 is on a network").arg(shown));
    // Also what a hand made with more rights.
    QFile::setPermissions(directory, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return true;
}

bool Store::prepareFile(const QString &directory)
{
    const QByteArray file = QFile::encodeName(QDir(directory).filePath(QLatin1String(fileName)));
    // An empty file is a new database, and its companions take its rights.
    const int handle =
        ::open(file.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, S_IRUSR | S_IWUSR);
    if (handle < 0)
        return fail(Problem::NoPlace,
                    QStringLiteral("cannot write in %1").arg(QDir::toNativeSeparators(directory)));
    ::fchmod(handle, S_IRUSR | S_IWUSR);
    ::close(handle);
    return true;
}

bool Store::takeLock(const QString &directory)
{
    const QString file = QDir(directory).filePath(QStringLiteral("history.lock"));
    auto taken = std::make_unique<QLockFile>(file);
    taken->setStaleLockTime(0); // only that of a process that is gone
    if (!taken->tryLock(0)) {
        if (taken->error() == QLockFile::LockFailedError)
            return fail(Problem::Busy, QStringLiteral("another console writes it"));
        return fail(Problem::NoPlace,
                    QStringLiteral("cannot write in %1").arg(QDir::toNativeSeparators(directory)));
    }
    QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner);
    lock = std::move(taken);
    return true;
}

bool Store::open(const QString &directory, Mode wantedMode, const QDateTime &now, bool anew)
{
    close();
    aside.clear();
    lastProblem = Problem::None;
    lastText.clear();
    const QString file = QDir(directory).filePath(QLatin1String(fileName));
    if (wantedMode == Mode::Reading) {
        current = wantedMode;
        if (!QFile::exists(file))
            fail(Problem::NoPlace, QStringLiteral("there is no %1").arg(file));
        else if (openConnection(file, true) && prepareTables())
            return true;
        close();
        return false;
    }
    if (!prepareDirectory(directory) || !takeLock(directory))
        return false;
    for (int attempt = 0; attempt < 2; ++attempt) {
        const bool isBad = attempt > 0 || anew;
        if ((isBad && aside.isEmpty() && !setAside(directory, now)) || !prepareFile(directory))
            break;
        current = wantedMode;
        if (openConnection(file, false) && prepareTables()) {
            // What the old file had is no problem of the new one.
            lastProblem = Problem::None;
            lastText.clear();
            findOpenHours();
            return true;
        }
        disconnect();
        if (lastProblem != Problem::Damaged || !aside.isEmpty())
            break;
    }
    close();
    return false;
}

bool Store::openInMemory()
{
    close();
    current = Mode::Memory;
    if (openConnection(QStringLiteral(":memory:"), false) && prepareTables())
        return true;
    close();
    return false;
}

bool Store::openConnection(const QString &file, bool readOnly)
{
    const QString driver = QStringLiteral("QSQLITE");
    if (!QSqlDatabase::isDriverAvailable(driver))
        return fail(Problem::Failed, QStringLiteral("Qt's driver for SQLite is not installed"));
    database = QSqlDatabase::addDatabase(driver, connection);
    database.setDatabaseName(file);
    QString options = QStringLiteral("QSQLITE_BUSY_TIMEOUT=2000");
    if (readOnly)
        options += QStringLiteral(";QSQLITE_OPEN_READONLY");
    database.setConnectOptions(options);
    return database.open() || fail(database.lastError(), QStringLiteral("cannot open it"));
}

bool Store::run(const QString &sql)
{
    QSqlQuery once(database);
    return once.exec(sql) || fail(once.lastError(), QStringLiteral("cannot use it"));
}

/// The number that @p sql selects; absent, with the problem, if it cannot be read.
std::optional<qint64> Store::number(const char *sql)
{
    QSqlQuery once(database);
    if (once.exec(QLatin1String(sql)) && once.next())
        return once.value(0).toLongLong();
    fail(once.lastError(), QStringLiteral("cannot read it"));
    return std::nullopt;
}

bool Store::prepareTables()
{
    // Only the first statement shows whether this is a database.
    const std::optional<qint64> version = number("PRAGMA user_version");
    const std::optional<qint64> objects = number("SELECT count(*) FROM sqlite_master");
    const std::optional<qint64> application = number("PRAGMA application_id");
    if (!version || !objects || !application)
        return false;
    const bool isEmpty = *objects == 0;
    if (!isEmpty && *application != applicationId)
        return fail(Problem::Damaged, QStringLiteral("it is another program's file"));
    if (*version > formatVersion)
        return fail(Problem::Newer, QStringLiteral("a later version of this program wrote it"));
    if (current == Mode::Reading)
        return !isEmpty || fail(Problem::NoPlace, QStringLiteral("it is empty"));
    if (isEmpty && !run(QStringLiteral("PRAGMA auto_vacuum=INCREMENTAL")))
        return false;
    for (const char *setting : {"PRAGMA journal_mode=WAL", "PRAGMA synchronous=NORMAL",
                                "PRAGMA journal_size_limit=4194304"}) {
        if (!run(QLatin1String(setting)))
            return false;
    }
    return isEmpty ? createTables() : checkTables();
}

/// What is broken deeper inside shows when it is used.
bool Store::checkTables()
{
    constexpr qint64 quicklyChecked = qint64(32) * 1024 * 1024;
    if (QFile(database.databaseName()).size() > quicklyChecked)
        return true;
    QSqlQuery check(database);
    if (!check.exec(QStringLiteral("PRAGMA quick_check(1)")) || !check.next())
        return fail(check.lastError(), QStringLiteral("cannot read it"));
    return check.value(0).toString() == QLatin1String("ok") ||
           fail(Problem::Damaged, QStringLiteral("it is damaged"));
}

bool Store::createTables()
{
    if (!begin())
        return false;
    const bool created = std::all_of(std::begin(tables), std::end(tables),
                                     [this](const char *sql) { return run(QLatin1String(sql)); });
    if (created && run(QStringLiteral("PRAGMA application_id=%1").arg(applicationId)) &&
        run(QStringLiteral("PRAGMA user_version=%1").arg(formatVersion)))
        return commit();
    rollBack();
    return false;
}

void Store::close()
{
    disconnect();
    lock.reset();
}

void Store::disconnect()
{
    if (inTransaction)
        rollBack();
    prepared.clear();
    numbers.clear();
    names.clear();
    openHours.clear();
    current = Mode::Closed;
    if (!database.isValid())
        return;
    database.close();
    database = QSqlDatabase();
    QSqlDatabase::removeDatabase(connection);
}

bool Store::setAside(const QString &directory, const QDateTime &now)
{
    const QDir place(directory);
    const QString name = QLatin1String(fileName);
    const QString stem = name + QStringLiteral(".damaged-") +
                         now.toUTC().toString(QStringLiteral("yyyy-MM-ddTHH-mm-ss"));
    aside = stem;
    for (int i = 2; place.exists(aside); ++i)
        aside = stem + QStringLiteral("-%1").arg(i);
    if (!QFile::rename(place.filePath(name), place.filePath(aside))) {
        aside.clear();
        return fail(Problem::Damaged, QStringLiteral("it is damaged and cannot be renamed"));
    }
    // A log must not meet a file that it does not belong to.
    for (const char *companion : {"-wal", "-shm"}) {
        const QString ending = QLatin1String(companion);
        if (place.exists(name + ending) &&
            !QFile::rename(place.filePath(name + ending), place.filePath(aside + ending)))
            QFile::remove(place.filePath(name + ending));
    }
    return true;
}

bool Store::tryToWrite()
{
    if (!begin())
        return false;
    if (run(QStringLiteral("PRAGMA user_version=%1").arg(formatVersion)))
        return commit();
    rollBack();
    return false;
}

bool Store::adopt(Store *other, qint64 now)
{
    QVector<UpsSample> samples;
    const QStringList all = other->upsNames();
    for (const QString &ups : all) {
        const QVector<Sample> lastDay = other->samples(ups, now - dayMsecs, now + hourMsecs);
        for (const Sample &sample : lastDay)
            samples.append({ups, sample});
    }
    if (!addSamples(samples) || !begin())
        return false;
    constexpr int most = 10000;
    QVector<Event> events = other->events({}, most);
    std::reverse(events.begin(), events.end());
    for (Event event : std::as_const(events)) {
        // One that was present when this file was left is the same one.
        const Event mine = latest(event.ups, event.condition);
        event.id = 0;
        if (mine.id != 0 && mine.isPresent())
            event = joined(mine, event);
        if (!write(&event)) {
            rollBack();
            return false;
        }
    }
    return commit();
}

/// A prepared query that was run with these values; null after a failure. It stays open until it is
/// finished or run again.
QSqlQuery *Store::query(const char *sql, const QVariantList &values)
{
    std::unique_ptr<QSqlQuery> &query = prepared[sql];
    if (!query) {
        query = std::make_unique<QSqlQuery>(database);
        query->setForwardOnly(true);
        if (!query->prepare(QLatin1String(sql))) {
            fail(query->lastError(), QStringLiteral("cannot use it"));
            query.reset();
            return nullptr;
        }
    }
    for (int i = 0; i < values.size(); ++i)
        query->bindValue(i, values.at(i));
    if (query->exec())
        return query.get();
    fail(query->lastError(), current == Mode::Reading ? QStringLiteral("cannot read it")
                                                      : QStringLiteral("cannot write it"));
    query->finish();
    return nullptr;
}

bool Store::begin()
{
    if (current == Mode::Closed || current == Mode::Reading)
        return fail(Problem::Busy, QStringLiteral("it is not open for writing"));
    if (!run(QStringLiteral("PRAGMA synchronous=FULL")))
        return false;
    if (!database.transaction())
        return fail(database.lastError(), QStringLiteral("cannot write it"));
    inTransaction = true;
    return true;
}

bool Store::commit()
{
    inTransaction = false;
    const bool done = database.commit();
    if (!done) {
        fail(database.lastError(), QStringLiteral("cannot write it"));
        database.rollback();
    }
    return done;
}

void Store::rollBack()
{
    inTransaction = false;
    database.rollback();
    numbers.clear(); // one of them may have been new
    names.clear();
}

qint64 Store::numberOf(const QString &ups)
{
    const auto known = numbers.constFind(ups);
    if (known != numbers.constEnd())
        return *known;
    qint64 number = 0;
    if (QSqlQuery *found = query("SELECT id FROM ups WHERE name=?", {ups})) {
        if (found->next())
            number = found->value(0).toLongLong();
        found->finish();
    }
    if (number == 0 && inTransaction) {
        if (QSqlQuery *made = query("INSERT INTO ups(name) VALUES(?)", {ups}))
            number = made->lastInsertId().toLongLong();
    }
    if (number != 0)
        numbers.insert(ups, number);
    return number;
}

QString Store::nameOfUps(qint64 number)
{
    const auto known = names.constFind(number);
    if (known != names.constEnd())
        return *known;
    QString name;
    if (QSqlQuery *found = query("SELECT name FROM ups WHERE id=?", {number})) {
        if (found->next())
            name = found->value(0).toString();
        found->finish();
    }
    if (!name.isEmpty())
        names.insert(number, name);
    return name;
}

std::array<int, severityCount> Store::unacknowledgedCounts()
{
    std::array<int, severityCount> counts{};
    QSqlQuery *found = query(
        "SELECT severity, count(*) FROM event WHERE acknowledged_at IS NULL GROUP BY severity", {});
    while (found && found->next()) {
        const int severity = found->value(0).toInt();
        if (severity >= 0 && severity < severityCount)
            counts.at(std::size_t(severity)) = found->value(1).toInt();
    }
    if (found)
        found->finish();
    return counts;
}

qint64 Store::version()
{
    qint64 number = 0;
    if (QSqlQuery *found = query("PRAGMA data_version", {})) {
        if (found->next())
            number = found->value(0).toLongLong();
        found->finish();
    }
    return number;
}

QStringList Store::upsNames()
{
    QStringList all;
    if (QSqlQuery *found = query("SELECT name FROM ups ORDER BY name", {})) {
        while (found->next())
            all.append(found->value(0).toString());
        found->finish();
    }
    return all;
}

bool Store::addSamples(const QVector<UpsSample> &samples)
{
    if (samples.isEmpty())
        return true;
    std::map<QPair<QString, qint64>, QVector<Sample>> minutes;
    for (const UpsSample &one : samples)
        minutes[{one.ups, floorTo(one.sample.at, minuteMsecs)}].append(one.sample);
    if (current == Mode::Closed || current == Mode::Reading)
        return fail(Problem::Busy, QStringLiteral("it is not open for writing"));
    // What a power cut may take is the last minute alone: no flush of the disk for it.
    if (!run(QStringLiteral("PRAGMA synchronous=NORMAL")))
        return false;
    if (!database.transaction())
        return fail(database.lastError(), QStringLiteral("cannot write it"));
    inTransaction = true;
    for (const auto &[key, ofMinute] : minutes) {
        const qint64 ups = numberOf(key.first);
        if (ups == 0 || !addMinute(ups, key.second, ofMinute)) {
            rollBack();
            return false;
        }
    }
    return commit();
}

bool Store::addMinute(qint64 ups, qint64 minute, QVector<Sample> samples)
{
    putInOrder(&samples);
    const qint64 at = toSeconds(minute);
    QSqlQuery *written = query("INSERT OR IGNORE INTO raw(ups, at, samples) VALUES(?, ?, ?)",
                               {ups, at, packed(samples, minute)});
    if (!written)
        return false;
    if (written->numRowsAffected() == 0) {
        QSqlQuery *found = query("SELECT samples FROM raw WHERE ups=? AND at=?", {ups, at});
        if (!found || !found->next())
            return false;
        samples += unpacked(found->value(0).toByteArray(), minute);
        found->finish();
        putInOrder(&samples);
        if (!query("UPDATE raw SET samples=? WHERE ups=? AND at=?",
                   {packed(samples, minute), ups, at}))
            return false;
    }
    std::array<QVector<Sample>, quantityCount> byQuantity;
    for (const Sample &sample : std::as_const(samples))
        byQuantity.at(std::size_t(sample.quantity)).append(sample);
    for (int i = 0; i < quantityCount; ++i) {
        const auto sum = rollUp(byQuantity.at(std::size_t(i)), minute + minuteMsecs);
        if (sum && !query("INSERT OR REPLACE INTO minute VALUES(?, ?, ?, ?, ?, ?, ?)",
                          QVariantList{ups, i, at} + columnsOf(*sum, minuteMsecs)))
            return false;
    }
    openHours.insert({ups, floorTo(minute, hourMsecs)});
    return true;
}

void Store::findOpenHours()
{
    // The hours since the last one that was rolled up.
    constexpr qint64 most = 100 * dayMsecs;
    QVector<qint64> all;
    if (QSqlQuery *found = query("SELECT id FROM ups", {})) {
        while (found->next())
            all.append(found->value(0).toLongLong());
        found->finish();
    }
    for (const qint64 ups : std::as_const(all)) {
        qint64 from = 0;
        qint64 to = -1;
        if (QSqlQuery *found = query("SELECT max(at) FROM hour WHERE ups=?", {ups})) {
            if (found->next())
                from = found->value(0).toLongLong() * secondMsecs;
            found->finish();
        }
        if (QSqlQuery *found = query("SELECT max(at) FROM raw WHERE ups=?", {ups})) {
            if (found->next() && !found->value(0).isNull())
                to = floorTo(found->value(0).toLongLong() * secondMsecs, hourMsecs);
            found->finish();
        }
        for (qint64 hour = std::max(from, to - most); hour <= to; hour += hourMsecs)
            openHours.insert({ups, hour});
    }
}

bool Store::rollUpHours(qint64 now)
{
    QVector<QPair<qint64, qint64>> over;
    for (const auto &hour : std::as_const(openHours)) {
        if (hour.second + hourMsecs <= now)
            over.append(hour);
    }
    if (over.isEmpty())
        return true;
    if (!database.transaction())
        return fail(database.lastError(), QStringLiteral("cannot write it"));
    inTransaction = true;
    for (const auto &[ups, hour] : std::as_const(over)) {
        for (int quantity = 0; quantity < quantityCount; ++quantity) {
            QVector<Rollup> parts;
            QSqlQuery *found = query("SELECT low, high, mean, covered FROM minute WHERE ups=? AND "
                                     "quantity=? AND at>=? AND at<?",
                                     {ups, quantity, toSeconds(hour), toSeconds(hour + hourMsecs)});
            while (found && found->next())
                parts.append(rollupFrom(*found, 0, minuteMsecs));
            if (found)
                found->finish();
            const std::optional<Rollup> sum = rollUp(parts);
            if (!found || (sum && !query("INSERT OR REPLACE INTO hour VALUES(?, ?, ?, ?, ?, ?, ?)",
                                         QVariantList{ups, quantity, toSeconds(hour)} +
                                             columnsOf(*sum, hourMsecs)))) {
                rollBack();
                return false;
            }
        }
    }
    if (!commit())
        return false;
    for (const auto &hour : std::as_const(over))
        openHours.remove(hour);
    return true;
}

bool Store::prune(const Retention &retention, qint64 now)
{
    const auto before = [now](int days) { return toSeconds(now - days * dayMsecs); };
    const QStringList all = upsNames();
    if (!database.transaction())
        return fail(database.lastError(), QStringLiteral("cannot write it"));
    inTransaction = true;
    bool done = true;
    for (const QString &name : all) {
        const qint64 ups = numberOf(name);
        if (retention.rawDays > 0)
            done = done &&
                   query("DELETE FROM raw WHERE ups=? AND at<?", {ups, before(retention.rawDays)});
        for (int quantity = 0; quantity < quantityCount; ++quantity) {
            if (retention.minuteDays > 0)
                done = done && query("DELETE FROM minute WHERE ups=? AND quantity=? AND at<?",
                                     {ups, quantity, before(retention.minuteDays)});
            if (retention.hourDays > 0)
                done = done && query("DELETE FROM hour WHERE ups=? AND quantity=? AND at<?",
                                     {ups, quantity, before(retention.hourDays)});
        }
    }
    if (!done) {
        rollBack();
        return false;
    }
    return commit() && giveBackPages();
}

/// Makes the file smaller where it is empty, in pieces, so that nothing waits for it.
bool Store::giveBackPages()
{
    constexpr int most = 500;
    QSqlQuery *found = query("PRAGMA freelist_count", {});
    if (!found)
        return false;
    const int pages = found->next() ? std::min(found->value(0).toInt(), most) : 0;
    found->finish();
    if (pages == 0)
        return true;
    if (!database.transaction())
        return fail(database.lastError(), QStringLiteral("cannot write it"));
    inTransaction = true;
    for (int i = 0; i < pages; ++i) {
        // Whatever its argument, Qt runs it as far as the first page.
        if (!run(QStringLiteral("PRAGMA incremental_vacuum(1)"))) {
            rollBack();
            return false;
        }
    }
    return commit();
}

std::optional<qint64> Store::lastSeen(const QString &ups)
{
    std::optional<qint64> last;
    QSqlQuery *found =
        query("SELECT at, samples FROM raw WHERE ups=? ORDER BY at DESC LIMIT 1", {numberOf(ups)});
    if (found && found->next()) {
        const qint64 minute = found->value(0).toLongLong() * secondMsecs;
        last = minute;
        const QVector<Sample> samples = unpacked(found->value(1).toByteArray(), minute);
        for (const Sample &sample : samples)
            last = std::max(*last, sample.at);
    }
    if (found)
        found->finish();
    return last;
}

QVector<Sample> Store::samples(const QString &ups, qint64 from, qint64 to)
{
    QVector<Sample> all;
    QSqlQuery *found =
        query("SELECT at, samples FROM raw WHERE ups=? AND at>=? AND at<?",
              {numberOf(ups), toSeconds(floorTo(from, minuteMsecs)), toSeconds(to) + 1});
    while (found && found->next()) {
        const qint64 minute = found->value(0).toLongLong() * secondMsecs;
        const QVector<Sample> samples = unpacked(found->value(1).toByteArray(), minute);
        for (const Sample &sample : samples) {
            if (sample.at >= from && sample.at < to)
                all.append(sample);
        }
    }
    if (found)
        found->finish();
    return all;
}

QVector<QPair<qint64, Rollup>> Store::rollups(const QString &ups, Quantity quantity, qint64 step,
                                              qint64 from, qint64 to)
{
    QVector<QPair<qint64, Rollup>> all;
    QSqlQuery *found =
        query(step >= hourMsecs ? "SELECT at, low, high, mean, covered FROM hour WHERE ups=? AND "
                                  "quantity=? AND at>=? AND at<?"
                                : "SELECT at, low, high, mean, covered FROM minute WHERE ups=? "
                                  "AND quantity=? AND at>=? AND at<?",
              {numberOf(ups), int(quantity), toSeconds(from + secondMsecs - 1),
               toSeconds(to + secondMsecs - 1)});
    while (found && found->next())
        all.append({found->value(0).toLongLong() * secondMsecs,
                    rollupFrom(*found, 1, step >= hourMsecs ? hourMsecs : minuteMsecs)});
    if (found)
        found->finish();
    return all;
}

QVector<TrendPoint> Store::rawPoints(const QString &ups, Quantity quantity, TimeSpan span,
                                     int columns, const QVector<Sample> &more)
{
    // From before, so that the value at the beginning is known.
    QVector<Sample> all = samples(ups, span.from - longestHold, span.to);
    all += more;
    all.erase(std::remove_if(all.begin(), all.end(),
                             [&](const Sample &one) {
                                 return one.quantity != quantity || one.at >= span.to ||
                                        one.at < span.from - longestHold;
                             }),
              all.end());
    putInOrder(&all);
    // A step takes two points.
    return 2 * all.size() > columns ? resampled(all, span, columns) : stepsOf(all);
}

QVector<TrendPoint> Store::hourPoints(const QString &ups, Quantity quantity, TimeSpan span)
{
    const auto finished = rollups(ups, quantity, hourMsecs, floorTo(span.from, hourMsecs), span.to);
    QVector<TrendPoint> points = pointsOf(finished, hourMsecs);
    // The running hour, and whatever else is not rolled up yet.
    const qint64 done = finished.isEmpty() ? span.from : finished.last().first + hourMsecs;
    std::map<qint64, QVector<Rollup>> hours;
    const auto minutes = rollups(ups, quantity, minuteMsecs, done, span.to);
    for (const auto &[at, rollup] : minutes)
        hours[floorTo(at, hourMsecs)].append(rollup);
    for (const auto &[at, parts] : hours) {
        if (const std::optional<Rollup> sum = rollUp(parts))
            points.append(pointOf(at, hourMsecs, *sum));
    }
    join(&points, hourMsecs);
    return points;
}

QVector<TrendPoint> Store::minutePoints(const QString &ups, Quantity quantity, TimeSpan span,
                                        qint64 finest, const QVector<Sample> &more)
{
    QVector<TrendPoint> points = pointsOf(
        rollups(ups, quantity, minuteMsecs, floorTo(finest, minuteMsecs), span.to), minuteMsecs);
    // The minutes that are not in the file yet.
    std::map<qint64, QVector<Sample>> minutes;
    const qint64 known = points.isEmpty() ? span.from : points.last().at;
    for (const Sample &sample : more) {
        if (sample.quantity == quantity && sample.at > known && sample.at < span.to)
            minutes[floorTo(sample.at, minuteMsecs)].append(sample);
    }
    for (auto &[at, ofMinute] : minutes) {
        putInOrder(&ofMinute);
        if (const auto sum = rollUp(ofMinute, at + minuteMsecs))
            points.append(pointOf(at, minuteMsecs, *sum));
    }
    join(&points, minuteMsecs);
    return points;
}

qint64 Store::beginOfKept(const QString &ups, Quantity quantity, bool isRaw, TimeSpan span)
{
    qint64 begin = span.from;
    QSqlQuery *found = isRaw ? query("SELECT min(at) FROM raw WHERE ups=?", {numberOf(ups)})
                             : query("SELECT min(at) FROM minute WHERE ups=? AND quantity=?",
                                     {numberOf(ups), int(quantity)});
    if (found && found->next() && !found->value(0).isNull())
        begin = std::clamp(found->value(0).toLongLong() * secondMsecs, span.from, span.to);
    if (found)
        found->finish();
    return begin;
}

QVector<TrendPoint> Store::curve(const QString &ups, Quantity quantity, TimeSpan span, int columns,
                                 const QVector<Sample> &more)
{
    constexpr qint64 longestRaw = 3 * hourMsecs;
    constexpr qint64 longestMinutes = 10 * dayMsecs;
    const qint64 length = span.to - span.from;
    if (length > longestMinutes)
        return reduced(hourPoints(ups, quantity, span), span, columns);

    const bool isRaw = length <= longestRaw;
    const qint64 finest = beginOfKept(ups, quantity, isRaw, span);
    // Older than the finest that is kept: the next best.
    const qint64 coarse = isRaw ? minuteMsecs : hourMsecs;
    QVector<TrendPoint> points;
    if (finest > span.from) {
        points = pointsOf(
            rollups(ups, quantity, coarse, floorTo(span.from, coarse), finest - coarse + 1),
            coarse);
        join(&points, coarse);
    }
    QVector<TrendPoint> fine = isRaw ? rawPoints(ups, quantity, {finest, span.to}, columns, more)
                                     : minutePoints(ups, quantity, span, finest, more);
    if (!fine.isEmpty() && !points.isEmpty() && !fine.first().joined)
        fine.first().joined = fine.first().at - points.last().at <= coarse * 3 / 2;
    return reduced(points + fine, span, columns);
}

bool Store::write(Event *event)
{
    const qint64 ups = numberOf(event->ups);
    if (ups == 0)
        return false;
    event->condition.truncate(longestText);
    for (QString *text : {&event->text, &event->value, &event->user, &event->acknowledgedBy})
        *text = cutText(*text, longestText);
    // Bound: one that is not there gets the next number.
    QSqlQuery *written = query(
        "INSERT OR REPLACE INTO event(" KIV_EVENT_COLUMNS ") VALUES(?, ?, ?, ?, ?, ?, ?, ?, ?, ?, "
        "?, ?, ?, ?, ?, ?)",
        {event->id > 0 ? QVariant(event->id) : QVariant(), ups, int(event->kind), event->condition,
         int(event->severity), event->text, event->value, event->begin, orNull(event->end),
         event->endSeen ? 1 : 0, event->lasted, event->resumed, event->count, event->user,
         orNull(event->acknowledgedAt), event->acknowledgedBy});
    if (!written)
        return false;
    if (event->id == 0)
        event->id = written->lastInsertId().toLongLong();
    return true;
}

std::optional<Event> Store::readEvent(const QSqlQuery &query)
{
    Event event;
    const int kind = query.value(2).toInt();
    const int severity = query.value(4).toInt();
    event.id = query.value(0).toLongLong();
    event.ups = nameOfUps(query.value(1).toLongLong());
    if (kind < 0 || kind >= eventKindCount || severity < 0 || severity >= severityCount)
        return std::nullopt;
    event.kind = EventKind(kind);
    event.condition = query.value(3).toString();
    event.severity = Severity(severity);
    event.text = query.value(5).toString();
    event.value = query.value(6).toString();
    event.begin = query.value(7).toLongLong();
    event.end = numberOrNone(query.value(8));
    event.endSeen = query.value(9).toBool();
    event.lasted = query.value(10).toLongLong();
    event.resumed = query.value(11).toLongLong();
    event.count = query.value(12).toInt();
    event.user = query.value(13).toString();
    event.acknowledgedAt = numberOrNone(query.value(14));
    event.acknowledgedBy = query.value(15).toString();
    return event;
}

QVector<Event> Store::readEvents(QSqlQuery *query)
{
    QVector<Event> all;
    while (query && query->next()) {
        if (const std::optional<Event> event = readEvent(*query))
            all.append(*event);
    }
    if (query)
        query->finish();
    return all;
}

Event Store::latest(const QString &ups, const QString &condition)
{
    const QVector<Event> found =
        readEvents(query("SELECT " KIV_EVENT_COLUMNS " FROM event WHERE ups=? AND condition=? "
                         "ORDER BY begin DESC, id DESC LIMIT 1",
                         {numberOf(ups), condition.left(longestText)}));
    return found.isEmpty() ? Event() : found.first();
}

std::optional<Event> Store::event(qint64 id)
{
    const QVector<Event> found =
        readEvents(query("SELECT " KIV_EVENT_COLUMNS " FROM event WHERE id=?", {id}));
    return found.isEmpty() ? std::nullopt : std::optional<Event>(found.first());
}

QVector<Event> Store::presentEvents(const QString &ups)
{
    if (ups.isEmpty())
        return readEvents(
            query("SELECT " KIV_EVENT_COLUMNS " FROM event WHERE end IS NULL ORDER BY id", {}));
    return readEvents(query("SELECT " KIV_EVENT_COLUMNS
                            " FROM event WHERE end IS NULL AND ups=? ORDER BY id",
                            {numberOf(ups)}));
}

QVector<Event> Store::unacknowledged()
{
    return readEvents(
        query("SELECT " KIV_EVENT_COLUMNS " FROM event WHERE acknowledged_at IS NULL", {}));
}

QVector<Event> Store::events(const EventFilter &filter, int most)
{
    QVector<Event> all;
    const QVector<Event> present = presentEvents(filter.ups);
    for (const Event &event : present) {
        if (filter.matches(event))
            all.append(event);
    }
    // What the file can sort out need not be read; an event never ends before its begin.
    const qint64 from = filter.from.value_or(std::numeric_limits<qint64>::min());
    QSqlQuery *found = filter.ups.isEmpty()
                           ? query("SELECT " KIV_EVENT_COLUMNS
                                   " FROM event WHERE end>=? ORDER BY begin DESC, id DESC",
                                   {from})
                           : query("SELECT " KIV_EVENT_COLUMNS " FROM event WHERE ups=? AND "
                                   "end>=? ORDER BY begin DESC, id DESC",
                                   {numberOf(filter.ups), from});
    while (found && all.size() < most && found->next()) {
        const std::optional<Event> event = readEvent(*found);
        if (event && filter.matches(*event))
            all.append(*event);
    }
    if (found)
        found->finish();
    std::sort(all.begin(), all.end(), comesBefore);
    return all;
}

QVector<TimeSpan> Store::spans(const QString &ups, const QString &condition, TimeSpan within)
{
    QVector<TimeSpan> all;
    QSqlQuery *found = query("SELECT begin, end FROM event WHERE ups=? AND condition=? AND begin<? "
                             "AND (end IS NULL OR end>?) ORDER BY begin",
                             {numberOf(ups), condition, within.to, within.from});
    while (found && found->next()) {
        const qint64 begin = std::max(found->value(0).toLongLong(), within.from);
        const qint64 end = std::min(numberOrNone(found->value(1)).value_or(within.to), within.to);
        if (end > begin)
            all.append({begin, end});
    }
    if (found)
        found->finish();
    return all;
}

// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "event.h"
#include "sample.h"

#include <QtCore/QHash>
#include <QtCore/QSet>
#include <QtCore/QVariant>
#include <QtSql/QSqlDatabase>
#include <QtSql/QSqlQuery>

#include <array>
#include <memory>
#include <unordered_map>

class QLockFile;

/// A sample and whose it is.
struct UpsSample
{
    QString ups;
    Sample sample;
};

/// How long what is kept; in days, 0: for ever.
struct Retention
{
    int rawDays = 7;
    int minuteDays = 90;
    int hourDays = 0;
};

/// What a curve is drawn from: what was measured around an instant.
struct TrendPoint
{
    qint64 at = 0;
    float low = 0.0F;
    float high = 0.0F;
    float mean = 0.0F;
    bool joined = false; ///< the values went on from the point before
};

/// A stretch of time.
struct TimeSpan
{
    qint64 from = 0;
    qint64 to = 0;
};

/// The file of the history: samples with their roll-ups, and events. One thread uses it, the one
/// that made it. Every function returns false, or nothing, when the file cannot do it; problem()
/// says why. Writing is all or nothing.
class Store
{
public:
    enum class Mode { Closed, Writing, Reading, Memory };
    enum class Problem {
        None,
        NoPlace, ///< no directory, or not one to write in
        Network, ///< the directory is on a network
        Busy,    ///< another console writes it
        Newer,   ///< a later version wrote it
        Damaged, ///< damaged, or not a history at all
        Full,    ///< no room on the disk
        Failed,  ///< anything else
    };

    static constexpr const char *fileName = "history.db";

    Store();
    ~Store();
    Store(const Store &) = delete;
    Store &operator=(const Store &) = delete;

    /// Opens the history in @p directory, which is made where it is missing, to write or to read.
    /// One console writes at a time. A file to write that is damaged, or that @p anew says is,
    /// makes room for a new one: it is renamed with the date of @p now.
    bool open(const QString &directory, Mode mode, const QDateTime &now, bool anew = false);
    /// A history that ends with the program.
    bool openInMemory();
    void close();
    Mode mode() const;
    Problem problem() const;
    QString problemText() const;
    /// Writes something that changes nothing, to see whether it can be written.
    bool tryToWrite();
    /// Takes over what @p other, in memory, knows of the last day.
    bool adopt(Store *other, qint64 now);
    /// The new name of a damaged file that open() put aside; else empty.
    QString setAsideAs() const;
    /// Whether a file system of this type is on another machine.
    static bool isNetwork(const QByteArray &fileSystemType);

    /// Adds samples, in any order, and brings the roll-ups of their minutes up to date.
    bool addSamples(const QVector<UpsSample> &samples);
    /// Brings up to date the roll-ups of all hours that are over at @p now.
    bool rollUpHours(qint64 now);
    /// Deletes what is older than @p retention allows.
    bool prune(const Retention &retention, qint64 now);
    /// When @p ups was last measured; absent if never.
    std::optional<qint64> lastSeen(const QString &ups);
    QVector<Sample> samples(const QString &ups, qint64 from, qint64 to);
    /// The roll-ups of minutes or hours (@p step) that begin from @p from to before @p to.
    QVector<QPair<qint64, Rollup>> rollups(const QString &ups, Quantity quantity, qint64 step,
                                           qint64 from, qint64 to);
    /// What is known of @p quantity in @p span, at the finest resolution that is kept and makes
    /// sense in @p columns columns; @p more are samples that are not in the file yet.
    QVector<TrendPoint> curve(const QString &ups, Quantity quantity, TimeSpan span, int columns,
                              const QVector<Sample> &more = {});

    /// Several changes that are on the disk when commit() returns.
    bool begin();
    bool commit();
    void rollBack();
    /// Writes a new event, whose id it sets, or an event that is there. Overlong texts are cut.
    bool write(Event *event);
    /// The latest event of a condition; with id 0 where there is none.
    Event latest(const QString &ups, const QString &condition);
    /// What has not ended, of one UPS or of all (empty).
    QVector<Event> presentEvents(const QString &ups = QString());
    /// The latest @p most events that @p filter lets pass, in the order of comesBefore().
    QVector<Event> events(const EventFilter &filter, int most);
    QVector<Event> unacknowledged();
    std::optional<Event> event(qint64 id);
    /// Stretches in which a condition was present.
    QVector<TimeSpan> spans(const QString &ups, const QString &condition, TimeSpan within);
    /// All UPSes that the history knows.
    QStringList upsNames();
    /// How many events of each severity are not acknowledged, in the order of Severity.
    std::array<int, severityCount> unacknowledgedCounts();
    /// A number that changes when another console writes.
    qint64 version();

private:
    bool openConnection(const QString &file, bool readOnly);
    bool prepareDirectory(const QString &directory);
    bool prepareFile(const QString &directory);
    bool takeLock(const QString &directory);
    bool setAside(const QString &directory, const QDateTime &now);
    void disconnect();
    bool prepareTables();
    bool checkTables();
    bool createTables();
    std::optional<qint64> number(const char *sql);
    bool run(const QString &sql);
    QSqlQuery *query(const char *sql, const QVariantList &values);
    QVector<Event> readEvents(QSqlQuery *query);
    std::optional<Event> readEvent(const QSqlQuery &query);
    bool addMinute(qint64 ups, qint64 minute, QVector<Sample> samples);
    qint64 numberOf(const QString &ups);
    QString nameOfUps(qint64 number);
    void findOpenHours();
    bool giveBackPages();
    QVector<TrendPoint> rawPoints(const QString &ups, Quantity quantity, TimeSpan span, int columns,
                                  const QVector<Sample> &more);
    /// Those of the past hours, and the running one as far as its minutes are known.
    QVector<TrendPoint> hourPoints(const QString &ups, Quantity quantity, TimeSpan span);
    /// Those from @p finest on, and those of @p more.
    QVector<TrendPoint> minutePoints(const QString &ups, Quantity quantity, TimeSpan span,
                                     qint64 finest, const QVector<Sample> &more);
    /// From when on in @p span samples, or else the roll-ups of minutes, are kept; its beginning
    /// where none are.
    qint64 beginOfKept(const QString &ups, Quantity quantity, bool isRaw, TimeSpan span);
    bool fail(const QSqlError &error, const QString &doing);
    bool fail(Problem problem, const QString &text);

    Mode current = Mode::Closed;
    Problem lastProblem = Problem::None;
    QString lastText;
    QString aside;
    std::unique_ptr<QLockFile> lock; // while writing
    QString connection;
    QSqlDatabase database;
    // By the address of their text.
    std::unordered_map<const char *, std::unique_ptr<QSqlQuery>> prepared;
    QHash<QString, qint64> numbers;
    QHash<qint64, QString> names;
    QSet<QPair<qint64, qint64>> openHours; // UPS and begin
    bool inTransaction = false;
};

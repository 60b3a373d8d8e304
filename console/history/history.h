// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "journal.h"
#include "trendsource.h"

#include <array>
#include <memory>

class HistoryWorker;
class QThread;

/// Whether and how the history is kept.
struct HistoryStatus
{
    enum class State {
        Opening,
        Kept,      ///< in its file
        Read,      ///< by another console, in its file: this one reads
        Temporary, ///< until the program ends, as it was asked for
        NotKept,   ///< until the program ends, since the file cannot be used
    };

    State state = State::Opening;
    QString line; ///< what the user should know, in one line; may be empty

    /// Whether events can be acknowledged here.
    bool canAcknowledge() const;
};

/// The history of the site: what the UPSes measured and what happened to them. It lives in a thread
/// of its own, which alone touches files; calls return at once, and answers come as signals.
///
/// Where its file cannot be used, it goes on in memory, and tries the file again now and then.
class History : public TrendSource
{
    Q_OBJECT

public:
    /// Keeps it in @p directory, which is made where it is missing; empty: in memory, until the
    /// program ends.
    explicit History(const QString &directory, const Retention &retention = Retention(),
                     QObject *parent = nullptr);
    /// Writes what is not written yet.
    ~History() override;

    const HistoryStatus &status() const;
    /// How many events of each severity are not acknowledged, in the order of Severity.
    const std::array<int, severityCount> &unacknowledged() const;

    /// Takes samples of the minute of @p now; they are in the file when the next minute begins.
    void addSamples(const QVector<UpsSample> &samples, qint64 now);
    void addEvents(const QVector<EventChange> &changes);
    /// eventsChanged() comes when it is on the disk.
    void acknowledge(const QVector<qint64> &ids, const QString &who, qint64 at);
    void acknowledgeAll(const QString &who, qint64 at);
    /// Ends what is present of UPSes that are not watched any more.
    void leaveOthers(const QStringList &watched);

    /// Each returns the number that comes with the answer.
    int readEvents(const EventFilter &filter, int most);
    int readTrend(const QString &ups, const QVector<Quantity> &quantities, TimeSpan span,
                  int columns) override;
    QString whyNotKept(const QString &ups) const override;
    /// Writes all events that @p filter lets pass to the CSV file @p file.
    int exportEvents(const EventFilter &filter, const QString &file);
    /// Writes @p bytes to @p file.
    int writeFile(const QString &file, const QByteArray &bytes);

    /// Tries again what did not work, and looks for what another console wrote; comes by itself
    /// every few seconds.
    void lookAgain();

Q_SIGNALS:
    void unacknowledgedChanged();
    /// These are new or different now, and on the disk.
    void eventsChanged(const QVector<Event> &events);
    /// A file was opened that knows nothing of the present: what is present must be said again.
    void presentWanted();
    void eventsRead(int number, const QVector<Event> &events, bool all);
    /// A file was written, or was not, for @p problem.
    void fileWritten(int number, const QString &file, const QString &problem);

private:
    friend class HistoryWorker;

    template <typename Action>
    void inThread(Action action);

    HistoryStatus present;
    std::array<int, severityCount> counts{};
    int lastNumber = 0;
    std::unique_ptr<QThread> thread;
    HistoryWorker *worker; // lives in the thread
};

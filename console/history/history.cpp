// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "history.h"

#include <QtCore/QSaveFile>
#include <QtCore/QThread>
#include <QtCore/QTimer>

#include <algorithm>

namespace {

constexpr int lookMsecs = 5000;
/// Looks between two tries of a file that did not work.
constexpr int retryLooks = 12;
/// Samples that wait for a file; a bound for when none can be written.
constexpr int mostPending = 100000;
constexpr int mostExported = 1000000;

} // namespace

bool HistoryStatus::canAcknowledge() const
{
    return state != State::Opening && state != State::Read;
}

/// The part of the history that lives in its thread.
class HistoryWorker : public QObject
{
public:
    HistoryWorker(History *used, const QString &place, const Retention &kept)
        : history(used)
        , directory(place)
        , retention(kept)
        , timer(new QTimer(this))
    {
        timer->setInterval(lookMsecs);
        connect(timer, &QTimer::timeout, this, [this] { look(++looks % retryLooks == 0); });
    }

    void start()
    {
        if (directory.isEmpty()) {
            openInMemory(HistoryStatus::State::Temporary, QString());
        } else {
            openFile(false);
            timer->start();
        }
    }

    void end()
    {
        timer->stop();
        flush(pending);
        store->close();
    }

    void look(bool retry)
    {
        switch (state) {
        case HistoryStatus::State::Read:
            if (!takeOver() && store->version() != seenVersion) {
                seenVersion = store->version();
                count();
                reply([=] { Q_EMIT history->replaced(); });
            }
            break;
        case HistoryStatus::State::NotKept:
            if (retry)
                retryFile();
            break;
        default:
            break;
        }
    }

    void addSamples(const QVector<UpsSample> &samples, qint64 now)
    {
        if (state == HistoryStatus::State::Read)
            return;
        const qint64 minute = floorTo(now, minuteMsecs);
        pending += samples;
        if (minute == lastMinute)
            return;
        lastMinute = minute;
        QVector<UpsSample> over;
        QVector<UpsSample> running;
        for (const UpsSample &one : std::as_const(pending))
            (floorTo(one.sample.at, minuteMsecs) == minute ? running : over).append(one);
        pending = running;
        if (!flush(over) || !store->rollUpHours(now)) {
            failed();
            return;
        }
        const qint64 hour = floorTo(now, hourMsecs);
        if (hour != lastHour) {
            lastHour = hour;
            if (!store->prune(retention, now))
                failed();
        }
    }

    void addEvents(const QVector<EventChange> &changes)
    {
        if (state == HistoryStatus::State::Read)
            return;
        if (publish(Journal::apply(store.get(), changes)))
            return;
        failed();
        // Elsewhere now: an end and a command come only once.
        publish(Journal::apply(store.get(), changes));
    }

    void acknowledge(const QVector<qint64> &ids, const QString &who, qint64 at)
    {
        if (!publish(Journal::acknowledge(store.get(), ids, who, at)) &&
            state != HistoryStatus::State::Read)
            failed();
    }

    void acknowledgeAll(const QString &who, qint64 at)
    {
        QVector<qint64> ids;
        const QVector<Event> events = store->unacknowledged();
        for (const Event &event : events)
            ids.append(event.id);
        acknowledge(ids, who, at);
    }

    void leaveOthers(const QStringList &watched)
    {
        if (state != HistoryStatus::State::Read && !publish(Journal::leave(store.get(), watched)))
            failed();
    }

    void readEvents(int number, const EventFilter &filter, int most)
    {
        const QVector<Event> events = store->events(filter, most);
        reply([=] { Q_EMIT history->eventsRead(number, events, events.size() < most); });
        checkWhatWasRead();
    }

    void readTrend(int number, const QString &ups, const QVector<Quantity> &quantities,
                   TimeSpan span, int columns)
    {
        Trend trend;
        trend.ups = ups;
        trend.span = span;
        QVector<Sample> recent;
        for (const UpsSample &one : std::as_const(pending)) {
            if (one.ups == ups)
                recent.append(one.sample);
        }
        for (const Quantity quantity : quantities)
            trend.curves.append({quantity, store->curve(ups, quantity, span, columns, recent)});
        trend.onBattery = store->spans(ups, QStringLiteral("on-battery"), span);
        reply([=] { Q_EMIT history->trendRead(number, trend); });
        checkWhatWasRead();
    }

    void exportEvents(int number, const EventFilter &filter, const QString &file)
    {
        // The mark at the beginning lets spreadsheets recognise UTF-8.
        writeFile(number, file,
                  QByteArrayLiteral("\xEF\xBB\xBF") +
                      csvOf(store->events(filter, mostExported)).toUtf8());
    }

    void writeFile(int number, const QString &file, const QByteArray &bytes)
    {
        QSaveFile out(file);
        QString problem;
        if (!out.open(QIODevice::WriteOnly) || out.write(bytes) != bytes.size() || !out.commit())
            problem = out.errorString();
        reply([=] { Q_EMIT history->fileWritten(number, file, problem); });
    }

private:
    /// Lets @p action happen in the thread of the history's owner.
    template <typename Action>
    void reply(Action action)
    {
        QMetaObject::invokeMethod(history, action, Qt::QueuedConnection);
    }

    bool publish(const std::optional<QVector<Event>> &events)
    {
        if (!events)
            return false;
        if (!events->isEmpty()) {
            count();
            reply([=] { Q_EMIT history->eventsChanged(*events); });
        }
        return true;
    }

    void count()
    {
        const auto counts = store->unacknowledgedCounts();
        reply([=] {
            history->counts = counts;
            Q_EMIT history->unacknowledgedChanged();
        });
    }

    void setState(HistoryStatus::State newState, const QString &line)
    {
        state = newState;
        HistoryStatus status;
        status.state = newState;
        status.line = line;
        seenVersion = store->version();
        count();
        reply([=] {
            history->present = status;
            Q_EMIT history->statusChanged();
            Q_EMIT history->replaced();
            if (status.state != HistoryStatus::State::Read)
                Q_EMIT history->presentWanted();
        });
    }

    void openInMemory(HistoryStatus::State newState, const QString &line,
                      const QVector<Event> &events = {})
    {
        if (store->openInMemory() && takeEvents(events))
            setState(newState, line);
        else
            setState(HistoryStatus::State::NotKept,
                     QStringLiteral("History is not kept: ") + store->problemText());
    }

    /// Goes on with @p events, under the numbers that they have.
    bool takeEvents(const QVector<Event> &events)
    {
        if (!store->begin())
            return false;
        for (Event event : events) {
            if (!store->write(&event)) {
                store->rollBack();
                return false;
            }
        }
        return store->commit();
    }

    bool flush(const QVector<UpsSample> &samples)
    {
        if (store->addSamples(samples))
            return true;
        // They may be written later.
        pending = samples + pending;
        if (pending.size() > mostPending)
            pending.remove(0, int(pending.size()) - mostPending);
        return false;
    }

    void openFile(bool anew)
    {
        const QDateTime now = QDateTime::currentDateTimeUtc();
        if (store->open(directory, Store::Mode::Writing, now, anew)) {
            writes();
            return;
        }
        const QString reason = store->problemText();
        if (store->problem() == Store::Problem::Busy &&
            store->open(directory, Store::Mode::Reading, now)) {
            setState(HistoryStatus::State::Read,
                     QStringLiteral("Another console keeps the history; this one shows it"));
            return;
        }
        notKept(reason);
    }

    void writes()
    {
        QString line;
        if (!store->setAsideAs().isEmpty())
            line = QStringLiteral("The history was damaged and begins anew; the old file is now %1")
                       .arg(store->setAsideAs());
        setState(HistoryStatus::State::Kept, line);
    }

    /// Goes from memory to the file, where it can be used now, with what happened meanwhile.
    void retryFile()
    {
        const QDateTime now = QDateTime::currentDateTimeUtc();
        auto file = std::make_unique<Store>();
        if (!file->open(directory, Store::Mode::Writing, now) || !file->tryToWrite() ||
            !file->adopt(store.get(), now.toMSecsSinceEpoch()))
            return;
        store = std::move(file);
        writes();
    }

    /// Writes on where the console that did so has ended.
    bool takeOver()
    {
        auto file = std::make_unique<Store>();
        if (!file->open(directory, Store::Mode::Writing, QDateTime::currentDateTimeUtc()))
            return false;
        store = std::move(file);
        writes();
        return true;
    }

    void notKept(const QString &reason, const QVector<Event> &events = {})
    {
        openInMemory(HistoryStatus::State::NotKept,
                     QStringLiteral("History is not kept: ") + reason, events);
    }

    /// Damage deep in the file shows when it is read.
    void checkWhatWasRead()
    {
        if (store->problem() == Store::Problem::Damaged)
            failed();
    }

    void failed()
    {
        const QString reason = store->problemText();
        if (state != HistoryStatus::State::Kept)
            return;
        if (store->problem() == Store::Problem::Damaged)
            openFile(true);
        else
            notKept(reason, store->presentEvents()); // they end in memory, and then in the file
    }

    History *const history;
    const QString directory;
    const Retention retention;
    QTimer *const timer;
    std::unique_ptr<Store> store = std::make_unique<Store>();
    HistoryStatus::State state = HistoryStatus::State::Opening;
    QVector<UpsSample> pending;
    qint64 lastMinute = -1;
    qint64 lastHour = -1;
    qint64 seenVersion = 0;
    int looks = 0;
};

template <typename Action>
void History::inThread(Action action)
{
    QMetaObject::invokeMethod(worker, action, Qt::QueuedConnection);
}

History::History(const QString &directory, const Retention &retention, QObject *parent)
    : TrendSource(parent)
    , thread(std::make_unique<QThread>())
    , worker(new HistoryWorker(this, directory, retention))
{
    thread->setObjectName(QStringLiteral("history"));
    worker->moveToThread(thread.get());
    thread->start();
    inThread([this] { worker->start(); });
}

History::~History()
{
    QMetaObject::invokeMethod(
        worker, [this] { worker->end(); }, Qt::BlockingQueuedConnection);
    worker->deleteLater();
    thread->quit();
    thread->wait();
}

const HistoryStatus &History::status() const
{
    return present;
}

const std::array<int, severityCount> &History::unacknowledged() const
{
    return counts;
}

void History::addSamples(const QVector<UpsSample> &samples, qint64 now)
{
    inThread([=] { worker->addSamples(samples, now); });
}

void History::addEvents(const QVector<EventChange> &changes)
{
    inThread([=] { worker->addEvents(changes); });
}

void History::acknowledge(const QVector<qint64> &ids, const QString &who, qint64 at)
{
    inThread([=] { worker->acknowledge(ids, who, at); });
}

void History::acknowledgeAll(const QString &who, qint64 at)
{
    inThread([=] { worker->acknowledgeAll(who, at); });
}

void History::leaveOthers(const QStringList &watched)
{
    inThread([=] { worker->leaveOthers(watched); });
}

int History::readEvents(const EventFilter &filter, int most)
{
    const int number = ++lastNumber;
    inThread([=] { worker->readEvents(number, filter, most); });
    return number;
}

int History::readTrend(const QString &ups, const QVector<Quantity> &quantities, TimeSpan span,
                       int columns)
{
    const int number = ++lastNumber;
    inThread([=] { worker->readTrend(number, ups, quantities, span, columns); });
    return number;
}

QString History::whyNotKept(const QString &) const
{
    return present.state == HistoryStatus::State::NotKept ? present.line : QString();
}

int History::exportEvents(const EventFilter &filter, const QString &file)
{
    const int number = ++lastNumber;
    inThread([=] { worker->exportEvents(number, filter, file); });
    return number;
}

int History::writeFile(const QString &file, const QByteArray &bytes)
{
    const int number = ++lastNumber;
    inThread([=] { worker->writeFile(number, file, bytes); });
    return number;
}

void History::lookAgain()
{
    inThread([=] { worker->look(true); });
}

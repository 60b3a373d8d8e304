// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "journal.h"

#include <QtCore/QMap>

#include <algorithm>
#include <cstdlib>

namespace {

/// A new event that begins with @p change.
Event begun(const EventChange &change)
{
    Event event;
    event.ups = change.ups;
    event.kind = change.kind;
    event.condition = change.condition;
    event.severity = change.severity;
    event.text = change.text;
    event.value = change.value;
    event.user = change.user;
    event.begin = event.resumed = change.at;
    return event;
}

/// The changes of one go; ids keep each event once, in its latest state.
class Writer
{
public:
    explicit Writer(Store *used)
        : store(used)
    {}

    bool write(Event event)
    {
        if (!store->write(&event))
            return false;
        changed.insert(event.id, event);
        return true;
    }

    bool begin(const EventChange &change)
    {
        Event event = store->latest(change.ups, change.condition);
        const bool known = event.id != 0;
        if (known && event.isPresent())
            return makeWorse(event, change);
        // A clock that was set back does not make a new event of an old one either.
        if (known && std::abs(change.at - *event.end) < Journal::settleTime) {
            event.end.reset();
            event.endSeen = true;
            event.resumed = change.at;
            ++event.count;
            event.text = change.text;
            raise(&event, change.severity);
            return write(event);
        }
        return write(begun(change));
    }

    bool end(Event event, qint64 at, bool seen)
    {
        event.lasted = event.length(at);
        event.end = std::max(at, event.begin);
        event.endSeen = seen;
        return write(event);
    }

    bool end(const EventChange &change)
    {
        const Event event = store->latest(change.ups, change.condition);
        // One that never began, since it was there before anything was recorded, has no end.
        return event.id == 0 || !event.isPresent() || end(event, change.at, true);
    }

    /// What is over ended while nobody watched: when the UPS was seen for the last time, at least.
    bool endUnseen(const Event &event)
    {
        const qint64 last = std::max(event.resumed, store->lastSeen(event.ups).value_or(0));
        return end(event, last, false);
    }

    bool present(const EventChange &change)
    {
        const QVector<Event> events = store->presentEvents(change.ups);
        for (const Event &event : events) {
            const auto same = [&event](const EventChange &one) {
                return one.condition == event.condition;
            };
            const bool lasts = std::any_of(change.present.cbegin(), change.present.cend(), same);
            if (!lasts && !endUnseen(event))
                return false;
        }
        return std::all_of(change.present.cbegin(), change.present.cend(),
                           [this](const EventChange &one) { return goOn(one); });
    }

    /// What continues is called as at its begin, also an alarm that counts down.
    bool goOn(const EventChange &change)
    {
        const Event event = store->latest(change.ups, change.condition);
        const bool lasts = event.id != 0 && event.isPresent();
        return (lasts && urgencyOf(change.severity) <= urgencyOf(event.severity)) || begin(change);
    }

    bool moment(const EventChange &change)
    {
        Event event = begun(change);
        event.end = change.at;
        return write(event);
    }

    QVector<Event> result() const
    {
        return QVector<Event>(changed.cbegin(), changed.cend());
    }

private:
    static void raise(Event *event, Severity severity)
    {
        if (urgencyOf(severity) <= urgencyOf(event->severity))
            return;
        event->severity = severity;
        // What was acknowledged was less.
        event->acknowledgedAt.reset();
        event->acknowledgedBy.clear();
    }

    bool makeWorse(Event event, const EventChange &change)
    {
        const Event before = event;
        event.text = change.text;
        raise(&event, change.severity);
        return event == before || write(event);
    }

    Store *store;
    QMap<qint64, Event> changed;
};

template <typename Action>
std::optional<QVector<Event>> inOneGo(Store *store, const Action &action)
{
    if (!store->begin())
        return std::nullopt;
    Writer writer(store);
    if (!action(&writer)) {
        store->rollBack();
        return std::nullopt;
    }
    if (!store->commit())
        return std::nullopt;
    return writer.result();
}

} // namespace

std::optional<QVector<Event>> Journal::apply(Store *store, const QVector<EventChange> &changes)
{
    return inOneGo(store, [&changes](Writer *writer) {
        for (const EventChange &change : changes) {
            bool done = false;
            switch (change.what) {
            case EventChange::What::Begin:
                done = writer->begin(change);
                break;
            case EventChange::What::End:
                done = writer->end(change);
                break;
            case EventChange::What::Present:
                done = writer->present(change);
                break;
            case EventChange::What::Moment:
                done = writer->moment(change);
                break;
            }
            if (!done)
                return false;
        }
        return true;
    });
}

std::optional<QVector<Event>> Journal::acknowledge(Store *store, const QVector<qint64> &ids,
                                                   const QString &who, qint64 at)
{
    return inOneGo(store, [&](Writer *writer) {
        for (const qint64 id : ids) {
            std::optional<Event> event = store->event(id);
            if (!event || event->isAcknowledged())
                continue;
            event->acknowledgedAt = at;
            event->acknowledgedBy = who;
            if (!writer->write(*event))
                return false;
        }
        return true;
    });
}

std::optional<QVector<Event>> Journal::leave(Store *store, const QStringList &watched)
{
    return inOneGo(store, [&](Writer *writer) {
        const QVector<Event> events = store->presentEvents();
        for (const Event &event : events) {
            if (!watched.contains(event.ups) && !writer->endUnseen(event))
                return false;
        }
        return true;
    });
}

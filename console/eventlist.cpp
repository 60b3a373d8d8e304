// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "eventlist.h"

#include "display.h"
#include "theme.h"

#include <algorithm>

EventList::EventList(const SiteModel *shownSite, QObject *parent)
    : QAbstractListModel(parent)
    , site(shownSite)
{}

QString EventList::upsOf(const Event &event) const
{
    const UpsModel *ups = site->find(event.ups);
    return ups ? ups->title() : site->serverTitle(event.ups);
}

bool EventList::isLeft(const Event &event) const
{
    return event.isPresent() && !site->find(event.ups) && !site->hasServer(event.ups);
}

void EventList::followMore()
{
    if (!listed.isEmpty())
        Q_EMIT dataChanged(index(0), index(int(listed.size()) - 1));
}

void EventList::setEvents(const QVector<Event> &events, const EventFilter &newFilter)
{
    beginResetModel();
    listed = events;
    filter = newFilter;
    endResetModel();
}

void EventList::update(const QVector<Event> &events)
{
    for (const Event &event : events)
        take(event);
}

void EventList::take(const Event &event)
{
    const int row = rowOf(event.id);
    const bool wanted = filter.matches(event);
    const auto place = [&] {
        return int(std::lower_bound(listed.cbegin(), listed.cend(), event, comesBefore) -
                   listed.cbegin());
    };
    if (row >= 0) {
        const Event before = listed.at(row);
        listed[row] = event;
        const bool stays = wanted && (row == 0 || comesBefore(listed.at(row - 1), event)) &&
                           (row + 1 == listed.size() || comesBefore(event, listed.at(row + 1)));
        if (stays) {
            Q_EMIT dataChanged(index(row), index(row));
            return;
        }
        listed[row] = before;
        beginRemoveRows(QModelIndex(), row, row);
        listed.remove(row);
        endRemoveRows();
    }
    if (!wanted)
        return;
    const int at = place();
    beginInsertRows(QModelIndex(), at, at);
    listed.insert(at, event);
    endInsertRows();
}

const Event &EventList::at(int row) const
{
    return listed.at(row);
}

int EventList::rowOf(qint64 id) const
{
    const auto found = std::find_if(listed.cbegin(), listed.cend(),
                                    [id](const Event &event) { return event.id == id; });
    return found == listed.cend() ? -1 : int(found - listed.cbegin());
}

int EventList::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(listed.size());
}

QVariant EventList::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= listed.size() ||
        (role != Qt::DisplayRole && role != Qt::AccessibleTextRole))
        return QVariant();
    const Event &event = listed.at(index.row());
    QStringList parts = {severityNameOf(event), titleOf(event),
                         timesOf(event, QDateTime::currentDateTime(), isLeft(event)), upsOf(event)};
    if (!event.user.isEmpty())
        parts.append(tr("by %1").arg(event.user));
    parts.append(event.isAcknowledged() ? tr("acknowledged by %1").arg(event.acknowledgedBy)
                                        : tr("not acknowledged"));
    return parts.join(QStringLiteral(", "));
}

QString titleOf(const Event &event)
{
    QString title = event.text;
    if (!event.value.isEmpty())
        title += QStringLiteral("  ") + event.value;
    if (event.count > 1)
        title += QStringLiteral("  × %1").arg(event.count);
    return title;
}

QString timesOf(const Event &event, const QDateTime &now, bool left)
{
    QString begin = momentText(event.begin, now);
    const QString length = lengthText(event.length(now.toMSecsSinceEpoch()));
    if (left)
        return (event.isOfServer() ? EventList::tr("began %1, the server is not followed here")
                                   : EventList::tr("began %1, the UPS is not followed here"))
            .arg(begin);
    if (event.isPresent())
        return EventList::tr("since %1, %2").arg(begin, length);
    if (event.end == event.begin && event.lasted == 0)
        return begin;
    return EventList::tr("%1 – %2, %3")
        .arg(begin, momentText(*event.end, now),
             event.endSeen ? length : EventList::tr("at least %1").arg(length));
}

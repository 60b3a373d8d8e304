// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "history/event.h"
#include "model/sitemodel.h"

#include <QtCore/QAbstractListModel>

/// Events in the order of comesBefore(), as far as a filter lets them pass.
class EventList : public QAbstractListModel
{
    Q_OBJECT

public:
    /// Names the UPSes as @p site does, which must live as long.
    explicit EventList(const SiteModel *site, QObject *parent = nullptr);

    /// Lists @p events, which @p filter let pass, from now on.
    void setEvents(const QVector<Event> &events, const EventFilter &filter);
    /// Takes events that are new or different now.
    void update(const QVector<Event> &events);
    /// The event in a row that is there.
    const Event &at(int row) const;
    /// How the UPS or the server of @p event is called on screen.
    QString upsOf(const Event &event) const;
    /// Whether @p event has not ended, as far as anybody knows, but its UPS or server is none of
    /// the site: the console cannot see whether it still lasts.
    bool isLeft(const Event &event) const;
    /// The site has got UPSes.
    void followMore();
    /// The row of an event; -1 where it is not listed.
    int rowOf(qint64 id) const;

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    /// For display and for screen readers all of the event in one line; plain text.
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

private:
    void take(const Event &event);

    const SiteModel *const site;
    QVector<Event> listed;
    EventFilter filter;
};

/// The condition with its value: "Input voltage low  187 V".
QString titleOf(const Event &event);
/// When it was, and for how long: "14:03:22 – 14:05:10, 1 min"; of one that is @p left, when it
/// began.
QString timesOf(const Event &event, const QDateTime &now, bool left = false);

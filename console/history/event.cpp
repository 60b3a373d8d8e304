// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "event.h"

#include <algorithm>
#include <array>
#include <tuple>

namespace {

constexpr std::array<const char *, eventKindCount> kindNames = {"State", "Alarm", "Communication",
                                                                "Limit", "Command"};

auto fields(const Event &e)
{
    return std::tie(e.id, e.ups, e.kind, e.condition, e.severity, e.text, e.value, e.begin, e.end,
                    e.endSeen, e.lasted, e.resumed, e.count, e.user, e.acknowledgedAt,
                    e.acknowledgedBy);
}

bool isOnTop(const Event &event)
{
    return event.isPresent() && !event.isAcknowledged();
}

} // namespace

bool Event::isOfServer() const
{
    return condition == serverSilence;
}

bool Event::isPresent() const
{
    return !end;
}

bool Event::isAcknowledged() const
{
    return acknowledgedAt.has_value();
}

qint64 Event::length(qint64 now) const
{
    // The clock may have been set back meanwhile.
    return isPresent() ? lasted + std::max<qint64>(now - resumed, 0) : lasted;
}

bool operator==(const Event &a, const Event &b)
{
    return fields(a) == fields(b);
}

bool EventFilter::matches(const Event &event) const
{
    if (least && urgencyOf(event.severity) < urgencyOf(*least))
        return false;
    if (!ups.isEmpty() && event.ups != ups)
        return false;
    if (from && event.end && std::max(*event.end, event.begin) < *from)
        return false;
    if (text.isEmpty())
        return true;
    const QString texts[] = {event.text,           event.value,          event.ups,
                             event.user,           event.acknowledgedBy, nameOf(event.kind),
                             severityNameOf(event)};
    return std::any_of(std::begin(texts), std::end(texts), [this](const QString &one) {
        return one.contains(text, Qt::CaseInsensitive);
    });
}

bool comesBefore(const Event &a, const Event &b)
{
    const bool aOnTop = isOnTop(a);
    if (aOnTop != isOnTop(b))
        return aOnTop;
    // What begins together is announced in any order: the worst is read first.
    const auto key = [](const Event &event) {
        const qint64 fraction = (event.begin % 1000 + 1000) % 1000; // also before 1970
        return std::make_tuple(event.begin - fraction, urgencyOf(event.severity), event.begin,
                               event.id);
    };
    return key(a) > key(b);
}

QString nameOf(EventKind kind)
{
    return QString::fromLatin1(kindNames.at(std::size_t(kind)));
}

QString severityNameOf(const Event &event)
{
    // Of a command it is the outcome that nobody knows.
    if (event.kind == EventKind::Command && event.severity == Severity::Unknown)
        return QStringLiteral("Not confirmed");
    return nameOf(event.severity);
}

QString csvCell(QString cell)
{
    // Signs at the beginning of a text that make it a formula; a number may have its sign.
    static const QString formula = QStringLiteral("=+-@\t\r");
    bool isNumber = false;
    cell.toDouble(&isNumber);
    if (!cell.isEmpty() && formula.contains(cell.at(0)) && !isNumber)
        cell.prepend(QLatin1Char('\''));
    const bool quoted = std::any_of(cell.cbegin(), cell.cend(), [](QChar c) {
        return c == QLatin1Char(',') || c == QLatin1Char(';') || c == QLatin1Char('"') ||
               c == QLatin1Char('\'') || c < QLatin1Char(' ');
    });
    if (!quoted)
        return cell;
    return QLatin1Char('"') + cell.replace(QLatin1Char('"'), QStringLiteral("\"\"")) +
           QLatin1Char('"');
}

QString csvLine(const QStringList &cells)
{
    QStringList written;
    for (const QString &cell : cells)
        written.append(csvCell(cell));
    return written.join(QLatin1Char(',')) + QStringLiteral("\r\n");
}

QString csvTime(qint64 at)
{
    return QDateTime::fromMSecsSinceEpoch(at, Qt::UTC)
        .toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

QString csvOf(const QVector<Event> &events)
{
    QString text =
        csvLine({QStringLiteral("Begin (UTC)"), QStringLiteral("End (UTC)"),
                 QStringLiteral("Seconds"), QStringLiteral("Times"), QStringLiteral("UPS"),
                 QStringLiteral("Kind"), QStringLiteral("Severity"), QStringLiteral("Text"),
                 QStringLiteral("Value"), QStringLiteral("User"),
                 QStringLiteral("Acknowledged (UTC)"), QStringLiteral("Acknowledged by")});
    constexpr int second = 1000;
    for (const Event &event : events)
        text += csvLine({csvTime(event.begin), event.end ? csvTime(*event.end) : QString(),
                         event.end ? QString::number(event.lasted / second) : QString(),
                         QString::number(event.count), event.ups, nameOf(event.kind),
                         severityNameOf(event), event.text, event.value, event.user,
                         event.acknowledgedAt ? csvTime(*event.acknowledgedAt) : QString(),
                         event.acknowledgedBy});
    return text;
}

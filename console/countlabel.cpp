// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "countlabel.h"

#include "model/sitemodel.h"
#include "severitylook.h"
#include "theme.h"

#include <QtGui/QPainter>

#include <algorithm>

namespace {

/// The worst first.
constexpr Severity countedSeverities[] = {Severity::Critical, Severity::Unknown, Severity::Warning,
                                          Severity::Information, Severity::Normal};

/// The sign before a number is as high as its letters.
int signSide(const QFontMetrics &metrics)
{
    return metrics.ascent();
}

int gapInside(const QFontMetrics &metrics)
{
    return metrics.height() / 4;
}

int gapBetween(const QFontMetrics &metrics)
{
    return metrics.height() * 2 / 3;
}

/// Two units of a rack, from @p place on.
void drawServer(QPainter *painter, const QPoint &place, int side, const QColor &ink,
                const QColor &plate)
{
    constexpr double grid = 24;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->translate(place);
    painter->scale(side / grid, side / grid);
    painter->setPen(Qt::NoPen);
    for (const double top : {2.0, 13.0}) {
        painter->setBrush(ink);
        painter->drawRoundedRect(QRectF(1, top, 22, 9), 2, 2);
        painter->setBrush(plate);
        painter->drawEllipse(QRectF(4.5, top + 3, 3, 3));
        painter->drawRect(QRectF(12, top + 3.5, 8, 2));
    }
    painter->restore();
}

} // namespace

QString wordOf(Severity severity)
{
    return severity == Severity::Unknown ? CountLabel::tr("no communication")
                                         : nameOf(severity).toLower();
}

QVector<SiteCount> countsOf(const SiteModel &site)
{
    const auto all = site.counts();
    const int servers = site.problemCount();
    QVector<SiteCount> counts;
    for (const Severity severity : countedSeverities) {
        const int count = all.at(std::size_t(severity));
        if (count > 0)
            counts.append({severity, count, wordOf(severity)});
        // What is behind a server that cannot be read matters as much as UPSes without
        // communication.
        if (severity == Severity::Critical && servers > 0)
            counts.append({std::nullopt, servers,
                           servers == 1 ? CountLabel::tr("server problem")
                                        : CountLabel::tr("server problems")});
    }
    return counts;
}

QString countText(const QVector<SiteCount> &counts)
{
    QStringList parts;
    for (const SiteCount &one : counts)
        parts += QStringLiteral("%1 %2").arg(one.count).arg(one.word);
    return parts.join(Theme::separator());
}

CountLabel::CountLabel(QWidget *parent)
    : ElidedLabel(parent)
{}

void CountLabel::setCounts(const QVector<SiteCount> &newCounts)
{
    counts = newCounts;
    if (!counts.isEmpty())
        setText(countText(counts));
}

int CountLabel::signsWidth(const QFont &font) const
{
    const QFontMetrics metrics(font);
    int width = -gapBetween(metrics);
    for (const SiteCount &one : counts)
        width += signSide(metrics) + gapInside(metrics) +
                 metrics.horizontalAdvance(QString::number(one.count)) + gapBetween(metrics);
    return width;
}

void CountLabel::paintEvent(QPaintEvent *event)
{
    if (counts.isEmpty() || !isElided()) {
        ElidedLabel::paintEvent(event);
        return;
    }
    const QRect room = contentsRect();
    const QFont smaller = Theme::font(Theme::Normal, true);
    const QString words = text().simplified();
    if (QFontMetrics(smaller).elidedText(words, Qt::ElideRight, room.width()) == words) {
        QPainter painter(this);
        painter.setFont(smaller);
        painter.setPen(palette().color(foregroundRole()));
        painter.drawText(room, int(alignment()), words);
        return;
    }
    QFont shown = font();
    // Rather small than cut.
    for (const Theme::TextSize size : {Theme::Normal, Theme::Small}) {
        if (signsWidth(shown) > room.width())
            shown = Theme::font(size, true);
    }
    QPainter painter(this);
    const QColor ink = palette().color(foregroundRole());
    const QColor plate = palette().color(QPalette::Window);
    painter.setFont(shown);
    painter.setPen(ink);
    const QFontMetrics metrics(shown);
    // Numbers of many digits stand closer.
    const int excess = std::max(signsWidth(shown) - room.width(), 0);
    const int between =
        std::max(gapBetween(metrics) - (excess + int(counts.size()) - 1) / int(counts.size()), 1);
    const int side = signSide(metrics);
    int x = room.left();
    for (const SiteCount &one : counts) {
        const QPoint place(x, room.top() + (room.height() - side) / 2);
        if (one.severity)
            painter.drawPixmap(place,
                               severitySign(*one.severity, side, ink, plate, devicePixelRatioF()));
        else
            drawServer(&painter, place, side, ink, plate);
        x += side + gapInside(metrics);
        const QString number = QString::number(one.count);
        const int width = metrics.horizontalAdvance(number);
        painter.drawText(QRect(x, room.top(), width + between, room.height()),
                         Qt::AlignLeft | Qt::AlignVCenter, number);
        x += width + between;
    }
}

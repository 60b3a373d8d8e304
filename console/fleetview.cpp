// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "fleetview.h"

#include "display.h"
#include "scrollroom.h"
#include "severitylook.h"
#include "theme.h"

#include <metroshelter.h>

#include <QtCore/QSet>
#include <QtGui/QKeyEvent>
#include <QtGui/QPainter>
#include <QtGui/QPixmapCache>
#include <QtGui/QStaticText>
#include <QtWidgets/QScrollBar>

#include <algorithm>

namespace {

constexpr int tileUnits = 172; // the least width
constexpr int tileHeightUnits = 50;
constexpr int titleUnits = 26;
constexpr int gapUnits = 6;
constexpr int soonMsecs = 200;
constexpr int widestUnits = 340;
constexpr int ledRoom = 30;

QPixmap plateOf(Severity severity, QSize size, qreal ratio)
{
    const QColor color = lookOf(severity, Theme::isDark()).plate;
    const QString key = QStringLiteral("kiv-fleet-%1-%2x%3-%4")
                            .arg(color.name())
                            .arg(size.width())
                            .arg(size.height())
                            .arg(ratio);
    QPixmap plate;
    if (!QPixmapCache::find(key, &plate)) {
        plate = QPixmap(size * ratio);
        plate.setDevicePixelRatio(ratio);
        plate.fill(color);
        QPixmapCache::insert(key, plate);
    }
    return plate;
}

/// The state, or what is wrong.
QString stateText(const UpsModel &ups)
{
    const Condition *worst = ups.worst();
    // As a condition it has too many words for a tile.
    if (worst && worst->id == QLatin1String("bypass"))
        return FleetView::tr("Bypass, not protected");
    // What the state says already is not said again.
    const bool said = !worst || worst->text.startsWith(ups.headline().state, Qt::CaseInsensitive);
    return said ? ups.headline().state : worst->text;
}

/// The figure that matters most, with its name.
QString figureText(const UpsModel &ups)
{
    if (!ups.timeLeft().isEmpty() && ups.severity() != Severity::Normal)
        return FleetView::tr("%1 left").arg(ups.timeLeft());
    if (const auto load = ups.snapshot().value(Quantity::Load))
        return FleetView::tr("Load %1").arg(Values::text(Quantity::Load, load, 0));
    return {};
}

QString joined(const QString &state, const QString &figure)
{
    return figure.isEmpty() ? state : state + QStringLiteral(" · ") + figure;
}

} // namespace

/// The tile of one UPS: its name, what it is doing, and how bad that is by colour, sign and words.
class FleetTile : public MetroShelter
{
public:
    explicit FleetTile(QWidget *parent)
        : MetroShelter(parent)
    {
        setCursor(Qt::PointingHandCursor);
        setFocusPolicy(Qt::StrongFocus);
    }

    void showUps(UpsModel *shown, bool force)
    {
        ups = shown;
        const Severity now = worseOf(ups->severity(), ups->headline().severity);
        const QString newTitle = ups->title();
        const QString newState = stateText(*ups);
        const QString newFigure = figureText(*ups);
        const elemDesc_t element = shownState(ups->snapshot().system);
        const bool same = !force && now == severity && newTitle == title && newState == state &&
                          newFigure == figure && element.alarmSt == shown_.alarmSt &&
                          element.elemSt == shown_.elemSt;
        if (same)
            return;
        severity = now;
        if (force || newTitle != title)
            setTitle(newTitle);
        state = newState;
        figure = newFigure;
        shown_ = element;
        const QString described = nameOf(severity) + QStringLiteral(": ") + joined(state, figure);
        setAccessibleName(title);
        setAccessibleDescription(described);
        setToolTip(QString()); // texts of a UPS would be taken for markup
        const SeverityLook look = lookOf(severity, Theme::isDark());
        setState(element);
        setColorText(look.ink);
        // Drops the tile's image in any case.
        setBackgroundImage(plateOf(severity, size(), devicePixelRatioF()));
    }

    void paintText(QPainter *painter) override
    {
        MetroShelter::paintText(painter);
        const SeverityLook look = lookOf(severity, Theme::isDark());
        const int sign = Theme::px(signUnits);
        painter->drawPixmap(
            Theme::px(marginUnits), (height() - sign) / 2,
            severitySign(severity, sign, look.ink, look.plate, devicePixelRatioF()));
        painter->setPen(look.ink);
        const QFont plain = Theme::font(Theme::Small);
        const QFontMetrics second(plain);
        const int titleHeight = QFontMetrics(titleFont).height();
        const int top = (height() - titleHeight - second.height()) / 2;
        painter->setFont(titleFont);
        painter->drawStaticText(textLeft(), top, titleText);
        painter->setFont(plain);
        // A state that is cut says less than one without its figure.
        QString shown = joined(state, figure);
        if (second.horizontalAdvance(shown) > textRoom())
            shown = second.elidedText(state, Qt::ElideRight, textRoom());
        painter->drawText(textLeft(), top + titleHeight + second.ascent(), shown);
    }

    UpsModel *ups = nullptr;
    int position = 0; // in the order

private:
    static constexpr int marginUnits = 8;
    static constexpr int signUnits = 18;

    static int textLeft()
    {
        return 2 * Theme::px(marginUnits) + Theme::px(signUnits);
    }
    int textRoom() const
    {
        return width() - textLeft() - ledRoom - Theme::px(marginUnits) / 2;
    }

    /// Figures change every second, titles hardly ever: shaping them each time would be most of the
    /// cost of a tile.
    void setTitle(const QString &newTitle)
    {
        title = newTitle;
        titleFont = Theme::font(Theme::Normal, true);
        // Rather small than cut.
        if (QFontMetrics(titleFont).horizontalAdvance(title) > textRoom())
            titleFont = Theme::font(Theme::Small, true);
        titleText.setTextFormat(Qt::PlainText);
        // Names of one site differ at their ends.
        titleText.setText(QFontMetrics(titleFont).elidedText(title, Qt::ElideMiddle, textRoom()));
    }

    Severity severity = Severity::Unknown;
    elemDesc_t shown_ = {0, 0};
    QString title;
    QFont titleFont;
    QStaticText titleText;
    QString state;
    QString figure;
};

FleetView::FleetView(QWidget *parent)
    : QAbstractScrollArea(parent)
{
    setObjectName(QStringLiteral("fleet"));
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    viewport()->setAutoFillBackground(false);
    soon.setSingleShot(true);
    soon.setInterval(soonMsecs);
    connect(&soon, &QTimer::timeout, this, &FleetView::refresh);
    scrollByFinger(this);
}

void FleetView::setSite(SiteModel *newSite)
{
    site = newSite;
    for (int i = 0; i < site->count(); ++i)
        add(site->at(i));
    connect(site, &SiteModel::added, this, &FleetView::add);
    connect(site, &SiteModel::changed, this, &FleetView::changed);
    refresh();
}

void FleetView::add(UpsModel *ups)
{
    indexes.insert(ups, int(entries.size()));
    entries.push_back({ups, Severity::Normal, 0, QString(), nameOrder().sortKey(QString())});
    takeOrder(&entries.back());
    orderIsOld = true;
    if (!soon.isActive())
        soon.start();
}

/// Takes from the UPS what its place depends on; false: nothing of it changed.
bool FleetView::takeOrder(Entry *entry)
{
    const UpsModel &ups = *entry->ups;
    const Severity severity = worseOf(ups.severity(), ups.headline().severity);
    const int urgency = urgencyOf(ups);
    const bool isRenamed = ups.title() != entry->title;
    const bool isChanged = isRenamed || severity != entry->severity || urgency != entry->urgency;
    entry->severity = severity;
    entry->urgency = urgency;
    if (isRenamed) {
        entry->title = ups.title();
        entry->name = nameOrder().sortKey(entry->title);
    }
    return isChanged;
}

void FleetView::changed(UpsModel *ups)
{
    const auto index = indexes.constFind(ups);
    if (index == indexes.cend())
        return;
    entries[std::size_t(*index)].dirty = true;
    // However many change, the screen follows five times a second.
    if (!soon.isActive())
        soon.start();
}

void FleetView::setFilter(const FleetFilter &newFilter)
{
    filter = newFilter;
    orderIsOld = true;
    refresh();
}

int FleetView::shownCount() const
{
    return int(order.size());
}

int FleetView::tileCount() const
{
    return int(tiles.size());
}

QWidget *FleetView::tileOf(const UpsModel *ups) const
{
    for (FleetTile *tile : tiles) {
        if (tile->ups == ups && !tile->isHidden())
            return tile;
    }
    return nullptr;
}

bool FleetView::passes(const UpsModel &ups, Severity severity) const
{
    if ((filter.severities & (1U << int(severity))) == 0)
        return false;
    if (filter.words.isEmpty())
        return true;
    const QString all = ups.title() + QLatin1Char('\n') + ups.site() + QLatin1Char('\n') +
                        ups.id() + QLatin1Char('\n') + joined(stateText(ups), figureText(ups));
    const QStringList words = filter.words.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    return std::all_of(words.cbegin(), words.cend(), [&all](const QString &word) {
        return all.contains(word, Qt::CaseInsensitive);
    });
}

void FleetView::refresh()
{
    soon.stop();
    bool reordered = orderIsOld;
    for (Entry &entry : entries) {
        if (!entry.dirty)
            continue;
        reordered = takeOrder(&entry) || reordered;
    }
    // A search may look for what changes.
    if (reordered || !filter.words.isEmpty())
        arrange();
    // Also in a window that is only rendered.
    if (isVisibleTo(window())) {
        place();
        for (Entry &entry : entries)
            entry.dirty = false;
    }
    if (reordered)
        Q_EMIT rearranged();
}

void FleetView::arrange()
{
    orderIsOld = false;
    struct Key
    {
        int group;
        int urgency;
        int index;
    };
    struct Group
    {
        GroupName name;
        int worst;
    };
    QHash<QString, int> groupOf;
    std::vector<Group> groups;
    std::vector<Key> keys;
    keys.reserve(entries.size());
    for (int i = 0; i < int(entries.size()); ++i) {
        const Entry &entry = entries[std::size_t(i)];
        if (!passes(*entry.ups, entry.severity))
            continue;
        const QString &groupName = entry.ups->site();
        const auto known = groupOf.constFind(groupName);
        const int group = known == groupOf.cend() ? int(groups.size()) : *known;
        if (known == groupOf.cend()) {
            groupOf.insert(groupName, group);
            groups.push_back({GroupName(groupName), 0});
        }
        int &worst = groups[std::size_t(group)].worst;
        worst = std::max(worst, entry.urgency);
        keys.push_back({group, entry.urgency, i});
    }
    // Equal names stay in the order of the site.
    std::sort(keys.begin(), keys.end(), [&groups, this](const Key &a, const Key &b) {
        if (a.group != b.group) {
            const Group &left = groups[std::size_t(a.group)];
            const Group &right = groups[std::size_t(b.group)];
            return left.worst != right.worst ? left.worst > right.worst : left.name < right.name;
        }
        if (a.urgency != b.urgency)
            return a.urgency > b.urgency;
        const int names =
            entries[std::size_t(a.index)].name.compare(entries[std::size_t(b.index)].name);
        return names != 0 ? names < 0 : a.index < b.index;
    });
    order.clear();
    for (const Key &key : keys)
        order.push_back(key.index);
    layOut();
}

/// Where all tiles have room, they are wide rather than many in a row.
int FleetView::columnsFor(int width, int titleHeight, int tileHeight) const
{
    const int gap = Theme::px(gapUnits);
    int count = std::max(1, width / (Theme::px(tileUnits) + gap));
    const auto fits = [&](int wanted) {
        if (width / wanted - gap > Theme::px(widestUnits))
            return false;
        int height = 0;
        const int all = int(order.size());
        for (int position = 0; position < all && height <= viewport()->height();) {
            const QString &group = siteAt(position);
            const int begin = position;
            while (position < all && siteAt(position) == group)
                ++position;
            height += titleHeight + (position - begin + wanted - 1) / wanted * (tileHeight + gap);
        }
        return height <= viewport()->height();
    };
    // More than this cannot fit.
    constexpr std::size_t most = 500;
    while (count > 1 && order.size() <= most && fits(count - 1))
        --count;
    return count;
}

const FleetView::Entry &FleetView::entryAt(int position) const
{
    return entries[std::size_t(order[std::size_t(position)])];
}

const QString &FleetView::siteAt(int position) const
{
    return entryAt(position).ups->site();
}

void FleetView::layOut()
{
    const int gap = Theme::px(gapUnits);
    const int width = viewport()->width() - gap;
    const int tileHeight = std::max(Theme::touchSize(), Theme::px(tileHeightUnits));
    const int titleHeight =
        std::max(Theme::px(titleUnits), QFontMetrics(Theme::font(Theme::Normal, true)).height());
    columns = columnsFor(width, titleHeight, tileHeight);
    tileWidth = std::max(1, width / columns - gap);
    lines.clear();
    int y = 0;
    int position = 0;
    const int all = int(order.size());
    while (position < all) {
        const QString group = siteAt(position);
        int end = position;
        while (end < all && siteAt(end) == group)
            ++end;
        const QString count = tr("%n UPS(es)", nullptr, end - position)
                                  .replace(QStringLiteral("(es)"),
                                           end - position == 1 ? QString() : QStringLiteral("es"));
        lines.push_back({y, titleHeight,
                         group.isEmpty() ? count : group + Theme::separator() + count, position,
                         0});
        y += titleHeight;
        for (; position < end; position += columns) {
            lines.push_back({y, tileHeight, {}, position, std::min(columns, end - position)});
            y += tileHeight + gap;
        }
        position = end;
    }
    verticalScrollBar()->setRange(0, std::max(0, y - viewport()->height()));
    verticalScrollBar()->setPageStep(viewport()->height());
    verticalScrollBar()->setSingleStep(tileHeight / 2);
    viewport()->update();
}

FleetTile *FleetView::freeTile()
{
    for (FleetTile *tile : tiles) {
        if (!tile->ups)
            return tile;
    }
    auto *tile = new FleetTile(viewport());
    tile->installEventFilter(this);
    connect(tile, &MetroShelter::clicked, this, [this, tile] {
        if (tile->ups)
            Q_EMIT chosen(tile->ups);
    });
    tile->hide();
    tiles.push_back(tile);
    return tile;
}

std::vector<FleetView::Spot> FleetView::visibleSpots() const
{
    const int top = verticalScrollBar()->value();
    const int bottom = top + viewport()->height();
    const auto from =
        std::lower_bound(lines.cbegin(), lines.cend(), top,
                         [](const Line &line, int y) { return line.y + line.height <= y; });
    const auto to = std::lower_bound(from, lines.cend(), bottom,
                                     [](const Line &line, int y) { return line.y < y; });
    const int gap = Theme::px(gapUnits);
    std::vector<Spot> spots;
    for (auto line = from; line != to; ++line) {
        for (int i = 0; i < line->count; ++i)
            spots.push_back({line->first + i, QRect(gap + i * (tileWidth + gap), line->y - top,
                                                    tileWidth, line->height)});
    }
    return spots;
}

/// Frees the tiles of all but @p spots. Those that stay keep their tile, and with it its image and
/// the focus.
QHash<const UpsModel *, FleetTile *> FleetView::keepTiles(const std::vector<Spot> &spots)
{
    QSet<const UpsModel *> visible;
    for (const Spot &spot : spots)
        visible.insert(entryAt(spot.position).ups);
    QHash<const UpsModel *, FleetTile *> kept;
    for (FleetTile *tile : tiles) {
        if (visible.contains(tile->ups))
            kept.insert(tile->ups, tile);
        else
            tile->ups = nullptr;
    }
    return kept;
}

/// Gives the visible lines their tiles.
void FleetView::place()
{
    const std::vector<Spot> spots = visibleSpots();
    const QHash<const UpsModel *, FleetTile *> kept = keepTiles(spots);
    for (const Spot &spot : spots) {
        const Entry &entry = entryAt(spot.position);
        FleetTile *tile = kept.value(entry.ups);
        const bool isNew = !tile;
        if (isNew) {
            tile = freeTile();
            tile->ups = entry.ups;
        }
        tile->position = spot.position;
        const bool resized = tile->size() != spot.place.size();
        if (tile->geometry() != spot.place)
            tile->setGeometry(spot.place);
        if (isNew || resized || entry.dirty)
            tile->showUps(entry.ups, isNew || resized);
        if (tile->isHidden())
            tile->show();
    }
    for (FleetTile *tile : tiles) {
        if (!tile->ups && !tile->isHidden())
            tile->hide();
    }
}

void FleetView::applyScale()
{
    layOut();
    for (FleetTile *tile : tiles) {
        if (tile->ups)
            tile->showUps(tile->ups, true);
    }
    if (isVisibleTo(window()))
        place();
}

void FleetView::resizeEvent(QResizeEvent *event)
{
    QAbstractScrollArea::resizeEvent(event);
    layOut();
    if (isVisibleTo(window()))
        place();
}

void FleetView::scrollContentsBy(int, int)
{
    place();
    viewport()->update();
}

void FleetView::showEvent(QShowEvent *event)
{
    QAbstractScrollArea::showEvent(event);
    refresh();
    place();
}

void FleetView::changeEvent(QEvent *event)
{
    QAbstractScrollArea::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        applyScale();
}

bool FleetView::viewportEvent(QEvent *event)
{
    if (event->type() == QEvent::Paint) {
        QPainter painter(viewport());
        paintTitles(&painter);
        return true;
    }
    return QAbstractScrollArea::viewportEvent(event);
}

void FleetView::paintTitles(QPainter *painter)
{
    painter->setPen(palette().color(QPalette::WindowText));
    painter->setFont(Theme::font(Theme::Normal, true));
    const int top = verticalScrollBar()->value();
    const int gap = Theme::px(gapUnits);
    for (const Line &line : lines) {
        if (line.count > 0 || line.y + line.height < top)
            continue;
        if (line.y > top + viewport()->height())
            break;
        const QRect place(gap, line.y - top, viewport()->width() - 2 * gap, line.height);
        painter->drawText(
            place, Qt::AlignVCenter | Qt::AlignLeft,
            painter->fontMetrics().elidedText(line.title, Qt::ElideRight, place.width()));
    }
    // Those that were just added are not arranged yet.
    const bool isFiltering = !entries.empty() && (!filter.words.isEmpty() ||
                                                  filter.severities != FleetFilter().severities);
    if (order.empty())
        painter->drawText(viewport()->rect(), Qt::AlignCenter,
                          isFiltering ? tr("No UPS fits") : tr("No UPS is known yet"));
}

/// Arrows go from tile to tile, and scroll.
bool FleetView::eventFilter(QObject *object, QEvent *event)
{
    if (event->type() == QEvent::KeyPress) {
        const int position = static_cast<FleetTile *>(object)->position;
        switch (static_cast<QKeyEvent *>(event)->key()) {
        case Qt::Key_Left:
            focusOn(position - 1);
            return true;
        case Qt::Key_Right:
            focusOn(position + 1);
            return true;
        case Qt::Key_Up:
            focusOn(position - columns);
            return true;
        case Qt::Key_Down:
            focusOn(position + columns);
            return true;
        case Qt::Key_Home:
            focusOn(0);
            return true;
        case Qt::Key_End:
            focusOn(int(order.size()) - 1);
            return true;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            static_cast<FleetTile *>(object)->click();
            return true;
        default:
            break;
        }
    }
    return QAbstractScrollArea::eventFilter(object, event);
}

void FleetView::focusOn(int position)
{
    if (order.empty())
        return;
    position = std::min(std::max(position, 0), int(order.size()) - 1);
    const auto line = std::find_if(lines.cbegin(), lines.cend(), [position](const Line &one) {
        return one.count > 0 && position >= one.first && position < one.first + one.count;
    });
    QScrollBar *bar = verticalScrollBar();
    if (line->y < bar->value())
        bar->setValue(line->y);
    else if (line->y + line->height > bar->value() + viewport()->height())
        bar->setValue(line->y + line->height - viewport()->height());
    place();
    if (QWidget *tile = tileOf(entryAt(position).ups))
        tile->setFocus(Qt::OtherFocusReason);
}

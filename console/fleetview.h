// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "model/sitemodel.h"

#include <QtCore/QTimer>
#include <QtWidgets/QAbstractScrollArea>

#include <vector>

class FleetTile;

/// What a FleetView shows of a site.
struct FleetFilter
{
    QString words;            ///< all must stand in name, group, id or state; empty: any
    quint32 severities = ~0U; ///< a bit for each Severity
};

/// The UPSes of a site as tiles: groups with the worst first, and in a group the worst first. Tiles
/// exist for what is visible alone.
class FleetView : public QAbstractScrollArea
{
    Q_OBJECT

public:
    explicit FleetView(QWidget *parent = nullptr);

    /// Shows @p site, which must live as long.
    void setSite(SiteModel *site);
    void setFilter(const FleetFilter &filter);
    void applyScale();
    /// UPSes that the filter lets pass.
    int shownCount() const;
    /// Tiles that exist.
    int tileCount() const;
    /// The tile of @p ups; null while it is not visible.
    QWidget *tileOf(const UpsModel *ups) const;
    /// Takes up at once what changed; comes by itself, soon after a change.
    void refresh();

Q_SIGNALS:
    /// A tile was pressed.
    void chosen(UpsModel *ups);
    /// The order, and with it the counts, may have changed.
    void rearranged();

protected:
    void resizeEvent(QResizeEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;
    void showEvent(QShowEvent *event) override;
    void changeEvent(QEvent *event) override;
    bool viewportEvent(QEvent *event) override;
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    /// A UPS with what its place depends on.
    struct Entry
    {
        UpsModel *ups;
        Severity severity;
        int urgency;
        QString title;
        QCollatorSortKey name; // the title, for sorting
        bool dirty = true;
    };
    /// A line of tiles, or the title of a group.
    struct Line
    {
        int y = 0;
        int height = 0;
        QString title; // of a group; empty: tiles
        int first = 0; // in order
        int count = 0;
    };
    /// Where the tile at a position of the order is in the viewport.
    struct Spot
    {
        int position = 0;
        QRect place;
    };

    void add(UpsModel *ups);
    void changed(UpsModel *ups);
    static bool takeOrder(Entry *entry);
    void arrange();
    void layOut();
    int columnsFor(int width, int titleHeight, int tileHeight) const;
    const Entry &entryAt(int position) const;
    const QString &siteAt(int position) const;
    std::vector<Spot> visibleSpots() const;
    QHash<const UpsModel *, FleetTile *> keepTiles(const std::vector<Spot> &spots);
    void place();
    void paintTitles(QPainter *painter);
    void focusOn(int position);
    bool passes(const UpsModel &ups, Severity severity) const;
    FleetTile *freeTile();

    SiteModel *site = nullptr;
    FleetFilter filter;
    std::vector<Entry> entries;
    QHash<const UpsModel *, int> indexes;
    std::vector<int> order; // entries that pass, as shown
    std::vector<Line> lines;
    int columns = 1;
    int tileWidth = 1;
    std::vector<FleetTile *> tiles; // a pool; those in use have a UPS
    bool orderIsOld = true;
    QTimer soon;
};

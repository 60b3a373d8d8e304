// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "overviewpage.h"

#include "display.h"
#include "gaugeroom.h"
#include "singlelinediagram.h"
#include "theme.h"

#include <metrobatticon.h>

#include <QtCore/QTimer>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QVBoxLayout>

#include <algorithm>

namespace {

constexpr int diagramShare = 5;
constexpr int dialShare = 3;
constexpr int narrowMargin = 6;

// What is drawn beside the dials.
constexpr qint64 trendLength = hourMsecs;
constexpr int trendColumns = 60;
constexpr int trendRefresh = 20000;

} // namespace

OverviewPage::OverviewPage(QWidget *parent)
    : Page(parent)
    , diagramCard(new Card(this))
    , diagram(new SingleLineDiagram(diagramCard))
    , dialCard(new Card(this))
    , trendTimer(new QTimer(this))
{
    connect(trendTimer, &QTimer::timeout, this, &OverviewPage::readTrends);
    trendTimer->start(trendRefresh);
    auto *inside = new QVBoxLayout(diagramCard);
    inside->addWidget(diagram);
    addDials();
    QVBoxLayout *layout = Theme::pageLayout(this);
    layout->addWidget(diagramCard, diagramShare);
    layout->addWidget(dialCard, dialShare);
    OverviewPage::applyScale();
}

void OverviewPage::addDials()
{
    auto *row = new QHBoxLayout(dialCard);
    const struct
    {
        Quantity quantity;
        QString label;
    } shown[] = {{Quantity::Load, tr("Load")},
                 {Quantity::BatteryCharge, tr("Battery")},
                 {Quantity::InputVoltage, tr("Input")},
                 {Quantity::OutputVoltage, tr("Output")}};
    for (const auto &[quantity, label] : shown) {
        auto *dial = new GaugeRoom(quantity, label, dialCard);
        row->addWidget(dial, 1);
        dials.push_back(dial);
    }
    battery = new MetroBattIcon(dialCard);
    battery->setObjectName(QStringLiteral("battery"));
    battery->setAccessibleName(nameOf(Element::Battery));
    battery->setFixedSize(battery->size());
    // An indicator, not a control.
    battery->setFocusPolicy(Qt::NoFocus);
    battery->setAttribute(Qt::WA_TransparentForMouseEvents);
    battery->hide();
    row->insertWidget(0, battery);
}

void OverviewPage::showBattery()
{
    // The battery's image has one size; it gives way to the dials.
    constexpr int dialRoom = 130;
    battery->setVisible(width() >= int(dials.size()) * Theme::px(dialRoom) + battery->width() &&
                        dialCard->height() >= battery->height());
}

QSize OverviewPage::minimumSizeHint() const
{
    const QMargins around = layout()->contentsMargins();
    const QMargins inside = dialCard->layout()->contentsMargins();
    QSize dialsNeed(0, 0);
    for (const GaugeRoom *dial : dials) {
        const QSize need = dial->minimumSizeHint();
        dialsNeed = QSize(dialsNeed.width() + need.width() + dialCard->layout()->spacing(),
                          std::max(dialsNeed.height(), need.height()));
    }
    const QSize least = diagram->minimumSizeHint();
    return {std::max(least.width(), dialsNeed.width()) + 2 * inside.left() + around.left() +
                around.right(),
            least.height() + dialsNeed.height() + 4 * inside.top() + around.top() +
                around.bottom() + layout()->spacing()};
}

void OverviewPage::applyScale()
{
    const int wide = Theme::px(Theme::spacing);
    const int narrow = Theme::px(narrowMargin);
    diagramCard->layout()->setContentsMargins(wide, narrow, wide, narrow);
    dialCard->layout()->setContentsMargins(narrow, narrow, narrow, 2);
    dialCard->layout()->setSpacing(narrow);
    // What they need follows the scale, too.
    diagram->updateGeometry();
    for (GaugeRoom *dial : dials)
        dial->updateGeometry();
    updateGeometry();
    showBattery();
}

void OverviewPage::resizeEvent(QResizeEvent *event)
{
    Page::resizeEvent(event);
    showBattery();
}

void OverviewPage::setTrends(TrendSource *newTrends)
{
    if (trends)
        trends->disconnect(this);
    trends = newTrends;
    for (GaugeRoom *dial : dials)
        dial->showTrend({}, {});
    if (trends) {
        connect(trends, &TrendSource::trendRead, this, &OverviewPage::takeTrends);
        connect(trends, &TrendSource::replaced, this, &OverviewPage::readTrends);
        readTrends();
    }
}

void OverviewPage::readTrends()
{
    // What nobody sees need not be read.
    if (!trends || upsId.isEmpty() || !isVisibleTo(window()))
        return;
    QVector<Quantity> quantities;
    for (const GaugeRoom *dial : dials)
        quantities.append(dial->shownQuantity());
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    trends->drop(askedTrends);
    askedTrends = trends->readTrend(upsId, quantities, {now - trendLength, now}, trendColumns);
}

void OverviewPage::takeTrends(int number, const Trend &trend)
{
    if (number != askedTrends || trend.ups != upsId)
        return;
    for (std::size_t i = 0; i < dials.size() && int(i) < trend.curves.size(); ++i)
        dials[i]->showTrend(trend.curves.at(int(i)).points, trend.span);
}

void OverviewPage::showEvent(QShowEvent *event)
{
    Page::showEvent(event);
    readTrends();
}

void OverviewPage::showUps(const UpsModel &ups)
{
    if (ups.id() != upsId) {
        upsId = ups.id();
        latest = Diagram();
        for (GaugeRoom *dial : dials)
            dial->showTrend({}, {});
        readTrends();
    }
    latest = diagramOf(ups, latest);
    diagram->showDiagram(latest);
    battery->setState(shownState(ups.snapshot().element(Element::Battery)));
    for (GaugeRoom *dial : dials)
        dial->showUps(ups);
}

// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "diagram.h"
#include "history/trendsource.h"
#include "page.h"

#include <vector>

class Card;
class GaugeRoom;
class MetroBattIcon;
class QTimer;
class SingleLineDiagram;

/// The UPS at a glance: where energy flows and what each element does, and the main values.
class OverviewPage : public Page
{
    Q_OBJECT

public:
    explicit OverviewPage(QWidget *parent = nullptr);

    /// Shows the past hour beside the dials as @p trends has it, which must live as long; null:
    /// nothing.
    void setTrends(TrendSource *trends);
    void applyScale() override;
    QSize minimumSizeHint() const override;

protected:
    void showUps(const UpsModel &ups) override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void addDials();
    void showBattery();
    void readTrends();
    void takeTrends(int number, const Trend &trend);

    Card *diagramCard;
    SingleLineDiagram *diagram;
    Card *dialCard;
    MetroBattIcon *battery;
    std::vector<GaugeRoom *> dials;
    Diagram latest;
    QPointer<TrendSource> trends;
    QString upsId;
    QTimer *trendTimer;
    int askedTrends = 0;
};

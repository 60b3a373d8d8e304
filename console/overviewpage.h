#pragma once

#include "diagram.h"
#include "page.h"

#include <vector>

class Card;
class GaugeRoom;
class MetroBattIcon;
class SingleLineDiagram;

/// The UPS at a glance: where energy flows and what each element does, and the main values.
class OverviewPage : public Page
{
    Q_OBJECT

public:
    explicit OverviewPage(QWidget *parent = nullptr);

    void applyScale() override;
    QSize minimumSizeHint() const override;

protected:
    void showUps(const UpsModel &ups) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    Card *makeDials();
    void showBattery();

    SingleLineDiagram *diagram;
    Card *diagramCard;
    Card *dialCard;
    MetroBattIcon *battery;
    std::vector<GaugeRoom *> dials;
    Diagram latest;
};

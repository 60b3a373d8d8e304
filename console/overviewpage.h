#pragma once

#include "dial.h"
#include "page.h"

#include <array>
#include <vector>

class AeroButton;
class MetroBattIcon;
class MetroShelter;
class MetroSysIcon;
class QLabel;

/// The UPS at a glance: the state of the whole and of each element, the main values, the actions.
class OverviewPage : public Page
{
    Q_OBJECT

public:
    explicit OverviewPage(QWidget *parent = nullptr);

protected:
    void showUps(const UpsModel &ups) override;
    void offerCommands() override;

private:
    QWidget *makeSummary();
    QWidget *makeTiles();
    QWidget *makeDials();
    QWidget *makeActions();
    void addAction(const QString &text, Command command);

    struct Action
    {
        AeroButton *button;
        Command command;
    };

    MetroSysIcon *system;
    MetroBattIcon *battery;
    QLabel *stateText;
    QLabel *detailText;
    QLabel *alarmText;
    std::array<MetroShelter *, elementCount> tiles;
    std::array<QLabel *, elementCount> tileTexts;
    std::vector<Dial> dials;
    std::vector<Action> actions;
};

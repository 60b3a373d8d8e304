#pragma once

#include "page.h"

#include <vector>

class AeroGroupbox;
class AeroLinebar;
class AeroStatusbar;
class AeroSwitch;
class ElidedLabel;
class QGridLayout;
class QLabel;
class QVBoxLayout;
class TranspButton;
enum class Pictogram;

/// Battery charge and what can be asked of the UPS, on glass.
class ControlPage : public Page
{
    Q_OBJECT

public:
    explicit ControlPage(QWidget *parent = nullptr);

    void applyScale() override;
    QSize minimumSizeHint() const override;

protected:
    void showUps(const UpsModel &ups) override;
    void offerCommands() override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    /// A switch that shows whether the UPS is in a state, and asks it to enter or to leave it.
    struct StateSwitch
    {
        AeroSwitch *control;
        Command enter;
        Command leave;
        bool (*holds)(const Snapshot &);
    };
    struct PushControl
    {
        TranspButton *control;
        Pictogram picture;
        Command command;
    };

    AeroGroupbox *makeBox(const QString &title);
    QWidget *makeBattery();
    QWidget *makeSwitches();
    QWidget *makeStrip();
    void arrangeCommands();
    void addSwitch(QWidget *box, const QString &text, Command enter, Command leave,
                   bool (*holds)(const Snapshot &));
    void addPush(QWidget *box, Pictogram picture, const QString &text, Command command);

    void showCharge(const Reading &reading);

    QWidget *content;
    AeroLinebar *charge;
    Reading shownCharge;
    bool chargeShown = false;
    ElidedLabel *chargeText;
    QVBoxLayout *batteryLayout;
    AeroGroupbox *commandBox;
    QGridLayout *commandLayout;
    bool narrow = false;
    std::vector<StateSwitch> switches;
    std::vector<PushControl> pushes;
    AeroStatusbar *strip;
    QLabel *linkText;
    ElidedLabel *statusText;
};

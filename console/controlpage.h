// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "page.h"

#include <vector>

class AeroGroupbox;
class AeroLinebar;
class AeroStatusbar;
class AeroSwitch;
class ElidedLabel;
class HoldGuard;
class OfferPanel;
class QBoxLayout;
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

    /// Where a user who wants to is kept; empty: nowhere.
    void setCredentialsFile(const QString &path);
    void applyScale() override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// What a command will do, or why it was not given, in a sentence.
    void said(const QString &text);
    /// A user wants to be kept in the file of credentials.
    void keepUser(const QString &upsId, const QString &user, const QString &password);

protected:
    void showUps(const UpsModel &ups) override;
    void offerCommands() override;
    void followModel(UpsModel *model) override;
    void showEvent(QShowEvent *event) override;
    void changeEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    /// A switch that shows whether the UPS is in a state, and asks it to enter or to leave it.
    struct StateSwitch
    {
        AeroSwitch *control;
        Command enter;
        Command leave;
        bool (*holds)(const Snapshot &);
        HoldGuard *guard; // where entering it is dangerous
        QLabel *warning;  // likewise
    };
    struct PushControl
    {
        TranspButton *control;
        Pictogram image;
        Command command;
    };

    struct Group
    {
        std::vector<StateSwitch> switches;
        std::vector<PushControl> pushes;
        QGridLayout *layout = nullptr;
    };

    QWidget *makeBattery();
    QWidget *makeOffers();
    QWidget *makeSwitches();
    QWidget *makeSimulator();
    QWidget *makeStrip();
    void arrangeCommands();
    void addSwitch(Group *group, const QString &text, Command enter, Command leave,
                   bool (*holds)(const Snapshot &), const QString &consequence);
    void addPush(Group *group, Pictogram image, const QString &text, Command command);
    static void scale(const Group &group, int title, int side);
    void showWhatIsMissing();

    void showCharge(const Reading &reading);

    QWidget *content;
    AeroLinebar *charge;
    Reading shownCharge;
    bool chargeShown = false;
    ElidedLabel *chargeText;
    QVBoxLayout *batteryLayout;
    AeroGroupbox *commandBox;
    AeroGroupbox *simulatorBox;
    QBoxLayout *groups;
    bool narrow = false;
    Group commands;
    Group simulation;
    QLabel *nothing;
    OfferPanel *offers;
    QPointer<UpsModel> shown;
    AeroStatusbar *strip;
    QLabel *linkText;
    ElidedLabel *statusText;
};

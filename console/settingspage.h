// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "page.h"

#include <vector>

class ElidedLabel;
class QHBoxLayout;
class QVBoxLayout;
class SimpleSlideSwitch;
class SlideSwitch;

/// The UPS's main switch and the console's settings.
class SettingsPage : public Page
{
    Q_OBJECT

public:
    explicit SettingsPage(QWidget *parent = nullptr);

    void applyScale() override;
    /// Sets the switch of the dark theme without choosing it.
    void showDarkTheme(bool dark);
    /// Likewise.
    void showPageAnimation(bool animated);
    void showNotify(bool notify);

Q_SIGNALS:
    void darkThemeChosen(bool dark);
    void pageAnimationChosen(bool animated);
    void notifyChosen(bool notify);

protected:
    void showUps(const UpsModel &ups) override;
    void offerCommands() override;

private:
    QWidget *makeMainSwitch(QWidget *parent);
    QWidget *makeSettings(QWidget *parent);
    SimpleSlideSwitch *addSetting(const QString &name, const QString &detail);
    void enableControls();

    SlideSwitch *mainSwitch;
    ElidedLabel *mainText;
    QHBoxLayout *mainRow;
    QVBoxLayout *rows;
    std::vector<QWidget *> settingRooms;
    SimpleSlideSwitch *beeper;
    SimpleSlideSwitch *darkTheme;
    SimpleSlideSwitch *pageAnimation;
    SimpleSlideSwitch *notify;
    bool linked = false;
    bool beeperKnown = false;
};

#pragma once

#include "page.h"

class QLabel;
class QVBoxLayout;
class SimpleSlideSwitch;
class SlideSwitch;

/// The UPS's main switch and the console's settings.
class SettingsPage : public Page
{
    Q_OBJECT

public:
    explicit SettingsPage(QWidget *parent = nullptr);

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
    QWidget *makeMainSwitch();
    QWidget *makeSettings();
    SimpleSlideSwitch *addSetting(QVBoxLayout *rows, const QString &name, const QString &detail);
    void enableControls();

    SlideSwitch *mainSwitch;
    QLabel *mainText;
    SimpleSlideSwitch *beeper;
    SimpleSlideSwitch *darkTheme;
    SimpleSlideSwitch *pageAnimation;
    SimpleSlideSwitch *notify;
    bool linked = false;
    bool beeperKnown = false;
};

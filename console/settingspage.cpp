#include "settingspage.h"

#include "setup.h"
#include "theme.h"

#include <simpleslideswitch.h>
#include <slideswitch.h>

#include <QtCore/QSignalBlocker>
#include <QtWidgets/QApplication>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QVBoxLayout>

namespace {

bool isOn(const Snapshot &snapshot)
{
    switch (snapshot.system.operating) {
    case OperatingState::On:
    case OperatingState::OnBattery:
    case OperatingState::OnBypass:
        return true;
    default:
        return false;
    }
}

/// On the way from stand-by to on.
bool isStarting(const Snapshot &snapshot)
{
    switch (snapshot.system.operating) {
    case OperatingState::Precharge:
    case OperatingState::Calibration:
    case OperatingState::WaitBatteryVoltage:
        return true;
    default:
        return false;
    }
}

QString mainSwitchText(const Snapshot &snapshot)
{
    if (snapshot.isLost())
        return sentence(snapshot.reason);
    if (snapshot.system.alarm == AlarmState::Locked)
        return SettingsPage::tr("Locked");
    if (isStarting(snapshot))
        return SettingsPage::tr("Starting: %1").arg(nameOf(snapshot.system.operating));
    return nameOf(snapshot.system.operating);
}

} // namespace

SettingsPage::SettingsPage(QWidget *parent)
    : Page(parent)
{
    QVBoxLayout *layout = Theme::pageLayout(this);
    layout->addWidget(makeMainSwitch());
    layout->addWidget(makeSettings(), 1);
}

QWidget *SettingsPage::makeMainSwitch()
{
    auto *card = new Card(this);
    mainSwitch = new SlideSwitch(card);
    mainSwitch->setObjectName(QStringLiteral("mainSwitch"));
    mainSwitch->setAccessibleName(tr("UPS"));
    mainSwitch->setFixedSize(mainSwitch->size());
    connect(mainSwitch, &SlideSwitch::clicked, this,
            [this](bool on) { give(on ? Command::SwitchOn : Command::SwitchOff); });
    mainText = Theme::label(card, Theme::Normal);
    mainText->setForegroundRole(QPalette::Mid);

    auto *texts = new QVBoxLayout;
    texts->setSpacing(4);
    texts->addStretch();
    texts->addWidget(Theme::label(card, Theme::Huge, true, tr("UPS")));
    texts->addWidget(mainText);
    texts->addStretch();
    auto *layout = new QHBoxLayout(card);
    layout->setContentsMargins(20, 20, 20, 20);
    layout->addLayout(texts, 1);
    layout->addWidget(mainSwitch);
    return card;
}

QWidget *SettingsPage::makeSettings()
{
    auto *card = new Card(this);
    auto *rows = new QVBoxLayout(card);
    rows->setContentsMargins(20, Theme::margin, 20, Theme::margin);
    beeper = addSetting(rows, tr("Beeper"), tr("The UPS sounds its alarms"));
    darkTheme = addSetting(rows, tr("Dark theme"), tr("Light on dark, for a dim room"));
    pageAnimation = addSetting(rows, tr("Page animation"), tr("Pages turn like cards"));
    notify = addSetting(rows, tr("Notifications"), tr("Changes of state appear on the desktop"));
    showNotify(true);
    connect(notify, &SimpleSlideSwitch::toggled, this, &SettingsPage::notifyChosen);
    connect(beeper, &SimpleSlideSwitch::toggled, this,
            [this](bool on) { give(on ? Command::BeeperOn : Command::BeeperOff); });
    connect(darkTheme, &SimpleSlideSwitch::toggled, this, &SettingsPage::darkThemeChosen);
    connect(pageAnimation, &SimpleSlideSwitch::toggled, this, &SettingsPage::pageAnimationChosen);
    return card;
}

SimpleSlideSwitch *SettingsPage::addSetting(QVBoxLayout *rows, const QString &name,
                                            const QString &detail)
{
    QWidget *card = rows->parentWidget();
    auto *control = new SimpleSlideSwitch(card);
    control->setObjectName(name);
    control->setAccessibleName(name);
    control->setAccessibleDescription(detail);
    QLabel *detailText = Theme::label(card, Theme::Normal, false, detail);
    detailText->setForegroundRole(QPalette::Mid);
    auto *texts = new QVBoxLayout;
    texts->setSpacing(2);
    texts->addStretch();
    texts->addWidget(Theme::label(card, Theme::Large, false, name));
    texts->addWidget(detailText);
    texts->addStretch();
    auto *row = new QHBoxLayout;
    row->addLayout(texts, 1);
    row->addWidget(control);
    rows->addLayout(row, 1);
    return control;
}

void SettingsPage::showUps(const UpsModel &ups)
{
    const Snapshot &snapshot = ups.snapshot();
    linked = !snapshot.isLost();
    beeperKnown = snapshot.beeperEnabled.has_value();
    mainText->setText(mainSwitchText(snapshot));
    // A drag under way is the user's.
    if (QApplication::mouseButtons() == Qt::NoButton) {
        setUp(mainSwitch, {{"locked", snapshot.system.alarm == AlarmState::Locked},
                           {"partialON", isStarting(snapshot)}});
        mainSwitch->setChecked(isOn(snapshot));
        const QSignalBlocker silent(beeper);
        beeper->setChecked(snapshot.beeperEnabled.value_or(false));
    }
    enableControls();
}

void SettingsPage::showDarkTheme(bool dark)
{
    const QSignalBlocker silent(darkTheme);
    darkTheme->setChecked(dark);
}

void SettingsPage::showPageAnimation(bool animated)
{
    const QSignalBlocker silent(pageAnimation);
    pageAnimation->setChecked(animated);
}

void SettingsPage::showNotify(bool announced)
{
    const QSignalBlocker silent(notify);
    notify->setChecked(announced);
}

void SettingsPage::offerCommands()
{
    enableControls();
}

void SettingsPage::enableControls()
{
    mainSwitch->setEnabled(linked && supports(Command::SwitchOn));
    beeper->setEnabled(linked && beeperKnown && supports(Command::BeeperOn));
}

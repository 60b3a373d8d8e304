// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "settingspage.h"

#include "display.h"
#include "elidedlabel.h"
#include "qtversion_p.h"
#include "scrollroom.h"
#include "theme.h"

#include <simpleslideswitch.h>
#include <slideswitch.h>

#include <QtCore/QEvent>
#include <QtCore/QSignalBlocker>
#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
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

/// The row of a setting: a click or a touch anywhere in it toggles its switch, whose images are
/// too small for a finger.
class SettingRow : public QWidget
{
public:
    // No button: a screen reader meets the switch, and would meet its row as another one.
    explicit SettingRow(QWidget *parent)
        : QWidget(parent)
    {
        setAttribute(Qt::WA_Hover);
    }
    void setControl(SimpleSlideSwitch *used)
    {
        control = used;
        control->installEventFilter(this);
        showWhetherEnabled();
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::EnabledChange)
            showWhetherEnabled();
        return QWidget::eventFilter(watched, event);
    }
    bool event(QEvent *event) override
    {
        // The page scrolls instead.
        if (event->type() == QEvent::UngrabMouse)
            setPressed(false);
        return QWidget::event(event);
    }
    void mousePressEvent(QMouseEvent *event) override
    {
        setPressed(event->button() == Qt::LeftButton);
    }
    void mouseMoveEvent(QMouseEvent *event) override
    {
        if (!rect().contains(mapFromGlobal(KivPrivate::globalPointerPosition(event))))
            setPressed(false);
    }
    void mouseReleaseEvent(QMouseEvent *event) override
    {
        const bool hit =
            pressed && rect().contains(mapFromGlobal(KivPrivate::globalPointerPosition(event)));
        setPressed(false);
        if (hit && control->isEnabled())
            control->setChecked(!control->isChecked());
    }
    void paintEvent(QPaintEvent *) override
    {
        if (!control->isEnabled() || !(pressed || underMouse()))
            return;
        constexpr int pressedShade = 38;
        constexpr int hoveredShade = 16;
        QColor shade = palette().color(QPalette::WindowText);
        shade.setAlpha(pressed ? pressedShade : hoveredShade);
        QPainter(this).fillRect(rect(), shade);
    }

private:
    void setPressed(bool down)
    {
        pressed = down;
        update();
    }
    void showWhetherEnabled()
    {
        setCursor(control->isEnabled() ? Qt::PointingHandCursor : Qt::ArrowCursor);
        update();
    }

    SimpleSlideSwitch *control = nullptr;
    bool pressed = false;
};

QString mainSwitchText(const UpsModel &ups)
{
    const Snapshot &snapshot = ups.snapshot();
    if (snapshot.isLost())
        return sentence(snapshot.reason);
    if (isStarting(snapshot))
        return SettingsPage::tr("Starting: %1").arg(nameOf(snapshot.system.operating));
    return ups.headline().text;
}

} // namespace

SettingsPage::SettingsPage(QWidget *parent)
    : Page(parent)
{
    auto *outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    auto *room = new ScrollRoom(this);
    outer->addWidget(room);
    QVBoxLayout *layout = Theme::pageLayout(room->content());
    layout->addWidget(makeMainSwitch(room->content()));
    layout->addWidget(makeSettings(room->content()), 1);
    SettingsPage::applyScale();
}

QWidget *SettingsPage::makeMainSwitch(QWidget *parent)
{
    auto *card = new Card(parent);
    mainSwitch = new SlideSwitch(card);
    mainSwitch->setObjectName(QStringLiteral("mainSwitch"));
    mainSwitch->setAccessibleName(tr("UPS"));
    mainSwitch->setFixedSize(mainSwitch->size());
    connect(mainSwitch, &SlideSwitch::clicked, this,
            [this](bool on) { give(on ? Command::SwitchOn : Command::SwitchOff); });
    mainText = new ElidedLabel(card);
    Theme::setText(mainText, Theme::Normal);
    mainText->setForegroundRole(QPalette::Mid);
    mainText->setLines(2);

    auto *texts = new QVBoxLayout;
    texts->setSpacing(0);
    texts->addStretch();
    texts->addWidget(Theme::label(card, Theme::Huge, true, tr("UPS")));
    texts->addWidget(mainText);
    texts->addStretch();
    mainRow = new QHBoxLayout(card);
    mainRow->addLayout(texts, 1);
    mainRow->addWidget(mainSwitch);
    return card;
}

QWidget *SettingsPage::makeSettings(QWidget *parent)
{
    auto *card = new Card(parent);
    rows = new QVBoxLayout(card);
    beeper = addSetting(tr("Beeper"), tr("The UPS sounds its alarms"));
    darkTheme = addSetting(tr("Dark theme"), tr("Light on dark, for a dim room"));
    pageAnimation = addSetting(tr("Page animation"), tr("Pages turn like cards"));
    notify = addSetting(tr("Notifications"), tr("Changes of state appear on the desktop"));
    showNotify(true);
    connect(notify, &SimpleSlideSwitch::toggled, this, &SettingsPage::notifyChosen);
    connect(beeper, &SimpleSlideSwitch::toggled, this,
            [this](bool on) { give(on ? Command::BeeperOn : Command::BeeperOff); });
    connect(darkTheme, &SimpleSlideSwitch::toggled, this, &SettingsPage::darkThemeChosen);
    connect(pageAnimation, &SimpleSlideSwitch::toggled, this, &SettingsPage::pageAnimationChosen);
    return card;
}

SimpleSlideSwitch *SettingsPage::addSetting(const QString &name, const QString &detail)
{
    auto *room = new SettingRow(rows->parentWidget());
    room->setObjectName(name + QStringLiteral(" row"));
    auto *control = new SimpleSlideSwitch(room);
    room->setControl(control);
    control->setObjectName(name);
    control->setAccessibleName(name);
    control->setAccessibleDescription(detail);
    auto *nameText = new ElidedLabel(room);
    Theme::setText(nameText, Theme::Large);
    nameText->setText(name);
    auto *detailText = new ElidedLabel(room);
    Theme::setText(detailText, Theme::Normal);
    detailText->setText(detail);
    detailText->setForegroundRole(QPalette::Mid);
    auto *texts = new QVBoxLayout;
    texts->setSpacing(0);
    texts->addStretch();
    texts->addWidget(nameText);
    texts->addWidget(detailText);
    texts->addStretch();
    auto *row = new QHBoxLayout(room);
    row->setContentsMargins(0, 0, 0, 0);
    row->addLayout(texts, 1);
    row->addWidget(control);
    rows->addWidget(room, 1);
    settingRooms.push_back(room);
    return control;
}

void SettingsPage::applyScale()
{
    const int margin = Theme::px(Theme::margin);
    const int wide = Theme::px(20);
    mainRow->setContentsMargins(wide, margin, wide, margin);
    mainRow->setSpacing(margin);
    rows->setContentsMargins(wide, margin, wide, margin);
    rows->setSpacing(Theme::px(4));
    for (QWidget *room : settingRooms)
        room->setMinimumHeight(Theme::touchSize());
}

void SettingsPage::showUps(const UpsModel &ups)
{
    const Snapshot &snapshot = ups.snapshot();
    linked = !snapshot.isLost();
    beeperKnown = snapshot.beeperEnabled.has_value();
    mainText->setText(mainSwitchText(ups));
    // A drag under way is the user's.
    if (QApplication::mouseButtons() == Qt::NoButton) {
        mainSwitch->setLocked(snapshot.tokens.testFlag(StatusToken::Locked));
        mainSwitch->setPartialON(isStarting(snapshot));
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

void SettingsPage::showNotify(bool newNotify)
{
    const QSignalBlocker silent(notify);
    notify->setChecked(newNotify);
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

// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "controlpage.h"

#include "display.h"
#include "elidedlabel.h"
#include "glass.h"
#include "holdguard.h"
#include "offerpanel.h"
#include "pictograms.h"
#include "scrollroom.h"
#include "theme.h"

#include <aerogroupbox.h>
#include <aerolinebar.h>
#include <aerostatusbar.h>
#include <aeroswitch.h>
#include <transpbutton.h>

#include <QtCore/QEvent>
#include <QtGui/QIcon>
#include <QtWidgets/QGridLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QVBoxLayout>

#include <algorithm>

namespace {

using Glass::Ink;
using Glass::outline;

const QColor lit(0, 150, 210);

constexpr int switchUnits = 46;
constexpr int pushUnits = 88;
constexpr int pushIconUnits = 36;
constexpr int barUnits = 58;
constexpr int leastBar = 36;
constexpr int stripUnits = 36;
constexpr int rowGapUnits = 6;
constexpr int sideUnits = 14; // inside a box
constexpr int narrowUnits = 560;

/// The voltage and the time left; what is missing is named.
QString batteryText(const UpsModel &ups)
{
    const Reading voltage = ups.reading(Quantity::BatteryVoltage);
    const bool hasVoltage = voltage.state != Reading::State::Missing;
    const bool hasTime = !ups.timeLeft().isEmpty();
    QStringList parts;
    if (hasVoltage)
        parts += voltage.text;
    if (hasTime)
        parts += ControlPage::tr("time left %1").arg(ups.timeLeft());
    if (!hasVoltage && !hasTime && ups.headline().showsTimeLeft)
        parts += ControlPage::tr("battery voltage and time left unknown");
    else if (!hasVoltage)
        parts += ControlPage::tr("battery voltage unknown");
    else if (!hasTime && ups.headline().showsTimeLeft)
        parts += ControlPage::tr("time left unknown");
    return sentence(parts.join(Theme::separator()));
}

/// A printf format that prints @p text.
QString asFormat(QString text)
{
    return text.replace(QLatin1Char('%'), QLatin1String("%%"));
}

} // namespace

ControlPage::ControlPage(QWidget *parent)
    : Page(parent)
    , groups(new QBoxLayout(QBoxLayout::LeftToRight))
{
    auto *outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    auto *room = new ScrollRoom(this);
    outer->addWidget(room);
    content = room->content();
    QVBoxLayout *layout = Theme::pageLayout(content);
    layout->addWidget(makeBattery());
    groups->addWidget(makeSwitches(), 1);
    groups->addWidget(makeSimulator());
    layout->addLayout(groups);
    nothing = Theme::label(content, Theme::Normal);
    nothing->setObjectName(QStringLiteral("noCommands"));
    nothing->setWordWrap(true);
    Glass::setInk(nothing, Ink::Text);
    layout->addWidget(nothing);
    layout->addWidget(makeOffers());
    layout->addStretch(1);
    layout->addWidget(makeStrip());
    ControlPage::applyScale();
}

void ControlPage::setCredentialsFile(const QString &path)
{
    offers->setCredentialsFile(path);
}

QWidget *ControlPage::makeOffers()
{
    offers = new OfferPanel(content);
    connect(offers, &OfferPanel::said, this, &ControlPage::said);
    connect(offers, &OfferPanel::keepUser, this, &ControlPage::keepUser);
    return offers;
}

QWidget *ControlPage::makeBattery()
{
    AeroGroupbox *box = Glass::box(content, tr("Battery charge"));
    charge = new AeroLinebar(box);
    charge->setObjectName(QStringLiteral("charge"));
    charge->setAccessibleName(box->title());
    Theme::setText(charge, Theme::Large);
    charge->setColor(Theme::accent());
    charge->setShadow(Theme::deepAccent());
    charge->setColorPen(outline);
    charge->setRoundness(40);
    charge->setTickHeight(20);
    charge->setTickStep(10.0);
    charge->setColorText(QColor(20, 26, 32));
    charge->setValuePosition(AeroLinebar::CenterVal);
    chargeText = new ElidedLabel(box);
    chargeText->setObjectName(QStringLiteral("battery summary"));
    Theme::setText(chargeText, Theme::Normal);
    Glass::setInk(chargeText, Ink::Faint);
    chargeText->setAlignment(Qt::AlignRight);
    batteryLayout = new QVBoxLayout(box);
    batteryLayout->addWidget(charge);
    batteryLayout->addWidget(chargeText);
    return box;
}

QWidget *ControlPage::makeSwitches()
{
    commandBox = Glass::box(content, tr("Commands"));
    addSwitch(
        &commands, tr("Run on battery"), Command::ForceBattery, Command::ReturnToMains,
        [](const Snapshot &now) { return now.system.operating == OperatingState::OnBattery; },
        tr("Runs the load on battery: a weak battery drops it."));
    addSwitch(
        &commands, tr("Bypass"), Command::GoToBypass, Command::ReturnToMains,
        [](const Snapshot &now) { return now.system.operating == OperatingState::OnBypass; },
        tr("Feeds the load straight from the mains: it is not protected."));
    addSwitch(
        &commands, tr("Lock"), Command::Lock, Command::ClearAlarm,
        [](const Snapshot &now) { return now.system.alarm == AlarmState::Locked; },
        tr("Switches the output off: everything that the UPS feeds loses power."));
    addPush(&commands, Pictogram::Check, tr("Clear alarm"), Command::ClearAlarm);
    commands.layout = new QGridLayout(commandBox);
    return commandBox;
}

/// What drives the simulation, and is nothing that a UPS does.
QWidget *ControlPage::makeSimulator()
{
    simulatorBox = Glass::box(content, tr("Simulator"));
    addSwitch(
        &simulation, tr("Cut the link"), Command::LoseCommunication, Command::RestoreCommunication,
        [](const Snapshot &now) { return now.isLost(); }, QString());
    addPush(&simulation, Pictogram::Restart, tr("Resume"), Command::FollowScenario);
    simulation.layout = new QGridLayout(simulatorBox);
    simulation.layout->setColumnStretch(0, 1);
    arrangeCommands();
    return simulatorBox;
}

/// Each switch stands beside its warning. The buttons stand beside the switches, or below them
/// where there is little room.
void ControlPage::arrangeCommands()
{
    const int rows = int(commands.switches.size());
    for (int row = 0; row < rows; ++row) {
        const StateSwitch &entry = commands.switches[std::size_t(row)];
        commands.layout->addWidget(entry.control, row, 0);
        // The last one also has the room below the button.
        commands.layout->addWidget(entry.warning, row, 1, 1, row + 1 == rows ? 2 : 1);
    }
    commands.layout->setColumnStretch(1, 1);
    AeroSwitch *cut = simulation.switches.front().control;
    TranspButton *clear = commands.pushes.front().control;
    TranspButton *resume = simulation.pushes.front().control;
    simulation.layout->addWidget(cut, 0, 0);
    if (narrow) {
        commands.layout->addWidget(clear, rows, 0, 1, 2, Qt::AlignCenter);
        simulation.layout->addWidget(resume, 0, 1, Qt::AlignCenter);
    } else {
        commands.layout->addWidget(clear, 0, 2, rows - 1, 1, Qt::AlignCenter);
        simulation.layout->addWidget(resume, 1, 0, Qt::AlignCenter);
    }
}

void ControlPage::applyScale()
{
    charge->setFixedHeight(std::max(leastBar, Theme::px(barUnits)));
    const int title = Glass::titleRoom();
    const int side = Theme::px(sideUnits);
    batteryLayout->setContentsMargins(side, title, side, Theme::px(6));
    batteryLayout->setSpacing(Theme::px(4));
    groups->setSpacing(Theme::px(Theme::spacing));
    offers->applyScale();
    for (const Group *group : {&commands, &simulation})
        scale(*group, title, side);
    strip->setFixedHeight(
        std::max(Theme::px(stripUnits), QFontMetrics(Theme::font(Theme::Normal)).height() + 8));
    strip->layout()->setContentsMargins(side, 0, side, 0);
    strip->layout()->setSpacing(Theme::px(Theme::margin));
}

void ControlPage::scale(const Group &group, int title, int side)
{
    group.layout->setContentsMargins(side, title, side, Theme::px(8));
    group.layout->setHorizontalSpacing(Theme::px(Theme::margin));
    group.layout->setVerticalSpacing(Theme::px(rowGapUnits));
    for (const StateSwitch &entry : group.switches) {
        const QFontMetrics metrics(Theme::font(Theme::Normal, true));
        entry.control->setFixedHeight(std::max(Theme::touchSize(), Theme::px(switchUnits)));
        entry.control->setMinimumWidth(metrics.horizontalAdvance(entry.control->text()) +
                                       Theme::px(28));
    }
    for (const PushControl &entry : group.pushes) {
        const int icon = Theme::px(pushIconUnits);
        const QFontMetrics metrics(Theme::font(Theme::Normal));
        const int height =
            std::max({Theme::px(pushUnits), icon + 2 * metrics.height(), Theme::touchSize()});
        entry.control->setFixedSize(
            std::max(metrics.horizontalAdvance(entry.control->text()) + Theme::px(12),
                     Theme::px(pushUnits)),
            height);
        QIcon faces;
        const QColor text = Glass::colorOf(Ink::Text);
        const QColor faint = Glass::colorOf(Ink::Faint);
        QPalette palette = entry.control->palette();
        palette.setColor(QPalette::ButtonText, text);
        palette.setColor(QPalette::Disabled, QPalette::ButtonText, faint);
        entry.control->setPalette(palette);
        addPictogram(&faces, entry.image, icon, text);
        addPictogram(&faces, entry.image, icon, Theme::accent(), QIcon::Active);
        addPictogram(&faces, entry.image, icon, faint, QIcon::Disabled);
        entry.control->setIconSize(QSize(icon, icon));
        entry.control->setIcon(faces);
        entry.control->setPosLabel(QPoint(0, (icon + metrics.height()) / 2 + Theme::px(4)));
    }
}

QSize ControlPage::minimumSizeHint() const
{
    // The buttons make room below this width, so what they need beside the switches does not count.
    const QSize least = Page::minimumSizeHint();
    constexpr int leastUnits = 500;
    return {std::min(least.width(), Theme::px(leastUnits)), least.height()};
}

void ControlPage::resizeEvent(QResizeEvent *event)
{
    Page::resizeEvent(event);
    const bool narrowNow = width() < Theme::px(narrowUnits);
    if (narrowNow != narrow) {
        narrow = narrowNow;
        groups->setDirection(narrow ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
        arrangeCommands();
    }
}

void ControlPage::addSwitch(Group *group, const QString &text, Command enter, Command leave,
                            bool (*holds)(const Snapshot &), const QString &consequence)
{
    AeroGroupbox *box = group == &commands ? commandBox : simulatorBox;
    auto *control = new AeroSwitch(box);
    control->setObjectName(text);
    Theme::setText(control, Theme::Normal);
    Glass::apply(control, 40);
    control->setHighlight(lit);
    control->setText(text);
    HoldGuard *guard = nullptr;
    QLabel *warning = nullptr;
    if (!consequence.isEmpty()) {
        guard = new HoldGuard(control);
        warning = Glass::warning(box, consequence);
        warning->setObjectName(QStringLiteral("warning ") + text);
        control->setToolTip(tr("Hold for two seconds. %1").arg(consequence));
        control->setAccessibleDescription(control->toolTip());
        connect(guard, &HoldGuard::began, this,
                [=] { Q_EMIT said(tr("Keep holding. %1").arg(consequence)); });
        connect(guard, &HoldGuard::broken, this,
                [=] { Q_EMIT said(tr("%1: not given. Hold for two seconds.").arg(text)); });
        connect(guard, &HoldGuard::armed, this, [=] {
            refresh(); // it is not switched yet
            Q_EMIT said(tr("%1 Press again to confirm.").arg(consequence));
        });
        connect(guard, &HoldGuard::held, this, [=] { give(enter); });
    }
    connect(control, &AeroSwitch::clicked, this, [=](bool checked) {
        if (!guard || !guard->isActive())
            give(checked ? enter : leave);
    });
    group->switches.push_back({control, enter, leave, holds, guard, warning});
}

void ControlPage::addPush(Group *group, Pictogram image, const QString &text, Command command)
{
    auto *control = new TranspButton(group == &commands ? commandBox : simulatorBox);
    control->setObjectName(text);
    Theme::setText(control, Theme::Normal);
    control->setText(text);
    connect(control, &TranspButton::clicked, this, [=] { give(command); });
    group->pushes.push_back({control, image, command});
}

QWidget *ControlPage::makeStrip()
{
    strip = new AeroStatusbar(content);
    strip->setAccessibleName(tr("Status"));
    Glass::apply(strip, 40);
    linkText = Theme::label(strip, Theme::Normal);
    statusText = new ElidedLabel(strip);
    Theme::setText(statusText, Theme::Normal);
    for (QLabel *label : {linkText, static_cast<QLabel *>(statusText)})
        Glass::setTextColor(label, Glass::textColor);
    statusText->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    auto *layout = new QHBoxLayout(strip);
    layout->addWidget(linkText);
    layout->addWidget(statusText, 1);
    return strip;
}

void ControlPage::showUps(const UpsModel &ups)
{
    const Snapshot &snapshot = ups.snapshot();
    showCharge(ups.reading(Quantity::BatteryCharge));
    chargeText->setText(batteryText(ups));
    for (const Group *group : {&commands, &simulation}) {
        for (const StateSwitch &entry : group->switches) {
            const bool holds = entry.holds(snapshot);
            if (holds)
                entry.control->selectSwitch();
            else
                entry.control->unselectSwitch();
            // To leave a state needs no second thought.
            if (entry.guard)
                entry.guard->setActive(!holds);
        }
    }
    offers->refresh();
    linkText->setText(snapshot.isLost() ? tr("Link lost") : tr("Link in order"));
    statusText->setText(snapshot.isLost() ? sentence(snapshot.reason)
                                          : snapshot.status.join(Theme::separator()));
}

void ControlPage::showCharge(const Reading &reading)
{
    if (chargeShown && reading == shownCharge)
        return;
    chargeShown = true;
    shownCharge = reading;
    // The bar keeps a value whose text is the present one, so the number goes first, in full.
    charge->setValueFormat(QStringLiteral("%.9g"));
    charge->setValue(reading.value);
    charge->setValueFormat(asFormat(reading.text));
}

void ControlPage::offerCommands()
{
    const auto offer = [this](const Group &group) {
        bool any = false;
        for (const StateSwitch &entry : group.switches) {
            entry.control->setEnabled(supports(entry.enter));
            any = any || supports(entry.enter);
        }
        for (const PushControl &entry : group.pushes) {
            entry.control->setEnabled(supports(entry.command));
            any = any || supports(entry.command);
        }
        return any;
    };
    const bool any = offer(commands);
    commandBox->setVisible(any);
    simulatorBox->setVisible(offer(simulation));
    showWhatIsMissing();
}

void ControlPage::followModel(UpsModel *followedModel)
{
    shown = followedModel;
    offers->setModel(followedModel);
    if (followedModel) {
        connect(followedModel, &UpsModel::offerChanged, this, &ControlPage::showWhatIsMissing);
        if (isVisible())
            followedModel->askForOffer();
    }
}

void ControlPage::showEvent(QShowEvent *event)
{
    Page::showEvent(event);
    if (shown)
        shown->askForOffer();
}

/// Where there is nothing to ask for, a line says why.
void ControlPage::showWhatIsMissing()
{
    const bool any =
        supports(Command::ForceBattery) || supports(Command::LoseCommunication) ||
        (shown && !(shown->offer().commands.isEmpty() && shown->offer().settings.isEmpty()));
    nothing->setVisible(!any);
    nothing->setText(!shown || shown->id().isEmpty() ? tr("No UPS has been reached yet.")
                     : shown->needsUser()
                         ? tr("The server has not listed the commands of this UPS yet.")
                         : tr("This UPS is only watched: it takes no commands here."));
}

void ControlPage::changeEvent(QEvent *event)
{
    Page::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        Glass::followTheme(this);
        applyScale(); // with new pictograms
    }
}

#include "controlpage.h"

#include "pictograms.h"
#include "setup.h"
#include "theme.h"

#include <aerogroupbox.h>
#include <aerolinebar.h>
#include <aerostatusbar.h>
#include <aeroswitch.h>
#include <transpbutton.h>

#include <QtGui/QIcon>
#include <QtGui/QPainter>
#include <QtWidgets/QGridLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QVBoxLayout>

namespace {

const QColor glass(62, 78, 94);
const QColor glassShadow(27, 34, 42);
const QColor outline(16, 21, 26);
const QColor lit(0, 150, 210);
const QColor textColor(232, 238, 243);
const QColor faintColor(150, 162, 173);

constexpr int switchHeight = 46;
constexpr int pushSide = 88;
constexpr int pushIcon = 36;
constexpr int barHeight = 58;
constexpr int stripHeight = 42;

QLabel *glassLabel(QWidget *parent, Theme::TextSize size, const QColor &color)
{
    QLabel *label = Theme::label(parent, size);
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, color);
    label->setPalette(palette);
    return label;
}

/// The look that all glass on this page shares.
void makeGlass(QWidget *widget, int roundness)
{
    setUp(widget, {{"color", glass},
                   {"shadow", glassShadow},
                   {"colorPen", outline},
                   {"widthPen", 2},
                   {"roundness", roundness}});
}

} // namespace

ControlPage::ControlPage(QWidget *parent)
    : Page(parent)
{
    QVBoxLayout *layout = Theme::pageLayout(this);
    layout->addWidget(makeBattery());
    layout->addWidget(makeSwitches(), 1);
    layout->addWidget(makeStrip());
}

AeroGroupbox *ControlPage::makeBox(const QString &title)
{
    auto *box = new AeroGroupbox(this);
    box->setFont(Theme::font(Theme::Normal));
    setUp(box, {{"color", QColor(84, 100, 116, 70)},
                {"shadow", QColor(52, 64, 76, 70)},
                {"colorPen", QColor(92, 108, 124)},
                {"widthPen", 2},
                {"roundness", 12},
                {"colorTitle", textColor}});
    box->setTitle(title);
    return box;
}

QWidget *ControlPage::makeBattery()
{
    AeroGroupbox *box = makeBox(tr("Battery charge"));
    charge = new AeroLinebar(box);
    charge->setObjectName(QStringLiteral("charge"));
    charge->setAccessibleName(box->title());
    charge->setFont(Theme::font(Theme::Large));
    charge->setFixedHeight(barHeight);
    setUp(charge, {{"color", QColor(0, 174, 240)},
                   {"shadow", QColor(0, 108, 160)},
                   {"colorPen", outline},
                   {"roundness", 40},
                   {"tickSize", 20},
                   {"tickInterval", 10.0},
                   {"colorText", QColor(20, 26, 32)},
                   {"valuePosition", AeroLinebar::CenterVal},
                   {"valueFormat", QStringLiteral("%.0f %%")}});
    chargeText = glassLabel(box, Theme::Normal, faintColor);
    chargeText->setAlignment(Qt::AlignRight);
    auto *layout = new QVBoxLayout(box);
    layout->setContentsMargins(18, 30, 18, 10);
    layout->setSpacing(4);
    layout->addWidget(charge);
    layout->addWidget(chargeText);
    return box;
}

QWidget *ControlPage::makeSwitches()
{
    AeroGroupbox *box = makeBox(tr("Commands"));
    addSwitch(
        box, tr("Run on battery"), Command::ForceBattery, Command::ReturnToMains,
        [](const Snapshot &now) { return now.system.operating == OperatingState::OnBattery; });
    addSwitch(box, tr("Bypass"), Command::GoToBypass, Command::ReturnToMains,
              [](const Snapshot &now) { return now.system.operating == OperatingState::OnBypass; });
    addSwitch(box, tr("Lock"), Command::Lock, Command::ClearAlarm,
              [](const Snapshot &now) { return now.system.alarm == AlarmState::Locked; });
    addSwitch(box, tr("Cut the link"), Command::LoseCommunication, Command::RestoreCommunication,
              [](const Snapshot &now) { return now.isLost(); });
    addPush(box, Pictogram::Check, tr("Clear alarm"), Command::ClearAlarm);
    addPush(box, Pictogram::Restart, tr("Resume"), Command::FollowScenario);

    auto *layout = new QGridLayout(box);
    layout->setContentsMargins(18, 30, 18, 14);
    layout->setHorizontalSpacing(Theme::margin);
    layout->setVerticalSpacing(Theme::spacing);
    constexpr int columns = 2;
    for (int i = 0; i < int(switches.size()); ++i)
        layout->addWidget(switches[i].control, i / columns, i % columns);
    for (int i = 0; i < int(pushes.size()); ++i)
        layout->addWidget(pushes[i].control, 0, columns + i, 2, 1, Qt::AlignCenter);
    layout->setColumnStretch(0, 1);
    layout->setColumnStretch(1, 1);
    return box;
}

void ControlPage::addSwitch(QWidget *box, const QString &text, Command enter, Command leave,
                            bool (*holds)(const Snapshot &))
{
    auto *control = new AeroSwitch(box);
    control->setObjectName(text);
    control->setFont(Theme::font(Theme::Normal));
    control->setFixedHeight(switchHeight);
    makeGlass(control, 40);
    setUp(control, {{"highlight", lit}});
    control->setText(text);
    connect(control, &AeroSwitch::clicked, this,
            [=](bool checked) { give(checked ? enter : leave); });
    switches.push_back({control, enter, leave, holds});
}

void ControlPage::addPush(QWidget *box, Pictogram picture, const QString &text, Command command)
{
    auto *control = new TranspButton(box);
    control->setObjectName(text);
    control->setFixedSize(pushSide + 20, pushSide);
    control->setFont(Theme::font(Theme::Normal));
    QPalette palette = control->palette();
    palette.setColor(QPalette::ButtonText, textColor);
    palette.setColor(QPalette::Disabled, QPalette::ButtonText, faintColor);
    control->setPalette(palette);
    QIcon icon;
    icon.addPixmap(pictogram(picture, pushIcon, textColor), QIcon::Normal);
    icon.addPixmap(pictogram(picture, pushIcon, Theme::accent()), QIcon::Active);
    icon.addPixmap(pictogram(picture, pushIcon, faintColor), QIcon::Disabled);
    control->setIconSize(QSize(pushIcon, pushIcon));
    control->setIcon(icon);
    control->setText(text);
    setUp(control, {{"posLabel", QPoint(0, 34)}});
    connect(control, &TranspButton::clicked, this, [=] { give(command); });
    pushes.push_back({control, command});
}

QWidget *ControlPage::makeStrip()
{
    strip = new AeroStatusbar(this);
    strip->setAccessibleName(tr("Status"));
    strip->setFixedHeight(stripHeight);
    makeGlass(strip, 40);
    linkText = glassLabel(strip, Theme::Normal, textColor);
    statusText = glassLabel(strip, Theme::Normal, textColor);
    auto *layout = new QHBoxLayout(strip);
    layout->setContentsMargins(18, 0, 18, 0);
    layout->addWidget(linkText);
    layout->addStretch();
    layout->addWidget(statusText);
    return strip;
}

void ControlPage::showUps(const UpsModel &ups)
{
    const Snapshot &snapshot = ups.snapshot();
    showCharge(snapshot.value(Quantity::BatteryCharge));
    const std::optional<double> seconds = snapshot.value(Quantity::BatteryRuntime);
    const QString timeLeft =
        seconds ? tr("%1 min left").arg(*seconds / 60.0, 0, 'f', 0) : tr("time left unknown");
    chargeText->setText(textOf(snapshot, Quantity::BatteryVoltage, 1) + Theme::separator() +
                        timeLeft);
    for (const StateSwitch &entry : switches) {
        if (entry.holds(snapshot))
            entry.control->selectSwitch();
        else
            entry.control->unselectSwitch();
    }
    linkText->setText(snapshot.isLost() ? tr("Link lost") : tr("Link in order"));
    statusText->setText(snapshot.isLost() ? sentence(snapshot.reason)
                                          : snapshot.status.join(Theme::separator()));
}

void ControlPage::showCharge(std::optional<double> percent)
{
    // The bar keeps a value whose text is the present one, so the number goes first.
    if (percent || charge->property("valueFormat") != tr("no data"))
        setUp(charge,
              {{"valueFormat", QStringLiteral("%.0f %%")}, {"valueF", percent.value_or(0)}});
    if (!percent)
        setUp(charge, {{"valueFormat", tr("no data")}});
}

void ControlPage::offerCommands()
{
    for (const StateSwitch &entry : switches)
        entry.control->setEnabled(supports(entry.enter));
    for (const PushControl &entry : pushes)
        entry.control->setEnabled(supports(entry.command));
}

void ControlPage::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    QLinearGradient ground(0, 0, 0, height());
    ground.setColorAt(0.0, QColor(36, 44, 52));
    ground.setColorAt(1.0, QColor(17, 21, 26));
    painter.fillRect(rect(), ground);
}

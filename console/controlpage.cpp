#include "controlpage.h"

#include "display.h"
#include "elidedlabel.h"
#include "pictograms.h"
#include "scrollroom.h"
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

#include <algorithm>

namespace {

const QColor glass(62, 78, 94);
const QColor glassShadow(27, 34, 42);
const QColor outline(16, 21, 26);
const QColor lit(0, 150, 210);
const QColor textColor(232, 238, 243);
const QColor faintColor(150, 162, 173);

constexpr int switchUnits = 46;
constexpr int pushUnits = 88;
constexpr int pushIconUnits = 36;
constexpr int barUnits = 58;
constexpr int leastBar = 36;
constexpr int stripUnits = 40;
constexpr int narrowUnits = 560;

void setTextColor(QWidget *label, const QColor &color)
{
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, color);
    label->setPalette(palette);
}

ElidedLabel *glassText(QWidget *parent, const QColor &color)
{
    auto *label = new ElidedLabel(parent);
    Theme::setText(label, Theme::Normal);
    setTextColor(label, color);
    return label;
}

/// The look that all glass on this page shares.
void makeGlass(AeroStyle *style, int roundness)
{
    style->setColor(glass);
    style->setShadow(glassShadow);
    style->setColorPen(outline);
    style->setWidthPen(2);
    style->setRoundness(roundness);
}

/// Whether @p command drives the simulation, and is nothing that a UPS does.
bool isOfSimulator(Command command)
{
    return command == Command::LoseCommunication || command == Command::RestoreCommunication ||
           command == Command::FollowScenario;
}

/// A printf format that prints @p text.
QString asFormat(QString text)
{
    return text.replace(QLatin1Char('%'), QLatin1String("%%"));
}

} // namespace

ControlPage::ControlPage(QWidget *parent)
    : Page(parent)
{
    auto *outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    auto *room = new ScrollRoom(this);
    outer->addWidget(room);
    content = room->content();
    QVBoxLayout *layout = Theme::pageLayout(content);
    layout->addWidget(makeBattery());
    layout->addWidget(makeSwitches(), 1);
    layout->addWidget(makeStrip());
    applyScale();
}

AeroGroupbox *ControlPage::makeBox(const QString &title)
{
    auto *box = new AeroGroupbox(content);
    Theme::setText(box, Theme::Normal);
    box->setColor(QColor(84, 100, 116, 70));
    box->setShadow(QColor(52, 64, 76, 70));
    box->setColorPen(QColor(92, 108, 124));
    box->setWidthPen(2);
    box->setRoundness(12);
    box->setColorTitle(textColor);
    box->setTitle(title);
    return box;
}

QWidget *ControlPage::makeBattery()
{
    AeroGroupbox *box = makeBox(tr("Battery charge"));
    charge = new AeroLinebar(box);
    charge->setObjectName(QStringLiteral("charge"));
    charge->setAccessibleName(box->title());
    Theme::setText(charge, Theme::Large);
    charge->setColor(QColor(0, 174, 240));
    charge->setShadow(QColor(0, 108, 160));
    charge->setColorPen(outline);
    charge->setRoundness(40);
    charge->setTickHeight(20);
    charge->setTickStep(10.0);
    charge->setColorText(QColor(20, 26, 32));
    charge->setValuePosition(AeroLinebar::CenterVal);
    chargeText = glassText(box, faintColor);
    chargeText->setAlignment(Qt::AlignRight);
    batteryLayout = new QVBoxLayout(box);
    batteryLayout->addWidget(charge);
    batteryLayout->addWidget(chargeText);
    return box;
}

QWidget *ControlPage::makeSwitches()
{
    AeroGroupbox *box = makeBox(tr("Commands"));
    commandBox = box;
    addSwitch(
        box, tr("Run on battery"), Command::ForceBattery, Command::ReturnToMains,
        [](const Snapshot &now) { return now.system.operating == OperatingState::OnBattery; });
    addSwitch(box, tr("Bypass"), Command::GoToBypass, Command::ReturnToMains,
              [](const Snapshot &now) { return now.system.operating == OperatingState::OnBypass; });
    addSwitch(box, tr("Lock"), Command::Lock, Command::ClearAlarm,
              [](const Snapshot &now) { return now.system.alarm == AlarmState::Locked; });
    addSwitch(box, tr("Simulator: cut the link"), Command::LoseCommunication,
              Command::RestoreCommunication, [](const Snapshot &now) { return now.isLost(); });
    addPush(box, Pictogram::Check, tr("Clear alarm"), Command::ClearAlarm);
    addPush(box, Pictogram::Restart, tr("Simulator: resume"), Command::FollowScenario);

    commandLayout = new QGridLayout(box);
    arrangeCommands();
    return box;
}

/// The buttons stand beside the switches, or below them where there is little room.
void ControlPage::arrangeCommands()
{
    constexpr int columns = 2;
    for (int i = 0; i < int(switches.size()); ++i)
        commandLayout->addWidget(switches[std::size_t(i)].control, i / columns, i % columns);
    for (int i = 0; i < int(pushes.size()); ++i) {
        TranspButton *control = pushes[std::size_t(i)].control;
        if (narrow)
            commandLayout->addWidget(control, columns, i, Qt::AlignCenter);
        else
            commandLayout->addWidget(control, 0, columns + i, 2, 1, Qt::AlignCenter);
    }
    commandLayout->setColumnStretch(0, 1);
    commandLayout->setColumnStretch(1, 1);
}

void ControlPage::applyScale()
{
    charge->setFixedHeight(std::max(leastBar, Theme::px(barUnits)));
    const int title = QFontMetrics(Theme::font(Theme::Normal, true)).height() + Theme::px(8);
    const int side = Theme::px(18);
    batteryLayout->setContentsMargins(side, title, side, Theme::px(6));
    batteryLayout->setSpacing(Theme::px(4));
    commandLayout->setContentsMargins(side, title, side, Theme::px(10));
    commandLayout->setHorizontalSpacing(Theme::px(Theme::margin));
    commandLayout->setVerticalSpacing(Theme::px(Theme::spacing));
    for (const StateSwitch &entry : switches) {
        const QFontMetrics metrics(Theme::font(Theme::Normal, true));
        entry.control->setFixedHeight(std::max(Theme::touchSize(), Theme::px(switchUnits)));
        entry.control->setMinimumWidth(metrics.horizontalAdvance(entry.control->text()) +
                                       Theme::px(28));
    }
    for (const PushControl &entry : pushes) {
        const int icon = Theme::px(pushIconUnits);
        const QFontMetrics metrics(Theme::font(Theme::Normal));
        const int height =
            std::max({Theme::px(pushUnits), icon + 2 * metrics.height(), Theme::touchSize()});
        entry.control->setFixedSize(
            std::max(metrics.horizontalAdvance(entry.control->text()) + Theme::px(12),
                     Theme::px(pushUnits)),
            height);
        QIcon faces;
        faces.addPixmap(pictogram(entry.picture, icon, textColor), QIcon::Normal);
        faces.addPixmap(pictogram(entry.picture, icon, Theme::accent()), QIcon::Active);
        faces.addPixmap(pictogram(entry.picture, icon, faintColor), QIcon::Disabled);
        entry.control->setIconSize(QSize(icon, icon));
        entry.control->setIcon(faces);
        entry.control->setPosLabel(QPoint(0, (icon + metrics.height()) / 2 + Theme::px(4)));
    }
    strip->setFixedHeight(
        std::max(Theme::px(stripUnits), QFontMetrics(Theme::font(Theme::Normal)).height() + 8));
    strip->layout()->setContentsMargins(side, 0, side, 0);
    strip->layout()->setSpacing(Theme::px(Theme::margin));
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
        arrangeCommands();
    }
}

void ControlPage::addSwitch(QWidget *box, const QString &text, Command enter, Command leave,
                            bool (*holds)(const Snapshot &))
{
    auto *control = new AeroSwitch(box);
    control->setObjectName(text);
    Theme::setText(control, Theme::Normal);
    makeGlass(control, 40);
    control->setHighlight(lit);
    control->setText(text);
    connect(control, &AeroSwitch::clicked, this,
            [=](bool checked) { give(checked ? enter : leave); });
    switches.push_back({control, enter, leave, holds});
}

void ControlPage::addPush(QWidget *box, Pictogram picture, const QString &text, Command command)
{
    auto *control = new TranspButton(box);
    control->setObjectName(text);
    Theme::setText(control, Theme::Normal);
    QPalette palette = control->palette();
    palette.setColor(QPalette::ButtonText, textColor);
    palette.setColor(QPalette::Disabled, QPalette::ButtonText, faintColor);
    control->setPalette(palette);
    control->setText(text);
    connect(control, &TranspButton::clicked, this, [=] { give(command); });
    pushes.push_back({control, picture, command});
}

QWidget *ControlPage::makeStrip()
{
    strip = new AeroStatusbar(content);
    strip->setAccessibleName(tr("Status"));
    makeGlass(strip, 40);
    linkText = Theme::label(strip, Theme::Normal);
    setTextColor(linkText, textColor);
    statusText = glassText(strip, textColor);
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
    QStringList battery{ups.reading(Quantity::BatteryVoltage).text};
    if (!ups.timeLeft().isEmpty())
        battery += tr("time left %1").arg(ups.timeLeft());
    else if (ups.headline().showsTimeLeft)
        battery += tr("time left unknown");
    chargeText->setText(battery.join(Theme::separator()));
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
    bool any = false;
    const auto offer = [&](QWidget *control, Command command) {
        const bool offered = supports(command);
        any = any || offered;
        control->setEnabled(offered);
        // What only a simulator can do is no command that a UPS lacks.
        if (isOfSimulator(command))
            control->setVisible(offered);
    };
    for (const StateSwitch &entry : switches)
        offer(entry.control, entry.enter);
    for (const PushControl &entry : pushes)
        offer(entry.control, entry.command);
    commandBox->setTitle(any ? tr("Commands") : tr("Commands · this UPS is only watched"));
}

void ControlPage::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    QLinearGradient background(0, 0, 0, height());
    background.setColorAt(0.0, QColor(36, 44, 52));
    background.setColorAt(1.0, QColor(17, 21, 26));
    painter.fillRect(rect(), background);
}

#include "overviewpage.h"

#include "pictograms.h"
#include "setup.h"
#include "theme.h"

#include <aerobutton.h>
#include <metrobatticon.h>
#include <metrocirclerate.h>
#include <metroshelter.h>
#include <metrosysicon.h>

#include <QtGui/QIcon>
#include <QtGui/QPainter>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QVBoxLayout>

namespace {

constexpr int systemIconSide = 52;
constexpr int tileHeight = 44;
constexpr int actionHeight = 38;

/// The face of all tiles: a dark plate with a lighter upper edge.
QPixmap tileFace()
{
    QPixmap face(16, tileHeight);
    QPainter painter(&face);
    QLinearGradient gradient(0, 0, 0, tileHeight);
    gradient.setColorAt(0.0, QColor(74, 80, 87));
    gradient.setColorAt(0.5, QColor(58, 63, 69));
    gradient.setColorAt(1.0, QColor(46, 50, 55));
    painter.fillRect(face.rect(), gradient);
    return face;
}

QString runtimeText(const Snapshot &snapshot)
{
    const std::optional<double> seconds = snapshot.value(Quantity::BatteryRuntime);
    if (!seconds)
        return QString();
    return OverviewPage::tr("Time left on battery: %1 min").arg(*seconds / 60.0, 0, 'f', 0);
}

} // namespace

OverviewPage::OverviewPage(QWidget *parent)
    : Page(parent)
{
    QVBoxLayout *layout = Theme::pageLayout(this);
    layout->addWidget(makeSummary());
    layout->addWidget(makeTiles());
    layout->addWidget(makeDials(), 1);
    layout->addWidget(makeActions());
}

QWidget *OverviewPage::makeSummary()
{
    auto *card = new Card(this);
    system = new MetroSysIcon(card);
    system->setObjectName(QStringLiteral("system"));
    system->setAccessibleName(tr("UPS"));
    system->setFixedSize(systemIconSide + 16, systemIconSide + 16);
    setUp(system, {{"border", 8}, {"roundness", 30}});
    system->setIconSize(QSize(systemIconSide, systemIconSide));
    system->setIcon(QIcon(pictogram(Pictogram::Ups, systemIconSide, Qt::white)));
    battery = new MetroBattIcon(card);
    battery->setObjectName(QStringLiteral("battery"));
    battery->setAccessibleName(nameOf(Element::Battery));
    battery->setFixedSize(battery->size());

    stateText = Theme::label(card, Theme::Huge, true);
    detailText = Theme::label(card, Theme::Normal);
    alarmText = Theme::label(card, Theme::Normal, true);

    auto *texts = new QVBoxLayout;
    texts->setSpacing(4);
    texts->addStretch();
    texts->addWidget(stateText);
    texts->addWidget(alarmText);
    texts->addWidget(detailText);
    texts->addStretch();
    auto *layout = new QHBoxLayout(card);
    layout->setContentsMargins(Theme::margin, 8, Theme::margin, 8);
    layout->setSpacing(Theme::margin);
    layout->addWidget(system);
    layout->addWidget(battery);
    layout->addLayout(texts, 1);
    return card;
}

QWidget *OverviewPage::makeTiles()
{
    auto *row = new QWidget(this);
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Theme::spacing);
    const QPixmap face = tileFace();
    for (int i = 0; i < elementCount; ++i) {
        auto *tile = new MetroShelter(row);
        tile->setObjectName(nameOf(Element(i)));
        tile->setMinimumHeight(tileHeight);
        tile->setFont(Theme::font(Theme::Normal, true));
        setUp(tile, {{"ImageBackground", face}, {"xLabel", 12}});
        tile->setText(nameOf(Element(i)));
        tiles[i] = tile;

        tileTexts[i] = Theme::label(row, Theme::Small);
        tileTexts[i]->setAlignment(Qt::AlignHCenter);
        auto *column = new QVBoxLayout;
        column->setSpacing(4);
        column->addWidget(tile);
        column->addWidget(tileTexts[i]);
        layout->addLayout(column, 1);
    }
    return row;
}

QWidget *OverviewPage::makeDials()
{
    auto *card = new Card(this);
    dials.emplace_back(card, Quantity::Load, tr("Load"), 0, 100);
    dials.emplace_back(card, Quantity::BatteryCharge, tr("Battery"), 0, 100);
    dials.emplace_back(card, Quantity::InputVoltage, tr("Input"), 160, 280);
    dials.emplace_back(card, Quantity::OutputVoltage, tr("Output"), 160, 280);
    auto *layout = new QHBoxLayout(card);
    layout->setContentsMargins(Theme::margin, 4, Theme::margin, 4);
    for (const Dial &dial : dials) {
        layout->addStretch();
        layout->addWidget(dial.room());
    }
    layout->addStretch();
    return card;
}

QWidget *OverviewPage::makeActions()
{
    auto *row = new QWidget(this);
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Theme::spacing);
    addAction(tr("Run on battery"), Command::ForceBattery);
    addAction(tr("Bypass"), Command::GoToBypass);
    addAction(tr("Return to mains"), Command::ReturnToMains);
    addAction(tr("Clear alarm"), Command::ClearAlarm);
    for (const Action &action : actions)
        layout->addWidget(action.button, 1);
    return row;
}

void OverviewPage::addAction(const QString &text, Command command)
{
    auto *button = new AeroButton(this);
    button->setFont(Theme::font(Theme::Normal));
    button->setFixedHeight(actionHeight);
    setUp(button, {{"color", QColor(96, 106, 116)},
                   {"shadow", QColor(34, 40, 46)},
                   {"colorPen", QColor(28, 32, 36)},
                   {"widthPen", 1},
                   {"roundness", 30}});
    button->setText(text);
    connect(button, &AeroButton::clicked, this, [=] { give(command); });
    actions.push_back({button, command});
}

void OverviewPage::showUps(const UpsModel &ups)
{
    const Snapshot &snapshot = ups.snapshot();
    system->setState(shownState(snapshot.system));
    battery->setState(shownState(snapshot.element(Element::Battery)));
    stateText->setText(stateTitle(snapshot));
    QStringList details = snapshot.status;
    if (snapshot.isLost())
        details = QStringList(sentence(snapshot.reason));
    const QString runtime = runtimeText(snapshot);
    if (!runtime.isEmpty())
        details.append(runtime);
    detailText->setText(details.join(Theme::separator()));
    alarmText->setText(snapshot.alarms.join(Theme::separator()));
    alarmText->setVisible(!snapshot.alarms.isEmpty());
    for (int i = 0; i < elementCount; ++i) {
        const ElementState state = snapshot.element(Element(i));
        tiles[i]->setState(shownState(state));
        QString text = nameOf(state.operating);
        if (state.alarm != AlarmState::None)
            text = nameOf(state.alarm);
        tileTexts[i]->setText(text);
    }
    for (Dial &dial : dials)
        dial.showSnapshot(snapshot);
}

void OverviewPage::offerCommands()
{
    for (const Action &action : actions)
        action.button->setEnabled(supports(action.command));
}

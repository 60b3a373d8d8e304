#include "consolewindow.h"

#include "controlpage.h"
#include "overviewpage.h"
#include "pictograms.h"
#include "powerpage.h"
#include "settingspage.h"
#include "setup.h"
#include "theme.h"

#include <metronavdrawer.h>
#include <metrostatusbar.h>
#include <metrotabicon.h>
#include <rotatestackedwidget.h>
#include <transpbutton.h>

#include <QtCore/QTime>
#include <QtCore/QTimer>
#include <QtGui/QIcon>
#include <QtGui/QPainter>
#include <QtWidgets/QApplication>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QVBoxLayout>

#include <algorithm>

namespace {

constexpr QSize windowSize(800, 480);
constexpr int stripHeight = 42;
constexpr int tabSide = 84;
constexpr int tabIconSide = 80;
constexpr int tabPictogramSide = 34;
constexpr int shrinkTime = 260;
constexpr int turnTime = 380;

// The drawer: its closed size follows from the library's tab picture.
constexpr QSize closedDrawer(62, 76);
constexpr int drawerTop = 330;
constexpr int entrySide = 70;
constexpr int entryGap = 5;
constexpr int entryIcon = 28;

const QColor railColor(36, 41, 46);
const QColor railText(200, 207, 213);

/// A tab's face: the drawing with its name under it; the chosen one is lit, with a bar towards the
/// pages.
QPixmap tabFace(Pictogram picture, const QString &name, bool chosen)
{
    QPixmap face(tabIconSide, tabIconSide);
    face.fill(Qt::transparent);
    QPainter painter(&face);
    const QColor color = chosen ? QColor(Qt::white) : railText;
    if (chosen) {
        painter.fillRect(face.rect(), QColor(255, 255, 255, 26));
        painter.fillRect(tabIconSide - 4, 0, 4, tabIconSide, Theme::accent());
    }
    painter.drawPixmap((tabIconSide - tabPictogramSide) / 2, 8,
                       pictogram(picture, tabPictogramSide, color));
    painter.setPen(color);
    painter.setFont(Theme::font(Theme::Small, chosen));
    painter.drawText(QRect(0, 60, tabIconSide, 16), Qt::AlignCenter, name);
    return face;
}

/// How urgent an alarm state is.
int urgency(AlarmState alarm)
{
    switch (alarm) {
    case AlarmState::None:
        return 0;
    case AlarmState::Warning:
        return 1;
    case AlarmState::Anomaly:
        return 2;
    case AlarmState::CommunicationLost:
        return 3;
    case AlarmState::Locked:
        return 4;
    case AlarmState::Fault:
        return 5;
    }
    return 0;
}

ElementState worstElement(const Snapshot &snapshot)
{
    return *std::max_element(snapshot.elements.begin(), snapshot.elements.end(),
                             [](const ElementState &a, const ElementState &b) {
                                 return urgency(a.alarm) < urgency(b.alarm);
                             });
}

ElementState systemState(const Snapshot &snapshot)
{
    return snapshot.system;
}

ElementState batteryState(const Snapshot &snapshot)
{
    return snapshot.element(Element::Battery);
}

ElementState noState(const Snapshot &)
{
    return {AlarmState::None, OperatingState::Unknown};
}

} // namespace

ConsoleWindow::ConsoleWindow(SiteModel *site, QWidget *parent)
    : QWidget(parent)
    , ups(site->at(0))
{
    setWindowTitle(tr("UPS console"));
    setFixedSize(windowSize);
    makeStrip();
    makeTabs();
    makeDrawer();
    showPage(0);
    for (const Tab &tab : tabs)
        tab.page->setModel(ups);
    connect(ups, &UpsModel::changed, this, &ConsoleWindow::showUps);
    connect(ups, &UpsModel::commandsChanged, this, &ConsoleWindow::offerCommands);
    showUps();
    offerCommands();
}

void ConsoleWindow::makeStrip()
{
    auto *strip = new MetroStatusbar(this);
    strip->setAccessibleName(tr("UPS status"));
    strip->move(0, 0);
    strip->resize(windowSize.width(), stripHeight);
    const auto lightLabel = [&](Theme::TextSize size, bool bold) {
        QLabel *label = Theme::label(strip, size, bold);
        QPalette palette = label->palette();
        palette.setColor(QPalette::WindowText, Qt::white);
        label->setPalette(palette);
        return label;
    };
    upsName = lightLabel(Theme::Large, true);
    upsState = lightLabel(Theme::Large, false);
    simulatedMark = lightLabel(Theme::Small, true);
    simulatedMark->setText(tr("SIMULATED"));
    simulatedMark->setContentsMargins(8, 3, 8, 3);
    simulatedMark->setAutoFillBackground(true);
    QPalette mark = simulatedMark->palette();
    mark.setColor(QPalette::Window, QColor(247, 148, 50));
    mark.setColor(QPalette::WindowText, QColor(40, 22, 0));
    simulatedMark->setPalette(mark);
    clock = lightLabel(Theme::Large, false);

    auto *layout = new QHBoxLayout(strip);
    layout->setContentsMargins(14, 0, 14, 0);
    layout->setSpacing(16);
    layout->addWidget(upsName);
    layout->addWidget(simulatedMark, 0, Qt::AlignVCenter);
    layout->addStretch();
    layout->addWidget(upsState);
    layout->addSpacing(12);
    layout->addWidget(clock);

    clockTimer = new QTimer(this);
    connect(clockTimer, &QTimer::timeout, this, &ConsoleWindow::showClock);
    clockTimer->start(1000);
    showClock();
}

void ConsoleWindow::makeTabs()
{
    const int height = windowSize.height() - stripHeight;
    rail = new QWidget(this);
    rail->setGeometry(0, stripHeight, tabSide, height);
    rail->setAutoFillBackground(true);
    QPalette palette = rail->palette();
    palette.setColor(QPalette::Window, railColor);
    rail->setPalette(palette);

    stack = new RotateStackedWidget(this);
    stack->setObjectName(QStringLiteral("pages"));
    stack->setAccessibleName(tr("Pages"));
    stack->setGeometry(tabSide, stripHeight, windowSize.width() - tabSide, height);
    setUp(stack, {{"endPositionAnimate", 0.6},
                  {"timePositionAnimate", shrinkTime},
                  {"timeRotationAnimate", turnTime}});

    settings = new SettingsPage;
    addTab(tr("Overview"), Pictogram::Overview, new OverviewPage, systemState);
    addTab(tr("Power"), Pictogram::Power, new PowerPage, worstElement);
    addTab(tr("Control"), Pictogram::Control, new ControlPage, batteryState);
    addTab(tr("Settings"), Pictogram::Settings, settings, noState);
    connect(settings, &SettingsPage::darkThemeChosen, this, &ConsoleWindow::setDarkTheme);
    connect(settings, &SettingsPage::pageAnimationChosen, this, &ConsoleWindow::setPageAnimation);
}

void ConsoleWindow::addTab(const QString &name, Pictogram picture, Page *page,
                           ElementState (*state)(const Snapshot &))
{
    const int index = int(tabs.size());
    auto *button = new MetroTabicon(rail);
    button->setObjectName(name);
    button->setAccessibleName(name);
    button->setGeometry(0, index * tabSide, tabSide, tabSide);
    QIcon icon;
    icon.addPixmap(tabFace(picture, name, false), QIcon::Normal, QIcon::Off);
    icon.addPixmap(tabFace(picture, name, true), QIcon::Normal, QIcon::On);
    button->setIconSize(QSize(tabIconSide, tabIconSide));
    button->setIcon(icon);
    connect(button, &MetroTabicon::clicked, this, [=] { stack->setCurrentIndex(index); });
    page->setObjectName(name.toLower());
    page->setAccessibleName(name);
    stack->addWidget(page);
    tabs.push_back({button, page, state});
}

void ConsoleWindow::makeDrawer()
{
    drawer = new MetroNavdrawer(this);
    drawer->setObjectName(QStringLiteral("drawer"));
    drawer->setAccessibleName(tr("Quick commands"));
    setUp(drawer, {{"background", QColor(58, 65, 72)}});

    const struct
    {
        Pictogram picture;
        QString name;
        Command command;
    } entries[] = {
        {Pictogram::Check, tr("Clear"), Command::ClearAlarm},
        {Pictogram::Link, tr("Relink"), Command::RestoreCommunication},
        {Pictogram::Restart, tr("Resume"), Command::FollowScenario},
    };
    int x = closedDrawer.width();
    for (const auto &entry : entries) {
        auto *button = new TranspButton(drawer);
        button->setObjectName(entry.name);
        button->setGeometry(x, (closedDrawer.height() - entrySide) / 2, entrySide, entrySide);
        x += entrySide + entryGap;
        button->setFont(Theme::font(Theme::Small));
        QPalette palette = button->palette();
        palette.setColor(QPalette::ButtonText, Qt::white);
        palette.setColor(QPalette::Disabled, QPalette::ButtonText, railText.darker());
        button->setPalette(palette);
        QIcon icon(pictogram(entry.picture, entryIcon, Qt::white));
        icon.addPixmap(pictogram(entry.picture, entryIcon, Theme::accent()), QIcon::Active);
        button->setIconSize(QSize(entryIcon, entryIcon));
        button->setIcon(icon);
        button->setText(entry.name);
        setUp(button, {{"posLabel", QPoint(0, 25)}});
        const Command command = entry.command;
        connect(button, &TranspButton::clicked, this, [=] { ups->command(command); });
        drawerEntries.push_back({button, command});
    }
    // Only now: an unchecked box disables its children while they are constructed, and a screen
    // reader would take them for plain widgets ever after.
    drawer->setCheckable(true);
    drawer->setChecked(false);
    drawer->setGeometry(
        QRect(QPoint(windowSize.width() - closedDrawer.width(), drawerTop), closedDrawer));
    drawer->setState(MetroNavdrawer::close);
    connect(drawer, &MetroNavdrawer::clicked, this, [this](bool checked) {
        drawer->setState(checked ? MetroNavdrawer::open : MetroNavdrawer::close);
    });
}

void ConsoleWindow::offerCommands()
{
    // The open drawer enables its entries again, but for those that the host disabled.
    for (const DrawerEntry &entry : drawerEntries) {
        const bool supported = ups->supports(entry.command);
        entry.button->setEnabled(supported && drawer->isChecked());
        entry.button->setAttribute(Qt::WA_ForceDisabled, !supported);
    }
}

void ConsoleWindow::showUps()
{
    const Snapshot &snapshot = ups->snapshot();
    upsName->setText(snapshot.name.isEmpty() ? tr("UPS") : snapshot.name);
    simulatedMark->setVisible(snapshot.simulated);
    upsState->setText(ups->headline().text);
    for (const Tab &tab : tabs)
        tab.button->setState(shownState(tab.state(snapshot)));
}

QStringList ConsoleWindow::pageNames() const
{
    QStringList names;
    for (const Tab &tab : tabs)
        names.append(tab.page->objectName());
    return names;
}

void ConsoleWindow::showPage(int index)
{
    tabs.at(index).button->setChecked(true);
    stack->setCurrentIndex(index);
}

void ConsoleWindow::chooseDarkTheme(bool dark)
{
    settings->showDarkTheme(dark);
    setDarkTheme(dark);
}

void ConsoleWindow::setDarkTheme(bool dark)
{
    QApplication::setPalette(Theme::palette(dark));
}

void ConsoleWindow::setPageAnimation(bool animated)
{
    stack->setAnimationEnabled(animated);
}

void ConsoleWindow::showClock()
{
    clock->setText(QTime::currentTime().toString(QStringLiteral("HH:mm")));
}

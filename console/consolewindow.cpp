// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "consolewindow.h"

#include "banner.h"
#include "controlpage.h"
#include "countlabel.h"
#include "display.h"
#include "elementstate_p.h"
#include "elidedlabel.h"
#include "eventspage.h"
#include "feed/plaintext.h"
#include "fleetpage.h"
#include "focusframe.h"
#include "history/history.h"
#include "informationpage.h"
#include "keyhelp.h"
#include "model/commandname.h"
#include "overviewpage.h"
#include "pictograms.h"
#include "powerpage.h"
#include "scrollroom.h"
#include "settingspage.h"
#include "severitylook.h"
#include "signlabel.h"
#include "theme.h"
#include "trendspage.h"

#include <metronavdrawer.h>
#include <metrostatusbar.h>
#include <metrotabicon.h>
#include <rotatestackedwidget.h>
#include <transpbutton.h>

#include <QShortcut>
#include <QtCore/QSettings>
#include <QtCore/QTime>
#include <QtGui/QIcon>
#include <QtGui/QPainter>
#include <QtGui/QPixmapCache>
#include <QtGui/QScreen>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QApplication>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QScrollArea>

#include <algorithm>
#include <cmath>
#include <functional>

namespace {

// Lengths in the theme's units.
constexpr int stripUnits = 34;
constexpr int tabUnits = 84;
constexpr int tabPictogram = 34;
constexpr int alarmPictogram = 18;
constexpr int stripMargin = 14;

constexpr int leastRail = 62;
constexpr int leastTab = 44;

constexpr int shrinkTime = 260;
constexpr int turnTime = 380;
/// Until the end of a command takes its place.
constexpr int pendingMessageMsecs = 30000;
/// Of an end that someone should read.
constexpr int badEndMessageMsecs = 15000;

// The drawer: the library's tab image, and what the drawer adds around it.
constexpr int drawerBeside = 12;
constexpr int drawerAround = 24;
constexpr int entryGap = 5;

// A unit of the theme is a pixel on the smallest usual panel. A window has at least so many, and
// a large one does not use more than it needs.
constexpr QSizeF leastUnits(640, 400);
constexpr QSizeF panelUnits(790, 474);
constexpr QSizeF enoughUnits(1280, 768);
constexpr double usualDotsPerInch = 96.0;

const QColor railColor(36, 41, 46);
const QColor railText(200, 207, 213);

double scaleFor(QSize window, int dotsPerInch)
{
    double room =
        std::min(window.width() / leastUnits.width(), window.height() / leastUnits.height());
    // Larger texts than usual only where all pages keep the room that they have on a usual panel.
    if (room > 1.0)
        room = std::max(1.0, std::min(window.width() / panelUnits.width(),
                                      window.height() / panelUnits.height()));
    const double growth =
        std::min(window.width() / enoughUnits.width(), window.height() / enoughUnits.height());
    return std::min(std::max(dotsPerInch / usualDotsPerInch, growth), room);
}

/// A tab's face: the drawing with its name under it; the chosen one is lit, with a bar towards the
/// pages.
QPixmap tabFace(Pictogram image, const QString &name, bool chosen, QSize size, bool hovered,
                const QString &badge, Severity badgeSeverity, Severity alarm)
{
    QPixmap face = transparentPixmap(size);
    QPainter painter(&face);
    const QColor color = chosen || hovered ? QColor(Qt::white) : railText;
    if (hovered)
        painter.fillRect(QRect(QPoint(), size), QColor(255, 255, 255, 22));
    if (chosen) {
        painter.fillRect(QRect(QPoint(), size), QColor(255, 255, 255, 26));
        painter.fillRect(size.width() - 4, 0, 4, size.height(), Theme::accent());
    }
    QFont font = Theme::font(Theme::Small, chosen);
    const int room = size.width() - 6;
    const int width = QFontMetrics(font).horizontalAdvance(name);
    if (width > room)
        font.setPointSizeF(font.pointSizeF() * room / width);
    const int textHeight = QFontMetrics(font).height();
    const int above = size.height() - textHeight - 2;
    const int side = std::max(std::min({Theme::px(tabPictogram), above - 6, size.width() - 8}), 8);
    // A badge is on the drawing's upper right corner, and leaves the most of a small drawing.
    const QFontMetrics badgeMetrics(Theme::font(Theme::Small, true));
    const int badgeHeight = badgeMetrics.height();
    const int badgeWidth =
        std::max(badgeMetrics.horizontalAdvance(badge) + badgeHeight / 2, badgeHeight);
    const int left = (size.width() - side) / 2;
    const int badgeLeft = left + side - std::min(badgeWidth / 2, side / 4);
    const int excess =
        badge.isEmpty() ? 0 : std::max(badgeLeft + badgeWidth - (size.width() - 6), 0);
    painter.drawPixmap(std::max(left - excess, 0), (above - side) / 2,
                       pictogram(image, side, color, face.devicePixelRatio()));
    painter.setPen(color);
    painter.setFont(font);
    painter.drawText(QRect(0, above, size.width(), textHeight), Qt::AlignCenter, name);
    if (alarm != Severity::Normal) {
        const int sign = std::max(Theme::px(alarmPictogram), 12);
        painter.drawPixmap(4, (above - sign) / 2,
                           severityBadge(alarm, sign, true, face.devicePixelRatio()));
    }
    if (!badge.isEmpty()) {
        const SeverityLook look = lookOf(badgeSeverity, true);
        painter.setFont(Theme::font(Theme::Small, true));
        const QRect plate(badgeLeft - excess, std::max((above - side) / 2 - badgeHeight / 4, 1),
                          badgeWidth, badgeHeight);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(railColor, 2));
        painter.setBrush(look.plate);
        painter.drawRoundedRect(plate, badgeHeight / 2.0, badgeHeight / 2.0);
        painter.setPen(look.ink);
        painter.drawText(plate, Qt::AlignCenter, badge);
    }
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

QRect placeIn(const QWidget *room, const QWidget *widget)
{
    return {widget->mapTo(room, QPoint()), widget->size()};
}

/// Where in @p room, within @p page, are controls that can be used now.
std::vector<QRect> placesOfControls(const QWidget *room, const QRect &page)
{
    std::vector<QRect> places;
    const QList<QWidget *> widgets = room->findChildren<QWidget *>();
    for (const QWidget *widget : widgets) {
        const bool isControl = qobject_cast<const QAbstractButton *>(widget) ||
                               qobject_cast<const QLineEdit *>(widget) ||
                               qobject_cast<const QComboBox *>(widget);
        if (!isControl || widget->focusPolicy() == Qt::NoFocus || !widget->isEnabled() ||
            !widget->isVisibleTo(room))
            continue;
        const QRect place = placeIn(room, widget).intersected(page);
        if (!place.isEmpty())
            places.push_back(place);
    }
    return places;
}

qint64 areaOf(const QRect &place)
{
    return place.isEmpty() ? 0 : qint64(place.width()) * place.height();
}

/// How much of @p controls is below @p place.
qint64 areaCovered(const QRect &place, const std::vector<QRect> &controls)
{
    qint64 area = 0;
    for (const QRect &one : controls)
        area += areaOf(one.intersected(place));
    return area;
}

} // namespace

ConsoleWindow::ConsoleWindow(SiteModel *shownSite, QWidget *parent)
    : QWidget(parent)
    , site(shownSite)
{
    setMinimumSize(leastSize);
    makeHeader();
    makeTabs();
    makeDrawer();
    makeKeys();
    new FocusFrame(this);
    resize(usualSize);
    showPage(0);
    follow(site->count() > 0 ? site->at(0) : &nobody);
    if (ups == &nobody) {
        // Until servers have said which UPSes there are. Many may come in one go.
        for (QTimer *timer : {&firstTimer, &firstPatience}) {
            timer->setSingleShot(true);
            connect(timer, &QTimer::timeout, this, &ConsoleWindow::followFirst);
        }
        firstPatience.setObjectName(QStringLiteral("first patience"));
        firstPatience.start(UpsModel::patienceMsecs);
        const auto later = [this] { firstTimer.start(0); };
        connect(site, &SiteModel::added, &firstTimer, later);
        connect(site, &SiteModel::serverMet, &firstTimer, later);
        connect(site, &SiteModel::serverMissed, &firstTimer, later);
    }
    connect(site, &SiteModel::problemsChanged, this, [this] {
        // Sentences begin with the reason, not with a name.
        const QString source = site->worstSource();
        nobody.take(Snapshot::lost(
            QString(),
            source.isEmpty() ? QString() : reasonAt(site->problems().value(source).text, source)));
        // Without a page that lists them.
        if (!fleet && site->problemCount() > 0)
            say(site->worstProblem());
    });
    applyScale();
}

/// Follows the first UPS by name: of those that are known so far until all servers have answered
/// or had their time, and then for good.
void ConsoleWindow::followFirst()
{
    UpsModel *first = site->firstByName();
    if (hasFirst || !first)
        return;
    // A command must not reach another UPS than the one that was shown a moment ago.
    const bool stays =
        ups != &nobody && tabs.at(std::size_t(stack->currentIndex())).page == control;
    if (first != ups && !stays)
        follow(first);
    hasFirst = stays || site->isComplete() || !firstPatience.isActive();
}

UpsModel *ConsoleWindow::shownUps() const
{
    return ups;
}

/// Shows @p followed on all pages from now on.
void ConsoleWindow::follow(UpsModel *followedUps)
{
    const UpsModel *before = ups;
    ups->disconnect(this);
    ups->setFollowed(false);
    ups = followedUps;
    ups->setFollowed(true);
    for (const Tab &tab : tabs)
        tab.page->setModel(ups);
    connect(ups, &UpsModel::changed, this, &ConsoleWindow::showUps);
    connect(ups, &UpsModel::commandsChanged, this, &ConsoleWindow::offerCommands);
    connect(ups, &UpsModel::commandGiven, this, &ConsoleWindow::showResult);
    connect(ups, &UpsModel::commandFinished, this, &ConsoleWindow::showRecord);
    connect(ups, &UpsModel::commandBegan, this, [this](const QString &name, const QString &value) {
        say(value.isEmpty() ? tr("%1: asked …").arg(wordsOf(name))
                            : tr("%1 to %2: asked …").arg(wordsOf(name), value),
            pendingMessageMsecs);
    });
    // What was said was about the one before.
    if (before != &nobody)
        dropMessage();
    offerCommands();
    showUps();
}

ConsoleWindow::~ConsoleWindow() = default;

void ConsoleWindow::makeHeader()
{
    strip = new MetroStatusbar(this);
    strip->setObjectName(QStringLiteral("strip"));
    strip->setAccessibleName(tr("UPS status"));
    stripImage = strip->getBackground();
    const auto makeLight = [](QLabel *label) {
        QPalette palette = label->palette();
        palette.setColor(QPalette::WindowText, Qt::white);
        label->setPalette(palette);
    };
    upsName = new ElidedLabel(strip);
    upsName->setObjectName(QStringLiteral("upsName"));
    Theme::setText(upsName, Theme::Large, true);
    makeLight(upsName);
    message = new SignLabel(QColor(), strip);
    message->setObjectName(QStringLiteral("message"));
    message->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    Theme::setText(message, Theme::Normal);
    simulatedMark = Theme::label(strip, Theme::Small, true, tr("SIMULATED"));
    simulatedMark->setContentsMargins(6, 2, 6, 2);
    simulatedMark->setAutoFillBackground(true);
    QPalette mark = simulatedMark->palette();
    mark.setColor(QPalette::Window, QColor(KivPrivate::orange));
    mark.setColor(QPalette::WindowText, QColor(40, 22, 0));
    simulatedMark->setPalette(mark);
    clock = Theme::label(strip, Theme::Large);
    clock->setObjectName(QStringLiteral("clock"));
    makeLight(clock);

    auto *layout = new QHBoxLayout(strip);
    layout->setContentsMargins(stripMargin, 0, stripMargin, 0);
    layout->setSpacing(stripMargin);
    layout->addWidget(upsName, 2);
    layout->addWidget(simulatedMark, 0, Qt::AlignVCenter);
    layout->addWidget(message, 3);
    layout->addWidget(clock);

    clockTimer = new QTimer(this);
    connect(clockTimer, &QTimer::timeout, this, &ConsoleWindow::showClock);
    clockTimer->start(1000);
    showClock();
    messageTimer = new QTimer(this);
    messageTimer->setSingleShot(true);
    connect(messageTimer, &QTimer::timeout, this, &ConsoleWindow::dropMessage);
    message->hide();
    notice = new SignLabel(Theme::deepAccent(), this);
    notice->setObjectName(QStringLiteral("notice"));
    notice->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    notice->setCursor(Qt::PointingHandCursor);
    notice->setToolTip(tr("Press to close (Esc)"));
    notice->setAccessibleDescription(notice->toolTip());
    notice->installEventFilter(this);
    Theme::setText(notice, Theme::Large);
    notice->hide();
    banner = new Banner(this);
}

void ConsoleWindow::makeTabs()
{
    rail = new QWidget(this);
    rail->setAutoFillBackground(true);
    QPalette palette = rail->palette();
    palette.setColor(QPalette::Window, railColor);
    rail->setPalette(palette);

    stack = new RotateStackedWidget(this);
    stack->setObjectName(QStringLiteral("pages"));
    stack->setAccessibleName(tr("Pages"));
    stack->changeEndPosition(0.6);
    stack->changeTimePosition(shrinkTime);
    stack->changeTimeRotation(turnTime);

    overview = new OverviewPage;
    events = new EventsPage(site);
    trends = new TrendsPage;
    settings = new SettingsPage;
    if (site->count() != 1 || site->isGrowing()) {
        fleet = new FleetPage(site);
        addTab(tr("Fleet"), Pictogram::Ups, fleet, noState);
        connect(fleet, &FleetPage::chosen, this, [this](UpsModel *chosen) {
            hasFirst = true;
            follow(chosen);
            showPage(1);
        });
        // Counting is not for every value of a thousand UPSes.
        siteTimer = new QTimer(this);
        siteTimer->setSingleShot(true);
        constexpr int countMsecs = 250;
        siteTimer->setInterval(countMsecs);
        connect(siteTimer, &QTimer::timeout, this, &ConsoleWindow::showSite);
        const auto later = [this] {
            if (!siteTimer->isActive())
                siteTimer->start();
        };
        connect(site, &SiteModel::changed, this, later);
        connect(site, &SiteModel::added, this, later);
        connect(site, &SiteModel::problemsChanged, this, later);
    }
    addTab(tr("Overview"), Pictogram::Overview, overview, systemState);
    addTab(tr("Power"), Pictogram::Power, new PowerPage, worstElement);
    control = new ControlPage;
    addTab(tr("Control"), Pictogram::Control, control, batteryState);
    connect(control, &ControlPage::said, this, [this](const QString &text) { say(text); });
    connect(control, &ControlPage::keepUser, this, &ConsoleWindow::keepUser);
    addTab(tr("Events"), Pictogram::Events, events, noState);
    addTab(tr("Trends"), Pictogram::Trends, trends, noState);
    addTab(tr("Information"), Pictogram::Help, new InformationPage, noState);
    addTab(tr("Settings"), Pictogram::Settings, settings, noState);
    connect(settings, &SettingsPage::darkThemeChosen, this, &ConsoleWindow::setDarkTheme);
    connect(settings, &SettingsPage::pageAnimationChosen, this, &ConsoleWindow::setPageAnimation);
    connect(settings, &SettingsPage::notifyChosen, this, [this](bool notify) {
        keep("notify", notify);
        Q_EMIT notifyChosen(notify);
    });
}

void ConsoleWindow::addTab(const QString &name, Pictogram image, Page *page,
                           ElementState (*state)(const Snapshot &))
{
    const int index = int(tabs.size());
    auto *button = new MetroTabicon(rail);
    button->setObjectName(name);
    button->setAccessibleName(name);
    // Signs show alarms: the tab's own lamp has other colours and shapes, and no room in a low tab.
    button->setState(shownState(noState(Snapshot())));
    button->setToolTip(tr("%1 (Alt+%2)").arg(name, QString::number(index + 1)));
    button->setCursor(Qt::PointingHandCursor);
    button->installEventFilter(this);
    connect(button, &MetroTabicon::clicked, this, [=] { showPage(index); });
    // The shape of the pointer shows what can be pressed.
    const QList<QAbstractButton *> controls = page->findChildren<QAbstractButton *>();
    for (QAbstractButton *one : controls) {
        if (one->focusPolicy() != Qt::NoFocus)
            one->setCursor(Qt::PointingHandCursor);
    }
    page->setObjectName(name.toLower());
    page->setAccessibleName(name);
    // Whatever does not fit into a window is still in reach.
    auto *room = new QScrollArea;
    room->setAccessibleName(name);
    room->setFrameShape(QFrame::NoFrame);
    room->setFocusPolicy(Qt::NoFocus);
    room->setWidgetResizable(true);
    room->setWidget(page);
    room->viewport()->setAutoFillBackground(false);
    page->setAutoFillBackground(false);
    scrollByFinger(room);
    stack->addWidget(room);
    tabs.push_back(
        {button, page, room, image, name, state, QString(), Severity::Normal, Severity::Normal});
}

void ConsoleWindow::makeDrawer()
{
    drawer = new MetroNavdrawer(this);
    drawer->setObjectName(QStringLiteral("drawer"));
    drawer->setAccessibleName(tr("Quick commands"));
    drawer->setToolTip(tr("Quick commands"));
    drawer->setCursor(Qt::PointingHandCursor);
    drawerTab = drawer->getImageTab();
    drawer->setBackground(QColor(58, 65, 72));

    const struct
    {
        Pictogram image;
        QString name;
        Command command;
    } entries[] = {
        {Pictogram::Check, tr("Clear"), Command::ClearAlarm},
        {Pictogram::Link, tr("Relink"), Command::RestoreCommunication},
        {Pictogram::Restart, tr("Resume"), Command::FollowScenario},
    };
    for (const auto &entry : entries) {
        auto *button = new TranspButton(drawer);
        button->setObjectName(entry.name);
        QPalette palette = button->palette();
        palette.setColor(QPalette::ButtonText, Qt::white);
        palette.setColor(QPalette::Disabled, QPalette::ButtonText, railText.darker());
        button->setPalette(palette);
        button->setText(entry.name);
        const Command command = entry.command;
        button->setToolTip(nameOf(command));
        button->setAccessibleDescription(nameOf(command));
        connect(button, &TranspButton::clicked, this, [=] { ups->command(command); });
        drawerEntries.push_back({button, entry.image, command});
    }
    // Only now: an unchecked box disables its children while they are constructed, and a screen
    // reader would take them for plain widgets ever after.
    drawer->setCheckable(true);
    drawer->setChecked(false);
    drawer->setState(MetroNavdrawer::close);
    connect(drawer, &MetroNavdrawer::clicked, this, &ConsoleWindow::openDrawer);
}

void ConsoleWindow::makeKeys()
{
    const auto onKey = [this](const QKeySequence &key, auto action) {
        auto *shortcut = new QShortcut(key, this);
        connect(shortcut, &QShortcut::activated, this, action);
    };
    for (int i = 0; i < int(tabs.size()); ++i)
        onKey(QKeySequence(int(Qt::ALT) + int(Qt::Key_1) + i), [this, i] { showPage(i); });
    onKey(QKeySequence(Qt::Key_F11), [this] { setFilled(!isFullScreen()); });
    onKey(QKeySequence(Qt::Key_Escape), [this] { escape(); });
    onKey(QKeySequence(Qt::Key_F1), [this] {
        if (keyHelp->isVisible())
            keyHelp->hide();
        else
            keyHelp->popUp();
    });
    const QString last = QString::number(tabs.size());
    keyHelp = new KeyHelp({{tr("Alt+1 … Alt+%1").arg(last), tr("Show a page")},
                           {tr("Tab, Shift+Tab"), tr("Go to the next, the previous control")},
                           {tr("Space"), tr("Use the control in the frame")},
                           {tr("F11"), tr("Fill the screen, or not")},
                           {tr("Esc"), tr("Close this list, the drawer, a message")},
                           {tr("F1"), tr("Show this list")}},
                          this);
}

void ConsoleWindow::escape()
{
    if (keyHelp->isVisible()) {
        keyHelp->hide();
    } else if (drawer->isChecked()) {
        drawer->setChecked(false);
        openDrawer(false);
    } else if (notice->isVisible()) {
        dropMessage();
    }
}

void ConsoleWindow::setFilled(bool fullScreen)
{
    if (fullScreen)
        showFullScreen();
    else
        showNormal();
    keep("fullScreen", fullScreen);
}

void ConsoleWindow::remember(const QString &file)
{
    memory.reset();
    const QSettings kept(file, QSettings::IniFormat);
    const QSize size = kept.value(QStringLiteral("size")).toSize();
    // A file that was written by something else must not make the window unusable.
    constexpr int largest = 16384;
    if (size.isValid())
        resize(size.expandedTo(leastSize).boundedTo(QSize(largest, largest)));
    const int page = int(pageNames().indexOf(kept.value(QStringLiteral("page")).toString()));
    if (page >= 0)
        showPage(page);
    chooseDarkTheme(kept.value(QStringLiteral("darkTheme")).toBool());
    const bool animated = kept.value(QStringLiteral("pageAnimation")).toBool();
    settings->showPageAnimation(animated);
    setPageAnimation(animated);
    chooseNotify(kept.value(QStringLiteral("notify"), true).toBool());
    if (kept.value(QStringLiteral("fullScreen")).toBool())
        setWindowState(windowState() | Qt::WindowFullScreen);
    memory = std::make_unique<QSettings>(file, QSettings::IniFormat);
}

void ConsoleWindow::keep(const char *key, const QVariant &value)
{
    if (memory)
        memory->setValue(QLatin1String(key), value);
}

void ConsoleWindow::paintEvent(QPaintEvent *)
{
    // The header is one bar, also around the drawer.
    QPainter(this).fillRect(QRect(0, 0, width(), stack->y()), railColor);
}

void ConsoleWindow::closeEvent(QCloseEvent *event)
{
    if (!isFullScreen())
        keep("size", size());
    QWidget::closeEvent(event);
}

void ConsoleWindow::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::ApplicationPaletteChange)
        showUps();
}

void ConsoleWindow::offerCommands()
{
    // The open drawer enables its entries again, except those that the console disabled.
    bool any = false;
    for (const DrawerEntry &entry : drawerEntries) {
        const bool offered = ups->supports(entry.command);
        any = any || offered;
        entry.button->setEnabled(drawer->isChecked() && offered);
    }
    if (drawer->isVisibleTo(this) != any) {
        drawer->setVisible(any);
        arrangeHeader();
    }
}

void ConsoleWindow::showUps()
{
    const Snapshot &snapshot = ups->snapshot();
    const QString name = ups->title().isEmpty() ? tr("UPS") : ups->title();
    if (!showsFleet()) {
        upsName->setText(name);
        simulatedMark->setVisible(snapshot.simulated);
        banner->showUps(*ups);
    }
    showTabStates();

    const Severity severity = worseOf(ups->headline().severity, ups->severity());
    // The mark in the title is for window lists that show no icon.
    const QString mark = severity == Severity::Normal || severity == Severity::Information
                             ? QString()
                             : QStringLiteral("! ");
    setWindowTitle(mark + ups->headline().text + QStringLiteral(" – ") + cutText(name, 100));
    if (severity != shownSeverity || windowIcon().isNull()) {
        shownSeverity = severity;
        QIcon icon;
        for (const int side : {16, 24, 32, 48, 64})
            icon.addPixmap(severityBadge(severity, side, false));
        setWindowIcon(icon);
    }
}

bool ConsoleWindow::showsFleet() const
{
    return fleet && !tabs.empty() && stack->currentIndex() == 0;
}

/// The counts of the site, on its page and, by a badge, on all others.
void ConsoleWindow::showSite()
{
    const auto counts = site->counts();
    const int bad = counts.at(std::size_t(Severity::Critical)) +
                    counts.at(std::size_t(Severity::Warning)) +
                    counts.at(std::size_t(Severity::Unknown)) + site->problemCount();
    Tab &tab = tabs.front();
    constexpr int most = 99;
    const QString badge = bad == 0     ? QString()
                          : bad > most ? QStringLiteral("99+")
                                       : QString::number(bad);
    const Severity severity = site->severity();
    if (tab.badge != badge || tab.badgeSeverity != severity) {
        tab.badge = badge;
        tab.badgeSeverity = severity;
        tab.button->setAccessibleName(bad == 0 ? tab.name
                                               : tr("%1, %2 not in order").arg(tab.name).arg(bad));
        drawTab(tab, tab.button->underMouse());
    }
    if (!showsFleet())
        return;
    upsName->setText(tr("All UPSes (%1)").arg(site->count()));
    simulatedMark->hide();
    const UpsModel *worst = site->worst();
    // The worst first: a UPS, a server, or both.
    QStringList details;
    if (worst && worst->severity() != Severity::Normal)
        details += worst->title() + QStringLiteral(": ") + worst->headline().text;
    const int place = worst && worst->severity() == Severity::Critical ? int(details.size()) : 0;
    if (!site->problems().isEmpty())
        details.insert(place, site->worstProblem());
    banner->showSite(site->count() == 0 ? Severity::Unknown : severity, countsOf(*site),
                     details.join(Theme::separator()));
}

void ConsoleWindow::showTabStates()
{
    for (Tab &tab : tabs) {
        const ElementState state = tab.state(ups->snapshot());
        const Severity alarm = severityOf(state.alarm);
        if (alarm == tab.alarm)
            continue;
        tab.alarm = alarm;
        tab.button->setAccessibleDescription(
            alarm == Severity::Normal
                ? QString()
                : sentence(nameOf(state.alarm)) + QStringLiteral(". ") + tab.button->toolTip());
        drawTab(tab, tab.button->underMouse());
    }
}

void ConsoleWindow::setHistory(History *shownHistory, TrendSource *source)
{
    if (history)
        history->disconnect(this);
    history = shownHistory;
    overview->setTrends(source ? source : history);
    events->setHistory(history);
    trends->setHistory(history, source);
    if (history)
        connect(history, &History::unacknowledgedChanged, this, &ConsoleWindow::showUnacknowledged);
    showUnacknowledged();
}

void ConsoleWindow::showUnacknowledged()
{
    int count = 0;
    Severity worst = Severity::Normal;
    for (const Severity severity : {Severity::Warning, Severity::Unknown, Severity::Critical}) {
        const int some = history ? history->unacknowledged().at(std::size_t(severity)) : 0;
        count += some;
        if (some > 0)
            worst = worseOf(worst, severity);
    }
    constexpr int most = 99;
    for (Tab &tab : tabs) {
        if (tab.page != events)
            continue;
        tab.badge = count == 0     ? QString()
                    : count > most ? QStringLiteral("99+")
                                   : QString::number(count);
        tab.badgeSeverity = worst;
        tab.button->setAccessibleName(
            count == 0 ? tab.name : tr("%1, %2 not acknowledged").arg(tab.name).arg(count));
        drawTab(tab, tab.button->underMouse());
    }
}

void ConsoleWindow::showResult(Command command, bool taken)
{
    say(taken ? tr("%1: taken").arg(nameOf(command))
              : tr("%1: refused in this state").arg(nameOf(command)),
        usualMessageMsecs, severityOf(taken ? CommandOutcome::Done : CommandOutcome::Refused));
}

void ConsoleWindow::showRecord(const CommandRecord &record)
{
    say(textOf(record),
        record.outcome == CommandOutcome::Done ? usualMessageMsecs : badEndMessageMsecs,
        severityOf(record.outcome));
}

void ConsoleWindow::say(const QString &text, int msecs, std::optional<Severity> severity)
{
    message->setMessage(text, severity);
    messageTimer->start(msecs);
    showMessage();
}

void ConsoleWindow::showMessage()
{
    // Shown to get its room, which says whether the whole text fits.
    message->show();
    strip->layout()->activate();
    const bool fits = !message->isElided();
    message->setVisible(fits);
    notice->setVisible(!fits);
    if (fits)
        return;
    constexpr int mostLines = 6;
    notice->setMessage(message->text(), message->severity());
    notice->setLines(std::min(notice->linesAt(stack->width()), mostLines));
    notice->setGeometry(placeOfNotice(notice->minimumSizeHint().height()));
    notice->raise();
}

/// Where a notice covers the least of what can be pressed, and not at all what is pressed: at the
/// bottom of the page rather than at its top, and there rather than between.
QRect ConsoleWindow::placeOfNotice(int height) const
{
    const QWidget *room = tabs.at(std::size_t(stack->currentIndex())).room;
    const QRect page(QPoint(), stack->size());
    const std::vector<QRect> controls = placesOfControls(room, page);
    std::vector<int> tops;
    for (const QRect &place : controls) {
        for (const int top : {place.top() - height, place.bottom() + 1}) {
            if (top > 0 && top + height < page.height())
                tops.push_back(top);
        }
    }
    std::sort(tops.begin(), tops.end(), std::greater<int>());
    tops.insert(tops.begin(), {page.height() - height, 0});
    const QWidget *focused = focusWidget();
    const QRect pressed = focused && room->isAncestorOf(focused) ? placeIn(room, focused) : QRect();
    const auto coveredAt = [&](int top) {
        const QRect place(0, top, page.width(), height);
        const qint64 covered = areaCovered(place, controls);
        return place.intersects(pressed) ? covered + areaOf(page) : covered;
    };
    const int best = *std::min_element(tops.begin(), tops.end(), [&](int one, int other) {
        return coveredAt(one) < coveredAt(other);
    });
    return QRect(stack->x(), stack->y() + best, page.width(), height);
}

void ConsoleWindow::dropMessage()
{
    messageTimer->stop();
    message->hide();
    notice->hide();
}

void ConsoleWindow::setCredentialsFile(const QString &path)
{
    control->setCredentialsFile(path);
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
    const bool isOther = index != stack->currentIndex();
    tabs.at(std::size_t(index)).button->setChecked(true);
    stack->setCurrentIndex(index);
    if (fleet) {
        if (index == 0)
            fleet->takeChanges();
        showUps();
        showSite();
    }
    // What it left out while nobody saw it.
    tabs.at(std::size_t(index)).page->refresh();
    // Above another page only the end of a command is still wanted.
    if (isOther && notice->isVisible()) {
        if (message->severity())
            showMessage();
        else
            dropMessage();
    }
    keep("page", pageNames().at(index));
}

void ConsoleWindow::chooseDarkTheme(bool dark)
{
    settings->showDarkTheme(dark);
    setDarkTheme(dark);
}

void ConsoleWindow::setDarkTheme(bool dark)
{
    // What the style keeps for the other palette is never used again.
    QPixmapCache::clear();
    QApplication::setPalette(Theme::palette(dark));
    keep("darkTheme", dark);
}

void ConsoleWindow::setPageAnimation(bool animated)
{
    stack->setAnimationEnabled(animated);
    keep("pageAnimation", animated);
}

void ConsoleWindow::chooseNotify(bool notify)
{
    settings->showNotify(notify);
    keep("notify", notify);
    Q_EMIT notifyChosen(notify);
}

void ConsoleWindow::showClock()
{
    clock->setText(QTime::currentTime().toString(QStringLiteral("HH:mm")));
}

void ConsoleWindow::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    const double scale = scaleFor(size(), logicalDpiY());
    if (std::abs(scale - Theme::scale()) > 1e-6)
        applyScale();
    else
        arrange();
}

void ConsoleWindow::applyScale()
{
    Theme::setScale(scaleFor(size(), logicalDpiY()), logicalDpiY());
    Theme::applyScale(this);
    banner->applyScale();
    message->applyScale();
    notice->applyScale();
    for (const Tab &tab : tabs)
        tab.page->applyScale();
    arrange();
}

void ConsoleWindow::arrange()
{
    if (drawer->isChecked()) {
        // Its geometry follows from where it was opened.
        drawer->setChecked(false);
        drawer->setState(MetroNavdrawer::close);
        offerCommands();
    }
    arrangeTabs();
    arrangeHeader();
    if (keyHelp->isVisible())
        keyHelp->popUp();
}

void ConsoleWindow::arrangeTabs()
{
    const int count = int(tabs.size());
    const int railWidth = std::max(leastRail, Theme::px(tabUnits));
    // Small ones rather than one that is out of reach.
    const int tabHeight = std::max(std::min(Theme::px(tabUnits), height() / count),
                                   std::min(leastTab, height() / count));
    rail->setGeometry(0, 0, railWidth, height());
    // The button is larger than its icon by two.
    const QSize face(railWidth - 2, tabHeight - 2);
    for (int i = 0; i < count; ++i) {
        const Tab &tab = tabs[std::size_t(i)];
        tab.button->setMinimumSize(0, 0);
        tab.button->setIconSize(face);
        tab.button->setGeometry(0, i * tabHeight, railWidth, tabHeight);
        drawTab(tab, tab.button->underMouse());
    }
    showTabStates();
}

void ConsoleWindow::drawTab(const Tab &tab, bool hovered) const
{
    QIcon icon;
    for (const bool chosen : {false, true})
        icon.addPixmap(tabFace(tab.image, tab.name, chosen, tab.button->iconSize(), hovered,
                               tab.badge, tab.badgeSeverity, tab.alarm),
                       QIcon::Normal, chosen ? QIcon::On : QIcon::Off);
    tab.button->setIcon(icon);
    // A new icon shows when the tab drops its image, as it does for a removed child.
    delete new QWidget(tab.button);
}

bool ConsoleWindow::eventFilter(QObject *object, QEvent *event)
{
    if (event->type() == QEvent::Enter || event->type() == QEvent::Leave) {
        for (const Tab &tab : tabs) {
            if (tab.button == object)
                drawTab(tab, event->type() == QEvent::Enter);
        }
    }
    if (object == notice) {
        // What is below gets none of them.
        if (event->type() == QEvent::MouseButtonRelease)
            dropMessage();
        if (event->type() == QEvent::MouseButtonPress ||
            event->type() == QEvent::MouseButtonDblClick ||
            event->type() == QEvent::MouseButtonRelease || event->type() == QEvent::Wheel)
            return true;
    }
    return QWidget::eventFilter(object, event);
}

void ConsoleWindow::arrangeHeader()
{
    const int left = rail->width();
    const int stripHeight = std::max(Theme::px(stripUnits), QFontMetrics(upsName->font()).height());
    const int bannerHeight = banner->minimumSizeHint().height();
    const int header = stripHeight + bannerHeight;
    const bool drawn = drawer->isVisibleTo(this);
    if (drawn && !drawer->isChecked()) {
        const int tabHeight = header - drawerAround;
        const int tabWidth = drawerTab.width() * tabHeight / std::max(drawerTab.height(), 1);
        if (drawer->getImageTab().height() != tabHeight)
            drawer->setImageTab(drawerTab.scaled(tabWidth, tabHeight, Qt::IgnoreAspectRatio,
                                                 Qt::SmoothTransformation));
        const int closedWidth = drawer->getImageTab().width() + drawerBeside;
        drawer->setGeometry(QRect(width() - closedWidth, 0, closedWidth, header));
        const int side = std::max(header - 6, leastTab);
        const int iconSide = side * 2 / 5;
        int x = closedWidth;
        for (const DrawerEntry &entry : drawerEntries) {
            entry.button->setMinimumSize(0, 0);
            entry.button->setFont(Theme::font(Theme::Small));
            QIcon icon;
            addPictogram(&icon, entry.image, iconSide, Qt::white);
            addPictogram(&icon, entry.image, iconSide, Theme::accent(), QIcon::Active);
            entry.button->setIconSize(QSize(iconSide, iconSide));
            entry.button->setIcon(icon);
            entry.button->setGeometry(x, (header - side) / 2, side, side);
            entry.button->setPosLabel(QPoint(0, iconSide / 2 + Theme::px(10)));
            x += side + entryGap;
        }
    }
    // The strip and the banner keep clear of the drawer, also of the open one.
    const int right = drawn ? drawer->x() : width();
    const int wide = std::max(right - left, 1);
    const QSize stripSize(wide, stripHeight);
    if (strip->getBackground().size() != stripSize)
        strip->setBackground(
            stripImage.scaled(stripSize, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
    strip->move(left, 0);
    strip->resize(stripSize);
    banner->setGeometry(left, stripHeight, wide, bannerHeight);
    stack->setGeometry(left, header, width() - left, std::max(height() - header, 1));
    if (messageTimer->isActive())
        showMessage();
}

void ConsoleWindow::openDrawer(bool open)
{
    drawer->setState(open ? MetroNavdrawer::open : MetroNavdrawer::close);
    drawer->raise();
    offerCommands();
    arrangeHeader();
}

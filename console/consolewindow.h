// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "model/sitemodel.h"

#include <QtCore/QTimer>

#include <QtWidgets/QWidget>

#include <memory>
#include <vector>

class Banner;
class ControlPage;
class ElidedLabel;
class SignLabel;
class FleetPage;
class EventsPage;
class History;
class KeyHelp;
class MetroNavdrawer;
class MetroStatusbar;
class MetroTabicon;
class OverviewPage;
class Page;
class QLabel;
class QScrollArea;
class QSettings;
class RotateStackedWidget;
class SettingsPage;
class TranspButton;
class TrendSource;
class TrendsPage;
enum class Pictogram;

/// The console: tabs at the left, a strip with the UPS's name, the banner with its state, the
/// pages, and a drawer beside the banner. Texts and lengths follow the size of the window.
class ConsoleWindow : public QWidget
{
    Q_OBJECT

public:
    static constexpr QSize usualSize = QSize(800, 480);
    static constexpr QSize leastSize = QSize(480, 320);
    static constexpr int usualMessageMsecs = 5000;

    /// Shows @p site, which must live as long.
    explicit ConsoleWindow(SiteModel *site, QWidget *parent = nullptr);
    ~ConsoleWindow() override;

    /// Takes size, page, theme and settings from the INI file @p file, and keeps them there from
    /// now on.
    void remember(const QString &file);

    /// Shows @p history on its pages, and the curves of @p source, or the history's where there is
    /// none. Both must live as long, and may be null.
    void setHistory(History *history, TrendSource *source = nullptr);

    /// The UPS on the pages: the site's first at the start, or, where the site has none then, the
    /// first by name of those that are known when all servers have answered or had their time;
    /// then the one that the user chooses. Without a name while there is none.
    UpsModel *shownUps() const;
    /// The pages' names as file names use them, in the order of the tabs.
    QStringList pageNames() const;
    void showPage(int index);
    /// Applies a theme and shows the choice on the settings page.
    void chooseDarkTheme(bool dark);
    void setDarkTheme(bool dark);
    void setPageAnimation(bool animated);
    /// Sets whether changes are announced on the desktop and shows it on the settings page.
    void chooseNotify(bool notify);

    /// Shows @p text, which stays plain, for @p msecs or until the next one: in the strip, or above
    /// the page where the strip has too little room. With @p severity, in its colours and with its
    /// sign.
    void say(const QString &text, int msecs = usualMessageMsecs,
             std::optional<Severity> severity = std::nullopt);
    /// Where a user who wants to is kept; empty, as at first: nowhere.
    void setCredentialsFile(const QString &path);

public Q_SLOTS:
    void setFilled(bool fullScreen);

Q_SIGNALS:
    /// The user switched announcements on the desktop on or off.
    void notifyChosen(bool notify);
    /// A user wants to be kept in the file of credentials; the server has checked them.
    void keepUser(const QString &upsId, const QString &user, const QString &password);

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void changeEvent(QEvent *event) override;
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    struct Tab
    {
        MetroTabicon *button;
        Page *page;
        QScrollArea *room;
        Pictogram image;
        QString name;
        /// Whose alarm the tab shows.
        ElementState (*state)(const Snapshot &);
        QString badge; ///< a number beside the drawing; may be empty
        Severity badgeSeverity = Severity::Normal;
        Severity alarm = Severity::Normal; ///< shown by a sign
    };

    struct DrawerEntry
    {
        TranspButton *button;
        Pictogram image;
        Command command;
    };

    void follow(UpsModel *ups);
    void followFirst();
    bool showsFleet() const;
    void showSite();
    void showUps();
    void offerCommands();
    void makeHeader();
    void makeTabs();
    void makeDrawer();
    void makeKeys();
    void addTab(const QString &name, Pictogram image, Page *page,
                ElementState (*state)(const Snapshot &));
    void showClock();
    void showMessage();
    QRect placeOfNotice(int height) const;
    void dropMessage();
    void showResult(Command command, bool taken);
    void showRecord(const CommandRecord &record);
    void showTabStates();
    void showUnacknowledged();
    void drawTab(const Tab &tab, bool hovered) const;
    void openDrawer(bool open);
    void escape();

    void applyScale();
    void arrange();
    void arrangeHeader();
    void arrangeTabs();
    void keep(const char *key, const QVariant &value);

    SiteModel *site;
    FleetPage *fleet = nullptr; // where there may be more than one UPS
    QTimer *siteTimer = nullptr;
    UpsModel nobody{QString()}; // shown while the site has no UPS
    UpsModel *ups = &nobody;    // the one that is shown
    QTimer firstTimer{this};
    QTimer firstPatience{this}; // with servers that do not answer
    bool hasFirst = false;      // which is shown until the user chooses another
    MetroStatusbar *strip;
    QPixmap stripImage;
    ElidedLabel *upsName;
    SignLabel *message; // in the strip
    SignLabel *notice;  // above the page, for a message that is too long for the strip
    QLabel *simulatedMark;
    QLabel *clock;
    QTimer *clockTimer;
    QTimer *messageTimer;
    Banner *banner;
    QWidget *rail;
    RotateStackedWidget *stack;
    OverviewPage *overview;
    ControlPage *control;
    EventsPage *events;
    TrendsPage *trends;
    SettingsPage *settings;
    History *history = nullptr;
    MetroNavdrawer *drawer;
    QPixmap drawerTab;
    KeyHelp *keyHelp;
    std::unique_ptr<QSettings> memory;
    Severity shownSeverity = Severity::Normal;
    std::vector<DrawerEntry> drawerEntries;
    std::vector<Tab> tabs;
};

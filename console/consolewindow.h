#pragma once

#include "feed/snapshot.h"
#include "feed/upsfeed.h"

#include <QtCore/QPointer>
#include <QtWidgets/QWidget>

#include <vector>

class MetroNavdrawer;
class MetroTabicon;
class Page;
class QLabel;
class QTimer;
class RotateStackedWidget;
class SettingsPage;
class TranspButton;
enum class Pictogram;

/// The console: a strip with the UPS's name and state, tabs at the left, the pages, a drawer.
class ConsoleWindow : public QWidget
{
    Q_OBJECT

public:
    explicit ConsoleWindow(QWidget *parent = nullptr);

    /// Follows @p feed, which may be deleted at any time.
    void setFeed(UpsFeed *feed);
    void showSnapshot(const Snapshot &snapshot);

    /// The pages' names as file names use them, in the order of the tabs.
    QStringList pageNames() const;
    void showPage(int index);
    /// Takes a look and shows the choice on the settings page.
    void chooseDarkTheme(bool dark);
    void setDarkTheme(bool dark);
    void setPageAnimation(bool animated);

private:
    struct Tab
    {
        MetroTabicon *button;
        Page *page;
        /// The state that the tab's lamp shows.
        ElementState (*state)(const Snapshot &);
    };

    struct DrawerEntry
    {
        TranspButton *button;
        Command command;
    };

    void makeStrip();
    void makeTabs();
    void makeDrawer();
    void addTab(const QString &name, Pictogram picture, Page *page,
                ElementState (*state)(const Snapshot &));
    void showClock();

    QPointer<UpsFeed> feed;
    QLabel *upsName;
    QLabel *upsState;
    QLabel *simulatedMark;
    QLabel *clock;
    QTimer *clockTimer;
    QWidget *rail;
    RotateStackedWidget *stack;
    SettingsPage *settings;
    MetroNavdrawer *drawer;
    std::vector<DrawerEntry> drawerEntries;
    std::vector<Tab> tabs;
};

#pragma once

#include "model/sitemodel.h"

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
    /// Shows @p site, which must live as long.
    explicit ConsoleWindow(SiteModel *site, QWidget *parent = nullptr);

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

    void showUps();
    void offerCommands();
    void makeStrip();
    void makeTabs();
    void makeDrawer();
    void addTab(const QString &name, Pictogram picture, Page *page,
                ElementState (*state)(const Snapshot &));
    void showClock();

    UpsModel *ups; // the one that is shown
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

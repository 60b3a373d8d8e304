// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "signalmonitor.h"

#include <metroStyle.h>

#include <QtCore/QStringList>
#include <QtWidgets/QWidget>

#include <memory>

class ElidedLabel;
class PropertyEditor;
class QCheckBox;
class QLabel;
class QPushButton;
class QSpinBox;
class QScrollArea;
class QSettings;
class QStackedWidget;
class QTimer;
class WidgetStage;
class WidgetList;
struct WidgetDescription;
struct WidgetSettings;

/// The gallery: the list of the widgets, the chosen one live on a stage, and its properties.
class GalleryWindow : public QWidget
{
    Q_OBJECT

public:
    static constexpr QSize smallestSize = QSize(840, 480);

    explicit GalleryWindow(QWidget *parent = nullptr);
    ~GalleryWindow() override;

    /// The class names of all widgets.
    static QStringList widgetNames();
    /// Puts a new widget of class @p name on the stage; an unknown name changes nothing.
    void showWidget(const QString &name);
    /// Light on dark, for the window and the stage.
    void setDarkTheme(bool dark);
    /// Takes the theme and the background that @p file keeps, and keeps in it what is chosen from
    /// here on.
    void remember(const QString &file);
    /// The statements in C++ that make the widget as it is now.
    QString cppCode() const;
    /// The same statements in Python.
    QString pythonCode() const;
    /// Shows the widget in all its states at once, or live on the stage.
    void showAllStates(bool all);
    /// Brings the controls to what the widget is now; done by itself every moment.
    void follow();

private:
    using CodeWriter = QString (*)(const WidgetSettings &, const QString &);

    QString code(CodeWriter write) const;
    QWidget *makeCentre();
    QWidget *makeSizeBar();
    QWidget *makeToolBar();
    void keep(const char *key, bool value);
    void showStates();
    void presentProperties();
    void report(const QString &text);

    WidgetList *list;
    QLabel *title;
    ElidedLabel *subtitle;
    QCheckBox *enabledBox;
    QCheckBox *darkBox;
    QCheckBox *darkThemeBox;
    QSpinBox *widthBox;
    QSpinBox *heightBox;
    QPushButton *naturalButton;
    QStackedWidget *centre;
    WidgetStage *stage;
    QScrollArea *statesArea;
    QPushButton *statesButton;
    QSpinBox *zoomBox;
    std::unique_ptr<QSettings> memory;
    PropertyEditor *properties;
    QLabel *signalLine;
    QTimer *followTimer;
    SignalMonitor monitor;
    const WidgetDescription *shown = nullptr;
    elemDesc_t state = {};
    bool animatesPages = true;
    int signalCount = 0;
    QStringList recentSignals;
};

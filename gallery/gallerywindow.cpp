// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "gallerywindow.h"

#include "codewriter.h"
#include "elementstate.h"
#include "elidedlabel.h"
#include "pictograms.h"
#include "propertybounds.h"
#include "propertyeditor.h"
#include "scenes.h"
#include "slimscrollbars.h"
#include "statesheet.h"
#include "theme.h"
#include "valueeditor.h"
#include "widgetcatalogue.h"
#include "widgetlist.h"
#include "widgetstage.h"

#include <rotatestackedwidget.h>

#include <QtCore/QSettings>
#include <QtCore/QSignalBlocker>
#include <QtCore/QTimer>
#include <QtGui/QClipboard>
#include <QtWidgets/QApplication>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QScrollArea>
#include <QtWidgets/QSpinBox>
#include <QtWidgets/QSplitter>
#include <QtWidgets/QStackedWidget>

namespace {

constexpr int followInterval = 150;
constexpr int listWidth = 172;
constexpr int propertiesWidth = 280;
/// Signals named at the foot of the window, the latest first.
constexpr int signalsKept = 4;

/// The names of all states, in the order of their numbers.
template <typename State>
QStringList stateNames()
{
    QStringList names;
    for (QString name = nameOf(State(0)); !name.isEmpty(); name = nameOf(State(names.size())))
        names.append(name);
    return names;
}

/// Shows what the widget is now, as if nobody had edited it.
void showSilently(QCheckBox *box, bool checked)
{
    const QSignalBlocker blocker(box);
    box->setChecked(checked);
}

void showSilently(QSpinBox *box, int number)
{
    // Setting an equal number would discard what is being typed.
    if (box->value() == number)
        return;
    const QSignalBlocker blocker(box);
    box->setValue(number);
}

QSpinBox *sizeBox(const QString &toolTip)
{
    auto *box = new QSpinBox;
    box->setRange(WidgetStage::smallestSide, WidgetStage::largestSide);
    box->setKeyboardTracking(false);
    box->setToolTip(toolTip);
    return box;
}

} // namespace

GalleryWindow::GalleryWindow(QWidget *parent)
    : QWidget(parent)
    , list(new WidgetList)
    , darkBox(new QCheckBox(tr("Dark background")))
    , darkThemeBox(new QCheckBox(tr("Dark theme")))
    , properties(new PropertyEditor)
    , followTimer(new QTimer(this))
    , monitor([this](const QString &text) { report(text); })
{
    setWindowTitle(tr("KivWidgets gallery"));
    setWindowIcon(pictogram(Pictogram::Overview, 64, Theme::accent()));
    setMinimumSize(smallestSize);

    auto *side = new Card;
    side->setFont(Theme::font(Theme::Small));
    auto *sideLayout = new QVBoxLayout(side);
    sideLayout->addWidget(list);
    sideLayout->addWidget(darkBox);
    sideLayout->addWidget(darkThemeBox);
    side->setMinimumWidth(listWidth);
    auto *propertiesCard = new Card;
    auto *propertiesLayout = new QVBoxLayout(propertiesCard);
    propertiesLayout->setContentsMargins(0, 0, 0, 0);
    propertiesLayout->addWidget(properties);
    propertiesCard->setMinimumWidth(propertiesWidth);

    auto *splitter = new QSplitter;
    splitter->setChildrenCollapsible(false);
    splitter->setHandleWidth(Theme::spacing);
    splitter->addWidget(side);
    splitter->addWidget(makeCentre());
    splitter->addWidget(propertiesCard);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({listWidth, 1, propertiesWidth});
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(Theme::margin, Theme::margin, Theme::margin, Theme::margin);
    layout->addWidget(splitter);

    connect(list, &WidgetList::chosen, this, &GalleryWindow::showWidget);
    connect(darkBox, &QCheckBox::toggled, this, [this](bool dark) {
        stage->setDark(dark);
        statesArea->viewport()->setPalette(stage->canvasPalette());
        keep("darkBackground", dark);
    });
    connect(darkThemeBox, &QCheckBox::toggled, this, [this](bool dark) {
        setDarkTheme(dark);
        keep("darkTheme", dark);
    });
    connect(stage, &WidgetStage::placed, this, &GalleryWindow::follow);
    connect(followTimer, &QTimer::timeout, this, &GalleryWindow::follow);
    followTimer->start(followInterval);
    setDarkTheme(false);
    showWidget(widgetNames().constFirst());
}

GalleryWindow::~GalleryWindow()
{
    // An input that is hidden delivers what was typed into it; later there were nobody to take it.
    hide();
}

QStringList GalleryWindow::widgetNames()
{
    QStringList names;
    for (const WidgetDescription &description : widgetCatalogue())
        names.append(QString::fromLatin1(description.className));
    return names;
}

void GalleryWindow::showWidget(const QString &name)
{
    const WidgetDescription *description = findWidget(name);
    if (!description)
        return;
    shown = description;
    list->select(name);
    title->setText(name);
    subtitle->setText(QString::fromLatin1(description->toolTip));
    properties->present(nullptr);
    monitor.watch(nullptr);
    stage->setAlwaysLight(description->needsLightBackground);
    stage->present(createOnStage(*description, stage->canvas()), !description->sizesItself);
    for (QWidget *input : {static_cast<QWidget *>(widthBox), static_cast<QWidget *>(heightBox),
                           static_cast<QWidget *>(naturalButton)})
        input->setEnabled(!description->sizesItself);
    monitor.watch(stage->staged());
    signalCount = 0;
    recentSignals.clear();
    signalLine->setText(tr("No signals yet"));
    presentProperties();
    follow();
    showStates();
}

void GalleryWindow::remember(const QString &file)
{
    memory.reset();
    const QSettings kept(file, QSettings::IniFormat);
    setDarkTheme(kept.value(QStringLiteral("darkTheme")).toBool());
    const QVariant background = kept.value(QStringLiteral("darkBackground"));
    if (background.isValid())
        darkBox->setChecked(background.toBool());
    memory = std::make_unique<QSettings>(file, QSettings::IniFormat);
}

void GalleryWindow::keep(const char *key, bool value)
{
    if (memory)
        memory->setValue(QLatin1String(key), value);
}

QString GalleryWindow::cppCode() const
{
    return code(toCpp);
}

QString GalleryWindow::pythonCode() const
{
    return code(toPython);
}

QString GalleryWindow::code(CodeWriter write) const
{
    QWidget *widget = stage->staged();
    if (!widget)
        return {};
    const auto given = shown->setState ? std::optional<elemDesc_t>(state) : std::nullopt;
    return write(settingsOf(widget, *shown, given), QStringLiteral("parent"));
}

void GalleryWindow::showAllStates(bool all)
{
    statesButton->setChecked(all);
}

/// Fills the view of all states where it shows.
void GalleryWindow::showStates()
{
    const bool all = statesButton->isChecked();
    statesArea->setWidget(all ? new StateSheet(*shown) : new QWidget);
    statesArea->viewport()->setPalette(stage->canvasPalette());
    centre->setCurrentIndex(all ? 1 : 0);
    zoomBox->setEnabled(!all);
}

void GalleryWindow::setDarkTheme(bool dark)
{
    QPalette palette = Theme::palette(dark);
    palette.setColor(QPalette::Highlight, dark ? QColor(0, 82, 116) : QColor(196, 235, 250));
    palette.setColor(QPalette::HighlightedText, palette.color(QPalette::Text));
    palette.setColor(QPalette::PlaceholderText, palette.color(QPalette::Mid));
    palette.setColor(QPalette::Disabled, QPalette::ButtonText, palette.color(QPalette::Mid));
    setPalette(palette);
    QPalette faint = palette;
    faint.setColor(QPalette::WindowText, palette.color(QPalette::Mid));
    subtitle->setPalette(faint);
    signalLine->setPalette(faint);
    showSilently(darkThemeBox, dark);
    darkBox->setChecked(dark);
}

QWidget *GalleryWindow::makeCentre()
{
    title = Theme::label(nullptr, Theme::Large, true);
    title->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    subtitle = new ElidedLabel;
    Theme::setText(subtitle, Theme::Small);
    subtitle->setObjectName(QStringLiteral("subtitle"));
    subtitle->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    stage = new WidgetStage;
    signalLine = Theme::label(nullptr, Theme::Small);
    signalLine->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);

    auto *reset = new QPushButton(tr("Reset"));
    reset->setFont(Theme::font(Theme::Small));
    reset->setToolTip(tr("Replaces the widget with a new one"));
    connect(reset, &QPushButton::clicked, this,
            [this] { showWidget(QString::fromLatin1(shown->className)); });

    statesArea = new QScrollArea;
    statesArea->setWidgetResizable(true);
    statesArea->setFrameShape(QFrame::NoFrame);
    statesArea->viewport()->setAutoFillBackground(true);
    useSlimScrollBars(statesArea);
    centre = new QStackedWidget;
    centre->addWidget(stage);
    centre->addWidget(statesArea);

    auto *whole = new QWidget;
    auto *layout = new QVBoxLayout(whole);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Theme::spacing);
    auto *head = new QGridLayout;
    head->setVerticalSpacing(2);
    head->addWidget(title, 0, 0);
    head->addWidget(reset, 0, 1);
    head->addWidget(subtitle, 1, 0, 1, 2);
    head->setColumnStretch(0, 1);
    layout->addLayout(head);
    layout->addWidget(makeToolBar());
    layout->addWidget(centre, 1);
    layout->addWidget(makeSizeBar());
    layout->addWidget(signalLine);
    return whole;
}

/// How the widget is shown, and the code for it.
QWidget *GalleryWindow::makeToolBar()
{
    statesButton = new QPushButton(tr("All states"));
    statesButton->setCheckable(true);
    statesButton->setToolTip(tr("Shows the widget in all its states at once"));
    zoomBox = new QSpinBox;
    zoomBox->setRange(1, WidgetStage::largestZoom);
    zoomBox->setPrefix(tr("Zoom "));
    zoomBox->setSuffix(QStringLiteral(" ×"));
    zoomBox->setToolTip(tr("Shows each pixel as a square of so many"));
    const auto copyButton = [this](const QString &text, CodeWriter write) {
        auto *button = new QPushButton(text);
        button->setToolTip(tr("Copies the statements that make the widget as it is now"));
        connect(button, &QPushButton::clicked, this, [this, write] {
            QApplication::clipboard()->setText(code(write));
            signalLine->setText(tr("Copied"));
        });
        return button;
    };

    auto *bar = new QWidget;
    bar->setFont(Theme::font(Theme::Small));
    auto *layout = new QHBoxLayout(bar);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Theme::spacing / 2);
    layout->addWidget(statesButton);
    layout->addWidget(zoomBox);
    layout->addStretch();
    layout->addWidget(copyButton(tr("Copy C++"), toCpp));
    layout->addWidget(copyButton(tr("Copy Python"), toPython));

    connect(statesButton, &QPushButton::toggled, this, [this] { showStates(); });
    connect(zoomBox, qOverload<int>(&QSpinBox::valueChanged), stage, &WidgetStage::setZoom);
    return bar;
}

QWidget *GalleryWindow::makeSizeBar()
{
    enabledBox = new QCheckBox(tr("Enabled"));
    widthBox = sizeBox(tr("Width in pixels"));
    heightBox = sizeBox(tr("Height in pixels"));
    naturalButton = new QPushButton(tr("Natural size"));

    auto *bar = new QWidget;
    bar->setFont(Theme::font(Theme::Small));
    auto *layout = new QHBoxLayout(bar);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Theme::spacing / 2);
    layout->addWidget(enabledBox);
    layout->addStretch();
    layout->addWidget(widthBox);
    layout->addWidget(new QLabel(QStringLiteral("×")));
    layout->addWidget(heightBox);
    layout->addWidget(naturalButton);

    connect(enabledBox, &QCheckBox::toggled, this, [this](bool enabled) {
        if (stage->staged())
            stage->staged()->setEnabled(enabled);
        follow();
    });
    for (QSpinBox *box : {widthBox, heightBox}) {
        connect(box, qOverload<int>(&QSpinBox::valueChanged), this, [this] {
            stage->resizeStaged(QSize(widthBox->value(), heightBox->value()));
            follow();
        });
    }
    connect(naturalButton, &QPushButton::clicked, this, [this] {
        stage->takeNaturalSize();
        follow();
    });
    return bar;
}

void GalleryWindow::presentProperties()
{
    std::vector<PropertyEditor::Setting> settings;
    QString heading;
    QWidget *widget = stage->staged();
    if (shown->setState) {
        heading = tr("State of the element");
        // It cannot be read back.
        state = stateOnStage(*shown);
        shown->setState(widget, state);
        const auto add = [&](const QString &name, const QStringList &choices, quint8 *field) {
            settings.push_back({name, ValueEditor::create(choices), [field] { return int(*field); },
                                [this, widget, field](const QVariant &value) {
                                    *field = quint8(value.toInt());
                                    shown->setState(widget, state);
                                }});
        };
        add(tr("alarm"), stateNames<AlarmState>(), &state.alarmSt);
        add(tr("operation"), stateNames<OperatingState>(), &state.elemSt);
    }
    if (auto *stack = qobject_cast<RotateStackedWidget *>(widget)) {
        heading = tr("Pages");
        animatesPages = true;
        stack->setAnimationEnabled(animatesPages);
        settings.push_back({tr("animated"), ValueEditor::create(QMetaType::Bool, {}),
                            [this] { return animatesPages; },
                            [this, stack](const QVariant &value) {
                                animatesPages = value.toBool();
                                stack->setAnimationEnabled(animatesPages);
                            }});
        QStringList pages;
        for (int i = 0; i < stack->count(); ++i)
            pages.append(QString::number(i + 1));
        settings.push_back(
            {tr("page"), ValueEditor::create(pages), [stack] { return stack->currentIndex(); },
             [stack](const QVariant &value) { stack->setCurrentIndex(value.toInt()); }});
    }
    properties->present(widget, heading, settings);
}

void GalleryWindow::follow()
{
    QWidget *widget = stage->staged();
    if (!widget)
        return;
    properties->refresh();
    showSilently(enabledBox, widget->isEnabled());
    showSilently(widthBox, widget->width());
    showSilently(heightBox, widget->height());
}

void GalleryWindow::report(const QString &text)
{
    recentSignals.prepend(text);
    while (recentSignals.size() > signalsKept)
        recentSignals.removeLast();
    ++signalCount;
    signalLine->setText(QStringLiteral("%1%2%3").arg(
        tr("Signal %1:  ").arg(signalCount), recentSignals.join(Theme::separator()),
        signalCount > signalsKept ? QStringLiteral(" …") : QString()));
}

// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "minimal.h"
#include "subject.h"
#include "widgetcatalogue.h"

#include <aerobutton.h>
#include <aerogroupbox.h>
#include <aerolinebar.h>
#include <aerostatusbar.h>
#include <aeroswitch.h>
#include <metrobatticon.h>
#include <metrocirclerate.h>
#include <metrolinerate.h>
#include <metronavdrawer.h>
#include <metroshelter.h>
#include <metrostatusbar.h>
#include <metrosysicon.h>
#include <metrotabicon.h>
#include <metroxbar.h>
#include <rotatestackedwidget.h>
#include <simpleslideswitch.h>
#include <slideswitch.h>
#include <transpbutton.h>

#include <QtGui/QIcon>
#include <QtWidgets/QDial>
#include <QtWidgets/QGroupBox>
#include <QtWidgets/QProgressBar>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QSlider>
#include <QtWidgets/QToolButton>

#include <cmath>

#ifdef KIV_HAS_QWT
#include <qwt_dial.h>
#include <qwt_dial_needle.h>
#include <qwt_thermo.h>
#endif

namespace {

/// What a console shows most of the time, and what it changes to.
constexpr elemDesc_t states[] = {{1, 5}, {2, 6}};

QIcon lamp(int side)
{
    QPixmap pixmap(side, side);
    pixmap.fill(QColor(0, 174, 240, 200));
    return QIcon(pixmap);
}

QString labelOf(int step)
{
    return step % 2 == 0 ? QStringLiteral("Start") : QStringLiteral("Stop");
}

int percentOf(int step)
{
    return 20 + step % 61;
}

template <typename W>
QWidget *plain(QWidget *parent)
{
    return new W(parent);
}

/// A button with a label and an icon of @p side pixels (none for 0).
template <typename W, int side>
QWidget *button(QWidget *parent)
{
    auto *widget = new W(parent);
    if (side > 0) {
        widget->setIconSize(QSize(side, side));
        widget->setIcon(lamp(side));
    }
    widget->setText(labelOf(0));
    return widget;
}

template <typename W, int side>
QWidget *icon(QWidget *parent)
{
    auto *widget = new W(parent);
    widget->setIconSize(QSize(side, side));
    widget->setIcon(lamp(side));
    return widget;
}

template <typename W>
void changeText(QWidget *widget, int step)
{
    static_cast<W *>(widget)->setText(labelOf(step));
}

template <typename W>
void changeState(QWidget *widget, int step)
{
    static_cast<W *>(widget)->MetroStyle::setState(states[step % 2]);
}

template <typename W>
void changeValue(QWidget *widget, int step)
{
    static_cast<W *>(widget)->setValue(percentOf(step));
}

/// A value that did not come before, nor will soon.
template <typename W>
void changeToFreshValue(QWidget *widget, int step)
{
    constexpr double goldenRatio = 0.6180339887498949;
    constexpr double range = 61.0;
    static_cast<W *>(widget)->setValue(20.0 + std::fmod(step * goldenRatio * range, range));
}

template <typename W>
void toggle(QWidget *widget, int)
{
    auto *control = static_cast<W *>(widget);
    control->setChecked(!control->isChecked());
}

template <typename W>
void changeTitle(QWidget *widget, int step)
{
    static_cast<W *>(widget)->setTitle(labelOf(step));
}

QWidget *glassBox(QWidget *parent)
{
    auto *box = new AeroGroupbox(parent);
    box->setTitle(labelOf(0));
    return box;
}

QWidget *lineBar(QWidget *parent)
{
    auto *bar = new AeroLinebar(parent);
    bar->setValuePosition(AeroLinebar::CenterVal);
    return bar;
}

QWidget *lightSwitch(QWidget *parent)
{
    auto *control = new AeroSwitch(parent);
    control->setText(labelOf(0));
    control->setCheckable(true);
    return control;
}

void changeStripColor(QWidget *widget, int step)
{
    static_cast<AeroStatusbar *>(widget)->setProperty("color",
                                                      QColor(step % 2 == 0 ? Qt::gray : Qt::blue));
}

QWidget *stack(QWidget *parent)
{
    auto *pages = new RotateStackedWidget(parent);
    for (int i = 0; i < 2; ++i)
        pages->addWidget(new QWidget);
    return pages;
}

void changePage(QWidget *widget, int step)
{
    static_cast<RotateStackedWidget *>(widget)->setCurrentIndex(step % 2);
}

QWidget *groupBox(QWidget *parent)
{
    return new QGroupBox(labelOf(0), parent);
}

QWidget *pushButton(QWidget *parent)
{
    return new QPushButton(labelOf(0), parent);
}

QWidget *toolButton(QWidget *parent)
{
    auto *widget = new QToolButton(parent);
    widget->setIconSize(QSize(36, 36));
    widget->setIcon(lamp(36));
    return widget;
}

void changeIcon(QWidget *widget, int step)
{
    static_cast<QToolButton *>(widget)->setIcon(lamp(36 - step % 2));
}

/// A dial of 200 x 134 pixels.
QWidget *largeDial(QWidget *parent)
{
    auto *dial = new MetroCirclerate(parent);
    dial->setRadius(99);
    return dial;
}

QWidget *slider(QWidget *parent)
{
    return new QSlider(Qt::Horizontal, parent);
}

template <typename W>
QWidget *range(QWidget *parent)
{
    auto *widget = new W(parent);
    widget->setRange(0, 100);
    return widget;
}

#ifdef KIV_HAS_QWT
QWidget *qwtDial(QWidget *parent)
{
    auto *dial = new QwtDial(parent);
    dial->setScale(0, 100);
    dial->setNeedle(new QwtDialSimpleNeedle(QwtDialSimpleNeedle::Arrow));
    return dial;
}

QWidget *qwtThermo(QWidget *parent)
{
    auto *thermo = new QwtThermo(parent);
    thermo->setOrientation(Qt::Horizontal);
    thermo->setScale(0, 100);
    return thermo;
}
#endif

constexpr auto library = Subject::Library;
constexpr auto peer = Subject::Peer;
constexpr auto minimal = Subject::Minimal;

// clang-format off
/// The widgets as a console shows and changes them, in sizes that stay the same, so that measurements
/// can be compared. Their changes call the setter, without the look-ups of changeAnything().
const Subject ownSubjects[] = {
    {"AeroButton", library, {100, 32}, button<AeroButton, 0>, changeText<AeroButton>},
    {"AeroSwitch", library, {100, 32}, lightSwitch, toggle<AeroSwitch>},
    {"TranspButton", library, {80, 60}, button<TranspButton, 24>, changeText<TranspButton>},
    {"AeroStatusbar", library, {300, 40}, plain<AeroStatusbar>, changeStripColor},
    {"AeroGroupbox", library, {200, 120}, glassBox, changeTitle<AeroGroupbox>},
    {"MetroSysIcon", library, {52, 52}, icon<MetroSysIcon, 32>, changeState<MetroSysIcon>},
    {"MetroBattIcon", library, {72, 72}, plain<MetroBattIcon>, changeState<MetroBattIcon>},
    {"MetroShelter", library, {140, 44}, button<MetroShelter, 0>, changeState<MetroShelter>},
    {"MetroTabicon", library, {64, 64}, icon<MetroTabicon, 32>, changeState<MetroTabicon>},
    {"MetroStatusbar", library, {800, 42}, plain<MetroStatusbar>, changeState<MetroStatusbar>},
    {"MetroNavdrawer", library, {200, 90}, plain<MetroNavdrawer>, changeState<MetroNavdrawer>},
    {"SlideSwitch", library, {190, 60}, plain<SlideSwitch>, toggle<SlideSwitch>},
    {"SimpleSlideSwitch", library, {78, 27}, plain<SimpleSlideSwitch>, toggle<SimpleSlideSwitch>},
    {"RotateStackedWidget", library, {200, 120}, stack, changePage},
    {"AeroLinebar", library, {200, 40}, lineBar, changeValue<AeroLinebar>},
    {"MetroCirclerate", library, {76, 51}, plain<MetroCirclerate>, changeValue<MetroCirclerate>},
    {"MetroLinerate", library, {200, 40}, plain<MetroLinerate>, changeValue<MetroLinerate>},
    {"MetroXbar", library, {200, 40}, plain<MetroXbar>, changeValue<MetroXbar>},
};

const Subject others[] = {
    {"LargeDial", library, {200, 134}, largeDial, changeValue<MetroCirclerate>},
    {"LargeGroupbox", library, {300, 200}, glassBox, changeTitle<AeroGroupbox>},
    {"FreshDial", library, {76, 51}, plain<MetroCirclerate>, changeToFreshValue<MetroCirclerate>},
    {"LargeFreshDial", library, {200, 134}, largeDial, changeToFreshValue<MetroCirclerate>},
    {"MinimalGauge", minimal, {76, 51}, plain<MinimalGauge>, changeValue<MinimalGauge>},
    {"LargeMinimalGauge", minimal, {200, 134}, plain<MinimalGauge>, changeValue<MinimalGauge>},
    {"QPushButton", peer, {100, 32}, pushButton, changeText<QPushButton>},
    {"QToolButton", peer, {52, 52}, toolButton, changeIcon},
    {"QGroupBox", peer, {200, 120}, groupBox, changeTitle<QGroupBox>},
    {"QSlider", peer, {200, 40}, slider, changeValue<QSlider>},
    {"QDial", peer, {76, 51}, range<QDial>, changeValue<QDial>},
    {"LargeQDial", peer, {200, 134}, range<QDial>, changeValue<QDial>},
    {"QProgressBar", peer, {200, 40}, range<QProgressBar>, changeValue<QProgressBar>},
#ifdef KIV_HAS_QWT
    {"QwtDial", peer, {76, 51}, qwtDial, changeValue<QwtDial>},
    {"LargeQwtDial", peer, {200, 134}, qwtDial, changeValue<QwtDial>},
    {"QwtThermo", peer, {200, 40}, qwtThermo, changeValue<QwtThermo>},
#endif
};
// clang-format on

/// Changes what a console changes most, for a widget without a subject of its own.
void changeAnything(QWidget *widget, int step)
{
    const WidgetDescription *description =
        findWidget(QString::fromLatin1(widget->metaObject()->className()));
    if (description && description->setState) {
        description->setState(widget, states[step % 2]);
        return;
    }
    if (widget->property("value").isValid())
        widget->setProperty("value", percentOf(step));
    else if (description && description->label.property)
        widget->setProperty(description->label.property, labelOf(step));
    else
        widget->setEnabled(step % 2 == 0);
}

Subject subjectOf(const WidgetDescription &description)
{
    for (const Subject &subject : ownSubjects) {
        if (qstrcmp(subject.name, description.className) == 0)
            return subject;
    }
    return {description.className, library, description.size, description.create, changeAnything};
}

} // namespace

const QVector<Subject> &subjects()
{
    static const QVector<Subject> all = [] {
        QVector<Subject> each;
        for (const WidgetDescription &description : widgetCatalogue())
            each.append(subjectOf(description));
        for (const Subject &other : others)
            each.append(other);
        return each;
    }();
    return all;
}

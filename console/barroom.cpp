// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "barroom.h"

#include "elidedlabel.h"
#include "theme.h"

#include <metrolinerate.h>
#include <metroxbar.h>

#include <QtCore/QEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace {

constexpr int barUnits = 26;
constexpr int leastBar = 12;
constexpr int stripUnits = 5; // of the limits, below the bar
constexpr double scaleOfTwoLines = 0.8;
constexpr int fullLoad = 100;
constexpr int mostOfLoadBar = 255;
/// Beyond, the bar says so in words.
constexpr double mostOfBar = 9999;
/// What the bars leave room for beside themselves.
const QString roomFor = QStringLiteral("138");

QString endText(double end)
{
    return Values::number(end, 0);
}

} // namespace

BarRoom::BarRoom(Quantity shownQuantity, QWidget *parent)
    : QWidget(parent)
    , quantity(shownQuantity)
    , name(new ElidedLabel(this))
    , phases(new ElidedLabel(this))
    , number(Theme::label(this, Theme::Large, true))
    , clip(new QWidget(this))
    , bar(new MetroXbar(clip))
{
    Theme::setText(name, Theme::Normal);
    Theme::setText(phases, Theme::Small);
    phases->setForegroundRole(QPalette::Mid);
    name->setText(nameOf(quantity));
    name->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    number->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    number->setObjectName(nameOf(quantity) + QStringLiteral(" value"));
    bar->setAccessibleName(nameOf(quantity));
    bar->setObjectName(nameOf(quantity));
    if (quantity == Quantity::Load) {
        loadBar = new MetroLinerate(clip);
        loadBar->setObjectName(QStringLiteral("loadBar"));
        loadBar->setAccessibleName(nameOf(quantity));
    }

    auto *texts = new QVBoxLayout;
    texts->setSpacing(0);
    texts->addStretch();
    texts->addWidget(name);
    texts->addWidget(phases);
    texts->addStretch();
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(texts);
    layout->addWidget(clip, 1);
    layout->addWidget(number);
    applyScale();
    applyColors();
    showValue();
}

void BarRoom::applyScale()
{
    // Wide enough for each text, so that the bars of all rooms are of one length.
    const int nameWidth = name->fontMetrics().horizontalAdvance(nameOf(Quantity::BypassVoltage) +
                                                                QStringLiteral(" L3-L1"));
    phases->setLines(Theme::scale() < scaleOfTwoLines ? 1 : 2);
    for (QWidget *text : {static_cast<QWidget *>(name), static_cast<QWidget *>(phases)})
        text->setFixedWidth(nameWidth);
    number->setFixedWidth(number->fontMetrics().horizontalAdvance(QStringLiteral("> 99999 V")));
    const int ends = QFontMetrics(Theme::font(Theme::Small)).height();
    clip->setMinimumHeight(std::max(leastBar, Theme::px(barUnits)) + Theme::px(stripUnits) + ends);
    clip->setMaximumHeight(2 * clip->minimumHeight());
    layout()->setSpacing(Theme::px(Theme::margin));
    arrange();
}

void BarRoom::showUps(const UpsModel &ups)
{
    const Scale newScale = ups.scale(quantity);
    const Reading newReading = ups.reading(quantity);
    QStringList texts;
    const QVector<Reading> readings = phaseReadingsOf(ups.snapshot(), quantity);
    for (const Reading &phase : readings)
        texts += QString(phase.phase + QLatin1Char(' ') + phase.text)
                     .replace(QLatin1Char(' '), QChar(QChar::Nbsp)); // a line ends between them
    phases->setText(texts.join(QStringLiteral(", ")));
    phases->setVisible(!texts.isEmpty());
    name->setText(newReading.phase.isEmpty()
                      ? nameOf(quantity)
                      : nameOf(quantity) + QLatin1Char(' ') + newReading.phase);
    if (newScale == scale && newReading == reading)
        return;
    scale = newScale;
    reading = newReading;
    showValue();
}

void BarRoom::showValue()
{
    number->setText(reading.text.isEmpty() ? Values::noData() : reading.text);
    showAlarm();
    const bool missing = reading.state == Reading::State::Missing;
    const long whole = std::lround(std::clamp(reading.value, -mostOfBar - 1, mostOfBar + 1));
    if (missing) {
        showBar(nullptr);
    } else if (loadBar && whole >= 0 && whole <= mostOfLoadBar) {
        loadBar->setValue(int(whole));
        showBar(loadBar);
    } else {
        // Also for those who hear it, the number is the measured one.
        const QString unit = QLatin1Char(' ') + unitOf(quantity);
        QString words = unit + QLatin1Char(' ');
        if (reading.value > mostOfBar)
            words = unit + tr(" or more");
        else if (reading.value < -mostOfBar)
            words = unit + tr(" or less");
        bar->setMeasure(words);
        bar->setMinValue(int(scale.minimum));
        bar->setMaxValue(int(scale.maximum));
        bar->setValue(int(whole));
        showBar(bar);
    }
    arrange();
    update();
}

/// A value beyond its limits has another colour, and says so.
void BarRoom::showAlarm()
{
    QPalette look = palette();
    if (reading.outsideLimits)
        look.setColor(QPalette::WindowText, Theme::gaugeColors(Theme::isDark()).outOfLimits);
    number->setPalette(reading.outsideLimits ? look : QPalette());
    number->setToolTip(reading.outsideLimits ? tr("Outside the limits of the UPS") : QString());
}

void BarRoom::showBar(QWidget *shownBar)
{
    bar->setVisible(shownBar == bar);
    if (loadBar)
        loadBar->setVisible(shownBar == loadBar);
}

void BarRoom::applyColors()
{
    const QColor track = Theme::gaugeColors(Theme::isDark()).track;
    showAlarm();
    bar->setBackgroundColor(track);
    if (loadBar) {
        loadBar->setBackgroundColor(track);
        // The empty bar is painted anew with the next drop of all layers.
        loadBar->setEnabled(false);
        loadBar->setEnabled(true);
    }
}

QRect BarRoom::trackRect() const
{
    const int below = Theme::px(stripUnits) + QFontMetrics(Theme::font(Theme::Small)).height();
    return {clip->x(), clip->y(), clip->width(), std::max(clip->height() - below, 1)};
}

void BarRoom::arrange()
{
    const QRect track = trackRect();
    const auto place = [&track](QWidget *gauge, const QString &unit) {
        // So long that its number lies beyond the clip.
        const QSize text = QFontMetrics(gauge->font()).size(Qt::TextSingleLine, roomFor + unit);
        gauge->setGeometry(0, 0, track.width() + text.width() - 1, track.height());
    };
    place(bar, bar->getMeasure());
    if (!loadBar)
        return;
    place(loadBar, QStringLiteral("%"));
    // Its upper third is for overload alone. Without any it would be an empty bar above the other:
    // it lies beyond the clip, with the line below it.
    if (loadBar->getValue() <= fullLoad) {
        const int height = (track.height() + 1) * 3 / 2;
        loadBar->setGeometry(0, track.height() - height, loadBar->width(), height);
    }
}

int BarRoom::columnOf(double value) const
{
    const QRect track = trackRect();
    return track.left() + int(std::lround(scale.shareOf(value) * (track.width() - 1)));
}

void BarRoom::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const QRect track = trackRect();
    const Theme::GaugeColors colors = Theme::gaugeColors(Theme::isDark());
    if (reading.state == Reading::State::Missing) {
        painter.fillRect(track, colors.noData);
        painter.fillRect(track, QBrush(colors.track, Qt::BDiagPattern));
    }
    const int strip = std::max(Theme::px(stripUnits) - 1, 2);
    const QVector<ScaleArc> arcs = scale.limitArcs();
    for (const ScaleArc &arc : arcs) {
        const int from = columnOf(arc.from);
        painter.fillRect(from, track.bottom() + 2, columnOf(arc.to) - from + 1, strip,
                         colors.outOfLimits);
    }
    const QColor text = palette().color(foregroundRole());
    painter.setFont(Theme::font(Theme::Small));
    painter.setPen(text);
    const QFontMetrics metrics(painter.font());
    const int top = track.bottom() + 2 + strip;
    const int low = metrics.horizontalAdvance(endText(scale.minimum));
    const int high = metrics.horizontalAdvance(endText(scale.maximum));
    const auto write = [&](int x, double value) {
        painter.drawText(x, top + metrics.ascent(), endText(value));
    };
    if (scale.isKnown) {
        write(track.left(), scale.minimum);
        write(track.right() + 1 - high, scale.maximum);
    }
    if (!scale.nominal)
        return;
    const int column = columnOf(*scale.nominal);
    const int half = metrics.horizontalAdvance(endText(*scale.nominal)) / 2;
    const int gap = metrics.horizontalAdvance(QLatin1Char(' '));
    painter.fillRect(column - 1, track.bottom() + 1, 2, strip + 1, text);
    if (column - half > track.left() + low + gap && column + half < track.right() - high - gap)
        write(column - half, *scale.nominal);
}

void BarRoom::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    layout()->activate();
    arrange();
}

void BarRoom::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        applyColors();
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        arrange();
}

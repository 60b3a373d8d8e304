// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "trendspage.h"

#include "chart.h"
#include "choicebar.h"
#include "display.h"
#include "theme.h"

#include <QtCore/QBuffer>
#include <QtCore/QTimer>
#include <QtGui/QPainter>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QVBoxLayout>

#include <algorithm>

namespace {

constexpr int spacingUnits = 6;
constexpr int readMsecs = 30;
constexpr int noticeMsecs = 6000;
constexpr int slowMsecs = 400; // an answer that takes longer is announced
constexpr int shortestRefresh = 2000;
constexpr int longestRefresh = 60000;
constexpr int refreshes = 300; // in the time that is shown

struct Period
{
    const char *name;
    qint64 length;
};
constexpr Period allPeriods[] = {
    {"10 min", 10 * minuteMsecs}, {"1 h", hourMsecs},      {"24 h", dayMsecs},
    {"7 d", 7 * dayMsecs},        {"30 d", 30 * dayMsecs},
};
constexpr qint64 usualPeriod = hourMsecs;

struct Offered
{
    Quantity quantity;
    const char *name;
    bool usual;
};
constexpr Offered offered[] = {
    {Quantity::Load, "Load", true},
    {Quantity::BatteryCharge, "Charge", true},
    {Quantity::BatteryRuntime, "Runtime", false},
    {Quantity::InputVoltage, "Input", true},
    {Quantity::OutputVoltage, "Output", true},
    {Quantity::Temperature, "Temp.", false},
    {Quantity::InputFrequency, "Freq.", false},
};

} // namespace

TrendsPage::TrendsPage(QWidget *parent)
    : Page(parent)
    , controls(new Card(this))
    , chartCard(new Card(this))
    , periodRow(new QHBoxLayout)
    , choiceRow(new QHBoxLayout)
    , chart(new Chart(chartCard))
    , refreshTimer(new QTimer(this))
    , readTimer(new QTimer(this))
    , slowTimer(new QTimer(this))
    , noticeTimer(new QTimer(this))
{
    for (const Period &period : allPeriods) {
        QPushButton *button = makeButton(tr(period.name), QLatin1String(period.name),
                                         tr("The past %1").arg(tr(period.name)));
        button->setCheckable(true);
        const qint64 wanted = period.length;
        connect(button, &QPushButton::clicked, this, [this, wanted] { choosePeriod(wanted); });
        periodRow->addWidget(button, 1);
        periods.push_back(button);
    }
    periodRow->addStretch(1);
    const struct
    {
        QString text;
        QString suffix;
        void (TrendsPage::*write)(const QString &);
        QString help;
    } writers[] = {{tr("PNG"), QStringLiteral("png"), &TrendsPage::exportImage,
                    tr("Writes the chart to an image")},
                   {tr("CSV"), QStringLiteral("csv"), &TrendsPage::exportValues,
                    tr("Writes the chart's values to a file")}};
    for (const auto &writer : writers) {
        QPushButton *button =
            makeButton(writer.text, QStringLiteral("export ") + writer.suffix, writer.help);
        connect(
            button, &QPushButton::clicked, this,
            [this, suffix = writer.suffix, write = writer.write] { chooseFile(suffix, write); });
        periodRow->addWidget(button, 1);
        exports.push_back(button);
    }
    for (const Offered &one : offered) {
        QPushButton *button =
            makeButton(tr(one.name), nameOf(one.quantity) + QStringLiteral(" choice"),
                       tr("Shows or hides: %1").arg(nameOf(one.quantity)));
        button->setAccessibleName(nameOf(one.quantity));
        button->setCheckable(true);
        button->setChecked(one.usual);
        connect(button, &QPushButton::toggled, this, &TrendsPage::readSoon);
        choiceRow->addWidget(button, 1);
        choices.push_back({one.quantity, button});
    }
    auto *rows = new QVBoxLayout(controls);
    rows->addLayout(periodRow);
    rows->addLayout(choiceRow);
    auto *inside = new QVBoxLayout(chartCard);
    inside->addWidget(chart);
    QVBoxLayout *layout = Theme::pageLayout(this);
    layout->addWidget(controls);
    layout->addWidget(chartCard, 1);

    connect(chart, &Chart::spanChosen, this, &TrendsPage::chooseSpan);
    connect(refreshTimer, &QTimer::timeout, this, [this] {
        if (follows && isVisible() && !waits)
            read();
    });
    readTimer->setSingleShot(true);
    readTimer->setInterval(readMsecs);
    connect(readTimer, &QTimer::timeout, this, &TrendsPage::read);
    noticeTimer->setSingleShot(true);
    connect(noticeTimer, &QTimer::timeout, this, &TrendsPage::showNotice);
    slowTimer->setSingleShot(true);
    slowTimer->setInterval(slowMsecs);
    connect(slowTimer, &QTimer::timeout, this, &TrendsPage::showNotice);
    TrendsPage::applyScale();
    choosePeriod(usualPeriod);
    setHistory(nullptr);
}

QPushButton *TrendsPage::makeButton(const QString &text, const QString &name, const QString &help)
{
    auto *button = new ChoiceButton<QPushButton>(text, controls);
    Theme::setText(button, Theme::Normal);
    button->setObjectName(name);
    button->setToolTip(help);
    button->setAccessibleDescription(help);
    return button;
}

void TrendsPage::setHistory(History *newHistory, TrendSource *newSource)
{
    if (history)
        history->disconnect(this);
    if (source)
        source->disconnect(this);
    history = newHistory;
    source = newSource ? newSource : newHistory;
    waits = false;
    slowTimer->stop();
    problem.clear();
    chart->setLanes({}, {});
    if (history)
        connect(history, &History::fileWritten, this,
                [this](int, const QString &file, const QString &why) {
                    say(why.isEmpty() ? tr("Written: %1").arg(file)
                                      : tr("Not written: %1").arg(why));
                });
    if (source) {
        connect(source, &TrendSource::trendRead, this, &TrendsPage::take);
        connect(source, &TrendSource::replaced, this, &TrendsPage::readSoon);
        connect(source, &TrendSource::statusChanged, this, &TrendsPage::showNotice);
    }
    for (QPushButton *button : exports)
        button->setEnabled(history != nullptr);
    showNotice();
    readSoon();
}

void TrendsPage::say(const QString &text)
{
    message = text;
    noticeTimer->start(noticeMsecs);
    showNotice();
}

void TrendsPage::showNotice()
{
    const QString notKept = source ? source->whyNotKept(upsId) : QString();
    if (noticeTimer->isActive())
        chart->setNotice(message);
    else if (!source)
        chart->setNotice(noHistoryText());
    else if (!notKept.isEmpty())
        chart->setNotice(notKept);
    else if (waits && !slowTimer->isActive())
        chart->setNotice(tr("Loading …"));
    else
        chart->setNotice(problem);
}

void TrendsPage::choosePeriod(qint64 wanted)
{
    length = wanted;
    follows = true;
    for (std::size_t i = 0; i < periods.size(); ++i)
        periods[i]->setChecked(allPeriods[i].length == wanted);
    refreshTimer->start(std::clamp(int(wanted / refreshes), shortestRefresh, longestRefresh));
    read();
}

void TrendsPage::chooseSpan(const TimeSpan &span)
{
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    chosen = span;
    // There is nothing to see of the future.
    if (chosen.to > now) {
        chosen.from -= chosen.to - now;
        chosen.to = now;
    }
    length = chosen.to - chosen.from;
    follows = chosen.to >= now;
    for (QPushButton *button : periods)
        button->setChecked(false);
    chart->setSpan(chosen);
    readSoon();
}

void TrendsPage::readSoon()
{
    if (!readTimer->isActive())
        readTimer->start();
}

void TrendsPage::read()
{
    if (follows) {
        chosen.to = QDateTime::currentMSecsSinceEpoch();
        chosen.from = chosen.to - length;
    }
    if (!source || upsId.isEmpty())
        return;
    QVector<Quantity> quantities;
    for (const Choice &choice : choices) {
        if (choice.button->isChecked())
            quantities.append(choice.quantity);
    }
    source->drop(asked);
    if (!waits)
        slowTimer->start();
    waits = true;
    asked = source->readTrend(upsId, quantities, chosen, chart->columns());
}

void TrendsPage::take(int number, const Trend &trend)
{
    if (number != asked)
        return;
    waits = false;
    slowTimer->stop();
    problem = trend.problem;
    showNotice();
    QVector<ChartLane> lanes;
    for (const Trend::Curve &curve : trend.curves)
        lanes.append({curve.quantity, latest.measure(curve.quantity), curve.points});
    chart->setSpan(trend.span);
    chart->setLanes(lanes, trend.onBattery);
}

void TrendsPage::showUps(const UpsModel &ups)
{
    latest = ups.snapshot();
    if (ups.id() == upsId)
        return;
    upsId = ups.id();
    chart->setLanes({}, {});
    problem.clear();
    showNotice();
    readSoon();
}

void TrendsPage::showEvent(QShowEvent *event)
{
    Page::showEvent(event);
    readSoon();
}

void TrendsPage::resizeEvent(QResizeEvent *event)
{
    Page::resizeEvent(event);
    readSoon(); // as many values as there are pixels
}

void TrendsPage::chooseFile(const QString &suffix, void (TrendsPage::*write)(const QString &))
{
    auto *dialog = new QFileDialog(this, tr("Export the chart"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix(suffix);
    dialog->selectFile(
        QStringLiteral("trend-%1.%2").arg(QDate::currentDate().toString(Qt::ISODate), suffix));
    connect(dialog, &QFileDialog::fileSelected, this, write);
    dialog->open();
}

void TrendsPage::exportImage(const QString &file)
{
    if (!history)
        return;
    chart->setNotice(QString());
    QPixmap image(chart->size() * chart->devicePixelRatioF());
    image.setDevicePixelRatio(chart->devicePixelRatioF());
    image.fill(palette().color(QPalette::Base));
    chart->render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    image.save(&buffer, "PNG");
    history->writeFile(file, bytes);
}

void TrendsPage::exportValues(const QString &file)
{
    if (!history)
        return;
    constexpr int digits = 7; // as they are kept
    const auto text = [](float value) { return QString::number(double(value), 'g', digits); };
    QString lines =
        csvLine({QStringLiteral("Time (UTC)"), QStringLiteral("UPS"), QStringLiteral("Quantity"),
                 QStringLiteral("Unit"), QStringLiteral("Low"), QStringLiteral("Mean"),
                 QStringLiteral("High")});
    for (const ChartLane &lane : chart->lanes()) {
        for (const TrendPoint &point : lane.points)
            lines +=
                csvLine({csvTime(point.at), upsId, nameOf(lane.quantity), unitOf(lane.quantity),
                         text(point.low), text(point.mean), text(point.high)});
    }
    history->writeFile(file, QByteArrayLiteral("\xEF\xBB\xBF") + lines.toUtf8());
}

QSize TrendsPage::minimumSizeHint() const
{
    return layout()->minimumSize();
}

void TrendsPage::applyScale()
{
    const int margin = Theme::px(Theme::margin);
    const int spacing = Theme::px(spacingUnits);
    for (Card *card : {controls, chartCard})
        card->layout()->setContentsMargins(margin, spacing, margin, spacing);
    controls->layout()->setSpacing(spacing);
    periodRow->setSpacing(spacing);
    choiceRow->setSpacing(spacing);
    const QList<QPushButton *> buttons = controls->findChildren<QPushButton *>();
    for (QPushButton *button : buttons) {
        button->setMinimumHeight(Theme::touchSize());
        button->setMinimumWidth(std::max(
            Theme::touchSize(), button->fontMetrics().horizontalAdvance(button->text()) + 8));
    }
    chart->updateGeometry();
}

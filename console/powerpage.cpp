#include "powerpage.h"

#include "setup.h"
#include "theme.h"

#include <metrolinerate.h>
#include <metroxbar.h>

#include <QtWidgets/QGridLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace {

constexpr int barHeight = 34;
constexpr int nameWidth = 120;
/// The bar of the load shows whole percents up to here.
constexpr double highestLoad = 255;
/// Scale of a voltage bar until the UPS tells one.
constexpr int defaultMaximum = 300;

int asInt(double number)
{
    constexpr double widest = 1e9;
    return int(std::lround(std::clamp(number, -widest, widest)));
}

} // namespace

PowerPage::PowerPage(QWidget *parent)
    : Page(parent)
{
    QVBoxLayout *layout = Theme::pageLayout(this);
    layout->addWidget(makeBars());
    layout->addWidget(makeNumbers(), 1);
}

QWidget *PowerPage::makeBars()
{
    auto *card = new Card(this);
    card->setAlwaysLight(true);
    auto *grid = new QGridLayout(card);
    grid->setContentsMargins(Theme::margin, Theme::margin, Theme::margin, Theme::margin);
    grid->setHorizontalSpacing(Theme::margin);
    grid->setVerticalSpacing(Theme::margin);
    grid->setColumnMinimumWidth(0, nameWidth);
    grid->setColumnStretch(1, 1);

    load = new MetroLinerate(card);
    load->setObjectName(QStringLiteral("loadBar"));
    noLoad = addRow(grid, 0, Quantity::Load, load);
    const Quantity shown[] = {Quantity::InputVoltage, Quantity::BypassVoltage,
                              Quantity::OutputVoltage};
    for (const Quantity quantity : shown) {
        auto *bar = new MetroXbar(card);
        // The space at the end keeps the unit clear of the bar's edge.
        setUp(bar, {{"measure", QStringLiteral(" V ")}, {"maxValue", defaultMaximum}});
        voltages.push_back({quantity, bar, addRow(grid, grid->rowCount(), quantity, bar)});
    }
    return card;
}

QLabel *PowerPage::addRow(QGridLayout *grid, int row, Quantity quantity, QWidget *bar)
{
    // Black in both looks, as the bars write their values.
    const auto makeBlack = [](QLabel *label) {
        QPalette palette = label->palette();
        palette.setColor(QPalette::WindowText, Qt::black);
        label->setPalette(palette);
        return label;
    };
    QWidget *card = grid->parentWidget();
    grid->addWidget(makeBlack(Theme::label(card, Theme::Large, false, nameOf(quantity))), row, 0);
    bar->setAccessibleName(nameOf(quantity));
    bar->setFont(Theme::font(Theme::Large, true));
    bar->setFixedHeight(barHeight);
    grid->addWidget(bar, row, 1);
    QLabel *noData = makeBlack(Theme::label(card, Theme::Large, false, tr("no data")));
    noData->setFixedHeight(barHeight);
    grid->addWidget(noData, row, 1);
    return noData;
}

QWidget *PowerPage::makeNumbers()
{
    auto *card = new Card(this);
    auto *grid = new QGridLayout(card);
    grid->setContentsMargins(Theme::margin, Theme::margin, Theme::margin, Theme::margin);
    grid->setHorizontalSpacing(Theme::margin);
    const struct
    {
        Quantity quantity;
        int decimals;
    } shown[] = {
        {Quantity::OutputCurrent, 1},  {Quantity::OutputPower, 0},
        {Quantity::InputFrequency, 1}, {Quantity::OutputFrequency, 1},
        {Quantity::BatteryVoltage, 1}, {Quantity::Temperature, 1},
    };
    constexpr int columns = 3;
    for (const auto &[quantity, decimals] : shown) {
        auto *cell = new QVBoxLayout;
        cell->setSpacing(2);
        QLabel *name = Theme::label(card, Theme::Normal, false, nameOf(quantity));
        name->setForegroundRole(QPalette::Mid);
        QLabel *text = Theme::label(card, Theme::Huge, true);
        cell->addStretch();
        cell->addWidget(name);
        cell->addWidget(text);
        cell->addStretch();
        const int index = int(numbers.size());
        grid->addLayout(cell, index / columns, index % columns);
        grid->setColumnStretch(index % columns, 1);
        numbers.push_back({quantity, decimals, text});
    }
    return card;
}

void PowerPage::showUps(const UpsModel &ups)
{
    const Snapshot &snapshot = ups.snapshot();
    const std::optional<double> percent = snapshot.value(Quantity::Load);
    load->setVisible(percent.has_value());
    noLoad->setVisible(!percent);
    if (percent)
        setUp(load, {{"value", int(std::lround(std::clamp(*percent, 0.0, highestLoad)))}});
    for (const VoltageRow &row : voltages)
        showVoltage(row, snapshot);
    for (const NumberCell &cell : numbers)
        cell.text->setText(textOf(snapshot, cell.quantity, cell.decimals));
}

void PowerPage::showVoltage(const VoltageRow &row, const Snapshot &snapshot)
{
    const Measure &measure = snapshot.measure(row.quantity);
    row.bar->setVisible(measure.value.has_value());
    row.noData->setVisible(!measure.value);
    if (!measure.value)
        return;
    setUp(row.bar, {{"minValue", asInt(measure.minimum.value_or(0))},
                    {"maxValue", asInt(measure.maximum.value_or(defaultMaximum))},
                    {"value", asInt(*measure.value)}});
}

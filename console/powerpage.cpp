// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "powerpage.h"

#include "barroom.h"
#include "elidedlabel.h"
#include "theme.h"

#include <QtWidgets/QGridLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QVBoxLayout>

namespace {

constexpr int spacingUnits = 6;

} // namespace

PowerPage::PowerPage(QWidget *parent)
    : Page(parent)
{
    QVBoxLayout *layout = Theme::pageLayout(this);
    layout->addWidget(makeBars(), 3);
    layout->addWidget(makeNumbers(), 2);
    PowerPage::applyScale();
}

QWidget *PowerPage::makeBars()
{
    auto *card = new Card(this);
    barLayout = new QVBoxLayout(card);
    for (const Quantity quantity : {Quantity::Load, Quantity::InputVoltage, Quantity::BypassVoltage,
                                    Quantity::OutputVoltage}) {
        bars.push_back(new BarRoom(quantity, card));
        barLayout->addWidget(bars.back());
    }
    return card;
}

QWidget *PowerPage::makeNumbers()
{
    auto *card = new Card(this);
    numberLayout = new QGridLayout(card);
    constexpr int columns = 3;
    for (const Quantity quantity :
         {Quantity::OutputCurrent, Quantity::OutputPower, Quantity::InputFrequency,
          Quantity::OutputFrequency, Quantity::BatteryVoltage, Quantity::Temperature}) {
        auto *cell = new QVBoxLayout;
        cell->setSpacing(0);
        auto *name = new ElidedLabel(card);
        Theme::setText(name, Theme::Normal);
        name->setForegroundRole(QPalette::Mid);
        QLabel *text = Theme::label(card, Theme::Huge, true);
        text->setObjectName(nameOf(quantity) + QStringLiteral(" value"));
        cell->addStretch();
        cell->addWidget(name);
        cell->addWidget(text);
        cell->addStretch();
        const int index = int(numbers.size());
        numberLayout->addLayout(cell, index / columns, index % columns);
        numberLayout->setColumnStretch(index % columns, 1);
        numbers.push_back({quantity, name, text});
    }
    return card;
}

void PowerPage::applyScale()
{
    const int margin = Theme::px(Theme::margin);
    const int spacing = Theme::px(spacingUnits);
    barLayout->setContentsMargins(margin, spacing, margin, spacing);
    barLayout->setSpacing(spacing);
    numberLayout->setContentsMargins(margin, spacing, margin, spacing);
    numberLayout->setHorizontalSpacing(margin);
    numberLayout->setVerticalSpacing(spacing);
    for (BarRoom *bar : bars)
        bar->applyScale();
}

void PowerPage::showUps(const UpsModel &ups)
{
    for (BarRoom *bar : bars)
        bar->showUps(ups);
    for (const NumberCell &cell : numbers) {
        const Reading reading = ups.reading(cell.quantity);
        // The worst phase by its name, and what the others have.
        cell.name->setText(reading.phase.isEmpty()
                               ? nameOf(cell.quantity)
                               : nameOf(cell.quantity) + QLatin1Char(' ') + reading.phase);
        cell.text->setText(reading.text);
        QStringList phases;
        const QVector<Reading> phaseReadings = phaseReadingsOf(ups.snapshot(), cell.quantity);
        for (const Reading &phase : phaseReadings)
            phases += phase.phase + QLatin1Char(' ') + phase.text;
        cell.text->setToolTip(phases.join(Theme::separator()).toHtmlEscaped());
    }
}

// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "informationpage.h"

#include "elidedlabel.h"
#include "scrollroom.h"
#include "searchfield.h"
#include "theme.h"
#include "variablelist.h"

#include <QtCore/QSortFilterProxyModel>
#include <QtGui/QClipboard>
#include <QtGui/QGuiApplication>
#include <QtGui/QKeyEvent>
#include <QtWidgets/QGridLayout>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QTableView>
#include <QtWidgets/QVBoxLayout>

#include <algorithm>

namespace {

constexpr int spacingUnits = 6;
constexpr int factUnits = 190; // least width of a fact
constexpr int rowUnits = 26;

const char *const factNames[] = {"Maker",    "Model",         "Serial number",
                                 "Firmware", "Nominal power", "Battery date"};

/// The nominal power in what is known of it.
QString powerText(const Identity &identity)
{
    QStringList texts;
    if (identity.nominalPower)
        texts +=
            Values::number(std::clamp(*identity.nominalPower, 0.0, 1e9), 0) + QStringLiteral(" VA");
    if (identity.nominalRealPower)
        texts += Values::text(Quantity::OutputPower, identity.nominalRealPower);
    return texts.join(QStringLiteral(" / "));
}

} // namespace

InformationPage::InformationPage(QWidget *parent)
    : Page(parent)
{
    QVBoxLayout *layout = Theme::pageLayout(this);
    layout->addWidget(makeFacts());
    layout->addWidget(makeTable(), 1);
    InformationPage::applyScale();
}

QWidget *InformationPage::makeFacts()
{
    auto *card = new Card(this);
    factLayout = new QGridLayout(card);
    for (int i = 0; i < factCount; ++i) {
        Fact &fact = facts.at(std::size_t(i));
        fact.room = new QWidget(card);
        fact.name = new ElidedLabel(fact.room);
        fact.value = new ElidedLabel(fact.room);
        Theme::setText(fact.name, Theme::Small);
        Theme::setText(fact.value, Theme::Normal, true);
        fact.name->setText(tr(factNames[i]));
        fact.name->setForegroundRole(QPalette::Mid);
        fact.value->setObjectName(QString::fromLatin1(factNames[i]));
        fact.value->setTextInteractionFlags(Qt::NoTextInteraction);
        auto *cell = new QVBoxLayout(fact.room);
        cell->setContentsMargins(0, 0, 0, 0);
        cell->setSpacing(0);
        cell->addWidget(fact.name);
        cell->addWidget(fact.value);
    }
    return card;
}

QWidget *InformationPage::makeTable()
{
    tableCard = new Card(this);
    search = makeSearchField(tr("Search names and values"), tableCard);
    count = Theme::label(tableCard, Theme::Normal);
    count->setForegroundRole(QPalette::Mid);
    copyButton = new QPushButton(tr("Copy"), tableCard);
    Theme::setText(copyButton, Theme::Normal);
    copyButton->setObjectName(QStringLiteral("copy"));
    copyButton->setToolTip(tr("Copies the selected rows, or all that are listed (Ctrl+C)"));

    list = new VariableList(this);
    found = new QSortFilterProxyModel(this);
    found->setSourceModel(list);
    found->setFilterKeyColumn(-1); // all columns
    found->setFilterCaseSensitivity(Qt::CaseInsensitive);
    table = new QTableView(tableCard);
    Theme::setText(table, Theme::Normal);
    table->setObjectName(QStringLiteral("variables"));
    table->setAccessibleName(tr("Variables"));
    table->setModel(found);
    table->setFrameShape(QFrame::NoFrame);
    table->setShowGrid(false);
    table->setAlternatingRowColors(true);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setTabKeyNavigation(false);
    table->setWordWrap(false);
    table->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    table->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    table->verticalHeader()->hide();
    table->horizontalHeader()->setStretchLastSection(true);
    table->horizontalHeader()->hide(); // names and values are easy to distinguish
    table->installEventFilter(this);
    scrollByFinger(table);

    searchLayout = new QHBoxLayout;
    searchLayout->addWidget(search, 1);
    searchLayout->addWidget(count);
    searchLayout->addWidget(copyButton);
    auto *layout = new QVBoxLayout(tableCard);
    layout->addLayout(searchLayout);
    layout->addWidget(table, 1);

    connect(search, &QLineEdit::textChanged, this, [this](const QString &text) {
        found->setFilterFixedString(text);
        countRows();
    });
    connect(copyButton, &QPushButton::clicked, this, &InformationPage::copy);
    return tableCard;
}

void InformationPage::applyScale()
{
    const int margin = Theme::px(Theme::margin);
    const int spacing = Theme::px(spacingUnits);
    factLayout->setContentsMargins(margin, spacing, margin, spacing);
    factLayout->setHorizontalSpacing(margin);
    factLayout->setVerticalSpacing(spacing);
    tableCard->layout()->setContentsMargins(margin, spacing, margin, spacing);
    tableCard->layout()->setSpacing(spacing);
    searchLayout->setSpacing(margin);
    // Both are for fingers too.
    search->setFixedHeight(Theme::touchSize());
    copyButton->setMinimumHeight(Theme::touchSize());
    copyButton->setMinimumWidth(2 * Theme::touchSize());
    count->setMinimumWidth(count->fontMetrics().horizontalAdvance(tr("%1 of %2").arg(0).arg(0)));
    const int row = std::max(Theme::px(rowUnits), table->fontMetrics().height() + 4);
    table->verticalHeader()->setMinimumSectionSize(row);
    table->verticalHeader()->setDefaultSectionSize(row);
    arrangeFacts();
}

void InformationPage::arrangeFacts()
{
    const int columns = std::clamp(width() / std::max(Theme::px(factUnits), 1), 2, factCount);
    // Full rows only: six in two, three or six columns.
    const int used = columns >= factCount ? factCount : std::min(columns, 3);
    for (int i = 0; i < factCount; ++i) {
        factLayout->addWidget(facts.at(std::size_t(i)).room, i / used, i % used);
        factLayout->setColumnStretch(i, i < used ? 1 : 0);
    }
    // Half of the width for the names, as far as they need it.
    table->setColumnWidth(
        0, std::min(table->viewport()->width() / 2, table->fontMetrics().averageCharWidth() * 36));
}

void InformationPage::showUps(const UpsModel &ups)
{
    const Snapshot &snapshot = ups.snapshot();
    const Identity &identity = snapshot.identity;
    const QString texts[] = {identity.manufacturer, identity.model,      identity.serial,
                             identity.firmware,     powerText(identity), identity.batteryDate};
    for (int i = 0; i < factCount; ++i)
        facts.at(std::size_t(i)).value->setText(texts[i].isEmpty() ? Values::noData() : texts[i]);
    // A page that nobody sees need not follow each value.
    if (isVisibleTo(window()) || list->rowCount() == 0 || snapshot.variables.isEmpty())
        list->setVariables(snapshot.variables);
    countRows();
}

void InformationPage::countRows()
{
    const int all = list->rowCount();
    const int shown = found->rowCount();
    count->setText(shown == all ? tr("%1 variables").arg(all)
                                : tr("%1 of %2").arg(QString::number(shown), QString::number(all)));
    copyButton->setEnabled(shown > 0);
}

void InformationPage::copy()
{
    QModelIndexList rows = table->selectionModel()->selectedRows();
    std::sort(rows.begin(), rows.end());
    if (rows.isEmpty()) {
        for (int row = 0; row < found->rowCount(); ++row)
            rows.append(found->index(row, 0));
    }
    QString text;
    for (const QModelIndex &row : rows)
        text += row.data().toString() + QStringLiteral(": ") +
                row.siblingAtColumn(1).data().toString() + QLatin1Char('\n');
    QGuiApplication::clipboard()->setText(text);
    count->setText(tr("%1 copied").arg(rows.size()));
}

void InformationPage::showEvent(QShowEvent *event)
{
    Page::showEvent(event);
    refresh();
}

void InformationPage::resizeEvent(QResizeEvent *event)
{
    Page::resizeEvent(event);
    arrangeFacts();
}

bool InformationPage::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == table && event->type() == QEvent::KeyPress &&
        static_cast<QKeyEvent *>(event)->matches(QKeySequence::Copy)) {
        copy();
        return true;
    }
    return Page::eventFilter(watched, event);
}

// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "fleetpage.h"

#include "choicebar.h"
#include "countlabel.h"
#include "elidedlabel.h"
#include "feed/plaintext.h"
#include "severitylook.h"
#include "theme.h"

#include <QtCore/QEvent>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QToolButton>
#include <QtWidgets/QVBoxLayout>

#include <algorithm>

namespace {

constexpr int longestLine = 300;

/// The worst first.
constexpr Severity shownSeverities[] = {Severity::Critical, Severity::Unknown, Severity::Warning,
                                        Severity::Information, Severity::Normal};

} // namespace

FleetPage::FleetPage(SiteModel *shownSite, QWidget *parent)
    : Page(parent)
    , site(shownSite)
    , problems(new ElidedLabel(this))
    , view(new FleetView(this))
{
    QVBoxLayout *layout = Theme::pageLayout(this);
    makeFilter();
    layout->addLayout(bar);
    problems->setObjectName(QStringLiteral("problems"));
    Theme::setText(problems, Theme::Normal);
    layout->addWidget(problems);
    layout->addWidget(view, 1);
    connect(view, &FleetView::chosen, this, &FleetPage::chosen);
    connect(view, &FleetView::rearranged, this, &FleetPage::showCounts);
    connect(site, &SiteModel::problemsChanged, this, &FleetPage::showProblems);
    view->setSite(site);
    showCounts();
    showProblems();
    FleetPage::applyScale();
}

void FleetPage::makeFilter()
{
    bar = new QHBoxLayout;
    search = new QLineEdit(this);
    search->setObjectName(QStringLiteral("search"));
    search->setAccessibleName(tr("Search"));
    search->setPlaceholderText(tr("Search by name, group or state"));
    search->setClearButtonEnabled(true);
    constexpr int longest = 100;
    search->setMaxLength(longest);
    Theme::setText(search, Theme::Normal);
    connect(search, &QLineEdit::textChanged, this, &FleetPage::takeFilter);
    bar->addWidget(search, 1);
    for (const Severity severity : shownSeverities) {
        auto *button = new ChoiceButton<QToolButton>(this);
        button->setObjectName(QStringLiteral("only ") + nameOf(severity));
        button->setCheckable(true);
        button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
        Theme::setText(button, Theme::Normal);
        connect(button, &QToolButton::toggled, this, &FleetPage::takeFilter);
        bar->addWidget(button);
        severities.push_back(button);
    }
}

/// No severity chosen is all of them.
void FleetPage::takeFilter()
{
    FleetFilter filter;
    filter.words = search->text();
    quint32 chosenOnes = 0;
    for (std::size_t i = 0; i < severities.size(); ++i) {
        if (severities[i]->isChecked())
            chosenOnes |= 1U << int(shownSeverities[i]);
    }
    if (chosenOnes != 0)
        filter.severities = chosenOnes;
    view->setFilter(filter);
}

void FleetPage::takeChanges()
{
    view->refresh();
}

void FleetPage::showCounts()
{
    const auto counts = site->counts();
    for (std::size_t i = 0; i < severities.size(); ++i) {
        const Severity severity = shownSeverities[i];
        const QString count = QString::number(counts.at(std::size_t(severity)));
        severities[i]->setText(count);
        severities[i]->setAccessibleName(tr("%1 %2, show only these").arg(count, wordOf(severity)));
        severities[i]->setToolTip(severities[i]->accessibleName());
    }
}

void FleetPage::showProblems()
{
    QStringList texts;
    const QMap<QString, SiteProblem> &all = site->problems();
    for (auto one = all.cbegin(); one != all.cend(); ++one)
        texts += one.key() + QStringLiteral(": ") + one.value().text;
    problems->setText(texts.join(Theme::separator()));
    problems->setVisible(!texts.isEmpty());
    // One below the other, as many as a screen has room for.
    constexpr int mostLines = 20;
    QStringList lines;
    const QStringList first = texts.mid(0, mostLines);
    for (const QString &text : first)
        lines += cutText(text, longestLine).toHtmlEscaped();
    if (texts.size() > mostLines)
        lines += tr("and %1 more").arg(texts.size() - mostLines);
    problems->setToolTip(texts.isEmpty()
                             ? QString()
                             : QStringLiteral("<p>%1</p>").arg(lines.join(QLatin1String("<br>"))));
    fitProblems();
}

/// As many lines as the problems take, up to what leaves room for tiles.
void FleetPage::fitProblems()
{
    constexpr int mostLines = 3;
    const QMargins around = layout()->contentsMargins();
    problems->setLines(
        std::min(problems->linesAt(width() - around.left() - around.right()), mostLines));
}

void FleetPage::resizeEvent(QResizeEvent *event)
{
    Page::resizeEvent(event);
    fitProblems();
}

void FleetPage::applyScale()
{
    const int height = Theme::touchSize();
    search->setFixedHeight(height);
    search->setTextMargins(Theme::px(4), 0, Theme::px(4), 0);
    for (QToolButton *button : severities)
        button->setMinimumHeight(height);
    showSigns();
    bar->setSpacing(Theme::px(6));
    view->applyScale();
    fitProblems();
}

void FleetPage::changeEvent(QEvent *event)
{
    Page::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        showSigns();
}

void FleetPage::showSigns()
{
    const int icon = Theme::px(18);
    for (std::size_t i = 0; i < severities.size(); ++i) {
        severities[i]->setIconSize(QSize(icon, icon));
        severities[i]->setIcon(
            severityBadge(shownSeverities[i], icon, Theme::isDark(), devicePixelRatioF()));
    }
}

QSize FleetPage::minimumSizeHint() const
{
    // The view scrolls.
    constexpr int leastTiles = 2;
    return {std::min(Page::minimumSizeHint().width(), Theme::px(400)),
            Theme::touchSize() * (leastTiles + 1) + 2 * Theme::px(Theme::margin)};
}

void FleetPage::showUps(const UpsModel &)
{}

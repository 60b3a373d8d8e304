// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "sitemodel.h"

#include <QtCore/QLocale>

#include <algorithm>
#include <utility>

bool operator==(const SiteProblem &a, const SiteProblem &b)
{
    return a.text == b.text && a.severity == b.severity;
}

const QCollator &nameOrder()
{
    static const QCollator collator = [] {
        // Where the locale is "C", numbers in names would not count.
        QCollator made{QLocale(QLocale::English)};
        made.setNumericMode(true);
        made.setCaseSensitivity(Qt::CaseInsensitive);
        return made;
    }();
    return collator;
}

int urgencyOf(const UpsModel &ups)
{
    constexpr int mostRanks = 1000;
    return urgencyOf(ups.severity()) * mostRanks + ups.headline().rank;
}

GroupName::GroupName(const QString &name)
    : text(name)
    , key(nameOrder().sortKey(name))
{}

bool GroupName::operator<(const GroupName &other) const
{
    const int names = key.compare(other.key);
    return names != 0 ? names < 0 : text < other.text;
}

SiteModel::SiteModel(const Clock &usedClock, QObject *parent)
    : QObject(parent)
    , clock(usedClock)
{}

UpsModel *SiteModel::add(const QString &id)
{
    if (UpsModel *known = find(id))
        return known;
    auto *ups = new UpsModel(id, clock, this);
    all.push_back(ups);
    byId.insert(id, ups);
    connect(ups, &UpsModel::changed, this, [=] { Q_EMIT changed(ups); });
    connect(ups, &UpsModel::conditionBegan, this,
            [=](const Condition &condition) { Q_EMIT conditionBegan(ups, condition); });
    connect(ups, &UpsModel::conditionEnded, this,
            [=](const Condition &condition) { Q_EMIT conditionEnded(ups, condition); });
    connect(ups, &UpsModel::commandFinished, this,
            [=](const CommandRecord &record) { Q_EMIT commandFinished(ups, record); });
    Q_EMIT added(ups);
    return ups;
}

int SiteModel::count() const
{
    return int(all.size());
}

UpsModel *SiteModel::at(int index) const
{
    return all.at(std::size_t(index));
}

UpsModel *SiteModel::find(const QString &id) const
{
    return byId.value(id);
}

void SiteModel::addServer(const QString &name, const QString &title)
{
    titles.insert(name, title);
}

bool SiteModel::hasServer(const QString &name) const
{
    return titles.contains(name);
}

QStringList SiteModel::servers() const
{
    return titles.keys();
}

QString SiteModel::serverTitle(const QString &name) const
{
    const QString title = titles.value(name);
    return title.isEmpty() ? name : title;
}

bool SiteModel::isComplete() const
{
    for (auto server = titles.cbegin(); server != titles.cend(); ++server) {
        if (!met.contains(server.key()) && !missed.contains(server.key()))
            return false;
    }
    return true;
}

void SiteModel::missServer(const QString &name, const QString &reason)
{
    if (met.contains(name) || missed.contains(name))
        return;
    missed.insert(name);
    Q_EMIT serverMissed(name, reason);
}

void SiteModel::meetServer(const QString &name)
{
    if (met.contains(name))
        return;
    met.insert(name);
    Q_EMIT serverMet(name);
}

std::array<int, severityCount> SiteModel::counts() const
{
    std::array<int, severityCount> counts{};
    for (const UpsModel *ups : all)
        ++counts.at(std::size_t(ups->severity()));
    return counts;
}

void SiteModel::setGrowing(bool growing)
{
    grows = growing;
}

bool SiteModel::isGrowing() const
{
    return grows;
}

void SiteModel::setProblem(const QString &source, const QString &text, Severity severity)
{
    const SiteProblem problem = {text, severity};
    if (text.isEmpty() ? !wrong.contains(source) : wrong.value(source) == problem)
        return;
    if (text.isEmpty())
        wrong.remove(source);
    else
        wrong.insert(source, problem);
    Q_EMIT problemsChanged();
}

const QMap<QString, SiteProblem> &SiteModel::problems() const
{
    return wrong;
}

int SiteModel::problemCount() const
{
    return int(std::count_if(wrong.cbegin(), wrong.cend(), [](const SiteProblem &one) {
        return urgencyOf(one.severity) >= urgencyOf(Severity::Warning);
    }));
}

QString SiteModel::worstSource() const
{
    const auto found =
        std::max_element(wrong.cbegin(), wrong.cend(), [](const auto &a, const auto &b) {
            return urgencyOf(a.severity) < urgencyOf(b.severity);
        });
    return found == wrong.cend() ? QString() : found.key();
}

QString SiteModel::worstProblem() const
{
    const QString source = worstSource();
    return source.isEmpty() ? QString() : source + QStringLiteral(": ") + wrong.value(source).text;
}

QStringList SiteModel::problemLines(int most) const
{
    QStringList sources;
    for (auto one = wrong.cbegin(); one != wrong.cend(); ++one) {
        if (urgencyOf(one->severity) >= urgencyOf(Severity::Warning))
            sources += one.key();
    }
    std::stable_sort(sources.begin(), sources.end(), [this](const QString &a, const QString &b) {
        return urgencyOf(wrong.value(a).severity) > urgencyOf(wrong.value(b).severity);
    });
    QStringList lines;
    sources = sources.mid(0, most);
    for (const QString &source : std::as_const(sources))
        lines += source + QStringLiteral(": ") + wrong.value(source).text;
    return lines;
}

UpsModel *SiteModel::firstByName() const
{
    const auto found =
        std::min_element(all.cbegin(), all.cend(), [](const UpsModel *a, const UpsModel *b) {
            const int groups = nameOrder().compare(a->site(), b->site());
            const int names = groups != 0 ? groups : nameOrder().compare(a->title(), b->title());
            return names != 0 ? names < 0 : a->id() < b->id();
        });
    return found == all.cend() ? nullptr : *found;
}

UpsModel *SiteModel::worst() const
{
    const auto found =
        std::min_element(all.cbegin(), all.cend(), [](const UpsModel *a, const UpsModel *b) {
            const int urgency = urgencyOf(*a);
            if (urgency != urgencyOf(*b))
                return urgency > urgencyOf(*b);
            // Nobody is named where all is well, and comparing a thousand names takes time.
            if (a->severity() == Severity::Normal)
                return false;
            if (a->site() != b->site())
                return GroupName(a->site()) < GroupName(b->site());
            return nameOrder().compare(a->title(), b->title()) < 0;
        });
    return found == all.cend() ? nullptr : *found;
}

Severity SiteModel::severity() const
{
    const UpsModel *ups = worst();
    Severity severity = ups ? ups->severity() : Severity::Normal;
    for (const SiteProblem &problem : wrong)
        severity = worseOf(severity, problem.severity);
    return severity;
}

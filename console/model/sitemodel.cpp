// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "sitemodel.h"

#include <algorithm>

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

std::array<int, severityCount> SiteModel::counts() const
{
    std::array<int, severityCount> counts{};
    for (const UpsModel *ups : all)
        ++counts.at(std::size_t(worseOf(ups->severity(), ups->headline().severity)));
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

void SiteModel::setProblem(const QString &source, const QString &text)
{
    if (wrong.value(source) == text)
        return;
    if (text.isEmpty())
        wrong.remove(source);
    else
        wrong.insert(source, text);
    Q_EMIT problemsChanged();
}

const QMap<QString, QString> &SiteModel::problems() const
{
    return wrong;
}

UpsModel *SiteModel::worst() const
{
    const auto found =
        std::max_element(all.cbegin(), all.cend(), [](const UpsModel *a, const UpsModel *b) {
            return urgencyOf(a->severity()) < urgencyOf(b->severity());
        });
    return found == all.cend() ? nullptr : *found;
}

Severity SiteModel::severity() const
{
    const UpsModel *ups = worst();
    return ups ? ups->severity() : Severity::Normal;
}

// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "upsmodel.h"

#include <QtCore/QHash>
#include <QtCore/QMap>

#include <array>
#include <vector>

/// All UPSes that the console watches.
class SiteModel : public QObject
{
    Q_OBJECT

public:
    explicit SiteModel(const Clock &clock = systemClock(), QObject *parent = nullptr);

    /// Adds a UPS, which is the site's and lives as long; an @p id that is there already returns
    /// that one.
    UpsModel *add(const QString &id);
    int count() const;
    UpsModel *at(int index) const;
    /// Null where there is none.
    UpsModel *find(const QString &id) const;

    /// The UPS in the worst state, the first of equals; null on an empty site.
    UpsModel *worst() const;
    /// The worst severity of all; normal on an empty site.
    Severity severity() const;

    /// How many UPSes are in a state of each severity, in the order of Severity.
    std::array<int, severityCount> counts() const;
    /// Whether UPSes may come later; not at first.
    void setGrowing(bool growing);
    bool isGrowing() const;

    /// Something that keeps a whole @p source, such as a server, from being read; no text: nothing
    /// any more.
    void setProblem(const QString &source, const QString &text);
    /// What is wrong now, by source.
    const QMap<QString, QString> &problems() const;

Q_SIGNALS:
    void added(UpsModel *ups);
    void problemsChanged();
    /// As the UPS's own signals.
    void changed(UpsModel *ups);
    void conditionBegan(UpsModel *ups, const Condition &condition);
    void conditionEnded(UpsModel *ups, const Condition &condition);
    void commandFinished(UpsModel *ups, const CommandRecord &record);

private:
    const Clock clock;
    std::vector<UpsModel *> all; // children
    QHash<QString, UpsModel *> byId;
    QMap<QString, QString> wrong;
    bool grows = false;
};

#pragma once

#include "upsmodel.h"

#include <memory>
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

Q_SIGNALS:
    void added(UpsModel *ups);
    /// As the UPS's own signals.
    void changed(UpsModel *ups);
    void conditionBegan(UpsModel *ups, const Condition &condition);
    void conditionEnded(UpsModel *ups, const Condition &condition);
    void commandFinished(UpsModel *ups, const CommandRecord &record);

private:
    const Clock clock;
    std::vector<UpsModel *> all; // children
};

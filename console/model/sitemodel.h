// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "upsmodel.h"

#include <QtCore/QCollator>
#include <QtCore/QHash>
#include <QtCore/QMap>
#include <QtCore/QSet>

#include <array>
#include <vector>

/// Something that keeps a whole source, such as a server, from being read.
struct SiteProblem
{
    QString text; ///< plain
    /// Normal while it is only that the source has not answered yet.
    Severity severity = Severity::Unknown;
};
bool operator==(const SiteProblem &a, const SiteProblem &b);

/// Compares names as people sort them: "ups2" before "ups10".
const QCollator &nameOrder();

/// How urgent the state of @p ups is: by severity, then by its headline's rank. Wherever the worst
/// come first, groups stand by their worst UPS and then by GroupName, and the UPSes of a group by
/// urgency and then by title in nameOrder().
int urgencyOf(const UpsModel &ups);

/// The name of a group, for sorting: names that nameOrder() takes for equal have an order, too.
class GroupName
{
public:
    explicit GroupName(const QString &name);
    bool operator<(const GroupName &other) const;

private:
    QString text;
    QCollatorSortKey key;
};

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

    /// Notes a server that is read, called @p title on screen, or, where that is empty, @p name.
    void addServer(const QString &name, const QString &title = QString());
    bool hasServer(const QString &name) const;
    QStringList servers() const;
    /// How the server @p name is called on screen, be it one of the site or not.
    QString serverTitle(const QString &name) const;
    /// Whether each server was read, or the first tries to read it failed.
    bool isComplete() const;
    /// Notes that the first tries to read the server @p name failed, or the first that did not.
    /// Of both, the first of a server counts.
    void missServer(const QString &name, const QString &reason);
    void meetServer(const QString &name);

    /// The first UPS by group, then by name, whatever the states. Null on an empty site.
    UpsModel *firstByName() const;
    /// The UPS that stands first where the worst come first. Null on an empty site.
    UpsModel *worst() const;
    /// The worst severity of all UPSes and of all problems; normal on an empty site.
    Severity severity() const;

    /// How many UPSes are in a state of each severity, in the order of Severity.
    std::array<int, severityCount> counts() const;
    /// Whether UPSes may come later; not at first.
    void setGrowing(bool growing);
    bool isGrowing() const;

    /// What keeps @p source from being read; no @p text: nothing any more.
    void setProblem(const QString &source, const QString &text,
                    Severity severity = Severity::Unknown);
    /// What is wrong now, by source.
    const QMap<QString, SiteProblem> &problems() const;
    /// How many sources have a problem that is at least a warning.
    int problemCount() const;
    /// The source of the worst problem, the first of equals; empty without one.
    QString worstSource() const;
    /// The worst problem in words, with its source; empty without one.
    QString worstProblem() const;
    /// The problems that are at least a warning, each with its source, the worst first; @p most of
    /// them.
    QStringList problemLines(int most) const;

Q_SIGNALS:
    void added(UpsModel *ups);
    void problemsChanged();
    /// A server that was never read cannot be read; comes once.
    void serverMissed(const QString &name, const QString &reason);
    /// A server is read for the first time.
    void serverMet(const QString &name);
    /// As the UPS's own signals.
    void changed(UpsModel *ups);
    void conditionBegan(UpsModel *ups, const Condition &condition);
    void conditionEnded(UpsModel *ups, const Condition &condition);
    void commandFinished(UpsModel *ups, const CommandRecord &record);

private:
    const Clock clock;
    std::vector<UpsModel *> all; // children
    QHash<QString, UpsModel *> byId;
    QMap<QString, SiteProblem> wrong;
    QHash<QString, QString> titles; // of the servers
    QSet<QString> missed;           // servers
    QSet<QString> met;
    bool grows = false;
};

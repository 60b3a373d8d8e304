// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "elidedlabel.h"
#include "model/severity.h"

#include <QtCore/QVector>

#include <optional>

class SiteModel;

/// How many of one kind a site has.
struct SiteCount
{
    std::optional<Severity> severity; ///< of UPSes; none: servers that cannot be read
    int count = 0;
    QString word; ///< "no communication"
};

/// The counts of @p site that are not 0, the worst first.
QVector<SiteCount> countsOf(const SiteModel &site);
/// The counts in words: "2 critical · 1 server problem · 3 warning · 995 normal".
QString countText(const QVector<SiteCount> &counts);
/// What a UPS of @p severity is called in a count.
QString wordOf(Severity severity);

/// A text in one line, or counts: in words, or, where these have no room, as signs with numbers.
/// Numbers are never cut.
class CountLabel : public ElidedLabel
{
    Q_OBJECT

public:
    explicit CountLabel(QWidget *parent = nullptr);

    /// Shows @p counts, which text() says in words; without any, the text set last is shown.
    void setCounts(const QVector<SiteCount> &counts);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    /// The width of all signs and numbers in @p font.
    int signsWidth(const QFont &font) const;

    QVector<SiteCount> counts;
};

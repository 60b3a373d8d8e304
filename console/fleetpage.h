// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "fleetview.h"
#include "page.h"

class ElidedLabel;
class QBoxLayout;
class QLineEdit;
class QToolButton;

/// All UPSes of the site: tiles, the worst first, with a search and a filter by severity.
class FleetPage : public Page
{
    Q_OBJECT

public:
    /// Shows @p site, which must live as long.
    explicit FleetPage(SiteModel *site, QWidget *parent = nullptr);

    /// Shows at once what changed; it comes by itself, soon after a change.
    void takeChanges();
    void applyScale() override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// A UPS was pressed.
    void chosen(UpsModel *ups);

protected:
    void showUps(const UpsModel &ups) override;
    void changeEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void makeFilter();
    void takeFilter();
    void showCounts();
    void showSigns();
    void showProblems();
    void fitProblems();

    SiteModel *site;
    QBoxLayout *bar;
    QLineEdit *search;
    std::vector<QToolButton *> severities;
    ElidedLabel *problems;
    FleetView *view;
};

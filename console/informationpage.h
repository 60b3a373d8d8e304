// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "page.h"

#include <array>

class ElidedLabel;
class QGridLayout;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QSortFilterProxyModel;
class QTableView;
class VariableList;

/// Who the UPS is, and every variable that it gives, to search and to copy.
class InformationPage : public Page
{
    Q_OBJECT

public:
    explicit InformationPage(QWidget *parent = nullptr);

    void applyScale() override;

protected:
    void showUps(const UpsModel &ups) override;
    void showEvent(QShowEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    static constexpr int factCount = 6;

    struct Fact
    {
        QWidget *room;
        ElidedLabel *name;
        ElidedLabel *value;
    };

    QWidget *makeFacts();
    QWidget *makeTable();
    void arrangeFacts();
    void copy();
    void countRows();

    std::array<Fact, factCount> facts;
    QGridLayout *factLayout;
    QWidget *tableCard;
    QHBoxLayout *searchLayout;
    QLineEdit *search;
    QPushButton *copyButton;
    QLabel *count;
    QTableView *table;
    VariableList *list;
    QSortFilterProxyModel *found;
};

// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "history/history.h"
#include "page.h"

#include <QtCore/QPointer>

#include <vector>

class Card;
class Chart;
class QGridLayout;
class QHBoxLayout;
class QPushButton;
class QTimer;

/// What the UPS measured over time.
class TrendsPage : public Page
{
    Q_OBJECT

public:
    explicit TrendsPage(QWidget *parent = nullptr);

    /// Shows @p history, which must live as long, or nothing (null).
    void setHistory(History *history);
    /// Write what the chart shows.
    void exportImage(const QString &file);
    void exportValues(const QString &file);
    void applyScale() override;
    QSize minimumSizeHint() const override;

protected:
    void showUps(const UpsModel &ups) override;
    void showEvent(QShowEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    struct Choice
    {
        Quantity quantity;
        QPushButton *button;
    };

    QPushButton *makeButton(const QString &text, const QString &name, const QString &help);
    void choosePeriod(qint64 length);
    void chooseSpan(const TimeSpan &span);
    void read();
    void readSoon();
    void take(int number, const Trend &trend);
    void showNotice(const QString &text, int msecs);
    void chooseFile(const QString &suffix, void (TrendsPage::*write)(const QString &));
    void arrangeButtons();

    QPointer<History> history;
    QString upsId;
    Snapshot latest; // for limits
    int asked = 0;
    bool follows = true; ///< the span ends now
    qint64 length = dayMsecs;
    TimeSpan chosen;
    Card *controls;
    Card *chartCard;
    QHBoxLayout *periodRow;
    QHBoxLayout *choiceRow;
    std::vector<QPushButton *> periods;
    std::vector<Choice> choices;
    std::vector<QPushButton *> exports;
    Chart *chart;
    QTimer *refreshTimer;
    QTimer *readTimer;
    QTimer *noticeTimer;
};

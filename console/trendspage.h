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

    /// Shows what @p source has, or @p history where there is none; both must live as long, and may
    /// be null. The history writes files, also of what a source has.
    void setHistory(History *history, TrendSource *source = nullptr);
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
    void choosePeriod(qint64 wanted);
    void chooseSpan(const TimeSpan &span);
    void read();
    void readSoon();
    void take(int number, const Trend &trend);
    void say(const QString &text);
    void showNotice();
    void chooseFile(const QString &suffix, void (TrendsPage::*write)(const QString &));
    void arrangeButtons();

    QPointer<History> history;
    QPointer<TrendSource> source;
    QString upsId;
    Snapshot latest; // for limits
    int asked = 0;
    bool waits = false;  ///< for the answer
    QString problem;     ///< of the last answer
    QString message;     ///< shown for a while
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
    QTimer *slowTimer;
    QTimer *noticeTimer;
};

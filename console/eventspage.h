// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "history/history.h"
#include "model/sitemodel.h"
#include "page.h"

#include <QtCore/QPointer>

class ElidedLabel;
class EventList;
class EventView;
class QBoxLayout;
class QComboBox;
class QLineEdit;
class QPushButton;
class QTimer;

/// What happened to the site's UPSes: what is present and not acknowledged on top, then by time.
/// It can be filtered, acknowledged and exported.
class EventsPage : public Page
{
    Q_OBJECT

public:
    /// The events of @p site, which must live as long.
    explicit EventsPage(SiteModel *site, QWidget *parent = nullptr);

    /// Shows @p history, which must live as long, or nothing (null).
    void setHistory(History *history);
    /// Writes the events that are listed to a CSV file.
    void exportTo(const QString &file);
    void applyScale() override;
    QSize minimumSizeHint() const override;

protected:
    void showUps(const UpsModel &ups) override;
    void showEvent(QShowEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    QWidget *makeFilters();
    QWidget *makeActions();
    EventFilter chosenFilter() const;
    void listUpses();
    void read();
    void take(int number, const QVector<Event> &events, bool all);
    void acknowledge();
    void acknowledgeAll();
    void chooseFile();
    void showStatus();
    void placeStatus();
    void enableActions();
    QString userName() const;

    SiteModel *const site;
    QPointer<History> history;
    int asked = 0;          // the number of the last question
    bool isReading = false; // its answer is to come
    EventFilter askedFilter;
    bool allListed = true;
    QString notice;

    QWidget *card;
    QBoxLayout *rows;
    QBoxLayout *filterRow;
    QBoxLayout *actionRow;
    QComboBox *severity;
    QComboBox *ups;
    QComboBox *period;
    QLineEdit *search;
    EventList *list;
    EventView *view;
    ElidedLabel *status;
    QLineEdit *user;
    QPushButton *acknowledgeButton;
    QPushButton *allButton;
    QPushButton *exportButton;
    QTimer *readTimer;
    QTimer *clockTimer;
    QTimer *listTimer;
};

// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "eventspage.h"

#include "display.h"
#include "elidedlabel.h"
#include "eventlist.h"
#include "scrollroom.h"
#include "searchfield.h"
#include "severitylook.h"
#include "theme.h"

#include <QShortcut>
#include <QtCore/QTimer>
#include <QtGui/QPainter>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QListView>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QStyledItemDelegate>

#include <algorithm>

#include <pwd.h>
#include <unistd.h>

namespace {

constexpr int mostListed = 20000;
constexpr int mostPlaced = 500;
constexpr int spacingUnits = 6;
constexpr int signUnits = 22;
constexpr int userUnits = 100;
constexpr int filterUnits = 100;
constexpr int rowUnits = 46;
constexpr int clockMsecs = 5000;
constexpr int readMsecs = 150;
constexpr int longestName = 100;

/// The sign of @p event: in colour while it is present or not acknowledged.
QPixmap signOf(const Event &event, int side, const QPalette &palette, double ratio)
{
    if (!event.isPresent() && event.isAcknowledged())
        return severitySign(event.severity, side, palette.color(QPalette::Mid),
                            palette.color(QPalette::Base), ratio);
    return severityBadge(event.severity, side, Theme::isDark(), ratio);
}

/// An event on two lines: what, and whether it is acknowledged; when, and where.
class EventDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem &, const QModelIndex &) const override
    {
        const int lines = QFontMetrics(Theme::font(Theme::Normal, true)).height() +
                          QFontMetrics(Theme::font(Theme::Small)).height();
        return {1, std::max(
                       {Theme::px(rowUnits), lines + Theme::px(spacingUnits), Theme::touchSize()})};
    }

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override
    {
        const auto *list = static_cast<const EventList *>(index.model());
        const Event &event = list->at(index.row());
        const QPalette &palette = option.palette;
        const QRect room = option.rect;
        const bool chosen = option.state.testFlag(QStyle::State_Selected);
        const QColor text = palette.color(QPalette::WindowText);
        const QColor faint = chosen ? text : palette.color(QPalette::Mid);
        if (chosen) {
            QColor shade = Theme::accent();
            shade.setAlpha(70);
            painter->fillRect(room, shade);
            painter->fillRect(QRect(room.topLeft(), QSize(Theme::px(4), room.height())),
                              Theme::accent());
        }
        painter->setPen(QPen(palette.color(QPalette::Window), 1));
        painter->drawLine(room.bottomLeft(), room.bottomRight());

        const int gap = Theme::px(spacingUnits);
        const int side = Theme::px(signUnits);
        const QRect inside = room.adjusted(2 * gap, 0, -2 * gap, 0);
        const double ratio = painter->device()->devicePixelRatioF();
        painter->drawPixmap(inside.left(), inside.center().y() - side / 2,
                            signOf(event, side, palette, ratio));

        const QFont titleFont = Theme::font(Theme::Normal, !event.isAcknowledged());
        const QFont smallFont = Theme::font(Theme::Small);
        const QFontMetrics title(titleFont);
        const QFontMetrics small(smallFont);
        const int height = title.height() + small.height();
        const QRect texts(inside.left() + side + 2 * gap, room.center().y() - height / 2,
                          inside.width() - side - 2 * gap, height);
        const QRect first(texts.left(), texts.top(), texts.width(), title.height());
        const QRect second(texts.left(), first.bottom() + 1, texts.width(), small.height());

        painter->setFont(smallFont);
        painter->setPen(faint);
        int right = first.right();
        if (event.isPresent()) {
            // A plate in the severity's colours; without any where it may be over.
            const bool left = list->isLeft(event);
            const SeverityLook look =
                lookOf(left ? Severity::Normal : event.severity, Theme::isDark());
            const QString word = left ? EventsPage::tr("NOT FOLLOWED") : EventsPage::tr("PRESENT");
            const QRect plate(right - small.horizontalAdvance(word) - 2 * gap,
                              first.center().y() - small.height() / 2,
                              small.horizontalAdvance(word) + 2 * gap, small.height());
            painter->fillRect(plate, look.plate);
            painter->setPen(look.ink);
            painter->drawText(plate, Qt::AlignCenter, word);
            right = plate.left() - gap;
        }
        const QDateTime now = QDateTime::currentDateTime();
        QString acknowledged = EventsPage::tr("not acknowledged");
        if (event.isAcknowledged())
            acknowledged = QStringLiteral("✓ ") + event.acknowledgedBy + QLatin1Char(' ') +
                           momentText(*event.acknowledgedAt, now);
        acknowledged = small.elidedText(acknowledged, Qt::ElideRight, texts.width() / 2);
        painter->setPen(event.isAcknowledged() ? faint : text);
        painter->drawText(second, Qt::AlignRight | Qt::AlignVCenter, acknowledged);

        QStringList details = {timesOf(event, now, list->isLeft(event)), list->upsOf(event)};
        if (!event.user.isEmpty())
            details.append(EventsPage::tr("by %1").arg(event.user));
        painter->setPen(faint);
        painter->drawText(
            second, Qt::AlignLeft | Qt::AlignVCenter,
            small.elidedText(details.join(Theme::separator()), Qt::ElideRight,
                             second.width() - 2 * gap - small.horizontalAdvance(acknowledged)));
        painter->setFont(titleFont);
        painter->setPen(text);
        painter->drawText(QRect(first.left(), first.top(), right - first.left(), first.height()),
                          Qt::AlignLeft | Qt::AlignVCenter,
                          title.elidedText(titleOf(event), Qt::ElideRight, right - first.left()));
    }
};

void addPeriod(QComboBox *box, const QString &name, qint64 length)
{
    box->addItem(name, length);
}

} // namespace

/// The list, with a word where it is empty.
class EventView : public QListView
{
public:
    using QListView::QListView;

    QSize minimumSizeHint() const override
    {
        return {10, Theme::touchSize()};
    }
    void setEmptyText(const QString &text)
    {
        if (empty == text)
            return;
        empty = text;
        viewport()->update();
    }

protected:
    void paintEvent(QPaintEvent *event) override
    {
        QListView::paintEvent(event);
        if (model()->rowCount() > 0)
            return;
        QPainter painter(viewport());
        painter.setFont(Theme::font(Theme::Normal));
        painter.setPen(palette().color(QPalette::Mid));
        painter.drawText(viewport()->rect(), Qt::AlignCenter | Qt::TextWordWrap, empty);
    }

private:
    QString empty;
};

EventsPage::EventsPage(SiteModel *shownSite, QWidget *parent)
    : Page(parent)
    , site(shownSite)
    , card(new Card(this))
    , rows(new QVBoxLayout(card))
    , list(new EventList(site, this))
    , view(new EventView(card))
    , readTimer(new QTimer(this))
    , clockTimer(new QTimer(this))
    , listTimer(new QTimer(this))
{
    QVBoxLayout *layout = Theme::pageLayout(this);
    layout->addWidget(card);
    rows->addWidget(makeFilters());
    rows->addWidget(view, 1);
    rows->addWidget(makeActions());

    view->setObjectName(QStringLiteral("events list"));
    view->setAccessibleName(tr("Events"));
    view->setModel(list);
    view->setItemDelegate(new EventDelegate(view));
    view->setFrameShape(QFrame::NoFrame);
    view->setUniformItemSizes(true);
    view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    view->setSelectionMode(QAbstractItemView::SingleSelection);
    view->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    view->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    view->setTabKeyNavigation(false);
    scrollByFinger(view);
    connect(view->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &EventsPage::enableActions);
    for (const int key : {int(Qt::Key_Return), int(Qt::Key_Enter)}) {
        auto *shortcut = new QShortcut(QKeySequence(key), view);
        shortcut->setContext(Qt::WidgetShortcut);
        connect(shortcut, &QShortcut::activated, this, &EventsPage::acknowledge);
    }

    readTimer->setSingleShot(true);
    readTimer->setInterval(readMsecs);
    connect(readTimer, &QTimer::timeout, this, &EventsPage::read);
    clockTimer->setInterval(clockMsecs);
    connect(clockTimer, &QTimer::timeout, this, [this] {
        if (view->isVisible())
            view->viewport()->update(); // what is present lasts longer
    });
    clockTimer->start();
    // A site may get thousands of UPSes at once.
    listTimer->setSingleShot(true);
    connect(listTimer, &QTimer::timeout, this, [this] {
        listUpses();
        list->followMore();
    });
    connect(site, &SiteModel::added, listTimer, QOverload<>::of(&QTimer::start));
    listUpses();
    EventsPage::applyScale();
    showStatus();
    enableActions();
}

QWidget *EventsPage::makeFilters()
{
    auto *room = new QWidget(card);
    filterRow = new QHBoxLayout(room);
    filterRow->setContentsMargins(0, 0, 0, 0);
    const auto makeBox = [&](const QString &name) {
        auto *box = new QComboBox(room);
        Theme::setText(box, Theme::Normal);
        box->setAccessibleName(name);
        box->setToolTip(name);
        box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        box->setMinimumContentsLength(4);
        box->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        connect(box, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &EventsPage::read);
        filterRow->addWidget(box, 2);
        return box;
    };
    severity = makeBox(tr("Severity"));
    severity->setObjectName(QStringLiteral("severity filter"));
    severity->addItem(tr("All events"));
    severity->addItem(tr("Warnings and worse"), int(Severity::Warning));
    severity->addItem(tr("Critical only"), int(Severity::Critical));
    ups = makeBox(tr("UPS"));
    ups->setObjectName(QStringLiteral("ups filter"));
    period = makeBox(tr("Period"));
    period->setObjectName(QStringLiteral("period filter"));
    addPeriod(period, tr("Any time"), 0);
    addPeriod(period, tr("Past hour"), hourMsecs);
    addPeriod(period, tr("Past day"), dayMsecs);
    addPeriod(period, tr("Past week"), 7 * dayMsecs);
    addPeriod(period, tr("Past month"), 30 * dayMsecs);
    search = makeSearchField(tr("Search"), room);
    search->setObjectName(QStringLiteral("text filter"));
    connect(search, &QLineEdit::textChanged, readTimer, QOverload<>::of(&QTimer::start));
    filterRow->addWidget(search, 3);
    return room;
}

QWidget *EventsPage::makeActions()
{
    auto *room = new QWidget(card);
    actionRow = new QHBoxLayout(room);
    actionRow->setContentsMargins(0, 0, 0, 0);
    status = new ElidedLabel(room);
    status->setObjectName(QStringLiteral("events status"));
    Theme::setText(status, Theme::Small);
    status->setForegroundRole(QPalette::Mid);
    user = new QLineEdit(room);
    user->setObjectName(QStringLiteral("user"));
    Theme::setText(user, Theme::Normal);
    user->setText(userName());
    user->setMaxLength(longestName);
    user->setPlaceholderText(tr("Your name"));
    user->setAccessibleName(tr("Your name"));
    user->setToolTip(tr("Who acknowledges"));
    connect(user, &QLineEdit::textChanged, this, &EventsPage::enableActions);
    actionRow->addWidget(status, 1);
    actionRow->addWidget(user);
    const auto makeButton = [&](const QString &text, const QString &name, const QString &help) {
        auto *button = new QPushButton(text, room);
        Theme::setText(button, Theme::Normal);
        button->setObjectName(name);
        button->setToolTip(help);
        button->setAccessibleDescription(help);
        actionRow->addWidget(button);
        return button;
    };
    acknowledgeButton = makeButton(tr("Acknowledge"), QStringLiteral("acknowledge"),
                                   tr("Acknowledges the chosen event (Enter)"));
    allButton =
        makeButton(tr("All"), QStringLiteral("acknowledge all"), tr("Acknowledges all events"));
    allButton->setAccessibleName(tr("Acknowledge all"));
    exportButton = makeButton(tr("Export"), QStringLiteral("export events"),
                              tr("Writes the listed events to a CSV file"));
    connect(acknowledgeButton, &QPushButton::clicked, this, &EventsPage::acknowledge);
    connect(allButton, &QPushButton::clicked, this, &EventsPage::acknowledgeAll);
    connect(exportButton, &QPushButton::clicked, this, &EventsPage::chooseFile);
    return room;
}

QString EventsPage::userName() const
{
    const struct passwd *entry = ::getpwuid(::geteuid());
    return entry ? QString::fromLocal8Bit(entry->pw_name).left(longestName) : QString();
}

void EventsPage::setHistory(History *newHistory)
{
    if (history)
        history->disconnect(this);
    history = newHistory;
    isReading = false;
    list->setEvents({}, {});
    if (history) {
        connect(history, &History::eventsRead, this, &EventsPage::take);
        connect(history, &History::eventsChanged, this, [this](const QVector<Event> &events) {
            // An answer that is still to come has them. Many at once are read faster than put into
            // their places.
            if (!isReading) {
                if (events.size() > mostPlaced || list->rowCount() > mostListed + mostPlaced)
                    readTimer->start();
                else
                    list->update(events);
            }
            enableActions();
            showStatus();
        });
        connect(history, &History::replaced, this, &EventsPage::read);
        connect(history, &History::statusChanged, this, [this] {
            showStatus();
            enableActions();
        });
        connect(history, &History::unacknowledgedChanged, this, &EventsPage::enableActions);
        connect(history, &History::fileWritten, this,
                [this](int, const QString &file, const QString &problem) {
                    notice = problem.isEmpty() ? tr("Written: %1").arg(file)
                                               : tr("Not written: %1").arg(problem);
                    showStatus();
                });
        read();
    }
    showStatus();
    enableActions();
}

void EventsPage::listUpses()
{
    const QString chosen = ups->currentData().toString();
    const QSignalBlocker silent(ups);
    ups->clear();
    ups->addItem(tr("All UPSes"), QString());
    for (int i = 0; i < site->count(); ++i)
        ups->addItem(site->at(i)->title(), site->at(i)->id());
    ups->setCurrentIndex(std::max(ups->findData(chosen), 0));
    ups->setVisible(site->count() > 1);
}

EventFilter EventsPage::chosenFilter() const
{
    EventFilter filter;
    if (severity->currentData().isValid())
        filter.least = Severity(severity->currentData().toInt());
    filter.ups = ups->currentData().toString();
    const qint64 length = period->currentData().toLongLong();
    if (length > 0)
        filter.from = QDateTime::currentMSecsSinceEpoch() - length;
    filter.text = search->text().trimmed();
    return filter;
}

void EventsPage::read()
{
    readTimer->stop();
    if (!history)
        return;
    askedFilter = chosenFilter();
    asked = history->readEvents(askedFilter, mostListed);
    isReading = true;
}

void EventsPage::take(int number, const QVector<Event> &events, bool all)
{
    if (number != asked)
        return; // another question came meanwhile
    isReading = false;
    const QModelIndexList chosen = view->selectionModel()->selectedRows();
    const qint64 id = chosen.isEmpty() ? 0 : list->at(chosen.first().row()).id;
    allListed = all;
    list->setEvents(events, askedFilter);
    const int row = id == 0 ? -1 : list->rowOf(id);
    if (row >= 0)
        view->setCurrentIndex(list->index(row));
    showStatus();
    enableActions();
}

void EventsPage::acknowledge()
{
    const QModelIndexList chosen = view->selectionModel()->selectedRows();
    if (!acknowledgeButton->isEnabled() || chosen.isEmpty())
        return;
    notice.clear();
    history->acknowledge({list->at(chosen.first().row()).id}, user->text().trimmed(),
                         QDateTime::currentMSecsSinceEpoch());
}

void EventsPage::acknowledgeAll()
{
    notice.clear();
    if (history)
        history->acknowledgeAll(user->text().trimmed(), QDateTime::currentMSecsSinceEpoch());
}

void EventsPage::chooseFile()
{
    auto *dialog = new QFileDialog(this, tr("Export the events"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix(QStringLiteral("csv"));
    dialog->setNameFilter(tr("CSV files (*.csv)"));
    dialog->selectFile(
        QStringLiteral("events-%1.csv").arg(QDate::currentDate().toString(Qt::ISODate)));
    connect(dialog, &QFileDialog::fileSelected, this, &EventsPage::exportTo);
    dialog->open();
}

void EventsPage::exportTo(const QString &file)
{
    if (history)
        history->exportEvents(chosenFilter(), file);
}

void EventsPage::showStatus()
{
    QString text;
    if (!notice.isEmpty())
        text = notice;
    else if (history && !history->status().line.isEmpty())
        text = history->status().line;
    else if (history && !allListed)
        text = tr("The latest %1 events").arg(list->rowCount());
    else if (history)
        text = list->rowCount() == 1 ? tr("1 event") : tr("%1 events").arg(list->rowCount());
    if (history && history->status().state == HistoryStatus::State::Temporary && notice.isEmpty())
        text += Theme::separator() + tr("until the console ends");
    status->setText(text);
    placeStatus();
    // Without a history the list alone says so.
    view->setEmptyText(history ? tr("No events") : noHistoryText());
    view->setAccessibleDescription(history ? QString() : noHistoryText());
}

/// Beside the buttons, or in a row of its own where the window is narrow.
void EventsPage::placeStatus()
{
    constexpr int roomBeside = 600;
    const bool beside = width() >= Theme::px(roomBeside);
    QBoxLayout *row = beside ? actionRow : rows;
    if (row->indexOf(status) < 0) {
        (beside ? rows : actionRow)->removeWidget(status);
        status->setParent(beside ? actionRow->parentWidget() : card);
        row->insertWidget(beside ? 0 : 2, status, beside ? 1 : 0);
        actionRow->setStretchFactor(user, beside ? 0 : 1);
        status->show();
    }
    filterRow->setStretchFactor(search, beside ? 3 : 1);
    user->setMaximumWidth(beside ? Theme::px(userUnits) : QWIDGETSIZE_MAX);
    const int room = width() - 2 * Theme::px(Theme::margin) - layout()->contentsMargins().left() -
                     layout()->contentsMargins().right();
    const bool isLong = status->fontMetrics().horizontalAdvance(status->text()) >= room;
    status->setLines(beside || isLong ? 2 : 1);
}

void EventsPage::resizeEvent(QResizeEvent *event)
{
    Page::resizeEvent(event);
    placeStatus();
}

void EventsPage::enableActions()
{
    const QModelIndexList chosen = view->selectionModel()->selectedRows();
    const bool canAcknowledge =
        history && history->status().canAcknowledge() && !user->text().trimmed().isEmpty();
    acknowledgeButton->setEnabled(canAcknowledge && !chosen.isEmpty() &&
                                  !list->at(chosen.first().row()).isAcknowledged());
    bool any = false;
    if (history) {
        for (const int count : history->unacknowledged())
            any = any || count > 0;
    }
    allButton->setEnabled(canAcknowledge && any);
    exportButton->setEnabled(history && list->rowCount() > 0);
}

void EventsPage::showUps(const UpsModel &)
{}

void EventsPage::showEvent(QShowEvent *event)
{
    Page::showEvent(event);
    listUpses(); // their names may have come meanwhile
    // A period that ends now goes on.
    if (period->currentData().toLongLong() > 0)
        read();
}

QSize EventsPage::minimumSizeHint() const
{
    return layout()->minimumSize();
}

void EventsPage::applyScale()
{
    const int margin = Theme::px(Theme::margin);
    const int spacing = Theme::px(spacingUnits);
    card->layout()->setContentsMargins(margin, spacing, margin, spacing);
    card->layout()->setSpacing(spacing);
    filterRow->setSpacing(spacing);
    actionRow->setSpacing(spacing);
    for (QWidget *control : {static_cast<QWidget *>(severity), static_cast<QWidget *>(ups),
                             static_cast<QWidget *>(period), static_cast<QWidget *>(search),
                             static_cast<QWidget *>(user)})
        control->setFixedHeight(Theme::touchSize());
    // Their own least width follows the resolution of fonts; these texts do not.
    for (QComboBox *box : {severity, ups, period})
        box->setMinimumWidth(Theme::px(filterUnits));
    search->setMinimumWidth(Theme::px(filterUnits));
    user->setMinimumWidth(Theme::px(userUnits));
    for (QLineEdit *edit : {search, user})
        edit->setTextMargins(Theme::px(4), 0, Theme::px(4), 0);
    status->setMinimumWidth(Theme::px(90));
    for (QPushButton *button : {acknowledgeButton, allButton, exportButton}) {
        button->setMinimumHeight(Theme::touchSize());
        button->setMinimumWidth(
            std::max(Theme::touchSize(),
                     button->fontMetrics().horizontalAdvance(button->text()) + Theme::px(20)));
    }
    placeStatus();
    view->doItemsLayout();
}

// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "widgetlist.h"

#include "slimscrollbars.h"
#include "theme.h"
#include "widgetcatalogue.h"

#include <QtCore/QSignalBlocker>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QVBoxLayout>

#include <algorithm>

namespace {

constexpr int nameRole = Qt::UserRole;
constexpr int wordsRole = Qt::UserRole + 1;
constexpr QSize rowSize(0, 26);
constexpr QSize iconSize(22, 22);

enum Group { Aero, Metro, Switches, Containers };
const char *const groupTitles[] = {"Aero", "Metro", "Switches", "Containers"};

Group groupOf(const WidgetDescription &description)
{
    if (description.isContainer)
        return Containers;
    switch (description.family) {
    case WidgetFamily::Aero:
        return Aero;
    case WidgetFamily::Metro:
        return Metro;
    case WidgetFamily::SwitchesAndPages:
        break;
    }
    return Switches;
}

/// A widget's image in its own colours, also where it is selected.
QIcon plainIcon(const WidgetDescription &description)
{
    QIcon icon = description.drawIcon();
    icon.addPixmap(icon.pixmap(iconSize), QIcon::Selected);
    return icon;
}

QListWidgetItem *heading(const QString &title)
{
    auto *item = new QListWidgetItem(title);
    item->setFlags(Qt::NoItemFlags);
    item->setFont(Theme::font(Theme::Small, true));
    item->setSizeHint(rowSize);
    return item;
}

bool isHeading(const QListWidgetItem *item)
{
    return item->data(nameRole).isNull();
}

} // namespace

WidgetList::WidgetList(QWidget *parent)
    : QWidget(parent)
    , search(new QLineEdit(this))
    , list(new QListWidget(this))
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Theme::spacing);
    layout->addWidget(search);
    layout->addWidget(list);
    search->setPlaceholderText(tr("Search"));
    search->setClearButtonEnabled(true);
    list->setFont(Theme::font(Theme::Small));
    search->setFont(Theme::font(Theme::Small));
    list->setFrameShape(QFrame::NoFrame);
    list->setIconSize(iconSize);
    list->setUniformItemSizes(true);
    list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    useSlimScrollBars(list);
    fill();
    connect(search, &QLineEdit::textChanged, this, [this](const QString &text) { narrow(text); });
    connect(search, &QLineEdit::returnPressed, this, [this] { chooseFirst(); });
    connect(list, &QListWidget::currentItemChanged, this, [this](const QListWidgetItem *item) {
        if (item && !isHeading(item))
            Q_EMIT chosen(item->data(nameRole).toString());
    });
}

void WidgetList::select(const QString &name)
{
    const QSignalBlocker blocker(list);
    for (int i = 0; i < list->count(); ++i) {
        if (list->item(i)->data(nameRole) == name)
            list->setCurrentRow(i);
    }
}

QStringList WidgetList::listedNames() const
{
    QStringList names;
    for (int i = 0; i < list->count(); ++i) {
        const QListWidgetItem *item = list->item(i);
        if (!isHeading(item) && !item->isHidden())
            names.append(item->data(nameRole).toString());
    }
    return names;
}

void WidgetList::fill()
{
    for (const Group group : {Aero, Metro, Switches, Containers}) {
        list->addItem(heading(QString::fromLatin1(groupTitles[group])));
        for (const WidgetDescription &description : widgetCatalogue()) {
            if (groupOf(description) != group)
                continue;
            const QString name = QString::fromLatin1(description.className);
            const QString toolTip = QString::fromLatin1(description.toolTip);
            auto *item = new QListWidgetItem(plainIcon(description), name, list);
            item->setToolTip(toolTip);
            item->setData(nameRole, name);
            item->setData(wordsRole, QString(name + QLatin1Char(' ') + toolTip));
            item->setSizeHint(rowSize);
        }
    }
}

void WidgetList::narrow(const QString &text)
{
    const QStringList words = text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    // A heading shows when an item under it does; backwards, the items come first.
    bool anyInGroup = false;
    for (int i = list->count() - 1; i >= 0; --i) {
        QListWidgetItem *item = list->item(i);
        if (isHeading(item)) {
            item->setHidden(!anyInGroup);
            anyInGroup = false;
            continue;
        }
        const QString known = item->data(wordsRole).toString();
        const bool matches = std::all_of(words.begin(), words.end(), [&](const QString &word) {
            return known.contains(word, Qt::CaseInsensitive);
        });
        item->setHidden(!matches);
        anyInGroup = anyInGroup || matches;
    }
}

void WidgetList::chooseFirst()
{
    const QStringList names = listedNames();
    if (names.isEmpty())
        return;
    select(names.first());
    Q_EMIT chosen(names.first());
}

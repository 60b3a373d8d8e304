// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "variablelist.h"

#include <QtCore/QMap>

namespace {

enum Column { Name, Value, ColumnCount };

} // namespace

void VariableList::setVariables(const QHash<QString, QString> &unsorted)
{
    QMap<QString, QString> variables;
    for (auto given = unsorted.cbegin(); given != unsorted.cend(); ++given)
        variables.insert(given.key(), given.value());
    if (rows.isEmpty() || variables.isEmpty()) {
        if (rows.isEmpty() && variables.isEmpty())
            return;
        beginResetModel();
        rows.clear();
        for (auto given = variables.cbegin(); given != variables.cend(); ++given)
            rows.append({given.key(), given.value()});
        endResetModel();
        return;
    }
    // Both are sorted by name: one walk takes out what went, puts in what came.
    int row = 0;
    for (auto given = variables.cbegin(); given != variables.cend(); ++given) {
        int kept = row;
        while (kept < rows.size() && rows.at(kept).name < given.key())
            ++kept;
        if (kept > row) {
            beginRemoveRows(QModelIndex(), row, kept - 1);
            rows.remove(row, kept - row);
            endRemoveRows();
        }
        if (row == rows.size() || rows.at(row).name != given.key()) {
            beginInsertRows(QModelIndex(), row, row);
            rows.insert(row, {given.key(), given.value()});
            endInsertRows();
        } else if (rows.at(row).value != given.value()) {
            rows[row].value = given.value();
            const QModelIndex changed = index(row, Value);
            Q_EMIT dataChanged(changed, changed);
        }
        ++row;
    }
    if (row < rows.size()) {
        beginRemoveRows(QModelIndex(), row, int(rows.size()) - 1);
        rows.resize(row);
        endRemoveRows();
    }
}

int VariableList::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(rows.size());
}

int VariableList::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(ColumnCount);
}

QVariant VariableList::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= rows.size())
        return QVariant();
    const Row &row = rows.at(index.row());
    const QString &text = index.column() == Name ? row.name : row.value;
    switch (role) {
    case Qt::DisplayRole:
        return text;
    case Qt::ToolTipRole:
        return text.toHtmlEscaped(); // a tool tip would take it for markup
    default:
        return QVariant();
    }
}

QVariant VariableList::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QVariant();
    return section == Name ? tr("Variable") : tr("Value");
}

// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtCore/QAbstractTableModel>
#include <QtCore/QHash>
#include <QtCore/QString>
#include <QtCore/QVector>

/// The variables of a UPS as a table of names and values, in the order of their names.
class VariableList : public QAbstractTableModel
{
    Q_OBJECT

public:
    using QAbstractTableModel::QAbstractTableModel;

    /// Takes new values; rows that stay are kept, so that a selection outlives them.
    void setVariables(const QHash<QString, QString> &unsorted);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

private:
    struct Row
    {
        QString name;
        QString value;
    };

    QVector<Row> rows;
};

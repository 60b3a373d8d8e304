// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtWidgets/QWidget>

class QLineEdit;
class QListWidget;

/// All widgets in groups, with a field that narrows the list to those whose name or description
/// contains every word typed.
class WidgetList : public QWidget
{
    Q_OBJECT

public:
    explicit WidgetList(QWidget *parent = nullptr);

    /// Marks the widget of class @p name as the chosen one, without a signal.
    void select(const QString &name);
    /// The class names listed now.
    QStringList listedNames() const;

Q_SIGNALS:
    void chosen(const QString &name);

private:
    void fill();
    void narrow(const QString &text);
    void chooseFirst();

    QLineEdit *search;
    QListWidget *list;
};

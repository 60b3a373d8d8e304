// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "searchfield.h"

#include "theme.h"

#include <QtCore/QCoreApplication>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QToolButton>

QLineEdit *makeSearchField(const QString &placeholder, QWidget *parent)
{
    auto *field = new QLineEdit(parent);
    Theme::setText(field, Theme::Normal);
    field->setPlaceholderText(placeholder);
    field->setAccessibleName(QCoreApplication::translate("SearchField", "Search"));
    field->setClearButtonEnabled(true);
    const QList<QToolButton *> clearButtons = field->findChildren<QToolButton *>();
    for (QToolButton *clear : clearButtons)
        clear->setAccessibleName(QCoreApplication::translate("SearchField", "Clear"));
    field->setMaxLength(200);
    return field;
}

// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "model/upsmodel.h"

#include <QtCore/QPointer>
#include <QtWidgets/QDialog>

class QCheckBox;
class QDialogButtonBox;
class QLabel;
class QLineEdit;

/// Asks who gives commands to a UPS, and lets its server check the answer.
class LoginDialog : public QDialog
{
    Q_OBJECT

public:
    /// A user who wants to is kept in @p file; empty: nobody is.
    LoginDialog(UpsModel *ups, const QString &file, QWidget *parent);

Q_SIGNALS:
    /// The server took the user, who asks to be kept in the file of credentials.
    void keep(const QString &upsId, const QString &user, const QString &password);

private:
    QWidget *makePlace(const QString &file);
    void ask();
    void takeAnswer(CommandOutcome outcome, const QString &text);

    QPointer<UpsModel> ups;
    bool isAsking = false;
    QLineEdit *user;
    QLineEdit *password;
    QCheckBox *keeps;
    QLabel *answer;
    QDialogButtonBox *buttons;
};

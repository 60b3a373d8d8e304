// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "logindialog.h"

#include "display.h"
#include "elidedlabel.h"
#include "theme.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QFormLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QVBoxLayout>

#include <utility>

namespace {

/// Who reads the password on its way.
QString wayText(const CommandServer &server)
{
    if (server.isEncrypted)
        return LoginDialog::tr("The connection is encrypted, and its certificate is checked.");
    return server.isLocal
               ? LoginDialog::tr("The connection is not encrypted. It stays on this machine.")
               : LoginDialog::tr("The connection is NOT encrypted: others on the network may read "
                                 "the password.");
}

} // namespace

LoginDialog::LoginDialog(UpsModel *askedUps, const QString &file, QWidget *parent)
    : QDialog(parent)
    , ups(askedUps)
    , user(new QLineEdit(this))
    , password(new QLineEdit(this))
    , keeps(new QCheckBox(tr("Keep user and password in a file"), this))
    , answer(Theme::label(this, Theme::Normal))
    , buttons(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this))
{
    setWindowTitle(tr("Log in"));
    setObjectName(QStringLiteral("login"));
    constexpr int longest = 128;
    for (QLineEdit *edit : {user, password}) {
        edit->setMaxLength(longest);
        edit->setMinimumHeight(Theme::touchSize());
        Theme::setText(edit, Theme::Normal);
    }
    user->setObjectName(QStringLiteral("user"));
    user->setText(ups->user());
    password->setObjectName(QStringLiteral("password"));
    password->setEchoMode(QLineEdit::Password);
    keeps->setObjectName(QStringLiteral("keep"));
    Theme::setText(keeps, Theme::Normal);
    answer->setObjectName(QStringLiteral("answer"));
    answer->setWordWrap(true);
    const CommandServer server = ups->commandServer();
    auto *place = Theme::label(this, Theme::Normal, true,
                               server.address.isEmpty() ? tr("User for %1").arg(ups->title())
                                                        : tr("User for %1").arg(server.address));
    place->setObjectName(QStringLiteral("place"));
    auto *way = Theme::label(this, Theme::Normal, false,
                             server.address.isEmpty() ? QString() : wayText(server));
    way->setObjectName(QStringLiteral("way"));
    way->setWordWrap(true);
    way->setVisible(!way->text().isEmpty());
    answer->setText(tr("The server of %1 takes commands from its users only.").arg(ups->title()));
    auto *layout = new QFormLayout(this);
    layout->setSizeConstraint(QLayout::SetMinimumSize);
    layout->addRow(place);
    layout->addRow(way);
    layout->addRow(answer);
    for (const auto &[text, edit] :
         {std::pair(tr("User"), user), std::pair(tr("Password"), password)}) {
        QLabel *label = Theme::label(this, Theme::Normal, false, text);
        label->setBuddy(edit); // which names it for screen readers
        label->setMinimumHeight(Theme::touchSize());
        layout->addRow(label, edit);
    }
    layout->addRow(keeps);
    if (file.isEmpty())
        keeps->hide();
    else
        layout->addRow(makePlace(file));
    layout->addRow(buttons);
    buttons->button(QDialogButtonBox::Ok)->setText(tr("Log in"));
    for (const auto which : {QDialogButtonBox::Ok, QDialogButtonBox::Cancel}) {
        buttons->button(which)->setMinimumHeight(Theme::touchSize());
        Theme::setText(buttons->button(which), Theme::Normal);
    }
    connect(buttons, &QDialogButtonBox::accepted, this, &LoginDialog::ask);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(ups, &UpsModel::userChecked, this, &LoginDialog::takeAnswer);
    connect(ups, &QObject::destroyed, this, &QDialog::reject);
    // Whoever is logged in asks for another user.
    user->selectAll();
    user->setFocus();
}

/// Where the password goes, and who can read it there.
QWidget *LoginDialog::makePlace(const QString &file)
{
    const QString shown =
        QDir::toNativeSeparators(QDir::cleanPath(QFileInfo(file).absoluteFilePath()));
    const QString readers = tr("Only the owner of the file can read it.");
    auto *room = new QWidget(this);
    auto *path = new ElidedLabel(room);
    path->setObjectName(QStringLiteral("file"));
    path->setElideMode(Qt::ElideMiddle);
    path->setText(shown);
    path->setToolTip(QStringLiteral("<p>%1</p>").arg(shown.toHtmlEscaped()));
    Theme::setText(path, Theme::Normal);
    auto *owner = Theme::label(room, Theme::Normal, false, readers);
    owner->setWordWrap(true);
    keeps->setAccessibleDescription(shown + QStringLiteral(". ") + readers);
    auto *lines = new QVBoxLayout(room);
    const int indent = Theme::px(24); // below the text of the check box
    lines->setContentsMargins(indent, 0, 0, 0);
    lines->setSpacing(0);
    lines->addWidget(path);
    lines->addWidget(owner);
    return room;
}

void LoginDialog::ask()
{
    if (!ups)
        return;
    isAsking = true;
    buttons->button(QDialogButtonBox::Ok)->setEnabled(false);
    answer->setText(tr("Asking the server …"));
    ups->logIn(user->text(), password->text());
}

void LoginDialog::takeAnswer(CommandOutcome outcome, const QString &text)
{
    // Another one may be checked meanwhile.
    if (!isAsking)
        return;
    isAsking = false;
    buttons->button(QDialogButtonBox::Ok)->setEnabled(true);
    if (outcome != CommandOutcome::Done) {
        answer->setText(sentence(text) + QLatin1Char('.'));
        password->selectAll();
        password->setFocus();
        return;
    }
    if (keeps->isChecked() && ups)
        Q_EMIT keep(ups->id(), user->text(), password->text());
    password->clear();
    accept();
}

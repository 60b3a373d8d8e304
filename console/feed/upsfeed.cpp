// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "upsfeed.h"

UpsFeed::UpsFeed(QObject *parent)
    : QObject(parent)
{
    qRegisterMetaType<Snapshot>();
}

UpsFeed::~UpsFeed() = default;

bool UpsFeed::supports(Command) const
{
    return false;
}

bool UpsFeed::command(Command)
{
    return false;
}

void UpsFeed::askForOffer()
{}

void UpsFeed::run(const QString &name, const QString &value)
{
    Q_EMIT commandFinished({name, value, QString(), CommandOutcome::Refused,
                            QStringLiteral("this UPS takes no commands")});
}

void UpsFeed::set(const QString &name, const QString &value)
{
    UpsFeed::run(name, value);
}

bool UpsFeed::needsUser() const
{
    return false;
}

QString UpsFeed::user() const
{
    return QString();
}

CommandServer UpsFeed::commandServer() const
{
    return {};
}

QString UpsFeed::userProblem() const
{
    return QString();
}

void UpsFeed::logOut()
{}

void UpsFeed::logIn(const QString &, const QString &)
{}

void UpsFeed::setFollowed(bool)
{}

bool UpsFeed::isKeptElsewhere() const
{
    return false;
}

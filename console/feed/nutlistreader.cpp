// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "nutlistreader.h"

NutListReader::NutListReader(const QString &upsName)
    : NutReader("LIST VAR " + upsName.toUtf8())
{}

const NutVariables &NutListReader::variables() const
{
    return list;
}

void NutListReader::takeRow(const QVector<QByteArray> &words)
{
    // As many as most UPSes have.
    constexpr int usual = 40;
    if (list.isEmpty())
        list.reserve(usual);
    if (words.size() == 2)
        list.insert(QString::fromUtf8(words.at(0)), QString::fromUtf8(words.at(1)));
    else
        finish(State::Broken, QStringLiteral("an unexpected line"));
}

void NutListReader::dropRows()
{
    list.clear();
}

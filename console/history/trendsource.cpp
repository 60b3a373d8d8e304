// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "trendsource.h"

TrendSource::TrendSource(QObject *parent)
    : QObject(parent)
{}

TrendSource::~TrendSource() = default;

void TrendSource::drop(int)
{}

QString TrendSource::whyNotKept(const QString &) const
{
    return QString();
}

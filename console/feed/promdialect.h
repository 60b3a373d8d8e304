// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QVector>

/// A metric that stands for a variable of a UPS.
struct PromValue
{
    QString metric;
    QString variable; ///< such as "battery.charge"
    double factor = 1.0;
};

/// How an exporter of UPSes names its metrics and labels.
struct PromDialect
{
    QString name;
    QString statusMetric; ///< 1 for each flag that is set
    QString flagLabel;    ///< contains the flag, such as "OB"
    QString upsLabel;     ///< names the UPS
    QVector<PromValue> values;

    /// What stands for @p variable; null where nothing does.
    const PromValue *valueOf(const QString &variable) const;
    /// Null where there is none of that name.
    static const PromDialect *find(const QString &name);
    static QStringList names();
};

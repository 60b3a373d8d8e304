// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "nutreader.h"

#include <QtCore/QHash>

/// The variables of a UPS, such as "battery.charge", with their values as the server gives them.
using NutVariables = QHash<QString, QString>;

/// Reads the answer to "LIST VAR": all variables of a UPS.
class NutListReader : public NutReader
{
public:
    static constexpr int maxVariables = maxRows;

    explicit NutListReader(const QString &upsName);

    const NutVariables &variables() const;

protected:
    void takeRow(const QVector<QByteArray> &words) override;
    void dropRows() override;

private:
    NutVariables list;
};

// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "theme.h"

#include <QtCore/QPair>
#include <QtCore/QVector>

/// A card that lists the keys of the console; Esc, F1 or a click closes it.
class KeyHelp : public Card
{
    Q_OBJECT

public:
    /// Keys, each with what it does.
    KeyHelp(const QVector<QPair<QString, QString>> &keys, QWidget *parent);

    /// In the middle of the parent.
    void popUp();

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
};

// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "page.h"

#include <vector>

class BarRoom;
class ElidedLabel;
class QGridLayout;
class QLabel;
class QVBoxLayout;

/// The electrical values: bars for load and voltages, numbers for the rest.
class PowerPage : public Page
{
    Q_OBJECT

public:
    explicit PowerPage(QWidget *parent = nullptr);

    void applyScale() override;

protected:
    void showUps(const UpsModel &ups) override;

private:
    struct NumberCell
    {
        Quantity quantity;
        ElidedLabel *name;
        QLabel *text;
    };

    QWidget *makeBars();
    QWidget *makeNumbers();

    std::vector<BarRoom *> bars;
    std::vector<NumberCell> numbers;
    QVBoxLayout *barLayout;
    QGridLayout *numberLayout;
};

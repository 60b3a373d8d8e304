#pragma once

#include "page.h"

#include <vector>

class MetroLinerate;
class MetroXbar;
class QGridLayout;
class QLabel;

/// The electrical values: bars for load and voltages, numbers for the rest.
class PowerPage : public Page
{
    Q_OBJECT

public:
    explicit PowerPage(QWidget *parent = nullptr);

protected:
    void showUps(const UpsModel &ups) override;

private:
    struct VoltageRow
    {
        Quantity quantity;
        MetroXbar *bar;
        QLabel *noData;
    };
    struct NumberCell
    {
        Quantity quantity;
        int decimals;
        QLabel *text;
    };

    QWidget *makeBars();
    QWidget *makeNumbers();
    QLabel *addRow(QGridLayout *grid, int row, Quantity quantity, QWidget *bar);
    void showVoltage(const VoltageRow &row, const Snapshot &snapshot);

    MetroLinerate *load;
    QLabel *noLoad;
    std::vector<VoltageRow> voltages;
    std::vector<NumberCell> numbers;
};

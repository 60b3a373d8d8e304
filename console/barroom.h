// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "model/upsmodel.h"

#include <QtWidgets/QWidget>

class ElidedLabel;
class MetroLinerate;
class MetroXbar;
class QLabel;

/// A bar gauge with what operators expect around it: the quantity's name, its phases, the measured
/// number, the scale's end numbers, a mark for the nominal value and strips where a value is too
/// low or too high. The bar's own number, which knows no words, is out of sight.
class BarRoom : public QWidget
{
    Q_OBJECT

public:
    explicit BarRoom(Quantity quantity, QWidget *parent = nullptr);

    void showUps(const UpsModel &ups);
    /// Takes the theme's new scale.
    void applyScale();

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void arrange();
    void applyColors();
    void showValue();
    void showAlarm();
    void showBar(QWidget *bar);
    QRect trackRect() const;
    int columnOf(double value) const;

    const Quantity quantity;
    Scale scale;
    Reading reading;
    ElidedLabel *name;
    ElidedLabel *phases;
    QLabel *number;
    QWidget *clip; // what is seen of the bars
    MetroXbar *bar;
    MetroLinerate *loadBar = nullptr; // of the load, while it can show it
};

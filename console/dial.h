#pragma once

#include "feed/snapshot.h"

#include <QtCore/QObject>

class MetroCirclerate;
class QWidget;

/// A dial for one measured quantity: the widget and what it needs to follow snapshots.
class Dial
{
public:
    /// The scale @p minimum to @p maximum holds until the UPS tells one of its own.
    Dial(QWidget *parent, Quantity quantity, const QString &label, double minimum, double maximum);

    /// The room that the dial stands in, for a layout; the dial finds its own size inside.
    QWidget *room() const;
    void showSnapshot(const Snapshot &snapshot);

private:
    void setScale(double minimum, double maximum);

    QWidget *place;
    MetroCirclerate *circle;
    Quantity quantity;
    double defaultMinimum;
    double defaultMaximum;
};

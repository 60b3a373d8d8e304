// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "widgetinterface.h"

/// A gauge: a value that is read but not set, with its text exactly as it is drawn.
class GaugeInterface : public WidgetInterface, public QAccessibleValueInterface
{
public:
    using WidgetInterface::WidgetInterface;

    void *interface_cast(QAccessible::InterfaceType type) override;
    QAccessible::State state() const override;
    Announcement announcement() const override;

    QVariant currentValue() const override;
    /// Does nothing.
    void setCurrentValue(const QVariant &value) override;
    /// The ends of the scale; a value may lie beyond them.
    QVariant maximumValue() const override;
    QVariant minimumValue() const override;
    QVariant minimumStepSize() const override;

protected:
    QString label() const override;
    QString status() const override;

private:
    struct Reading
    {
        QVariant value;
        QVariant minimum;
        QVariant maximum;
        QString text;
        QString label;
    };
    Reading reading() const;
};

// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtCore/QMetaEnum>
#include <QtCore/QVariant>
#include <QtWidgets/QWidget>

struct PropertyBounds;

/// An input for a value of one type.
class ValueEditor : public QWidget
{
    Q_OBJECT

public:
    explicit ValueEditor(QWidget *parent = nullptr);

    /// Shows @p value without a signal. What is being typed stays while the value does.
    void setValue(const QVariant &value);
    /// The value shown last or edited.
    QVariant value() const;

    /// The editor for values of @p type, a QMetaType::Type; null for a type that has none.
    static ValueEditor *create(int type, const PropertyBounds &bounds);
    /// The editor for an enumerator, or for a combination of flags.
    static ValueEditor *create(const QMetaEnum &type);
    /// The editor for one of the numbers from 0 on that @p names stand for.
    static ValueEditor *create(const QStringList &names);

    /// A property's number, also where it is an enumerator or a combination of flags.
    static int numberOf(const QVariant &value);

Q_SIGNALS:
    /// A person chose another value.
    void edited(const QVariant &value);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

    /// Brings the input to @p value; its signals are blocked meanwhile by the editor itself.
    virtual void showValue(const QVariant &value) = 0;
    /// Reports a value that a person chose, unless it is the present one.
    void take(const QVariant &value);
    /// Keeps the wheel, which scrolls the list of editors, from changing @p input by accident.
    void guard(QWidget *input);

private:
    QVariant held;
};

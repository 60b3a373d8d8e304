// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtCore/QObject>
#include <QtCore/QPointer>

#include <functional>

/// Reports every signal of an object as text, such as "toggled(checked: true)".
class SignalMonitor : public QObject
{
    // No Q_OBJECT: qt_metacall() below is written by hand, since it takes signals of any signature.

public:
    using Report = std::function<void(const QString &text)>;

    explicit SignalMonitor(Report report);

    /// Follows @p object in place of the one before; null for none.
    void watch(QObject *object);

    int qt_metacall(QMetaObject::Call call, int index, void **arguments) override;

private:
    QPointer<QObject> watched;
    Report report;
};

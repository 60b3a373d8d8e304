// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "signalmonitor.h"

#include "qtversion_p.h"

#include <QtCore/QMetaMethod>
#include <QtCore/QSize>
#include <QtCore/QVariant>

namespace {

QString textOf(const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::QSize:
        return QStringLiteral("%1 x %2").arg(value.toSize().width()).arg(value.toSize().height());
    case QMetaType::QString:
        return QStringLiteral("\"%1\"").arg(value.toString());
    default:
        return value.canConvert<QString>() ? value.toString() : QString();
    }
}

QString describe(const QMetaMethod &signal, void **arguments)
{
    QStringList texts;
    const QList<QByteArray> names = signal.parameterNames();
    for (int i = 0; i < signal.parameterCount(); ++i) {
        const int type = signal.parameterType(i);
        const QString text = type == QMetaType::UnknownType
                                 ? QString()
                                 : textOf(KivPrivate::variantOf(type, arguments[i + 1]));
        const QString name = QString::fromLatin1(names.at(i));
        if (text.isEmpty())
            texts.append(name);
        else if (name.isEmpty())
            texts.append(text);
        else
            texts.append(QStringLiteral("%1: %2").arg(name, text));
    }
    return QStringLiteral("%1(%2)").arg(QString::fromLatin1(signal.name()),
                                        texts.join(QStringLiteral(", ")));
}

} // namespace

SignalMonitor::SignalMonitor(Report newReport)
    : report(std::move(newReport))
{}

void SignalMonitor::watch(QObject *object)
{
    if (watched)
        QMetaObject::disconnect(watched, -1, this, -1);
    watched = object;
    if (!object)
        return;
    const QMetaObject *meta = object->metaObject();
    // Beyond QObject's own methods each index of this object stands for the signal of that index.
    const int own = QObject::staticMetaObject.methodCount();
    for (int i = own; i < meta->methodCount(); ++i) {
        const QMetaMethod method = meta->method(i);
        // A signal with default arguments comes a second time without them.
        if (method.methodType() == QMetaMethod::Signal &&
            !(method.attributes() & QMetaMethod::Cloned))
            QMetaObject::connect(object, i, this, i, Qt::DirectConnection);
    }
}

int SignalMonitor::qt_metacall(QMetaObject::Call call, int index, void **arguments)
{
    const int left = QObject::qt_metacall(call, index, arguments);
    if (left < 0 || call != QMetaObject::InvokeMetaMethod)
        return left;
    if (watched && sender() == watched)
        report(describe(watched->metaObject()->method(index), arguments));
    return -1;
}

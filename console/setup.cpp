#include "setup.h"

#include <QtCore/QObject>

void setUp(QObject *object, std::initializer_list<std::pair<const char *, QVariant>> properties)
{
    for (const auto &[name, value] : properties) {
        if (!object->setProperty(name, value))
            qFatal("%s has no property %s", object->metaObject()->className(), name);
    }
}

elemDesc_t shownState(ElementState state)
{
    return {quint8(state.alarm), quint8(state.operating)};
}

QString stateTitle(const Snapshot &snapshot)
{
    if (snapshot.system.alarm != AlarmState::None)
        return nameOf(snapshot.system.alarm);
    return snapshot.status.value(0, nameOf(snapshot.system.operating));
}

QString sentence(QString text)
{
    if (!text.isEmpty())
        text[0] = text.at(0).toUpper();
    return text;
}

QString textOf(const Snapshot &snapshot, Quantity quantity, int decimals)
{
    const std::optional<double> value = snapshot.value(quantity);
    if (!value)
        return QObject::tr("no data");
    return QStringLiteral("%1 %2").arg(*value, 0, 'f', decimals).arg(unitOf(quantity));
}

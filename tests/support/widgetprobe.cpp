// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "widgetprobe.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QMetaMethod>
#include <QtCore/QMetaProperty>

Q_GLOBAL_STATIC(QStringList, warnings)
static QtMessageHandler testHandler = nullptr;

static void recordWarning(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (type != QtDebugMsg && type != QtInfoMsg)
        warnings->append(text);
    testHandler(type, context, text);
}

WidgetTest::WidgetTest() = default;
WidgetTest::~WidgetTest() = default;

QList<ErrorLine> WidgetTest::takeErrorLines()
{
    return capture->takeLines();
}

QStringList WidgetTest::takeWarnings()
{
    QStringList taken;
    taken.swap(*warnings);
    return taken;
}

void WidgetTest::init()
{
    testHandler = qInstallMessageHandler(recordWarning);
    warnings->clear();
    capture = std::make_unique<ErrorCapture>();
}

void WidgetTest::cleanup()
{
    deliverAll();
    const QList<ErrorLine> lines = takeErrorLines();
    capture.reset();
    qInstallMessageHandler(testHandler);
    QCOMPARE(lines, QList<ErrorLine>());
    QCOMPARE(takeWarnings(), QStringList());
}

EventCounter::EventCounter(QObject *watched)
{
    watched->installEventFilter(this);
}

int EventCounter::count(QEvent::Type type) const
{
    return counts.value(type);
}

void EventCounter::reset()
{
    counts.clear();
}

bool EventCounter::eventFilter(QObject *, QEvent *event)
{
    ++counts[event->type()];
    return false;
}

void deliverAll()
{
    for (int round = 0; round < 5; ++round) {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
    }
}

bool takesUpdateRequest(QWidget *widget)
{
    EventCounter events(widget);
    QCoreApplication::sendPostedEvents(widget, QEvent::UpdateRequest);
    return events.count(QEvent::UpdateRequest) > 0;
}

QString typeNameOf(const QMetaProperty &property)
{
    // Qt 6 names an enum with its class.
    return QString::fromLatin1(property.typeName()).section(QStringLiteral("::"), -1);
}

QStringList declaredProperties(const QMetaObject &meta)
{
    QStringList properties;
    for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) {
        const QMetaProperty property = meta.property(i);
        QString text = QLatin1String(property.name()) + QLatin1Char(' ') + typeNameOf(property);
        if (!property.isReadable())
            text += QStringLiteral(" unreadable");
        if (!property.isWritable())
            text += QStringLiteral(" constant");
        if (!property.isDesignable())
            text += QStringLiteral(" undesignable");
        if (!property.isScriptable())
            text += QStringLiteral(" unscriptable");
        if (!property.isStored())
            text += QStringLiteral(" unstored");
        if (property.hasNotifySignal())
            text += QStringLiteral(" notify ") + QLatin1String(property.notifySignal().name());
        properties.append(text);
    }
    return properties;
}

QStringList declaredMethods(const QMetaObject &meta)
{
    QStringList methods;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        methods.append(QLatin1String(meta.method(i).methodSignature()));
    return methods;
}

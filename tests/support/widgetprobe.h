// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "errorlines.h"

#include <QtCore/QEvent>
#include <QtCore/QHash>
#include <QtCore/QMetaProperty>
#include <QtCore/QObject>
#include <QtCore/QStringList>
#include <QtTest/QTest>
#include <QtWidgets/QWidget>

#include <memory>

/// Base of the test classes: a test that leaves an error line or a Qt warning unclaimed fails.
class WidgetTest : public QObject
{
    Q_OBJECT

public:
    WidgetTest();
    ~WidgetTest() override;

protected:
    /// The error lines written since the last call or the start of the test.
    QList<ErrorLine> takeErrorLines();
    /// The Qt warnings since the last call or the start of the test.
    QStringList takeWarnings();

private Q_SLOTS:
    void init();
    void cleanup();

private:
    std::unique_ptr<ErrorCapture> capture;
};

/// Counts the events that one widget gets.
class EventCounter : public QObject
{
public:
    explicit EventCounter(QObject *watched);
    int count(QEvent::Type type) const;
    void reset();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QHash<int, int> counts;
};

/// Delivers what is posted until nothing is left, paint events included.
void deliverAll();

/// Whether an UpdateRequest is posted to @p widget; delivers it. For widgets inside a window, since
/// Qt posts such requests of its own to windows.
bool takesUpdateRequest(QWidget *widget);

/// The type of @p property without the class that an enum belongs to.
QString typeNameOf(const QMetaProperty &property);

/// The properties that a class itself declares, as "name type" plus the flags that differ from
/// readable, writable, designable, scriptable and stored, in their order.
QStringList declaredProperties(const QMetaObject &meta);
/// The signals and slots that a class itself declares, as signatures, in their order.
QStringList declaredMethods(const QMetaObject &meta);

/// A widget of class @p W as a child of a shown window, with all that showing it posts delivered.
template <typename W>
struct Stage
{
    explicit Stage(QSize size = QSize(100, 40))
    {
        window.resize(900, 600);
        widget->resize(size);
        window.show();
        deliverAll();
    }
    W *operator->() const
    {
        return widget;
    }

    QWidget window;
    W *widget = new W(&window);
};

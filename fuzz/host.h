#pragma once

#include "bytes.h"
#include "subjects.h"

#include <QtCore/QAnimationDriver>
#include <QtCore/QEvent>
#include <QtCore/QPointer>
#include <QtWidgets/QWidget>

#include <memory>

/// Lets time pass for the animations only when an input says so.
class StepDriver : public QAnimationDriver
{
public:
    StepDriver();
    ~StepDriver() override;
    qint64 elapsed() const override;
    void start() override;
    void step(int msecs);

private:
    qint64 now = 0;
};

/// A host that does to one widget what the bytes of an input say, and ends the process when the
/// widget does not come to rest afterwards, shows two pictures without a reason, or shows something
/// else on the screen than when it is painted anew.
class Host : public QObject
{
public:
    /// Whether the actions are traced on the standard output.
    static bool traces;

    Host(const Subject &subject, Bytes bytes);
    ~Host() override;
    void run();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    /// What the widget's class allows in a slot on one of its signals.
    enum class Slot { MayDelete, MustKeep };

    void build();
    void connectSlots();
    void react(Slot slot);
    void act();

    void writeProperty();
    void callMethod();
    void resizeWidget();
    void sendPlainEvent();
    void sendDataEvent();
    void useMouse();
    void useKeys();
    void changeChildren();
    void paint();
    void deliver();
    void changeSurroundings();
    void changeParent();
    void passTime();
    void changeState();
    void destroy();
    void addSibling();

    void send(QEvent *event);
    void settle();
    /// Delivers all that is posted. @return 0, but more when the widget does not stop painting.
    int busyRounds();
    /// Whether the screen must show what painting the window anew gives.
    bool showsAllOnTheScreen() const;

    const Subject &subject;
    Bytes bytes;
    StepDriver driver;
    QPointer<QWidget> window;
    QPointer<QWidget> widget;
    int actionsLeft = 100;
    int depth = 0;
    int keepers = 0;
    int reactions = 0;
    int paints = 0;
    /// Whether a painting step was called that a host has no reason to call, since the last paint.
    bool paintedAside = false;
    Qt::MouseButtons held = Qt::NoButton;
};

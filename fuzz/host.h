// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "bytes.h"
#include "stepdriver.h"
#include "subjects.h"

#include <QtCore/QEvent>
#include <QtCore/QPointer>
#include <QtWidgets/QWidget>

#include <memory>

/// An application that does to one widget what the bytes of an input say. It ends the process when
/// the widget does not become idle afterwards, shows two images of one state, or shows something
/// else on the screen than when it is painted from scratch.
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
    /// Whether the screen must show what painting the window from scratch gives.
    bool showsAllOnTheScreen() const;

    const Subject &subject;
    Bytes bytes;
    StepDriver driver;
    QPointer<QWidget> window;
    QPointer<QWidget> widget;
    int actionsLeft = 100;
    int depth = 0;
    int keepers = 0;
    int parentChanges = 0;
    bool wasWindow = false;
    int reactions = 0;
    int paints = 0;
    /// Whether a painting step was called since the last paint, which no application needs to call.
    bool paintedAside = false;
    Qt::MouseButtons held = Qt::NoButton;
};

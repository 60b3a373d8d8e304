// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtCore/QElapsedTimer>
#include <QtCore/QObject>
#include <QtCore/QTimer>

class QAbstractButton;
class QWidget;

/// Makes a button act only after it was held for two seconds: by mouse, finger or key. A bar in the
/// button shows how long it was.
///
/// Whoever cannot hold, such as a screen reader's user, presses twice: the first press arms the
/// button for a while.
class HoldGuard : public QObject
{
    Q_OBJECT

public:
    static constexpr int holdMsecs = 2000;
    static constexpr int armedMsecs = 8000;

    explicit HoldGuard(QAbstractButton *button);

    /// Whether a press must be held; on at first. Where it need not, the button is a usual one.
    void setActive(bool active);
    bool isActive() const;
    /// Forgets a hold that has begun, and the first of two presses.
    void cancel();

Q_SIGNALS:
    void began();
    /// The button was let go too early.
    void broken();
    void armed();
    void held();

protected:
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    void begin();
    void release();
    void pressed();

    QAbstractButton *button;
    QWidget *bar;
    QTimer hold;
    QTimer frames;
    QTimer arming;
    QElapsedTimer since;
    bool active = true;
};

// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "holdguard.h"

#include <QtGui/QKeyEvent>
#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QAbstractButton>

#include <algorithm>

namespace {

/// How far the hold is, along the button's lower edge.
class HoldBar : public QWidget
{
public:
    explicit HoldBar(QWidget *parent)
        : QWidget(parent)
    {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setFocusPolicy(Qt::NoFocus);
        hide();
    }

    void setShare(double newShare)
    {
        share = newShare;
        update();
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.fillRect(rect(), QColor(16, 21, 26));
        painter.fillRect(QRectF(0, 0, width() * share, height()), QColor(255, 176, 46));
    }

private:
    double share = 0.0;
};

} // namespace

HoldGuard::HoldGuard(QAbstractButton *guardedButton)
    : QObject(guardedButton)
    , button(guardedButton)
    , bar(new HoldBar(guardedButton))
{
    hold.setSingleShot(true);
    hold.setInterval(holdMsecs);
    hold.setTimerType(Qt::PreciseTimer);
    arming.setSingleShot(true);
    arming.setInterval(armedMsecs);
    constexpr int frameMsecs = 40;
    frames.setInterval(frameMsecs);
    connect(&frames, &QTimer::timeout, this, [this] {
        static_cast<HoldBar *>(bar)->setShare(
            std::min(double(since.elapsed()) / double(holdMsecs), 1.0));
    });
    connect(&hold, &QTimer::timeout, this, [this] {
        cancel();
        Q_EMIT held();
    });
    connect(button, &QAbstractButton::clicked, this, &HoldGuard::pressed);
    button->installEventFilter(this);
}

void HoldGuard::setActive(bool newActive)
{
    if (active == newActive)
        return;
    active = newActive;
    cancel();
}

bool HoldGuard::isActive() const
{
    return active;
}

void HoldGuard::cancel()
{
    hold.stop();
    frames.stop();
    arming.stop();
    bar->hide();
}

void HoldGuard::begin()
{
    if (!button->isEnabled() || hold.isActive())
        return;
    constexpr int height = 5;
    constexpr int inset = 8;
    bar->setGeometry(inset, button->height() - height - 4, std::max(button->width() - 2 * inset, 1),
                     height);
    static_cast<HoldBar *>(bar)->setShare(0.0);
    bar->show();
    bar->raise();
    since.start();
    hold.start();
    frames.start();
    Q_EMIT began();
}

void HoldGuard::release()
{
    if (!hold.isActive())
        return;
    cancel();
    Q_EMIT broken();
}

/// By a program that acts for the user: the guard swallows all other presses.
void HoldGuard::pressed()
{
    if (!active)
        return;
    if (arming.isActive()) {
        cancel();
        Q_EMIT held();
    } else {
        arming.start();
        Q_EMIT armed();
    }
}

bool HoldGuard::eventFilter(QObject *object, QEvent *event)
{
    if (!active)
        return QObject::eventFilter(object, event);
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        if (static_cast<QMouseEvent *>(event)->button() == Qt::LeftButton)
            begin();
        return true;
    case QEvent::MouseMove:
        if (!button->rect().contains(static_cast<QMouseEvent *>(event)->pos()))
            release();
        return true;
    case QEvent::MouseButtonRelease:
        release();
        return true;
    case QEvent::KeyPress:
    case QEvent::KeyRelease: {
        const auto *key = static_cast<QKeyEvent *>(event);
        if (key->key() != Qt::Key_Space && key->key() != Qt::Key_Select)
            break;
        if (!key->isAutoRepeat()) {
            if (event->type() == QEvent::KeyPress)
                begin();
            else
                release();
        }
        return true;
    }
    case QEvent::FocusOut:
    case QEvent::Hide:
    case QEvent::EnabledChange:
    case QEvent::UngrabMouse:
        release();
        break;
    default:
        break;
    }
    return QObject::eventFilter(object, event);
}

// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "subject.h"

#include "minimal.h"

#include <QtGui/QGuiApplication>
#include <QtGui/QPainter>

namespace {

void showOffScreen(QWidget *window)
{
    window->setAttribute(Qt::WA_DontShowOnScreen);
    window->resize(1000, 600);
    window->show();
    QCoreApplication::sendPostedEvents();
}

QWidget *shown(const Subject &subject, QWidget *window)
{
    QWidget *widget = subject.create(window);
    widget->resize(subject.size);
    widget->show();
    QCoreApplication::sendPostedEvents();
    return widget;
}

/// At the ratio that QT_SCALE_FACTOR sets.
QImage emptyImage(QSize size)
{
    QImage image(size * qApp->devicePixelRatio(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(qApp->devicePixelRatio());
    image.fill(Qt::transparent);
    return image;
}

void render(QWidget *widget, QImage *target)
{
    widget->render(target, QPoint(), QRegion(), QWidget::DrawChildren);
}

} // namespace

const Subject *subjectNamed(const QByteArray &name)
{
    for (const Subject &subject : subjects()) {
        if (name == subject.name)
            return &subject;
    }
    return nullptr;
}

SubjectStage::SubjectStage(const Subject &measured)
    : subject(measured)
{
    showOffScreen(&window);
    widget = shown(subject, &window);
    window.setUpdatesEnabled(false);
    target = emptyImage(widget->size());
    image = target;
    // Neither opaque nor transparent anywhere, so that the copy skips no pixel.
    image.fill(QColor(0, 174, 240, 128));
    shower.reset(new MinimalImage(image));
    shower->setAttribute(Qt::WA_DontShowOnScreen);
    shower->show();
    shower->setUpdatesEnabled(false);
    QCoreApplication::sendPostedEvents();
    // The first ones load fonts and fill Qt's caches and the library's: what comes back is
    // remembered from the second time on.
    constexpr int valuesInTurn = 61;
    for (int i = 0; i < 3 * valuesInTurn; ++i)
        changeAndRepaint();
    floor();
}

SubjectStage::~SubjectStage() = default;

void SubjectStage::repaint()
{
    render(widget, &target);
}

void SubjectStage::changeAndRepaint()
{
    subject.change(widget, ++step);
    QCoreApplication::sendPostedEvents();
    repaint();
}

void SubjectStage::blit()
{
    QPainter painter(&target);
    painter.drawImage(0, 0, image);
}

void SubjectStage::floor()
{
    render(shower.get(), &target);
}

void constructAndDestroy(const Subject &subject, QWidget *window)
{
    delete shown(subject, window);
}

void addPainted(const Subject &subject, QWidget *window)
{
    QImage target = emptyImage(subject.size);
    render(shown(subject, window), &target);
}

std::unique_ptr<QWidget> shownWindow()
{
    auto window = std::make_unique<QWidget>();
    showOffScreen(window.get());
    window->setUpdatesEnabled(false);
    return window;
}

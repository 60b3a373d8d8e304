// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "images.h"

#include <QtCore/QDir>
#include <QtGui/QPainter>
#include <QtGui/QScreen>
#include <QtTest/QTest>
#include <QtWidgets/QWidget>

QImage imageOf(QWidget *widget)
{
    QImage image = emptyImage(widget->size());
    if (!image.isNull())
        widget->render(&image, QPoint(), QRegion(), QWidget::RenderFlags());
    return image;
}

QImage screenOf(QWidget *widget)
{
    const QWidget *window = widget->window();
    const QRect part(widget->mapTo(window, QPoint()), widget->size());
    return window->screen()
        ->grabWindow(window->winId(), part.x(), part.y(), part.width(), part.height())
        .toImage()
        .convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

QImage repaintedScreenOf(QWidget *widget)
{
    QWidget *const window = widget->window();
    return window->grab(QRect(widget->mapTo(window, QPoint()), widget->size()))
        .toImage()
        .convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

QImage emptyImage(QSize size)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

QImage drawnImage(QSize size, const std::function<void(QPainter *)> &draw)
{
    QImage image = emptyImage(size);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    draw(&painter);
    return image;
}

QImage faded(const QImage &source, double opacity)
{
    return drawnImage(source.size(), [&](QPainter *painter) {
        painter->setOpacity(opacity);
        painter->drawImage(0, 0, source);
    });
}

static void save(const QImage &actual, const QImage &expected)
{
    const QString directory = qEnvironmentVariable("KIV_TEST_IMAGES");
    if (directory.isEmpty())
        return;
    QString name = QString::fromLatin1(QTest::currentTestFunction());
    if (QTest::currentDataTag())
        name += QLatin1Char('-') + QString::fromLatin1(QTest::currentDataTag());
    name.replace(QLatin1Char('/'), QLatin1Char('_'));
    QDir().mkpath(directory);
    actual.save(QDir(directory).filePath(name + QStringLiteral("-actual.png")));
    expected.save(QDir(directory).filePath(name + QStringLiteral("-expected.png")));
}

QString differenceOf(const QImage &actual, const QImage &expected)
{
    if (actual.size() != expected.size()) {
        save(actual, expected);
        return QStringLiteral("size %1x%2 instead of %3x%4")
            .arg(actual.width())
            .arg(actual.height())
            .arg(expected.width())
            .arg(expected.height());
    }
    int count = 0;
    QString first;
    for (int y = 0; y < actual.height(); ++y) {
        for (int x = 0; x < actual.width(); ++x) {
            const QRgb is = actual.pixel(x, y);
            const QRgb should = expected.pixel(x, y);
            if (is == should)
                continue;
            if (count++ == 0)
                first = QStringLiteral("(%1, %2) is #%3 instead of #%4")
                            .arg(x)
                            .arg(y)
                            .arg(is, 8, 16, QLatin1Char('0'))
                            .arg(should, 8, 16, QLatin1Char('0'));
        }
    }
    if (count == 0)
        return QString();
    save(actual, expected);
    return QStringLiteral("%1 pixels differ, the first: %2").arg(count).arg(first);
}

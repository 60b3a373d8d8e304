// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "statesheet.h"
#include "widgetcatalogue.h"

#include <QtCore/QDir>
#include <QtGui/QPainter>
#include <QtWidgets/QApplication>
#include <QtWidgets/QStyleFactory>

#include <cstdio>
#include <memory>

// Draws the images of the widgets in the documentation, two PNG files for each class: a sheet of
// its states, and a thumbnail.

namespace {

constexpr int sheetWidth = 860;
constexpr QSize thumbnailSize(200, 92);
constexpr int thumbnailMargin = 8;
const QColor lightBackground(0xe8, 0xec, 0xef);
const QColor darkBackground(0x1d, 0x21, 0x25);

void settle()
{
    for (int i = 0; i < 4; ++i) {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
    }
}

QImage imageOf(QWidget *sheet, const QColor &background, const QColor &ink)
{
    QPalette palette = sheet->palette();
    palette.setColor(QPalette::Window, background);
    palette.setColor(QPalette::WindowText, ink);
    palette.setColor(QPalette::ButtonText, ink);
    sheet->setPalette(palette);
    settle();
    QImage image = sheet->grab().toImage();
    // A file counts in pixels.
    image.setDevicePixelRatio(1.0);
    return image;
}

bool write(const QImage &image, const WidgetDescription &description, const QDir &directory)
{
    const QString file = directory.filePath(QString::fromLatin1(description.className).toLower() +
                                            QStringLiteral(".png"));
    if (!image.save(file)) {
        std::fprintf(stderr, "kivwidgetsheet: cannot write %s\n", qPrintable(file));
        return false;
    }
    std::puts(qPrintable(file));
    return true;
}

/// Shows the widget's states on a light and on a dark background, one above the other.
bool save(const WidgetDescription &description, const QDir &directory)
{
    StateSheet sheet(description);
    sheet.resize(sheetWidth, 2000);
    sheet.show();
    settle();
    sheet.resize(sheetWidth, sheet.heightForWidth(sheetWidth));
    settle();
    const QImage light = imageOf(&sheet, lightBackground, Qt::black);
    const QImage dark = imageOf(&sheet, darkBackground, Qt::white);
    QImage both(light.width(), light.height() + dark.height(), QImage::Format_RGB32);
    QPainter painter(&both);
    painter.drawImage(0, 0, light);
    painter.drawImage(0, light.height(), dark);
    painter.end();
    return write(both, description, directory);
}

/// Shows the first state in which a gauge is not empty on a light background, reduced if it is
/// larger.
bool saveThumbnail(const WidgetDescription &description, const QDir &directory)
{
    QWidget window;
    QPalette palette = window.palette();
    palette.setColor(QPalette::Window, lightBackground);
    palette.setColor(QPalette::WindowText, Qt::black);
    palette.setColor(QPalette::ButtonText, Qt::black);
    window.setPalette(palette);
    std::unique_ptr<QWidget> widget;
    for (const WidgetState &state : widgetStates(QString::fromLatin1(description.className))) {
        widget.reset(state.create(&window));
        const QVariant value = widget->property("value");
        if (!value.isValid() || value.toDouble() > 0.0)
            break;
    }
    widget->show();
    window.resize(sheetWidth, sheetWidth);
    window.show();
    settle();
    QImage image = window.grab(widget->geometry()).toImage();
    image.setDevicePixelRatio(1.0);
    const QSize room = thumbnailSize - 2 * QSize(thumbnailMargin, thumbnailMargin);
    if (image.width() > room.width() || image.height() > room.height())
        image = image.scaled(room, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    QImage thumbnail(thumbnailSize, QImage::Format_RGB32);
    thumbnail.fill(lightBackground);
    QPainter painter(&thumbnail);
    painter.drawImage((thumbnail.width() - image.width()) / 2,
                      (thumbnail.height() - image.height()) / 2, image);
    painter.end();
    return write(thumbnail, description, directory);
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 3 || argv[1][0] == '-' || argv[2][0] == '-') {
        std::fprintf(stderr, "usage: kivwidgetsheet SHEETS-DIRECTORY THUMBNAILS-DIRECTORY\n");
        return 2;
    }
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QApplication::setFont(QFont(QStringLiteral("DejaVu Sans"), 9));

    const QDir sheets(QString::fromLocal8Bit(argv[1]));
    const QDir thumbnails(QString::fromLocal8Bit(argv[2]));
    for (const QDir &directory : {sheets, thumbnails}) {
        if (!QDir().mkpath(directory.path())) {
            std::fprintf(stderr, "kivwidgetsheet: cannot create the directory %s\n",
                         qPrintable(directory.path()));
            return 1;
        }
    }
    for (const WidgetDescription &description : widgetCatalogue()) {
        if (!save(description, sheets) || !saveThumbnail(description, thumbnails))
            return 1;
    }
    return 0;
}

#include "statesheet.h"
#include "widgetcatalogue.h"

#include <QtCore/QDir>
#include <QtGui/QPainter>
#include <QtWidgets/QApplication>
#include <QtWidgets/QStyleFactory>

#include <cstdio>

// Draws every widget of the library in its states, a PNG file for each class, for people to look
// at.

namespace {

constexpr int sheetWidth = 860;
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
    const QString file = directory.filePath(QString::fromLatin1(description.className).toLower() +
                                            QStringLiteral(".png"));
    if (!both.save(file)) {
        std::fprintf(stderr, "kivwidgetsheet: cannot write %s\n", qPrintable(file));
        return false;
    }
    std::puts(qPrintable(file));
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2 || argv[1][0] == '-') {
        std::fprintf(stderr, "usage: kivwidgetsheet DIRECTORY\n");
        return 2;
    }
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QApplication::setFont(QFont(QStringLiteral("DejaVu Sans"), 9));

    const QDir directory(QString::fromLocal8Bit(argv[1]));
    if (!QDir().mkpath(directory.path())) {
        std::fprintf(stderr, "kivwidgetsheet: cannot make the directory %s\n", argv[1]);
        return 1;
    }
    for (const WidgetDescription &description : widgetCatalogue()) {
        if (!save(description, directory))
            return 1;
    }
    return 0;
}

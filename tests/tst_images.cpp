// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "images.h"
#include "testmain.h"
#include "widgetprobe.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QtMath>
#include <QtGui/QPainter>
#include <QtGui/QPixmap>
#include <QtGui/QPixmapCache>

// The library's own functions. Naming them keeps the library linked, images included, though
// nothing else of it is used here.
extern int qInitResources_images();
extern int qCleanupResources_images();

namespace {

const QColor darkGrey(89, 89, 91);
const QColor lightBlue(0, 174, 240);
const QColor orange(247, 148, 50);
const QColor darkBlue(0, 56, 117);
const QColor lightGrey(167, 167, 167);
const QColor red(238, 28, 37);

const QStringList alarms = {QStringLiteral("OK"), QStringLiteral("WARNING"),
                            QStringLiteral("FAULT")};
const QStringList elements = {
    QStringLiteral("Stand-by"),      QStringLiteral("Precharge"), QStringLiteral("Calibration"),
    QStringLiteral("WaitVbatReady"), QStringLiteral("ON"),        QStringLiteral("BatteryWorking"),
    QStringLiteral("OnBypass"),
};

/// One LED per body, that is per alarm state.
const QStringList bodies = {
    QStringLiteral("stato-LED-OK-ON"),    QStringLiteral("stato-LED-WARNING-ON"),
    QStringLiteral("stato-LED-FAULT-ON"), QStringLiteral("stato-LED-LOCK"),
    QStringLiteral("stato-LED-COMMLOST"), QStringLiteral("stato-LED-none"),
};

const QStringList batteries = {
    QStringLiteral("batt_ok"),    QStringLiteral("batt_warning"),
    QStringLiteral("batt_fault"), QStringLiteral("batt_onBypass"),
    QStringLiteral("batt_none"),  QStringLiteral("batt_COMMLOST"),
};

QString ledName(const QString &alarm, const QString &element)
{
    return QStringLiteral("stato-LED-%1-%2").arg(alarm, element);
}

QString pathOf(const QString &name)
{
    return QStringLiteral(":/Images/%1.png").arg(name);
}

QMap<QString, QSize> sizesByName()
{
    QMap<QString, QSize> sizes;
    for (const QString &name : batteries)
        sizes[name] = QSize(72, 72);
    for (const QString &alarm : alarms) {
        for (const QString &element : elements)
            sizes[ledName(alarm, element)] = QSize(21, 21);
    }
    for (const char *name : {"COMMLOST", "LOCK", "none"})
        sizes[QStringLiteral("stato-LED-") + QLatin1String(name)] = QSize(21, 21);
    for (const char *name : {"ON", "OFF", "DISABLED", "LOCKED-ON", "LOCKED-OFF"})
        sizes[QStringLiteral("SlideSwitch-") + QLatin1String(name)] = QSize(190, 60);
    for (const char *name :
         {"slide_checked", "slide_unchecked", "slide_checked_disabled", "slide_unchecked_disabled"})
        sizes[QLatin1String(name)] = QSize(78, 27);
    sizes[QStringLiteral("slide_button")] = QSize(27, 27);
    sizes[QStringLiteral("button_slide_disabled")] = QSize(28, 28);
    sizes[QStringLiteral("fasciasuperiore")] = QSize(800, 42);
    sizes[QStringLiteral("linguetta-navdrawer")] = QSize(50, 52);
    return sizes;
}

const QStringList imagesWithoutAlpha = {
    QStringLiteral("stato-LED-FAULT-ON"),
    QStringLiteral("stato-LED-FAULT-BatteryWorking"),
    QStringLiteral("stato-LED-FAULT-OnBypass"),
};

QImage namedImage(const QString &name)
{
    return QImage(pathOf(name)).convertToFormat(QImage::Format_ARGB32);
}

/// The image without colour on a background, drawn at @p size as an unsmoothed painter does.
QImage greyOn(const QString &name, const QColor &background, QSize size)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(background);
    QPainter painter(&image);
    painter.drawPixmap(QRectF(QPointF(0, 0), size), QPixmap(pathOf(name)), QRectF());
    painter.end();
    return image.convertToFormat(QImage::Format_Grayscale8);
}

/// The share of pixels, in percent, in which the images differ plainly.
int plainDifference(const QImage &a, const QImage &b)
{
    int different = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x)
            different += qAbs(qGray(a.pixel(x, y)) - qGray(b.pixel(x, y))) >= 40;
    }
    return 100 * different / (a.width() * a.height());
}

int countOf(const QImage &image, const QColor &color)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            count += image.pixel(x, y) == color.rgba();
    }
    return count;
}

QSet<QRgb> colorsIn(const QImage &image, const QRect &rect)
{
    QSet<QRgb> colors;
    for (int y = rect.top(); y <= rect.bottom(); ++y) {
        for (int x = rect.left(); x <= rect.right(); ++x)
            colors.insert(image.pixel(x, y));
    }
    return colors;
}

/// The slide switch: the checked track up to @p revealed over the unchecked one, then the knob.
QImage composedSlide(bool disabled, int revealed, int knobLeft)
{
    const QString suffix = disabled ? QStringLiteral("_disabled") : QString();
    return drawnImage(QSize(78, 27), [&](QPainter *painter) {
        painter->drawPixmap(0, 0, QPixmap(pathOf(QStringLiteral("slide_unchecked") + suffix)));
        const QPixmap checked(pathOf(QStringLiteral("slide_checked") + suffix));
        if (revealed > 0)
            painter->drawPixmap(QRectF(0, 0, revealed, 27), checked, QRectF(0, 0, revealed, 27));
        const QPixmap knob(pathOf(disabled ? QStringLiteral("button_slide_disabled")
                                           : QStringLiteral("slide_button")));
        painter->drawPixmap(QRectF(knobLeft, 0, 27, 27), knob, QRectF());
    });
}

} // namespace

class ImagesTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void everyImage_data();
    void everyImage();
    void noImageMore();
    void everyFileIsAResource();
    void caseMatters();
    void registering();

    void stateColors_data();
    void stateColors();
    void statesDifferWithoutColor_data();
    void statesDifferWithoutColor();
    void elementGlyphsDiffer_data();
    void elementGlyphsDiffer();
    void lowTilesShowEverySecondPixel();
    void glyphsAreCrisp();
    void faultLedsNeedNoBackground();

    void slideKnobHidesTheCut_data();
    void slideKnobHidesTheCut();
    void slideRevealsItsState_data();
    void slideRevealsItsState();
    void squeezedKnobIsEven();
    void switchTrackFitsTheKnob_data();
    void switchTrackFitsTheKnob();
    void switchLeavesRoomForText_data();
    void switchLeavesRoomForText();
    void drawerTabMeetsThePanel();
};

void ImagesTest::everyImage_data()
{
    QTest::addColumn<QSize>("size");
    const QMap<QString, QSize> sizes = sizesByName();
    for (auto it = sizes.cbegin(); it != sizes.cend(); ++it)
        QTest::newRow(qPrintable(it.key())) << it.value();
}

void ImagesTest::everyImage()
{
    QFETCH(QSize, size);
    const QString name = QString::fromLatin1(QTest::currentDataTag());
    const bool alpha = !imagesWithoutAlpha.contains(name);

    const QPixmap pixmap(pathOf(name));
    QVERIFY2(!pixmap.isNull(),
             qPrintable(QStringLiteral("no %1: add it to drawings() in artwork/render, run that, "
                                       "and list it in KivWidgets/images.qrc and largeimages.qrc")
                            .arg(pathOf(name))));
    QCOMPARE(pixmap.size(), size);
    QCOMPARE(QImage(pathOf(name)).hasAlphaChannel(), alpha);

    QFile file(pathOf(name));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray header = file.read(26);
    QCOMPARE(header.left(8), QByteArray("\x89PNG\r\n\x1a\n", 8));
    QCOMPARE(int(header.at(24)), 8);
    QCOMPARE(int(header.at(25)), alpha ? 6 : 2);
}

void ImagesTest::noImageMore()
{
    const QMap<QString, QSize> sizes = sizesByName();
    const QStringList found = QDir(QStringLiteral(":/Images")).entryList();
    QVERIFY(!found.isEmpty());
    for (const QString &file : found) {
        const bool isPng = file.endsWith(QStringLiteral(".png"));
        QVERIFY2(isPng && sizes.contains(file.chopped(4)),
                 qPrintable(QStringLiteral("the library has an image %1 that this test does not "
                                           "know: add its name and size to sizesByName()")
                                .arg(file)));
    }
    QCOMPARE(found.size(), sizes.size());
}

/// At every scale, each image that artwork/render writes is in the library.
void ImagesTest::everyFileIsAResource()
{
    const QStringList plain = QDir(QStringLiteral(":/Images")).entryList();
    for (const char *scale : {"", "2x", "3x"}) {
        const QString name = QStringLiteral("Images") + QLatin1String(scale);
        const bool isPlain = qstrlen(scale) == 0;
        const QString list = QLatin1String(isPlain ? "images.qrc" : "largeimages.qrc");
        const QStringList resources =
            QDir((isPlain ? QStringLiteral(":/") : QStringLiteral(":/KivWidgets/private/")) + name)
                .entryList();
        const QStringList files =
            QDir(QStringLiteral(KIV_SOURCE_DIRECTORY "/KivWidgets/") + name).entryList(QDir::Files);
        for (const QString &file : files) {
            QVERIFY2(
                resources.contains(file),
                qPrintable(QStringLiteral("add %1/%2 to KivWidgets/%3").arg(name, file, list)));
        }
        for (const QString &file : plain) {
            QVERIFY2(files.contains(file),
                     qPrintable(QStringLiteral("no KivWidgets/%1/%2: add the image to drawings() "
                                               "in artwork/render and run it")
                                    .arg(name, file)));
        }
    }
}

void ImagesTest::caseMatters()
{
    const QMap<QString, QSize> sizes = sizesByName();
    for (auto it = sizes.cbegin(); it != sizes.cend(); ++it) {
        const QString path = pathOf(it.key());
        QVERIFY(QFile::exists(path));
        for (int i = 0; i < path.size(); ++i) {
            QString other = path;
            other[i] = path.at(i).isLower() ? path.at(i).toUpper() : path.at(i).toLower();
            if (other == path)
                continue;
            QVERIFY2(!QFile::exists(other), qPrintable(other));
            QVERIFY2(QPixmap(other).isNull(), qPrintable(other));
        }
    }
}

void ImagesTest::registering()
{
    const QString path = pathOf(QStringLiteral("batt_ok"));
    QVERIFY(QFile::exists(path));

    const int released = qCleanupResources_images();
    QPixmapCache::clear();
    const bool existsWhenReleased = QFile::exists(path);
    const bool nullWhenReleased = QPixmap(path).isNull();
    const int registered = qInitResources_images();

    QCOMPARE(released, 1);
    QVERIFY(!existsWhenReleased);
    QVERIFY(nullWhenReleased);
    QCOMPARE(registered, 1);
    QVERIFY(QFile::exists(path));
    QCOMPARE(QPixmap(path).size(), QSize(72, 72));
}

void ImagesTest::stateColors_data()
{
    QTest::addColumn<QColor>("color");
    QTest::addColumn<int>("leastPercent");
    QTest::newRow("batt_ok") << lightBlue << 35;
    QTest::newRow("batt_warning") << orange << 35;
    QTest::newRow("batt_fault") << red << 35;
    QTest::newRow("batt_onBypass") << darkBlue << 35;
    QTest::newRow("batt_none") << darkGrey << 20;
    QTest::newRow("batt_COMMLOST") << lightGrey << 20;
    for (const QString &element : elements) {
        const QColor calm = element == QStringLiteral("BatteryWorking") ? orange
                            : element == QStringLiteral("OnBypass")     ? darkBlue
                                                                        : lightBlue;
        QTest::newRow(qPrintable(ledName(QStringLiteral("OK"), element))) << calm << 30;
        QTest::newRow(qPrintable(ledName(QStringLiteral("WARNING"), element))) << orange << 15;
        QTest::newRow(qPrintable(ledName(QStringLiteral("FAULT"), element))) << red << 60;
    }
    QTest::newRow("stato-LED-COMMLOST") << lightGrey << 5;
    QTest::newRow("stato-LED-LOCK") << red << 30;
    QTest::newRow("stato-LED-none") << darkGrey << 20;
    QTest::newRow("SlideSwitch-ON") << lightBlue << 45;
    QTest::newRow("SlideSwitch-LOCKED-ON") << lightBlue << 35;
    QTest::newRow("SlideSwitch-OFF") << lightGrey << 45;
    QTest::newRow("SlideSwitch-LOCKED-OFF") << lightGrey << 35;
    QTest::newRow("slide_checked") << lightBlue << 30;
    QTest::newRow("slide_unchecked") << lightGrey << 30;
    QTest::newRow("linguetta-navdrawer") << lightGrey << 60;
}

void ImagesTest::stateColors()
{
    QFETCH(QColor, color);
    QFETCH(int, leastPercent);
    const QImage image = namedImage(QString::fromLatin1(QTest::currentDataTag()));
    const int percent = 100 * countOf(image, color) / (image.width() * image.height());
    QVERIFY2(percent >= leastPercent, qPrintable(QString::number(percent)));
}

void ImagesTest::statesDifferWithoutColor_data()
{
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("leastPercent");
    QTest::newRow("batteries") << batteries << QSize(72, 72) << 5;
    QTest::newRow("alarm states of LEDs") << bodies << QSize(21, 21) << 15;
    QTest::newRow("alarm states of small LEDs") << bodies << QSize(10, 10) << 12;
    QTest::newRow("switch faces") << QStringList{QStringLiteral("SlideSwitch-ON"),
                                                 QStringLiteral("SlideSwitch-OFF"),
                                                 QStringLiteral("SlideSwitch-DISABLED"),
                                                 QStringLiteral("SlideSwitch-LOCKED-ON"),
                                                 QStringLiteral("SlideSwitch-LOCKED-OFF")}
                                  << QSize(190, 60) << 1;
}

void ImagesTest::statesDifferWithoutColor()
{
    QFETCH(QStringList, names);
    QFETCH(QSize, size);
    QFETCH(int, leastPercent);
    for (const QColor &background : {QColor(Qt::black), QColor(Qt::white), darkGrey}) {
        for (int i = 0; i < names.size(); ++i) {
            for (int j = 0; j < i; ++j) {
                const int percent = plainDifference(greyOn(names.at(i), background, size),
                                                    greyOn(names.at(j), background, size));
                QVERIFY2(percent >= leastPercent,
                         qPrintable(QStringLiteral("%1 and %2 on %3: %4 percent")
                                        .arg(names.at(i), names.at(j), background.name())
                                        .arg(percent)));
            }
        }
    }
}

void ImagesTest::elementGlyphsDiffer_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("leastPercent");
    QTest::newRow("own size") << 21 << 4;
    QTest::newRow("on a low tile") << 10 << 2;
}

void ImagesTest::elementGlyphsDiffer()
{
    QFETCH(int, size);
    QFETCH(int, leastPercent);
    for (const QString &alarm : alarms) {
        for (int i = 0; i < elements.size(); ++i) {
            for (int j = 0; j < i; ++j) {
                const QString one = ledName(alarm, elements.at(i));
                const QString other = ledName(alarm, elements.at(j));
                const int percent = plainDifference(greyOn(one, Qt::black, QSize(size, size)),
                                                    greyOn(other, Qt::black, QSize(size, size)));
                QVERIFY2(percent >= leastPercent,
                         qPrintable(
                             QStringLiteral("%1 and %2: %3 percent").arg(one, other).arg(percent)));
            }
        }
    }
}

void ImagesTest::lowTilesShowEverySecondPixel()
{
    // What the glyphs are hinted for: the reduced LED consists of the pixels of odd number.
    for (const QString &element : elements) {
        const QString name = ledName(QStringLiteral("WARNING"), element);
        const QImage whole = namedImage(name).convertToFormat(QImage::Format_ARGB32_Premultiplied);
        QImage expected(10, 10, QImage::Format_ARGB32_Premultiplied);
        for (int y = 0; y < 10; ++y) {
            for (int x = 0; x < 10; ++x)
                expected.setPixel(x, y, whole.pixel(2 * x + 1, 2 * y + 1));
        }
        COMPARE_IMAGES(drawnImage(QSize(10, 10),
                                  [&](QPainter *painter) {
                                      painter->drawPixmap(QRectF(0, 0, 10, 10),
                                                          QPixmap(pathOf(name)), QRectF());
                                  }),
                       expected);
    }
}

void ImagesTest::glyphsAreCrisp()
{
    // Nothing but body and ink: no pixel is half covered.
    for (const QString &element : elements) {
        QCOMPARE(colorsIn(namedImage(ledName(QStringLiteral("OK"), element)), QRect(5, 5, 11, 11))
                     .size(),
                 2);
        QCOMPARE(
            colorsIn(namedImage(ledName(QStringLiteral("FAULT"), element)), QRect(0, 0, 21, 21))
                .size(),
            2);
        QCOMPARE(
            colorsIn(namedImage(ledName(QStringLiteral("WARNING"), element)), QRect(7, 11, 7, 9))
                .size(),
            2);
    }
}

void ImagesTest::faultLedsNeedNoBackground()
{
    // All seven fill their square, so the three without an alpha channel are no different.
    for (const QString &element : elements) {
        const QImage image = namedImage(ledName(QStringLiteral("FAULT"), element));
        for (int y = 0; y < 21; ++y) {
            for (int x = 0; x < 21; ++x)
                QCOMPARE(qAlpha(image.pixel(x, y)), 255);
        }
        for (int i = 0; i < 21; ++i) {
            QCOMPARE(image.pixel(i, 0), image.pixel(0, 0));
            QCOMPARE(image.pixel(i, 20), image.pixel(0, 0));
            QCOMPARE(image.pixel(0, i), image.pixel(0, 0));
            QCOMPARE(image.pixel(20, i), image.pixel(0, 0));
        }
    }
}

void ImagesTest::slideKnobHidesTheCut_data()
{
    QTest::addColumn<bool>("disabled");
    QTest::newRow("enabled") << false;
    QTest::newRow("disabled") << true;
}

void ImagesTest::slideKnobHidesTheCut()
{
    // When idle, the checked track ends at the knob's left edge, after a drag to off at its right
    // edge, during a drag somewhere between: none of it may show.
    QFETCH(bool, disabled);
    for (int knobLeft = 0; knobLeft <= 51; ++knobLeft) {
        const QImage atLeftEdge = composedSlide(disabled, knobLeft, knobLeft);
        for (int revealed = knobLeft; revealed <= knobLeft + 27; ++revealed)
            COMPARE_IMAGES(composedSlide(disabled, revealed, knobLeft), atLeftEdge);
    }
}

void ImagesTest::slideRevealsItsState_data()
{
    slideKnobHidesTheCut_data();
}

void ImagesTest::slideRevealsItsState()
{
    QFETCH(bool, disabled);
    const QImage off = composedSlide(disabled, 0, 0);
    const QImage on = composedSlide(disabled, 51, 51);
    const QRgb offGroove = off.pixel(60, 13);
    const QRgb onGroove = on.pixel(20, 13);
    QVERIFY(offGroove != onGroove);
    if (!disabled) {
        QCOMPARE(offGroove, lightGrey.rgba());
        QCOMPARE(onGroove, lightBlue.rgba());
    }
    for (int x = 27; x < 70; ++x)
        QCOMPARE(off.pixel(x, 13), offGroove);
    for (int x = 8; x < 51; ++x)
        QCOMPARE(on.pixel(x, 13), onGroove);
}

void ImagesTest::squeezedKnobIsEven()
{
    const QImage composed = composedSlide(true, 0, 0).copy(0, 0, 27, 27);
    const QRect middle(9, 6, 9, 15);
    COMPARE_IMAGES(composed.mirrored(true, false).copy(middle), composed.copy(middle));
    COMPARE_IMAGES(composed.mirrored(false, true).copy(middle), composed.copy(middle));
    for (int i = 8; i < 19; ++i) {
        QCOMPARE(composed.pixel(0, i), darkGrey.rgba());
        QCOMPARE(composed.pixel(26, i), darkGrey.rgba());
        QCOMPARE(composed.pixel(i, 0), darkGrey.rgba());
        QCOMPARE(composed.pixel(i, 26), darkGrey.rgba());
    }
}

void ImagesTest::switchTrackFitsTheKnob_data()
{
    QTest::addColumn<QColor>("track");
    QTest::newRow("SlideSwitch-ON") << lightBlue;
    QTest::newRow("SlideSwitch-OFF") << lightGrey;
    QTest::newRow("SlideSwitch-LOCKED-ON") << lightBlue;
    QTest::newRow("SlideSwitch-LOCKED-OFF") << lightGrey;
}

void ImagesTest::switchTrackFitsTheKnob()
{
    QFETCH(QColor, track);
    const QImage face = namedImage(QString::fromLatin1(QTest::currentDataTag()));
    const auto at = [&](double centerX, double radius, int degrees) {
        const double angle = qDegreesToRadians(double(degrees));
        return face.pixel(qFloor(centerX + radius * qCos(angle)),
                          qFloor(30 + radius * qSin(angle)));
    };
    // The knob is a disc of radius 20.5 around (56, 30) or (134, 30). The round ends show the same
    // ring of track around it everywhere and end at the same distance.
    for (int degrees = -90; degrees <= 90; degrees += 3) {
        for (double radius : {21.5, 22.5, 23.5}) {
            QCOMPARE(at(134, radius, degrees), track.rgba());
            QCOMPARE(at(56, radius, 180 + degrees), track.rgba());
        }
        QVERIFY(at(134, 26.5, degrees) != track.rgba());
        QVERIFY(at(56, 26.5, 180 + degrees) != track.rgba());
    }
    // Between the two places the track is as high.
    for (int x = 56; x <= 134; ++x) {
        QCOMPARE(face.pixel(x, 7), track.rgba());
        QCOMPARE(face.pixel(x, 52), track.rgba());
    }
}

void ImagesTest::switchLeavesRoomForText_data()
{
    QTest::addColumn<QColor>("track");
    QTest::newRow("SlideSwitch-ON") << lightBlue;
    QTest::newRow("SlideSwitch-OFF") << lightGrey;
}

void ImagesTest::switchLeavesRoomForText()
{
    QFETCH(QColor, track);
    const QImage face = namedImage(QString::fromLatin1(QTest::currentDataTag()));
    QCOMPARE(colorsIn(face, QRect(56, 8, 79, 44)), QSet<QRgb>{track.rgba()});
}

void ImagesTest::drawerTabMeetsThePanel()
{
    // An open drawer's panel of the same grey begins at the tab's right edge.
    const QImage tab = namedImage(QStringLiteral("linguetta-navdrawer"));
    for (int y = 0; y < 52; ++y)
        QCOMPARE(tab.pixel(49, y), lightGrey.rgba());
    QCOMPARE(qAlpha(tab.pixel(0, 0)), 0);
    QCOMPARE(qAlpha(tab.pixel(0, 51)), 0);
}

KIV_TEST_MAIN(ImagesTest)
#include "tst_images.moc"

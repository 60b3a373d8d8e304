// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "metrolinerate.h"

#include "cacheprobe.h"
#include "freshness.h"
#include "images.h"
#include "layout.h"
#include "testmain.h"

#include <QtGui/QPainter>

namespace {

class OpenBar : public MetroLinerate
{
public:
    using MetroLinerate::barWidth;
    using MetroLinerate::buildGraph;
    using MetroLinerate::Image;
    using MetroLinerate::ImageBG;
    using MetroLinerate::ImageFG;
    using MetroLinerate::MetroLinerate;
};

CacheProbe probe(OpenBar *bar)
{
    return CacheProbe(
        bar, {{"Image", &bar->Image}, {"ImageBG", &bar->ImageBG}, {"ImageFG", &bar->ImageFG}});
}

int reservedWidth(const QFont &font)
{
    return QFontMetrics(font).size(Qt::TextSingleLine, QStringLiteral("138%")).width();
}

void fill(QPainter *painter, const QColor &color, int left, int top, int right, int bottom)
{
    painter->setPen(color);
    painter->setBrush(color);
    painter->drawRect(QRect(QPoint(left, top), QPoint(right, bottom)));
}

QColor excessColor(int value)
{
    return value > 125 ? QColor(238, 28, 37) : QColor(247, 148, 50);
}

QImage emptyBar(QSize size, int barWidth, const QColor &background)
{
    QImage layer = emptyImage(size);
    QPainter painter(&layer);
    fill(&painter, background, 1, 1, barWidth, size.height() - 2);
    return layer;
}

QImage filledBar(QSize size, int barWidth, int value)
{
    const int H = size.height();
    const int T = H / 3;
    const int lower = T + 2 * H / 3 - 1;
    QImage layer = emptyImage(size);
    QPainter painter(&layer);
    if (value <= 100) {
        fill(&painter, QColor(0, 174, 240), 1, T, value * barWidth / 100, lower);
    } else {
        fill(&painter, excessColor(value), 1, T, barWidth, lower);
        fill(&painter, excessColor(value), 1, 1, qMin(value - 100, 50) * barWidth / 50, T);
    }
    return layer;
}

QImage frameAndScale(QSize size, int barWidth)
{
    const int H = size.height();
    const int T = H / 3;
    QImage mask = emptyImage(size);
    QPainter lines(&mask);
    lines.setPen(QPen(Qt::black, 1.0));
    for (int i = 0; i <= 10; ++i) {
        const int x = barWidth * i / 10 + 1;
        lines.drawLine(x, T, x, H - 1);
        if (i == 0 || i == 2 || i == 4 || i == 6 || i == 8 || i == 10)
            lines.drawLine(x, 1, x, T);
    }
    lines.drawLine(1, 1, barWidth, 1);
    lines.drawLine(1, H - 1, barWidth, H - 1);
    lines.drawLine(1, 1, 1, H - 1);
    lines.drawLine(barWidth, 1, barWidth, H - 1);
    lines.drawLine(1, T, barWidth, T);
    return mask;
}

/// The bar as it should look for a value of 0 to 255.
QImage barImage(QSize size, const QFont &font, int value,
                const QColor &background = QColor(167, 167, 167))
{
    const int barWidth = size.width() - reservedWidth(font);
    QImage layers = emptyBar(size, barWidth, background);
    QPainter painter(&layers);
    painter.drawImage(0, 0, filledBar(size, barWidth, value));
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    painter.drawImage(0, 0, frameAndScale(size, barWidth));
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.setPen(value > 100 ? excessColor(value) : QColor(Qt::black));
    painter.setFont(font);
    const QFontMetrics metrics(font);
    painter.drawText(
        QPointF(barWidth + 2, (size.height() - metrics.height()) / 2 + metrics.ascent()),
        QString::number(value) + QLatin1Char('%'));
    return layers;
}

} // namespace

class MetroLinerateTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void metaObject();
    void layout();
    void defaults();
    void look_data();
    void look();
    void sizes_data();
    void sizes();
    void valueKeepsEightBits_data();
    void valueKeepsEightBits();
    void effects();
    void backgroundStaysStale();
    void foregroundIsOnlyStored();
    void composesWithoutLayers();
    void graphOnAnyImage_data();
    void graphOnAnyImage();
    void fontsCountFromTheNextEvent();
    void nullImagesAreReported();
    void becomesIdle();
    void mutatedEqualsFresh_data();
    void mutatedEqualsFresh();
};

void MetroLinerateTest::metaObject()
{
    const QMetaObject &meta = MetroLinerate::staticMetaObject;
    QCOMPARE(meta.superClass()->className(), "QWidget");
    QCOMPARE(declaredProperties(meta),
             QStringList({QStringLiteral("backgroundcolor QColor"),
                          QStringLiteral("foregroundcolor QColor"), QStringLiteral("value int")}));
    QCOMPARE(declaredMethods(meta), QStringList());
}

void MetroLinerateTest::defaults()
{
    const OpenBar bar(nullptr);
    QCOMPARE(bar.getBackgroundcolor(), QColor(167, 167, 167));
    QCOMPARE(bar.getForegroundcolor(), QColor(0, 174, 240));
    QCOMPARE(bar.getValue(), 35);
    QCOMPARE(bar.barWidth, bar.width() - reservedWidth(bar.font()));
}

void MetroLinerateTest::look_data()
{
    QTest::addColumn<int>("value");
    for (const int value : {0, 1, 35, 50, 99, 100, 101, 102, 125, 126, 149, 150, 151, 255})
        QTest::addRow("%d percent", value) << value;
}

void MetroLinerateTest::look()
{
    QFETCH(int, value);
    Stage<OpenBar> bar(QSize(220, 31));
    bar->setValue(value);
    COMPARE_IMAGES(imageOf(bar.widget), barImage(bar->size(), bar->font(), value));
    bar->setEnabled(false);
    COMPARE_IMAGES(imageOf(bar.widget), barImage(bar->size(), bar->font(), value));
}

void MetroLinerateTest::sizes_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("one pixel") << QSize(1, 1);
    QTest::newRow("narrower than the text") << QSize(20, 20);
    QTest::newRow("as wide as the text") << QSize(reservedWidth(QApplication::font()), 20);
    QTest::newRow("two rows") << QSize(200, 2);
    QTest::newRow("odd") << QSize(151, 33);
    QTest::newRow("one row over thirds") << QSize(151, 34);
    QTest::newRow("two rows over thirds") << QSize(151, 35);
    QTest::newRow("high") << QSize(60, 200);
    QTest::newRow("large") << QSize(800, 60);
}

void MetroLinerateTest::sizes()
{
    QFETCH(QSize, size);
    Stage<OpenBar> bar(size);
    for (const int value : {35, 0, 120, 255}) {
        bar->setValue(value);
        COMPARE_IMAGES(imageOf(bar.widget), barImage(size, bar->font(), value));
        // The frame cuts away the outermost rows, which are in the layers all the same.
        const int barWidth = size.width() - reservedWidth(bar->font());
        COMPARE_IMAGES(*bar->ImageBG, emptyBar(size, barWidth, QColor(167, 167, 167)));
        COMPARE_IMAGES(*bar->Image, filledBar(size, barWidth, value));
        COMPARE_IMAGES(*bar->ImageFG, frameAndScale(size, barWidth));
    }
}

void MetroLinerateTest::valueKeepsEightBits_data()
{
    QTest::addColumn<int>("written");
    QTest::addColumn<int>("kept");
    QTest::newRow("300") << 300 << 44;
    QTest::newRow("256") << 256 << 0;
    QTest::newRow("255") << 255 << 255;
    QTest::newRow("-1") << -1 << 255;
    QTest::newRow("-256") << -256 << 0;
}

void MetroLinerateTest::valueKeepsEightBits()
{
    QFETCH(int, written);
    QFETCH(int, kept);
    Stage<OpenBar> bar(QSize(200, 30));
    bar->setProperty("value", written);
    QCOMPARE(bar->property("value").toInt(), kept);
    COMPARE_IMAGES(imageOf(bar.widget), barImage(bar->size(), bar->font(), kept));
    // What narrows to the present value is no change.
    QCOMPARE(probe(bar.widget).effectOf("value", written + 256), QStringLiteral("nothing"));
}

void MetroLinerateTest::effects()
{
    Stage<OpenBar> bar;
    CacheProbe caches = probe(bar.widget);
    const QString value = QStringLiteral("drops Image");
    const QString all = QStringLiteral("drops Image,ImageBG,ImageFG");
    const QString nothing = QStringLiteral("nothing");
    QCOMPARE(caches.effectOf("backgroundcolor", QColor(Qt::red)), value);
    QCOMPARE(caches.effectOf("backgroundcolor", QColor(Qt::red)), nothing);
    QCOMPARE(caches.effectOf("foregroundcolor", QColor(Qt::red)), value);
    QCOMPARE(caches.effectOf("foregroundcolor", QColor(Qt::red)), nothing);
    QCOMPARE(caches.effectOf("value", 36), value);
    QCOMPARE(caches.effectOf("value", 36), nothing);
    QCOMPARE(caches.effectOf([&] { bar->resize(120, 40); }), all);
    QCOMPARE(caches.effectOf([&] { bar->setEnabled(false); }), all);
    QCOMPARE(caches.effectOf([&] { delete new QObject(bar.widget); }), all);
    QCOMPARE(caches.effectOf(QEvent::PolishRequest), all);
    QCOMPARE(caches.effectOf(QEvent::UpdateRequest), all);
    QCOMPARE(caches.effectOf(QEvent::Enter), nothing);
    QCOMPARE(caches.effectOf(QEvent::FontChange), QStringLiteral("updates"));
    QCOMPARE(caches.effectOf([&] { new QObject(bar.widget); }), nothing);
    QCOMPARE(caches.effectOf([&] {
        bar->MetroStyle::setState({4, 5});
    }),
             QStringLiteral("posts, drops Image,ImageBG,ImageFG"));
}

void MetroLinerateTest::backgroundStaysStale()
{
    Stage<OpenBar> bar(QSize(200, 30));
    const QImage before = imageOf(bar.widget);
    bar->setBackgroundColor(Qt::yellow);
    deliverAll();
    COMPARE_IMAGES(imageOf(bar.widget), before);
    sendPlain(bar.widget, QEvent::PolishRequest);
    COMPARE_IMAGES(imageOf(bar.widget), barImage(bar->size(), bar->font(), 35, Qt::yellow));
}

void MetroLinerateTest::foregroundIsOnlyStored()
{
    Stage<OpenBar> bar(QSize(200, 30));
    bar->setForegroundColor(Qt::yellow);
    bar->resize(201, 30);
    QCOMPARE(bar->getForegroundcolor(), QColor(Qt::yellow));
    COMPARE_IMAGES(imageOf(bar.widget), barImage(QSize(201, 30), bar->font(), 35));
}

void MetroLinerateTest::composesWithoutLayers()
{
    Stage<OpenBar> bar(QSize(200, 30));
    const QImage shown = imageOf(bar.widget);
    bar->setValue(36);
    bar->setValue(35);
    QVERIFY(!bar->Image);
    QImage composed = emptyImage(bar->size());
    composed.fill(Qt::green);
    bar->buildGraph(composed);
    COMPARE_IMAGES(composed, shown);
    QVERIFY(bar->Image);
}

void MetroLinerateTest::graphOnAnyImage_data()
{
    QTest::addColumn<QImage::Format>("format");
    QTest::addColumn<double>("ratio");
    QTest::newRow("premultiplied") << QImage::Format_ARGB32_Premultiplied << 1.0;
    QTest::newRow("not premultiplied") << QImage::Format_ARGB32 << 1.0;
    QTest::newRow("opaque") << QImage::Format_RGB32 << 1.0;
    QTest::newRow("three bytes") << QImage::Format_RGB888 << 1.0;
    QTest::newRow("one byte") << QImage::Format_Grayscale8 << 1.0;
    QTest::newRow("eight bytes") << QImage::Format_RGBA64_Premultiplied << 1.0;
    QTest::newRow("twice as fine") << QImage::Format_ARGB32_Premultiplied << 2.0;
}

void MetroLinerateTest::graphOnAnyImage()
{
    QFETCH(QImage::Format, format);
    QFETCH(double, ratio);
    Stage<OpenBar> bar(QSize(160, 30));
    imageOf(bar.widget);
    QImage composed(bar->size() * ratio, format);
    composed.setDevicePixelRatio(ratio);
    QImage expected = composed;
    bar->buildGraph(composed);

    QPainter painter(&expected);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(expected.rect(), Qt::transparent);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.drawImage(0, 0, *bar->ImageBG);
    painter.drawImage(0, 0, *bar->Image);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    painter.drawImage(0, 0, *bar->ImageFG);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    const QFontMetrics metrics(bar->font());
    painter.setFont(bar->font());
    painter.drawText(QPointF(bar->barWidth + 2, (30 - metrics.height()) / 2 + metrics.ascent()),
                     QStringLiteral("35%"));
    painter.end();
    COMPARE_IMAGES(composed, expected);
}

void MetroLinerateTest::fontsCountFromTheNextEvent()
{
    Stage<OpenBar> bar(QSize(200, 40));
    const int before = bar->barWidth;
    const QFont font(QStringLiteral("DejaVu Sans"), 16);
    bar->setFont(font);
    deliverAll();
    QCOMPARE(bar->barWidth, before);
    sendPlain(bar.widget, QEvent::PolishRequest);
    QCOMPARE(bar->barWidth, 200 - reservedWidth(font));
    COMPARE_IMAGES(imageOf(bar.widget), barImage(bar->size(), font, 35));
}

void MetroLinerateTest::nullImagesAreReported()
{
    OpenBar bar(nullptr);
    bar.resize(0, 0);
    bar.setObjectName(QStringLiteral("carico"));
    const auto line = [](const char *function, const char *image) {
        return ErrorLine{
            QStringLiteral("KivWidgets/metrolinerate.cpp"), QLatin1String(function),
            QStringLiteral("Nel controllo carico %1 e' NULL").arg(QLatin1String(image))};
    };
    sendPaint(&bar);
    QCOMPARE(takeErrorLines(),
             QList<ErrorLine>({line("paintImageFG", "ImageFG"), line("paintImageBG", "ImageBG"),
                               line("paintImage", "Image")}));
    sendPaint(&bar);
    QCOMPARE(takeErrorLines(), QList<ErrorLine>());
    bar.setValue(1);
    sendPaint(&bar);
    QCOMPARE(takeErrorLines(), QList<ErrorLine>({line("paintImage", "Image")}));
    takeWarnings();
}

void MetroLinerateTest::becomesIdle()
{
    OpenBar bar(nullptr);
    bar.resize(200, 40);
    bar.show();
    deliverAll();
    EventCounter events(&bar);
    deliverAll();
    QCOMPARE(events.count(QEvent::Paint), 0);
    bar.setValue(99);
    deliverAll();
    QCOMPARE(events.count(QEvent::Paint), 1);
}

void MetroLinerateTest::mutatedEqualsFresh_data()
{
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QVariant>("value");
    QTest::newRow("value") << QByteArray("value") << QVariant(77);
    QTest::newRow("value above 100") << QByteArray("value") << QVariant(140);
    QTest::newRow("size") << QByteArray("size") << QVariant(QSize(150, 21));
}

void MetroLinerateTest::mutatedEqualsFresh()
{
    QFETCH(QByteArray, property);
    QFETCH(QVariant, value);
    const auto configure = [](OpenBar *bar) { bar->resize(200, 30); };
    QCOMPARE(freshnessProblem<OpenBar>(configure, property, value), QString());
}

KIV_LAYOUT(MetroLinerate, 0, KIV_BASE(QWidget), KIV_BASE(MetroStyle), KIV_FIELD(foregroundcolor),
           KIV_FIELD(backgroundcolor), KIV_FIELD(value), KIV_FIELD(barWidth), KIV_FIELD(Image),
           KIV_FIELD(ImageBG), KIV_FIELD(ImageFG));

void MetroLinerateTest::layout()
{
    QCOMPARE(LayoutMetroLinerate::problem(), QString());
}

KIV_TEST_MAIN(MetroLinerateTest)

#include "tst_metrolinerate.moc"

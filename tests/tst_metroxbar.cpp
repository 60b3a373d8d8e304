// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "metroxbar.h"

#include "cacheprobe.h"
#include "freshness.h"
#include "images.h"
#include "layout.h"
#include "testmain.h"

#include <QtGui/QPainter>

#include <limits>
#include <optional>

namespace {

class OpenBar : public MetroXbar
{
public:
    using MetroXbar::barWidth;
    using MetroXbar::buildGraph;
    using MetroXbar::Image;
    using MetroXbar::ImageBG;
    using MetroXbar::ImageFG;
    using MetroXbar::MetroXbar;
    using MetroXbar::repaintSchedule;
};

CacheProbe probe(OpenBar *bar)
{
    return CacheProbe(
        bar, {{"Image", &bar->Image}, {"ImageBG", &bar->ImageBG}, {"ImageFG", &bar->ImageFG}});
}

int widthOf(const QFont &font, const QString &text)
{
    return QFontMetrics(font).size(Qt::TextSingleLine, text).width();
}

/// A filled rectangle by its inclusive corners, drawn as a pen and a brush of one colour do.
void fill(QPainter *painter, const QColor &color, int left, int top, int right, int bottom)
{
    painter->setPen(color);
    painter->setBrush(color);
    painter->drawRect(QRect(QPoint(left, top), QPoint(right, bottom)));
}

QImage emptyBar(QSize size, int barWidth, const QColor &background)
{
    QImage layer = emptyImage(size);
    QPainter painter(&layer);
    fill(&painter, background, 1, 1, barWidth, size.height() - 2);
    return layer;
}

/// @p right is the fill's last column, or nothing for an empty bar.
QImage filledBar(QSize size, std::optional<int> right)
{
    QImage layer = emptyImage(size);
    QPainter painter(&layer);
    if (right)
        fill(&painter, QColor(0, 174, 240), 1, 1, *right, size.height());
    return layer;
}

QImage frameAndScale(QSize size, int barWidth)
{
    const int H = size.height();
    QImage mask = emptyImage(size);
    QPainter lines(&mask);
    lines.setPen(QPen(Qt::black, 1.0));
    for (int i = 0; i <= 10; ++i)
        lines.drawLine(barWidth * i / 10 + 1, 1, barWidth * i / 10 + 1, H - 1);
    lines.drawLine(1, 1, barWidth, 1);
    lines.drawLine(1, H - 1, barWidth, H - 1);
    lines.drawLine(1, 1, 1, H - 1);
    lines.drawLine(barWidth, 1, barWidth, H - 1);
    return mask;
}

/// The bar as it should look.
QImage barImage(QSize size, int barWidth, std::optional<int> right, const QString &text,
                const QFont &font, const QColor &background = QColor(167, 167, 167))
{
    QImage layers = emptyBar(size, barWidth, background);
    QPainter painter(&layers);
    painter.drawImage(0, 0, filledBar(size, right));
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    painter.drawImage(0, 0, frameAndScale(size, barWidth));
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.setPen(Qt::black);
    painter.setFont(font);
    const QFontMetrics metrics(font);
    painter.drawText(
        QPointF(barWidth + 2, (size.height() - metrics.height()) / 2 + metrics.ascent()), text);
    return layers;
}

} // namespace

class MetroXbarTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void metaObject();
    void layout();
    void defaults();
    void look_data();
    void look();
    void fillOfEveryValue();
    void valuesFarBelowTheMinimum();
    void fillsFarBeyondTheBar();
    void sizes_data();
    void sizes();
    void effects();
    void composesWithoutALayer();
    void everyPaintRebuilds();
    void becomesIdle_data();
    void becomesIdle();
    void unitCountsFromTheNextEvent();
    void foregroundIsOnlyStored();
    void backgroundShowsWithTheNextPaint();
    void nullImagesAreReported();
    void fontsCountFromTheNextPaint();
    void mutatedEqualsFresh_data();
    void mutatedEqualsFresh();
};

void MetroXbarTest::metaObject()
{
    const QMetaObject &meta = MetroXbar::staticMetaObject;
    QCOMPARE(meta.superClass()->className(), "QWidget");
    QCOMPARE(declaredProperties(meta),
             QStringList({QStringLiteral("backgroundcolor QColor"),
                          QStringLiteral("foregroundcolor QColor"), QStringLiteral("value int"),
                          QStringLiteral("maxValue int"), QStringLiteral("minValue int"),
                          QStringLiteral("measure QString")}));
    QCOMPARE(declaredMethods(meta), QStringList());
}

void MetroXbarTest::defaults()
{
    const OpenBar bar(nullptr);
    QCOMPARE(bar.getBackgroundcolor(), QColor(167, 167, 167));
    QCOMPARE(bar.getForegroundcolor(), QColor(0, 174, 240));
    QCOMPARE(bar.getValue(), 35);
    QCOMPARE(bar.getMaxValue(), 300);
    QCOMPARE(bar.getMinValue(), 0);
    QCOMPARE(bar.getMeasure(), QString());
    QCOMPARE(bar.barWidth, bar.width() - widthOf(bar.font(), QStringLiteral("138V")));
}

void MetroXbarTest::look_data()
{
    using Limits = std::numeric_limits<int>;
    QTest::addColumn<int>("minimum");
    QTest::addColumn<int>("maximum");
    QTest::addColumn<int>("value");
    QTest::addColumn<double>("share"); // of the bar; below 0 counts as it is
    QTest::newRow("default") << 0 << 300 << 35 << 35 / 300.0;
    QTest::newRow("empty") << 0 << 300 << 0 << 0.0;
    QTest::newRow("full") << 0 << 300 << 300 << 1.0;
    QTest::newRow("above the maximum") << 0 << 300 << 301 << 1.0;
    QTest::newRow("far above the maximum") << 0 << 300 << Limits::max() << 1.0;
    QTest::newRow("from another minimum") << 200 << 260 << 230 << 0.5;
    QTest::newRow("negative limits") << -100 << -50 << -75 << 0.5;
    QTest::newRow("below the minimum") << 0 << 300 << -30 << -0.1;
    QTest::newRow("reversed limits") << 300 << 0 << -300 << 2.0;
    QTest::newRow("widest limits") << Limits::min() << Limits::max() << 0 << 0.5;
}

void MetroXbarTest::look()
{
    QFETCH(int, minimum);
    QFETCH(int, maximum);
    QFETCH(int, value);
    QFETCH(double, share);
    Stage<OpenBar> bar(QSize(240, 30));
    bar->setMinValue(minimum);
    bar->setMaxValue(maximum);
    bar->setValue(value);
    bar->setMeasure(QStringLiteral("V"));
    const int barWidth = 240 - widthOf(bar->font(), QStringLiteral("138V"));
    const int right = value > maximum ? barWidth : int(share * barWidth);
    COMPARE_IMAGES(imageOf(bar.widget),
                   barImage(bar->size(), barWidth, right,
                            QString::number(value) + QStringLiteral("V"), bar->font()));
}

void MetroXbarTest::fillOfEveryValue()
{
    // In whole numbers: 49 steps are one column, while 49 times a 49th falls short of it.
    Stage<OpenBar> bar(QSize(240, 30));
    bar->setMaxValue(49 * bar->barWidth);
    for (int column = 0; column <= bar->barWidth; ++column) {
        for (const int rest : {0, 48}) {
            const int value = 49 * column + rest;
            bar->setValue(value);
            imageOf(bar.widget);
            COMPARE_IMAGES(*bar->Image, filledBar(bar->size(), column));
        }
    }
}

void MetroXbarTest::valuesFarBelowTheMinimum()
{
    Stage<OpenBar> bar(QSize(240, 30));
    bar->setMaxValue(1);
    for (const int value : {-1, -10, -1000000}) {
        bar->setValue(value);
        imageOf(bar.widget);
        COMPARE_IMAGES(*bar->Image, filledBar(bar->size(), value * bar->barWidth));
    }
    // Where the product leaves the range of int, the fill ends at the lowest column.
    const int lowest = std::numeric_limits<int>::min();
    for (const int value : {lowest, lowest / bar->barWidth / 2 * 3}) {
        bar->setValue(value);
        imageOf(bar.widget);
        COMPARE_IMAGES(*bar->Image, filledBar(bar->size(), lowest));
    }
}

void MetroXbarTest::fillsFarBeyondTheBar()
{
    Stage<OpenBar> bar(QSize(240, 30));
    bar->resize(1 + widthOf(bar->font(), QStringLiteral("138")), 30);
    deliverAll();
    QCOMPARE(bar->barWidth, 1);
    // With reversed limits one apart, each step below the maximum is a column.
    bar->setMinValue(0);
    bar->setMaxValue(-1);
    const int most = std::numeric_limits<int>::max();
    for (const int column : {2, 1000, 100000, most - 2, most - 1, most}) {
        bar->setValue(-column);
        imageOf(bar.widget);
        COMPARE_IMAGES(*bar->Image, filledBar(bar->size(), column));
    }
}

void MetroXbarTest::sizes_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("one pixel") << QSize(1, 1);
    QTest::newRow("narrower than the text") << QSize(12, 20);
    QTest::newRow("low") << QSize(200, 2);
    QTest::newRow("odd") << QSize(151, 33);
    QTest::newRow("high") << QSize(60, 200);
    QTest::newRow("large") << QSize(800, 60);
}

void MetroXbarTest::sizes()
{
    QFETCH(QSize, size);
    Stage<OpenBar> bar(size);
    const int barWidth = size.width() - widthOf(bar->font(), QStringLiteral("138"));
    for (const bool enabled : {true, false}) {
        bar->setEnabled(enabled);
        COMPARE_IMAGES(imageOf(bar.widget), barImage(size, barWidth, 35 * barWidth / 300,
                                                     QStringLiteral("35"), bar->font()));
        // The frame cuts away the outermost rows, which are in the layers all the same.
        COMPARE_IMAGES(*bar->ImageBG, emptyBar(size, barWidth, QColor(167, 167, 167)));
        COMPARE_IMAGES(*bar->Image, filledBar(size, 35 * barWidth / 300));
        COMPARE_IMAGES(*bar->ImageFG, frameAndScale(size, barWidth));
    }
    // Equal limits leave the bar empty, unless the value is above them.
    bar->setMinValue(300);
    COMPARE_IMAGES(imageOf(bar.widget),
                   barImage(size, barWidth, std::nullopt, QStringLiteral("35"), bar->font()));
    COMPARE_IMAGES(*bar->Image, filledBar(size, std::nullopt));
    bar->setValue(300);
    COMPARE_IMAGES(imageOf(bar.widget),
                   barImage(size, barWidth, std::nullopt, QStringLiteral("300"), bar->font()));
    COMPARE_IMAGES(*bar->Image, filledBar(size, std::nullopt));
    bar->setValue(301);
    COMPARE_IMAGES(imageOf(bar.widget),
                   barImage(size, barWidth, barWidth, QStringLiteral("301"), bar->font()));
}

void MetroXbarTest::effects()
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
    QCOMPARE(caches.effectOf("maxValue", 301), value);
    QCOMPARE(caches.effectOf("maxValue", 301), nothing);
    QCOMPARE(caches.effectOf("minValue", 1), value);
    QCOMPARE(caches.effectOf("minValue", 1), nothing);
    QCOMPARE(caches.effectOf("measure", QStringLiteral("V")), QStringLiteral("updates"));
    QCOMPARE(caches.effectOf("measure", QStringLiteral("V")), nothing);
    QCOMPARE(caches.effectOf([&] { bar->resize(120, 40); }), all);
    QCOMPARE(caches.effectOf([&] { bar->setEnabled(false); }), all);
    QCOMPARE(caches.effectOf([&] { delete new QObject(bar.widget); }), all);
    QCOMPARE(caches.effectOf(QEvent::PolishRequest), all);
    QCOMPARE(caches.effectOf(QEvent::UpdateRequest), all);
    QCOMPARE(caches.effectOf(QEvent::Enter), nothing);
    QCOMPARE(caches.effectOf(QEvent::StyleChange), QStringLiteral("updates"));
    QCOMPARE(caches.effectOf([&] { new QObject(bar.widget); }), nothing);
    // The element state is not shown, but it posts like any.
    QCOMPARE(caches.effectOf([&] {
        bar->MetroStyle::setState({4, 5});
    }),
             QStringLiteral("posts, drops Image,ImageBG,ImageFG"));
}

void MetroXbarTest::composesWithoutALayer()
{
    Stage<OpenBar> bar(QSize(200, 30));
    const QImage shown = imageOf(bar.widget);
    for (QImage **layer : {&bar->Image, &bar->ImageBG, &bar->ImageFG}) {
        imageOf(bar.widget);
        QVERIFY(bar->Image && bar->ImageBG && bar->ImageFG);
        bar->repaintSchedule(layer);
        QVERIFY(!*layer);
        QImage composed = emptyImage(bar->size());
        composed.fill(Qt::green);
        bar->buildGraph(composed);
        COMPARE_IMAGES(composed, shown);
        QVERIFY(*layer);
    }
}

void MetroXbarTest::everyPaintRebuilds()
{
    Stage<OpenBar> bar;
    imageOf(bar.widget);
    bar->Image->fill(Qt::green);
    bar->ImageBG->fill(Qt::green);
    bar->ImageFG->fill(Qt::black);
    QVERIFY(imageOf(bar.widget).pixelColor(3, 3) != QColor(Qt::green));
    QVERIFY(imageOf(bar.widget).pixelColor(3, 3) == QColor(0, 174, 240));
}

void MetroXbarTest::becomesIdle_data()
{
    QTest::addColumn<bool>("asWindow");
    QTest::newRow("inside a window") << false;
    QTest::newRow("as a window") << true;
}

void MetroXbarTest::becomesIdle()
{
    QFETCH(bool, asWindow);
    QWidget window;
    window.resize(300, 200);
    OpenBar bar(asWindow ? nullptr : &window);
    QWidget *shown = asWindow ? static_cast<QWidget *>(&bar) : &window;
    bar.resize(200, 40);
    shown->show();
    deliverAll();
    EventCounter events(&bar);
    deliverAll();
    QCOMPARE(events.count(QEvent::Paint), 0);
    bar.setValue(99);
    deliverAll();
    deliverAll();
    QVERIFY(events.count(QEvent::Paint) >= 1);
    QVERIFY(events.count(QEvent::Paint) <= 2);
}

void MetroXbarTest::unitCountsFromTheNextEvent()
{
    Stage<OpenBar> bar(QSize(200, 30));
    // The first events have replaced the "V" of the constructor by the empty unit.
    const int before = 200 - widthOf(bar->font(), QStringLiteral("138"));
    QCOMPARE(bar->barWidth, before);
    bar->setMeasure(QStringLiteral(" kVA "));
    QCOMPARE(bar->barWidth, before);
    const int after = 200 - widthOf(bar->font(), QStringLiteral("138 kVA "));
    COMPARE_IMAGES(imageOf(bar.widget), barImage(bar->size(), after, 35 * after / 300,
                                                 QStringLiteral("35 kVA "), bar->font()));
    QCOMPARE(bar->barWidth, after);
    // A unit that looks like a place in a format is written as it is.
    bar->setMeasure(QStringLiteral("%1%2"));
    const int odd = 200 - widthOf(bar->font(), QStringLiteral("138%1%2"));
    COMPARE_IMAGES(imageOf(bar.widget), barImage(bar->size(), odd, 35 * odd / 300,
                                                 QStringLiteral("35%1%2"), bar->font()));
}

void MetroXbarTest::foregroundIsOnlyStored()
{
    Stage<OpenBar> bar(QSize(200, 30));
    bar->setForegroundColor(Qt::yellow);
    QCOMPARE(bar->getForegroundcolor(), QColor(Qt::yellow));
    const int barWidth = bar->barWidth;
    COMPARE_IMAGES(imageOf(bar.widget), barImage(bar->size(), barWidth, 35 * barWidth / 300,
                                                 QStringLiteral("35"), bar->font()));
}

void MetroXbarTest::backgroundShowsWithTheNextPaint()
{
    Stage<OpenBar> bar(QSize(200, 30));
    imageOf(bar.widget);
    bar->setBackgroundColor(Qt::yellow);
    QVERIFY(bar->ImageBG);
    const int barWidth = bar->barWidth;
    COMPARE_IMAGES(imageOf(bar.widget), barImage(bar->size(), barWidth, 35 * barWidth / 300,
                                                 QStringLiteral("35"), bar->font(), Qt::yellow));
}

void MetroXbarTest::nullImagesAreReported()
{
    OpenBar bar(nullptr);
    bar.resize(0, 0);
    bar.setObjectName(QStringLiteral("volt"));
    const auto line = [](const char *function, const char *image) {
        return ErrorLine{QStringLiteral("KivWidgets/metroxbar.cpp"), QLatin1String(function),
                         QStringLiteral("Nel controllo volt %1 e' NULL").arg(QLatin1String(image))};
    };
    for (int paint = 0; paint < 2; ++paint) {
        // Each paint drops, so each reports again.
        sendPaint(&bar);
        QCOMPARE(takeErrorLines(),
                 QList<ErrorLine>({line("paintImageFG", "ImageFG"), line("paintImageBG", "ImageBG"),
                                   line("paintImage", "Image")}));
    }
    takeWarnings();
}

void MetroXbarTest::fontsCountFromTheNextPaint()
{
    Stage<OpenBar> bar(QSize(200, 40));
    const QFont font(QStringLiteral("DejaVu Sans"), 16);
    bar->setFont(font);
    const int barWidth = 200 - widthOf(font, QStringLiteral("138"));
    COMPARE_IMAGES(imageOf(bar.widget), barImage(bar->size(), barWidth, 35 * barWidth / 300,
                                                 QStringLiteral("35"), font));
}

void MetroXbarTest::mutatedEqualsFresh_data()
{
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QVariant>("value");
    QTest::newRow("backgroundcolor") << QByteArray("backgroundcolor") << QVariant(QColor(Qt::red));
    QTest::newRow("value") << QByteArray("value") << QVariant(200);
    QTest::newRow("maxValue") << QByteArray("maxValue") << QVariant(70);
    QTest::newRow("minValue") << QByteArray("minValue") << QVariant(-90);
    QTest::newRow("measure") << QByteArray("measure") << QVariant(QStringLiteral(" A"));
    QTest::newRow("size") << QByteArray("size") << QVariant(QSize(150, 21));
}

void MetroXbarTest::mutatedEqualsFresh()
{
    QFETCH(QByteArray, property);
    QFETCH(QVariant, value);
    const auto configure = [](OpenBar *bar) { bar->resize(200, 30); };
    QCOMPARE(freshnessProblem<OpenBar>(configure, property, value), QString());
}

KIV_LAYOUT(MetroXbar, 0, KIV_BASE(QWidget), KIV_BASE(MetroStyle), KIV_FIELD(foregroundcolor),
           KIV_FIELD(backgroundcolor), KIV_FIELD(measure), KIV_FIELD(value), KIV_FIELD(maxValue),
           KIV_FIELD(minValue), KIV_FIELD(barWidth), KIV_FIELD(Image), KIV_FIELD(ImageBG),
           KIV_FIELD(ImageFG));

void MetroXbarTest::layout()
{
    QCOMPARE(LayoutMetroXbar::problem(), QString());
}

KIV_TEST_MAIN(MetroXbarTest)

#include "tst_metroxbar.moc"

// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "aerolinebar.h"

#include "cacheprobe.h"
#include "freshness.h"
#include "glasspanel.h"
#include "images.h"
#include "layout.h"
#include "testmain.h"

#include <QtCore/QMetaProperty>
#include <QtGui/QPaintEngine>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>

#include <cmath>
#include <limits>

namespace {

class OpenBar : public AeroLinebar
{
public:
    using AeroLinebar::AeroLinebar;
    using AeroLinebar::barHeight;
    using AeroLinebar::image;
    using AeroLinebar::imageShadow;
    using AeroLinebar::imageText;
    using AeroLinebar::imageTick;
    using AeroLinebar::paintImage;
    using AeroLinebar::paintImageShadow;
    using AeroLinebar::paintText;
    using AeroLinebar::paintTick;
    using AeroLinebar::tickHeight;
    using AeroLinebar::valueText;
};

CacheProbe probe(OpenBar *bar)
{
    return CacheProbe(bar, {{"image", &bar->image},
                            {"imageShadow", &bar->imageShadow},
                            {"imageText", &bar->imageText},
                            {"imageTick", &bar->imageTick}});
}

/// The bar as it should look.
struct BarLook
{
    GlassPanel panel;
    bool enabled = true;
    double minimum = 0;
    double maximum = 100;
    double value = 50;
    int tickPercent = 20;
    double interval = 10;
    AeroLinebar::ValPos position = AeroLinebar::NoVal;
    QString text;
    QColor ink;
    bool bold = true;

    QImage trough(QSize size) const;
    QImage ticks(QSize size) const;
    QImage label() const;
    QImage draw(QSize size) const;
};

QImage BarLook::trough(QSize size) const
{
    return drawnImage(size, [&](QPainter *painter) {
        QColor light(230, 230, 230, 250);
        QColor dark(192, 192, 192, 200);
        QColor edge = panel.colorPen;
        if (!enabled) {
            light = washedOutColor(light);
            dark = washedOutColor(dark);
            edge = washedOutColor(edge);
        }
        const int w = panel.widthPen;
        const int iw = size.width() - w;
        const int ih = size.height() - w;
        const double radius = qMin(iw, ih) / 2 * panel.roundness / 100;
        painter->setPen(QPen(QBrush(edge), w));
        painter->setOpacity(panel.opacity);
        QPainterPath outline;
        outline.addRoundedRect(w / 2, w / 2, iw, ih, radius, radius);
        painter->drawPath(outline);
        QLinearGradient gradient(0, 0, 0, ih);
        gradient.setSpread(QGradient::ReflectSpread);
        gradient.setStops({{0.0, light}, {0.4, dark}, {0.6, dark}, {1.0, light}});
        painter->setBrush(gradient);
        painter->setPen(QPen(QBrush(light), w / 2));
        painter->drawRoundedRect(QRectF(w, w, iw - w, ih - w), radius - w / 2, radius - w / 2);
    });
}

QImage BarLook::ticks(QSize size) const
{
    return drawnImage(size, [&](QPainter *painter) {
        const double step = interval > 0 ? interval : 1.0;
        const int b = size.height() - 1;
        for (double t = minimum / step * step; t <= maximum; t += step) {
            int x = int((t - minimum) / (maximum - minimum) * size.width());
            int from = b;
            if (t <= minimum + 0.005)
                x += 1;
            else if (t >= maximum - 0.005)
                x -= 1;
            else
                from = b - 1;
            painter->drawLine(QPoint(x, from), QPoint(x, b - size.height()));
        }
    });
}

QImage BarLook::label() const
{
    QFont font = QApplication::font();
    font.setBold(bold);
    const QFontMetrics metrics(font);
    const QSize size = metrics.size(Qt::TextSingleLine, text);
    return drawnImage(size, [&](QPainter *painter) {
        painter->setFont(font);
        painter->setPen(ink);
        painter->drawText(QPointF(0, (size.height() - metrics.height()) / 2 + metrics.ascent()),
                          text);
    });
}

QImage BarLook::draw(QSize size) const
{
    const int W = size.width();
    const int strip = size.height() * tickPercent / 100;
    const int bar = strip ? size.height() - strip - 2 : size.height();
    const int w = panel.widthPen;
    return drawnImage(size, [&](QPainter *painter) {
        painter->setOpacity(panel.opacity);
        if (bar > 0)
            painter->drawImage(0, 0, trough(QSize(W, bar)));

        const double v = value < minimum ? minimum : value > maximum ? maximum : value;
        const int L = int((v - minimum) * W / (maximum - minimum));
        double r = qMin(W - w, bar - w) * 0.5 * panel.roundness / 100.0;
        if (!(r > 2))
            r = 2;
        int left = L;
        int rest = 0;
        if (L > r) {
            left = int(r);
            rest = L - left;
        }
        const int middle = qMin(rest, W - 2 * left);
        const int right = qMax(rest - middle, 0);
        if (bar > 0) {
            const GlassPanel shown = enabled ? panel : panel.disabled();
            const QImage glass = drawnImage(
                QSize(W, bar), [&](QPainter *inner) { shown.draw(inner, QSize(W, bar)); });
            const auto slice = [&](int from, int to, int length) {
                // Qt takes a negative length for the rest of the panel.
                if (length != 0) {
                    painter->drawImage(QRectF(to, 0, length, bar), glass,
                                       QRectF(from, 0, length, bar));
                }
            };
            slice(0, 0, left);
            slice(left, left, middle);
            slice(W - left, left + middle, right);
        }

        if (!text.isNull() && position != AeroLinebar::NoVal) {
            const QImage image = label();
            const int tw = image.width();
            const int e = left + middle;
            int x = 0;
            if (position == AeroLinebar::CenterVal) {
                x = L - tw / 2;
                if (x >= W - tw - w - 2)
                    x = W - tw - w - 2;
                if (x < w + 2)
                    x = w + 2;
            } else if (position == AeroLinebar::leftVal) {
                x = w + 1 < e - tw - 2 ? e - tw - 2 : w + 2;
            } else {
                x = e + 2;
                if (x >= W - tw - w - 2)
                    x = W - tw - w - 2;
            }
            painter->drawImage(QPointF(x, (bar - image.height()) / 2), image);
        }
        if (strip > 1)
            painter->drawImage(0, size.height() - strip, ticks(QSize(W, strip)));
    });
}

/// Counts the lines that are drawn.
class LineCounter : public QPaintEngine
{
public:
    LineCounter()
        : QPaintEngine(AllFeatures)
    {}
    bool begin(QPaintDevice *) override
    {
        return true;
    }
    bool end() override
    {
        return true;
    }
    void updateState(const QPaintEngineState &) override
    {}
    void drawPixmap(const QRectF &, const QPixmap &, const QRectF &) override
    {}
    void drawLines(const QLine *, int count) override
    {
        lines += count;
    }
    void drawLines(const QLineF *, int count) override
    {
        lines += count;
    }
    Type type() const override
    {
        return User;
    }

    int lines = 0;
};

class CountingImage : public QImage
{
public:
    CountingImage(QSize size, LineCounter *counter)
        : QImage(size, QImage::Format_ARGB32_Premultiplied)
        , engine(counter)
    {}
    QPaintEngine *paintEngine() const override
    {
        return engine;
    }

private:
    LineCounter *engine;
};

const double notANumber = std::numeric_limits<double>::quiet_NaN();
const double infinity = std::numeric_limits<double>::infinity();

} // namespace

class AeroLinebarTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void metaObject();
    void layout();
    void defaults();
    void newBarHasNoText();
    void fills_data();
    void fills();
    void sizes_data();
    void sizes();
    void narrowBar();
    void textPositions_data();
    void textPositions();
    void textBesideOneEnd();
    void texts_data();
    void texts();
    void disabledAndFaint();
    void valueIsTiedToItsText();
    void formatSlot();
    void ownText();
    void textReadBack();
    void tickHeight_data();
    void tickHeight();
    void statedSplit();
    void tickInterval_data();
    void tickInterval();
    void tickPlaces_data();
    void tickPlaces();
    void limitsLeaveTheTicks();
    void effects();
    void equalLimits();
    void areaFollowsTheSizeAtOnce();
    void ticksThatDoNotAdvance();
    void textStepWithoutText();
    void crowdedTicks_data();
    void crowdedTicks();
    void crowdedTicksDrawFewLines();
    void ticksWithoutBound_data();
    void ticksWithoutBound();
    void extremeValuesAreHarmless_data();
    void extremeValuesAreHarmless();
    void errorLines();
    void nullTextEndsThePass();
    void mutatedEqualsFresh_data();
    void mutatedEqualsFresh();
};

void AeroLinebarTest::metaObject()
{
    const QMetaObject &meta = AeroLinebar::staticMetaObject;
    QCOMPARE(meta.superClass()->className(), "QWidget");
    QCOMPARE(declaredProperties(meta),
             QStringList({QStringLiteral("color QColor"), QStringLiteral("shadow QColor"),
                          QStringLiteral("colorPen QColor"), QStringLiteral("widthPen int"),
                          QStringLiteral("opacity double"), QStringLiteral("roundness int"),
                          QStringLiteral("minValueF double"), QStringLiteral("maxValueF double"),
                          QStringLiteral("tickSize int"), QStringLiteral("tickInterval double"),
                          QStringLiteral("valueF double"), QStringLiteral("valuePosition ValPos"),
                          QStringLiteral("valueFormat QString"), QStringLiteral("colorText QColor"),
                          QStringLiteral("bold bool")}));
    QCOMPARE(declaredMethods(meta), QStringList({QStringLiteral("setValueFormat(QString)")}));
    QCOMPARE(meta.method(meta.methodOffset()).methodType(), QMetaMethod::Slot);
    QCOMPARE(meta.method(meta.methodOffset()).access(), QMetaMethod::Public);
    const QMetaEnum places = meta.enumerator(meta.indexOfEnumerator("ValPos"));
    QCOMPARE(places.keyCount(), 4);
    const char *const names[] = {"NoVal", "CenterVal", "leftVal", "rightVal"};
    for (int i = 0; i < 4; ++i)
        QCOMPARE(places.keyToValue(names[i]), i);
}

void AeroLinebarTest::defaults()
{
    const OpenBar bar(nullptr);
    QCOMPARE(bar.getMinValueF(), 0.0);
    QCOMPARE(bar.getMaxValueF(), 100.0);
    QCOMPARE(bar.getValueF(), 50.0);
    QCOMPARE(bar.getTickSize(), 20);
    QCOMPARE(bar.getTickInterval(), 10.0);
    QCOMPARE(bar.getValuePosition(), AeroLinebar::NoVal);
    QCOMPARE(bar.getValueFormat(), QStringLiteral("%.02f%%"));
    QVERIFY(!bar.getColorText().isValid());
    QCOMPARE(bar.getBold(), true);
    QCOMPARE(bar.getColor(), QColor(Qt::gray));
    QVERIFY(bar.valueText.isNull());
}

void AeroLinebarTest::newBarHasNoText()
{
    for (int position = 0; position <= 4; ++position) {
        Stage<OpenBar> bar(QSize(200, 50));
        bar->setValuePosition(AeroLinebar::ValPos(position));
        COMPARE_IMAGES(imageOf(bar.widget), BarLook().draw(QSize(200, 50)));
    }
}

void AeroLinebarTest::fills_data()
{
    QTest::addColumn<double>("minimum");
    QTest::addColumn<double>("maximum");
    QTest::addColumn<double>("value");
    QTest::addColumn<int>("roundness");
    for (const double value :
         {0.0, 0.4, 1.0, 3.0, 5.0, 50.0, 93.7, 97.0, 99.0, 100.0, 130.0, -20.0}) {
        for (const int roundness : {25, 100, 0}) {
            QTest::addRow("%g, roundness %d", value, roundness)
                << 0.0 << 100.0 << value << roundness;
        }
    }
    QTest::newRow("negative range") << -50.0 << 50.0 << -10.0 << 25;
    QTest::newRow("small range") << 0.001 << 0.002 << 0.0015 << 25;
    QTest::newRow("rounder than round") << 0.0 << 100.0 << 80.0 << 150;
    // The first slice is more than half of the bar, so the middle one has a negative length.
    QTest::newRow("one end all over the bar") << 0.0 << 100.0 << 80.0 << 1000;
    QTest::newRow("one end all over a full bar") << 0.0 << 100.0 << 100.0 << 2000;
    QTest::newRow("one end over half the bar") << 0.0 << 100.0 << 51.0 << 1000;
    QTest::newRow("one end up to half the bar") << 0.0 << 100.0 << 49.0 << 1000;
    QTest::newRow("more than one end") << 0.0 << 100.0 << 90.0 << 900;
}

void AeroLinebarTest::fills()
{
    BarLook expected;
    QFETCH(double, minimum);
    QFETCH(double, maximum);
    QFETCH(double, value);
    QFETCH(int, roundness);
    expected.minimum = minimum;
    expected.maximum = maximum;
    expected.value = value;
    expected.panel.roundness = roundness;
    expected.panel.color = QColor(0, 174, 240);
    expected.panel.shadow = QColor(0, 90, 140);
    expected.interval = (maximum - minimum) / 10;
    Stage<OpenBar> bar(QSize(203, 50));
    bar->setMinValue(minimum);
    bar->setMaxValue(maximum);
    bar->setTickStep(expected.interval);
    bar->setValueFormat(QStringLiteral("%g"));
    bar->setValue(value);
    bar->setRoundness(roundness);
    bar->setColor(expected.panel.color);
    bar->setShadow(expected.panel.shadow);
    deliverAll();
    COMPARE_IMAGES(imageOf(bar.widget), expected.draw(QSize(203, 50)));
}

void AeroLinebarTest::sizes_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("tickPercent");
    QTest::newRow("wide") << QSize(300, 50) << 20;
    QTest::newRow("odd") << QSize(151, 33) << 20;
    QTest::newRow("one pixel") << QSize(1, 1) << 20;
    QTest::newRow("two pixels") << QSize(2, 2) << 20;
    QTest::newRow("three pixels") << QSize(3, 3) << 20;
    QTest::newRow("three columns") << QSize(3, 40) << 20;
    QTest::newRow("low, no strip comes of it") << QSize(100, 4) << 20;
    QTest::newRow("strip of one row") << QSize(100, 8) << 20;
    QTest::newRow("strip of two rows") << QSize(100, 10) << 20;
    QTest::newRow("no strip") << QSize(100, 40) << 0;
    QTest::newRow("strip alone") << QSize(100, 40) << 100;
    QTest::newRow("hardly a bar") << QSize(100, 40) << 90;
    QTest::newRow("tall") << QSize(30, 200) << 30;
    QTest::newRow("large") << QSize(800, 100) << 20;
}

void AeroLinebarTest::sizes()
{
    QFETCH(QSize, size);
    BarLook expected;
    QFETCH(int, tickPercent);
    expected.tickPercent = tickPercent;
    Stage<OpenBar> bar(size);
    bar->setTickHeight(tickPercent);
    COMPARE_IMAGES(imageOf(bar.widget), expected.draw(size));
}

void AeroLinebarTest::narrowBar()
{
    // At two thirds of three columns the first slice is two columns, the middle one -1, which Qt
    // takes for the whole rest, and the last one the panel's second column over its second.
    Stage<OpenBar> bar(QSize(3, 3));
    bar->setTickHeight(0);
    bar->setMaxValue(3);
    bar->setOpacity(0.5);
    bar->setValue(2);
    deliverAll();
    const QImage shown = imageOf(bar.widget);
    const QImage expected = drawnImage(QSize(3, 3), [&bar](QPainter *painter) {
        painter->setOpacity(0.5);
        painter->drawImage(0, 0, *bar->imageShadow);
        painter->drawImage(QPoint(0, 0), *bar->image, QRect(0, 0, 2, 3));
        painter->drawImage(QPoint(2, 0), *bar->image, QRect(2, 0, 1, 3));
        painter->drawImage(QPoint(1, 0), *bar->image, QRect(1, 0, 1, 3));
    });
    COMPARE_IMAGES(shown, expected);
}

void AeroLinebarTest::textPositions_data()
{
    QTest::addColumn<int>("position");
    QTest::addColumn<double>("value");
    const char *const names[] = {"none", "centred", "inside", "after", "beyond the enum"};
    for (const int position : {0, 1, 2, 3, 4}) {
        for (const double value : {0.0, 10.0, 30.0, 50.0, 80.0, 95.0, 100.0})
            QTest::addRow("%s, %g", names[position], value)
                << (position == 4 ? 77 : position) << value;
    }
}

void AeroLinebarTest::textPositions()
{
    QFETCH(int, position);
    BarLook expected;
    QFETCH(double, value);
    expected.value = value;
    expected.position = AeroLinebar::ValPos(position);
    expected.text = QString::asprintf("%.2f%%", value);
    expected.ink = Qt::darkRed;
    Stage<OpenBar> bar(QSize(200, 50));
    bar->setValuePosition(expected.position);
    bar->setColorText(Qt::darkRed);
    bar->setValue(value);
    COMPARE_IMAGES(imageOf(bar.widget), expected.draw(QSize(200, 50)));
}

void AeroLinebarTest::textBesideOneEnd()
{
    for (int position = 1; position <= 3; ++position) {
        BarLook expected;
        expected.value = 80;
        expected.panel.roundness = 1000;
        expected.position = AeroLinebar::ValPos(position);
        expected.text = QStringLiteral("80.00%");
        expected.ink = Qt::darkRed;
        Stage<OpenBar> bar(QSize(200, 50));
        bar->setRoundness(1000);
        bar->setValuePosition(expected.position);
        bar->setColorText(Qt::darkRed);
        bar->setValue(80);
        deliverAll();
        COMPARE_IMAGES(imageOf(bar.widget), expected.draw(QSize(200, 50)));
    }
}

void AeroLinebarTest::texts_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *name, const char *format, const char *text) {
        QTest::newRow(name) << QString::fromUtf8(format) << QString::fromUtf8(text);
    };
    row("one digit", "%.1f V", "62.5 V");
    row("integer", "%d", "62");
    row("padded integer", "%05d", "00062");
    row("no conversion", "no data", "no data");
    row("degrees", "%.1f \xC2\xB0", "62.5 \xC2\xB0");
    row("not Latin-1", "%.0f \xE2\x82\xAC", "63 ?");
    row("string", "%s", "%s");
    row("counter", "%n", "%n");
    row("argument as width", "%*d", "%*d");
    row("two conversions", "%f %f", "%f %f");
    row("wider than the bar", "%.1f is a text that does not fit into the bar at all",
        "62.5 is a text that does not fit into the bar at all");
}

void AeroLinebarTest::texts()
{
    BarLook expected;
    QFETCH(QString, format);
    QFETCH(QString, text);
    expected.value = 62.5;
    expected.text = text;
    expected.position = AeroLinebar::CenterVal;
    expected.bold = false;
    expected.ink = Qt::black;
    Stage<OpenBar> bar(QSize(200, 50));
    bar->setProperty("colorText", QColor(Qt::black));
    bar->setProperty("bold", false);
    bar->setProperty("valuePosition", AeroLinebar::CenterVal);
    bar->setProperty("valueF", 62.5);
    bar->setProperty("valueFormat", format);
    QCOMPARE(bar->valueText, text);
    COMPARE_IMAGES(imageOf(bar.widget), expected.draw(QSize(200, 50)));
}

void AeroLinebarTest::disabledAndFaint()
{
    BarLook expected;
    expected.panel.opacity = 0.5;
    expected.panel.color = QColor(20, 120, 220);
    expected.panel.colorPen = QColor(90, 10, 10);
    expected.panel.widthPen = 5;
    expected.position = AeroLinebar::rightVal;
    expected.text = QStringLiteral("30.00%");
    expected.value = 30;
    expected.ink = Qt::black;
    Stage<OpenBar> bar(QSize(220, 60));
    bar->setOpacity(0.5);
    bar->setColor(expected.panel.color);
    bar->setColorPen(expected.panel.colorPen);
    bar->setWidthPen(5);
    bar->setValuePosition(AeroLinebar::rightVal);
    bar->setColorText(Qt::black);
    bar->setValue(30);
    deliverAll();
    COMPARE_IMAGES(imageOf(bar.widget), expected.draw(QSize(220, 60)));
    bar->setEnabled(false);
    expected.enabled = false;
    COMPARE_IMAGES(imageOf(bar.widget), expected.draw(QSize(220, 60)));
}

void AeroLinebarTest::valueIsTiedToItsText()
{
    Stage<OpenBar> bar(QSize(200, 50));
    CacheProbe caches = probe(bar.widget);
    bar->setValue(50.0);
    QCOMPARE(bar->getValueF(), 50.0);
    QCOMPARE(bar->valueText, QStringLiteral("50.00%"));
    QCOMPARE(caches.effectOf("valueF", 50.004), QStringLiteral("nothing"));
    QCOMPARE(bar->getValueF(), 50.0);
    QCOMPARE(caches.effectOf("valueF", 50.006), QStringLiteral("drops imageText"));
    QCOMPARE(bar->getValueF(), 50.006);
}

void AeroLinebarTest::formatSlot()
{
    Stage<OpenBar> bar(QSize(200, 50));
    QVERIFY(QMetaObject::invokeMethod(bar.widget, "setValueFormat",
                                      Q_ARG(QString, QStringLiteral("%.0f"))));
    QCOMPARE(bar->getValueFormat(), QStringLiteral("%.0f"));
    QCOMPARE(bar->valueText, QStringLiteral("50"));
    CacheProbe caches = probe(bar.widget);
    QCOMPARE(caches.effectOf("valueFormat", QStringLiteral("%.0f")), QStringLiteral("nothing"));
    QCOMPARE(caches.effectOf("valueFormat", QStringLiteral("%.0f!")),
             QStringLiteral("drops imageText"));
    QCOMPARE(bar->getValueF(), 50.0);
}

void AeroLinebarTest::ownText()
{
    Stage<OpenBar> bar(QSize(200, 50));
    bar->setValue(50.0);
    bar->setText(QStringLiteral("own"));
    QCOMPARE(bar->valueText, QStringLiteral("own"));
    QCOMPARE(probe(bar.widget).effectOf([&] { bar->setText(QStringLiteral("own")); }),
             QStringLiteral("drops imageText"));
    bar->setValue(50.0);
    QCOMPARE(bar->valueText, QStringLiteral("50.00%"));
}

void AeroLinebarTest::textReadBack()
{
    AeroLinebar bar;
    const AeroLinebar &reader = bar;
    QVERIFY(reader.getText().isNull());
    bar.setValue(62.5);
    QCOMPARE(reader.getText(), QStringLiteral("62.50%"));
    bar.setValueFormat(QStringLiteral("%d V"));
    QCOMPARE(reader.getText(), QStringLiteral("62 V"));
    bar.setText(QStringLiteral("\u03A9"));
    QCOMPARE(reader.getText(), QStringLiteral("\u03A9"));
    bar.setText(QStringLiteral(""));
    QVERIFY(!reader.getText().isNull());
    bar.setText(QString());
    QVERIFY(reader.getText().isNull());
}

void AeroLinebarTest::tickHeight_data()
{
    QTest::addColumn<int>("written");
    QTest::addColumn<int>("kept");
    QTest::newRow("150") << 150 << 100;
    QTest::newRow("-5") << -5 << 0;
    QTest::newRow("100") << 100 << 100;
    QTest::newRow("0") << 0 << 0;
    QTest::newRow("33") << 33 << 33;
    QTest::newRow("highest") << std::numeric_limits<int>::max() << 100;
    QTest::newRow("lowest") << std::numeric_limits<int>::min() << 0;
}

void AeroLinebarTest::tickHeight()
{
    QFETCH(int, written);
    QFETCH(int, kept);
    Stage<OpenBar> bar(QSize(100, 60));
    bar->setProperty("tickSize", written);
    QCOMPARE(bar->property("tickSize").toInt(), kept);
    QCOMPARE(bar->tickHeight, 60 * kept / 100);
    QCOMPARE(bar->barHeight, kept == 0 ? 60 : 60 - 60 * kept / 100 - 2);
}

void AeroLinebarTest::statedSplit()
{
    Stage<OpenBar> bar(QSize(100, 50));
    QCOMPARE(bar->tickHeight, 10);
    QCOMPARE(bar->barHeight, 38);
    // The ticks stand in the rows 40 to 49.
    const QImage image = imageOf(bar.widget);
    for (int x = 0; x < 100; ++x) {
        QCOMPARE(qAlpha(image.pixel(x, 38)), 0);
        QCOMPARE(qAlpha(image.pixel(x, 39)), 0);
    }
    QVERIFY(qAlpha(image.pixel(1, 40)) > 0);
    QVERIFY(qAlpha(image.pixel(1, 49)) > 0);
}

void AeroLinebarTest::tickInterval_data()
{
    QTest::addColumn<double>("written");
    QTest::addColumn<double>("kept");
    QTest::newRow("too many ticks") << 1.0 << 10.0;
    QTest::newRow("exactly fifty") << 2.0 << 2.0;
    QTest::newRow("a little more than fifty") << 1.9999 << 10.0;
    QTest::newRow("zero") << 0.0 << 10.0;
    QTest::newRow("negative") << -3.0 << -3.0;
    QTest::newRow("negative zero") << -0.0 << -0.0;
    QTest::newRow("wider than the range") << 1000.0 << 1000.0;
    QTest::newRow("infinite") << infinity << infinity;
}

void AeroLinebarTest::tickInterval()
{
    QFETCH(double, written);
    QFETCH(double, kept);
    Stage<OpenBar> bar(QSize(200, 50));
    bar->setProperty("tickInterval", written);
    QCOMPARE(bar->property("tickInterval").toDouble(), kept);
    BarLook expected;
    expected.interval = kept;
    COMPARE_IMAGES(imageOf(bar.widget), expected.draw(QSize(200, 50)));
}

void AeroLinebarTest::tickPlaces_data()
{
    QTest::addColumn<double>("minimum");
    QTest::addColumn<double>("maximum");
    QTest::addColumn<double>("interval");
    QTest::newRow("tens") << 0.0 << 100.0 << 10.0;
    QTest::newRow("not a divisor") << 0.0 << 100.0 << 7.0;
    QTest::newRow("from the minimum, not from a multiple") << 3.0 << 103.0 << 10.0;
    QTest::newRow("accumulated tenths") << 0.0 << 1.0 << 0.1;
    QTest::newRow("negative range") << -30.0 << -10.0 << 2.5;
    QTest::newRow("negative interval counts as one") << 0.0 << 20.0 << -4.0;
}

void AeroLinebarTest::tickPlaces()
{
    BarLook expected;
    QFETCH(double, minimum);
    QFETCH(double, maximum);
    QFETCH(double, interval);
    expected.minimum = minimum;
    expected.maximum = maximum;
    expected.interval = interval;
    expected.value = 50;
    expected.tickPercent = 50;
    Stage<OpenBar> bar(QSize(257, 40));
    bar->setMinValue(minimum);
    bar->setMaxValue(maximum);
    bar->setTickStep(interval);
    bar->setTickHeight(50);
    COMPARE_IMAGES(imageOf(bar.widget), expected.draw(QSize(257, 40)));
}

void AeroLinebarTest::limitsLeaveTheTicks()
{
    Stage<OpenBar> bar(QSize(200, 50));
    imageOf(bar.widget);
    const QImage before = *bar->imageTick;
    bar->setMinValue(20);
    bar->setMaxValue(60);
    deliverAll();
    imageOf(bar.widget);
    COMPARE_IMAGES(*bar->imageTick, before);
    // An interval that is written again, equal or not, builds them again.
    bar->setTickStep(10);
    imageOf(bar.widget);
    BarLook expected;
    expected.minimum = 20;
    expected.maximum = 60;
    COMPARE_IMAGES(*bar->imageTick, expected.ticks(QSize(200, 10)));
}

void AeroLinebarTest::effects()
{
    Stage<OpenBar> bar(QSize(200, 50));
    bar->setValue(40);
    CacheProbe caches = probe(bar.widget);
    const QString all = QStringLiteral("drops image,imageShadow,imageText,imageTick");
    const QString posted = QStringLiteral("posts, drops image,imageShadow,imageText,imageTick");
    const QString text = QStringLiteral("drops imageText");
    const QString updates = QStringLiteral("updates");
    const QString nothing = QStringLiteral("nothing");
    QCOMPARE(caches.effectOf("color", QColor(Qt::red)), posted);
    QCOMPARE(caches.effectOf("color", QColor(Qt::red)), nothing);
    QCOMPARE(caches.effectOf("shadow", QColor(Qt::red)), posted);
    QCOMPARE(caches.effectOf("colorPen", QColor(Qt::red)), posted);
    QCOMPARE(caches.effectOf("widthPen", 3), posted);
    QCOMPARE(caches.effectOf("opacity", 0.9), posted);
    QCOMPARE(caches.effectOf("roundness", 30), posted);
    // These act on every write.
    for (int write = 0; write < 2; ++write) {
        QCOMPARE(caches.effectOf("minValueF", 1.0), updates);
        QCOMPARE(caches.effectOf("maxValueF", 99.0), updates);
        QCOMPARE(caches.effectOf("valuePosition", AeroLinebar::leftVal), updates);
        QCOMPARE(caches.effectOf("tickSize", 30), all);
        QCOMPARE(caches.effectOf("tickInterval", 20.0), QStringLiteral("drops imageTick"));
    }
    QCOMPARE(caches.effectOf("colorText", QColor(Qt::red)), text);
    QCOMPARE(caches.effectOf("colorText", QColor(Qt::red)), nothing);
    QCOMPARE(caches.effectOf("bold", false), text);
    QCOMPARE(caches.effectOf("bold", false), nothing);
    QCOMPARE(caches.effectOf("valueF", 41.0), text);
    QCOMPARE(caches.effectOf("valueF", 41.0), nothing);
    QCOMPARE(caches.effectOf([&] { bar->resize(190, 60); }), all);
    QCOMPARE(bar->tickHeight, 18);
    QCOMPARE(caches.effectOf([&] { bar->setEnabled(false); }), all);
    QCOMPARE(caches.effectOf([&] { delete new QObject(bar.widget); }), all);
    QCOMPARE(caches.effectOf(QEvent::PolishRequest), all);
    QCOMPARE(caches.effectOf(QEvent::UpdateRequest), all);
    QCOMPARE(caches.effectOf([&] { new QObject(bar.widget); }), nothing);
    QCOMPARE(caches.effectOf(QEvent::FontChange), updates);
}

void AeroLinebarTest::equalLimits()
{
    Stage<OpenBar> bar(QSize(200, 50));
    bar->setMinValue(100);
    deliverAll();
    BarLook empty;
    empty.value = 0;
    // No fill and the old ticks.
    COMPARE_IMAGES(imageOf(bar.widget), empty.draw(QSize(200, 50)));
    bar->setTickStep(10);
    QCOMPARE(bar->getTickInterval(), 10.0);
    imageOf(bar.widget);
    // The one tick is at the left end.
    const QImage tick = *bar->imageTick;
    QVERIFY(qAlpha(tick.pixel(1, 5)) > 0);
    for (int x = 3; x < 200; ++x)
        QCOMPARE(qAlpha(tick.pixel(x, 5)), 0);
}

void AeroLinebarTest::areaFollowsTheSizeAtOnce()
{
    Stage<OpenBar> bar(QSize(100, 50));
    bar->resize(100, 80);
    QCOMPARE(bar->tickHeight, 16);
    QCOMPARE(bar->barHeight, 62);
}

void AeroLinebarTest::ticksThatDoNotAdvance()
{
    // The one tick is drawn once: another one over it would darken its soft edges.
    const auto imageWithStep = [](double step) {
        Stage<OpenBar> bar(QSize(100, 50));
        bar->setMinValue(0);
        bar->setMaxValue(0);
        bar->setTickStep(step);
        bar->setMinValue(1e17);
        bar->setMaxValue(1e17 + 1000);
        sendPlain(bar.widget, QEvent::PolishRequest);
        return imageOf(bar.widget);
    };
    COMPARE_IMAGES(imageWithStep(1.0), imageWithStep(1e9));
}

void AeroLinebarTest::textStepWithoutText()
{
    Stage<OpenBar> bar(QSize(100, 50));
    QImage canvas(bar->size(), QImage::Format_ARGB32_Premultiplied);
    canvas.fill(Qt::green);
    const QImage untouched = canvas;
    QPainter painter(&canvas);
    painter.setOpacity(0.5);
    bar->setText(QString());
    bar->paintText(&painter);
    QCOMPARE(painter.opacity(), 0.5);
    // A text alone is measured by its image.
    bar->setText(QStringLiteral("Load"));
    QVERIFY(!bar->imageText);
    bar->paintText(&painter);
    QCOMPARE(painter.opacity(), 0.5);
    QCOMPARE(canvas, untouched);
}

void AeroLinebarTest::crowdedTicks_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<double>("count");
    // Up to here each tick darkens the soft edges of those before it.
    QTest::newRow("five on a column") << 100 << 500.0;
    QTest::newRow("sixteen on a column") << 100 << 1600.0;
    QTest::newRow("twenty on a column") << 100 << 2000.0;
    QTest::newRow("between five and six on a column") << 93 << 500.0;
    QTest::newRow("hundreds on a column") << 100 << 30000.0;
    QTest::newRow("thousands on a column") << 7 << 50000.0;
    QTest::newRow("nearly as many as are drawn") << 300 << 99900.0;
}

void AeroLinebarTest::crowdedTicks()
{
    QFETCH(int, width);
    QFETCH(double, count);
    BarLook expected;
    expected.value = 0;
    expected.interval = 1;
    expected.maximum = count;
    Stage<OpenBar> bar(QSize(width, 50));
    bar->setMaxValue(10);
    bar->setTickStep(1);
    bar->setMaxValue(count);
    bar->setMinValue(0);
    imageOf(bar.widget);
    sendPlain(bar.widget, QEvent::PolishRequest);
    imageOf(bar.widget);
    COMPARE_IMAGES(*bar->imageTick, expected.ticks(QSize(width, 10)));
}

void AeroLinebarTest::crowdedTicksDrawFewLines()
{
    // What is as dark as it gets is not drawn on any more.
    const auto linesFor = [](int width, double count) {
        OpenBar bar(nullptr);
        bar.resize(width, 50);
        bar.SplitArea();
        bar.setMaxValue(10);
        bar.setTickStep(1);
        bar.setMaxValue(count);
        LineCounter counter;
        bar.imageTick = new CountingImage(QSize(width, 10), &counter);
        bar.paintTick();
        return counter.lines;
    };
    QCOMPARE(linesFor(200, 10), 11);
    QCOMPARE(linesFor(200, 2000), 2001);
    QVERIFY2(linesFor(200, 99000) < 5000, qPrintable(QString::number(linesFor(200, 99000))));
    QVERIFY(linesFor(200, 1e9) < 5000);
    QVERIFY(linesFor(1, 1e9) < 100);
}

void AeroLinebarTest::ticksWithoutBound_data()
{
    QTest::addColumn<double>("minimum");
    QTest::addColumn<double>("maximum");
    QTest::addColumn<double>("interval");
    QTest::newRow("a billion") << 0.0 << 1e9 << 1.0;
    QTest::newRow("endless range") << 0.0 << infinity << 10.0;
    QTest::newRow("endless to the left") << -infinity << 100.0 << 10.0;
    QTest::newRow("steps too small to count") << 1e17 << 1e17 + 1000 << 1.0;
    QTest::newRow("no number as a limit") << 0.0 << notANumber << 1.0;
    QTest::newRow("no number as an interval") << 0.0 << 100.0 << notANumber;
    QTest::newRow("reversed limits") << 100.0 << 0.0 << 1.0;
    QTest::newRow("smallest interval") << 0.0 << 1.0 << std::numeric_limits<double>::denorm_min();
}

void AeroLinebarTest::ticksWithoutBound()
{
    QFETCH(double, minimum);
    QFETCH(double, maximum);
    QFETCH(double, interval);
    Stage<OpenBar> bar(QSize(100, 50));
    // Written before the limits, so that it is not replaced.
    bar->setMinValue(0);
    bar->setMaxValue(0);
    bar->setTickStep(interval);
    bar->setMinValue(minimum);
    bar->setMaxValue(maximum);
    sendPlain(bar.widget, QEvent::PolishRequest);
    QCOMPARE(imageOf(bar.widget).size(), QSize(100, 50));
    bar->setMinValue(0);
    bar->setMaxValue(100);
    bar->setTickStep(10);
    sendPlain(bar.widget, QEvent::PolishRequest);
    COMPARE_IMAGES(imageOf(bar.widget), BarLook().draw(QSize(100, 50)));
}

void AeroLinebarTest::extremeValuesAreHarmless_data()
{
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QVariant>("value");
    using Ints = std::numeric_limits<int>;
    using Doubles = std::numeric_limits<double>;
    for (const int value : {Ints::min(), -7, Ints::max()}) {
        for (const char *property : {"widthPen", "roundness", "valuePosition"})
            QTest::addRow("%s %d", property, value) << QByteArray(property) << QVariant(value);
    }
    for (const double value : {notANumber, infinity, -infinity, Doubles::max(), Doubles::lowest(),
                               Doubles::denorm_min()}) {
        for (const char *property : {"valueF", "minValueF", "maxValueF", "opacity"})
            QTest::addRow("%s %g", property, value) << QByteArray(property) << QVariant(value);
    }
    QTest::newRow("text without end")
        << QByteArray("valueFormat") << QVariant(QString(100000, QLatin1Char('x')));
}

void AeroLinebarTest::extremeValuesAreHarmless()
{
    QFETCH(QByteArray, property);
    QFETCH(QVariant, value);
    Stage<OpenBar> bar(QSize(120, 50));
    bar->setColorText(Qt::black);
    bar->setValuePosition(AeroLinebar::CenterVal);
    bar->setValue(60);
    deliverAll();
    const QImage usual = imageOf(bar.widget);
    const QVariant before = bar->property(property);
    if (property == "valuePosition")
        bar->setValuePosition(AeroLinebar::ValPos(value.toInt()));
    else
        bar->setProperty(property, value);
    sendPlain(bar.widget, QEvent::PolishRequest);
    QCOMPARE(imageOf(bar.widget).size(), QSize(120, 50));
    takeErrorLines();
    bar->setProperty(property, before);
    sendPlain(bar.widget, QEvent::PolishRequest);
    COMPARE_IMAGES(imageOf(bar.widget), usual);
}

void AeroLinebarTest::errorLines()
{
    OpenBar bar(nullptr);
    bar.setObjectName(QStringLiteral("livello"));
    const auto line = [](const char *function, const char *image) {
        return ErrorLine{
            QStringLiteral("KivWidgets/aerolinebar.cpp"), QLatin1String(function),
            QStringLiteral("Nel controllo livello %1 e' NULL").arg(QLatin1String(image))};
    };
    // Without a width only the tick strip says so: bar and trough are just not painted.
    bar.resize(0, 50);
    bar.SplitArea();
    sendPaint(&bar);
    QCOMPARE(takeErrorLines(), QList<ErrorLine>({line("paintTick", "ImageTick")}));
    sendPaint(&bar);
    QCOMPARE(takeErrorLines(), QList<ErrorLine>());
    bar.setTickStep(20);
    sendPaint(&bar);
    QCOMPARE(takeErrorLines(), QList<ErrorLine>({line("paintTick", "ImageTick")}));
    // A strip of less than two rows has none.
    bar.setTickHeight(2);
    sendPaint(&bar);
    QCOMPARE(takeErrorLines(), QList<ErrorLine>());
    // The painting routines themselves report, whoever calls them.
    bar.paintImage();
    bar.paintImageShadow();
    QCOMPARE(takeErrorLines(), QList<ErrorLine>({line("paintImage", "Image"),
                                                 line("paintImageShadow", "ImageShadow")}));
    takeWarnings();
}

void AeroLinebarTest::nullTextEndsThePass()
{
    Stage<OpenBar> bar(QSize(100, 50));
    bar->setObjectName(QStringLiteral("livello"));
    bar->setValuePosition(AeroLinebar::CenterVal);
    imageOf(bar.widget);
    bar->setText(QStringLiteral(""));
    bar->setTickStep(20);
    BarLook expected;
    expected.interval = 1e9;
    const QImage image = imageOf(bar.widget);
    const ErrorLine line{QStringLiteral("KivWidgets/aerolinebar.cpp"),
                         QStringLiteral("createImages"),
                         QStringLiteral("Nel controllo livello ImageText e' NULL")};
    const QFontMetrics metrics(bar->font());
    if (metrics.size(Qt::TextSingleLine, QString()).isEmpty()) {
        QCOMPARE(takeErrorLines(), QList<ErrorLine>({line}));
        // The ticks are not made in that pass.
        QVERIFY(!bar->imageTick);
        QCOMPARE(qAlpha(image.pixel(1, 45)), 0);
        // The message comes once per drop.
        imageOf(bar.widget);
        QCOMPARE(takeErrorLines(), QList<ErrorLine>());
        bar->setTickStep(20);
        imageOf(bar.widget);
        QCOMPARE(takeErrorLines(), QList<ErrorLine>());
        QVERIFY(bar->imageTick);
        bar->setTextBold(false);
        imageOf(bar.widget);
        QCOMPARE(takeErrorLines(), QList<ErrorLine>({line}));
    } else {
        QFAIL("an empty text is expected to have an empty size");
    }
}

void AeroLinebarTest::mutatedEqualsFresh_data()
{
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QVariant>("value");
    const auto row = [](const char *property, const QVariant &value) {
        QTest::newRow(property) << QByteArray(property) << value;
    };
    row("color", QColor(Qt::darkRed));
    row("shadow", QColor(Qt::darkRed));
    row("colorPen", QColor(Qt::darkRed));
    row("widthPen", 5);
    row("opacity", 0.6);
    row("roundness", 70);
    row("tickSize", 40);
    row("tickInterval", 25.0);
    row("valueF", 75.0);
    row("valuePosition", AeroLinebar::leftVal);
    row("valueFormat", QStringLiteral("%.1f V"));
    row("colorText", QColor(Qt::darkGreen));
    row("bold", false);
    row("size", QSize(111, 66));
    row("enabled", false);
}

void AeroLinebarTest::mutatedEqualsFresh()
{
    QFETCH(QByteArray, property);
    QFETCH(QVariant, value);
    const auto configure = [](OpenBar *bar) {
        bar->resize(200, 50);
        bar->setValuePosition(AeroLinebar::CenterVal);
        bar->setValue(40);
    };
    QCOMPARE(freshnessProblem<OpenBar>(configure, property, value), QString());
}

KIV_LAYOUT(AeroLinebar, 0, KIV_BASE(QWidget), KIV_BASE(AeroStyle), KIV_FIELD(tickSize),
           KIV_FIELD(tickInterval), KIV_FIELD(tickHeight), KIV_FIELD(barHeight),
           KIV_FIELD(minValueF), KIV_FIELD(maxValueF), KIV_FIELD(valueF), KIV_FIELD(valuePosition),
           KIV_FIELD(valueFormat), KIV_FIELD(valueText), KIV_FIELD(colorText), KIV_FIELD(bold),
           KIV_FIELD(image), KIV_FIELD(imageShadow), KIV_FIELD(imageText), KIV_FIELD(imageTick));

void AeroLinebarTest::layout()
{
    QCOMPARE(LayoutAeroLinebar::problem(), QString());
}

KIV_TEST_MAIN(AeroLinebarTest)

#include "tst_aerolinebar.moc"

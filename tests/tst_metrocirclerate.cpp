// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "metrocirclerate.h"

#include "cacheprobe.h"
#include "freshness.h"
#include "images.h"
#include "layout.h"
#include "testmain.h"

#include <QtGui/QPainter>
#include <QtWidgets/QHBoxLayout>

#include <cmath>
#include <limits>
#include <type_traits>
#include <utility>

namespace {

class OpenDial : public MetroCirclerate
{
public:
    using MetroCirclerate::arcRect;
    using MetroCirclerate::Image;
    using MetroCirclerate::ImageBG;
    using MetroCirclerate::ImageFG;
    using MetroCirclerate::MetroCirclerate;
};

CacheProbe probe(OpenDial *dial)
{
    return CacheProbe(
        dial, {{"Image", &dial->Image}, {"ImageBG", &dial->ImageBG}, {"ImageFG", &dial->ImageFG}});
}

/// What a dial is set to, and its image drawn plainly.
struct DialLook
{
    double value = 35;
    bool fromZero = false;
    double minimum = 0;
    double maximum = 100;
    int radius = 37;
    int arc = 200;
    int start = 200;
    int segments = 20;
    int thickness = 11;
    QString label = QStringLiteral("L?");
    QPoint labelOffset;
    QString text = QStringLiteral("35%");
    QPoint textOffset;
    QColor background = QColor(167, 167, 167);
    QColor fill = QColor(0, 174, 240);
    QFont font = QApplication::font();
    QColor ink = QApplication::palette().color(QPalette::WindowText);

    int angle(double v) const
    {
        return int(16.0 * (start - (v - minimum) / (maximum - minimum) * arc));
    }
    QImage draw(QSize size, QRect circle) const;
};

QImage DialLook::draw(QSize size, QRect circle) const
{
    const auto pie = [](QPainter *painter, const QColor &color, const QRectF &box, int from,
                        int span) {
        painter->setPen(color);
        painter->setBrush(color);
        painter->drawPie(box, from, span);
    };
    const QRectF box(circle.x(), circle.y(), circle.width(), circle.height());
    const QImage full = drawnImage(size, [&](QPainter *painter) {
        pie(painter, background, box, angle(minimum), angle(maximum) - angle(minimum));
    });
    const QImage part = drawnImage(size, [&](QPainter *painter) {
        const double s = fromZero && minimum < 0 ? 0 : minimum;
        const double c = value > maximum ? maximum : value < minimum ? minimum : value;
        pie(painter, fill, box, angle(s), angle(maximum) - angle(maximum - c + s));
    });
    const QImage mask = drawnImage(size, [&](QPainter *painter) {
        painter->setCompositionMode(QPainter::CompositionMode_DestinationOver);
        for (int i = 1; i < segments; ++i) {
            const double tick = i * (maximum - minimum) / segments + minimum;
            pie(painter, Qt::black, box, angle(tick), -16);
        }
        pie(painter, Qt::black, box.adjusted(thickness, thickness, -thickness, -thickness),
            angle(minimum), -5760);
    });

    QImage image = emptyImage(size);
    QPainter painter(&image);
    painter.drawImage(0, 0, full);
    painter.drawImage(0, 0, part);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    painter.drawImage(0, 0, mask);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.setPen(ink);
    const int M = qMax(size.width(), size.height());
    QFont small = font;
    if (font.pointSize() > 0)
        small.setPointSize(font.pointSize() * 70 / 100);
    small.setWeight(QFont::Normal);
    const auto write = [&](const QFont &textFont, const QString &line, int baseline,
                           QPoint offset) {
        const int width = QFontMetrics(textFont).size(Qt::TextSingleLine, line).width();
        painter.setFont(textFont);
        painter.drawText(QPointF((M - width) / 2 + offset.x(), baseline + offset.y()), line);
    };
    write(small, label, thickness + QFontMetrics(small).ascent(), labelOffset);
    write(font, text, size.height() / 2 + QFontMetrics(font).ascent(), textOffset);
    return image;
}

/// The size that an arc asks for and the square around its circle.
struct Geometry
{
    QSize size;
    QRect circle;
};

/// The geometry from a walk along the arc in the order of the angles.
Geometry expectedGeometry(int radius, int start, int arc)
{
    double minX = 2;
    double maxX = -2;
    double minY = 2;
    double maxY = -2;
    const auto take = [&](double x, double y) {
        minX = std::fmin(minX, x);
        maxX = std::fmax(maxX, x);
        minY = std::fmin(minY, y);
        maxY = std::fmax(maxY, y);
    };
    for (const int end : {start, start - arc})
        take(std::cos(end * 3.141592653589793 / 180.0), std::sin(end * 3.141592653589793 / 180.0));
    // The axes strictly between the ends; only the coordinate that lies on the axis counts, since
    // the ends are never moved to it.
    for (int angle = start - 1; angle > start - arc; --angle) {
        switch (((angle % 360) + 360) % 360) {
        case 0:
            maxX = 1;
            break;
        case 90:
            maxY = 1;
            break;
        case 180:
            minX = -1;
            break;
        case 270:
            minY = -1;
            break;
        default:
            break;
        }
    }
    Geometry expected;
    expected.size = QSize(int(radius * (maxX - minX) + 2.0), int(radius * (maxY - minY) + 2.0));
    expected.circle = QRect(int(1.0 - radius * (minX + 1.0)), int(1.0 - radius * (1.0 - maxY)),
                            2 * radius - 2, 2 * radius - 2);
    return expected;
}

/// Whether setCursor() of @p Widget takes a value like @p Shape.
template <typename Widget, typename Shape, typename = void>
constexpr bool takesAsCursor = false;
template <typename Widget, typename Shape>
constexpr bool takesAsCursor<
    Widget, Shape,
    std::void_t<decltype(std::declval<Widget &>().setCursor(std::declval<Shape>()))>> = true;

} // namespace

class MetroCirclerateTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void cursorIsAColor();
    void metaObject();
    void layout();
    void defaults();
    void angles();
    void defaultGeometry();
    void geometryOfEveryArc();
    void endsAreNeverRounded_data();
    void endsAreNeverRounded();
    void arcsFillTheirBoxes_data();
    void arcsFillTheirBoxes();
    void resizesEndAtTheOwnSize();
    void insideALayout();
    void look_data();
    void look();
    void overRange_data();
    void overRange();
    void texts_data();
    void texts();
    void pixelSizedFont();
    void labelIsSmallAndNeverBold_data();
    void labelIsSmallAndNeverBold();
    void palette();
    void effects();
    void geometrySettersDropAll_data();
    void geometrySettersDropAll();
    void radiusOfAnEqualSize();
    void geometrySettersWithinSizeLimits_data();
    void geometrySettersWithinSizeLimits();
    void refusedValues_data();
    void refusedValues();
    void narrowedValues_data();
    void narrowedValues();
    void limitsKeepTheirDistance();
    void hugeLimitsMayBeEqual();
    void becomesIdle();
    void fontChangesDropNothing();
    void nullImagesAreReported();
    void extremeValuesAreHarmless_data();
    void extremeValuesAreHarmless();
    void mutatedEqualsFresh_data();
    void mutatedEqualsFresh();
};

void MetroCirclerateTest::cursorIsAColor()
{
    // A shape is a number, which would pass for a colour.
    QVERIFY((!takesAsCursor<MetroCirclerate, Qt::CursorShape>));
    QVERIFY((!takesAsCursor<MetroCirclerate, QCursor>));
    QVERIFY((takesAsCursor<QWidget, Qt::CursorShape>));
    QVERIFY((takesAsCursor<MetroCirclerate, QColor>));
    QVERIFY((takesAsCursor<MetroCirclerate, Qt::GlobalColor>));
    MetroCirclerate dial;
    dial.setCursor(Qt::red);
    dial.QWidget::setCursor(Qt::PointingHandCursor);
    QCOMPARE(dial.getCursor(), QColor(Qt::red));
    QCOMPARE(dial.QWidget::cursor().shape(), Qt::PointingHandCursor);
}

void MetroCirclerateTest::metaObject()
{
    const QMetaObject &meta = MetroCirclerate::staticMetaObject;
    QCOMPARE(meta.superClass()->className(), "QWidget");
    QCOMPARE(declaredProperties(meta),
             QStringList({QStringLiteral("value double"), QStringLiteral("paintFromZero bool"),
                          QStringLiteral("minValue double"), QStringLiteral("maxValue double"),
                          QStringLiteral("radius int"), QStringLiteral("arcSize int"),
                          QStringLiteral("minAngle int"), QStringLiteral("numTick int"),
                          QStringLiteral("tickness int"), QStringLiteral("formatStr QString"),
                          QStringLiteral("posStr QPoint"), QStringLiteral("label QString"),
                          QStringLiteral("posLabel QPoint"), QStringLiteral("background QColor"),
                          QStringLiteral("cursor QColor")}));
    QCOMPARE(declaredMethods(meta), QStringList());
    // By name, this class's cursor comes before QWidget's.
    const OpenDial dial(nullptr);
    QCOMPARE(dial.property("cursor").value<QColor>(), QColor(0, 174, 240));
}

void MetroCirclerateTest::defaults()
{
    const OpenDial dial(nullptr);
    QCOMPARE(dial.getValue(), 35.0);
    QCOMPARE(dial.getPaintFromZero(), false);
    QCOMPARE(dial.getMinValue(), 0.0);
    QCOMPARE(dial.getMaxValue(), 100.0);
    QCOMPARE(dial.getRadius(), 37);
    QCOMPARE(dial.getArcSize(), 200);
    QCOMPARE(dial.getMinAngle(), 200);
    QCOMPARE(dial.getNumTick(), 20);
    QCOMPARE(dial.getTickness(), 11);
    QCOMPARE(dial.getFormatStr(), QStringLiteral("%d%%"));
    QCOMPARE(dial.getPosStr(), QPoint(0, 0));
    QCOMPARE(dial.getLabel(), QStringLiteral("L?"));
    QCOMPARE(dial.getPosLabel(), QPoint(0, 0));
    QCOMPARE(dial.getBackground(), QColor(167, 167, 167));
    QCOMPARE(dial.getCursor(), QColor(0, 174, 240));
    QCOMPARE(dial.arcRect, QRect());
    // Inside a window, an unshown dial has the size of any new widget.
    QWidget window;
    QCOMPARE(OpenDial(&window).size(), QSize(100, 30));
}

void MetroCirclerateTest::angles()
{
    OpenDial dial(nullptr);
    QCOMPARE(dial.val2angle(0), 3200);
    QCOMPARE(dial.val2angle(100), 0);
    QCOMPARE(dial.val2angle(50), 1600);
    QCOMPARE(dial.val2angle(150), -1600);
    QCOMPARE(dial.val2angle(-50), 4800);
    // Truncated towards zero on both sides.
    QCOMPARE(dial.val2angle(99.99), 0);
    QCOMPARE(dial.val2angle(100.01), 0);
    QCOMPARE(dial.val2angle(100.05), -1);
    QCOMPARE(dial.val2angle(33.333), int(16.0 * (200 - 33.333 / 100.0 * 200)));
}

void MetroCirclerateTest::defaultGeometry()
{
    Stage<OpenDial> dial;
    QCOMPARE(dial->size(), QSize(76, 51));
    QCOMPARE(dial->arcRect, QRect(1, 1, 72, 72));
}

void MetroCirclerateTest::geometryOfEveryArc()
{
    // A resize event from nothing is answered at once, so the dials need not be shown.
    OpenDial dial(nullptr);
    for (const int radius : {2, 37, 50, 111, 1000}) {
        dial.setRadius(radius);
        for (int start = 0; start < 360; ++start) {
            dial.setMinAngle(start);
            for (int arc = 0; arc < 360; arc += radius == 37 || radius == 50 ? 1 : 7) {
                dial.setArcSize(arc);
                QResizeEvent event(QSize(0, 0), QSize());
                QCoreApplication::sendEvent(&dial, &event);
                const Geometry expected = expectedGeometry(radius, start, arc);
                if (dial.size() != expected.size || dial.arcRect != expected.circle) {
                    QFAIL(qPrintable(QStringLiteral("radius %1, %2 degrees from %3: %4 x %5")
                                         .arg(radius)
                                         .arg(arc)
                                         .arg(start)
                                         .arg(dial.width())
                                         .arg(dial.height())));
                }
            }
        }
    }
}

void MetroCirclerateTest::endsAreNeverRounded_data()
{
    QTest::addColumn<int>("start");
    QTest::addColumn<int>("arc");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QRect>("circle");
    // The true width and height of these two arcs are half a radius; in doubles a bit less.
    QTest::newRow("60 from 60") << 60 << 60 << QSize(26, 45) << QRect(-74, -5, 98, 98);
    QTest::newRow("36 from 234") << 234 << 36 << QSize(20, 26) << QRect(-1, -64, 98, 98);
}

void MetroCirclerateTest::endsAreNeverRounded()
{
    QFETCH(int, start);
    QFETCH(int, arc);
    OpenDial dial(nullptr);
    dial.setRadius(50);
    dial.setMinAngle(start);
    dial.setArcSize(arc);
    QResizeEvent event(QSize(0, 0), QSize());
    QCoreApplication::sendEvent(&dial, &event);
    QTEST(dial.size(), "size");
    QTEST(dial.arcRect, "circle");
}

void MetroCirclerateTest::arcsFillTheirBoxes_data()
{
    QTest::addColumn<int>("start");
    QTest::addColumn<int>("arc");
    QTest::newRow("default") << 200 << 200;
    QTest::newRow("upper right quarter") << 90 << 90;
    QTest::newRow("right half") << 90 << 180;
    QTest::newRow("lower left quarter") << 270 << 90;
    QTest::newRow("almost full") << 359 << 359;
    QTest::newRow("through the bottom") << 320 << 100;
    QTest::newRow("short") << 45 << 20;
}

void MetroCirclerateTest::arcsFillTheirBoxes()
{
    QFETCH(int, start);
    QFETCH(int, arc);
    Stage<OpenDial> dial;
    dial->setRadius(60);
    dial->setMinAngle(start);
    dial->setArcSize(arc);
    dial->setNumTick(1);
    dial->setTickness(255);
    dial->setLabel(QString());
    dial->setFormat(QString());
    deliverAll();
    // Without a mask the full pie shows; its outermost points lie about one pixel inside.
    imageOf(dial.widget);
    const QImage full = *dial->ImageBG;
    QRect ink;
    for (int y = 0; y < full.height(); ++y) {
        for (int x = 0; x < full.width(); ++x) {
            if (qAlpha(full.pixel(x, y)) > 100)
                ink |= QRect(x, y, 1, 1);
        }
    }
    const auto close = [](int is, int should) { return qAbs(is - should) <= 2; };
    // The pie includes the centre, which may lie beyond the arc's own box and is then cut off.
    QVERIFY2(ink.left() <= 2, qPrintable(QString::number(ink.left())));
    QVERIFY2(ink.top() <= 2, qPrintable(QString::number(ink.top())));
    QVERIFY(close(ink.right(), dial->width() - 1));
    QVERIFY(close(ink.bottom(), dial->height() - 1));
}

void MetroCirclerateTest::resizesEndAtTheOwnSize()
{
    Stage<OpenDial> dial;
    const QSize own(76, 51);
    QCOMPARE(dial->size(), own);
    // A resize away from the own size is compared with that size, and so left standing.
    dial->resize(500, 400);
    QCOMPARE(dial->size(), QSize(500, 400));
    QCOMPARE(dial->arcRect, QRect(1, 1, 72, 72));
    // Any further one ends at the own size, with one resize more nested in it.
    EventCounter events(dial.widget);
    dial->resize(300, 200);
    QCOMPARE(dial->size(), own);
    QCOMPARE(events.count(QEvent::Resize), 2);
    // The size 0 x 0 always does.
    dial->resize(0, 0);
    QCOMPARE(dial->size(), own);
    dial->resize(10, 10);
    dial->resize(0, 0);
    QCOMPARE(dial->size(), own);
}

void MetroCirclerateTest::insideALayout()
{
    QWidget window;
    auto *layout = new QHBoxLayout(&window);
    auto *dial = new OpenDial(&window);
    layout->addWidget(dial);
    window.resize(400, 300);
    window.show();
    deliverAll();
    QCOMPARE(dial->size(), QSize(76, 51));
    QCOMPARE(dial->arcRect, QRect(1, 1, 72, 72));
    // The platform cannot pass a layout's minimum size on to the window.
    takeWarnings();
}

void MetroCirclerateTest::look_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<bool>("fromZero");
    QTest::addColumn<double>("minimum");
    QTest::addColumn<double>("maximum");
    QTest::addColumn<int>("radius");
    QTest::addColumn<int>("start");
    QTest::addColumn<int>("arc");
    QTest::addColumn<int>("segments");
    QTest::addColumn<int>("thickness");
    const auto row = [](const char *name, double value, bool fromZero, double minimum,
                        double maximum, int radius, int start, int arc, int segments,
                        int thickness) {
        QTest::newRow(name) << value << fromZero << minimum << maximum << radius << start << arc
                            << segments << thickness;
    };
    row("default", 35, false, 0, 100, 37, 200, 200, 20, 11);
    row("empty", 0, false, 0, 100, 37, 200, 200, 20, 11);
    row("full", 100, false, 0, 100, 37, 200, 200, 20, 11);
    row("below the minimum", -5, false, 0, 100, 37, 200, 200, 20, 11);
    row("three quarters of a circle", 61.8, false, 0, 100, 60, 225, 270, 12, 14);
    row("a quarter", 210, false, 180, 260, 80, 180, 90, 8, 20);
    row("almost a circle", 42, false, 0, 60, 45, 359, 359, 60, 5);
    row("one segment", 42, false, 0, 60, 45, 200, 200, 1, 5);
    row("from zero, positive", 30, true, -50, 50, 37, 200, 200, 20, 11);
    row("from zero, negative", -20, true, -50, 50, 37, 200, 200, 20, 11);
    row("from zero, positive limits", 30, true, 10, 50, 37, 200, 200, 20, 11);
    row("from zero, negative limits", -30, true, -50, -10, 37, 200, 200, 20, 11);
    row("no span", 30, false, 0, 100, 37, 90, 0, 20, 11);
    row("smallest", 30, false, 0, 100, 2, 200, 200, 20, 2);
    row("thicker than the radius", 30, false, 0, 100, 20, 200, 200, 10, 60);
    row("large", 77.7, false, 0, 100, 200, 200, 200, 50, 40);
    row("taller than wide", 40, false, 0, 100, 60, 90, 180, 10, 10);
}

void MetroCirclerateTest::look()
{
    DialLook expected;
    QFETCH(double, value);
    QFETCH(bool, fromZero);
    QFETCH(double, minimum);
    QFETCH(double, maximum);
    QFETCH(int, radius);
    QFETCH(int, start);
    QFETCH(int, arc);
    QFETCH(int, segments);
    QFETCH(int, thickness);
    expected.value = value;
    expected.fromZero = fromZero;
    expected.minimum = minimum;
    expected.maximum = maximum;
    expected.radius = radius;
    expected.start = start;
    expected.arc = arc;
    expected.segments = segments;
    expected.thickness = thickness;
    expected.text = QString::number(int(value)) + QLatin1Char('%');
    Stage<OpenDial> dial;
    dial->setValue(value);
    dial->setPaintFromZero(fromZero);
    // In the order that the distance of the limits allows.
    dial->setMaxValue(qMax(maximum, 100.0));
    dial->setMinValue(minimum);
    dial->setMaxValue(maximum);
    dial->setRadius(radius);
    dial->setMinAngle(start);
    dial->setArcSize(arc);
    dial->setNumTick(segments);
    dial->setTickness(thickness);
    deliverAll();
    const Geometry geometry = expectedGeometry(radius, start, arc);
    QCOMPARE(dial->size(), geometry.size);
    COMPARE_IMAGES(imageOf(dial.widget), expected.draw(geometry.size, geometry.circle));
    dial->setEnabled(false);
    expected.ink = QApplication::palette().color(QPalette::Disabled, QPalette::WindowText);
    COMPARE_IMAGES(imageOf(dial.widget), expected.draw(geometry.size, geometry.circle));
}

void MetroCirclerateTest::overRange_data()
{
    QTest::addColumn<double>("maximum");
    QTest::addColumn<double>("value");
    QTest::addColumn<QColor>("color");
    const QColor orange(247, 148, 50);
    const QColor red(238, 28, 37);
    QTest::newRow("at the maximum") << 100.0 << 100.0 << QColor(0, 174, 240);
    QTest::newRow("just above") << 100.0 << 100.01 << orange;
    QTest::newRow("110") << 100.0 << 110.0 << orange;
    QTest::newRow("125") << 100.0 << 125.0 << orange;
    QTest::newRow("125.01") << 100.0 << 125.01 << red;
    QTest::newRow("1000") << 100.0 << 1000.0 << red;
    // The limit is the maximum times 125, then divided by 100: here not quite its 1.25 times.
    QTest::newRow("last bit of the limit") << 16.1 << 16.1 * 125.0 / 100.0 << orange;
    QTest::newRow("negative maximum") << -10.0 << -9.0 << red;
}

void MetroCirclerateTest::overRange()
{
    QFETCH(double, maximum);
    QFETCH(double, value);
    QFETCH(QColor, color);
    DialLook expected;
    expected.minimum = -100;
    expected.maximum = maximum;
    expected.value = value;
    expected.fill = color;
    expected.text = QString::number(int(value)) + QLatin1Char('%');
    Stage<OpenDial> dial;
    dial->setMinValue(-100);
    dial->setMaxValue(maximum);
    dial->setValue(value);
    // New limits keep the mask, whose gaps may then lie a sixteenth of a degree beside their
    // places.
    sendPlain(dial.widget, QEvent::PolishRequest);
    COMPARE_IMAGES(imageOf(dial.widget), expected.draw(QSize(76, 51), QRect(1, 1, 72, 72)));
}

void MetroCirclerateTest::texts_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("label");
    const auto row = [](const char *name, const char *format, double value, const char *text,
                        const char *label) {
        QTest::newRow(name) << QString::fromUtf8(format) << value << QString::fromUtf8(text)
                            << QString::fromUtf8(label);
    };
    row("one digit and a unit", "%.1f V", 12.34, "12.3 V", "Input");
    row("truncated", "%d%%", 99.9, "99%", "Load");
    row("negative", "%d", -7.9, "-7", "");
    row("not Latin-1", "%.0f \xE2\x82\xAC", 5, "5 ?", "Вход");
    row("no conversion", "no data", 5, "no data", "Input");
    row("unfit", "%s %n", 5, "%s %n", "Input");
    row("empty", "", 5, "", "A label that is much wider than the dial");
}

void MetroCirclerateTest::texts()
{
    QFETCH(QString, format);
    QFETCH(double, value);
    DialLook expected;
    expected.value = value;
    QFETCH(QString, text);
    QFETCH(QString, label);
    expected.text = text;
    expected.label = label;
    expected.labelOffset = QPoint(3, -2);
    expected.textOffset = QPoint(-4, 5);
    Stage<OpenDial> dial;
    dial->setProperty("value", value);
    dial->setProperty("formatStr", format);
    dial->setProperty("label", label);
    dial->setProperty("posLabel", expected.labelOffset);
    dial->setProperty("posStr", expected.textOffset);
    COMPARE_IMAGES(imageOf(dial.widget), expected.draw(QSize(76, 51), QRect(1, 1, 72, 72)));
}

void MetroCirclerateTest::pixelSizedFont()
{
    Stage<OpenDial> dial;
    QFont font = QApplication::font();
    font.setPixelSize(14);
    dial->setFont(font);
    DialLook expected;
    expected.font = font;
    COMPARE_IMAGES(imageOf(dial.widget), expected.draw(QSize(76, 51), QRect(1, 1, 72, 72)));
    // Qt refuses the label's point size and says so.
    for (const QString &warning : takeWarnings())
        QVERIFY2(warning.contains(QStringLiteral("Point size <= 0")), qPrintable(warning));
}

void MetroCirclerateTest::labelIsSmallAndNeverBold_data()
{
    QTest::addColumn<int>("points");
    for (const int points : {2, 9, 14, 19, 37})
        QTest::addRow("%d points", points) << points;
}

void MetroCirclerateTest::labelIsSmallAndNeverBold()
{
    QFETCH(int, points);
    Stage<OpenDial> dial;
    DialLook expected;
    expected.font = QFont(QStringLiteral("DejaVu Sans"), points, QFont::Bold, true);
    dial->setFont(expected.font);
    COMPARE_IMAGES(imageOf(dial.widget), expected.draw(QSize(76, 51), QRect(1, 1, 72, 72)));
}

void MetroCirclerateTest::palette()
{
    Stage<OpenDial> dial;
    QPalette palette = dial->palette();
    palette.setColor(QPalette::WindowText, Qt::magenta);
    QCOMPARE(probe(dial.widget).effectOf([&] { dial->setPalette(palette); }),
             QStringLiteral("updates"));
    DialLook expected;
    expected.ink = Qt::magenta;
    COMPARE_IMAGES(imageOf(dial.widget), expected.draw(QSize(76, 51), QRect(1, 1, 72, 72)));
}

void MetroCirclerateTest::effects()
{
    Stage<OpenDial> dial;
    CacheProbe caches = probe(dial.widget);
    const QString nothing = QStringLiteral("nothing");
    const auto check = [&](const char *property, const QVariant &value, const char *effect) {
        QCOMPARE(caches.effectOf(property, value), QLatin1String(effect));
        QCOMPARE(dial->property(property), value);
        QCOMPARE(caches.effectOf(property, value), nothing);
    };
    check("value", 36.0, "drops Image");
    check("paintFromZero", true, "drops Image");
    check("minValue", 1.0, "drops Image");
    check("maxValue", 99.0, "drops Image");
    check("cursor", QColor(Qt::red), "drops Image");
    check("formatStr", QStringLiteral("%u"), "drops Image");
    check("label", QStringLiteral("L"), "drops Image");
    check("posStr", QPoint(1, 2), "drops Image");
    check("posLabel", QPoint(1, 2), "drops Image");
    check("background", QColor(Qt::red), "drops ImageBG");
    check("numTick", 19, "drops ImageFG");
    check("tickness", 12, "drops ImageFG");
    const QString all = QStringLiteral("drops Image,ImageBG,ImageFG");
    QCOMPARE(caches.effectOf([&] { dial->setEnabled(false); }), all);
    QCOMPARE(caches.effectOf([&] { delete new QObject(dial.widget); }), all);
    QCOMPARE(caches.effectOf(QEvent::PolishRequest), all);
    QCOMPARE(caches.effectOf(QEvent::UpdateRequest), all);
    QCOMPARE(caches.effectOf([&] { dial->resize(0, 0); }), all);
    QCOMPARE(caches.effectOf([&] { dial->resize(200, 200); }), QStringLiteral("updates"));
    QCOMPARE(caches.effectOf([&] { dial->resize(300, 200); }), all);
    QCOMPARE(caches.effectOf([&] { new QObject(dial.widget); }), nothing);
    QCOMPARE(caches.effectOf(QEvent::Enter), nothing);
    QCOMPARE(caches.effectOf([&] {
        dial->MetroStyle::setState({4, 5});
    }),
             QStringLiteral("posts, drops Image,ImageBG,ImageFG"));
}

void MetroCirclerateTest::geometrySettersDropAll_data()
{
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<int>("value");
    QTest::newRow("radius") << QByteArray("radius") << 50;
    QTest::newRow("arcSize") << QByteArray("arcSize") << 100;
    QTest::newRow("minAngle") << QByteArray("minAngle") << 180;
    // The same size, and still all is dropped.
    QTest::newRow("minAngle, equal size") << QByteArray("minAngle") << 340;
    QTest::newRow("arcSize, equal size") << QByteArray("arcSize") << 210;
}

void MetroCirclerateTest::geometrySettersDropAll()
{
    QFETCH(QByteArray, property);
    QFETCH(int, value);
    Stage<OpenDial> dial;
    CacheProbe caches = probe(dial.widget);
    QCOMPARE(caches.effectOf(property, value), QStringLiteral("drops Image,ImageBG,ImageFG"));
    QCOMPARE(dial->size(),
             expectedGeometry(dial->getRadius(), dial->getMinAngle(), dial->getArcSize()).size);
    QCOMPARE(caches.effectOf(property, value), QStringLiteral("nothing"));
}

void MetroCirclerateTest::radiusOfAnEqualSize()
{
    // An arc without a span has one size for all radii.
    Stage<OpenDial> dial;
    dial->setArcSize(0);
    deliverAll();
    QCOMPARE(dial->size(), QSize(2, 2));
    QCOMPARE(probe(dial.widget).effectOf("radius", 50),
             QStringLiteral("drops Image,ImageBG,ImageFG"));
    QCOMPARE(dial->arcRect.size(), QSize(98, 98));
}

void MetroCirclerateTest::geometrySettersWithinSizeLimits_data()
{
    QTest::addColumn<QSize>("minimum");
    QTest::addColumn<QSize>("maximum");
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<int>("value");
    const QSize free(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
    const auto rows = [](const char *name, QSize minimum, QSize maximum) {
        const std::pair<const char *, int> changes[] = {
            {"radius", 50},   {"radius", 20},   {"arcSize", 100},
            {"arcSize", 210}, {"minAngle", 90}, {"minAngle", 340},
        };
        for (const auto &[property, value] : changes) {
            QTest::addRow("%s, %s %d", name, property, value)
                << minimum << maximum << QByteArray(property) << value;
        }
    };
    rows("fixed at its own size", {76, 51}, {76, 51});
    rows("fixed at a larger size", {150, 120}, {150, 120});
    rows("fixed at a smaller size", {40, 30}, {40, 30});
    rows("with its own size as the minimum", {76, 51}, free);
    rows("with a small minimum", {10, 10}, free);
    rows("with a minimum width", {100, 0}, free);
    rows("with a minimum height", {0, 80}, free);
    rows("with a maximum", {0, 0}, {60, 60});
}

void MetroCirclerateTest::geometrySettersWithinSizeLimits()
{
    QFETCH(QSize, minimum);
    QFETCH(QSize, maximum);
    QFETCH(QByteArray, property);
    QFETCH(int, value);
    Stage<OpenDial> dial;
    dial->setMinimumSize(minimum);
    dial->setMaximumSize(maximum);
    dial->setLabel(QString());
    dial->setFormat(QString());
    deliverAll();
    CacheProbe caches = probe(dial.widget);
    QCOMPARE(caches.effectOf(property, value), QStringLiteral("drops Image,ImageBG,ImageFG"));

    DialLook look;
    look.label.clear();
    look.text.clear();
    look.radius = dial->getRadius();
    look.start = dial->getMinAngle();
    look.arc = dial->getArcSize();
    const Geometry expected = expectedGeometry(look.radius, look.start, look.arc);
    QCOMPARE(dial->size(), expected.size.expandedTo(minimum).boundedTo(maximum));
    COMPARE_IMAGES(imageOf(dial.widget), look.draw(dial->size(), expected.circle));
    dial->setValue(80);
    look.value = 80;
    deliverAll();
    COMPARE_IMAGES(imageOf(dial.widget), look.draw(dial->size(), expected.circle));
}

void MetroCirclerateTest::refusedValues_data()
{
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QVariant>("value");
    const auto row = [](const char *property, const QVariant &value) {
        QTest::addRow("%s %s", property, qPrintable(value.toString()))
            << QByteArray(property) << value;
    };
    row("radius", 1);
    row("radius", 0);
    row("radius", 65536);
    row("radius", 65537);
    row("tickness", 1);
    row("tickness", 256);
    row("tickness", 257);
    row("numTick", 0);
    row("numTick", 256);
    row("numTick", -256);
    row("arcSize", 360);
    row("arcSize", -1);
    row("minAngle", 360);
    row("minAngle", 400);
    row("minValue", 99.5);
    row("minValue", 100.0);
    row("minValue", std::numeric_limits<double>::infinity());
    row("minValue", std::nan(""));
    row("maxValue", 0.5);
    row("maxValue", -100.0);
    row("maxValue", std::nan(""));
}

void MetroCirclerateTest::refusedValues()
{
    QFETCH(QByteArray, property);
    QFETCH(QVariant, value);
    Stage<OpenDial> dial;
    const QVariant before = dial->property(property);
    QCOMPARE(probe(dial.widget).effectOf(property, value), QStringLiteral("nothing"));
    QCOMPARE(dial->property(property), before);
    QCOMPARE(dial->size(), QSize(76, 51));
}

void MetroCirclerateTest::narrowedValues_data()
{
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<int>("written");
    QTest::addColumn<int>("kept");
    QTest::newRow("radius") << QByteArray("radius") << 65538 << 2;
    QTest::newRow("numTick") << QByteArray("numTick") << 257 << 1;
    QTest::newRow("numTick, negative") << QByteArray("numTick") << -1 << 255;
    QTest::newRow("tickness") << QByteArray("tickness") << 258 << 2;
    QTest::newRow("arcSize") << QByteArray("arcSize") << 65536 << 0;
    QTest::newRow("arcSize, highest") << QByteArray("arcSize") << 359 << 359;
    QTest::newRow("minAngle") << QByteArray("minAngle") << 65536 + 90 << 90;
}

void MetroCirclerateTest::narrowedValues()
{
    QFETCH(QByteArray, property);
    QFETCH(int, written);
    QFETCH(int, kept);
    Stage<OpenDial> dial;
    dial->setProperty(property, written);
    QCOMPARE(dial->property(property).toInt(), kept);
    // What narrows to the present value is no change.
    QCOMPARE(probe(dial.widget).effectOf(property, kept + 0x10000), QStringLiteral("nothing"));
}

void MetroCirclerateTest::limitsKeepTheirDistance()
{
    OpenDial dial(nullptr);
    dial.setMinValue(99.0);
    QCOMPARE(dial.getMinValue(), 99.0);
    dial.setMaxValue(99.999);
    QCOMPARE(dial.getMaxValue(), 100.0);
    dial.setMaxValue(1000.0);
    dial.setMinValue(999.0);
    QCOMPARE(dial.getMinValue(), 999.0);
    dial.setMinValue(5.0);
    dial.setMaxValue(6.0);
    QCOMPARE(dial.getMaxValue(), 6.0);
}

void MetroCirclerateTest::hugeLimitsMayBeEqual()
{
    // Where a difference of 1.0 is lost in the last bit, equal limits pass for limits apart.
    Stage<OpenDial> dial;
    dial->setMaxValue(1e300);
    dial->setMinValue(1e300);
    QCOMPARE(dial->getMinValue(), dial->getMaxValue());
    QCOMPARE(dial->val2angle(1e300), 0);
    QCOMPARE(dial->val2angle(0), std::numeric_limits<int>::max());
    QCOMPARE(dial->val2angle(std::numeric_limits<double>::max()), std::numeric_limits<int>::min());
    for (const double value : {0.0, 1e300, 1e308}) {
        dial->setValue(value);
        dial->resize(0, 0);
        imageOf(dial.widget);
    }
}

void MetroCirclerateTest::becomesIdle()
{
    Stage<OpenDial> dial;
    EventCounter events(dial.widget);
    deliverAll();
    QCOMPARE(events.count(QEvent::Paint), 0);
    dial->setValue(99);
    dial->setNumTick(10);
    deliverAll();
    QCOMPARE(events.count(QEvent::Paint), 1);
    dial->setRadius(50);
    deliverAll();
    events.reset();
    deliverAll();
    QCOMPARE(events.count(QEvent::Paint), 0);
}

void MetroCirclerateTest::fontChangesDropNothing()
{
    Stage<OpenDial> dial;
    const QFont font(QStringLiteral("DejaVu Sans"), 14);
    QCOMPARE(probe(dial.widget).effectOf([&] { dial->setFont(font); }), QStringLiteral("updates"));
    DialLook expected;
    expected.font = font;
    COMPARE_IMAGES(imageOf(dial.widget), expected.draw(QSize(76, 51), QRect(1, 1, 72, 72)));
}

void MetroCirclerateTest::nullImagesAreReported()
{
    OpenDial dial(nullptr);
    dial.setObjectName(QStringLiteral("quadrante"));
    dial.setRadius(40);
    QCOMPARE(dial.size(), QSize(0, 0));
    const auto line = [](const char *function, const char *image) {
        return ErrorLine{
            QStringLiteral("KivWidgets/metrocirclerate.cpp"), QLatin1String(function),
            QStringLiteral("Nel controllo quadrante %1 e' NULL").arg(QLatin1String(image))};
    };
    sendPaint(&dial);
    QCOMPARE(takeErrorLines(),
             QList<ErrorLine>({line("paintImageFG", "ImageFG"), line("paintImageBG", "ImageBG"),
                               line("paintImage", "Image")}));
    sendPaint(&dial);
    QCOMPARE(takeErrorLines(), QList<ErrorLine>());
    dial.setNumTick(3);
    sendPaint(&dial);
    QCOMPARE(takeErrorLines(), QList<ErrorLine>({line("paintImageFG", "ImageFG")}));
    takeWarnings();
}

void MetroCirclerateTest::extremeValuesAreHarmless_data()
{
    QTest::addColumn<double>("number");
    QTest::newRow("no number") << std::nan("");
    QTest::newRow("infinity") << std::numeric_limits<double>::infinity();
    QTest::newRow("negative infinity") << -std::numeric_limits<double>::infinity();
    QTest::newRow("largest") << std::numeric_limits<double>::max();
    QTest::newRow("lowest") << std::numeric_limits<double>::lowest();
    QTest::newRow("smallest") << std::numeric_limits<double>::denorm_min();
}

void MetroCirclerateTest::extremeValuesAreHarmless()
{
    QFETCH(double, number);
    Stage<OpenDial> dial;
    for (const char *property : {"value", "minValue", "maxValue"}) {
        for (const bool fromZero : {false, true}) {
            dial->setPaintFromZero(fromZero);
            const QVariant before = dial->property(property);
            dial->setProperty(property, number);
            imageOf(dial.widget);
            dial->val2angle(number);
            dial->resize(10, 10);
            deliverAll();
            dial->setProperty(property, before);
        }
    }
    dial->setPaintFromZero(false);
    dial->setMaxValue(100);
    dial->setMinValue(0);
    dial->resize(0, 0);
    deliverAll();
    COMPARE_IMAGES(imageOf(dial.widget), DialLook().draw(QSize(76, 51), QRect(1, 1, 72, 72)));
}

void MetroCirclerateTest::mutatedEqualsFresh_data()
{
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QVariant>("value");
    const auto row = [](const char *property, const QVariant &value) {
        QTest::newRow(property) << QByteArray(property) << value;
    };
    row("value", -30.0);
    row("paintFromZero", true);
    row("minValue", -100.0);
    row("maxValue", 200.0);
    row("radius", 50);
    row("arcSize", 120);
    row("minAngle", 170);
    row("numTick", 7);
    row("tickness", 20);
    row("formatStr", QStringLiteral("%.2f"));
    row("posStr", QPoint(5, 5));
    row("label", QStringLiteral("Load"));
    row("posLabel", QPoint(5, 5));
    row("background", QColor(Qt::yellow));
    row("cursor", QColor(Qt::green));
    row("enabled", false);
}

void MetroCirclerateTest::mutatedEqualsFresh()
{
    QFETCH(QByteArray, property);
    QFETCH(QVariant, value);
    const auto configure = [](OpenDial *dial) { dial->setMinValue(-50); };
    QCOMPARE(freshnessProblem<OpenDial>(configure, property, value), QString());
}

KIV_LAYOUT(MetroCirclerate, 0, KIV_BASE(QWidget), KIV_BASE(MetroStyle), KIV_FIELD(value),
           KIV_FIELD(paintFromZero), KIV_FIELD(formatStr), KIV_FIELD(posStr), KIV_FIELD(numTick),
           KIV_FIELD(tickness), KIV_FIELD(radius), KIV_FIELD(minValue), KIV_FIELD(maxValue),
           KIV_FIELD(arcSize), KIV_FIELD(minAngle), KIV_FIELD(label), KIV_FIELD(posLabel),
           KIV_FIELD(cursor), KIV_FIELD(background), KIV_FIELD(arcRect), KIV_FIELD(Image),
           KIV_FIELD(ImageBG), KIV_FIELD(ImageFG));

void MetroCirclerateTest::layout()
{
    QCOMPARE(LayoutMetroCirclerate::problem(), QString());
}

KIV_TEST_MAIN(MetroCirclerateTest)

#include "tst_metrocirclerate.moc"

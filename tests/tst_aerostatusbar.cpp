// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "aerostatusbar.h"

#include "cacheprobe.h"
#include "glasspanel.h"
#include "images.h"
#include "layout.h"
#include "testmain.h"

namespace {

class OpenStrip : public AeroStatusbar
{
public:
    using AeroStatusbar::AeroStatusbar;
    using AeroStatusbar::image;
};

CacheProbe probe(OpenStrip *strip)
{
    return CacheProbe(strip, {{"image", &strip->image}});
}

QImage stripImage(QSize size, const GlassPanel &panel)
{
    return faded(drawnImage(size, [&](QPainter *painter) { panel.draw(painter, size); }),
                 panel.opacity);
}

} // namespace

class AeroStatusbarTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void metaObject();
    void layout();
    void defaults();
    void looks_data();
    void looks();
    void noFrame();
    void effects();
    void nullImageIsReported();
};

void AeroStatusbarTest::metaObject()
{
    const QMetaObject &meta = AeroStatusbar::staticMetaObject;
    QCOMPARE(meta.superClass()->className(), "QFrame");
    QCOMPARE(declaredProperties(meta),
             QStringList({QStringLiteral("color QColor"), QStringLiteral("shadow QColor"),
                          QStringLiteral("colorPen QColor"), QStringLiteral("widthPen int"),
                          QStringLiteral("opacity double"), QStringLiteral("roundness int"),
                          QStringLiteral("colorText QColor"), QStringLiteral("bold bool")}));
    QCOMPARE(declaredMethods(meta), QStringList());
}

void AeroStatusbarTest::defaults()
{
    const AeroStatusbar strip(nullptr);
    QCOMPARE(strip.property("color").value<QColor>(), QColor(Qt::gray));
    QCOMPARE(strip.property("shadow").value<QColor>(), QColor(Qt::black));
    QCOMPARE(strip.property("colorPen").value<QColor>(), QColor(Qt::black));
    QCOMPARE(strip.property("widthPen").toInt(), 2);
    QCOMPARE(strip.property("opacity").toDouble(), 1.0);
    QCOMPARE(strip.property("roundness").toInt(), 25);
    QVERIFY(!strip.property("colorText").value<QColor>().isValid());
    QCOMPARE(strip.property("bold").toBool(), false);
}

void AeroStatusbarTest::looks_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<double>("opacity");
    QTest::newRow("usual") << QSize(400, 36) << 1.0;
    QTest::newRow("faint") << QSize(400, 36) << 0.4;
    QTest::newRow("one pixel") << QSize(1, 1) << 1.0;
    QTest::newRow("odd") << QSize(101, 33) << 1.0;
    QTest::newRow("tall") << QSize(30, 200) << 0.9;
    QTest::newRow("large") << QSize(800, 480) << 1.0;
}

void AeroStatusbarTest::looks()
{
    GlassPanel panel;
    QFETCH(QSize, size);
    QFETCH(double, opacity);
    panel.opacity = opacity;
    panel.color = QColor(60, 80, 90);
    panel.shadow = QColor(20, 30, 120);
    panel.colorPen = QColor(200, 10, 10);
    panel.widthPen = 3;
    panel.roundness = 60;
    Stage<OpenStrip> strip(size);
    strip->setColor(panel.color);
    strip->setShadow(panel.shadow);
    strip->setColorPen(panel.colorPen);
    strip->setWidthPen(panel.widthPen);
    strip->setRoundness(panel.roundness);
    strip->setOpacity(opacity);
    deliverAll();
    COMPARE_IMAGES(imageOf(strip.widget), stripImage(size, panel));
    strip->setEnabled(false);
    COMPARE_IMAGES(imageOf(strip.widget), stripImage(size, panel.disabled()));
}

void AeroStatusbarTest::noFrame()
{
    Stage<OpenStrip> strip(QSize(100, 40));
    strip->setFrameStyle(int(QFrame::Box) | QFrame::Raised);
    strip->setLineWidth(5);
    COMPARE_IMAGES(imageOf(strip.widget), stripImage(QSize(100, 40), GlassPanel()));
}

void AeroStatusbarTest::effects()
{
    Stage<OpenStrip> strip;
    CacheProbe caches = probe(strip.widget);
    const QString drops = QStringLiteral("drops image");
    const QString posts = QStringLiteral("posts, drops image");
    const QString nothing = QStringLiteral("nothing");
    const auto check = [&](const char *property, const QVariant &value, const QString &effect) {
        QCOMPARE(caches.effectOf(property, value), effect);
        QCOMPARE(strip->property(property), value);
        QCOMPARE(caches.effectOf(property, value), nothing);
    };
    check("color", QColor(Qt::red), posts);
    check("shadow", QColor(Qt::red), posts);
    check("colorPen", QColor(Qt::red), posts);
    check("widthPen", 4, posts);
    check("opacity", 0.5, posts);
    check("roundness", 50, posts);
    // Both rebuild an identical panel.
    const QImage before = imageOf(strip.widget);
    check("colorText", QColor(Qt::red), drops);
    check("bold", true, drops);
    COMPARE_IMAGES(imageOf(strip.widget), before);
    QCOMPARE(caches.effectOf([&] { strip->resize(90, 30); }), drops);
    QCOMPARE(caches.effectOf([&] { strip->setEnabled(false); }), drops);
    QCOMPARE(caches.effectOf(QEvent::PolishRequest), drops);
    QCOMPARE(caches.effectOf(QEvent::UpdateRequest), drops);
    // A child that comes does not rebuild the panel, one that goes does.
    QObject *child = nullptr;
    QCOMPARE(caches.effectOf([&] { child = new QObject(strip.widget); }), nothing);
    QCOMPARE(caches.effectOf([&] { delete child; }), drops);
    QCOMPARE(caches.effectOf(QEvent::Enter), nothing);
}

void AeroStatusbarTest::nullImageIsReported()
{
    OpenStrip strip(nullptr);
    strip.setObjectName(QStringLiteral("barra"));
    strip.resize(0, 0);
    const ErrorLine line{QStringLiteral("KivWidgets/aerostatusbar.cpp"),
                         QStringLiteral("paintImage"),
                         QStringLiteral("Nel controllo barra Image e' NULL")};
    sendPaint(&strip);
    QCOMPARE(takeErrorLines(), QList<ErrorLine>({line}));
    sendPaint(&strip);
    QCOMPARE(takeErrorLines(), QList<ErrorLine>());
    strip.setTextBold(true);
    sendPaint(&strip);
    QCOMPARE(takeErrorLines(), QList<ErrorLine>({line}));
    takeWarnings();
}

KIV_LAYOUT(AeroStatusbar, 0, KIV_BASE(QFrame), KIV_BASE(AeroStyle), KIV_FIELD(text),
           KIV_FIELD(colorText), KIV_FIELD(bold), KIV_FIELD(image));

void AeroStatusbarTest::layout()
{
    QCOMPARE(LayoutAeroStatusbar::problem(), QString());
}

KIV_TEST_MAIN(AeroStatusbarTest)

#include "tst_aerostatusbar.moc"

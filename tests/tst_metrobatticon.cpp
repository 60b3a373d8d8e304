// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "metrobatticon.h"

#include "cacheprobe.h"
#include "icons.h"
#include "images.h"
#include "layout.h"
#include "testmain.h"

#include <QtGui/QPainter>

namespace {

class OpenBattery : public MetroBattIcon
{
public:
    using MetroBattIcon::image;
    using MetroBattIcon::MetroBattIcon;
    using MetroBattTemplate::background;
    using MetroBattTemplate::initialized;
};

CacheProbe probe(OpenBattery *battery)
{
    return CacheProbe(battery, {{"image", &battery->image}});
}

/// A battery image, washed where disabled, with an icon of 16 x 16 pixels or none over its
/// middle.
QImage batteryImage(const char *name, bool enabled = true, const QColor &icon = QColor())
{
    return drawnImage(QSize(72, 72), [&](QPainter *painter) {
        painter->drawPixmap(
            0, 0, QPixmap(QStringLiteral(":/Images/batt_%1.png").arg(QLatin1String(name))));
        if (!enabled) {
            painter->setCompositionMode(QPainter::CompositionMode_HardLight);
            painter->fillRect(1, 1, 70, 70, QColor(Qt::lightGray));
            painter->setCompositionMode(QPainter::CompositionMode_SourceOver);
        }
        if (icon.isValid())
            painter->drawPixmap(28, 28, plainPixmap(QSize(16, 16), icon));
    });
}

} // namespace

class MetroBattIconTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void limitsHold();
    void initTestCase();
    void metaObject();
    void layout();
    void defaults();
    void states_data();
    void states();
    void imagesAreLoadedOnce();
    void keepsItsSize_data();
    void keepsItsSize();
    void iconLooks_data();
    void iconLooks();
    void followsTheFirstIconSize();
    void effects();
    void sameColourStillPosts();
    void missingImageIsReported();
    void becomesIdleWithAnIconWithoutASize();
    void iconSizeOfTheHost();
    void nullImageIsReported();
};

void MetroBattIconTest::limitsHold()
{
    Stage<MetroBattIcon> large;
    large->setMinimumSize(100, 90);
    Stage<MetroBattIcon> small;
    small->setFixedSize(40, 30);
    deliverAll();
    QCOMPARE(large->size(), QSize(100, 90));
    QCOMPARE(small->size(), QSize(40, 30));
}

void MetroBattIconTest::initTestCase()
{
    // Nothing is loaded before the first battery.
    QVERIFY(!OpenBattery::initialized);
    for (const QPixmap *image : OpenBattery::background)
        QVERIFY(!image);
}

void MetroBattIconTest::metaObject()
{
    const QMetaObject &meta = MetroBattIcon::staticMetaObject;
    QCOMPARE(meta.superClass()->className(), "QAbstractButton");
    QCOMPARE(declaredProperties(meta), QStringList());
    QCOMPARE(declaredMethods(meta), QStringList());
}

void MetroBattIconTest::defaults()
{
    OpenBattery battery(nullptr);
    QCOMPARE(battery.size(), QSize(72, 72));
    QCOMPARE(battery.getBackGroundSize(), QSize(72, 72));
    QVERIFY(OpenBattery::initialized);
}

void MetroBattIconTest::states_data()
{
    QTest::addColumn<int>("alarm");
    QTest::addColumn<int>("element");
    QTest::addColumn<QByteArray>("image");
    QTest::newRow("new") << 1 << 0 << QByteArray("COMMLOST");
    for (int element = 1; element <= 5; ++element)
        QTest::addRow("in order, %d", element) << 1 << element << QByteArray("ok");
    QTest::newRow("on battery") << 1 << 6 << QByteArray("warning");
    QTest::newRow("on bypass") << 1 << 7 << QByteArray("onBypass");
    QTest::newRow("communication lost") << 0 << 5 << QByteArray("COMMLOST");
    QTest::newRow("warning") << 2 << 5 << QByteArray("warning");
    QTest::newRow("anomaly") << 3 << 7 << QByteArray("warning");
    QTest::newRow("fault") << 4 << 5 << QByteArray("fault");
    QTest::newRow("locked") << 5 << 5 << QByteArray("fault");
    QTest::newRow("unforeseen element state") << 1 << 9 << QByteArray("none");
    QTest::newRow("unforeseen alarm state") << 6 << 1 << QByteArray("none");
}

void MetroBattIconTest::states()
{
    QFETCH(int, alarm);
    QFETCH(int, element);
    QFETCH(QByteArray, image);
    Stage<OpenBattery> battery;
    battery->setState({quint8(alarm), quint8(element)});
    deliverAll();
    COMPARE_IMAGES(imageOf(battery.widget), batteryImage(image));
    battery->setEnabled(false);
    COMPARE_IMAGES(imageOf(battery.widget), batteryImage(image, false));
    const QList<ErrorLine> lines = takeErrorLines();
    QCOMPARE(!lines.isEmpty(), image == "none");
    for (const ErrorLine &line : lines)
        QCOMPARE(line.function, QStringLiteral("getColorIdx"));
}

void MetroBattIconTest::imagesAreLoadedOnce()
{
    const OpenBattery first(nullptr);
    QPixmap *loaded[7];
    std::copy(std::begin(OpenBattery::background), std::end(OpenBattery::background), loaded);
    for (const QPixmap *image : loaded)
        QCOMPARE(image->size(), QSize(72, 72));
    // The two warnings are two pixmaps of one image.
    QVERIFY(loaded[2] != loaded[5]);
    COMPARE_IMAGES(loaded[2]->toImage(), loaded[5]->toImage());
    {
        const OpenBattery second(nullptr);
    }
    const OpenBattery third(nullptr);
    for (int i = 0; i < 7; ++i)
        QCOMPARE(OpenBattery::background[i], loaded[i]);
}

void MetroBattIconTest::keepsItsSize_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("larger") << QSize(300, 200);
    QTest::newRow("smaller") << QSize(10, 10);
    QTest::newRow("nothing") << QSize(0, 0);
}

void MetroBattIconTest::keepsItsSize()
{
    QFETCH(QSize, size);
    Stage<OpenBattery> battery;
    QCOMPARE(battery->size(), QSize(72, 72));
    QCOMPARE(probe(battery.widget)
                 .effectOf([&] { battery->resize(size); })
                 .contains(QStringLiteral("drops")),
             false);
    QCOMPARE(battery->size(), QSize(72, 72));
    QResizeEvent event(size, QSize(72, 72));
    QVERIFY(QCoreApplication::sendEvent(battery.widget, &event));
}

void MetroBattIconTest::iconLooks_data()
{
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<bool>("checked");
    QTest::newRow("normal") << true << false;
    QTest::newRow("checked") << true << true;
    QTest::newRow("disabled") << false << false;
    QTest::newRow("disabled and checked") << false << true;
}

void MetroBattIconTest::iconLooks()
{
    QFETCH(bool, enabled);
    QFETCH(bool, checked);
    Stage<OpenBattery> battery;
    battery->setState({1, 5});
    battery->setIcon(telltaleIcon(QSize(16, 16)));
    battery->setCheckable(true);
    battery->setChecked(checked);
    battery->setEnabled(enabled);
    deliverAll();
    const QColor icon =
        telltaleColor(enabled ? QIcon::Normal : QIcon::Disabled, checked ? QIcon::On : QIcon::Off);
    COMPARE_IMAGES(imageOf(battery.widget), batteryImage("ok", enabled, icon));
    // There is no hover state.
    QCOMPARE(probe(battery.widget).effectOf(QEvent::Enter), QStringLiteral("nothing"));
    COMPARE_IMAGES(imageOf(battery.widget), batteryImage("ok", enabled, icon));
}

void MetroBattIconTest::followsTheFirstIconSize()
{
    Stage<OpenBattery> battery;
    battery->setIcon(telltaleIcon(QSize(40, 30)));
    deliverAll();
    QCOMPARE(battery->iconSize(), QSize(40, 30));
    QCOMPARE(battery->size(), QSize(72, 72));
    const QImage image = imageOf(battery.widget);
    QCOMPARE(image.pixelColor(16, 21), QColor(Qt::red));
    QCOMPARE(image.pixelColor(55, 50), QColor(Qt::red));
    QVERIFY(image.pixelColor(15, 21) != QColor(Qt::red));
    QVERIFY(image.pixelColor(56, 50) != QColor(Qt::red));
    EventCounter events(battery.widget);
    deliverAll();
    QCOMPARE(events.count(QEvent::Paint), 0);
    // An icon as large as the battery or larger does not show.
    battery->setIcon(telltaleIcon(QSize(72, 72)));
    deliverAll();
    COMPARE_IMAGES(imageOf(battery.widget), batteryImage("COMMLOST"));
}

void MetroBattIconTest::effects()
{
    Stage<OpenBattery> battery;
    CacheProbe caches = probe(battery.widget);
    const QString drops = QStringLiteral("drops image");
    const QString posts = QStringLiteral("posts, drops image");
    const QString nothing = QStringLiteral("nothing");
    QCOMPARE(caches.effectOf([&] { battery->setState({1, 5}); }), posts);
    QCOMPARE(caches.effectOf([&] { battery->setState({1, 5}); }), nothing);
    QCOMPARE(caches.effectOf([&] { battery->setIcon(QIcon()); }), posts);
    QCOMPARE(caches.effectOf([&] { battery->setEnabled(false); }), drops);
    QCOMPARE(caches.effectOf([&] { delete new QObject(battery.widget); }), drops);
    QCOMPARE(caches.effectOf(QEvent::PolishRequest), drops);
    QCOMPARE(caches.effectOf(QEvent::UpdateRequest), drops);
    QCOMPARE(caches.effectOf(QEvent::Leave), nothing);
    QCOMPARE(caches.effectOf([&] { battery->setChecked(true); }), nothing);
    QCOMPARE(caches.effectOf("icon", QVariant::fromValue(telltaleIcon(QSize(16, 16)))),
             QStringLiteral("updates"));
}

void MetroBattIconTest::sameColourStillPosts()
{
    Stage<OpenBattery> battery;
    battery->setState({1, 1});
    QCOMPARE(probe(battery.widget).effectOf([&] {
        battery->setState({1, 3});
    }),
             QStringLiteral("posts, drops image"));
    COMPARE_IMAGES(imageOf(battery.widget), batteryImage("ok"));
}

void MetroBattIconTest::missingImageIsReported()
{
    Stage<OpenBattery> battery;
    battery->setState({1, 5});
    deliverAll();
    QPixmap *const kept = OpenBattery::background[1];
    QPixmap *const keptFirst = OpenBattery::background[0];
    OpenBattery::background[1] = nullptr;
    OpenBattery::background[0] = nullptr;
    QCOMPARE(battery->getBackGroundSize(), QSize(22, 22));
    sendPlain(battery.widget, QEvent::PolishRequest);
    COMPARE_IMAGES(imageOf(battery.widget), emptyImage(QSize(72, 72)));
    QCOMPARE(takeErrorLines(),
             QList<ErrorLine>(
                 {{QStringLiteral("KivWidgets/metrobatttemplate.cpp"), QStringLiteral("paintBase"),
                   QStringLiteral("pixmap non inizializzata")}}));
    // An empty pixmap draws nothing and says nothing.
    QPixmap empty;
    OpenBattery::background[1] = &empty;
    sendPlain(battery.widget, QEvent::PolishRequest);
    COMPARE_IMAGES(imageOf(battery.widget), emptyImage(QSize(72, 72)));
    OpenBattery::background[1] = kept;
    OpenBattery::background[0] = keptFirst;
}

void MetroBattIconTest::becomesIdleWithAnIconWithoutASize()
{
    Stage<OpenBattery> battery;
    const QSize before = battery->iconSize();
    battery->setIcon(sizelessIcon());
    deliverAll();
    const qint64 kept = battery->image->cacheKey();
    imageOf(battery.widget);
    QCOMPARE(battery->image->cacheKey(), kept);
    QCOMPARE(battery->iconSize(), before);
}

void MetroBattIconTest::iconSizeOfTheHost()
{
    // The icon's own size comes back with the paint, which paints a new image.
    Stage<OpenBattery> battery;
    battery->setIcon(QIcon(plainPixmap(QSize(40, 30), Qt::red)));
    deliverAll();
    const QImage shown = imageOf(battery.widget);
    battery->image->fill(Qt::cyan);
    battery->setIconSize(QSize(16, 16));
    COMPARE_IMAGES(imageOf(battery.widget), shown);
    QCOMPARE(battery->iconSize(), QSize(40, 30));
}

void MetroBattIconTest::nullImageIsReported()
{
    OpenBattery battery(nullptr);
    battery.setObjectName(QStringLiteral("batteria"));
    battery.resize(0, 0);
    sendPaint(&battery);
    QCOMPARE(takeErrorLines(),
             QList<ErrorLine>(
                 {{QStringLiteral("KivWidgets/metrobatticon.cpp"), QStringLiteral("paintImage"),
                   QStringLiteral("Nel controllo batteria Image e' NULL")}}));
    // An application may ask for the painting before there is an image at all.
    OpenBattery unpainted(nullptr);
    unpainted.setObjectName(QStringLiteral("batteria"));
    unpainted.paintImage();
    QCOMPARE(takeErrorLines(),
             QList<ErrorLine>(
                 {{QStringLiteral("KivWidgets/metrobatticon.cpp"), QStringLiteral("paintImage"),
                   QStringLiteral("Nel controllo batteria Image e' NULL")}}));
    takeWarnings();
}

KIV_LAYOUT(MetroBattIcon, 1, KIV_BASE(QAbstractButton), KIV_BASE(MetroBattTemplate),
           KIV_FIELD(image));

void MetroBattIconTest::layout()
{
    QCOMPARE(LayoutMetroBattIcon::problem(), QString());
}

KIV_TEST_MAIN(MetroBattIconTest)

#include "tst_metrobatticon.moc"

// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "metrosysicon.h"

#include "cacheprobe.h"
#include "freshness.h"
#include "icons.h"
#include "images.h"
#include "layout.h"
#include "testmain.h"

#include <QtCore/QPointer>
#include <QtGui/QIconEngine>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>
#include <QtTest/QSignalSpy>

#include <limits>

namespace {

class OpenIcon : public MetroSysIcon
{
public:
    using MetroSysIcon::image;
    using MetroSysIcon::MetroSysIcon;
};

CacheProbe probe(OpenIcon *icon)
{
    return CacheProbe(icon, {{"image", &icon->image}});
}

/// The plate with the icon over its middle, or without one.
struct PlateLook
{
    QColor color = QColor(167, 167, 167);
    QSize iconSize = QSize(32, 32);
    int border = 10;
    int roundness = 50;
    bool washed = false;
    QColor icon;

    QImage draw(QSize size) const
    {
        return drawnImage(size, [&](QPainter *painter) {
            const int w = iconSize.width() + border;
            const int h = iconSize.height() + border;
            const int radius = qMin(w, h) / 2 * roundness / 100;
            QPen pen(color, border);
            pen.setJoinStyle(Qt::MiterJoin);
            painter->setPen(pen);
            painter->setBrush(color);
            QPainterPath plate;
            plate.addRoundedRect(border / 2, border / 2, w, h, radius, radius);
            painter->drawPath(plate);
            if (washed) {
                painter->setCompositionMode(QPainter::CompositionMode_HardLight);
                painter->fillRect(QRect(QPoint(1, 1), QPoint(size.width() - 2, size.height() - 2)),
                                  QColor(Qt::lightGray));
                painter->setCompositionMode(QPainter::CompositionMode_SourceOver);
            }
            const int x = (size.width() - iconSize.width()) / 2;
            const int y = (size.height() - iconSize.height()) / 2;
            if (icon.isValid() && x > 0 && y > 0)
                painter->drawPixmap(x, y, plainPixmap(iconSize, icon));
        });
    }
};

void populate(MetroSysIcon *icon, QSize size = QSize(32, 32))
{
    icon->setIconSize(size);
    icon->setIcon(telltaleIcon(size));
    deliverAll();
}

} // namespace

class MetroSysIconTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void metaObject();
    void layout();
    void defaults();
    void states_data();
    void states();
    void plates_data();
    void plates();
    void iconLooks_data();
    void iconLooks();
    void followsTheFirstIconSize();
    void iconWithoutSizesIsNoChange();
    void sizeFollowsTheIcon();
    void enterAndLeave();
    void effects();
    void baseClassSettersDoNotRebuild();
    void checkedStateShowsWithTheNextDrop();
    void becomesIdleWithAnIconWithoutASize();
    void nullImageIsReported();
    void extremeSettingsAreHarmless_data();
    void extremeSettingsAreHarmless();
    void deletedInASlot_data();
    void deletedInASlot();
    void mutatedEqualsFresh_data();
    void mutatedEqualsFresh();
};

void MetroSysIconTest::metaObject()
{
    const QMetaObject &meta = MetroSysIcon::staticMetaObject;
    QCOMPARE(meta.superClass()->className(), "QAbstractButton");
    QCOMPARE(declaredProperties(meta),
             QStringList({QStringLiteral("border int"), QStringLiteral("roundness int")}));
    QCOMPARE(declaredMethods(meta),
             QStringList({QStringLiteral("mouseEnter()"), QStringLiteral("mouseLeave()")}));
}

void MetroSysIconTest::defaults()
{
    const MetroSysIcon icon(nullptr);
    QCOMPARE(icon.getBorder(), 10);
    QCOMPARE(icon.getRoundness(), 50);
    QCOMPARE(icon.iconSize(), QSize(16, 16));
    QCOMPARE(icon.size(), QSize(36, 36));
}

void MetroSysIconTest::states_data()
{
    QTest::addColumn<int>("alarm");
    QTest::addColumn<int>("element");
    QTest::addColumn<QColor>("color");
    const QColor lightBlue(0, 174, 240);
    const QColor orange(247, 148, 50);
    const QColor darkBlue(0, 56, 117);
    const QColor lightGrey(167, 167, 167);
    const QColor red(238, 28, 37);
    const QColor darkGrey(89, 89, 91);
    QTest::newRow("new") << 1 << 0 << lightGrey;
    for (int element = 1; element <= 5; ++element)
        QTest::addRow("in order, %d", element) << 1 << element << lightBlue;
    QTest::newRow("on battery") << 1 << 6 << orange;
    QTest::newRow("on bypass") << 1 << 7 << darkBlue;
    QTest::newRow("communication lost") << 0 << 5 << lightGrey;
    QTest::newRow("warning") << 2 << 5 << orange;
    QTest::newRow("anomaly") << 3 << 0 << orange;
    QTest::newRow("fault") << 4 << 99 << red;
    QTest::newRow("locked") << 5 << 1 << red;
    QTest::newRow("unforeseen element state") << 1 << 8 << darkGrey;
    QTest::newRow("unforeseen alarm state") << 9 << 0 << darkGrey;
}

void MetroSysIconTest::states()
{
    QFETCH(int, alarm);
    QFETCH(int, element);
    QFETCH(QColor, color);
    Stage<OpenIcon> icon;
    populate(icon.widget);
    icon->setState({quint8(alarm), quint8(element)});
    deliverAll();
    PlateLook expected;
    expected.color = color;
    expected.icon = Qt::red;
    COMPARE_IMAGES(imageOf(icon.widget), expected.draw(QSize(52, 52)));
    const QList<ErrorLine> lines = takeErrorLines();
    const bool unforeseen = alarm > 5 || (alarm == 1 && element > 7);
    QCOMPARE(!lines.isEmpty(), unforeseen);
}

void MetroSysIconTest::plates_data()
{
    QTest::addColumn<QSize>("iconSize");
    QTest::addColumn<int>("border");
    QTest::addColumn<int>("roundness");
    QTest::newRow("usual") << QSize(32, 32) << 10 << 50;
    QTest::newRow("square corners") << QSize(32, 32) << 10 << 0;
    QTest::newRow("circle") << QSize(32, 32) << 10 << 100;
    QTest::newRow("wide") << QSize(60, 21) << 7 << 60;
    QTest::newRow("tall") << QSize(11, 40) << 4 << 60;
    QTest::newRow("thin border") << QSize(32, 32) << 1 << 50;
    QTest::newRow("no border") << QSize(32, 32) << 0 << 50;
    QTest::newRow("large") << QSize(200, 200) << 30 << 50;
    QTest::newRow("one pixel") << QSize(1, 1) << 1 << 50;
}

void MetroSysIconTest::plates()
{
    PlateLook expected;
    QFETCH(QSize, iconSize);
    QFETCH(int, border);
    QFETCH(int, roundness);
    Stage<OpenIcon> icon;
    icon->setProperty("border", border);
    icon->setProperty("roundness", roundness);
    populate(icon.widget, iconSize);
    const QSize size = iconSize + QSize(2 * border, 2 * border);
    QCOMPARE(icon->size(), size);
    expected.iconSize = iconSize;
    expected.border = border;
    expected.roundness = roundness;
    expected.icon = Qt::red;
    COMPARE_IMAGES(imageOf(icon.widget), expected.draw(size));
}

void MetroSysIconTest::iconLooks_data()
{
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<bool>("checked");
    QTest::addColumn<bool>("hovered");
    QTest::addColumn<int>("mode");
    QTest::newRow("normal") << true << false << false << int(QIcon::Normal);
    QTest::newRow("checked") << true << true << false << int(QIcon::Normal);
    QTest::newRow("under the pointer") << true << false << true << int(QIcon::Active);
    QTest::newRow("checked under the pointer") << true << true << true << int(QIcon::Active);
    QTest::newRow("disabled") << false << false << false << int(QIcon::Disabled);
    QTest::newRow("disabled and checked") << false << true << false << int(QIcon::Disabled);
    QTest::newRow("disabled under the pointer") << false << false << true << int(QIcon::Disabled);
}

void MetroSysIconTest::iconLooks()
{
    QFETCH(bool, enabled);
    QFETCH(bool, checked);
    QFETCH(bool, hovered);
    QFETCH(int, mode);
    Stage<OpenIcon> icon;
    populate(icon.widget);
    icon->setCheckable(true);
    icon->setChecked(checked);
    if (hovered)
        sendPlain(icon.widget, QEvent::Enter);
    icon->setEnabled(enabled);
    sendPlain(icon.widget, QEvent::PolishRequest);
    PlateLook expected;
    expected.washed = !enabled;
    expected.icon = telltaleColor(QIcon::Mode(mode), checked ? QIcon::On : QIcon::Off);
    COMPARE_IMAGES(imageOf(icon.widget), expected.draw(QSize(52, 52)));
}

void MetroSysIconTest::followsTheFirstIconSize()
{
    Stage<OpenIcon> icon;
    populate(icon.widget);
    QCOMPARE(icon->size(), QSize(52, 52));
    QIcon larger;
    larger.addPixmap(plainPixmap(QSize(48, 48), Qt::red));
    larger.addPixmap(plainPixmap(QSize(20, 20), Qt::blue));
    icon->setIcon(larger);
    deliverAll();
    QCOMPARE(icon->iconSize(), QSize(48, 48));
    QCOMPARE(icon->size(), QSize(68, 68));
    PlateLook expected;
    expected.iconSize = QSize(48, 48);
    expected.icon = Qt::red;
    COMPARE_IMAGES(imageOf(icon.widget), expected.draw(QSize(68, 68)));
    // The icon is idle then.
    EventCounter events(icon.widget);
    deliverAll();
    QCOMPARE(events.count(QEvent::Paint), 0);
}

void MetroSysIconTest::iconWithoutSizesIsNoChange()
{
    /// Draws in any size and offers none.
    class SizelessEngine : public QIconEngine
    {
    public:
        void paint(QPainter *painter, const QRect &rect, QIcon::Mode, QIcon::State) override
        {
            painter->fillRect(rect, Qt::red);
        }
        QPixmap pixmap(const QSize &size, QIcon::Mode, QIcon::State) override
        {
            return plainPixmap(size, Qt::red);
        }
        QIconEngine *clone() const override
        {
            return new SizelessEngine;
        }
    };
    Stage<OpenIcon> icon;
    icon->setIcon(QIcon(new SizelessEngine));
    deliverAll();
    QCOMPARE(icon->iconSize(), QSize(16, 16));
    QCOMPARE(icon->size(), QSize(36, 36));
    PlateLook expected;
    expected.iconSize = QSize(16, 16);
    expected.icon = Qt::red;
    COMPARE_IMAGES(imageOf(icon.widget), expected.draw(QSize(36, 36)));
}

void MetroSysIconTest::sizeFollowsTheIcon()
{
    Stage<OpenIcon> icon;
    icon->resize(200, 100);
    QCOMPARE(icon->size(), QSize(36, 36));
    icon->setIconSize(QSize(24, 20));
    QCOMPARE(icon->size(), QSize(36, 36));
    sendPlain(icon.widget, QEvent::PolishRequest);
    QCOMPARE(icon->size(), QSize(44, 40));
    icon->setBorder(3);
    QCOMPARE(icon->size(), QSize(44, 40));
    deliverAll();
    QCOMPARE(icon->size(), QSize(30, 26));
}

void MetroSysIconTest::enterAndLeave()
{
    Stage<OpenIcon> icon;
    populate(icon.widget);
    const QSignalSpy entered(icon.widget, &MetroSysIcon::mouseEnter);
    const QSignalSpy left(icon.widget, &MetroSysIcon::mouseLeave);
    CacheProbe caches = probe(icon.widget);
    QCOMPARE(caches.effectOf(QEvent::Enter), QStringLiteral("drops image"));
    QCOMPARE(entered.count(), 1);
    QCOMPARE(left.count(), 0);
    PlateLook expected;
    expected.icon = Qt::magenta;
    COMPARE_IMAGES(imageOf(icon.widget), expected.draw(QSize(52, 52)));
    QCOMPARE(caches.effectOf(QEvent::Leave), QStringLiteral("drops image"));
    QCOMPARE(entered.count(), 1);
    QCOMPARE(left.count(), 1);
    expected.icon = Qt::red;
    COMPARE_IMAGES(imageOf(icon.widget), expected.draw(QSize(52, 52)));
    // The base class repaints on hover events; they are not counted as entering.
    QCOMPARE(caches.effectOf(QEvent::HoverEnter), QStringLiteral("updates"));
    QCOMPARE(entered.count(), 1);
}

void MetroSysIconTest::effects()
{
    Stage<OpenIcon> icon;
    populate(icon.widget);
    CacheProbe caches = probe(icon.widget);
    const QString drops = QStringLiteral("drops image");
    const QString posts = QStringLiteral("posts, drops image");
    const QString nothing = QStringLiteral("nothing");
    QCOMPARE(caches.effectOf("border", 9), posts);
    QCOMPARE(caches.effectOf("border", 9), nothing);
    QCOMPARE(caches.effectOf("roundness", 40), posts);
    QCOMPARE(caches.effectOf("roundness", 40), nothing);
    QCOMPARE(caches.effectOf([&] { icon->setState({1, 5}); }), posts);
    QCOMPARE(caches.effectOf([&] { icon->setState({1, 5}); }), nothing);
    QCOMPARE(caches.effectOf([&] { icon->setIcon(icon->icon()); }), posts);
    QCOMPARE(caches.effectOf([&] { icon->setEnabled(false); }), drops);
    QCOMPARE(caches.effectOf([&] { icon->resize(5, 5); }), drops);
    QCOMPARE(caches.effectOf([&] { delete new QObject(icon.widget); }), drops);
    QCOMPARE(caches.effectOf(QEvent::PolishRequest), drops);
    QCOMPARE(caches.effectOf(QEvent::UpdateRequest), drops);
    QCOMPARE(caches.effectOf([&] { new QObject(icon.widget); }), nothing);
    QCOMPARE(caches.effectOf(QEvent::FontChange), QStringLiteral("updates"));
    QCOMPARE(caches.effectOf([&] { icon->update(); }), QStringLiteral("updates"));
}

void MetroSysIconTest::baseClassSettersDoNotRebuild()
{
    Stage<OpenIcon> icon;
    CacheProbe caches = probe(icon.widget);
    QCOMPARE(caches.effectOf("icon", QVariant::fromValue(telltaleIcon(QSize(16, 16)))),
             QStringLiteral("updates"));
    QCOMPARE(caches.effectOf([&] { icon->QAbstractButton::setIcon(QIcon()); }),
             QStringLiteral("updates"));
}

void MetroSysIconTest::checkedStateShowsWithTheNextDrop()
{
    Stage<OpenIcon> icon;
    populate(icon.widget);
    icon->setCheckable(true);
    QCOMPARE(probe(icon.widget).effectOf([&] { icon->setChecked(true); }),
             QStringLiteral("updates"));
    QCOMPARE(imageOf(icon.widget).pixelColor(26, 26), QColor(Qt::red));
    icon->setState({1, 5});
    deliverAll();
    QCOMPARE(imageOf(icon.widget).pixelColor(26, 26), QColor(Qt::green));
}

void MetroSysIconTest::becomesIdleWithAnIconWithoutASize()
{
    Stage<OpenIcon> icon;
    const QSize before = icon->iconSize();
    icon->setIcon(sizelessIcon());
    deliverAll();
    EventCounter events(icon.widget);
    deliverAll();
    QCOMPARE(events.count(QEvent::Paint), 0);
    QCOMPARE(icon->iconSize(), before);
}

void MetroSysIconTest::nullImageIsReported()
{
    OpenIcon icon(nullptr);
    icon.setObjectName(QStringLiteral("ups"));
    icon.resize(0, 0);
    sendPaint(&icon);
    QCOMPARE(takeErrorLines(),
             QList<ErrorLine>(
                 {{QStringLiteral("KivWidgets/metrosysicon.cpp"), QStringLiteral("paintImage"),
                   QStringLiteral("Nel controllo ups Image e' NULL")}}));
    sendPaint(&icon);
    QCOMPARE(takeErrorLines(), QList<ErrorLine>());
    // An application may ask for the painting before there is an image at all.
    OpenIcon unpainted(nullptr);
    unpainted.setObjectName(QStringLiteral("ups"));
    unpainted.paintImage();
    QCOMPARE(takeErrorLines(),
             QList<ErrorLine>(
                 {{QStringLiteral("KivWidgets/metrosysicon.cpp"), QStringLiteral("paintImage"),
                   QStringLiteral("Nel controllo ups Image e' NULL")}}));
    takeWarnings();
}

void MetroSysIconTest::extremeSettingsAreHarmless_data()
{
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QVariant>("value");
    using Limits = std::numeric_limits<int>;
    QTest::newRow("lowest border") << QByteArray("border") << QVariant(Limits::min());
    QTest::newRow("negative border") << QByteArray("border") << QVariant(-8);
    QTest::newRow("lowest roundness") << QByteArray("roundness") << QVariant(Limits::min());
    QTest::newRow("highest roundness") << QByteArray("roundness") << QVariant(Limits::max());
    QTest::newRow("negative icon size") << QByteArray("iconSize") << QVariant(QSize(-50, -50));
}

void MetroSysIconTest::extremeSettingsAreHarmless()
{
    QFETCH(QByteArray, property);
    QFETCH(QVariant, value);
    Stage<OpenIcon> icon;
    populate(icon.widget);
    icon->setProperty(property, value);
    sendPlain(icon.widget, QEvent::PolishRequest);
    deliverAll();
    imageOf(icon.widget);
    icon->setProperty("border", 10);
    icon->setProperty("roundness", 50);
    deliverAll();
    populate(icon.widget);
    takeErrorLines();
    PlateLook expected;
    expected.icon = Qt::red;
    COMPARE_IMAGES(imageOf(icon.widget), expected.draw(QSize(52, 52)));
}

void MetroSysIconTest::deletedInASlot_data()
{
    QTest::addColumn<int>("event");
    QTest::newRow("mouseEnter") << int(QEvent::Enter);
    QTest::newRow("mouseLeave") << int(QEvent::Leave);
}

void MetroSysIconTest::deletedInASlot()
{
    QFETCH(int, event);
    Stage<OpenIcon> icon;
    const QPointer<OpenIcon> watched(icon.widget);
    connect(icon.widget, &MetroSysIcon::mouseEnter, this, [&] { delete watched.data(); });
    connect(icon.widget, &MetroSysIcon::mouseLeave, this, [&] { delete watched.data(); });
    sendPlain(icon.widget, QEvent::Type(event));
    QVERIFY(!watched);
}

void MetroSysIconTest::mutatedEqualsFresh_data()
{
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QVariant>("value");
    QTest::newRow("border") << QByteArray("border") << QVariant(4);
    QTest::newRow("roundness") << QByteArray("roundness") << QVariant(90);
    QTest::newRow("enabled") << QByteArray("enabled") << QVariant(false);
}

void MetroSysIconTest::mutatedEqualsFresh()
{
    QFETCH(QByteArray, property);
    QFETCH(QVariant, value);
    const auto configure = [](OpenIcon *icon) {
        icon->setIconSize(QSize(32, 32));
        icon->setIcon(telltaleIcon(QSize(32, 32)));
    };
    QCOMPARE(freshnessProblem<OpenIcon>(configure, property, value), QString());
}

KIV_LAYOUT(MetroSysIcon, 1, KIV_BASE(QAbstractButton), KIV_BASE(MetroStyle), KIV_FIELD(image),
           KIV_FIELD(hover), KIV_FIELD(border), KIV_FIELD(roundness));

void MetroSysIconTest::layout()
{
    QCOMPARE(LayoutMetroSysIcon::problem(), QString());
}

KIV_TEST_MAIN(MetroSysIconTest)

#include "tst_metrosysicon.moc"

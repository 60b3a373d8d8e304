// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "metrotabicon.h"

#include "cacheprobe.h"
#include "icons.h"
#include "images.h"
#include "layout.h"
#include "testmain.h"

#include <QtGui/QPainter>

#include <limits>

namespace {

class OpenTab : public MetroTabicon
{
public:
    using MetroTabicon::createImages;
    using MetroTabicon::image;
    using MetroTabicon::imagePressed;
    using MetroTabicon::MetroTabicon;
};

CacheProbe probe(OpenTab *tab)
{
    return CacheProbe(tab, {{"image", &tab->image}, {"imagePressed", &tab->imagePressed}});
}

const char *const ledNames[] = {"COMMLOST", nullptr, "WARNING-ON", "WARNING-ON",
                                "FAULT-ON", "LOCK",  "none"};

/// The tab with its icon in one colour, or without one, and the LED of an alarm state.
QImage tabImage(QSize size, QSize iconSize, const QColor &icon, int alarm)
{
    return drawnImage(size, [&](QPainter *painter) {
        const int x = (size.width() - iconSize.width()) / 2;
        const int y = (size.height() - iconSize.height()) / 2;
        if (icon.isValid() && x > 0 && y > 0)
            painter->drawPixmap(x, y, plainPixmap(iconSize, icon));
        const char *led = ledNames[qMin(alarm, 6)];
        if (led) {
            painter->drawPixmap(
                4, 39,
                QPixmap(QStringLiteral(":/Images/stato-LED-%1.png").arg(QLatin1String(led))));
        }
    });
}

void populate(OpenTab *tab, QSize size = QSize(32, 32))
{
    tab->setIconSize(size);
    tab->setIcon(telltaleIcon(size));
    sendPlain(tab, QEvent::PolishRequest);
    deliverAll();
}

} // namespace

class MetroTabiconTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void metaObject();
    void layout();
    void defaults();
    void alarms_data();
    void alarms();
    void iconModes();
    void sizes_data();
    void sizes();
    void growsOneDimensionPerEvent();
    void growthKeepsLargerLimits();
    void exclusiveAmongSiblings();
    void plainResizeStretchesTheOldImages();
    void oldImagesFarWiderThanTheTab();
    void effects();
    void newIconIsUnseenUntilADrop();
    void survivorIsReplaced();
    void creationKeepsWhatIsThere();
    void absurdIconSizeEnds();
    void nullImagesAreReported();
};

void MetroTabiconTest::metaObject()
{
    const QMetaObject &meta = MetroTabicon::staticMetaObject;
    QCOMPARE(meta.superClass()->className(), "QAbstractButton");
    QCOMPARE(declaredProperties(meta), QStringList());
    QCOMPARE(declaredMethods(meta), QStringList());
}

void MetroTabiconTest::defaults()
{
    const MetroTabicon tab(nullptr);
    QVERIFY(tab.isCheckable());
    QVERIFY(tab.autoExclusive());
    QVERIFY(!tab.isChecked());
}

void MetroTabiconTest::alarms_data()
{
    QTest::addColumn<int>("alarm");
    for (const int alarm : {0, 1, 2, 3, 4, 5, 6, 9, 255})
        QTest::addRow("alarm %d", alarm) << alarm;
}

void MetroTabiconTest::alarms()
{
    QFETCH(int, alarm);
    for (const int element : {0, 5, 7, 99}) {
        Stage<OpenTab> tab(QSize(60, 64));
        populate(tab.widget);
        tab->setState({quint8(alarm), quint8(element)});
        deliverAll();
        COMPARE_IMAGES(imageOf(tab.widget), tabImage(QSize(60, 64), QSize(32, 32), Qt::red, alarm));
        tab->setChecked(true);
        COMPARE_IMAGES(imageOf(tab.widget),
                       tabImage(QSize(60, 64), QSize(32, 32), Qt::green, alarm));
    }
}

void MetroTabiconTest::iconModes()
{
    Stage<OpenTab> tab(QSize(60, 64));
    populate(tab.widget);
    tab->setEnabled(false);
    COMPARE_IMAGES(imageOf(tab.widget), tabImage(QSize(60, 64), QSize(32, 32), Qt::blue, 1));
    tab->setChecked(true);
    COMPARE_IMAGES(imageOf(tab.widget), tabImage(QSize(60, 64), QSize(32, 32), Qt::yellow, 1));
}

void MetroTabiconTest::sizes_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("usual") << QSize(60, 64);
    QTest::newRow("odd") << QSize(57, 71);
    QTest::newRow("lower than the LED's place") << QSize(60, 36);
    QTest::newRow("tight") << QSize(34, 34);
    QTest::newRow("large") << QSize(300, 200);
}

void MetroTabiconTest::sizes()
{
    QFETCH(QSize, size);
    Stage<OpenTab> tab(size);
    populate(tab.widget);
    tab->setState({4, 5});
    deliverAll();
    QCOMPARE(tab->size(), size);
    COMPARE_IMAGES(imageOf(tab.widget), tabImage(size, QSize(32, 32), Qt::red, 4));
}

void MetroTabiconTest::growsOneDimensionPerEvent()
{
    Stage<OpenTab> tab(QSize(40, 40));
    tab->setMaximumSize(45, 45);
    tab->setIconSize(QSize(48, 48));
    QCOMPARE(tab->size(), QSize(40, 40));
    // Qt delivers the resize that comes of it nested, which corrects the height in its turn.
    QResizeEvent resize(QSize(40, 40), QSize(40, 40));
    QCoreApplication::sendEvent(tab.widget, &resize);
    QCOMPARE(tab->size(), QSize(50, 50));
    QCOMPARE(tab->minimumSize(), QSize(50, 50));
    QCOMPARE(tab->maximumSize(), QSize(50, 50));

    // Unshown, no nested resize comes, so each event corrects one dimension.
    QWidget window;
    OpenTab hidden(&window);
    hidden.resize(40, 40);
    hidden.setIconSize(QSize(48, 48));
    QCoreApplication::sendEvent(&hidden, &resize);
    QCOMPARE(hidden.size(), QSize(50, 40));
    QCoreApplication::sendEvent(&hidden, &resize);
    QCOMPARE(hidden.size(), QSize(50, 50));
    QCoreApplication::sendEvent(&hidden, &resize);
    QCOMPARE(hidden.size(), QSize(50, 50));
}

void MetroTabiconTest::growthKeepsLargerLimits()
{
    Stage<OpenTab> tab(QSize(40, 40));
    tab->setMaximumSize(400, 300);
    tab->setIconSize(QSize(48, 48));
    deliverAll();
    tab->update();
    deliverAll();
    QCOMPARE(tab->size(), QSize(50, 50));
    QCOMPARE(tab->maximumSize(), QSize(400, 300));
    QCOMPARE(tab->minimumSize(), QSize(50, 50));
}

void MetroTabiconTest::exclusiveAmongSiblings()
{
    Stage<OpenTab> first(QSize(60, 64));
    auto *second = new OpenTab(&first.window);
    second->setGeometry(100, 0, 60, 64);
    second->show();
    populate(first.widget);
    populate(second);
    first->setChecked(true);
    QVERIFY(!second->isChecked());
    QTest::mouseClick(second, Qt::LeftButton);
    QVERIFY(second->isChecked());
    QVERIFY(!first->isChecked());
    COMPARE_IMAGES(imageOf(first.widget), tabImage(QSize(60, 64), QSize(32, 32), Qt::red, 1));
    COMPARE_IMAGES(imageOf(second), tabImage(QSize(60, 64), QSize(32, 32), Qt::green, 1));
}

void MetroTabiconTest::plainResizeStretchesTheOldImages()
{
    Stage<OpenTab> tab(QSize(60, 64));
    populate(tab.widget);
    tab->setState({5, 1});
    deliverAll();
    const QImage old = imageOf(tab.widget);
    tab->resize(90, 100);
    deliverAll();
    const QImage expected = drawnImage(QSize(90, 100), [&](QPainter *painter) {
        painter->drawImage(QRectF(0, 0, 90, 100), old, QRectF(old.rect()));
    });
    COMPARE_IMAGES(imageOf(tab.widget), expected);
    sendPlain(tab.widget, QEvent::PolishRequest);
    COMPARE_IMAGES(imageOf(tab.widget), tabImage(QSize(90, 100), QSize(32, 32), Qt::red, 5));
}

void MetroTabiconTest::oldImagesFarWiderThanTheTab()
{
    // Shrunk so far, Qt would read outside of the old images.
    Stage<OpenTab> tab(QSize(140000, 20));
    tab->setIconSize(QSize(0, 0));
    QVERIFY(!imageOf(tab.widget).isNull());
    for (QImage *old : {tab->image, tab->imagePressed})
        old->fill(QColor(255, 0, 0, 100));
    tab->resize(2, 20);
    QCOMPARE(tab->image->width(), 140000);
    COMPARE_IMAGES(imageOf(tab.widget), emptyImage(QSize(2, 20)));
}

void MetroTabiconTest::effects()
{
    Stage<OpenTab> tab(QSize(60, 64));
    populate(tab.widget);
    CacheProbe caches = probe(tab.widget);
    const QString both = QStringLiteral("drops image,imagePressed");
    const QString nothing = QStringLiteral("nothing");
    QCOMPARE(caches.effectOf([&] {
        tab->setState({4, 5});
    }),
             QStringLiteral("posts, drops image,imagePressed"));
    QCOMPARE(caches.effectOf([&] { tab->setState({4, 5}); }), nothing);
    QCOMPARE(caches.effectOf([&] { tab->setEnabled(false); }), both);
    QCOMPARE(caches.effectOf([&] { delete new QObject(tab.widget); }), both);
    QCOMPARE(caches.effectOf(QEvent::PolishRequest), both);
    QCOMPARE(caches.effectOf(QEvent::UpdateRequest), both);
    QCOMPARE(caches.effectOf([&] { tab->resize(70, 70); }), QStringLiteral("updates"));
    QCOMPARE(caches.effectOf([&] { tab->setChecked(true); }), QStringLiteral("updates"));
    QCOMPARE(caches.effectOf([&] { tab->resize(20, 70); }), both);
    QCOMPARE(caches.effectOf([&] { new QObject(tab.widget); }), nothing);
    QCOMPARE(caches.effectOf(QEvent::Enter), nothing);
}

void MetroTabiconTest::newIconIsUnseenUntilADrop()
{
    Stage<OpenTab> tab(QSize(60, 64));
    populate(tab.widget);
    QCOMPARE(probe(tab.widget).effectOf([&] {
        tab->setIcon(QIcon(plainPixmap(QSize(32, 32), Qt::black)));
    }),
             QStringLiteral("updates"));
    COMPARE_IMAGES(imageOf(tab.widget), tabImage(QSize(60, 64), QSize(32, 32), Qt::red, 1));
    sendPlain(tab.widget, QEvent::UpdateRequest);
    COMPARE_IMAGES(imageOf(tab.widget), tabImage(QSize(60, 64), QSize(32, 32), Qt::black, 1));
}

void MetroTabiconTest::survivorIsReplaced()
{
    Stage<OpenTab> tab(QSize(60, 64));
    populate(tab.widget);
    imageOf(tab.widget);
    tab->image->fill(Qt::cyan);
    delete tab->imagePressed;
    tab->imagePressed = nullptr;
    tab->createImages();
    QVERIFY(tab->imagePressed);
    COMPARE_IMAGES(imageOf(tab.widget), tabImage(QSize(60, 64), QSize(32, 32), Qt::red, 1));
}

void MetroTabiconTest::creationKeepsWhatIsThere()
{
    Stage<OpenTab> tab(QSize(60, 64));
    populate(tab.widget);
    imageOf(tab.widget);
    tab->image->fill(Qt::cyan);
    tab->createImages();
    QImage plain = emptyImage(tab->size());
    plain.fill(Qt::cyan);
    COMPARE_IMAGES(imageOf(tab.widget), plain);
}

void MetroTabiconTest::absurdIconSizeEnds()
{
    QWidget window;
    OpenTab tab(&window);
    tab.setIconSize(QSize(std::numeric_limits<int>::max(), 16));
    for (int round = 0; round < 4; ++round) {
        QResizeEvent resize(tab.size(), tab.size());
        QCoreApplication::sendEvent(&tab, &resize);
    }
    QCOMPARE(tab.width(), QWIDGETSIZE_MAX);
    // Once grown, nothing is left to do, so a paint schedules no other.
    tab.image = new QImage;
    QResizeEvent resize(tab.size(), tab.size());
    QCoreApplication::sendEvent(&tab, &resize);
    QVERIFY(tab.image);
}

void MetroTabiconTest::nullImagesAreReported()
{
    OpenTab tab(nullptr);
    tab.setObjectName(QStringLiteral("pagina"));
    tab.setIconSize(QSize(-2, -2));
    tab.resize(0, 0);
    const auto line = [](const char *image) {
        return ErrorLine{
            QStringLiteral("KivWidgets/metrotabicon.cpp"), QStringLiteral("paintImages"),
            QStringLiteral("Nel controllo pagina %1 e' NULL").arg(QLatin1String(image))};
    };
    sendPaint(&tab);
    // The first null image ends it.
    QCOMPARE(takeErrorLines(), QList<ErrorLine>({line("Image")}));
    *tab.image = QImage(1, 1, QImage::Format_ARGB32_Premultiplied);
    tab.paintImages();
    QCOMPARE(takeErrorLines(), QList<ErrorLine>({line("ImagePressed")}));
    // An application may ask for the painting before there is an image at all.
    OpenTab unpainted(nullptr);
    unpainted.setObjectName(QStringLiteral("pagina"));
    unpainted.paintImages();
    QCOMPARE(takeErrorLines(), QList<ErrorLine>({line("Image")}));
    takeWarnings();
}

KIV_LAYOUT(MetroTabicon, 0, KIV_BASE(QAbstractButton), KIV_BASE(MetroStyle), KIV_FIELD(image),
           KIV_FIELD(imagePressed));

void MetroTabiconTest::layout()
{
    QCOMPARE(LayoutMetroTabicon::problem(), QString());
}

KIV_TEST_MAIN(MetroTabiconTest)

#include "tst_metrotabicon.moc"

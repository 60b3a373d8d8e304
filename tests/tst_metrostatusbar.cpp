// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "metrostatusbar.h"

#include "cacheprobe.h"
#include "icons.h"
#include "images.h"
#include "layout.h"
#include "testmain.h"

#include <QtGui/QPainter>
#include <QtWidgets/QVBoxLayout>

namespace {

class OpenStrip : public MetroStatusbar
{
public:
    using MetroStatusbar::image;
    using MetroStatusbar::MetroStatusbar;
};

CacheProbe probe(OpenStrip *strip)
{
    return CacheProbe(strip, {{"image", &strip->image}});
}

QPixmap strip()
{
    return QPixmap(QStringLiteral(":/Images/fasciasuperiore.png"));
}

QImage shown(const QPixmap &image, QSize size)
{
    return drawnImage(size, [&](QPainter *painter) { painter->drawPixmap(0, 0, image); });
}

} // namespace

class MetroStatusbarTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void metaObject();
    void layout();
    void defaults();
    void keepsTheImagesSize_data();
    void keepsTheImagesSize();
    void insideALayout();
    void disabledLooksAlike();
    void largerBackgroundIsClippedUntilAResize();
    void smallerBackground();
    void nullBackground();
    void resizeIsSwallowed();
    void effects();
    void nullImageIsReported();
};

void MetroStatusbarTest::metaObject()
{
    const QMetaObject &meta = MetroStatusbar::staticMetaObject;
    QCOMPARE(meta.superClass()->className(), "QFrame");
    QCOMPARE(declaredProperties(meta), QStringList({QStringLiteral("background QPixmap")}));
    QCOMPARE(declaredMethods(meta), QStringList());
}

void MetroStatusbarTest::defaults()
{
    const MetroStatusbar bar(nullptr);
    COMPARE_IMAGES(bar.property("background").value<QPixmap>().toImage(), strip().toImage());
    QCOMPARE(strip().size(), QSize(800, 42));
}

void MetroStatusbarTest::keepsTheImagesSize_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("larger") << QSize(880, 300);
    QTest::newRow("smaller") << QSize(10, 10);
    QTest::newRow("nothing") << QSize(0, 0);
}

void MetroStatusbarTest::keepsTheImagesSize()
{
    QFETCH(QSize, size);
    Stage<OpenStrip> bar;
    QCOMPARE(bar->size(), QSize(800, 42));
    COMPARE_IMAGES(imageOf(bar.widget), shown(strip(), QSize(800, 42)));
    bar->resize(size);
    QCOMPARE(bar->size(), QSize(800, 42));
}

void MetroStatusbarTest::insideALayout()
{
    QWidget window;
    auto *layout = new QVBoxLayout(&window);
    auto *bar = new OpenStrip(&window);
    layout->addWidget(bar);
    window.resize(900, 300);
    window.show();
    deliverAll();
    QCOMPARE(bar->size(), QSize(800, 42));
    window.resize(850, 200);
    deliverAll();
    QCOMPARE(bar->size(), QSize(800, 42));
    // The platform cannot pass a layout's minimum size on to the window.
    takeWarnings();
}

void MetroStatusbarTest::disabledLooksAlike()
{
    Stage<OpenStrip> bar;
    bar->setEnabled(false);
    COMPARE_IMAGES(imageOf(bar.widget), shown(strip(), QSize(800, 42)));
}

void MetroStatusbarTest::largerBackgroundIsClippedUntilAResize()
{
    Stage<OpenStrip> bar;
    QPixmap larger(850, 60);
    larger.fill(Qt::darkBlue);
    QPainter painter(&larger);
    painter.fillRect(790, 30, 60, 30, Qt::yellow);
    painter.end();
    bar->setProperty("background", larger);
    deliverAll();
    QCOMPARE(bar->size(), QSize(800, 42));
    COMPARE_IMAGES(imageOf(bar.widget), shown(larger, QSize(800, 42)));
    bar->resize(801, 42);
    QCOMPARE(bar->size(), QSize(850, 60));
    // The resize drops nothing: the old image stays, stretched, until the next drop.
    const QImage old = shown(larger, QSize(800, 42));
    const QImage stretched = drawnImage(QSize(850, 60), [&](QPainter *stretcher) {
        stretcher->drawImage(QRectF(0, 0, 850, 60), old, QRectF(old.rect()));
    });
    COMPARE_IMAGES(imageOf(bar.widget), stretched);
    sendPlain(bar.widget, QEvent::PolishRequest);
    COMPARE_IMAGES(imageOf(bar.widget), shown(larger, QSize(850, 60)));
}

void MetroStatusbarTest::smallerBackground()
{
    Stage<OpenStrip> bar;
    const QPixmap small = plainPixmap(QSize(30, 20), Qt::green);
    bar->setBackground(small);
    deliverAll();
    // Not stretched: the rest is transparent.
    COMPARE_IMAGES(imageOf(bar.widget), shown(small, QSize(800, 42)));
}

void MetroStatusbarTest::nullBackground()
{
    Stage<OpenStrip> bar;
    bar->setBackground(QPixmap());
    deliverAll();
    COMPARE_IMAGES(imageOf(bar.widget), emptyImage(QSize(800, 42)));
    bar->resize(100, 100);
    QCOMPARE(bar->size(), QSize(0, 0));
    bar->setBackground(strip());
    bar->resize(1, 1);
    QCOMPARE(bar->size(), QSize(800, 42));
    sendPlain(bar.widget, QEvent::PolishRequest);
    COMPARE_IMAGES(imageOf(bar.widget), shown(strip(), QSize(800, 42)));
}

void MetroStatusbarTest::resizeIsSwallowed()
{
    Stage<OpenStrip> bar;
    imageOf(bar.widget);
    QResizeEvent event(QSize(5, 5), QSize(800, 42));
    QVERIFY(QCoreApplication::sendEvent(bar.widget, &event));
    QVERIFY(bar->image);
}

void MetroStatusbarTest::effects()
{
    Stage<OpenStrip> bar;
    CacheProbe caches = probe(bar.widget);
    const QString drops = QStringLiteral("drops image");
    const QString nothing = QStringLiteral("nothing");
    QCOMPARE(caches.effectOf("background", bar->property("background")), drops);
    QCOMPARE(caches.effectOf([&] { bar->setEnabled(false); }), drops);
    QCOMPARE(caches.effectOf([&] { delete new QObject(bar.widget); }), drops);
    QCOMPARE(caches.effectOf(QEvent::PolishRequest), drops);
    QCOMPARE(caches.effectOf(QEvent::UpdateRequest), drops);
    QCOMPARE(caches.effectOf([&] {
        bar->MetroStyle::setState({4, 5});
    }),
             QStringLiteral("posts, drops image"));
    QCOMPARE(caches.effectOf([&] { new QObject(bar.widget); }), nothing);
    QCOMPARE(caches.effectOf(QEvent::Enter), nothing);
}

void MetroStatusbarTest::nullImageIsReported()
{
    OpenStrip bar(nullptr);
    bar.setObjectName(QStringLiteral("fascia"));
    bar.resize(0, 0);
    const ErrorLine line{QStringLiteral("KivWidgets/metrostatusbar.cpp"),
                         QStringLiteral("paintImage"),
                         QStringLiteral("Nel controllo fascia Image e' NULL")};
    sendPaint(&bar);
    QCOMPARE(takeErrorLines(), QList<ErrorLine>({line}));
    sendPaint(&bar);
    QCOMPARE(takeErrorLines(), QList<ErrorLine>());
    bar.setBackground(strip());
    sendPaint(&bar);
    QCOMPARE(takeErrorLines(), QList<ErrorLine>({line}));
    takeWarnings();
}

KIV_LAYOUT(MetroStatusbar, 0, KIV_BASE(QFrame), KIV_BASE(MetroStyle), KIV_FIELD(background),
           KIV_FIELD(image));

void MetroStatusbarTest::layout()
{
    QCOMPARE(LayoutMetroStatusbar::problem(), QString());
}

KIV_TEST_MAIN(MetroStatusbarTest)

#include "tst_metrostatusbar.moc"

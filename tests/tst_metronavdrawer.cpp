// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "metronavdrawer.h"

#include "cacheprobe.h"
#include "icons.h"
#include "images.h"
#include "layout.h"
#include "mouse.h"
#include "testmain.h"

#include <QtCore/QMetaProperty>
#include <QtCore/QPointer>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>
#include <QtTest/QSignalSpy>

#include <limits>

namespace {

class OpenDrawer : public MetroNavdrawer
{
public:
    using MetroNavdrawer::image;
    using MetroNavdrawer::MetroNavdrawer;
    using MetroNavdrawer::openGeometry;
};

CacheProbe probe(OpenDrawer *drawer)
{
    return CacheProbe(drawer, {{"image", &drawer->image}});
}

QPixmap libraryTab()
{
    return QPixmap(QStringLiteral(":/Images/linguetta-navdrawer.png"));
}

QImage openImage(QSize size, const QPixmap &tab, const QColor &panel = QColor(167, 167, 167))
{
    return drawnImage(size, [&](QPainter *painter) {
        const int W = size.width();
        const int H = size.height();
        const int t = tab.width();
        QPainterPath path(QPointF(W, 0));
        path.arcTo(t, 0, 24, 24, 90, 90);
        path.arcTo(t, H - 24, 24, 24, 180, 90);
        path.lineTo(W, H);
        path.closeSubpath();
        painter->setPen(panel);
        painter->setBrush(panel);
        painter->drawPath(path);
        painter->drawPixmap(0, 12, tab);
    });
}

QImage closedImage(QSize size, const QPixmap &tab)
{
    return drawnImage(
        size, [&](QPainter *painter) { painter->drawPixmap(size.width() - tab.width(), 12, tab); });
}

/// A drawer at a place, painted once, with two visible children and a hidden one.
struct DrawerStage : Stage<OpenDrawer>
{
    DrawerStage()
        : Stage<OpenDrawer>(QSize(62, 90))
    {
        widget->setGeometry(QRect(700, 50, 62, 90));
        const int widths[] = {100, 80, 60};
        for (int i = 0; i < 3; ++i) {
            children[i] = new QWidget(widget);
            children[i]->setGeometry(62, 5, widths[i], 20);
        }
        children[0]->show();
        children[1]->show();
        deliverAll();
        imageOf(widget);
    }
    QWidget *children[3];
};

} // namespace

class MetroNavdrawerTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void metaObject();
    void layout();
    void defaults();
    void looks_data();
    void looks();
    void opening();
    void openingAgainMovesOn();
    void openingInPlaceStillRebuilds();
    void openingNeedsAImage();
    void closing();
    void closedSizeAfterAResize();
    void openIsNeverSmallerThanTheTab();
    void resizeWhileOpenIsKept();
    void geometryIsKeptOnlyWhileOpen();
    void moveStretchesTheKeptGeometry();
    void movedFarOff();
    void movedAsAWindow();
    void stateOutsideTheEnum();
    void leftPressToggles();
    void otherButtonsAreIgnored();
    void uncheckableBoxStillClicks();
    void effects();
    void childrenWithoutAWidth();
    void childWithAnAbsurdWidth();
    void childDeletesItsSibling();
    void childDeletesTheDrawer();
    void nullImageIsReported();
};

void MetroNavdrawerTest::metaObject()
{
    const QMetaObject &meta = MetroNavdrawer::staticMetaObject;
    QCOMPARE(meta.superClass()->className(), "QGroupBox");
    QCOMPARE(declaredProperties(meta),
             QStringList({QStringLiteral("state state_E"), QStringLiteral("ImageTab QPixmap"),
                          QStringLiteral("background QColor")}));
    QCOMPARE(declaredMethods(meta), QStringList());
    const QMetaProperty state = meta.property(meta.indexOfProperty("state"));
    QVERIFY(state.isEnumType());
    QCOMPARE(state.enumerator().keyCount(), 2);
    QCOMPARE(state.enumerator().keyToValue("close"), 0);
    QCOMPARE(state.enumerator().keyToValue("open"), 1);
}

void MetroNavdrawerTest::defaults()
{
    const OpenDrawer drawer(nullptr);
    QCOMPARE(drawer.getState(), MetroNavdrawer::open);
    QCOMPARE(drawer.getBackground(), QColor(167, 167, 167));
    COMPARE_IMAGES(drawer.getImageTab().toImage(), libraryTab().toImage());
    QCOMPARE(libraryTab().size(), QSize(50, 52));
    QCOMPARE(drawer.openGeometry, QRect());
    QVERIFY(!drawer.isCheckable());
}

void MetroNavdrawerTest::looks_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("usual") << QSize(252, 90);
    QTest::newRow("smallest") << QSize(62, 76);
    QTest::newRow("large") << QSize(700, 400);
    QTest::newRow("odd") << QSize(151, 101);
}

void MetroNavdrawerTest::looks()
{
    QFETCH(QSize, size);
    Stage<OpenDrawer> drawer(size);
    drawer->setTitle(QStringLiteral("A title is not painted"));
    COMPARE_IMAGES(imageOf(drawer.widget), openImage(size, libraryTab()));
    drawer->setBackground(QColor(20, 60, 90, 128));
    COMPARE_IMAGES(imageOf(drawer.widget), openImage(size, libraryTab(), QColor(20, 60, 90, 128)));
    const QPixmap tab = plainPixmap(QSize(30, 40), Qt::green);
    drawer->setImageTab(tab);
    COMPARE_IMAGES(imageOf(drawer.widget), openImage(size, tab, QColor(20, 60, 90, 128)));
    drawer->setState(MetroNavdrawer::close);
    COMPARE_IMAGES(imageOf(drawer.widget), closedImage(drawer->size(), tab));
}

void MetroNavdrawerTest::opening()
{
    DrawerStage stage;
    stage->setState(MetroNavdrawer::close);
    imageOf(stage.widget);
    const int rightEdge = stage->geometry().right();
    stage->setProperty("state", MetroNavdrawer::open);
    // 100 + 5 + 80 + 5 beside the tab and its margin.
    QCOMPARE(stage->width(), 252);
    QCOMPARE(stage->geometry().right(), rightEdge);
    QCOMPARE(stage->x(), 700 - 190);
    QCOMPARE(stage->openGeometry, stage->geometry());
    QCOMPARE(stage.children[0]->minimumSize(), QSize(100, 100));
    QCOMPARE(stage.children[1]->minimumSize(), QSize(80, 80));
    // A hidden child takes no room.
    QCOMPARE(stage.children[2]->minimumSize(), QSize(0, 0));
    // The children stay where the application put them.
    QCOMPARE(stage.children[0]->pos(), QPoint(62, 5));
    COMPARE_IMAGES(imageOf(stage.widget), openImage(stage->size(), libraryTab()));
}

void MetroNavdrawerTest::openingAgainMovesOn()
{
    DrawerStage stage;
    stage->setState(MetroNavdrawer::open);
    const QRect first = stage->geometry();
    imageOf(stage.widget);
    stage->setState(MetroNavdrawer::open);
    QCOMPARE(stage->geometry(), first.translated(-190, 0));
}

void MetroNavdrawerTest::openingInPlaceStillRebuilds()
{
    // Without children nothing moves, and the image is dropped all the same.
    Stage<OpenDrawer> drawer(QSize(62, 90));
    const QRect before = drawer->geometry();
    QCOMPARE(probe(drawer.widget).effectOf("state", MetroNavdrawer::open),
             QStringLiteral("drops image"));
    QCOMPARE(drawer->geometry(), before);
    drawer->setState(MetroNavdrawer::close);
    QCOMPARE(probe(drawer.widget).effectOf("state", MetroNavdrawer::close),
             QStringLiteral("drops image"));
}

void MetroNavdrawerTest::openingNeedsAImage()
{
    DrawerStage stage;
    const QRect before = stage->geometry();
    stage->setBackground(Qt::red);
    stage->setState(MetroNavdrawer::open);
    QCOMPARE(stage->geometry(), before);
    QCOMPARE(stage.children[0]->minimumSize(), QSize(0, 0));
    QCOMPARE(stage->getState(), MetroNavdrawer::open);
}

void MetroNavdrawerTest::closing()
{
    DrawerStage stage;
    stage->setState(MetroNavdrawer::open);
    const QRect opened = stage->openGeometry;
    const int rightEdge = stage->geometry().right();
    stage->setState(MetroNavdrawer::close);
    QCOMPARE(stage->width(), 62);
    QCOMPARE(stage->geometry().right(), rightEdge);
    QCOMPARE(stage->openGeometry, opened);
    QCOMPARE(stage.children[0]->minimumSize(), QSize(100, 0));
    QCOMPARE(stage.children[1]->minimumSize(), QSize(80, 0));
    QCOMPARE(stage.children[2]->minimumSize(), QSize(0, 0));
    COMPARE_IMAGES(imageOf(stage.widget), closedImage(stage->size(), libraryTab()));
}

void MetroNavdrawerTest::closedSizeAfterAResize()
{
    DrawerStage stage;
    stage->setState(MetroNavdrawer::close);
    deliverAll();
    stage->resize(300, 200);
    QCOMPARE(stage->size(), QSize(62, 76));
    stage->resize(5, 5);
    QCOMPARE(stage->size(), QSize(62, 76));
    // The resize itself schedules nothing; only a move that comes of it would.
    imageOf(stage.widget);
    QResizeEvent resize(QSize(62, 76), QSize(62, 76));
    QCoreApplication::sendEvent(stage.widget, &resize);
    QVERIFY(stage->image);
}

void MetroNavdrawerTest::openIsNeverSmallerThanTheTab()
{
    Stage<OpenDrawer> drawer(QSize(200, 100));
    drawer->resize(61, 75);
    QCOMPARE(drawer->size(), QSize(62, 76));
    drawer->resize(10, 100);
    QCOMPARE(drawer->size(), QSize(62, 100));
    drawer->resize(100, 10);
    QCOMPARE(drawer->size(), QSize(100, 76));
    drawer->resize(62, 76);
    QCOMPARE(drawer->size(), QSize(62, 76));
}

void MetroNavdrawerTest::resizeWhileOpenIsKept()
{
    Stage<OpenDrawer> drawer(QSize(200, 100));
    drawer->QWidget::setGeometry(QRect(30, 40, 220, 120));
    QCOMPARE(drawer->openGeometry, QRect(30, 40, 220, 120));
    QCOMPARE(probe(drawer.widget).effectOf([&] { drawer->resize(230, 120); }),
             QStringLiteral("drops image"));
    QCOMPARE(drawer->openGeometry, QRect(30, 40, 230, 120));
}

void MetroNavdrawerTest::geometryIsKeptOnlyWhileOpen()
{
    QWidget window;
    OpenDrawer drawer(&window);
    drawer.setGeometry(QRect(1, 2, 100, 90));
    QCOMPARE(drawer.openGeometry, QRect(1, 2, 100, 90));
    QCOMPARE(drawer.geometry(), QRect(1, 2, 100, 90));
    drawer.setState(MetroNavdrawer::close);
    drawer.setGeometry(QRect(5, 6, 70, 80));
    QCOMPARE(drawer.openGeometry, QRect(1, 2, 100, 90));
    QCOMPARE(drawer.geometry(), QRect(5, 6, 70, 80));
    drawer.move(QPoint(9, 9));
    QCOMPARE(drawer.openGeometry, QRect(1, 2, 100, 90));
}

void MetroNavdrawerTest::moveStretchesTheKeptGeometry()
{
    QWidget window;
    OpenDrawer drawer(&window);
    drawer.setGeometry(QRect(10, 20, 100, 90));
    drawer.move(QPoint(4, 8));
    QCOMPARE(drawer.geometry(), QRect(4, 8, 100, 90));
    QCOMPARE(drawer.openGeometry, QRect(QPoint(4, 8), QPoint(109, 109)));

    // A move by other ways comes in by its event.
    Stage<OpenDrawer> shown(QSize(100, 90));
    QCOMPARE(probe(shown.widget).effectOf([&] { shown->QWidget::move(33, 44); }),
             QStringLiteral("drops image"));
    QCOMPARE(shown->pos(), QPoint(33, 44));
    QCOMPARE(shown->openGeometry.topLeft(), QPoint(33, 44));
}

void MetroNavdrawerTest::movedFarOff()
{
    Stage<OpenDrawer> drawer(QSize(200, 100));
    drawer->move(QPoint(std::numeric_limits<int>::max(), std::numeric_limits<int>::min()));
    deliverAll();
    QCOMPARE(drawer->geometry(), QRect(1 << 30, -(1 << 30), 200, 100));
    drawer->move(QPoint(7, 9));
    QCOMPARE(drawer->geometry(), QRect(7, 9, 200, 100));
}

void MetroNavdrawerTest::movedAsAWindow()
{
    for (const MetroNavdrawer::state_E state : {MetroNavdrawer::open, MetroNavdrawer::close}) {
        OpenDrawer drawer;
        drawer.show();
        deliverAll();
        drawer.setState(state);
        deliverAll();
        static_cast<QWidget &>(drawer).move(40, 30);
        deliverAll();
        QCOMPARE(drawer.pos(), QPoint(40, 30));
        drawer.move(QPoint(60, 50));
        deliverAll();
        QCOMPARE(drawer.geometry().topLeft(), QPoint(60, 50));
    }
}

void MetroNavdrawerTest::stateOutsideTheEnum()
{
    DrawerStage stage;
    const QRect before = stage->geometry();
    QCOMPARE(probe(stage.widget).effectOf([&] { stage->setState(MetroNavdrawer::state_E(7)); }),
             QStringLiteral("nothing"));
    QCOMPARE(int(stage->getState()), 7);
    QCOMPARE(stage->geometry(), before);
    sendPlain(stage.widget, QEvent::PolishRequest);
    stage->resize(100, 100);
    QCOMPARE(stage->size(), QSize(100, 100));
    COMPARE_IMAGES(imageOf(stage.widget).copy(0, 0, 60, 90), emptyImage(QSize(60, 90)));
    stage->setState(MetroNavdrawer::close);
    QCOMPARE(stage->width(), 62);
}

void MetroNavdrawerTest::leftPressToggles()
{
    DrawerStage stage;
    stage->setCheckable(true);
    stage->setChecked(false);
    const QSignalSpy clicked(stage.widget, &QGroupBox::clicked);
    const QRect before = stage->geometry();
    Mouse::press(stage.widget, QPoint(20, 80));
    QVERIFY(stage->isChecked());
    QCOMPARE(clicked.count(), 1);
    QCOMPARE(clicked.at(0).at(0).toBool(), true);
    Mouse::release(stage.widget, QPoint(20, 80));
    QVERIFY(stage->isChecked());
    Mouse::press(stage.widget, QPoint(20, 80));
    QCOMPARE(clicked.count(), 2);
    QCOMPARE(clicked.at(1).at(0).toBool(), false);
    // The application decides what follows.
    QCOMPARE(stage->getState(), MetroNavdrawer::open);
    QCOMPARE(stage->geometry(), before);
}

void MetroNavdrawerTest::otherButtonsAreIgnored()
{
    DrawerStage stage;
    stage->setCheckable(true);
    const QSignalSpy clicked(stage.widget, &QGroupBox::clicked);
    EventCounter parentEvents(&stage.window);
    Mouse::press(stage.widget, QPoint(20, 80), Qt::RightButton);
    QCOMPARE(clicked.count(), 0);
    QVERIFY(stage->isChecked());
    QCOMPARE(parentEvents.count(QEvent::MouseButtonPress), 1);
}

void MetroNavdrawerTest::uncheckableBoxStillClicks()
{
    DrawerStage stage;
    const QSignalSpy clicked(stage.widget, &QGroupBox::clicked);
    Mouse::press(stage.widget, QPoint(20, 80));
    QCOMPARE(clicked.count(), 1);
    QCOMPARE(clicked.at(0).at(0).toBool(), false);
}

void MetroNavdrawerTest::effects()
{
    Stage<OpenDrawer> drawer(QSize(100, 90));
    CacheProbe caches = probe(drawer.widget);
    const QString drops = QStringLiteral("drops image");
    const QString nothing = QStringLiteral("nothing");
    QCOMPARE(caches.effectOf("background", QColor(Qt::red)), drops);
    QCOMPARE(caches.effectOf("background", QColor(Qt::red)), drops);
    QCOMPARE(caches.effectOf("ImageTab", libraryTab()), drops);
    QCOMPARE(caches.effectOf("state", MetroNavdrawer::open), drops);
    QCOMPARE(caches.effectOf([&] { drawer->setEnabled(false); }), drops);
    QCOMPARE(caches.effectOf([&] { drawer->setContentsMargins(3, 3, 3, 3); }), drops);
    QCOMPARE(caches.effectOf(QEvent::PolishRequest), drops);
    QCOMPARE(caches.effectOf(QEvent::UpdateRequest), drops);
    QCOMPARE(caches.effectOf([&] { delete new QObject(drawer.widget); }), nothing);
    QCOMPARE(caches.effectOf(QEvent::Enter), nothing);
    QCOMPARE(caches.effectOf([&] {
        drawer->MetroStyle::setState({4, 5});
    }),
             QStringLiteral("posts, drops image"));
}

void MetroNavdrawerTest::childrenWithoutAWidth()
{
    DrawerStage stage;
    // Children are addressed by property names alone; one that lacks them counts for nothing.
    new QObject(stage.widget);
    auto *like = new QObject(stage.widget);
    like->setProperty("visible", true);
    like->setProperty("width", 30);
    stage->setState(MetroNavdrawer::open);
    QCOMPARE(stage->width(), 252 + 35);
    QCOMPARE(like->property("minimumSize").toSize(), QSize(30, 30));
}

void MetroNavdrawerTest::childWithAnAbsurdWidth()
{
    DrawerStage stage;
    auto *like = new QObject(stage.widget);
    like->setProperty("visible", true);
    like->setProperty("width", std::numeric_limits<int>::min());
    stage->setState(MetroNavdrawer::open);
    // No room below the negative of the largest that a widget can have.
    QCOMPARE(stage->openGeometry.topLeft(), QPoint(700 + QWIDGETSIZE_MAX, 50));
}

void MetroNavdrawerTest::childDeletesItsSibling()
{
    /// Deletes another widget when it is resized.
    class Jealous : public QWidget
    {
    public:
        using QWidget::QWidget;
        QPointer<QWidget> rival;

    protected:
        void resizeEvent(QResizeEvent *) override
        {
            delete rival;
        }
    };
    DrawerStage stage;
    auto *jealous = new Jealous(stage.widget);
    jealous->setGeometry(0, 0, 40, 10);
    jealous->show();
    auto *last = new QWidget(stage.widget);
    last->setGeometry(0, 0, 50, 10);
    last->show();
    deliverAll();
    imageOf(stage.widget);
    jealous->rival = last;
    stage->setState(MetroNavdrawer::open);
    QVERIFY(!jealous->rival);
    QCOMPARE(stage->width(), 252 + 45);
}

void MetroNavdrawerTest::childDeletesTheDrawer()
{
    class Rebel : public QObject
    {
    public:
        explicit Rebel(QObject *parent)
            : QObject(parent)
        {
            setProperty("visible", true);
            setProperty("width", 10);
            victim = parent;
        }
        bool event(QEvent *change) override
        {
            if (change->type() != QEvent::DynamicPropertyChange || !armed)
                return QObject::event(change);
            setParent(nullptr);
            delete victim;
            return true;
        }
        bool armed = false;
        QPointer<QObject> victim;
    };
    DrawerStage stage;
    auto *rebel = new Rebel(stage.widget);
    deliverAll();
    imageOf(stage.widget);
    rebel->armed = true;
    const QPointer<OpenDrawer> watched(stage.widget);
    stage->setState(MetroNavdrawer::open);
    QVERIFY(!watched);
    delete rebel;
}

void MetroNavdrawerTest::nullImageIsReported()
{
    OpenDrawer drawer(nullptr);
    drawer.setObjectName(QStringLiteral("cassetto"));
    drawer.resize(0, 0);
    sendPaint(&drawer);
    QCOMPARE(takeErrorLines(),
             QList<ErrorLine>(
                 {{QStringLiteral("KivWidgets/metronavdrawer.cpp"), QStringLiteral("paintImage"),
                   QStringLiteral("Nel controllo cassetto Image e' NULL")}}));
    takeWarnings();
}

KIV_LAYOUT(MetroNavdrawer, 0, KIV_BASE(QGroupBox), KIV_BASE(MetroStyle), KIV_FIELD(state),
           KIV_FIELD(background), KIV_FIELD(openGeometry), KIV_FIELD(image), KIV_FIELD(ImageTab));

void MetroNavdrawerTest::layout()
{
    QCOMPARE(LayoutMetroNavdrawer::problem(), QString());
}

KIV_TEST_MAIN(MetroNavdrawerTest)

#include "tst_metronavdrawer.moc"

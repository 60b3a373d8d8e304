// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "aeroswitch.h"

#include "cacheprobe.h"
#include "glasspanel.h"
#include "icons.h"
#include "images.h"
#include "layout.h"
#include "testmain.h"

#include <QtCore/QPointer>
#include <QtGui/QPainter>
#include <QtTest/QSignalSpy>

namespace {

class OpenSwitch : public AeroSwitch
{
public:
    using AeroSwitch::AeroSwitch;
    using AeroSwitch::image;
    using AeroSwitch::imagePressed;
};

CacheProbe probe(OpenSwitch *control)
{
    return CacheProbe(control,
                      {{"image", &control->image}, {"imagePressed", &control->imagePressed}});
}

/// The switch with its text, in a panel colour.
QImage switchImage(QSize size, const GlassPanel &panel, const QString &text = QString(),
                   const QColor &ink = Qt::white, bool bold = true)
{
    const QImage finished = drawnImage(size, [&](QPainter *painter) {
        panel.draw(painter, size);
        if (text.isNull())
            return;
        QFont font = QApplication::font();
        font.setBold(bold);
        const QFontMetrics metrics(font);
        const int width = metrics.size(Qt::TextSingleLine, text).width();
        painter->setOpacity(1.0);
        painter->setFont(font);
        painter->setPen(ink);
        painter->drawText(QPointF((size.width() - width) / 2 - 1,
                                  (size.height() - metrics.height()) / 2 + metrics.ascent()),
                          text);
    });
    return faded(finished, panel.opacity);
}

GlassPanel panelOf(const QColor &color)
{
    GlassPanel panel;
    panel.color = color;
    return panel;
}

} // namespace

class AeroSwitchTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void metaObject();
    void layout();
    void defaults();
    void looks_data();
    void looks();
    void iconStates();
    void rotationAndOpacity();
    void effects();
    void textColourLeavesTheCheckedImage();
    void mouseClickShowsTheOtherImage();
    void select();
    void clickedSwitchTwice();
    void deletedWhileClicked();
    void nullImagesAreReported();
};

void AeroSwitchTest::metaObject()
{
    const QMetaObject &meta = AeroSwitch::staticMetaObject;
    QCOMPARE(meta.superClass()->className(), "AeroButton");
    QCOMPARE(declaredProperties(meta), QStringList({QStringLiteral("highlight QColor")}));
    QCOMPARE(declaredMethods(meta), QStringList());
}

void AeroSwitchTest::defaults()
{
    const AeroSwitch control(nullptr);
    QVERIFY(control.isCheckable());
    QVERIFY(!control.isChecked());
    QCOMPARE(control.property("highlight").value<QColor>(), QColor(Qt::lightGray));
}

void AeroSwitchTest::looks_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("usual") << QSize(120, 40);
    QTest::newRow("odd") << QSize(81, 33);
    QTest::newRow("one pixel") << QSize(1, 1);
    QTest::newRow("tall") << QSize(20, 90);
    QTest::newRow("large") << QSize(600, 200);
}

void AeroSwitchTest::looks()
{
    QFETCH(QSize, size);
    Stage<OpenSwitch> control(size);
    const QString text = QStringLiteral("Bypass");
    const QColor color(40, 90, 120);
    const QColor highlight(0, 174, 240, 200);
    control->setColor(color);
    control->setHighlight(highlight);
    control->setText(text);
    deliverAll();
    COMPARE_IMAGES(imageOf(control.widget), switchImage(size, panelOf(color), text));
    control->setChecked(true);
    COMPARE_IMAGES(imageOf(control.widget), switchImage(size, panelOf(highlight), text));
    control->setEnabled(false);
    COMPARE_IMAGES(imageOf(control.widget), switchImage(size, panelOf(highlight).disabled(), text));
    control->setChecked(false);
    COMPARE_IMAGES(imageOf(control.widget), switchImage(size, panelOf(color).disabled(), text));
}

void AeroSwitchTest::iconStates()
{
    // Both images are painted together, so both show the icon of the state at that time.
    Stage<OpenSwitch> control;
    control->setIcon(telltaleIcon(QSize(16, 16)));
    deliverAll();
    const auto middle = [&] { return imageOf(control.widget).pixelColor(50, 20); };
    QCOMPARE(middle(), QColor(Qt::red));
    control->setChecked(true);
    QCOMPARE(middle(), QColor(Qt::red));
    control->clickedSwitch();
    control->clickedSwitch();
    QCOMPARE(middle(), QColor(Qt::green));
}

void AeroSwitchTest::rotationAndOpacity()
{
    Stage<OpenSwitch> control;
    control->setChecked(true);
    control->setOpacity(0.5);
    deliverAll();
    GlassPanel panel = panelOf(Qt::lightGray);
    panel.opacity = 0.5;
    COMPARE_IMAGES(imageOf(control.widget), switchImage(control->size(), panel));
    control->setOpacity(1.0);
    deliverAll();
    const QImage straight = imageOf(control.widget);
    control->setRotate(60.0);
    const QImage turned = drawnImage(control->size(), [&](QPainter *painter) {
        QTransform turn;
        turn.translate(50, 20);
        turn.rotate(60.0, Qt::YAxis);
        turn.translate(-50, -20);
        painter->setTransform(turn);
        painter->drawImage(0, 0, straight);
    });
    COMPARE_IMAGES(imageOf(control.widget), turned);
}

void AeroSwitchTest::effects()
{
    Stage<OpenSwitch> control;
    CacheProbe caches = probe(control.widget);
    const QString both = QStringLiteral("drops image,imagePressed");
    const QString posted = QStringLiteral("posts, drops image,imagePressed");
    const QString nothing = QStringLiteral("nothing");
    QCOMPARE(caches.effectOf("highlight", QColor(Qt::red)), QStringLiteral("drops imagePressed"));
    QCOMPARE(caches.effectOf("highlight", QColor(Qt::red)), nothing);
    QCOMPARE(caches.effectOf("colorText", QColor(Qt::red)), QStringLiteral("drops image"));
    QCOMPARE(caches.effectOf("colorText", QColor(Qt::red)), nothing);
    QCOMPARE(caches.effectOf("bold", false), QStringLiteral("drops image"));
    QCOMPARE(caches.effectOf("bold", false), nothing);
    QCOMPARE(caches.effectOf("rotate", 10.0), QStringLiteral("updates"));
    QCOMPARE(caches.effectOf("color", QColor(Qt::red)), posted);
    QCOMPARE(caches.effectOf("roundness", 3), posted);
    QCOMPARE(caches.effectOf([&] { control->setText(QStringLiteral("x")); }), posted);
    QCOMPARE(caches.effectOf([&] { control->setIcon(QIcon()); }), posted);
    QCOMPARE(caches.effectOf([&] { control->resize(90, 30); }), both);
    QCOMPARE(caches.effectOf([&] { control->setEnabled(false); }), both);
    QCOMPARE(caches.effectOf([&] { delete new QObject(control.widget); }), both);
    QCOMPARE(caches.effectOf(QEvent::PolishRequest), both);
    QCOMPARE(caches.effectOf(QEvent::UpdateRequest), both);
    QCOMPARE(caches.effectOf([&] { control->setChecked(true); }), QStringLiteral("updates"));
    QCOMPARE(caches.effectOf([&] { new QObject(control.widget); }), nothing);
}

void AeroSwitchTest::textColourLeavesTheCheckedImage()
{
    Stage<OpenSwitch> control;
    control->setText(QStringLiteral("Text"));
    control->setChecked(true);
    deliverAll();
    const QImage checked = imageOf(control.widget);
    control->setColorText(Qt::yellow);
    control->setTextBold(false);
    deliverAll();
    COMPARE_IMAGES(imageOf(control.widget), checked);
    control->setChecked(false);
    COMPARE_IMAGES(imageOf(control.widget), switchImage(control->size(), panelOf(Qt::gray),
                                                        QStringLiteral("Text"), Qt::yellow, false));
    sendPlain(control.widget, QEvent::PolishRequest);
    control->setChecked(true);
    COMPARE_IMAGES(imageOf(control.widget), switchImage(control->size(), panelOf(Qt::lightGray),
                                                        QStringLiteral("Text"), Qt::yellow, false));
}

void AeroSwitchTest::mouseClickShowsTheOtherImage()
{
    Stage<OpenSwitch> control;
    imageOf(control.widget);
    const QImage *unchecked = control->image;
    const QImage *checked = control->imagePressed;
    QTest::mouseClick(control.widget, Qt::LeftButton);
    QVERIFY(control->isChecked());
    COMPARE_IMAGES(imageOf(control.widget), switchImage(control->size(), panelOf(Qt::lightGray)));
    QCOMPARE(control->image, unchecked);
    QCOMPARE(control->imagePressed, checked);
}

void AeroSwitchTest::select()
{
    Stage<OpenSwitch> control;
    const QSignalSpy toggled(control.widget, &AeroSwitch::toggled);
    EventCounter events(control.widget);
    control->selectSwitch();
    // Painted at once, not by the event loop.
    QVERIFY(control->isChecked());
    QCOMPARE(events.count(QEvent::Paint), 1);
    deliverAll();
    events.reset();
    control->selectSwitch();
    deliverAll();
    QCOMPARE(events.count(QEvent::Paint), 0);
    control->unselectSwitch();
    QVERIFY(!control->isChecked());
    QCOMPARE(events.count(QEvent::Paint), 1);
    deliverAll();
    events.reset();
    control->unselectSwitch();
    deliverAll();
    QCOMPARE(events.count(QEvent::Paint), 0);
    QCOMPARE(toggled.count(), 2);
}

void AeroSwitchTest::clickedSwitchTwice()
{
    Stage<OpenSwitch> control;
    EventCounter events(control.widget);
    imageOf(control.widget);
    events.reset();
    control->clickedSwitch();
    QVERIFY(control->isChecked());
    QCOMPARE(events.count(QEvent::Paint), 1);
    control->clickedSwitch();
    QVERIFY(!control->isChecked());
    QCOMPARE(events.count(QEvent::Paint), 2);
    QCOMPARE(probe(control.widget).effectOf([&] { control->clickedSwitch(); }),
             QStringLiteral("drops image,imagePressed"));
}

void AeroSwitchTest::deletedWhileClicked()
{
    Stage<OpenSwitch> control;
    const QPointer<OpenSwitch> watched(control.widget);
    connect(control.widget, &AeroSwitch::clicked, this, [&] { delete watched.data(); });
    QTest::mouseClick(control.widget, Qt::LeftButton);
    QVERIFY(!watched);
}

void AeroSwitchTest::nullImagesAreReported()
{
    OpenSwitch control(nullptr);
    control.setObjectName(QStringLiteral("interruttore"));
    control.resize(0, 0);
    sendPaint(&control);
    QCOMPARE(takeErrorLines(),
             QList<ErrorLine>(
                 {{QStringLiteral("KivWidgets/aerobutton.cpp"), QStringLiteral("paintImage"),
                   QStringLiteral("Nel controllo interruttore Image e' NULL")},
                  {QStringLiteral("KivWidgets/aeroswitch.cpp"), QStringLiteral("paintImagePressed"),
                   QStringLiteral("Nel controllo interruttore ImagePressed e' NULL")}}));
    sendPaint(&control);
    QCOMPARE(takeErrorLines(), QList<ErrorLine>());
    takeWarnings();
}

KIV_LAYOUT(AeroSwitch, 0, KIV_BASE(AeroButton), KIV_FIELD(highlight), KIV_FIELD(imagePressed));

void AeroSwitchTest::layout()
{
    QCOMPARE(LayoutAeroSwitch::problem(), QString());
}

KIV_TEST_MAIN(AeroSwitchTest)

#include "tst_aeroswitch.moc"

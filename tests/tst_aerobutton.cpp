// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "aerobutton.h"

#include "freshness.h"
#include "glasspanel.h"
#include "icons.h"
#include "images.h"
#include "layout.h"
#include "testmain.h"
#include "widgetprobe.h"

#include <QtCore/QScopeGuard>
#include <QtGui/QPainter>

#include <limits>

namespace {

/// Counts the rebuilds of the image from outside: each calls paintText once.
class CountingButton : public AeroButton
{
public:
    using AeroButton::AeroButton;
    int rebuilds = 0;

protected:
    void paintText(QPainter *painter) override
    {
        ++rebuilds;
        AeroButton::paintText(painter);
    }
};

QFont labelFont(bool bold)
{
    QFont font = QApplication::font();
    font.setBold(bold);
    return font;
}

void drawLabel(QPainter *painter, int x, int height, const QString &text, const QColor &color,
               bool bold = true)
{
    const QFont font = labelFont(bold);
    const QFontMetrics metrics(font);
    painter->setFont(font);
    painter->setPen(color);
    painter->setOpacity(1.0);
    painter->drawText(QPointF(x, (height - metrics.height()) / 2 + metrics.ascent()), text);
}

int labelWidth(const QString &text, bool bold = true)
{
    return QFontMetrics(labelFont(bold)).size(Qt::TextSingleLine, text).width();
}

/// A button as it should look: a panel and, over it, what @p content draws.
QImage buttonImage(
    const GlassPanel &panel, QSize size,
    const std::function<void(QPainter *)> &content = [](QPainter *) {})
{
    const QImage finished = drawnImage(size, [&](QPainter *painter) {
        panel.draw(painter, size);
        content(painter);
    });
    return faded(finished, panel.opacity);
}

} // namespace

class AeroButtonTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void ampersand();
    void metaObject();
    void layout();
    void defaults();
    void panel_data();
    void panel();
    void disabledPanel();
    void text_data();
    void text();
    void fontsOfOneLook();
    void icon_data();
    void icon();
    void iconModeAndState();
    void iconAndText();
    void iconNeedsTwoPixelsOfRoom_data();
    void iconNeedsTwoPixelsOfRoom();
    void opacityCountsTwice();
    void rotation_data();
    void rotation();
    void edgeOnShowsNothing();
    void styleSettersPost_data();
    void styleSettersPost();
    void lookSettersActAtOnce_data();
    void lookSettersActAtOnce();
    void rotateKeepsTheImage();
    void textAndIconPost();
    void baseClassSettersDoNotRebuild();
    void aeroPropertyPair();
    void droppingEvents_data();
    void droppingEvents();
    void otherEventsKeepTheImage_data();
    void otherEventsKeepTheImage();
    void mutatedEqualsFresh_data();
    void mutatedEqualsFresh();
    void nullImageIsReported();
    void extremeSettingsAreHarmless_data();
    void extremeSettingsAreHarmless();
};

void AeroButtonTest::ampersand()
{
    // It is drawn, and still makes the letter after it a shortcut.
    Stage<AeroButton> button(QSize(120, 40));
    button->setColorText(Qt::white);
    button->setText(QStringLiteral("R&D"));
    QCOMPARE(button->shortcut(), QKeySequence(QStringLiteral("Alt+D")));
    deliverAll();
    const QImage withShortcut = imageOf(button.widget);
    button->setText(QStringLiteral("RD"));
    deliverAll();
    QVERIFY(!differenceOf(imageOf(button.widget), withShortcut).isEmpty());
}

void AeroButtonTest::metaObject()
{
    const QMetaObject &meta = AeroButton::staticMetaObject;
    QCOMPARE(meta.className(), "AeroButton");
    QCOMPARE(meta.superClass()->className(), "QAbstractButton");
    QCOMPARE(declaredProperties(meta),
             QStringList({QStringLiteral("color QColor"), QStringLiteral("shadow QColor"),
                          QStringLiteral("colorPen QColor"), QStringLiteral("widthPen int"),
                          QStringLiteral("opacity double"), QStringLiteral("roundness int"),
                          QStringLiteral("colorText QColor"), QStringLiteral("bold bool"),
                          QStringLiteral("rotate double")}));
    QCOMPARE(declaredMethods(meta), QStringList());
}

void AeroButtonTest::defaults()
{
    const AeroButton button(nullptr);
    QCOMPARE(button.property("color").value<QColor>(), QColor(Qt::gray));
    QCOMPARE(button.property("shadow").value<QColor>(), QColor(Qt::black));
    QCOMPARE(button.property("colorPen").value<QColor>(), QColor(Qt::black));
    QCOMPARE(button.property("widthPen").toInt(), 2);
    QCOMPARE(button.property("opacity").toDouble(), 1.0);
    QCOMPARE(button.property("roundness").toInt(), 25);
    QCOMPARE(button.property("colorText").value<QColor>(), QColor(Qt::white));
    QCOMPARE(button.property("bold").toBool(), true);
    QCOMPARE(button.property("rotate").toDouble(), 0.0);
    QVERIFY(!button.isCheckable());
}

void AeroButtonTest::panel_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("widthPen");
    QTest::addColumn<int>("roundness");
    QTest::newRow("usual") << QSize(100, 32) << 2 << 25;
    QTest::newRow("square corners") << QSize(100, 32) << 2 << 0;
    QTest::newRow("fully round") << QSize(100, 32) << 2 << 100;
    QTest::newRow("no outline") << QSize(100, 32) << 0 << 25;
    QTest::newRow("no outline, square") << QSize(100, 32) << 0 << 0;
    QTest::newRow("thick outline") << QSize(100, 32) << 7 << 40;
    QTest::newRow("outline wider than the button") << QSize(20, 12) << 30 << 25;
    QTest::newRow("taller than wide") << QSize(30, 90) << 3 << 60;
    QTest::newRow("odd sides") << QSize(101, 33) << 2 << 25;
    QTest::newRow("one pixel") << QSize(1, 1) << 2 << 25;
    QTest::newRow("one row") << QSize(80, 1) << 2 << 25;
    QTest::newRow("large") << QSize(800, 480) << 2 << 25;
    QTest::newRow("negative roundness") << QSize(60, 30) << 2 << -50;
    QTest::newRow("negative width") << QSize(60, 30) << -4 << 25;
}

void AeroButtonTest::panel()
{
    QFETCH(QSize, size);
    QFETCH(int, widthPen);
    QFETCH(int, roundness);
    Stage<AeroButton> button(size);
    GlassPanel panel;
    panel.color = QColor(20, 120, 200, 180);
    panel.shadow = QColor(10, 20, 60);
    panel.colorPen = QColor(200, 30, 40);
    panel.widthPen = widthPen;
    panel.roundness = roundness;
    button->setProperty("color", panel.color);
    button->setProperty("shadow", panel.shadow);
    button->setProperty("colorPen", panel.colorPen);
    button->setProperty("widthPen", widthPen);
    button->setProperty("roundness", roundness);
    deliverAll();
    COMPARE_IMAGES(imageOf(button.widget), buttonImage(panel, size));
}

void AeroButtonTest::disabledPanel()
{
    Stage<AeroButton> button;
    GlassPanel panel;
    panel.color = QColor(0, 0, 255);
    panel.shadow = QColor(120, 40, 10, 99);
    panel.colorPen = QColor(Qt::darkGreen);
    button->setColor(panel.color);
    button->setShadow(panel.shadow);
    button->setColorPen(panel.colorPen);
    button->setEnabled(false);
    deliverAll();
    // Blue with half its saturation at full brightness.
    QCOMPARE(panel.disabled().color, QColor::fromHsv(240, 127, 255));
    COMPARE_IMAGES(imageOf(button.widget), buttonImage(panel.disabled(), button->size()));
    button->setEnabled(true);
    COMPARE_IMAGES(imageOf(button.widget), buttonImage(panel, button->size()));
}

void AeroButtonTest::text_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("bold");
    QTest::newRow("bold") << QStringLiteral("Start") << true;
    QTest::newRow("normal weight") << QStringLiteral("Start") << false;
    QTest::newRow("empty") << QStringLiteral("") << true;
    QTest::newRow("wider than the button")
        << QStringLiteral("Emergency power off of the bypass") << true;
    QTest::newRow("non-Latin") << QString::fromUtf8("Батарея ≥ 90 %") << true;
}

void AeroButtonTest::text()
{
    QFETCH(QString, text);
    QFETCH(bool, bold);
    Stage<AeroButton> button(QSize(101, 33));
    button->setColorText(Qt::yellow);
    button->setTextBold(bold);
    button->setText(text);
    deliverAll();
    COMPARE_IMAGES(
        imageOf(button.widget), buttonImage(GlassPanel(), button->size(), [&](QPainter *painter) {
            drawLabel(painter, (101 - labelWidth(text, bold)) / 2 - 1, 33, text, Qt::yellow, bold);
        }));
}

/// Two buttons whose fonts have the same data, but of which only one's is set on the button itself:
/// a painter takes what is not set from its own device, so they are drawn differently.
void AeroButtonTest::fontsOfOneLook()
{
    const auto restore = qScopeGuard(
        [font = QApplication::font("AeroButton")] { QApplication::setFont(font, "AeroButton"); });
    Stage<AeroButton> own(QSize(200, 60));
    QFont large = own->font();
    large.setPointSize(24);
    own->setFont(large);
    QApplication::setFont(own->font(), "AeroButton");
    Stage<AeroButton> general(QSize(200, 60));
    const QString text = QStringLiteral("Load");
    for (AeroButton *button : {own.widget, general.widget}) {
        button->setText(text);
        deliverAll();
        COMPARE_IMAGES(
            imageOf(button), buttonImage(GlassPanel(), button->size(), [&](QPainter *painter) {
                QFont font = button->font();
                font.setWeight(QFont::Bold);
                const QFontMetrics metrics(font);
                painter->setFont(font);
                painter->setPen(Qt::white);
                painter->setOpacity(1.0);
                painter->drawText(
                    QPointF((200 - metrics.size(Qt::TextSingleLine, text).width()) / 2 - 1,
                            (60 - metrics.height()) / 2 + metrics.ascent()),
                    text);
            }));
    }
}

void AeroButtonTest::icon_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("wide") << QSize(100, 40);
    QTest::newRow("odd") << QSize(57, 41);
    QTest::newRow("tight") << QSize(22, 14);
}

void AeroButtonTest::icon()
{
    QFETCH(QSize, size);
    Stage<AeroButton> button(size);
    button->setIconSize(QSize(20, 12));
    button->setIcon(telltaleIcon(QSize(20, 12)));
    deliverAll();
    COMPARE_IMAGES(imageOf(button.widget), buttonImage(GlassPanel(), size, [&](QPainter *painter) {
                       painter->setOpacity(1.0);
                       painter->drawPixmap((size.width() - 20) / 2, (size.height() - 12) / 2,
                                           plainPixmap(QSize(20, 12), Qt::red));
                   }));
}

void AeroButtonTest::iconModeAndState()
{
    Stage<AeroButton> button;
    button->setCheckable(true);
    button->setIcon(telltaleIcon(QSize(16, 16)));
    deliverAll();
    const auto middle = [&] { return imageOf(button.widget).pixelColor(50, 20); };
    QCOMPARE(middle(), QColor(Qt::red));
    // A changed checked state alone leaves the old image.
    button->setChecked(true);
    deliverAll();
    QCOMPARE(middle(), QColor(Qt::red));
    button->resize(100, 42);
    deliverAll();
    QCOMPARE(middle(), QColor(Qt::green));
    button->setEnabled(false);
    QCOMPARE(middle(), QColor(Qt::yellow));
    button->setChecked(false);
    button->resize(100, 40);
    QCOMPARE(middle(), QColor(Qt::blue));
}

void AeroButtonTest::iconAndText()
{
    Stage<AeroButton> button(QSize(121, 41));
    const QString text = QStringLiteral("Load");
    button->setText(text);
    button->setIcon(telltaleIcon(QSize(16, 16)));
    deliverAll();
    COMPARE_IMAGES(imageOf(button.widget),
                   buttonImage(GlassPanel(), button->size(), [&](QPainter *painter) {
                       const int x = (121 - (labelWidth(text) + 16)) / 2;
                       painter->setOpacity(1.0);
                       painter->drawPixmap(x, (41 - 16) / 2, plainPixmap(QSize(16, 16), Qt::red));
                       drawLabel(painter, x + 16, 41, text, Qt::white);
                   }));
}

void AeroButtonTest::iconNeedsTwoPixelsOfRoom_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<bool>("shows");
    QTest::newRow("two pixels larger") << QSize(18, 18) << true;
    QTest::newRow("one pixel wider") << QSize(17, 40) << false;
    QTest::newRow("one pixel higher") << QSize(40, 17) << false;
    QTest::newRow("as large") << QSize(16, 16) << false;
    QTest::newRow("smaller") << QSize(12, 12) << false;
}

void AeroButtonTest::iconNeedsTwoPixelsOfRoom()
{
    QFETCH(QSize, size);
    QFETCH(bool, shows);
    Stage<AeroButton> button(size);
    button->setIcon(telltaleIcon(QSize(16, 16)));
    deliverAll();
    COMPARE_IMAGES(imageOf(button.widget), buttonImage(GlassPanel(), size, [&](QPainter *painter) {
                       painter->setOpacity(1.0);
                       if (shows)
                           painter->drawPixmap(1, 1, plainPixmap(QSize(16, 16), Qt::red));
                   }));
}

void AeroButtonTest::opacityCountsTwice()
{
    Stage<AeroButton> button;
    const QString text = QStringLiteral("Faint");
    button->setText(text);
    button->setOpacity(0.5);
    deliverAll();
    GlassPanel panel;
    panel.opacity = 0.5;
    COMPARE_IMAGES(imageOf(button.widget),
                   buttonImage(panel, button->size(), [&](QPainter *painter) {
                       drawLabel(painter, (100 - labelWidth(text)) / 2 - 1, 40, text, Qt::white);
                   }));
}

void AeroButtonTest::rotation_data()
{
    QTest::addColumn<double>("angle");
    QTest::newRow("a little") << 30.0;
    QTest::newRow("back side") << 150.0;
    QTest::newRow("half a turn") << 180.0;
    QTest::newRow("negative") << -45.0;
}

void AeroButtonTest::rotation()
{
    QFETCH(double, angle);
    Stage<AeroButton> button(QSize(101, 41));
    button->setText(QStringLiteral("Turn"));
    deliverAll();
    const QImage straight = imageOf(button.widget);
    button->setRotate(angle);
    const QImage expected = drawnImage(button->size(), [&](QPainter *painter) {
        QTransform turn;
        turn.translate(50, 20);
        turn.rotate(angle, Qt::YAxis);
        turn.translate(-50, -20);
        painter->setTransform(turn);
        painter->drawImage(QRect(0, 0, 101, 41), straight);
    });
    COMPARE_IMAGES(imageOf(button.widget), expected);
    QVERIFY(!differenceOf(imageOf(button.widget), straight).isEmpty());
}

void AeroButtonTest::edgeOnShowsNothing()
{
    Stage<AeroButton> button;
    button->setRotate(90.0);
    COMPARE_IMAGES(imageOf(button.widget), emptyImage(button->size()));
}

void AeroButtonTest::styleSettersPost_data()
{
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QVariant>("value");
    QTest::newRow("color") << QByteArray("color") << QVariant(QColor(Qt::red));
    QTest::newRow("shadow") << QByteArray("shadow") << QVariant(QColor(Qt::red));
    QTest::newRow("colorPen") << QByteArray("colorPen") << QVariant(QColor(Qt::red));
    QTest::newRow("widthPen") << QByteArray("widthPen") << QVariant(5);
    QTest::newRow("opacity") << QByteArray("opacity") << QVariant(0.5);
    QTest::newRow("roundness") << QByteArray("roundness") << QVariant(80);
}

void AeroButtonTest::styleSettersPost()
{
    QFETCH(QByteArray, property);
    QFETCH(QVariant, value);
    Stage<CountingButton> button;
    button->rebuilds = 0;
    button->setProperty(property, value);
    QCOMPARE(button->property(property), value);
    imageOf(button.widget);
    QCOMPARE(button->rebuilds, 0);
    QVERIFY(takesUpdateRequest(button.widget));
    imageOf(button.widget);
    QCOMPARE(button->rebuilds, 1);

    EventCounter events(button.widget);
    button->setProperty(property, value);
    QVERIFY(!takesUpdateRequest(button.widget));
    deliverAll();
    QCOMPARE(events.count(QEvent::Paint), 0);
    QCOMPARE(button->rebuilds, 1);
}

void AeroButtonTest::lookSettersActAtOnce_data()
{
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QVariant>("value");
    QTest::newRow("colorText") << QByteArray("colorText") << QVariant(QColor(Qt::red));
    QTest::newRow("bold") << QByteArray("bold") << QVariant(false);
}

void AeroButtonTest::lookSettersActAtOnce()
{
    QFETCH(QByteArray, property);
    QFETCH(QVariant, value);
    Stage<CountingButton> button;
    button->setText(QStringLiteral("Text"));
    deliverAll();
    button->rebuilds = 0;
    EventCounter events(button.widget);
    button->setProperty(property, value);
    QVERIFY(!takesUpdateRequest(button.widget));
    deliverAll();
    QCOMPARE(events.count(QEvent::Paint), 1);
    QCOMPARE(button->rebuilds, 1);

    events.reset();
    button->setProperty(property, value);
    deliverAll();
    QCOMPARE(events.count(QEvent::Paint), 0);
}

void AeroButtonTest::rotateKeepsTheImage()
{
    Stage<CountingButton> button;
    button->rebuilds = 0;
    EventCounter events(button.widget);
    button->setRotate(12.5);
    QVERIFY(!takesUpdateRequest(button.widget));
    deliverAll();
    QCOMPARE(events.count(QEvent::Paint), 1);
    button->setRotate(12.5);
    deliverAll();
    QCOMPARE(events.count(QEvent::Paint), 1);
    QCOMPARE(button->rebuilds, 0);
}

void AeroButtonTest::textAndIconPost()
{
    Stage<CountingButton> button;
    button->setText(QStringLiteral("Same"));
    deliverAll();
    button->rebuilds = 0;
    button->setText(QStringLiteral("Same"));
    imageOf(button.widget);
    QCOMPARE(button->rebuilds, 0);
    QVERIFY(takesUpdateRequest(button.widget));
    deliverAll();
    QCOMPARE(button->rebuilds, 1);
    button->setIcon(QIcon());
    QVERIFY(takesUpdateRequest(button.widget));
    deliverAll();
    QCOMPARE(button->rebuilds, 2);
}

void AeroButtonTest::baseClassSettersDoNotRebuild()
{
    Stage<CountingButton> button;
    button->rebuilds = 0;
    button->setProperty("text", QStringLiteral("Unseen"));
    button->QAbstractButton::setIcon(telltaleIcon(QSize(16, 16)));
    button->setIconSize(QSize(20, 20));
    button->setFont(QFont(QStringLiteral("DejaVu Sans"), 14));
    deliverAll();
    QCOMPARE(button->rebuilds, 0);
}

void AeroButtonTest::aeroPropertyPair()
{
    Stage<AeroButton> button;
    QColor red(Qt::red);
    QColor green(Qt::green);
    QColor blue(Qt::blue);
    button->setAeroProperty(nullptr, nullptr);
    QVERIFY(!takesUpdateRequest(button.widget));
    button->setAeroProperty(&red, &green);
    QVERIFY(takesUpdateRequest(button.widget));
    QCOMPARE(button->getColor(), red);
    QCOMPARE(button->getShadow(), green);
    button->setAeroProperty(&red, &green);
    QVERIFY(!takesUpdateRequest(button.widget));
    button->setAeroProperty(nullptr, &blue);
    QVERIFY(takesUpdateRequest(button.widget));
    QCOMPARE(button->getShadow(), blue);
    button->setAeroProperty(&blue, nullptr);
    QVERIFY(takesUpdateRequest(button.widget));
    QCOMPARE(button->getColor(), blue);
    QCOMPARE(button->getShadow(), blue);
    button->setAeroProperty(&blue, &green);
    QVERIFY(takesUpdateRequest(button.widget));
    QCOMPARE(button->getShadow(), green);
}

void AeroButtonTest::droppingEvents_data()
{
    QTest::addColumn<int>("type");
    QTest::newRow("Resize") << int(QEvent::Resize);
    QTest::newRow("EnabledChange") << int(QEvent::EnabledChange);
    QTest::newRow("ChildRemoved") << int(QEvent::ChildRemoved);
    QTest::newRow("PolishRequest") << int(QEvent::PolishRequest);
    QTest::newRow("UpdateRequest") << int(QEvent::UpdateRequest);
}

void AeroButtonTest::droppingEvents()
{
    QFETCH(int, type);
    Stage<CountingButton> button;
    button->rebuilds = 0;
    EventCounter events(button.widget);
    if (type == QEvent::Resize) {
        button->resize(90, 30);
    } else if (type == QEvent::EnabledChange) {
        button->setEnabled(false);
    } else if (type == QEvent::ChildRemoved) {
        auto *child = new QObject(button.widget);
        deliverAll();
        QCOMPARE(button->rebuilds, 0);
        delete child;
    } else {
        QEvent event{QEvent::Type(type)};
        QCoreApplication::sendEvent(button.widget, &event);
    }
    deliverAll();
    QVERIFY(events.count(QEvent::Type(type)) >= 1);
    QCOMPARE(button->rebuilds, 1);
}

void AeroButtonTest::otherEventsKeepTheImage_data()
{
    QTest::addColumn<int>("type");
    QTest::newRow("Enter") << int(QEvent::Enter);
    QTest::newRow("Leave") << int(QEvent::Leave);
    QTest::newRow("FontChange") << int(QEvent::FontChange);
    QTest::newRow("PaletteChange") << int(QEvent::PaletteChange);
    QTest::newRow("StyleChange") << int(QEvent::StyleChange);
    QTest::newRow("ChildAdded") << int(QEvent::ChildAdded);
    QTest::newRow("press and release") << int(QEvent::MouseButtonPress);
}

void AeroButtonTest::otherEventsKeepTheImage()
{
    QFETCH(int, type);
    Stage<CountingButton> button;
    button->rebuilds = 0;
    const QImage before = imageOf(button.widget);
    if (type == QEvent::MouseButtonPress) {
        QTest::mousePress(button.widget, Qt::LeftButton);
        QVERIFY(button->isDown());
        COMPARE_IMAGES(imageOf(button.widget), before);
        QTest::mouseRelease(button.widget, Qt::LeftButton);
    } else if (type == QEvent::ChildAdded) {
        new QObject(button.widget);
    } else {
        QEvent event{QEvent::Type(type)};
        QCoreApplication::sendEvent(button.widget, &event);
    }
    deliverAll();
    QCOMPARE(button->rebuilds, 0);
    COMPARE_IMAGES(imageOf(button.widget), before);
}

void AeroButtonTest::mutatedEqualsFresh_data()
{
    styleSettersPost_data();
    lookSettersActAtOnce_data();
    QTest::newRow("rotate") << QByteArray("rotate") << QVariant(33.0);
    QTest::newRow("enabled") << QByteArray("enabled") << QVariant(false);
    QTest::newRow("size") << QByteArray("size") << QVariant(QSize(77, 55));
}

void AeroButtonTest::mutatedEqualsFresh()
{
    QFETCH(QByteArray, property);
    QFETCH(QVariant, value);
    const auto configure = [](AeroButton *button) {
        button->setText(QStringLiteral("Text"));
        button->setIcon(telltaleIcon(QSize(12, 12)));
    };
    QCOMPARE(freshnessProblem<AeroButton>(configure, property, value), QString());
}

void AeroButtonTest::nullImageIsReported()
{
    AeroButton button(nullptr);
    button.resize(0, 0);
    button.setObjectName(QString::fromLatin1("avvio\xE0"));
    const auto paint = [&] {
        QPaintEvent event(QRect(0, 0, 1, 1));
        QCoreApplication::sendEvent(&button, &event);
    };
    const ErrorLine line{QStringLiteral("KivWidgets/aerobutton.cpp"), QStringLiteral("paintImage"),
                         QString::fromLatin1("Nel controllo avvio\xE0 Image e' NULL")};
    paint();
    QCOMPARE(takeErrorLines(), QList<ErrorLine>({line}));
    // Once per drop, not per paint.
    paint();
    QCOMPARE(takeErrorLines(), QList<ErrorLine>());
    button.setColorText(Qt::red);
    paint();
    QCOMPARE(takeErrorLines(), QList<ErrorLine>({line}));
    takeWarnings();
}

void AeroButtonTest::extremeSettingsAreHarmless_data()
{
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QVariant>("value");
    for (const int value : {std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
        for (const char *property : {"widthPen", "roundness"})
            QTest::addRow("%s %d", property, value) << QByteArray(property) << QVariant(value);
    }
    for (const double value :
         {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
          -std::numeric_limits<double>::max(), std::numeric_limits<double>::denorm_min()}) {
        for (const char *property : {"opacity", "rotate"})
            QTest::addRow("%s %g", property, value) << QByteArray(property) << QVariant(value);
    }
}

void AeroButtonTest::extremeSettingsAreHarmless()
{
    QFETCH(QByteArray, property);
    QFETCH(QVariant, value);
    Stage<AeroButton> button;
    button->setText(QStringLiteral("Text"));
    button->setProperty(property, value);
    deliverAll();
    QCOMPARE(imageOf(button.widget).size(), QSize(100, 40));
    // The button recovers.
    AeroButton fresh(nullptr);
    button->setProperty(property, fresh.property(property));
    deliverAll();
    COMPARE_IMAGES(imageOf(button.widget),
                   buttonImage(GlassPanel(), button->size(), [&](QPainter *painter) {
                       const QString text = QStringLiteral("Text");
                       drawLabel(painter, (100 - labelWidth(text)) / 2 - 1, 40, text, Qt::white);
                   }));
}

KIV_LAYOUT(AeroButton, 1, KIV_BASE(QAbstractButton), KIV_BASE(AeroStyle), KIV_FIELD(colorText),
           KIV_FIELD(bold), KIV_FIELD(rotate), KIV_FIELD(image));

void AeroButtonTest::layout()
{
    QCOMPARE(LayoutAeroButton::problem(), QString());
}

KIV_TEST_MAIN(AeroButtonTest)

#include "tst_aerobutton.moc"

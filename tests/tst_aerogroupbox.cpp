// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "aerogroupbox.h"

#include "cacheprobe.h"
#include "freshness.h"
#include "glasspanel.h"
#include "icons.h"
#include "images.h"
#include "layout.h"
#include "mouse.h"
#include "qtversion_p.h"
#include "testmain.h"

#include <QtCore/QMetaProperty>
#include <QtCore/QPointer>
#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtTest/QSignalSpy>

#include <limits>

namespace {

class OpenBox : public AeroGroupbox
{
public:
    using AeroGroupbox::AeroGroupbox;
    using AeroGroupbox::image;
    using AeroGroupbox::imageTitle;
    using AeroGroupbox::paintImageTitle;
    using AeroGroupbox::paintTitle;
    using AeroGroupbox::titleSize;
};

QFont titleFont(bool bold)
{
    QFont font = QApplication::font();
    font.setBold(bold);
    return font;
}

QSize titleSizeOf(const QString &title, bool bold = true)
{
    const QSize text = QFontMetrics(titleFont(bold)).size(Qt::TextSingleLine, title);
    return {text.width() + 8, text.height()};
}

QImage titleImage(const QString &title, const QColor &color = Qt::white, bool bold = true)
{
    const QSize size = titleSizeOf(title, bold);
    if (size.isEmpty())
        return emptyImage(size);
    return drawnImage(size, [&](QPainter *painter) {
        painter->setFont(titleFont(bold));
        painter->setPen(color);
        painter->drawText(QPointF(4.0, QFontMetrics(titleFont(bold)).ascent()), title);
    });
}

QImage panelImage(QSize size, const GlassPanel &panel)
{
    return drawnImage(size, [&](QPainter *painter) { panel.draw(painter, size); });
}

/// The box made of its body and its title: the outline is open under the title.
QImage boxImage(const QImage &body, const QImage &title, const GlassPanel &panel)
{
    const int W = body.width();
    const int H = body.height();
    const int m = qMin(W - panel.widthPen, H - panel.widthPen);
    const int r = m / 2 * panel.roundness / 100;
    const int wp = panel.widthPen;
    const int tw = title.width();
    return drawnImage(body.size(), [&](QPainter *painter) {
        painter->setOpacity(panel.opacity);
        const auto piece = [&](int x, int y, int width, int height) {
            if (width > 0 && height > 0 && x < W)
                painter->drawImage(QRectF(x, y, width, height), body, QRectF(x, y, width, height));
        };
        piece(0, 0, r, H);
        piece(r, wp, tw, H - wp);
        piece(r + tw, 0, W - tw - r, H);
        if (!title.isNull())
            painter->drawImage(QPointF(r, 0), title);
    });
}

CacheProbe probe(OpenBox *box)
{
    return CacheProbe(box, {{"image", &box->image}, {"imageTitle", &box->imageTitle}});
}

} // namespace

class AeroGroupboxTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void metaObject();
    void layout();
    void designableConditions();
    void defaults();
    void withoutATitle();
    void withATitle_data();
    void withATitle();
    void disabled();
    void image();
    void imageFarWiderThanTheBox();
    void imageWithATitle();
    void typeOutsideTheEnum();
    void titleSetter();
    void titleOfTheBaseClass();
    void titleStepByItself();
    void effects();
    void effectsWithAImage();
    void titleStaysStale_data();
    void titleStaysStale();
    void leftPressToggles();
    void doubleClickToggles();
    void uncheckableBoxStillClicks();
    void otherButtonsAreIgnored();
    void deletedInASlot();
    void nullImagesAreReported();
    void extremeSettingsAreHarmless_data();
    void extremeSettingsAreHarmless();
    void mutatedEqualsFresh_data();
    void mutatedEqualsFresh();
};

void AeroGroupboxTest::metaObject()
{
    const QMetaObject &meta = AeroGroupbox::staticMetaObject;
    QCOMPARE(meta.superClass()->className(), "QGroupBox");
    QCOMPARE(declaredMethods(meta), QStringList());
    const char *const properties[][2] = {
        {"backgroudType", "typeBG"}, {"backgroundGroup", "QPixmap"},
        {"color", "QColor"},         {"shadow", "QColor"},
        {"colorPen", "QColor"},      {"widthPen", "int"},
        {"opacity", "double"},       {"roundness", "int"},
        {"colorTitle", "QColor"},    {"bold", "bool"},
    };
    int index = meta.propertyOffset();
    for (const auto &[name, type] : properties) {
        const QMetaProperty property = meta.property(index++);
        QCOMPARE(property.name(), name);
        QCOMPARE(typeNameOf(property), QLatin1String(type));
        QVERIFY(property.isReadable() && property.isWritable());
        QVERIFY(property.isScriptable() && property.isStored());
    }
    QCOMPARE(index, meta.propertyCount());
    const QMetaEnum type = meta.enumerator(meta.indexOfEnumerator("typeBG"));
    QCOMPARE(type.keyCount(), 2);
    QCOMPARE(type.keyToValue("ImageBG"), 0);
    QCOMPARE(type.keyToValue("AeroStyleBG"), 1);
}

void AeroGroupboxTest::designableConditions()
{
    AeroGroupbox box(nullptr);
    const QMetaObject &meta = AeroGroupbox::staticMetaObject;
    for (const auto type : {AeroGroupbox::AeroStyleBG, AeroGroupbox::ImageBG}) {
        box.setBackgroundType(type);
        for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) {
            const QByteArray name = meta.property(i).name();
            bool expected = true;
            // moc of Qt 6 takes no functions that decide.
            if (QT_VERSION >= QT_VERSION_CHECK(6, 0, 0))
                expected = true;
            else if (name == "backgroundGroup")
                expected = type == AeroGroupbox::ImageBG;
            else if (name == "color" || name == "shadow")
                expected = type == AeroGroupbox::AeroStyleBG;
            QVERIFY2(KivPrivate::isDesignable(meta.property(i), &box) == expected,
                     name.constData());
        }
    }
}

void AeroGroupboxTest::defaults()
{
    const OpenBox box(nullptr);
    QCOMPARE(box.property("backgroudType").toInt(), 1);
    QVERIFY(box.property("backgroundGroup").value<QPixmap>().isNull());
    QCOMPARE(box.property("colorTitle").value<QColor>(), QColor(Qt::white));
    QCOMPARE(box.property("bold").toBool(), true);
    QCOMPARE(box.property("color").value<QColor>(), QColor(Qt::gray));
    QCOMPARE(box.titleSize, QSize(-1, -1));
}

void AeroGroupboxTest::withoutATitle()
{
    for (const QSize size : {QSize(200, 120), QSize(31, 77), QSize(1, 1), QSize(600, 400)}) {
        Stage<OpenBox> box(size);
        box->setOpacity(0.5);
        deliverAll();
        GlassPanel panel;
        panel.opacity = 0.5;
        // The opacity counts once here.
        COMPARE_IMAGES(imageOf(box.widget), panelImage(size, panel));
        QCOMPARE(box->titleSize, QSize(0, 0));
    }
}

void AeroGroupboxTest::withATitle_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QString>("title");
    QTest::addColumn<int>("widthPen");
    QTest::addColumn<int>("roundness");
    QTest::addColumn<double>("opacity");
    const QString title = QStringLiteral("Battery");
    QTest::newRow("usual") << QSize(220, 120) << title << 2 << 25 << 1.0;
    QTest::newRow("faint") << QSize(220, 120) << title << 2 << 25 << 0.4;
    QTest::newRow("square") << QSize(220, 120) << title << 2 << 0 << 1.0;
    QTest::newRow("round") << QSize(220, 120) << title << 2 << 100 << 1.0;
    QTest::newRow("thick outline") << QSize(220, 120) << title << 9 << 25 << 1.0;
    QTest::newRow("no outline") << QSize(220, 120) << title << 0 << 25 << 1.0;
    QTest::newRow("empty title") << QSize(220, 120) << QStringLiteral("") << 4 << 25 << 1.0;
    QTest::newRow("non-Latin title")
        << QSize(221, 121) << QString::fromUtf8("Батарея ≥ 90 %") << 2 << 30 << 0.8;
    QTest::newRow("as high as the title") << QSize(220, 12) << title << 2 << 25 << 1.0;
    QTest::newRow("large") << QSize(700, 450) << title << 2 << 10 << 1.0;
}

void AeroGroupboxTest::withATitle()
{
    GlassPanel panel;
    QFETCH(QSize, size);
    QFETCH(QString, title);
    QFETCH(int, widthPen);
    QFETCH(int, roundness);
    QFETCH(double, opacity);
    panel.color = QColor(60, 80, 100);
    panel.shadow = QColor(20, 30, 40);
    panel.colorPen = QColor(220, 20, 20);
    panel.widthPen = widthPen;
    panel.roundness = roundness;
    panel.opacity = opacity;
    Stage<OpenBox> box(size);
    box->setColor(panel.color);
    box->setShadow(panel.shadow);
    box->setColorPen(panel.colorPen);
    box->setWidthPen(widthPen);
    box->setRoundness(roundness);
    box->setOpacity(opacity);
    // An empty title on a new box equals its null one, so it takes the way through another.
    box->setTitle(QStringLiteral("x"));
    box->setTitle(title);
    deliverAll();
    const QImage expected = boxImage(panelImage(size, panel), titleImage(title), panel);
    COMPARE_IMAGES(imageOf(box.widget), expected);
    QCOMPARE(box->titleSize, titleSizeOf(title));
}

void AeroGroupboxTest::disabled()
{
    Stage<OpenBox> box(QSize(200, 100));
    box->setColor(Qt::darkBlue);
    box->setTitle(QStringLiteral("Load"));
    box->setEnabled(false);
    deliverAll();
    GlassPanel panel;
    panel.color = Qt::darkBlue;
    // The title keeps its colour.
    COMPARE_IMAGES(imageOf(box.widget), boxImage(panelImage(QSize(200, 100), panel.disabled()),
                                                 titleImage(QStringLiteral("Load")), panel));
}

void AeroGroupboxTest::image()
{
    QPixmap image(20, 10);
    image.fill(Qt::darkCyan);
    QPainter painter(&image);
    painter.fillRect(0, 0, 7, 3, Qt::yellow);
    painter.end();
    Stage<OpenBox> box(QSize(120, 70));
    box->setProperty("backgroudType", AeroGroupbox::ImageBG);
    COMPARE_IMAGES(imageOf(box.widget), emptyImage(QSize(120, 70)));
    box->setProperty("backgroundGroup", image);
    const QImage expected = drawnImage(QSize(120, 70), [&](QPainter *body) {
        body->drawPixmap(QRectF(0, 0, 120, 70), image, QRectF(image.rect()));
    });
    COMPARE_IMAGES(imageOf(box.widget), expected);
    box->setEnabled(false);
    COMPARE_IMAGES(imageOf(box.widget), expected);
}

void AeroGroupboxTest::imageFarWiderThanTheBox()
{
    // Shrunk so far, Qt would read outside of the image.
    QPixmap wide(65535, 10);
    wide.fill(QColor(255, 0, 0, 100));
    Stage<OpenBox> box(QSize(1, 30));
    box->setBackgroundType(AeroGroupbox::ImageBG);
    box->setBackgroundGroup(wide);
    COMPARE_IMAGES(imageOf(box.widget), emptyImage(QSize(1, 30)));
}

void AeroGroupboxTest::imageWithATitle()
{
    Stage<OpenBox> box(QSize(150, 80));
    box->setBackgroundType(AeroGroupbox::ImageBG);
    box->setTitle(QStringLiteral("Load"));
    const QImage title = titleImage(QStringLiteral("Load"));
    // Without an image the box is transparent behind its title.
    COMPARE_IMAGES(imageOf(box.widget), boxImage(emptyImage(QSize(150, 80)), title, GlassPanel()));
    box->setBackgroundGroup(plainPixmap(QSize(3, 3), Qt::darkGreen));
    QImage body = emptyImage(QSize(150, 80));
    body.fill(Qt::darkGreen);
    COMPARE_IMAGES(imageOf(box.widget), boxImage(body, title, GlassPanel()));
}

void AeroGroupboxTest::typeOutsideTheEnum()
{
    Stage<OpenBox> box(QSize(60, 40));
    box->setBackgroundType(AeroGroupbox::typeBG(9));
    QCOMPARE(int(box->getBackgroudType()), 9);
    COMPARE_IMAGES(imageOf(box.widget), emptyImage(QSize(60, 40)));
}

void AeroGroupboxTest::titleSetter()
{
    Stage<OpenBox> box(QSize(200, 100));
    CacheProbe body(box.widget, {{"image", &box->image}});
    QCOMPARE(body.effectOf([&] { box->setTitle(QString()); }), QStringLiteral("nothing"));
    QCOMPARE(body.effectOf([&] { box->setTitle(QStringLiteral("")); }), QStringLiteral("nothing"));
    QVERIFY(box->title().isNull());
    QCOMPARE(body.effectOf([&] { box->setTitle(QStringLiteral("Load")); }),
             QStringLiteral("drops image"));
    QCOMPARE(box->titleSize, titleSizeOf(QStringLiteral("Load")));
    CacheProbe both = probe(box.widget);
    QCOMPARE(both.effectOf([&] { box->setTitle(QStringLiteral("Load")); }),
             QStringLiteral("nothing"));
    QCOMPARE(both.effectOf([&] { box->setTitle(QStringLiteral("Bypass")); }),
             QStringLiteral("drops image,imageTitle"));
    box->setTitle(QString());
    QCOMPARE(box->titleSize, QSize(0, 0));
    COMPARE_IMAGES(imageOf(box.widget), panelImage(QSize(200, 100), GlassPanel()));
    QVERIFY(!box->imageTitle);
}

void AeroGroupboxTest::titleOfTheBaseClass()
{
    // A title that comes past our setter is painted when an event has dropped the images.
    Stage<OpenBox> box(QSize(200, 100));
    box->setProperty("title", QStringLiteral("Load"));
    deliverAll();
    const QImage panel = panelImage(QSize(200, 100), GlassPanel());
    COMPARE_IMAGES(imageOf(box.widget),
                   boxImage(panel, titleImage(QStringLiteral("Load")), GlassPanel()));
    // As long as its image is missing, its width counts as nothing.
    delete box->imageTitle;
    box->imageTitle = nullptr;
    COMPARE_IMAGES(imageOf(box.widget), boxImage(panel, QImage(), GlassPanel()));
}

void AeroGroupboxTest::titleStepByItself()
{
    Stage<OpenBox> box(QSize(200, 100));
    QImage canvas(box->size(), QImage::Format_ARGB32_Premultiplied);
    canvas.fill(Qt::green);
    const QImage untouched = canvas;
    QPainter painter(&canvas);
    painter.setOpacity(0.5);
    box->paintTitle(&painter);
    QCOMPARE(canvas, untouched);
    QCOMPARE(painter.opacity(), 0.5);

    // It measures the title that it paints.
    box->setTitle(QStringLiteral("Load"));
    box->titleSize = QSize();
    box->paintTitle(&painter);
    QCOMPARE(box->titleSize, titleSizeOf(QStringLiteral("Load")));
    QVERIFY(canvas != untouched);
    QCOMPARE(painter.opacity(), 1.0);
}

void AeroGroupboxTest::effects()
{
    Stage<OpenBox> box(QSize(200, 100));
    box->setTitle(QStringLiteral("Load"));
    CacheProbe caches = probe(box.widget);
    const QString body = QStringLiteral("drops image");
    const QString both = QStringLiteral("drops image,imageTitle");
    const QString posted = QStringLiteral("posts, drops image,imageTitle");
    const QString nothing = QStringLiteral("nothing");
    QCOMPARE(caches.effectOf("color", QColor(Qt::red)), posted);
    QCOMPARE(caches.effectOf("color", QColor(Qt::red)), nothing);
    QCOMPARE(caches.effectOf("shadow", QColor(Qt::red)), posted);
    QCOMPARE(caches.effectOf("colorPen", QColor(Qt::red)), posted);
    QCOMPARE(caches.effectOf("widthPen", 3), posted);
    QCOMPARE(caches.effectOf("opacity", 0.9), posted);
    QCOMPARE(caches.effectOf("roundness", 30), posted);
    QCOMPARE(caches.effectOf("colorTitle", QColor(Qt::red)), body);
    QCOMPARE(caches.effectOf("colorTitle", QColor(Qt::red)), nothing);
    QCOMPARE(caches.effectOf("bold", false), body);
    QCOMPARE(caches.effectOf("bold", false), nothing);
    QCOMPARE(caches.effectOf("backgroundGroup", QPixmap()), body);
    QCOMPARE(caches.effectOf([&] { box->resize(190, 90); }), both);
    QCOMPARE(caches.effectOf([&] { box->setEnabled(false); }), both);
    QCOMPARE(caches.effectOf([&] { box->setContentsMargins(9, 9, 9, 9); }), both);
    QCOMPARE(caches.effectOf(QEvent::PolishRequest), both);
    QCOMPARE(caches.effectOf(QEvent::UpdateRequest), both);
    // A child that goes drops nothing here.
    QCOMPARE(caches.effectOf([&] { delete new QObject(box.widget); }), nothing);
    QCOMPARE(caches.effectOf(QEvent::Enter), nothing);
    QCOMPARE(caches.effectOf("backgroudType", AeroGroupbox::ImageBG), body);
    QCOMPARE(caches.effectOf("backgroudType", AeroGroupbox::ImageBG), nothing);
}

void AeroGroupboxTest::effectsWithAImage()
{
    Stage<OpenBox> box(QSize(200, 100));
    box->setTitle(QStringLiteral("Load"));
    box->setBackgroundType(AeroGroupbox::ImageBG);
    CacheProbe caches = probe(box.widget);
    const QString body = QStringLiteral("drops image");
    QCOMPARE(caches.effectOf("color", QColor(Qt::red)), QStringLiteral("posts, drops image"));
    QCOMPARE(caches.effectOf([&] { box->resize(190, 90); }), body);
    QCOMPARE(caches.effectOf([&] { box->setEnabled(false); }), body);
    QCOMPARE(caches.effectOf(QEvent::PolishRequest), body);
    QCOMPARE(caches.effectOf([&] { box->setTitle(QStringLiteral("Bypass")); }),
             QStringLiteral("drops image,imageTitle"));
}

void AeroGroupboxTest::titleStaysStale_data()
{
    QTest::addColumn<bool>("withImage");
    QTest::newRow("glass panel") << false;
    QTest::newRow("image") << true;
}

void AeroGroupboxTest::titleStaysStale()
{
    QFETCH(bool, withImage);
    Stage<OpenBox> box(QSize(200, 100));
    box->setTitle(QStringLiteral("Load"));
    if (withImage)
        box->setBackgroundType(AeroGroupbox::ImageBG);
    deliverAll();
    imageOf(box.widget);
    box->setColorTitle(Qt::yellow);
    deliverAll();
    imageOf(box.widget);
    COMPARE_IMAGES(*box->imageTitle, titleImage(QStringLiteral("Load")));
    // A resize brings the new colour only on the glass panel.
    box->resize(210, 100);
    imageOf(box.widget);
    COMPARE_IMAGES(
        *box->imageTitle,
        titleImage(QStringLiteral("Load"), withImage ? QColor(Qt::white) : QColor(Qt::yellow)));
    box->setTitle(QStringLiteral("Bypass"));
    imageOf(box.widget);
    COMPARE_IMAGES(*box->imageTitle, titleImage(QStringLiteral("Bypass"), Qt::yellow));
    box->setTextBold(false);
    imageOf(box.widget);
    COMPARE_IMAGES(*box->imageTitle, titleImage(QStringLiteral("Bypass"), Qt::yellow));
    box->setTitle(QStringLiteral("Load"));
    imageOf(box.widget);
    COMPARE_IMAGES(*box->imageTitle, titleImage(QStringLiteral("Load"), Qt::yellow, false));
}

void AeroGroupboxTest::leftPressToggles()
{
    Stage<OpenBox> box(QSize(200, 100));
    box->setCheckable(true);
    const QSignalSpy clicked(box.widget, &QGroupBox::clicked);
    const QSignalSpy toggled(box.widget, &QGroupBox::toggled);
    Mouse::press(box.widget, QPoint(150, 90));
    QVERIFY(!box->isChecked());
    Mouse::release(box.widget, QPoint(150, 90));
    QVERIFY(!box->isChecked());
    QCOMPARE(clicked.count(), 1);
    QCOMPARE(clicked.at(0).at(0).toBool(), false);
    Mouse::press(box.widget, QPoint(5, 5));
    QVERIFY(box->isChecked());
    QCOMPARE(clicked.count(), 2);
    QCOMPARE(clicked.at(1).at(0).toBool(), true);
    QCOMPARE(toggled.count(), 2);
}

void AeroGroupboxTest::doubleClickToggles()
{
    Stage<OpenBox> box(QSize(200, 100));
    box->setCheckable(true);
    const QSignalSpy clicked(box.widget, &QGroupBox::clicked);
    Mouse::press(box.widget, QPoint(100, 50));
    Mouse::release(box.widget, QPoint(100, 50));
    const QPoint place(100, 50);
    QMouseEvent second(QEvent::MouseButtonDblClick, place, box->mapToGlobal(place), Qt::LeftButton,
                       Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(box.widget, &second);
    QCOMPARE(clicked.count(), 2);
    QVERIFY(box->isChecked());
}

void AeroGroupboxTest::uncheckableBoxStillClicks()
{
    Stage<OpenBox> box(QSize(200, 100));
    const QSignalSpy clicked(box.widget, &QGroupBox::clicked);
    for (int press = 1; press <= 2; ++press) {
        Mouse::press(box.widget, QPoint(100, 50));
        QCOMPARE(clicked.count(), press);
        QCOMPARE(clicked.last().at(0).toBool(), false);
    }
}

void AeroGroupboxTest::otherButtonsAreIgnored()
{
    Stage<OpenBox> box(QSize(200, 100));
    box->setCheckable(true);
    const QSignalSpy clicked(box.widget, &QGroupBox::clicked);
    EventCounter parentEvents(&box.window);
    Mouse::press(box.widget, QPoint(100, 50), Qt::RightButton);
    Mouse::press(box.widget, QPoint(100, 50), Qt::MiddleButton);
    QCOMPARE(clicked.count(), 0);
    QVERIFY(box->isChecked());
    QCOMPARE(parentEvents.count(QEvent::MouseButtonPress), 2);
}

void AeroGroupboxTest::deletedInASlot()
{
    for (const bool onToggled : {true, false}) {
        Stage<OpenBox> box(QSize(200, 100));
        box->setCheckable(true);
        const QPointer<OpenBox> watched(box.widget);
        const auto remove = [&] { delete watched.data(); };
        if (onToggled)
            connect(box.widget, &QGroupBox::toggled, this, remove);
        else
            connect(box.widget, &QGroupBox::clicked, this, remove);
        Mouse::press(box.widget, QPoint(100, 50));
        QVERIFY(!watched);
    }
}

void AeroGroupboxTest::nullImagesAreReported()
{
    OpenBox box(nullptr);
    box.setObjectName(QStringLiteral("gruppo"));
    box.resize(0, 0);
    const auto line = [](const char *function, const char *image) {
        return ErrorLine{
            QStringLiteral("KivWidgets/aerogroupbox.cpp"), QLatin1String(function),
            QStringLiteral("Nel controllo gruppo %1 e' NULL").arg(QLatin1String(image))};
    };
    sendPaint(&box);
    QCOMPARE(takeErrorLines(), QList<ErrorLine>({line("paintImage", "Image")}));
    sendPaint(&box);
    QCOMPARE(takeErrorLines(), QList<ErrorLine>());
    box.imageTitle = new QImage;
    box.paintImageTitle();
    QCOMPARE(takeErrorLines(), QList<ErrorLine>({line("paintImageTitle", "ImageTitle")}));
    takeWarnings();
}

void AeroGroupboxTest::extremeSettingsAreHarmless_data()
{
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QVariant>("value");
    using Limits = std::numeric_limits<int>;
    for (const int value : {Limits::min(), -40, Limits::max()}) {
        for (const char *property : {"widthPen", "roundness"})
            QTest::addRow("%s %d", property, value) << QByteArray(property) << QVariant(value);
    }
    QTest::newRow("opacity") << QByteArray("opacity")
                             << QVariant(std::numeric_limits<double>::quiet_NaN());
}

void AeroGroupboxTest::extremeSettingsAreHarmless()
{
    QFETCH(QByteArray, property);
    QFETCH(QVariant, value);
    Stage<OpenBox> box(QSize(150, 80));
    box->setTitle(QStringLiteral("Load"));
    const QVariant before = box->property(property);
    deliverAll();
    const QImage usual = imageOf(box.widget);
    box->setProperty(property, value);
    deliverAll();
    QCOMPARE(imageOf(box.widget).size(), QSize(150, 80));
    box->setProperty(property, before);
    deliverAll();
    COMPARE_IMAGES(imageOf(box.widget), usual);
}

void AeroGroupboxTest::mutatedEqualsFresh_data()
{
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QVariant>("value");
    QTest::newRow("color") << QByteArray("color") << QVariant(QColor(Qt::darkRed));
    QTest::newRow("shadow") << QByteArray("shadow") << QVariant(QColor(Qt::darkRed));
    QTest::newRow("colorPen") << QByteArray("colorPen") << QVariant(QColor(Qt::darkRed));
    QTest::newRow("widthPen") << QByteArray("widthPen") << QVariant(5);
    QTest::newRow("opacity") << QByteArray("opacity") << QVariant(0.6);
    QTest::newRow("roundness") << QByteArray("roundness") << QVariant(70);
    QTest::newRow("backgroudType")
        << QByteArray("backgroudType") << QVariant::fromValue(AeroGroupbox::ImageBG);
    QTest::newRow("size") << QByteArray("size") << QVariant(QSize(111, 66));
    QTest::newRow("enabled") << QByteArray("enabled") << QVariant(false);
}

void AeroGroupboxTest::mutatedEqualsFresh()
{
    QFETCH(QByteArray, property);
    QFETCH(QVariant, value);
    const auto configure = [](OpenBox *box) {
        box->resize(160, 90);
        box->setTitle(QStringLiteral("Load"));
        box->setBackgroundGroup(plainPixmap(QSize(4, 4), Qt::darkGreen));
    };
    QCOMPARE(freshnessProblem<OpenBox>(configure, property, value), QString());
}

KIV_LAYOUT(AeroGroupbox, 0, KIV_BASE(QGroupBox), KIV_BASE(AeroStyle), KIV_FIELD(backgroudType),
           KIV_FIELD(backgroundGroup), KIV_FIELD(colorTitle), KIV_FIELD(bold), KIV_FIELD(image),
           KIV_FIELD(imageTitle), KIV_FIELD(titleSize));

void AeroGroupboxTest::layout()
{
    QCOMPARE(LayoutAeroGroupbox::problem(), QString());
}

KIV_TEST_MAIN(AeroGroupboxTest)

#include "tst_aerogroupbox.moc"

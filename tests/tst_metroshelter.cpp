// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "metroshelter.h"

#include "cacheprobe.h"
#include "freshness.h"
#include "icons.h"
#include "images.h"
#include "layout.h"
#include "testmain.h"

#include <QtCore/QFile>
#include <QtCore/QStandardPaths>
#include <QtGui/QFontDatabase>
#include <QtGui/QPainter>

#include <limits>

namespace {

class OpenTile : public MetroShelter
{
public:
    using MetroShelter::image;
    using MetroShelter::ImageBackground;
    using MetroShelter::MetroShelter;
};

CacheProbe probe(OpenTile *tile)
{
    return CacheProbe(tile, {{"image", &tile->image}});
}

/// The tile as it should look.
struct TileLook
{
    QPixmap face;
    QString led = QStringLiteral("COMMLOST");
    QString text;
    QColor color = Qt::white;
    int xLabel = 10;
    QSize iconSize = QSize(16, 16);
    QColor icon;
    QFont font = QApplication::font();

    QImage draw(QSize size) const
    {
        return drawnImage(size, [&](QPainter *painter) {
            const int W = size.width() - 1;
            const int H = size.height() - 1;
            if (face.isNull())
                painter->fillRect(QRect(QPoint(), size), Qt::black);
            else
                painter->drawPixmap(QRectF(QPointF(), size), face, QRectF(face.rect()));
            const QPixmap lamp(QStringLiteral(":/Images/stato-LED-%1.png").arg(led));
            const QRectF room = size.height() >= 26 ? QRectF(W - 29, (H - 20) / 2, 21, 21)
                                                    : QRectF(W - 13, (H - 9) / 2, 10, 10);
            painter->drawPixmap(room, lamp, QRectF(lamp.rect()));

            const QFontMetrics metrics(font);
            const int textWidth =
                text.isNull() ? 0 : metrics.size(Qt::TextSingleLine, text).width();
            if (icon.isValid()) {
                const int x = (W - 29 - (textWidth + iconSize.width())) / 2;
                const int y = (H + 1 - iconSize.height()) / 2;
                if (x > 0 && y > 0)
                    painter->drawPixmap(x, y, plainPixmap(iconSize, icon));
            }
            if (!text.isNull()) {
                painter->setFont(font);
                painter->setPen(color);
                painter->drawText(
                    QPointF(xLabel, (H + 1 - metrics.height()) / 2 + metrics.ascent()), text);
            }
        });
    }
};

QString ledOf(int alarm, int element)
{
    const char *const names[] = {nullptr,         "Stand-by", "Precharge",      "Calibration",
                                 "WaitVbatReady", "ON",       "BatteryWorking", "OnBypass"};
    const char *const groups[] = {"COMMLOST", "OK", "WARNING", "WARNING", "FAULT", "LOCK"};
    if (alarm == 5)
        return QStringLiteral("LOCK");
    if (alarm == 0 || alarm > 5 || element == 0 || element > 7)
        return QStringLiteral("COMMLOST");
    return QStringLiteral("%1-%2").arg(QLatin1String(groups[alarm]), QLatin1String(names[element]));
}

QString messageOf(int alarm, int element)
{
    const QString word =
        QString::number(alarm + 256 * element, 16).toUpper().rightJustified(2, QLatin1Char('0'));
    if (alarm > 5)
        return QStringLiteral("Caso st.alarmSt non previsto:0x") + word;
    if (alarm == 1 && element > 7)
        return QStringLiteral("Caso elemSt di noneAlarm non previsto:0x") + word;
    if ((alarm == 2 || alarm == 3) && (element == 0 || element > 7))
        return QStringLiteral("Caso elemSt di war/anomAlarm non previsto:0x") + word;
    if (alarm == 4 && (element == 0 || element > 7))
        return QStringLiteral("Caso elemSt di faultAlarm non previsto:0x") + word;
    return QString();
}

} // namespace

class MetroShelterTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void metaObject();
    void layout();
    void defaults();
    void states_data();
    void states();
    void messages();
    void sizes_data();
    void sizes();
    void labels_data();
    void labels();
    void baselineOfTheLabel();
    void fontShowsWithTheNextDrop();
    void absurdIconSize();
    void fontsThatGoAreForgotten();
    void creationKeepsWhatIsThere();
    void iconModes();
    void face();
    void faceFarWiderThanTheTile();
    void faceOfItsOwn();
    void noDisabledWash();
    void effects();
    void textAndIconActAtOnce();
    void nullImageIsReported();
    void mutatedEqualsFresh_data();
    void mutatedEqualsFresh();
};

void MetroShelterTest::metaObject()
{
    const QMetaObject &meta = MetroShelter::staticMetaObject;
    QCOMPARE(meta.superClass()->className(), "QAbstractButton");
    QCOMPARE(declaredProperties(meta),
             QStringList({QStringLiteral("ImageBackground QPixmap"),
                          QStringLiteral("colorText QColor"), QStringLiteral("xLabel int")}));
    QCOMPARE(declaredMethods(meta), QStringList());
}

void MetroShelterTest::defaults()
{
    QWidget window;
    const OpenTile tile(&window);
    QCOMPARE(tile.getColorText(), QColor(Qt::white));
    QCOMPARE(tile.getXLabel(), 10);
    const QPixmap held = tile.property("ImageBackground").value<QPixmap>();
    QCOMPARE(held.size(), QSize(100, 30));
    COMPARE_IMAGES(held.toImage(), plainPixmap(QSize(100, 30), Qt::black).toImage());
}

void MetroShelterTest::states_data()
{
    QTest::addColumn<int>("alarm");
    for (const int alarm : {0, 1, 2, 3, 4, 5, 6, 200})
        QTest::addRow("alarm %d", alarm) << alarm;
}

void MetroShelterTest::states()
{
    QFETCH(int, alarm);
    for (const int element : {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 255}) {
        for (const int height : {40, 25}) {
            Stage<OpenTile> tile(QSize(120, height));
            takeErrorLines();
            tile->setState({quint8(alarm), quint8(element)});
            deliverAll();
            TileLook expected;
            expected.led = ledOf(alarm, element);
            COMPARE_IMAGES(imageOf(tile.widget), expected.draw(tile->size()));
            const QString message = messageOf(alarm, element);
            const QList<ErrorLine> lines = takeErrorLines();
            if (message.isNull()) {
                QCOMPARE(lines, QList<ErrorLine>());
            } else {
                QCOMPARE(lines, QList<ErrorLine>({{QStringLiteral("KivWidgets/metroshelter.cpp"),
                                                   QStringLiteral("paintText"), message}}));
            }
        }
    }
}

void MetroShelterTest::messages()
{
    // The number is the whole state.
    QCOMPARE(messageOf(4, 9), QStringLiteral("Caso elemSt di faultAlarm non previsto:0x904"));
    QCOMPARE(messageOf(7, 0), QStringLiteral("Caso st.alarmSt non previsto:0x07"));
    Stage<OpenTile> tile;
    tile->setState({4, 9});
    deliverAll();
    tile->setState({7, 0});
    deliverAll();
    const QList<ErrorLine> lines = takeErrorLines();
    QCOMPARE(lines.size(), 2);
    QCOMPARE(lines.at(0).message, messageOf(4, 9));
    QCOMPARE(lines.at(1).message, messageOf(7, 0));
}

void MetroShelterTest::sizes_data()
{
    QTest::addColumn<QSize>("size");
    for (const QSize size : {QSize(1, 1), QSize(8, 8), QSize(20, 60), QSize(200, 24),
                             QSize(200, 25), QSize(200, 26), QSize(201, 27), QSize(500, 200)})
        QTest::addRow("%d x %d", size.width(), size.height()) << size;
}

void MetroShelterTest::sizes()
{
    QFETCH(QSize, size);
    Stage<OpenTile> tile(size);
    tile->setState({1, 5});
    tile->setText(QStringLiteral("Inverter"));
    deliverAll();
    TileLook expected;
    expected.led = QStringLiteral("OK-ON");
    expected.text = QStringLiteral("Inverter");
    // The first face is black and is stretched.
    COMPARE_IMAGES(imageOf(tile.widget), expected.draw(size));
}

void MetroShelterTest::labels_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("withIcon");
    QTest::newRow("none") << QString() << false;
    QTest::newRow("text") << QStringLiteral("Inverter") << false;
    QTest::newRow("empty text") << QStringLiteral("") << false;
    QTest::newRow("long text") << QString(80, QLatin1Char('W')) << false;
    QTest::newRow("non-Latin text") << QString::fromUtf8("Батарея ≥ 90 %") << false;
    QTest::newRow("icon") << QString() << true;
    QTest::newRow("text and icon") << QStringLiteral("Inverter") << true;
    QTest::newRow("empty text and icon") << QStringLiteral("") << true;
    QTest::newRow("long text and icon") << QString(80, QLatin1Char('W')) << true;
}

void MetroShelterTest::labels()
{
    QFETCH(QString, text);
    QFETCH(bool, withIcon);
    for (const QSize size : {QSize(200, 40), QSize(151, 33)}) {
        Stage<OpenTile> tile(size);
        tile->setProperty("xLabel", 17);
        tile->setProperty("colorText", QColor(Qt::yellow));
        if (!text.isNull())
            tile->setText(text);
        if (withIcon)
            tile->setIcon(telltaleIcon(QSize(16, 16)));
        TileLook expected;
        expected.text = text;
        expected.color = Qt::yellow;
        expected.xLabel = 17;
        if (withIcon)
            expected.icon = Qt::red;
        COMPARE_IMAGES(imageOf(tile.widget), expected.draw(size));
    }
}

void MetroShelterTest::baselineOfTheLabel()
{
    // The baseline is half the free height below the top, plus the ascent.
    Stage<OpenTile> tile(QSize(200, 40));
    tile->setText(QStringLiteral("H"));
    const QFontMetrics metrics(tile->font());
    const QImage image = imageOf(tile.widget);
    int lowest = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 10; x < 22; ++x) {
            // Without hinting a stem is spread over two columns.
            if (qRed(image.pixel(x, y)) > 60)
                lowest = y;
        }
    }
    QCOMPARE(lowest, (40 - metrics.height()) / 2 + metrics.ascent() - 1);
}

void MetroShelterTest::fontShowsWithTheNextDrop()
{
    Stage<OpenTile> tile(QSize(200, 40));
    tile->setText(QStringLiteral("Inverter"));
    TileLook expected;
    expected.text = QStringLiteral("Inverter");
    COMPARE_IMAGES(imageOf(tile.widget), expected.draw(tile->size()));
    QFont font(QStringLiteral("DejaVu Sans"), 15);
    font.setItalic(true);
    tile->setFont(font);
    deliverAll();
    COMPARE_IMAGES(imageOf(tile.widget), expected.draw(tile->size()));
    sendPlain(tile.widget, QEvent::PolishRequest);
    expected.font = font;
    COMPARE_IMAGES(imageOf(tile.widget), expected.draw(tile->size()));
}

void MetroShelterTest::absurdIconSize()
{
    Stage<OpenTile> tile(QSize(100, 40));
    tile->setText(QStringLiteral("Reserve"));
    deliverAll();
    const QImage withoutIcon = imageOf(tile.widget);
    tile->setIconSize(QSize(std::numeric_limits<int>::max(), 16));
    tile->setIcon(telltaleIcon(QSize(16, 16)));
    deliverAll();
    COMPARE_IMAGES(imageOf(tile.widget), withoutIcon);
}

void MetroShelterTest::fontsThatGoAreForgotten()
{
    // A font of the application under a name that no other font has.
    QFile known(QStandardPaths::locate(QStandardPaths::FontsLocation,
                                       QStringLiteral("truetype/dejavu/DejaVuSerif.ttf")));
    QVERIFY(known.open(QIODevice::ReadOnly));
    QByteArray renamed = known.readAll();
    // Its names are in UTF-16, the high bytes first.
    renamed.replace(QByteArray("\0D\0e\0j\0a\0V\0u", 12), QByteArray("\0A\0b\0s\0e\0n\0t", 12));
    const int added = QFontDatabase::addApplicationFontFromData(renamed);
    const QFont font(QStringLiteral("Absent Serif"), 10);
    QCOMPARE(QFontDatabase::applicationFontFamilies(added), QStringList(font.family()));

    TileLook look;
    look.text = QStringLiteral("Inverter");
    look.icon = Qt::red;
    look.font = font;
    Stage<OpenTile> tile(QSize(200, 30));
    tile->setFont(font);
    tile->setIconSize(look.iconSize);
    tile->setIcon(QIcon(plainPixmap(look.iconSize, look.icon)));
    tile->setText(look.text);
    const QImage before = imageOf(tile.widget);
    COMPARE_IMAGES(before, look.draw(QSize(200, 30)));

    // The icon's place depends on the width of the text.
    QVERIFY(QFontDatabase::removeApplicationFont(added));
    sendPlain(tile.widget, QEvent::PolishRequest);
    COMPARE_IMAGES(imageOf(tile.widget), look.draw(QSize(200, 30)));
    QVERIFY(imageOf(tile.widget) != before);
}

void MetroShelterTest::creationKeepsWhatIsThere()
{
    Stage<OpenTile> tile(QSize(100, 40));
    imageOf(tile.widget);
    tile->image->fill(Qt::cyan);
    tile->createImages();
    QImage plain = emptyImage(tile->size());
    plain.fill(Qt::cyan);
    COMPARE_IMAGES(imageOf(tile.widget), plain);
}

void MetroShelterTest::iconModes()
{
    Stage<OpenTile> tile(QSize(120, 40));
    tile->setCheckable(true);
    tile->setIcon(telltaleIcon(QSize(16, 16)));
    TileLook expected;
    for (const bool enabled : {true, false}) {
        for (const bool checked : {false, true}) {
            tile->setChecked(checked);
            tile->setEnabled(enabled);
            sendPlain(tile.widget, QEvent::PolishRequest);
            expected.icon = telltaleColor(enabled ? QIcon::Normal : QIcon::Disabled,
                                          checked ? QIcon::On : QIcon::Off);
            COMPARE_IMAGES(imageOf(tile.widget), expected.draw(tile->size()));
        }
    }
}

void MetroShelterTest::face()
{
    QPixmap image(20, 10);
    image.fill(Qt::darkCyan);
    QPainter painter(&image);
    painter.fillRect(0, 0, 7, 3, Qt::yellow);
    painter.end();
    Stage<OpenTile> tile(QSize(120, 40));
    tile->setProperty("ImageBackground", image);
    TileLook expected;
    expected.face = image;
    COMPARE_IMAGES(imageOf(tile.widget), expected.draw(tile->size()));
    COMPARE_IMAGES(tile->getImageBackground().toImage(), image.toImage());
    // Writing the stored value keeps it.
    tile->setBackgroundImage(tile->getImageBackground());
    COMPARE_IMAGES(imageOf(tile.widget), expected.draw(tile->size()));
}

void MetroShelterTest::faceFarWiderThanTheTile()
{
    // Shrunk so far, Qt would read outside of the image.
    QPixmap wide(65535, 10);
    wide.fill(QColor(255, 0, 0, 100));
    QPixmap clear(1, 1);
    clear.fill(Qt::transparent);
    Stage<OpenTile> tile(QSize(1, 30));
    tile->setBackgroundImage(wide);
    Stage<OpenTile> faceless(QSize(1, 30));
    faceless->setBackgroundImage(clear);
    COMPARE_IMAGES(imageOf(tile.widget), imageOf(faceless.widget));
}

void MetroShelterTest::faceOfItsOwn()
{
    Stage<OpenTile> tile(QSize(120, 40));
    tile->setProperty("ImageBackground", QPixmap());
    QVERIFY(tile->property("ImageBackground").value<QPixmap>().isNull());
    COMPARE_IMAGES(imageOf(tile.widget), TileLook().draw(tile->size()));
    QCOMPARE(tile->property("ImageBackground").value<QPixmap>().size(), QSize(120, 40));
}

void MetroShelterTest::noDisabledWash()
{
    Stage<OpenTile> tile(QSize(120, 40));
    tile->setText(QStringLiteral("Load"));
    const QImage enabled = imageOf(tile.widget);
    tile->setEnabled(false);
    COMPARE_IMAGES(imageOf(tile.widget), enabled);
}

void MetroShelterTest::effects()
{
    Stage<OpenTile> tile;
    CacheProbe caches = probe(tile.widget);
    const QString drops = QStringLiteral("drops image");
    const QString nothing = QStringLiteral("nothing");
    const QPixmap face = plainPixmap(QSize(9, 9), Qt::red);
    QCOMPARE(caches.effectOf("ImageBackground", face), drops);
    QCOMPARE(caches.effectOf("ImageBackground", face), drops);
    QCOMPARE(caches.effectOf("colorText", QColor(Qt::red)), drops);
    QCOMPARE(caches.effectOf("colorText", QColor(Qt::red)), nothing);
    QCOMPARE(caches.effectOf("xLabel", 11), drops);
    QCOMPARE(caches.effectOf("xLabel", 11), nothing);
    QCOMPARE(caches.effectOf([&] {
        tile->setState({1, 5});
    }),
             QStringLiteral("posts, drops image"));
    QCOMPARE(caches.effectOf([&] { tile->setState({1, 5}); }), nothing);
    QCOMPARE(caches.effectOf([&] { tile->resize(90, 30); }), drops);
    QCOMPARE(caches.effectOf([&] { tile->setEnabled(false); }), drops);
    QCOMPARE(caches.effectOf([&] { delete new QObject(tile.widget); }), drops);
    QCOMPARE(caches.effectOf(QEvent::PolishRequest), drops);
    QCOMPARE(caches.effectOf(QEvent::UpdateRequest), drops);
    QCOMPARE(caches.effectOf([&] { new QObject(tile.widget); }), nothing);
    QCOMPARE(caches.effectOf(QEvent::Enter), nothing);
    QCOMPARE(caches.effectOf("text", QStringLiteral("unseen")), QStringLiteral("updates"));
}

void MetroShelterTest::textAndIconActAtOnce()
{
    Stage<OpenTile> tile;
    CacheProbe caches = probe(tile.widget);
    const QString drops = QStringLiteral("drops image");
    QCOMPARE(caches.effectOf([&] { tile->setText(QStringLiteral("Load")); }), drops);
    QCOMPARE(caches.effectOf([&] { tile->setText(QStringLiteral("Load")); }), drops);
    QCOMPARE(caches.effectOf([&] { tile->setIcon(QIcon()); }), drops);
    tile->setText(QStringLiteral("Bypass"));
    QVERIFY(!takesUpdateRequest(tile.widget));
}

void MetroShelterTest::nullImageIsReported()
{
    OpenTile tile(nullptr);
    tile.resize(0, 0);
    sendPaint(&tile);
    // An unnamed tile has an empty name.
    QCOMPARE(takeErrorLines(),
             QList<ErrorLine>(
                 {{QStringLiteral("KivWidgets/metroshelter.cpp"), QStringLiteral("paintImage"),
                   QStringLiteral("Nel controllo  Image e' NULL")}}));
    sendPaint(&tile);
    QCOMPARE(takeErrorLines(), QList<ErrorLine>());
    tile.setObjectName(QStringLiteral("carico"));
    tile.setxLabel(0);
    sendPaint(&tile);
    QCOMPARE(takeErrorLines(),
             QList<ErrorLine>(
                 {{QStringLiteral("KivWidgets/metroshelter.cpp"), QStringLiteral("paintImage"),
                   QStringLiteral("Nel controllo carico Image e' NULL")}}));
    // An application may ask for the painting before there is an image at all.
    OpenTile unpainted(nullptr);
    unpainted.setObjectName(QStringLiteral("carico"));
    unpainted.paintImage();
    QCOMPARE(takeErrorLines(),
             QList<ErrorLine>(
                 {{QStringLiteral("KivWidgets/metroshelter.cpp"), QStringLiteral("paintImage"),
                   QStringLiteral("Nel controllo carico Image e' NULL")}}));
    takeWarnings();
}

void MetroShelterTest::mutatedEqualsFresh_data()
{
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QVariant>("value");
    QTest::newRow("ImageBackground")
        << QByteArray("ImageBackground") << QVariant(plainPixmap(QSize(5, 5), Qt::darkBlue));
    QTest::newRow("colorText") << QByteArray("colorText") << QVariant(QColor(Qt::green));
    QTest::newRow("xLabel") << QByteArray("xLabel") << QVariant(40);
    QTest::newRow("size") << QByteArray("size") << QVariant(QSize(80, 22));
}

void MetroShelterTest::mutatedEqualsFresh()
{
    QFETCH(QByteArray, property);
    QFETCH(QVariant, value);
    const auto configure = [](OpenTile *tile) {
        tile->resize(150, 40);
        tile->setText(QStringLiteral("Load"));
    };
    QCOMPARE(freshnessProblem<OpenTile>(configure, property, value), QString());
}

KIV_LAYOUT(MetroShelter, 1, KIV_BASE(QAbstractButton), KIV_BASE(MetroStyle), KIV_FIELD(image),
           KIV_FIELD(ImageBackground), KIV_FIELD(colorText), KIV_FIELD(xLabel));

void MetroShelterTest::layout()
{
    QCOMPARE(LayoutMetroShelter::problem(), QString());
}

KIV_TEST_MAIN(MetroShelterTest)

#include "tst_metroshelter.moc"

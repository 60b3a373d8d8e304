// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "cacheprobe.h"
#include "images.h"
#include "testmain.h"

#include <aerobutton.h>
#include <aerogroupbox.h>
#include <aerolinebar.h>
#include <aerostatusbar.h>
#include <aeroswitch.h>
#include <metrocirclerate.h>
#include <metrolinerate.h>
#include <metronavdrawer.h>
#include <metroshelter.h>
#include <metrosysicon.h>
#include <metrotabicon.h>
#include <metroxbar.h>
#include <rotatestackedwidget.h>

#include <QtGui/QImage>

using Case = QStringList (*)();
Q_DECLARE_METATYPE(Case)

namespace {

/// A little more than 2^26 pixels, and few enough that memory alone would still suffice.
constexpr QSize tooLarge(8200, 8200);

/// The images that error lines call null images.
QStringList namesIn(const QList<ErrorLine> &lines)
{
    const QString begin = QStringLiteral("Nel controllo ");
    const QString end = QStringLiteral(" e' NULL");
    QStringList names;
    for (const ErrorLine &line : lines) {
        if (line.message.startsWith(begin) && line.message.endsWith(end))
            names += line.message.mid(begin.size()).chopped(end.size()).trimmed();
        else
            names += line.message;
    }
    return names;
}

/// Enlarges a widget that has been shown in its usual size, paints it, and makes it small again.
/// @return the images that were refused meanwhile.
template <typename Widget, typename Enlarge, typename Restore>
QStringList refused(Enlarge enlarge, Restore restore)
{
    Stage<Widget> stage;
    const QImage usual = imageOf(stage.widget);
    ErrorCapture errors;
    enlarge(stage.widget);
    deliverAll();
    const QStringList names = namesIn(errors.takeLines());
    restore(stage.widget);
    deliverAll();
    const QString difference = differenceOf(imageOf(stage.widget), usual);
    return difference.isEmpty() ? names : QStringList(difference);
}

template <typename Widget>
QStringList refusedWhenResized()
{
    return refused<Widget>([](Widget *widget) { widget->resize(tooLarge); },
                           [](Widget *widget) { widget->resize(100, 40); });
}

QStringList refusedToASysIcon()
{
    return refused<MetroSysIcon>([](MetroSysIcon *icon) { icon->setBorder(4200); },
                                 [](MetroSysIcon *icon) { icon->setBorder(10); });
}

QStringList refusedToADial()
{
    return refused<MetroCirclerate>(
        [](MetroCirclerate *dial) {
            dial->setArcSize(359);
            dial->setRadius(4200);
        },
        [](MetroCirclerate *dial) {
            dial->setArcSize(200);
            dial->setRadius(37);
        });
}

/// A tab keeps its images when it is resized.
QStringList refusedToATab()
{
    const auto resize = [](MetroTabicon *tab, QSize size) {
        tab->resize(size);
        sendPlain(tab, QEvent::PolishRequest);
    };
    return refused<MetroTabicon>([&](MetroTabicon *tab) { resize(tab, tooLarge); },
                                 [&](MetroTabicon *tab) { resize(tab, QSize(100, 40)); });
}

class OpenBox : public AeroGroupbox
{
public:
    using AeroGroupbox::AeroGroupbox;
    using AeroGroupbox::imageTitle;
};

class OpenStrip : public AeroStatusbar
{
public:
    using AeroStatusbar::AeroStatusbar;
    using AeroStatusbar::image;
};

} // namespace

/// Images of more than 2^26 pixels are not allocated: what an application asks for by mistake takes
/// no gigabytes.
class LargeImagesTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void widgetLargerThanAnyScreen_data();
    void widgetLargerThanAnyScreen();
    void bound();
    void hugeTexts();
    void backgroundMadeLater();
    void pageLargerThanAnyScreen();
};

void LargeImagesTest::widgetLargerThanAnyScreen_data()
{
    QTest::addColumn<Case>("refusedImages");
    QTest::addColumn<QStringList>("names");
    const auto row = [](const char *name, Case refusedImages, const char *names) {
        QTest::newRow(name) << refusedImages << QString::fromLatin1(names).split(QLatin1Char(' '));
    };
    row("AeroButton", refusedWhenResized<AeroButton>, "Image");
    row("AeroGroupbox", refusedWhenResized<AeroGroupbox>, "Image");
    row("AeroStatusbar", refusedWhenResized<AeroStatusbar>, "Image");
    row("AeroSwitch", refusedWhenResized<AeroSwitch>, "Image ImagePressed");
    row("MetroCirclerate", refusedToADial, "ImageFG ImageBG Image");
    row("MetroLinerate", refusedWhenResized<MetroLinerate>, "ImageFG ImageBG Image");
    row("MetroNavdrawer", refusedWhenResized<MetroNavdrawer>, "Image");
    row("MetroShelter", refusedWhenResized<MetroShelter>, "Image");
    row("MetroSysIcon", refusedToASysIcon, "Image");
    row("MetroTabicon", refusedToATab, "Image");
    row("MetroXbar", refusedWhenResized<MetroXbar>, "ImageFG ImageBG Image");
}

void LargeImagesTest::widgetLargerThanAnyScreen()
{
    QFETCH(Case, refusedImages);
    QFETCH(QStringList, names);
    QCOMPARE(refusedImages(), names);
}

void LargeImagesTest::bound()
{
    OpenStrip strip(nullptr);
    const auto imageMadeFor = [&strip](QSize size) {
        strip.resize(size);
        sendPlain(&strip, QEvent::PolishRequest);
        sendPaint(&strip);
        return strip.image->size();
    };
    QCOMPARE(imageMadeFor(QSize(1 << 13, 1 << 13)), QSize(1 << 13, 1 << 13));
    QCOMPARE(imageMadeFor(QSize((1 << 13) + 1, 1 << 13)), QSize(0, 0));
    QCOMPARE(namesIn(takeErrorLines()), QStringList(QStringLiteral("Image")));
    QCOMPARE(imageMadeFor(QSize(1 << 22, 1 << 22)), QSize(0, 0));
    QCOMPARE(namesIn(takeErrorLines()), QStringList(QStringLiteral("Image")));
    // The widget was never shown, so Qt calls a paint of it early.
    takeWarnings();
}

void LargeImagesTest::hugeTexts()
{
    Stage<AeroLinebar> bar(QSize(200, 50));
    bar->setValue(40);
    bar->setValuePosition(AeroLinebar::CenterVal);
    const QFont usual = bar->font();
    const QImage before = imageOf(bar.widget);
    QFont huge = usual;
    huge.setPointSize(4000);
    bar->setFont(huge);
    bar->setTextBold(false);
    deliverAll();
    QCOMPARE(namesIn(takeErrorLines()), QStringList(QStringLiteral("ImageText")));
    bar->setFont(usual);
    bar->setTextBold(true);
    COMPARE_IMAGES(imageOf(bar.widget), before);

    Stage<OpenBox> box(QSize(200, 50));
    box->setFont(huge);
    box->setTitle(QStringLiteral("Battery"));
    deliverAll();
    QVERIFY(box->imageTitle);
    QVERIFY(box->imageTitle->isNull());
}

void LargeImagesTest::backgroundMadeLater()
{
    Stage<MetroShelter> fresh(QSize(100, 40));
    Stage<MetroShelter> tile(QSize(100, 40));
    tile->setBackgroundImage(QPixmap());
    tile->resize(tooLarge);
    deliverAll();
    QCOMPARE(namesIn(takeErrorLines()), QStringList(QStringLiteral("Image")));
    QVERIFY(tile->getImageBackground().isNull());
    // The usual black one comes with the first size that has an image.
    tile->resize(100, 40);
    deliverAll();
    COMPARE_IMAGES(imageOf(tile.widget), imageOf(fresh.widget));
    QCOMPARE(tile->getImageBackground().size(), QSize(100, 40));
}

void LargeImagesTest::pageLargerThanAnyScreen()
{
    Stage<RotateStackedWidget> stack(QSize(120, 80));
    auto *page = new QWidget;
    page->setAutoFillBackground(true);
    page->setPalette(QPalette(Qt::red));
    stack->addWidget(page);
    stack->addWidget(new QWidget);
    deliverAll();
    stack->setAnimationEnabled(true);
    stack->setCurrentIndex(1);
    // The page is grabbed in its own size.
    page->resize(100, 80);
    QCOMPARE(imageOf(stack.widget).pixelColor(30, 30), QColor(Qt::red));
    page->resize(tooLarge);
    QCOMPARE(imageOf(stack.widget).pixelColor(30, 30).alpha(), 0);
}

KIV_TEST_MAIN(LargeImagesTest)

#include "tst_largeimages.moc"

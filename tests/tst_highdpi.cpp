// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "testmain.h"
#include "widgetclasses.h"
#include "widgetprobe.h"

#include <aerobutton.h>
#include <aerogroupbox.h>
#include <aerolinebar.h>
#include <aerostatusbar.h>
#include <metrobatticon.h>
#include <metrocirclerate.h>
#include <metrolinerate.h>
#include <metronavdrawer.h>
#include <metroshelter.h>
#include <metrostatusbar.h>
#include <metrosysicon.h>
#include <metrotabicon.h>
#include <metroxbar.h>
#include <qtversion_p.h>
#include <rotatestackedwidget.h>
#include <simpleslideswitch.h>
#include <slideswitch.h>
#include <transpbutton.h>

#include <QtCore/QDir>
#include <QtGui/QPainter>
#include <QtGui/QScreen>
#include <QtGui/QWindow>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <private/qabstractfileengine_p.h>
#include <private/qhighdpiscaling_p.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>

namespace {

/// The ratio that the environment asks for.
double startRatio()
{
    const double factor = qEnvironmentVariable("QT_SCALE_FACTOR").toDouble();
    return factor > 0.0 ? factor : 1.0;
}

/// Makes the screen one of a ratio while the program runs, and in the end what it was.
class ScreenRatio
{
public:
    explicit ScreenRatio(double ratio)
    {
        set(ratio);
    }
    ~ScreenRatio()
    {
        set(startRatio());
    }
    ScreenRatio(const ScreenRatio &) = delete;
    ScreenRatio &operator=(const ScreenRatio &) = delete;

    /// With windows on the screen Qt warns.
    static void set(double ratio)
    {
        if (ratio != qApp->primaryScreen()->devicePixelRatio())
            QHighDpiScaling::setGlobalFactor(ratio);
    }
};

/// Adds a row of the present test for each ratio, and for each of @p names.
void addRatioRows(const QStringList &names)
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<double>("ratio");
    const QList<double> all{1.25, 1.5, 1.75, 2.0, 3.0};
    const QList<double> ratios = startRatio() == 1.0 ? all : QList<double>{startRatio()};
    for (const double ratio : ratios) {
        for (const QString &name : names)
            QTest::addRow("%s at %g", qPrintable(name), ratio) << name << ratio;
    }
}

/// A window with a child that @p create makes, shown.
struct Shown
{
    explicit Shown(const std::function<QWidget *(QWidget *)> &create)
    {
        window.resize(900, 600);
        widget = create(&window);
        window.show();
        deliverAll();
    }
    QImage image() const
    {
        return widget->grab().toImage().convertToFormat(QImage::Format_ARGB32_Premultiplied);
    }

    QWidget window;
    QWidget *widget = nullptr;
};

bool differ(QRgb one, QRgb other)
{
    constexpr int visible = 12;
    return std::abs(qRed(one) - qRed(other)) > visible ||
           std::abs(qGreen(one) - qGreen(other)) > visible ||
           std::abs(qBlue(one) - qBlue(other)) > visible ||
           std::abs(qAlpha(one) - qAlpha(other)) > visible;
}

/// The number of edges inside of logical pixels: neighbours that belong to one and differ.
int fineEdges(const QImage &image)
{
    const double ratio = image.devicePixelRatio();
    const auto sameCell = [ratio](int a, int b) {
        return std::floor(a / ratio) == std::floor(b / ratio);
    };
    int edges = 0;
    for (int y = 0; y + 1 < image.height(); ++y) {
        for (int x = 0; x + 1 < image.width(); ++x) {
            edges += sameCell(x, x + 1) && differ(image.pixel(x, y), image.pixel(x + 1, y));
            edges += sameCell(y, y + 1) && differ(image.pixel(x, y), image.pixel(x, y + 1));
        }
    }
    return edges;
}

/// Whether a widget has no edge of its own: strips are gradients, and an idle stack only has pages.
bool isSmooth(QWidget *widget)
{
    return qobject_cast<MetroStatusbar *>(widget) || qobject_cast<AeroStatusbar *>(widget) ||
           qobject_cast<RotateStackedWidget *>(widget);
}

/// How far @p large, shrunk to the size of @p plain, is from it: the mean over all channels.
double meanDifference(QImage large, const QImage &plain)
{
    large.setDevicePixelRatio(1.0);
    const QImage shrunk =
        large.scaled(plain.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
            .convertToFormat(QImage::Format_ARGB32_Premultiplied);
    double sum = 0;
    for (int y = 0; y < plain.height(); ++y) {
        for (int x = 0; x < plain.width(); ++x) {
            const QRgb a = shrunk.pixel(x, y);
            const QRgb b = plain.pixel(x, y);
            sum += std::abs(qRed(a) - qRed(b)) + std::abs(qGreen(a) - qGreen(b)) +
                   std::abs(qBlue(a) - qBlue(b)) + std::abs(qAlpha(a) - qAlpha(b));
        }
    }
    return sum / (4.0 * plain.width() * plain.height());
}

/// Where @p image shows @p color, in pixels.
QRect placeOf(const QImage &image, const QColor &color)
{
    QRect place;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (!differ(image.pixel(x, y), color.rgba()))
                place |= QRect(x, y, 1, 1);
        }
    }
    return place;
}

/// Records the names of the files and resources that are looked at.
class FileWatch : public QAbstractFileEngineHandler
{
public:
    QAbstractFileEngine *create(const QString &name) const override
    {
        names << name;
        return nullptr;
    }
    bool has(const QString &directory) const
    {
        return !names.filter(directory).isEmpty();
    }

    mutable QStringList names;
};

/// Counts the paint events of a widget.
class PaintCount : public QObject
{
public:
    explicit PaintCount(QWidget *widget)
    {
        widget->installEventFilter(this);
    }
    bool eventFilter(QObject *, QEvent *event) override
    {
        number += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }

    int number = 0;
};

QPixmap filled(QSize size, const QColor &color, double ratio = 1.0)
{
    QPixmap pixmap(size);
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(color);
    return pixmap;
}

} // namespace

/// The widgets on screens of other pixel ratios than 1: at the ratio that QT_SCALE_FACTOR sets when
/// the program begins, and, where it sets 1, at those that the screen gets while it runs.
class HighDpiTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    // First, while no image has been loaded.
    void loadsOnlyImagesOfTheRatio();
    void looksAsAtOne_data();
    void looksAsAtOne();
    void rebuildsForTheScreen_data();
    void rebuildsForTheScreen();
    void textIsAsFineAsALabel_data();
    void textIsAsFineAsALabel();
    void imagesAreFine_data();
    void imagesAreFine();
    void iconsKeepTheirSize_data();
    void iconsKeepTheirSize();
    void pixmapsCountByLogicalSize_data();
    void pixmapsCountByLogicalSize();
    void turningPageIsFine();
    void largerImages();
    void movesBetweenScreens();
};

void HighDpiTest::loadsOnlyImagesOfTheRatio()
{
    if (startRatio() != 1.0)
        QSKIP("begins at a ratio of 1, at which this run does not begin");
    const ScreenRatio screen(1.0);
    const FileWatch files;
    const auto showAll = [] {
        for (const QString &name : widgetClasses()) {
            for (const WidgetState &state : widgetStates(name))
                QVERIFY(!Shown(state.create).image().isNull());
        }
    };
    showAll();
    QVERIFY(files.has(QStringLiteral(":/Images/")));
    QVERIFY(!files.has(QStringLiteral("/private/Images")));
    screen.set(2.0);
    showAll();
    QVERIFY(files.has(QStringLiteral("/private/Images2x/")));
    QVERIFY(!files.has(QStringLiteral("/private/Images3x/")));
}

void HighDpiTest::looksAsAtOne_data()
{
    if (startRatio() != 1.0)
        QSKIP("compares with a ratio of 1, at which this run does not begin");
    addRatioRows(widgetClasses());
}

void HighDpiTest::looksAsAtOne()
{
    QFETCH(QString, name);
    QFETCH(double, ratio);
    const ScreenRatio screen(1.0);
    double worst = 0;
    QString worstState;
    for (const WidgetState &state : widgetStates(name)) {
        screen.set(1.0);
        const QImage plain = Shown(state.create).image();
        screen.set(ratio);
        const Shown large(state.create);
        const QImage image = large.image();
        QCOMPARE(image.devicePixelRatio(), ratio);
        QCOMPARE(large.widget->size(), plain.size());
        const double difference = meanDifference(image, plain);
        if (difference > worst) {
            worst = difference;
            worstState = state.caption;
        }
    }
    QVERIFY2(worst > 0 && worst < 9,
             qPrintable(QStringLiteral("%1: %2").arg(worstState).arg(worst)));
}

void HighDpiTest::rebuildsForTheScreen_data()
{
    if (startRatio() != 1.0)
        QSKIP("changes the ratio of the screen, from 1");
    addRatioRows(widgetClasses());
}

void HighDpiTest::rebuildsForTheScreen()
{
    QFETCH(QString, name);
    QFETCH(double, ratio);
    const ScreenRatio screen(1.0);
    for (const WidgetState &state : widgetStates(name)) {
        const Shown moved(state.create);
        const QImage before = moved.image();
        // The first paint event at the new ratio shows the new image, so nothing flashes.
        const PaintCount paints(moved.widget);
        screen.set(ratio);
        QCOMPARE(paints.number, 0);
        const QImage there = moved.image();
        QCOMPARE(paints.number, 1);
        QCOMPARE(there.devicePixelRatio(), ratio);
        const Shown built(state.create);
        QVERIFY2(there == built.image(), qPrintable(state.caption));
        screen.set(1.0);
        QVERIFY2(moved.image() == before, qPrintable(state.caption));
    }
    for (const QString &warning : takeWarnings())
        QVERIFY2(warning.contains(QStringLiteral("QHighDpiScaling")), qPrintable(warning));
}

void HighDpiTest::textIsAsFineAsALabel_data()
{
    addRatioRows({QStringLiteral("AeroButton"), QStringLiteral("AeroGroupbox"),
                  QStringLiteral("AeroLinebar"), QStringLiteral("TranspButton"),
                  QStringLiteral("MetroShelter"), QStringLiteral("MetroCirclerate"),
                  QStringLiteral("MetroLinerate"), QStringLiteral("MetroXbar"),
                  QStringLiteral("SlideSwitch"), QStringLiteral("SimpleSlideSwitch")});
}

void HighDpiTest::textIsAsFineAsALabel()
{
    QFETCH(QString, name);
    QFETCH(double, ratio);
    const ScreenRatio screen(ratio);
    const QString text = QStringLiteral("35%");
    const Shown shown([&](QWidget *parent) {
        QWidget *widget = findWidget(name)->create(parent);
        widget->resize(120, 60);
        widget->setProperty("bold", false);
        widget->setProperty("text", text);
        widget->setProperty("title", text);
        widget->setProperty("label", QString());
        widget->setProperty("measure", QStringLiteral("%"));
        if (auto *bar = qobject_cast<AeroLinebar *>(widget)) {
            bar->setValuePosition(AeroLinebar::rightVal);
            bar->setText(text);
        }
        return widget;
    });
    // Edges move between logical pixels with the place of the text; the least of a few places
    // counts.
    int least = std::numeric_limits<int>::max();
    for (int margin = 0; margin < 4; ++margin) {
        const Shown label([&](QWidget *parent) {
            auto *plain = new QLabel(text, parent);
            plain->setMargin(margin);
            plain->adjustSize();
            return plain;
        });
        const Shown button([&](QWidget *parent) {
            auto *plain = new QPushButton(text, parent);
            plain->setFlat(true);
            plain->resize(plain->sizeHint() + QSize(2 * margin, 2 * margin));
            return plain;
        });
        least = std::min({least, fineEdges(label.image()), fineEdges(button.image())});
    }
    QVERIFY(least > 0);
    const int edges = fineEdges(shown.image());
    QVERIFY2(edges >= least, qPrintable(QStringLiteral("%1 of %2").arg(edges).arg(least)));
}

void HighDpiTest::imagesAreFine_data()
{
    addRatioRows({QStringLiteral("MetroBattIcon"), QStringLiteral("MetroShelter"),
                  QStringLiteral("MetroTabicon"), QStringLiteral("MetroSysIcon"),
                  QStringLiteral("MetroNavdrawer"), QStringLiteral("SlideSwitch"),
                  QStringLiteral("SimpleSlideSwitch")});
}

void HighDpiTest::imagesAreFine()
{
    QFETCH(QString, name);
    QFETCH(double, ratio);
    const ScreenRatio screen(ratio);
    const WidgetDescription *description = findWidget(name);
    const Shown shown([&](QWidget *parent) {
        QWidget *widget = description->create(parent);
        widget->resize(description->size);
        if (description->setState)
            description->setState(widget, {2, 5});
        return widget;
    });
    const int edges = fineEdges(shown.image());
    QVERIFY2(edges > 20, qPrintable(QString::number(edges)));
}

void HighDpiTest::iconsKeepTheirSize_data()
{
    addRatioRows({QStringLiteral("AeroButton"), QStringLiteral("TranspButton"),
                  QStringLiteral("MetroSysIcon"), QStringLiteral("MetroBattIcon"),
                  QStringLiteral("MetroShelter"), QStringLiteral("MetroTabicon")});
}

void HighDpiTest::iconsKeepTheirSize()
{
    QFETCH(QString, name);
    QFETCH(double, ratio);
    const ScreenRatio screen(ratio);
    const QColor plainColor(200, 0, 200);
    const QColor largeColor(0, 200, 200);
    for (const bool multiplies : {false, true}) {
        KivPrivate::setHighDpiPixmaps(multiplies);
        // An icon of one size, and one that has it for larger screens, too.
        QList<QRectF> places;
        for (const bool hasLarger : {false, true}) {
            QIcon icon(filled({16, 16}, plainColor));
            if (hasLarger)
                icon.addPixmap(filled({48, 48}, largeColor));
            const Shown shown([&](QWidget *parent) {
                QWidget *widget = findWidget(name)->create(parent);
                widget->setProperty("icon", icon);
                widget->resize(120, 60);
                return widget;
            });
            const QRect place = placeOf(shown.image(), hasLarger ? largeColor : plainColor);
            QVERIFY(!place.isEmpty());
            places << QRectF(QPointF(place.topLeft()) / ratio, QSizeF(place.size()) / ratio);
        }
        for (const QRectF &place : places) {
            QVERIFY2(std::abs(place.width() - 16) <= 1.0,
                     qPrintable(QString::number(place.width())));
            QVERIFY(std::abs(place.height() - 16) <= 1.0);
            QVERIFY(std::abs(place.x() - places.first().x()) <= 1.0);
            QVERIFY(std::abs(place.y() - places.first().y()) <= 1.0);
        }
    }
    KivPrivate::setHighDpiPixmaps(false);
}

void HighDpiTest::pixmapsCountByLogicalSize_data()
{
    addRatioRows({QStringLiteral("pixmaps")});
}

void HighDpiTest::pixmapsCountByLogicalSize()
{
    QFETCH(double, ratio);
    const ScreenRatio screen(ratio);
    QPixmap striped = filled({160, 80}, Qt::white, 2.0);
    {
        QPainter painter(&striped);
        for (int x = 0; x < 160; x += 2)
            painter.fillRect(QRectF(x / 2.0, 0, 0.5, 40), Qt::black);
    }
    const auto check = [&](const Shown &shown, QSize size) {
        QCOMPARE(shown.widget->size(), size);
        QCOMPARE(shown.image().devicePixelRatio(), ratio);
        const int edges = fineEdges(shown.image());
        QVERIFY2(edges > (ratio < 1.5 ? 50 : 300), qPrintable(QString::number(edges)));
    };
    check(Shown([&](QWidget *parent) {
              auto *bar = new MetroStatusbar(parent);
              bar->setBackground(striped);
              bar->resize(1, 1);
              return bar;
          }),
          {80, 40});
    check(Shown([&](QWidget *parent) {
              auto *slide = new SimpleSlideSwitch(parent);
              slide->setCheckedImg(striped);
              slide->setUncheckedImg(striped);
              return slide;
          }),
          {80, 40});
    check(Shown([&](QWidget *parent) {
              auto *drawer = new MetroNavdrawer(parent);
              drawer->setImageTab(striped);
              drawer->setState(MetroNavdrawer::close);
              return drawer;
          }),
          {80 + 12, 40 + 24});
}

void HighDpiTest::turningPageIsFine()
{
    const ScreenRatio screen(startRatio() == 1.0 ? 2.0 : startRatio());
    const Shown shown([](QWidget *parent) {
        auto *stack = new RotateStackedWidget(parent);
        stack->resize(200, 80);
        stack->addWidget(new QLabel(QStringLiteral("First page"), stack));
        stack->addWidget(new QLabel(QStringLiteral("Second page"), stack));
        stack->setAnimationEnabled(true);
        return stack;
    });
    auto *stack = static_cast<RotateStackedWidget *>(shown.widget);
    stack->setCurrentIndex(1);
    stack->scaleTo(1.0);
    QVERIFY(fineEdges(shown.image()) > 20);
}

void HighDpiTest::largerImages()
{
    // Beside the public ones, which stay the only ones in their directory.
    const QDir plain(QStringLiteral(":/Images"));
    QVERIFY(!plain.entryList().isEmpty());
    for (const int ratio : {2, 3}) {
        const QDir larger(QStringLiteral(":/KivWidgets/private/Images%1x").arg(ratio));
        QCOMPARE(larger.entryList(), plain.entryList());
        for (const QString &file : plain.entryList()) {
            const QImage image(larger.filePath(file));
            QCOMPARE(image.size(), QImage(plain.filePath(file)).size() * ratio);
        }
    }
}

void HighDpiTest::movesBetweenScreens()
{
    const QList<QScreen *> screens = QGuiApplication::screens();
    if (screens.size() < 2)
        QSKIP("needs two screens; the test highdpi-screens runs it on such a display");
    QVERIFY(screens.at(0)->devicePixelRatio() != screens.at(1)->devicePixelRatio());
    for (const WidgetDescription &description : widgetCatalogue()) {
        const auto create = [&description](QWidget *parent) {
            QWidget *widget = description.create(parent);
            widget->resize(description.size);
            description.populate(widget);
            widget->setProperty("text", QStringLiteral("35%"));
            if (description.setState)
                description.setState(widget, {2, 5});
            return widget;
        };
        Shown moved(create);
        QImage first;
        for (QScreen *screen : {screens.at(0), screens.at(1), screens.at(0)}) {
            moved.window.windowHandle()->setScreen(screen);
            moved.window.show();
            deliverAll();
            const QImage image = moved.image();
            QCOMPARE(image.devicePixelRatio(), screen->devicePixelRatio());
            QCOMPARE(moved.widget->devicePixelRatioF(), screen->devicePixelRatio());
            if (screen == screens.at(1))
                QVERIFY2(fineEdges(image) > 0 || isSmooth(moved.widget), description.className);
            else if (first.isNull())
                first = image;
            else
                QVERIFY2(image == first, description.className);
        }
    }
}

KIV_TEST_MAIN(HighDpiTest)
#include "tst_highdpi.moc"

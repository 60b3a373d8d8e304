// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "freshness.h"
#include "glasspanel.h"
#include "images.h"
#include "testmain.h"
#include "widgetprobe.h"

#include <aerobutton.h>
#include <aerogroupbox.h>
#include <aerostatusbar.h>
#include <metrocirclerate.h>
#include <metrolinerate.h>
#include <metrosysicon.h>
#include <metroxbar.h>
#include <slideswitch.h>
#include <transpbutton.h>

#include <QtCore/QRandomGenerator>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>

#include <dlfcn.h>
#include <malloc.h>

#include <algorithm>
#include <memory>
#include <vector>

Q_DECLARE_METATYPE(GlassPanel)

// What the library remembers for all of its widgets saves painting, and changes no pixel.

namespace {

int drawnPaths = 0;

/// The paths that are drawn while @p work runs.
int pathsDrawnBy(const std::function<void()> &work)
{
    drawnPaths = 0;
    work();
    return drawnPaths;
}

struct Strip : AeroStatusbar
{
    using AeroStatusbar::AeroStatusbar;
    using AeroStatusbar::image;
};

struct Dial : MetroCirclerate
{
    using MetroCirclerate::arcRect;
    using MetroCirclerate::Image;
    using MetroCirclerate::ImageBG;
    using MetroCirclerate::ImageFG;
    using MetroCirclerate::MetroCirclerate;
};

struct ValueBar : MetroXbar
{
    using MetroXbar::Image;
    using MetroXbar::ImageBG;
    using MetroXbar::ImageFG;
    using MetroXbar::MetroXbar;
};

/// Draws its text in its middle, as plainly as can be.
struct PlainText : QWidget
{
    using QWidget::QWidget;
    void paintEvent(QPaintEvent *) override
    {
        const QFontMetrics metrics(font());
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setFont(font());
        painter.drawText(QPointF((width() - metrics.size(Qt::TextSingleLine, text).width()) / 2 - 1,
                                 (height() - metrics.height()) / 2 + metrics.ascent()),
                         text);
    }

    QString text;
};

double usedBytes()
{
    const struct mallinfo2 info = mallinfo2();
    return double(info.uordblks) + double(info.hblkhd);
}

/// Paints widgets of all that is remembered, each unlike the others; @p seed decides them.
void paintMany(int count, quint32 seed)
{
    QRandomGenerator random(seed);
    for (int i = 0; i < count; ++i) {
        std::vector<std::unique_ptr<QWidget>> widgets;
        const auto add = [&](QWidget *widget, QSize size) {
            widgets.emplace_back(widget);
            widget->resize(size);
        };
        const QColor color = QColor::fromRgb(random.generate());
        auto *button = new AeroButton;
        button->setText(QString::number(random.generate()));
        button->setColor(color);
        add(button, {80 + random.bounded(90), 30 + random.bounded(30)});
        auto *box = new AeroGroupbox;
        box->setColor(color);
        add(box, {150 + random.bounded(90), 100 + random.bounded(90)});
        auto *icon = new MetroSysIcon;
        icon->setBorder(1 + random.bounded(60));
        add(icon, icon->size());
        auto *dial = new MetroCirclerate;
        dial->setValue(random.bounded(100.0));
        add(dial, {76, 51});
        auto *bar = new MetroXbar;
        bar->setValue(random.bounded(300));
        add(bar, {150 + random.bounded(90), 40});
        for (const std::unique_ptr<QWidget> &widget : widgets) {
            // What is drawn again is remembered, too.
            imageOf(widget.get());
            imageOf(widget.get());
        }
    }
}

} // namespace

/// Stands before Qt's for the library, too.
void QPainter::drawPath(const QPainterPath &path)
{
    ++drawnPaths;
    using DrawPath = void (*)(QPainter *, const QPainterPath &);
    static const auto original =
        reinterpret_cast<DrawPath>(dlsym(RTLD_NEXT, "_ZN8QPainter8drawPathERK12QPainterPath"));
    original(this, path);
}

class MemoriesTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void equalButtonsPaintOnePanel();
    void equalPlatesAreOne();
    void otherPanelsAreTheirOwn_data();
    void otherPanelsAreTheirOwn();
    void sharedImagesStayApart();
    void paintedLayerShows();
    void paintedBarLayerShows();
    void layersOfAnIdleBarStay();
    void valuesComeBack();
    void equalDialsShareLayers();
    void newValues_data();
    void newValues();
    void newValueOnAnOddCircle();
    void gaugeFollowsItsPalette();
    void gaugeFollowsTheFont();
    void randomTexts();
    void knobOnAnyDevice_data();
    void knobOnAnyDevice();
    void knobBelowAnother();
    void boundedBytes();
};

void MemoriesTest::equalButtonsPaintOnePanel()
{
    constexpr int pathsOfAPanel = 3;
    std::vector<std::unique_ptr<Stage<AeroButton>>> buttons;
    const int drawn = pathsDrawnBy([&] {
        for (int i = 0; i < 12; ++i) {
            buttons.push_back(std::make_unique<Stage<AeroButton>>(QSize(97, 33)));
            buttons.back()->widget->setText(QString::number(i));
            deliverAll();
            imageOf(buttons.back()->widget);
        }
    });
    QCOMPARE(drawn, pathsOfAPanel);

    // Each has its own text.
    for (int i = 0; i < 12; ++i) {
        Stage<AeroButton> alone(QSize(97, 33));
        alone->setText(QString::number(i));
        deliverAll();
        COMPARE_IMAGES(imageOf(buttons[std::size_t(i)]->widget), imageOf(alone.widget));
    }

    AeroButton &changed = *buttons.front()->widget;
    QCOMPARE(pathsDrawnBy([&] {
                 changed.setColor(Qt::darkGreen);
                 deliverAll();
                 imageOf(&changed);
             }),
             pathsOfAPanel);
    QCOMPARE(pathsDrawnBy([&] {
                 changed.setColor(Qt::gray);
                 deliverAll();
                 imageOf(&changed);
             }),
             0);
}

void MemoriesTest::equalPlatesAreOne()
{
    Stage<MetroSysIcon> icon;
    icon->setBorder(13);
    deliverAll();
    const QImage before = imageOf(icon.widget);
    icon->setState({5, 5});
    deliverAll();
    QVERIFY(imageOf(icon.widget) != before);
    QCOMPARE(pathsDrawnBy([&] {
                 icon->setState({0, 0});
                 deliverAll();
                 imageOf(icon.widget);
                 Stage<MetroSysIcon> other;
                 other->setBorder(13);
                 other->setState({5, 5});
                 deliverAll();
                 imageOf(other.widget);
             }),
             0);
}

void MemoriesTest::otherPanelsAreTheirOwn_data()
{
    QTest::addColumn<GlassPanel>("panel");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<bool>("enabled");
    const QSize size(61, 41);
    const GlassPanel usual;
    const auto add = [](const char *name, const GlassPanel &panel, QSize panelSize, bool enabled) {
        QTest::newRow(name) << panel << panelSize << enabled;
    };
    const auto changed = [&](auto GlassPanel::*setting, auto value) {
        GlassPanel panel = usual;
        panel.*setting = value;
        return panel;
    };
    add("usual", usual, size, true);
    add("disabled", usual, size, false);
    add("wider", usual, {62, 41}, true);
    add("higher", usual, {61, 42}, true);
    add("turned", usual, {41, 61}, true);
    add("color", changed(&GlassPanel::color, QColor(1, 2, 3)), size, true);
    add("translucent color", changed(&GlassPanel::color, QColor(1, 2, 3, 4)), size, true);
    add("shadow", changed(&GlassPanel::shadow, QColor(1, 2, 3)), size, true);
    add("pen", changed(&GlassPanel::colorPen, QColor(1, 2, 3)), size, true);
    add("width", changed(&GlassPanel::widthPen, 5), size, true);
    add("opacity", changed(&GlassPanel::opacity, 0.5), size, true);
    add("roundness", changed(&GlassPanel::roundness, 70), size, true);
}

/// After each other, and each of them twice.
void MemoriesTest::otherPanelsAreTheirOwn()
{
    QFETCH(GlassPanel, panel);
    QFETCH(QSize, size);
    QFETCH(bool, enabled);
    const QImage expected = drawnImage(
        size, [&](QPainter *painter) { (enabled ? panel : panel.disabled()).draw(painter, size); });
    for (int round = 0; round < 2; ++round) {
        Stage<Strip> strip(size);
        strip->setColor(panel.color);
        strip->setShadow(panel.shadow);
        strip->setColorPen(panel.colorPen);
        strip->setWidthPen(panel.widthPen);
        strip->setOpacity(panel.opacity);
        strip->setRoundness(panel.roundness);
        strip->setEnabled(enabled);
        deliverAll();
        imageOf(strip.widget);
        COMPARE_IMAGES(*strip->image, expected);
    }
}

void MemoriesTest::sharedImagesStayApart()
{
    Stage<Strip> first(QSize(120, 30));
    Stage<Strip> second(QSize(120, 30));
    imageOf(first.widget);
    imageOf(second.widget);
    const QImage panel = imageOf(second.widget);
    COMPARE_IMAGES(imageOf(first.widget), panel);
    QPainter(first->image).fillRect(10, 10, 5, 5, Qt::red);
    QVERIFY(imageOf(first.widget) != panel);
    COMPARE_IMAGES(imageOf(second.widget), panel);
    Stage<Strip> third(QSize(120, 30));
    COMPARE_IMAGES(imageOf(third.widget), panel);
}

void MemoriesTest::paintedLayerShows()
{
    Stage<Dial> dial;
    const QImage before = imageOf(dial.widget);
    COMPARE_IMAGES(imageOf(dial.widget), before);
    for (QImage *layer : {dial->ImageBG, dial->Image}) {
        const QImage plain = *layer;
        QPainter(layer).fillRect(layer->rect(), Qt::darkGreen);
        QVERIFY(imageOf(dial.widget) != before);
        *layer = plain;
        COMPARE_IMAGES(imageOf(dial.widget), before);
    }
}

void MemoriesTest::paintedBarLayerShows()
{
    // Another bar of the same looks has the same layers.
    Stage<ValueBar> other(QSize(150, 40));
    const QImage before = imageOf(other.widget);
    struct Painted : ValueBar
    {
        using ValueBar::ValueBar;
        void paintEvent(QPaintEvent *event) override
        {
            createImages();
            QPainter(Image).fillRect(20, 20, 10, 10, Qt::red);
            ValueBar::paintEvent(event);
        }
    };
    Stage<Painted> bar(QSize(150, 40));
    const QImage painted = imageOf(bar.widget);
    QCOMPARE(painted.pixelColor(24, 24), QColor(Qt::red));
    COMPARE_IMAGES(imageOf(bar.widget), painted);
    COMPARE_IMAGES(imageOf(other.widget), before);
}

void MemoriesTest::layersOfAnIdleBarStay()
{
    Stage<ValueBar> bar(QSize(150, 40));
    imageOf(bar.widget);
    const QImage layers[] = {*bar->Image, *bar->ImageBG, *bar->ImageFG};
    imageOf(bar.widget);
    COMPARE_IMAGES(*bar->Image, layers[0]);
    COMPARE_IMAGES(*bar->ImageBG, layers[1]);
    COMPARE_IMAGES(*bar->ImageFG, layers[2]);
}

/// Painted, painted again, and from what is remembered.
void MemoriesTest::valuesComeBack()
{
    Stage<Dial> dial;
    Stage<Dial> other;
    other->setCursor(QColor(20, 30, 40, 50));
    for (int round = 0; round < 4; ++round) {
        for (int eighths = 0; eighths <= 8; ++eighths) {
            const double value = eighths * 12.5;
            for (const Stage<Dial> *shown : {&dial, &other}) {
                shown->widget->setValue(value);
                imageOf(shown->widget);
                const QImage expected = drawnImage(QSize(76, 51), [&](QPainter *painter) {
                    painter->setBrush(shown->widget->getCursor());
                    painter->setPen(shown->widget->getCursor());
                    painter->drawPie(QRectF(1, 1, 72, 72), 200 * 16, -eighths * 25 * 16);
                });
                COMPARE_IMAGES(*shown->widget->Image, expected);
            }
        }
    }
}

void MemoriesTest::equalDialsShareLayers()
{
    Stage<Dial> first;
    Stage<Dial> second;
    imageOf(first.widget);
    imageOf(second.widget);
    QCOMPARE(first->ImageBG->constBits(), second->ImageBG->constBits());
    QCOMPARE(first->ImageFG->constBits(), second->ImageFG->constBits());
    const QImage before = imageOf(second.widget);
    QPainter(first->ImageFG).fillRect(0, 0, 20, 51, Qt::black);
    QVERIFY(imageOf(first.widget) != before);
    COMPARE_IMAGES(imageOf(second.widget), before);

    // Any setting that changes the mask gives another.
    const QImage mask = *second->ImageFG;
    const std::function<void(Dial *)> settings[] = {
        [](Dial *dial) { dial->setNumTick(7); },    [](Dial *dial) { dial->setTickness(8); },
        [](Dial *dial) { dial->setMinAngle(170); }, [](Dial *dial) { dial->setArcSize(150); },
        [](Dial *dial) { dial->setRadius(30); },
    };
    for (const auto &set : settings) {
        set(second.widget);
        deliverAll();
        imageOf(second.widget);
        QVERIFY(*second->ImageFG != mask);
        Stage<Dial> back;
        imageOf(back.widget);
        COMPARE_IMAGES(*back->ImageFG, mask);
    }
}

void MemoriesTest::newValues_data()
{
    QTest::addColumn<quint32>("seed");
    QTest::addColumn<int>("mostRadius");
    QTest::newRow("small dials") << quint32(1) << 12;
    QTest::newRow("usual dials") << quint32(2) << 60;
    QTest::newRow("large dials") << quint32(3) << 300;
}

/// Of dials of any shape and color, in both directions from 0. Most end in a quadrant in which an
/// earlier one ended, and some close to an axis.
void MemoriesTest::newValues()
{
    QFETCH(quint32, seed);
    QFETCH(int, mostRadius);
    QRandomGenerator random(seed);
    for (int round = 0; round < 30; ++round) {
        Stage<Dial> dial;
        dial->setRadius(2 + random.bounded(mostRadius - 1));
        dial->setArcSize(random.bounded(360));
        dial->setMinAngle(random.bounded(360));
        dial->setMinValue(random.bounded(2) == 0 ? 0 : -random.bounded(100));
        dial->setPaintFromZero(random.bounded(2) == 0);
        QColor color = QColor::fromRgb(random.generate());
        if (random.bounded(4) == 0)
            color.setAlpha(random.bounded(256));
        dial->setCursor(color);
        for (int i = 0; i < 40; ++i) {
            const double minimum = dial->getMinValue();
            const double range = 100 - minimum;
            double value = minimum + random.bounded(range);
            if (random.bounded(4) == 0 && dial->getArcSize() > 0) {
                const int degrees = dial->getMinAngle() - random.bounded(5) * 90;
                const double angle = degrees + (random.bounded(9) - 4) / 16.0;
                value = minimum + (dial->getMinAngle() - angle) / dial->getArcSize() * range;
                value = std::clamp(value, minimum, 100.0);
            }
            dial->setValue(value);
            imageOf(dial.widget);
            const double from = dial->getPaintFromZero() ? std::max(minimum, 0.0) : minimum;
            const int start = dial->val2angle(from);
            const int span = dial->val2angle(100) - dial->val2angle(100 - value + from);
            QImage expected = emptyImage(dial->Image->size());
            expected.setDevicePixelRatio(dial->devicePixelRatioF());
            {
                QPainter painter(&expected);
                painter.setRenderHint(QPainter::Antialiasing);
                painter.setBrush(color);
                painter.setPen(color);
                painter.drawPie(QRectF(dial->arcRect), start, span);
            }
            const QString difference = differenceOf(*dial->Image, expected);
            QVERIFY2(difference.isEmpty(),
                     qPrintable(QStringLiteral("radius %1, start %2, span %3: %4")
                                    .arg(dial->getRadius())
                                    .arg(start)
                                    .arg(span)
                                    .arg(difference)));
        }
    }
}

/// A class derived from a dial may have a circle whose center lies within a pixel.
void MemoriesTest::newValueOnAnOddCircle()
{
    Stage<Dial> dial;
    imageOf(dial.widget);
    for (const QRect &circle : {QRect(1, 1, 71, 72), QRect(1, 1, 72, 71), QRect(-3, 2, 60, 40),
                                QRect(-900, -900, 1802, 1802), QRect(500, 500, 72, 72), QRect()}) {
        dial->arcRect = circle;
        for (double value = 7.3; value < 100; value += 4.7) {
            dial->setValue(value);
            imageOf(dial.widget);
            const int span = dial->val2angle(100) - dial->val2angle(100 - value);
            COMPARE_IMAGES(*dial->Image, drawnImage(QSize(76, 51), [&](QPainter *painter) {
                painter->setBrush(dial->getCursor());
                painter->setPen(dial->getCursor());
                painter->drawPie(QRectF(circle), 200 * 16, span);
            }));
        }
    }
}

void MemoriesTest::gaugeFollowsItsPalette()
{
    Stage<MetroCirclerate> dial;
    const QImage before = imageOf(dial.widget);
    QPalette palette = dial->palette();
    palette.setColor(QPalette::WindowText, Qt::red);
    dial->setPalette(palette);
    const QImage after = imageOf(dial.widget);
    QVERIFY(after != before);
    Stage<MetroCirclerate> fresh;
    fresh->setPalette(palette);
    COMPARE_IMAGES(after, imageOf(fresh.widget));
}

void MemoriesTest::gaugeFollowsTheFont()
{
    const QFont usual = QApplication::font();
    Stage<MetroLinerate> bar(QSize(150, 40));
    const QImage before = imageOf(bar.widget);
    QFont larger = usual;
    larger.setPointSize(14);
    bar->setFont(larger);
    deliverAll();
    QVERIFY(imageOf(bar.widget) != before);
    Stage<MetroLinerate> fresh(QSize(150, 40));
    fresh->setFont(larger);
    deliverAll();
    COMPARE_IMAGES(imageOf(bar.widget), imageOf(fresh.widget));
    bar->setFont(usual);
    deliverAll();
    COMPARE_IMAGES(imageOf(bar.widget), before);
}

/// Each is drawn three times: as text, and as what is remembered of it.
void MemoriesTest::randomTexts()
{
    QRandomGenerator random(20);
    const QString families[] = {QStringLiteral("DejaVu Sans"), QStringLiteral("DejaVu Serif"),
                                QStringLiteral("DejaVu Sans Mono"), QStringLiteral("Sans")};
    const QString pieces[] = {QStringLiteral("AV"),     QStringLiteral("35%"),
                              QStringLiteral("ffi"),    QString::fromUtf8("21,5 °C"),
                              QStringLiteral("Wa. T,"), QString::fromUtf8("Ωש"),
                              QStringLiteral("  "),     QStringLiteral("\t")};
    const QSize size(260, 90);
    for (int round = 0; round < 500; ++round) {
        QString text;
        for (int i = 1 + int(random.bounded(4)); i > 0; --i)
            text += pieces[random.bounded(random.bounded(4) == 0 ? 8 : 5)];
        QFont font(families[random.bounded(4)]);
        if (random.bounded(3) == 0)
            font.setPixelSize(4 + random.bounded(60));
        else
            font.setPointSizeF(4 + random.bounded(24.0));
        font.setBold(random.bounded(4) == 0);
        font.setItalic(random.bounded(4) == 0);
        font.setUnderline(random.bounded(12) == 0);
        font.setKerning(random.bounded(8) != 0);
        if (random.bounded(12) == 0)
            font.setCapitalization(QFont::SmallCaps);
        if (random.bounded(12) == 0)
            font.setLetterSpacing(QFont::PercentageSpacing, 120);
        if (random.bounded(12) == 0)
            font.setStyleStrategy(QFont::NoAntialias);

        Stage<TranspButton> button(size);
        button->setFont(font);
        button->setText(text);
        if (random.bounded(8) == 0)
            button->setLayoutDirection(Qt::RightToLeft);
        deliverAll();
        Stage<PlainText> plain(size);
        plain->setFont(font);
        plain->setLayoutDirection(button->layoutDirection());
        plain->text = text;
        deliverAll();
        const QImage expected = imageOf(plain.widget);
        for (int paint = 0; paint < 3; ++paint) {
            const QString difference = differenceOf(imageOf(button.widget), expected);
            QVERIFY2(difference.isEmpty(), qPrintable(QStringLiteral("%1 in %2, paint %3: %4")
                                                          .arg(text, font.toString())
                                                          .arg(paint)
                                                          .arg(difference)));
        }
    }
}

void MemoriesTest::knobOnAnyDevice_data()
{
    QTest::addColumn<int>("format");
    QTest::newRow("RGB32") << int(QImage::Format_RGB32);
    QTest::newRow("ARGB32") << int(QImage::Format_ARGB32);
    QTest::newRow("ARGB32_Premultiplied") << int(QImage::Format_ARGB32_Premultiplied);
    QTest::newRow("RGB16") << int(QImage::Format_RGB16);
    QTest::newRow("RGBA8888") << int(QImage::Format_RGBA8888);
    QTest::newRow("Grayscale8") << int(QImage::Format_Grayscale8);
}

/// On every background and at places between pixels, twice each.
void MemoriesTest::knobOnAnyDevice()
{
    QFETCH(int, format);
    const QSize size(190, 60);
    Stage<SlideSwitch> control(size);
    const QPixmap face(QStringLiteral(":/Images/SlideSwitch-OFF.png"));
    for (const QColor &background :
         {QColor(Qt::transparent), QColor(200, 100, 50), QColor(10, 20, 30, 100)}) {
        for (const QPointF &place : {QPointF(0, 0), QPointF(3, 4), QPointF(0.5, 0.25)}) {
            const auto drawn = [&](const std::function<void(QPainter *)> &draw) {
                QImage image(size + QSize(8, 8), QImage::Format(format));
                image.fill(background);
                QPainter painter(&image);
                painter.translate(place);
                draw(&painter);
                return image;
            };
            const QImage expected = drawn([&](QPainter *painter) {
                painter->setRenderHint(QPainter::Antialiasing);
                painter->drawPixmap(QRectF(0, 0, 190, 60), face, QRectF());
                painter->setPen(QColor(65, 64, 66));
                painter->setBrush(QColor(65, 64, 66));
                painter->drawEllipse(QRect(36, 10, 40, 40));
            });
            for (int paint = 0; paint < 2; ++paint) {
                const QImage actual = drawn([&](QPainter *painter) {
                    control->render(painter, QPoint(), QRegion(), QWidget::DrawChildren);
                });
                QVERIFY(actual == expected);
            }
        }
    }
}

/// The edges of a shape that is cut off have other pixels.
void MemoriesTest::knobBelowAnother()
{
    for (int cut = 70; cut < 120; ++cut) {
        QWidget window;
        window.resize(300, 100);
        const QRect place(10, 10, 190, 60);
        SlideSwitch control(&window);
        control.setGeometry(place);
        control.setLocked(true);
        QWidget cover(&window);
        cover.setAutoFillBackground(true);
        cover.setPalette(Qt::white);
        cover.setGeometry(10 + cut, 0, 100, 100);
        window.show();
        deliverAll();

        QImage expected(window.size(), QImage::Format_ARGB32_Premultiplied);
        expected.fill(window.palette().color(QPalette::Window));
        {
            QPainter painter(&expected);
            painter.setRenderHint(QPainter::Antialiasing);
            painter.setClipRect(0, 0, 10 + cut, 100);
            painter.translate(place.topLeft());
            painter.drawPixmap(0, 0,
                               QPixmap(QStringLiteral(":/Images/SlideSwitch-LOCKED-OFF.png")));
            painter.setPen(QColor(65, 64, 66));
            painter.setBrush(QColor(65, 64, 66));
            painter.drawEllipse(QRect(75, 10, 40, 40));
        }
        const QRect shown(0, 0, 10 + cut, 100);
        COMPARE_IMAGES(window.grab().toImage().copy(shown).convertToFormat(expected.format()),
                       expected.copy(shown));
    }
}

/// What stays when all widgets are gone is what the library remembers, beside what Qt does.
void MemoriesTest::boundedBytes()
{
    constexpr double mostBytes = 4.0 * 1024 * 1024;
    const double before = usedBytes();
    paintMany(200, 1);
    const double filled = usedBytes() - before;
    QVERIFY2(filled < mostBytes, qPrintable(QString::number(filled)));
    paintMany(400, 2);
    const double later = usedBytes() - before;
    QVERIFY2(later < mostBytes, qPrintable(QString::number(later)));
}

KIV_TEST_MAIN(MemoriesTest)

#include "tst_memories.moc"

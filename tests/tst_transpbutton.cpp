// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "transpbutton.h"

#include "cacheprobe.h"
#include "icons.h"
#include "images.h"
#include "layout.h"
#include "testmain.h"

#include <QtCore/QPointer>
#include <QtGui/QPainter>
#include <QtTest/QSignalSpy>

#include <limits>

namespace {

QImage buttonImage(QSize size, const QColor &icon, QSize iconSize, const QString &text,
                   QPoint offset = QPoint(), bool enabled = true)
{
    return drawnImage(size, [&](QPainter *painter) {
        if (icon.isValid()) {
            painter->drawPixmap((size.width() - iconSize.width()) / 2,
                                (size.height() - iconSize.height()) / 2,
                                plainPixmap(iconSize, icon));
        }
        if (!text.isEmpty()) {
            const QFont font = QApplication::font();
            const QFontMetrics metrics(font);
            const int width = metrics.size(Qt::TextSingleLine, text).width();
            painter->setFont(font);
            painter->setPen(QApplication::palette().color(
                enabled ? QPalette::Active : QPalette::Disabled, QPalette::ButtonText));
            painter->drawText(
                QPointF((size.width() - width) / 2 + offset.x() - 1,
                        (size.height() - metrics.height()) / 2 + metrics.ascent() + offset.y()),
                text);
        }
    });
}

} // namespace

class TranspButtonTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void metaObject();
    void layout();
    void defaults();
    void empty();
    void looks_data();
    void looks();
    void iconModes();
    void smallerPixmap();
    void enterAndLeave();
    void posLabelRepaintsOnAChange();
    void absurdOffset_data();
    void absurdOffset();
    void growing();
    void growthSwallowsTheEvent();
    void growthWithoutAnIcon();
    void growthKeepsLargerLimits();
    void absurdIconSizeEnds();
    void deletedInASlot_data();
    void deletedInASlot();
};

void TranspButtonTest::metaObject()
{
    const QMetaObject &meta = TranspButton::staticMetaObject;
    QCOMPARE(meta.superClass()->className(), "QAbstractButton");
    QCOMPARE(declaredProperties(meta), QStringList({QStringLiteral("posLabel QPoint")}));
    QCOMPARE(declaredMethods(meta),
             QStringList({QStringLiteral("mouseEnter()"), QStringLiteral("mouseLeave()")}));
}

void TranspButtonTest::defaults()
{
    const TranspButton button(nullptr);
    QCOMPARE(button.property("posLabel").toPoint(), QPoint(0, 0));
}

void TranspButtonTest::empty()
{
    for (const QSize size : {QSize(18, 18), QSize(100, 40), QSize(301, 203)}) {
        Stage<TranspButton> button(size);
        COMPARE_IMAGES(imageOf(button.widget), emptyImage(size));
    }
}

void TranspButtonTest::looks_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("withIcon");
    QTest::addColumn<QPoint>("offset");
    QTest::newRow("icon") << QSize(60, 40) << QString() << true << QPoint();
    QTest::newRow("icon that just fits") << QSize(18, 18) << QString() << true << QPoint();
    QTest::newRow("text") << QSize(100, 40) << QStringLiteral("Clear") << false << QPoint();
    QTest::newRow("empty text") << QSize(100, 40) << QStringLiteral("") << false << QPoint();
    QTest::newRow("both") << QSize(101, 61) << QStringLiteral("Clear") << true << QPoint(0, 20);
    QTest::newRow("offset") << QSize(100, 40) << QStringLiteral("Clear") << false << QPoint(5, -3);
    QTest::newRow("long text") << QSize(60, 40) << QString(40, QLatin1Char('W')) << false
                               << QPoint();
    QTest::newRow("non-Latin text")
        << QSize(120, 40) << QString::fromUtf8("Стоп ≥") << true << QPoint(-7, 12);
}

void TranspButtonTest::looks()
{
    QFETCH(QSize, size);
    QFETCH(QString, text);
    QFETCH(bool, withIcon);
    QFETCH(QPoint, offset);
    Stage<TranspButton> button(size);
    button->setText(text);
    if (withIcon)
        button->setIcon(telltaleIcon(QSize(16, 16)));
    button->setProperty("posLabel", offset);
    deliverAll();
    const QColor icon = withIcon ? QColor(Qt::red) : QColor();
    COMPARE_IMAGES(imageOf(button.widget), buttonImage(size, icon, QSize(16, 16), text, offset));
}

void TranspButtonTest::iconModes()
{
    Stage<TranspButton> button(QSize(60, 40));
    button->setIcon(telltaleIcon(QSize(16, 16)));
    button->setCheckable(true);
    const auto middle = [&] { return imageOf(button.widget).pixelColor(30, 20); };
    QCOMPARE(middle(), QColor(Qt::red));
    button->setChecked(true);
    QCOMPARE(middle(), QColor(Qt::green));
    sendPlain(button.widget, QEvent::Enter);
    QCOMPARE(middle(), QColor(Qt::cyan));
    button->setChecked(false);
    QCOMPARE(middle(), QColor(Qt::magenta));
    // Disabled comes before the pointer.
    button->setEnabled(false);
    QCOMPARE(middle(), QColor(Qt::blue));
    button->setChecked(true);
    QCOMPARE(middle(), QColor(Qt::yellow));
    sendPlain(button.widget, QEvent::Leave);
    button->setEnabled(true);
    QCOMPARE(middle(), QColor(Qt::green));
}

void TranspButtonTest::smallerPixmap()
{
    // The pixmap that was taken counts, not the size that was asked for.
    Stage<TranspButton> button(QSize(60, 40));
    button->setIconSize(QSize(30, 30));
    button->setIcon(telltaleIcon(QSize(16, 10)));
    deliverAll();
    COMPARE_IMAGES(imageOf(button.widget),
                   buttonImage(QSize(60, 40), Qt::red, QSize(16, 10), QString()));
}

void TranspButtonTest::enterAndLeave()
{
    Stage<TranspButton> button(QSize(60, 40));
    const QSignalSpy entered(button.widget, &TranspButton::mouseEnter);
    const QSignalSpy left(button.widget, &TranspButton::mouseLeave);
    EventCounter events(button.widget);
    sendPlain(button.widget, QEvent::Enter);
    QCOMPARE(entered.count(), 1);
    QCOMPARE(left.count(), 0);
    deliverAll();
    QCOMPARE(events.count(QEvent::Paint), 1);
    sendPlain(button.widget, QEvent::Leave);
    QCOMPARE(entered.count(), 1);
    QCOMPARE(left.count(), 1);
    deliverAll();
    QCOMPARE(events.count(QEvent::Paint), 2);
}

void TranspButtonTest::posLabelRepaintsOnAChange()
{
    Stage<TranspButton> button(QSize(60, 40));
    EventCounter events(button.widget);
    button->setPosLabel(QPoint(3, 4));
    deliverAll();
    QCOMPARE(events.count(QEvent::Paint), 1);
    button->setPosLabel(QPoint(3, 4));
    deliverAll();
    QCOMPARE(events.count(QEvent::Paint), 1);
}

void TranspButtonTest::absurdOffset_data()
{
    QTest::addColumn<QPoint>("offset");
    const int least = std::numeric_limits<int>::min();
    const int most = std::numeric_limits<int>::max();
    QTest::newRow("far left") << QPoint(least, 0);
    QTest::newRow("far right") << QPoint(most, 0);
    QTest::newRow("far up") << QPoint(0, least);
    QTest::newRow("far down") << QPoint(0, most);
}

void TranspButtonTest::absurdOffset()
{
    QFETCH(QPoint, offset);
    Stage<TranspButton> button(QSize(20, 40));
    button->setText(QStringLiteral("Clear all"));
    button->setPosLabel(offset);
    deliverAll();
    COMPARE_IMAGES(imageOf(button.widget), emptyImage(button->size()));
}

void TranspButtonTest::growing()
{
    // Unshown, nothing is nested: one dimension per event.
    QWidget window;
    TranspButton button(&window);
    button.resize(10, 10);
    button.setMaximumSize(12, 12);
    button.setIcon(telltaleIcon(QSize(16, 16)));
    QResizeEvent resize(button.size(), button.size());
    QVERIFY(!static_cast<QObject &>(button).event(&resize));
    QCOMPARE(button.size(), QSize(18, 10));
    QCOMPARE(button.minimumSize(), QSize(18, 0));
    QCOMPARE(button.maximumSize(), QSize(18, 12));
    QVERIFY(!static_cast<QObject &>(button).event(&resize));
    QCOMPARE(button.size(), QSize(18, 18));
    QCOMPARE(button.minimumSize(), QSize(18, 18));
    QCOMPARE(button.maximumSize(), QSize(18, 18));
    QVERIFY(static_cast<QObject &>(button).event(&resize));

    // Shown, it ends at the size that the icon needs.
    Stage<TranspButton> shown(QSize(10, 10));
    QCOMPARE(shown->size(), QSize(18, 18));
}

void TranspButtonTest::growthSwallowsTheEvent()
{
    /// Counts the paints that reach the button.
    class Counting : public TranspButton
    {
    public:
        using TranspButton::TranspButton;
        int paints = 0;

    protected:
        void paintEvent(QPaintEvent *event) override
        {
            ++paints;
            TranspButton::paintEvent(event);
        }
    };
    QWidget window;
    Counting button(&window);
    button.resize(100, 10);
    QPaintEvent paint(QRect(0, 0, 100, 10));
    QVERIFY(!static_cast<QObject &>(button).event(&paint));
    QCOMPARE(button.paints, 0);
    QCOMPARE(button.size(), QSize(100, 18));
    // Grown on show, it is painted in the end.
    Stage<Counting> shown(QSize(10, 10));
    QVERIFY(shown->paints > 0);
}

void TranspButtonTest::growthWithoutAnIcon()
{
    Stage<TranspButton> button(QSize(60, 40));
    button->setIconSize(QSize(80, 50));
    button->update();
    deliverAll();
    QCOMPARE(button->size(), QSize(82, 52));
}

void TranspButtonTest::growthKeepsLargerLimits()
{
    Stage<TranspButton> button(QSize(60, 40));
    button->setMinimumSize(30, 70);
    button->setMaximumSize(400, 300);
    button->setIconSize(QSize(80, 20));
    deliverAll();
    QCOMPARE(button->size(), QSize(82, 70));
    QCOMPARE(button->minimumSize(), QSize(82, 70));
    QCOMPARE(button->maximumSize(), QSize(400, 300));
}

void TranspButtonTest::absurdIconSizeEnds()
{
    QWidget window;
    TranspButton button(&window);
    button.setIconSize(QSize(std::numeric_limits<int>::max(), std::numeric_limits<int>::max()));
    QResizeEvent resize(button.size(), button.size());
    QVERIFY(!static_cast<QObject &>(button).event(&resize));
    QVERIFY(!static_cast<QObject &>(button).event(&resize));
    QCOMPARE(button.size(), QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX));
    // Nothing is left to do.
    QVERIFY(static_cast<QObject &>(button).event(&resize));
}

void TranspButtonTest::deletedInASlot_data()
{
    QTest::addColumn<int>("event");
    QTest::newRow("mouseEnter") << int(QEvent::Enter);
    QTest::newRow("mouseLeave") << int(QEvent::Leave);
    QTest::newRow("clicked") << int(QEvent::MouseButtonPress);
}

void TranspButtonTest::deletedInASlot()
{
    QFETCH(int, event);
    Stage<TranspButton> button;
    const QPointer<TranspButton> watched(button.widget);
    const auto remove = [&] { delete watched.data(); };
    connect(button.widget, &TranspButton::mouseEnter, this, remove);
    connect(button.widget, &TranspButton::mouseLeave, this, remove);
    connect(button.widget, &TranspButton::clicked, this, remove);
    if (event == QEvent::MouseButtonPress)
        button->click();
    else
        sendPlain(button.widget, QEvent::Type(event));
    QVERIFY(!watched);
}

KIV_LAYOUT(TranspButton, 0, KIV_BASE(QAbstractButton), KIV_FIELD(posLabel), KIV_FIELD(hover));

void TranspButtonTest::layout()
{
    QCOMPARE(LayoutTranspButton::problem(), QString());
}

KIV_TEST_MAIN(TranspButtonTest)

#include "tst_transpbutton.moc"

// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "images.h"
#include "testmain.h"
#include "threadannotations.h"
#include "widgetprobe.h"

#include <aerobutton.h>
#include <aerolinebar.h>
#include <aerostatusbar.h>
#include <metrobatticon.h>
#include <metroshelter.h>
#include <metrosysicon.h>

#include <QtCore/QPointer>

#include <atomic>
#include <memory>
#include <mutex>
#include <thread>
#include <type_traits>
#include <vector>

namespace {

constexpr int writes = 400;

/// Changes all that other threads may set; @p step decides the values.
template <typename Widget>
void restyle(Widget *widget, int step)
{
    if constexpr (std::is_base_of_v<AeroStyle, Widget>) {
        widget->setColor(QColor(step % 256, 20, 30));
        widget->setShadow(QColor(20, step % 256, 30));
        widget->setColorPen(QColor(20, 30, step % 256));
        widget->setWidthPen(step % 5);
        widget->setOpacity((step % 8 + 1) / 8.0);
        widget->setRoundness(step % 100);
        QColor color(step % 256, 200, 30);
        widget->setAeroProperty(step % 2 ? &color : nullptr, nullptr);
    } else {
        widget->setState({quint8(step % 6), quint8(step % 7 + 1)});
    }
}

/// A widget whose cached image any thread may drop, as a derived class of an application does.
template <typename Widget, typename Style>
class Droppable : public Widget
{
public:
    void drop()
    {
        Style::repaintSchedule(&this->image);
    }
    bool isDropped() const
    {
        return !this->image && this->dirty;
    }
};

using Button = Droppable<AeroButton, AeroStyle>;
using Tile = Droppable<MetroShelter, MetroStyle>;

} // namespace

/// What the headers promise to other threads, and no more: setters of the style bases store and
/// post, drops of one image exclude each other, error lines are whole.
class ThreadsTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void settersWhilePainting_data();
    void settersWhilePainting();
    void settersBeforeTheEnd();
    void dropsOfOneImage_data();
    void dropsOfOneImage();
    void errorLinesStayWhole();
    void paintingElsewhere();

private:
    template <typename Widget>
    void writeWhilePainting(bool ordered);
    template <typename Widget>
    void dropFromManyThreads();
};

void ThreadsTest::settersWhilePainting_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<bool>("ordered");
    const QStringList kinds = {QStringLiteral("AeroButton"),    QStringLiteral("AeroLinebar"),
                               QStringLiteral("AeroStatusbar"), QStringLiteral("MetroBattIcon"),
                               QStringLiteral("MetroShelter"),  QStringLiteral("MetroSysIcon")};
    for (const QString &kind : kinds) {
        QTest::addRow("%s, ordered by the application", qPrintable(kind)) << kind << true;
        // The stored values themselves are not locked, so the thread sanitizer rightly reports a
        // painting that reads them meanwhile.
        if (!ThreadAnnotations::sanitized)
            QTest::addRow("%s, as it comes", qPrintable(kind)) << kind << false;
    }
}

void ThreadsTest::settersWhilePainting()
{
    QFETCH(QString, kind);
    QFETCH(bool, ordered);
    if (kind == QLatin1String("AeroButton"))
        writeWhilePainting<AeroButton>(ordered);
    else if (kind == QLatin1String("AeroLinebar"))
        writeWhilePainting<AeroLinebar>(ordered);
    else if (kind == QLatin1String("AeroStatusbar"))
        writeWhilePainting<AeroStatusbar>(ordered);
    else if (kind == QLatin1String("MetroBattIcon"))
        writeWhilePainting<MetroBattIcon>(ordered);
    else if (kind == QLatin1String("MetroShelter"))
        writeWhilePainting<MetroShelter>(ordered);
    else
        writeWhilePainting<MetroSysIcon>(ordered);
}

/// One thread for each of two widgets, while the GUI thread paints and resizes them, and makes and
/// destroys others.
template <typename Widget>
void ThreadsTest::writeWhilePainting(bool ordered)
{
    QWidget window;
    window.resize(400, 200);
    Widget *const widgets[] = {new Widget(&window), new Widget(&window)};
    for (Widget *widget : widgets)
        widget->resize(80, 40);
    window.show();
    deliverAll();

    std::mutex order;
    const auto guarded = [&order, ordered](auto &&work) {
        std::unique_lock<std::mutex> lock(order, std::defer_lock);
        if (ordered)
            lock.lock();
        work();
    };
    std::atomic<int> running{2};
    std::vector<std::thread> threads;
    for (Widget *widget : widgets) {
        threads.emplace_back([&guarded, &running, widget] {
            for (int step = 0; step < writes; ++step) {
                guarded([&] { restyle(widget, step); });
                std::this_thread::yield();
            }
            --running;
        });
    }
    bool painted = true;
    int rounds = 0;
    while (running > 0 || rounds < 20) {
        guarded([&] {
            widgets[rounds % 2]->resize(60 + rounds % 30, 30 + rounds % 7);
            widgets[rounds % 2]->update();
            deliverAll();
        });
        Widget other;
        other.resize(80, 40);
        restyle(&other, rounds);
        painted = painted && imageOf(&other).size() == other.size();
        ++rounds;
    }
    for (std::thread &thread : threads)
        thread.join();
    QVERIFY(painted);

    for (Widget *widget : widgets) {
        widget->resize(80, 40);
        deliverAll();
        Stage<Widget> fresh(QSize(80, 40));
        restyle(fresh.widget, writes - 2);
        restyle(fresh.widget, writes - 1);
        deliverAll();
        COMPARE_IMAGES(imageOf(widget), imageOf(fresh.widget));
    }
}

void ThreadsTest::settersBeforeTheEnd()
{
    for (int round = 0; round < 40; ++round) {
        auto button = std::make_unique<AeroButton>();
        auto tile = std::make_unique<MetroShelter>();
        std::thread first([&] { restyle(button.get(), round + 1); });
        std::thread second([&] { restyle(tile.get(), round + 1); });
        if (round % 2)
            deliverAll();
        first.join();
        second.join();
        // What was posted is still under way.
        const QPointer<QWidget> watched(button.get());
        button.reset();
        tile.reset();
        deliverAll();
        QVERIFY(!watched);
    }
}

void ThreadsTest::dropsOfOneImage_data()
{
    QTest::addColumn<bool>("aero");
    QTest::newRow("AeroStyle") << true;
    QTest::newRow("MetroStyle") << false;
}

void ThreadsTest::dropsOfOneImage()
{
    QFETCH(bool, aero);
    if (aero)
        dropFromManyThreads<Button>();
    else
        dropFromManyThreads<Tile>();
}

/// Painting is not locked, so it takes its turns with the threads' drops; the GUI thread's own
/// drops do not.
template <typename Widget>
void ThreadsTest::dropFromManyThreads()
{
    Widget widget;
    widget.resize(80, 40);
    std::atomic<int> turn{0};
    std::atomic<int> done{0};
    constexpr int turns = 200;
    constexpr int threadCount = 3;
    std::vector<std::thread> threads;
    for (int i = 0; i < threadCount; ++i) {
        threads.emplace_back([&] {
            for (int mine = 1; mine <= turns; ++mine) {
                while (turn < mine)
                    std::this_thread::yield();
                widget.drop();
                ++done;
            }
        });
    }
    bool painted = true;
    bool dropped = true;
    for (int mine = 1; mine <= turns; ++mine) {
        imageOf(&widget);
        painted = painted && !widget.isDropped();
        turn = mine;
        QEvent event(QEvent::EnabledChange);
        QCoreApplication::sendEvent(&widget, &event);
        while (done < mine * threadCount)
            std::this_thread::yield();
        dropped = dropped && widget.isDropped();
    }
    for (std::thread &thread : threads)
        thread.join();
    QVERIFY(painted);
    QVERIFY(dropped);
}

void ThreadsTest::errorLinesStayWhole()
{
    constexpr int lines = 200;
    constexpr int threadCount = 3;
    std::vector<std::unique_ptr<MetroShelter>> tiles;
    std::vector<std::thread> threads;
    for (int i = 0; i < threadCount; ++i)
        tiles.push_back(std::make_unique<MetroShelter>());
    for (const std::unique_ptr<MetroShelter> &tile : tiles) {
        tile->setState({6, 1});
        threads.emplace_back([&tile] {
            for (int i = 0; i < lines; ++i)
                tile->getColorIdx();
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    const ErrorLine expected{QStringLiteral("KivWidgets/metroStyle.cpp"),
                             QStringLiteral("getColorIdx"),
                             QStringLiteral("Caso alarmSt non previsto:0x106")};
    QList<ErrorLine> all;
    for (int i = 0; i < lines * threadCount; ++i)
        all.append(expected);
    QCOMPARE(takeErrorLines(), all);
}

/// A painting step that another thread calls while nothing else happens has its usual result.
void ThreadsTest::paintingElsewhere()
{
    struct Painted : AeroButton
    {
        using AeroButton::image;
        using AeroButton::paintImage;
    };
    Painted button;
    button.resize(80, 40);
    button.setText(QStringLiteral("Start"));
    const QImage expected = imageOf(&button);
    for (int round = 0; round < 3; ++round) {
        std::thread painter([&button] { button.paintImage(); });
        painter.join();
        COMPARE_IMAGES(*button.image, expected);
        COMPARE_IMAGES(imageOf(&button), expected);
    }
}

int main(int argc, char **argv)
{
    prepareTestEnvironment();
    ThreadAnnotations::Application application(argc, argv);
    prepareTestApplication();
    ThreadsTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_threads.moc"

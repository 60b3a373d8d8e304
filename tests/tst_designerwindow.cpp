// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "testmain.h"
#include "widgetprobe.h"

#include <QtCore/QPluginLoader>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>
#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>

#include <algorithm>
#include <cstdlib>
#include <utility>

// Qt Designer itself, started with the plugin of the build tree: its widget box shows every widget.

namespace {

constexpr int iconSide = 22;
/// The column of the widget box with the icons.
constexpr int columnWidth = 12;
/// Mean difference per channel; letters and edges in the icons may differ by the platform: Qt 6
/// hints letters on an X server alone, which makes a bar's text wider and the bar shorter.
constexpr double tolerance = 14.0;

/// An icon as a list shows it.
QImage shownIcon(const QIcon &icon)
{
    QImage shown(iconSide, iconSide, QImage::Format_RGB32);
    shown.fill(Qt::white);
    QPainter painter(&shown);
    painter.drawPixmap(0, 0, icon.pixmap(iconSide, iconSide));
    return shown;
}

int distance(QRgb a, QRgb b)
{
    return std::abs(qRed(a) - qRed(b)) + std::abs(qGreen(a) - qGreen(b)) +
           std::abs(qBlue(a) - qBlue(b));
}

/// The mean difference per channel of @p icon's inked pixels and of its white ones, the greater
/// one.
double difference(const QImage &screen, int left, int top, const QImage &icon)
{
    // A blank place resembles a small icon but for its ink.
    constexpr int faint = 60;
    qint64 sums[2] = {0, 0};
    int counts[2] = {0, 0};
    for (int y = 0; y < iconSide; ++y) {
        for (int x = 0; x < iconSide; ++x) {
            const QRgb pixel = icon.pixel(x, y);
            const int inked = distance(pixel, qRgb(255, 255, 255)) > faint ? 1 : 0;
            sums[inked] += distance(screen.pixel(left + x, top + y), pixel);
            ++counts[inked];
        }
    }
    return std::max(double(sums[0]) / (3 * std::max(counts[0], 1)),
                    double(sums[1]) / (3 * std::max(counts[1], 1)));
}

struct Place
{
    int x = 0;
    int y = -1;
};

/// The first place of @p icon from row @p top on with its left edge from @p first to @p last,
/// without one a place at y -1. The widget box is at the screen's left edge.
Place find(const QImage &screen, const QImage &icon, int top, int first = 0,
           int last = columnWidth - 1)
{
    for (int y = top; y + iconSide <= screen.height(); ++y) {
        for (int x = first; x <= last; ++x) {
            if (difference(screen, x, y, icon) < tolerance) {
                // The best of the places that touch it.
                Place best{x, y};
                double least = difference(screen, x, y, icon);
                for (int below = y; below < y + 4 && below + iconSide <= screen.height(); ++below) {
                    for (int right = first; right <= last; ++right) {
                        const double found = difference(screen, right, below, icon);
                        if (found < least) {
                            least = found;
                            best = {right, below};
                        }
                    }
                }
                return best;
            }
        }
    }
    return {};
}

} // namespace

class DesignerWindowTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void widgetBoxShowsTheGroups();
    void absentIconsAreNotFound();
    void refusesATreeWithoutPlugin();

private:
    static QString runScript(const QStringList &arguments, int *status);

    QTemporaryDir scratch;
    QImage screen;
    QList<QDesignerCustomWidgetInterface *> widgets;
};

/// What the script writes to its standard error stream.
QString DesignerWindowTest::runScript(const QStringList &arguments, int *status)
{
    QProcess script;
    script.start(QStringLiteral(KIV_SCREENSHOT_SCRIPT), arguments);
    if (!script.waitForFinished(100000)) {
        // The script ends what it started.
        script.terminate();
        script.waitForFinished();
        *status = -1;
        return QStringLiteral("the script does not end");
    }
    *status = script.exitStatus() == QProcess::NormalExit ? script.exitCode() : -1;
    return QString::fromUtf8(script.readAllStandardError());
}

void DesignerWindowTest::initTestCase()
{
    QPluginLoader loader(QStringLiteral(KIV_DESIGNER_PLUGIN));
    auto *collection = qobject_cast<QDesignerCustomWidgetCollectionInterface *>(loader.instance());
    QVERIFY2(collection, qPrintable(loader.errorString()));
    widgets = collection->customWidgets();

    const QString image = scratch.filePath(QStringLiteral("designer.png"));
    int status = 0;
    const QString errors =
        runScript({QStringLiteral("--build"), QStringLiteral(KIV_BUILD), image}, &status);
    QVERIFY2(status == 0 && errors.isEmpty(), qPrintable(errors));
    QVERIFY(screen.load(image));
}

/// The icons stand one below the other in their order, and a title stands before each group.
void DesignerWindowTest::widgetBoxShowsTheGroups()
{
    QVERIFY(widgets.size() > 10);
    int pitch = 0;
    Place previous;
    QString group;
    for (const QDesignerCustomWidgetInterface *widget : std::as_const(widgets)) {
        const QImage icon = shownIcon(widget->icon());
        // Letters in an icon differ by the platform, and may fit better a pixel beside it.
        const Place place = previous.y < 0
                                ? find(screen, icon, 0)
                                : find(screen, icon, previous.y + 1, previous.x, previous.x);
        QVERIFY2(place.y >= 0, qPrintable(widget->name()));
        if (previous.y >= 0) {
            const int step = place.y - previous.y;
            if (widget->group() != group) {
                QVERIFY2(step > pitch + 10 && step < 2 * pitch, qPrintable(widget->name()));
            } else if (pitch == 0) {
                pitch = step;
                QVERIFY2(pitch >= iconSide && pitch < 2 * iconSide, qPrintable(widget->name()));
            } else {
                QVERIFY2(step == pitch, qPrintable(QStringLiteral("%1: %2 instead of %3")
                                                       .arg(widget->name())
                                                       .arg(step)
                                                       .arg(pitch)));
            }
        }
        group = widget->group();
        previous = place;
    }
}

/// The search distinguishes an image without the plugin's icons from one with them.
void DesignerWindowTest::absentIconsAreNotFound()
{
    for (const QDesignerCustomWidgetInterface *widget : std::as_const(widgets)) {
        const QImage icon = shownIcon(widget->icon());
        QImage blank = screen;
        blank.fill(Qt::white);
        QVERIFY2(find(blank, icon, 0).y < 0, qPrintable(widget->name()));
        // Blue signs would be orange.
        if (widget->name() == QLatin1String("MetroBattIcon"))
            QVERIFY(find(screen, icon.rgbSwapped(), 0).y < 0);
    }
}

void DesignerWindowTest::refusesATreeWithoutPlugin()
{
    int status = 0;
    const QString errors = runScript(
        {QStringLiteral("--build"), scratch.path(), scratch.filePath(QStringLiteral("none.png"))},
        &status);
    QCOMPARE(status, 1);
    QVERIFY(errors.startsWith(QLatin1String("screenshot: no plugin in ")));
    QCOMPARE(errors.count(QLatin1Char('\n')), 1);
}

KIV_TEST_MAIN(DesignerWindowTest)

#include "tst_designerwindow.moc"

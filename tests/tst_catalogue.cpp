// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "statesheet.h"
#include "testmain.h"
#include "widgetclasses.h"
#include "widgetprobe.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QRegularExpression>
#include <QtCore/QSet>

#include <algorithm>
#include <memory>

// Whether everything that should know a widget knows it: each failure says what to add where.

namespace {

const QString root = QStringLiteral(KIV_SOURCE_DIRECTORY);

QString contentsOf(const QString &path)
{
    QFile file(root + QLatin1Char('/') + path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// The page, or pages, that a family has.
QStringList pagesOf(WidgetFamily family)
{
    switch (family) {
    case WidgetFamily::Aero:
        return {QStringLiteral("docs/aero.md")};
    case WidgetFamily::Metro:
        return {QStringLiteral("docs/metro.md"), QStringLiteral("docs/gauges.md")};
    case WidgetFamily::SwitchesAndPages:
        return {QStringLiteral("docs/switches.md")};
    }
    return {};
}

/// What docs/accessibility.md calls the roles.
const struct
{
    QAccessible::Role role;
    const char *name;
} roleNames[] = {
    {QAccessible::Button, "button"},
    {QAccessible::CheckBox, "check box"},
    {QAccessible::PageTab, "page tab"},
    {QAccessible::ProgressBar, "progress bar"},
    {QAccessible::Dial, "dial"},
    {QAccessible::Grouping, "grouping"},
    {QAccessible::LayeredPane, "layered pane"},
    {QAccessible::StatusBar, "status bar"},
};

QString nameOf(QAccessible::Role role)
{
    for (const auto &known : roleNames) {
        if (known.role == role)
            return QLatin1String(known.name);
    }
    return QString();
}

/// The cells of the row of the table in @p page whose first cell, a list of widgets, has @p name.
QStringList cellsOf(const QString &page, const QString &name)
{
    const QStringList lines = contentsOf(page).split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        if (!line.startsWith(QLatin1Char('|')))
            continue;
        QStringList cells = line.split(QLatin1Char('|'));
        for (QString &cell : cells)
            cell = cell.trimmed();
        cells.removeFirst();
        if (cells.first().split(QStringLiteral(", ")).contains(name))
            return cells;
    }
    return {};
}

void everyWidget()
{
    QTest::addColumn<QString>("name");
    for (const QString &name : widgetClasses())
        QTest::newRow(qPrintable(name)) << name;
}

} // namespace

class CatalogueTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void namesEveryHeader();
    void description_data();
    void description();
    void recommendedSize_data();
    void recommendedSize();
    void states_data();
    void states();
    void sheet_data();
    void sheet();
    void layout_data();
    void layout();
    void pages_data();
    void pages();
    void roles_data();
    void roles();
    void fuzzInputs_data();
    void fuzzInputs();
    void instructionBounds_data();
    void instructionBounds();
    void namesInAnyCase();
};

void CatalogueTest::namesEveryHeader()
{
    const QStringList inHeaders = QStringLiteral(KIV_WIDGET_CLASSES).split(QLatin1Char(' '));
    QVERIFY(inHeaders.size() > 10);
    QStringList inCatalogue = widgetClasses();
    for (const QString &name : inHeaders) {
        const QString message =
            QStringLiteral(
                "%1 has a header in KivWidgets/ but no row in "
                "common/widgetcatalogue.cpp: add Row<%1>(…), see docs/adding-a-widget.md")
                .arg(name);
        QVERIFY2(inCatalogue.removeAll(name) == 1, qPrintable(message));
    }
    const QString message =
        QStringLiteral("%1: add the header and the source to KivWidgets/CMakeLists.txt")
            .arg(inCatalogue.join(QLatin1Char(' ')));
    QVERIFY2(inCatalogue.isEmpty(), qPrintable(message));
}

void CatalogueTest::description_data()
{
    everyWidget();
}

void CatalogueTest::description()
{
    QFETCH(QString, name);
    const WidgetDescription &row = *findWidget(name);
    const auto message = [&](const char *lack) {
        return QStringLiteral("the row of %1 in common/widgetcatalogue.cpp %2")
            .arg(name, QLatin1String(lack))
            .toUtf8();
    };
    const std::unique_ptr<QWidget> widget(row.create(nullptr));
    QCOMPARE(widget->metaObject(), row.metaObject);
    QVERIFY2(row.role != QAccessible::NoRole,
             message("has no role: add .role(QAccessible::…)").constData());
    QVERIFY2(qstrlen(row.use) > 20,
             message("does not say how it is used: add .use(\"…\")").constData());
    QVERIFY2(qstrlen(row.toolTip) > 10, message("has no tool tip").constData());
    QVERIFY2(row.size.isValid() && row.minimumSize.isValid(), message("has no size").constData());
    QVERIFY2(row.size == row.size.expandedTo(row.minimumSize),
             message("has a minimum size beyond its size").constData());
    QVERIFY2(!row.label.property || row.metaObject->indexOfProperty(row.label.property) >= 0,
             message("names a label that is no property").constData());
    widget->resize(row.size);
    row.populate(widget.get());
    QCOMPARE(findWidget(name), &row);
}

void CatalogueTest::recommendedSize_data()
{
    everyWidget();
}

/// The header and the page name the size that the catalogue recommends.
void CatalogueTest::recommendedSize()
{
    QFETCH(QString, name);
    const WidgetDescription &row = *findWidget(name);
    const QString width = QString::number(row.minimumSize.width());
    const QString height = QString::number(row.minimumSize.height());

    const QString header = QStringLiteral("KivWidgets/%1.h").arg(name.toLower());
    QString comment = contentsOf(header);
    comment.replace(QRegularExpression(QStringLiteral("\n */// ?")), QStringLiteral(" "));
    const QString inHeader =
        QStringLiteral("Recommended %1 size: %2 x %3 pixels")
            .arg(QLatin1String(row.sizesItself ? "fixed" : "minimum"), width, height);
    QVERIFY2(
        comment.count(inHeader) == 1 && comment.count(QStringLiteral("Recommended ")) == 1,
        qPrintable(
            QStringLiteral("the class comment in %1 should say once: %2").arg(header, inHeader)));

    const QString page = QStringLiteral("docs/using.md");
    const QString inTable =
        QStringLiteral("\n| `%1` | %2 × %3 | %4 |\n")
            .arg(name, width, height, QLatin1String(row.sizesItself ? "yes" : ""));
    QVERIFY2(contentsOf(page).count(inTable) == 1,
             qPrintable(QStringLiteral("the table of sizes in %1 should have the row: %2")
                            .arg(page, inTable.trimmed())));
}

void CatalogueTest::states_data()
{
    everyWidget();
}

void CatalogueTest::states()
{
    QFETCH(QString, name);
    const QString file = QStringLiteral("common/widgetstates.cpp");
    const std::vector<WidgetState> states = widgetStates(name);
    QVERIFY2(!states.empty(),
             qPrintable(QStringLiteral("%1 has no states in %2: add a function and a row to the "
                                       "table at its end")
                            .arg(name, file)));
    QSet<QString> captions;
    QWidget window;
    for (const WidgetState &state : states) {
        QVERIFY2(
            !captions.contains(state.caption),
            qPrintable(
                QStringLiteral("%1 has two states '%2' in %3").arg(name, state.caption, file)));
        captions.insert(state.caption);
        const QWidget *widget = state.create(&window);
        QVERIFY(findWidget(name)->metaObject->cast(const_cast<QWidget *>(widget)));
        QCOMPARE(widget->parentWidget(), &window);
    }
}

void CatalogueTest::sheet_data()
{
    everyWidget();
}

/// Whatever a person does to a widget is on its sheet, as a cell or in the remark at its foot.
void CatalogueTest::sheet()
{
    QFETCH(QString, name);
    StateSheet sheet(*findWidget(name));
    const QString all = (sheet.captions() + QStringList(sheet.remark())).join(QLatin1Char('\n'));
    for (const char *way : {"disabled", "pressed", "focused"})
        QVERIFY2(all.contains(QLatin1String(way), Qt::CaseInsensitive), qPrintable(all));
    for (const WidgetState &state : widgetStates(name))
        QVERIFY2(sheet.captions().contains(state.caption), qPrintable(state.caption));

    constexpr int width = 860;
    sheet.resize(width, 2000);
    sheet.show();
    deliverAll();
    sheet.resize(width, sheet.heightForWidth(width));
    deliverAll();
    const QObjectList children = sheet.children();
    for (const QObject *one : children) {
        const QRect place = static_cast<const QWidget *>(one)->geometry();
        QVERIFY(sheet.rect().contains(place));
        for (const QObject *other : children) {
            if (other != one)
                QVERIFY(!static_cast<const QWidget *>(other)->geometry().intersects(place));
        }
    }
}

void CatalogueTest::layout_data()
{
    everyWidget();
}

/// The fields and virtual functions of each class are fixed by its own test.
void CatalogueTest::layout()
{
    QFETCH(QString, name);
    const QString test = QStringLiteral("tests/tst_%1.cpp").arg(name.toLower());
    const QString source = contentsOf(test);
    const QString layout = QStringLiteral("KIV_LAYOUT(%1,").arg(name);
    const QString check = QStringLiteral("Layout%1::problem()").arg(name);
    QVERIFY2(
        source.contains(layout) && source.contains(check),
        qPrintable(QStringLiteral("%1 does not check the layout of %2: add a slot layout() with "
                                  "QCOMPARE(%3, QString()), and before it %4 number of virtual "
                                  "functions, KIV_BASE(…), KIV_FIELD(…)), see "
                                  "tests/support/layout.h")
                       .arg(test, name, check, layout)));
}

void CatalogueTest::pages_data()
{
    everyWidget();
}

void CatalogueTest::pages()
{
    QFETCH(QString, name);
    for (const char *directory : {"widgets", "thumbnails"}) {
        const QString image =
            QStringLiteral("docs/images/%1/%2.png").arg(QLatin1String(directory), name.toLower());
        QVERIFY2(QFileInfo::exists(root + QLatin1Char('/') + image),
                 qPrintable(QStringLiteral("no %1: build the target widget-sheets").arg(image)));
    }
    const QString binding = QStringLiteral("python/sip/%1.sip").arg(name.toLower());
    QVERIFY2(QFileInfo::exists(root + QLatin1Char('/') + binding),
             qPrintable(QStringLiteral("no %1: say there what Python sees of it").arg(binding)));

    const QString cell = QStringLiteral("| ![](docs/images/thumbnails/%2.png)<br>"
                                        "[%1](docs/images/widgets/%2.png) |")
                             .arg(name, name.toLower());
    QVERIFY2(
        contentsOf(QStringLiteral("README.md")).count(cell) == 1,
        qPrintable(
            QStringLiteral("the table of widgets in README.md should have once: %1").arg(cell)));

    const QString sheet = QStringLiteral("[sheet](images/widgets/%1.png)").arg(name.toLower());
    const QStringList pages = pagesOf(findWidget(name)->family);
    int rows = 0;
    for (const QString &page : pages)
        rows += cellsOf(page, QStringLiteral("`%1`").arg(name)).contains(sheet);
    QVERIFY2(rows == 1, qPrintable(QStringLiteral("the first table of %1 should have the row: "
                                                  "| `%2` | … | %3 |")
                                       .arg(pages.join(QStringLiteral(" or ")), name, sheet)));
}

void CatalogueTest::roles_data()
{
    everyWidget();
}

void CatalogueTest::roles()
{
    QFETCH(QString, name);
    const QString role = nameOf(findWidget(name)->role);
    QVERIFY2(!role.isEmpty(),
             qPrintable(QStringLiteral("%1 has a role of its own: add it to roleNames in "
                                       "tests/tst_catalogue.cpp")
                            .arg(name)));
    // The cell may say more: "grouping; check box if checkable".
    const QString cell =
        cellsOf(QStringLiteral("docs/accessibility.md"), name).value(1) + QLatin1Char(';');
    QVERIFY2(cell.startsWith(role + QLatin1Char(';')),
             qPrintable(QStringLiteral("the table of roles in docs/accessibility.md should have "
                                       "the row: | %1 | %2 | …")
                            .arg(name, role)));
}

void CatalogueTest::fuzzInputs_data()
{
    everyWidget();
}

void CatalogueTest::fuzzInputs()
{
    QFETCH(QString, name);
    const QDir corpus(root + QStringLiteral("/fuzz/corpus/") + name.toLower());
    QVERIFY2(!corpus.entryList(QDir::Files).isEmpty(),
             qPrintable(QStringLiteral("the fuzzer keeps no inputs for %1: run 'fuzz/run "
                                       "--seconds 60 %2', then 'fuzz/run --keep %2'")
                            .arg(name, name.toLower())));
}

void CatalogueTest::instructionBounds_data()
{
    everyWidget();
}

void CatalogueTest::instructionBounds()
{
    QFETCH(QString, name);
    const QString file = QStringLiteral("benchmarks/instruction-bounds.txt");
    const QStringList lines = contentsOf(file).split(QLatin1Char('\n'));
    for (const char *operation : {"change", "construct", "floor", "repaint"}) {
        const QString row = QStringLiteral("%1 %2 ").arg(name, QLatin1String(operation));
        QVERIFY2(
            std::any_of(lines.begin(), lines.end(),
                        [&](const QString &line) { return line.startsWith(row); }),
            qPrintable(QStringLiteral("%1 has no bound '%2': write the file with "
                                      "benchmarks/instructions --write, see docs/performance.md")
                           .arg(file, row.trimmed())));
    }
}

void CatalogueTest::namesInAnyCase()
{
    QCOMPARE(findWidget(QStringLiteral("metroXBAR")), findWidget(QStringLiteral("MetroXbar")));
    QVERIFY(findWidget(QStringLiteral("MetroXbar")));
    QVERIFY(!findWidget(QStringLiteral("MetroXba")));
    QVERIFY(!findWidget(QString()));
    QVERIFY(widgetStates(QStringLiteral("QLabel")).empty());
}

KIV_TEST_MAIN(CatalogueTest)

#include "tst_catalogue.moc"

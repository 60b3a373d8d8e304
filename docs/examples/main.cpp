// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "examples.h"

#include <KivWidgets/MetroCirclerate>

#include <QtCore/QDir>
#include <QtWidgets/QApplication>
#include <QtWidgets/QStyleFactory>
#include <QtWidgets/QVBoxLayout>
#include <QtWidgets/QWidget>

#include <cstdio>

// Runs the code that the pages of the documentation show, and takes its images.

namespace {

struct Example
{
    const char *name;
    QSize size;
    void (*show)(QWidget *page);
};

constexpr Example examples[] = {
    {"aero", {480, 230}, showAero},
    {"gauges", {490, 150}, showGauges},
    {"application", {340, 130}, showApplication},
    {"metro", {800, 200}, showMetro},
    {"states", {720, 340}, showStates},
    {"switches", {440, 180}, showSwitches},
};

/// Whether the layout gives the dial of addDial() the room that it needs.
bool dialIsWhole()
{
    QWidget page;
    auto *layout = new QVBoxLayout(&page);
    addDial(layout);
    page.show();
    QApplication::processEvents();
    const auto *dial = page.findChild<MetroCirclerate *>();
    return !dial->size().isEmpty() && dial->parentWidget()->rect().contains(dial->geometry());
}

} // namespace

int main(int argc, char **argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: kivexamples DIRECTORY\n");
        return 2;
    }
    const QDir directory(QString::fromLocal8Bit(argv[1]));
    if (!directory.mkpath(QStringLiteral("."))) {
        std::fprintf(stderr, "kivexamples: cannot make %s\n", argv[1]);
        return 1;
    }
    // The same everywhere, whatever the desktop looks like.
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QApplication::setFont(QFont(QStringLiteral("DejaVu Sans"), 10));
    if (!dialIsWhole()) {
        std::fprintf(stderr, "kivexamples: the dial of addDial() is cut off\n");
        return 1;
    }
    for (const Example &example : examples) {
        QWidget page;
        page.resize(example.size);
        example.show(&page);
        page.show();
        QApplication::processEvents();
        const QString file =
            directory.filePath(QString::fromLatin1(example.name) + QStringLiteral(".png"));
        if (!page.grab().save(file)) {
            std::fprintf(stderr, "kivexamples: cannot write %s\n", qPrintable(file));
            return 1;
        }
        std::printf("%s\n", qPrintable(file));
    }
    return 0;
}

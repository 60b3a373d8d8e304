// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "images.h"
#include "testmain.h"
#include "widgetcatalogue.h"

#include <QtCore/QCryptographicHash>
#include <QtTest/QTest>

#include <memory>

// A process may have several applications, one after the other. What the library remembers goes
// with each of them.

namespace {

QByteArray hashOf(const QImage &image)
{
    QCryptographicHash hash(QCryptographicHash::Sha1);
    for (int y = 0; y < image.height(); ++y) {
        hash.addData(QByteArray::fromRawData(reinterpret_cast<const char *>(image.constScanLine(y)),
                                             image.width() * 4));
    }
    return hash.result().toHex();
}

/// What all widgets show in an application of their own, each painted @p times times.
QMap<QString, QByteArray> looksInAnApplication(int times)
{
    int count = 1;
    char name[] = "tst_applications";
    char *arguments[] = {name, nullptr};
    const QApplication application(count, arguments);
    prepareTestApplication();
    // Qt 6 would keep the pointer's movement for the next application, when its device is gone.
    QCoreApplication::processEvents();
    QMap<QString, QByteArray> looks;
    for (const WidgetDescription &description : widgetCatalogue()) {
        QWidget window;
        window.resize(900, 600);
        QWidget *const widget = description.create(&window);
        widget->resize(description.size);
        description.populate(widget);
        window.show();
        QCoreApplication::sendPostedEvents();
        QByteArray look;
        for (int i = 0; i < times; ++i)
            look = hashOf(imageOf(widget));
        looks.insert(QString::fromLatin1(description.className), look);
    }
    return looks;
}

} // namespace

class ApplicationsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void looksAreTheSame();
};

void ApplicationsTest::looksAreTheSame()
{
    const QMap<QString, QByteArray> first = looksInAnApplication(1);
    QCOMPARE(first.size(), int(widgetCatalogue().size()));
    for (int i = 0; i < 3; ++i)
        QCOMPARE(looksInAnApplication(3), first);
}

int main(int argc, char **argv)
{
    prepareTestEnvironment();
    ApplicationsTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_applications.moc"

// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include <QtCore/QFile>
#include <QtCore/QPluginLoader>
#include <QtGui/QFontDatabase>
#include <QtTest/QtTest>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>
#include <QtWidgets/QWidget>

#include <memory>

// An application that meets the library only through a plugin may unload both and live on. This
// program therefore is not linked to the library.
class UnloadTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hostLivesOn();
};

namespace {

bool libraryIsLoaded()
{
    QFile maps(QStringLiteral("/proc/self/maps"));
    if (!maps.open(QIODevice::ReadOnly))
        return false;
    const QByteArray loaded = maps.readAll();
    return loaded.contains("/libkivwidgets.so") || loaded.contains("/libkivwidgets-qt6.so");
}

} // namespace

void UnloadTest::hostLivesOn()
{
    QVERIFY(!libraryIsLoaded());
    QPluginLoader loader(QStringLiteral(KIV_DESIGNER_PLUGIN));
    // By itself Qt keeps plugins until the end.
    loader.setLoadHints({});
    QVERIFY2(loader.load(), qPrintable(loader.errorString()));
    QVERIFY(libraryIsLoaded());
    auto *collection = qobject_cast<QDesignerCustomWidgetCollectionInterface *>(loader.instance());
    QVERIFY(collection);
    for (QDesignerCustomWidgetInterface *factory : collection->customWidgets()) {
        const std::unique_ptr<QWidget> widget(factory->createWidget(nullptr));
        widget->setProperty("text", QStringLiteral("Text"));
        widget->setProperty("title", QStringLiteral("Title"));
        QVERIFY(!widget->grab().isNull());
        widget->setFont(QFont(QStringLiteral("DejaVu Sans"), 11));
        QVERIFY(!widget->grab().isNull());
    }
    QVERIFY(loader.unload());
    QVERIFY(!libraryIsLoaded());

    // What the library watched reaches it no more: new fonts, and the end of the application.
    QSignalSpy changes(qGuiApp, &QGuiApplication::fontDatabaseChanged);
    QFile font(QStringLiteral("/usr/share/fonts/truetype/dejavu/DejaVuSansMono.ttf"));
    QVERIFY(font.open(QIODevice::ReadOnly));
    QVERIFY(QFontDatabase::addApplicationFontFromData(font.readAll()) >= 0);
    QCOMPARE(changes.count(), 1);
    QCOMPARE(QWidget().grab().isNull(), false);
}

QTEST_MAIN(UnloadTest)

#include "tst_unload.moc"

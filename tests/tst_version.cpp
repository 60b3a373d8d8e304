// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "testmain.h"
#include "widgetprobe.h"

#include <kivglobal.h>

#include <QtCore/QVersionNumber>

/// The version in the headers, in the library and in the build is one.
class VersionTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void isOne();
};

void VersionTest::isOne()
{
    const QVersionNumber built = QVersionNumber::fromString(QStringLiteral(KIV_VERSION));
    QCOMPARE(built.segmentCount(), 3);
    QCOMPARE(KIVWIDGETS_VERSION,
             (built.majorVersion() << 16) | (built.minorVersion() << 8) | built.microVersion());
    QCOMPARE(kivWidgetsVersion(), KIVWIDGETS_VERSION);
    static_assert(KIVWIDGETS_VERSION >= QT_VERSION_CHECK(1, 0, 0),
                  "a project can ask at compile time");
}

KIV_TEST_MAIN(VersionTest)

#include "tst_version.moc"

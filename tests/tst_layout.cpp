// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include <aerostyle.h>
#include <metrobatticon.h>

#include "layout.h"
#include "testmain.h"

/// The layout of what the widgets derive from and take; the test of each widget has its own.
class LayoutTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aeroStyle();
    void metroStyle();
    void elementState();
};

namespace {

constexpr std::size_t tablePointer = sizeof(void *);

} // namespace

void LayoutTest::aeroStyle()
{
    struct Open : AeroStyle
    {
        using AeroStyle::AeroStyle;
        static QString gap()
        {
            const Open o(nullptr);
            using Self = AeroStyle;
            return gapIn({{"virtual table", 0, tablePointer, tablePointer},
                          KIV_FIELD(lock),
                          KIV_FIELD(color),
                          KIV_FIELD(shadow),
                          KIV_FIELD(colorPen),
                          KIV_FIELD(widthPen),
                          KIV_FIELD(opacity),
                          KIV_FIELD(roundness),
                          KIV_FIELD(dirty),
                          KIV_FIELD(owner)},
                         sizeof(AeroStyle));
        }
    };
    QCOMPARE(Open::gap(), QString());
}

void LayoutTest::metroStyle()
{
    struct Open : MetroStyle
    {
        using MetroStyle::MetroStyle;
        static QString gap()
        {
            const Open o(nullptr);
            using Self = MetroStyle;
            return gapIn({{"virtual table", 0, tablePointer, tablePointer},
                          KIV_FIELD(lock),
                          KIV_FIELD(state),
                          KIV_FIELD(dirty),
                          KIV_FIELD(owner)},
                         sizeof(MetroStyle));
        }
    };
    QCOMPARE(Open::gap(), QString());
    // The battery template adds statics alone.
    QCOMPARE(sizeof(MetroBattTemplate), sizeof(MetroStyle));
}

void LayoutTest::elementState()
{
    const elemDesc_t state{1, 2};
    QCOMPARE(gapIn({layoutPart("alarmSt", state, state.alarmSt),
                    layoutPart("elemSt", state, state.elemSt)},
                   sizeof state),
             QString());
}

KIV_TEST_MAIN(LayoutTest)

#include "tst_layout.moc"

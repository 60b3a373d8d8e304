// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include <aerobutton.h>
#include <aerogroupbox.h>
#include <aerolinebar.h>
#include <aerostatusbar.h>
#include <aeroswitch.h>
#include <metrobatticon.h>
#include <metrocirclerate.h>
#include <metrolinerate.h>
#include <metronavdrawer.h>
#include <metroshelter.h>
#include <metrostatusbar.h>
#include <metrosysicon.h>
#include <metrotabicon.h>
#include <metroxbar.h>
#include <rotatestackedwidget.h>
#include <simpleslideswitch.h>
#include <slideswitch.h>
#include <transpbutton.h>

#include "testmain.h"

#include <vector>

/// The layout of the classes is part of the library's binary interface: the bases in their order,
/// then the fields in theirs, with nothing between, before or after them.
class LayoutTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aeroStyle();
    void metroStyle();
    void elementState();
    void aeroFamily();
    void metroState();
    void metroGauges();
    void switchesAndPages();
};

namespace {

/// A field of an object, or one of its bases.
struct Part
{
    const char *name;
    std::size_t offset;
    std::size_t size;
    std::size_t alignment;
};

template <typename Object, typename Field>
Part part(const char *name, const Object &object, const Field &field)
{
    const auto *from = reinterpret_cast<const char *>(&object);
    const auto *at = reinterpret_cast<const char *>(&field);
    return {name, std::size_t(at - from), sizeof(Field), alignof(Field)};
}

template <typename Base, typename Object>
Part base(const char *name, const Object &object)
{
    return part(name, object, static_cast<const Base &>(object));
}

std::size_t aligned(std::size_t offset, std::size_t alignment)
{
    return (offset + alignment - 1) / alignment * alignment;
}

/// Empty when the parts fill an object of this size, each as near to the one before as it may
/// stand.
QString gapIn(const std::vector<Part> &parts, std::size_t size)
{
    std::size_t end = 0;
    std::size_t strictest = 1;
    for (const Part &part : parts) {
        if (part.offset != aligned(end, part.alignment))
            return QStringLiteral("%1 stands at %2 instead of %3")
                .arg(QLatin1String(part.name))
                .arg(part.offset)
                .arg(aligned(end, part.alignment));
        end = part.offset + part.size;
        strictest = qMax(strictest, part.alignment);
    }
    if (size != aligned(end, strictest))
        return QStringLiteral("%1 bytes instead of %2").arg(size).arg(aligned(end, strictest));
    return QString();
}

constexpr std::size_t tablePointer = sizeof(void *);

} // namespace

// A class that opens the protected fields of W and names its parts, W's own size being what counts.
#define OPEN(W)                                                                                    \
    struct Open##W : W                                                                             \
    {                                                                                              \
        using W::W;                                                                                \
        static QString gap();                                                                      \
    };                                                                                             \
    static_assert(sizeof(Open##W) == sizeof(W), "nothing is added here");                          \
    QString Open##W::gap()

#define BASE(B) base<B>(#B, static_cast<const Self &>(o))
#define FIELD(F) part(#F, static_cast<const Self &>(o), o.F)
#define GAP(W, ...)                                                                                \
    using Self = W;                                                                                \
    const Open##W o(nullptr);                                                                      \
    return gapIn({__VA_ARGS__}, sizeof(W))

OPEN(AeroButton)
{
    GAP(AeroButton, BASE(QAbstractButton), BASE(AeroStyle), FIELD(colorText), FIELD(bold),
        FIELD(rotate), FIELD(image));
}
OPEN(AeroSwitch)
{
    GAP(AeroSwitch, BASE(AeroButton), FIELD(highlight), FIELD(imagePressed));
}
OPEN(TranspButton)
{
    GAP(TranspButton, BASE(QAbstractButton), FIELD(posLabel), FIELD(hover));
}
OPEN(AeroStatusbar)
{
    GAP(AeroStatusbar, BASE(QFrame), BASE(AeroStyle), FIELD(text), FIELD(colorText), FIELD(bold),
        FIELD(image));
}
OPEN(AeroGroupbox)
{
    GAP(AeroGroupbox, BASE(QGroupBox), BASE(AeroStyle), FIELD(backgroudType),
        FIELD(backgroundGroup), FIELD(colorTitle), FIELD(bold), FIELD(image), FIELD(imageTitle),
        FIELD(titleSize));
}
OPEN(AeroLinebar)
{
    GAP(AeroLinebar, BASE(QWidget), BASE(AeroStyle), FIELD(tickSize), FIELD(tickInterval),
        FIELD(tickHeight), FIELD(barHeight), FIELD(minValueF), FIELD(maxValueF), FIELD(valueF),
        FIELD(valuePosition), FIELD(valueFormat), FIELD(valueText), FIELD(colorText), FIELD(bold),
        FIELD(image), FIELD(imageShadow), FIELD(imageText), FIELD(imageTick));
}
OPEN(MetroSysIcon)
{
    GAP(MetroSysIcon, BASE(QAbstractButton), BASE(MetroStyle), FIELD(image), FIELD(hover),
        FIELD(border), FIELD(roundness));
}
OPEN(MetroBattIcon)
{
    GAP(MetroBattIcon, BASE(QAbstractButton), BASE(MetroBattTemplate), FIELD(image));
}
OPEN(MetroShelter)
{
    GAP(MetroShelter, BASE(QAbstractButton), BASE(MetroStyle), FIELD(image), FIELD(ImageBackground),
        FIELD(colorText), FIELD(xLabel));
}
OPEN(MetroTabicon)
{
    GAP(MetroTabicon, BASE(QAbstractButton), BASE(MetroStyle), FIELD(image), FIELD(imagePressed));
}
OPEN(MetroStatusbar)
{
    GAP(MetroStatusbar, BASE(QFrame), BASE(MetroStyle), FIELD(background), FIELD(image));
}
OPEN(MetroNavdrawer)
{
    GAP(MetroNavdrawer, BASE(QGroupBox), BASE(MetroStyle), FIELD(state), FIELD(background),
        FIELD(openGeometry), FIELD(image), FIELD(ImageTab));
}
OPEN(MetroLinerate)
{
    GAP(MetroLinerate, BASE(QWidget), BASE(MetroStyle), FIELD(foregroundcolor),
        FIELD(backgroundcolor), FIELD(value), FIELD(barWidth), FIELD(Image), FIELD(ImageBG),
        FIELD(ImageFG));
}
OPEN(MetroCirclerate)
{
    GAP(MetroCirclerate, BASE(QWidget), BASE(MetroStyle), FIELD(value), FIELD(paintFromZero),
        FIELD(formatStr), FIELD(posStr), FIELD(numTick), FIELD(tickness), FIELD(radius),
        FIELD(minValue), FIELD(maxValue), FIELD(arcSize), FIELD(minAngle), FIELD(label),
        FIELD(posLabel), FIELD(cursor), FIELD(background), FIELD(arcRect), FIELD(Image),
        FIELD(ImageBG), FIELD(ImageFG));
}
OPEN(MetroXbar)
{
    GAP(MetroXbar, BASE(QWidget), BASE(MetroStyle), FIELD(foregroundcolor), FIELD(backgroundcolor),
        FIELD(measure), FIELD(value), FIELD(maxValue), FIELD(minValue), FIELD(barWidth),
        FIELD(Image), FIELD(ImageBG), FIELD(ImageFG));
}
OPEN(SlideSwitch)
{
    GAP(SlideSwitch, BASE(QAbstractButton), FIELD(textOffset), FIELD(locked), FIELD(partialON),
        FIELD(dragFromOn), FIELD(dragFromOff), FIELD(dragFromMiddle), FIELD(pointerPos),
        FIELD(leftLimit), FIELD(rightLimit), FIELD(middleZone));
}
OPEN(SimpleSlideSwitch)
{
    GAP(SimpleSlideSwitch, BASE(QAbstractButton), FIELD(uncheckedImg), FIELD(marginLeft),
        FIELD(checkedImg), FIELD(marginRight), FIELD(checkedDisImg), FIELD(uncheckedDisImg),
        FIELD(btnImg), FIELD(btnDisImg), FIELD(dragFromOn), FIELD(dragFromOff), FIELD(moved),
        FIELD(pointerPos), FIELD(leftLimit), FIELD(rightLimit));
}
OPEN(RotateStackedWidget)
{
    GAP(RotateStackedWidget, BASE(QStackedWidget), FIELD(rotate), FIELD(scale), FIELD(animPhase),
        FIELD(endPositionAnimate), FIELD(timePositionAnimate), FIELD(timeRotationAnimate),
        FIELD(animationEnabled), FIELD(animating), FIELD(nextIndex), FIELD(group),
        FIELD(shrinkAnimation), FIELD(turnAnimation), FIELD(growAnimation));
}

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
                          FIELD(lock),
                          FIELD(color),
                          FIELD(shadow),
                          FIELD(colorPen),
                          FIELD(widthPen),
                          FIELD(opacity),
                          FIELD(roundness),
                          FIELD(dirty),
                          FIELD(owner)},
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
                          FIELD(lock),
                          FIELD(state),
                          FIELD(dirty),
                          FIELD(owner)},
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
    QCOMPARE(gapIn({part("alarmSt", state, state.alarmSt), part("elemSt", state, state.elemSt)},
                   sizeof state),
             QString());
}

void LayoutTest::aeroFamily()
{
    QCOMPARE(OpenAeroButton::gap(), QString());
    QCOMPARE(OpenAeroSwitch::gap(), QString());
    QCOMPARE(OpenTranspButton::gap(), QString());
    QCOMPARE(OpenAeroStatusbar::gap(), QString());
    QCOMPARE(OpenAeroGroupbox::gap(), QString());
    QCOMPARE(OpenAeroLinebar::gap(), QString());
}

void LayoutTest::metroState()
{
    QCOMPARE(OpenMetroSysIcon::gap(), QString());
    QCOMPARE(OpenMetroBattIcon::gap(), QString());
    QCOMPARE(OpenMetroShelter::gap(), QString());
    QCOMPARE(OpenMetroTabicon::gap(), QString());
    QCOMPARE(OpenMetroStatusbar::gap(), QString());
    QCOMPARE(OpenMetroNavdrawer::gap(), QString());
}

void LayoutTest::metroGauges()
{
    QCOMPARE(OpenMetroLinerate::gap(), QString());
    QCOMPARE(OpenMetroCirclerate::gap(), QString());
    QCOMPARE(OpenMetroXbar::gap(), QString());
}

void LayoutTest::switchesAndPages()
{
    QCOMPARE(OpenSlideSwitch::gap(), QString());
    QCOMPARE(OpenSimpleSlideSwitch::gap(), QString());
    QCOMPARE(OpenRotateStackedWidget::gap(), QString());
}

KIV_TEST_MAIN(LayoutTest)

#include "tst_layout.moc"

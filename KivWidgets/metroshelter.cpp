// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "metroshelter.h"

#include "assign_p.h"
#include "cachedimage_p.h"
#include "elementstate_p.h"
#include "errorline_p.h"
#include "events_p.h"
#include "iconpainting_p.h"
#include "pixmaps_p.h"
#include "text_p.h"

#include <QtGui/QFontMetrics>
#include <QtGui/QIcon>
#include <QtGui/QImage>

#include <array>
#include <iterator>

using namespace KivPrivate;

namespace {

/// Width at the right edge that is kept for the LED.
constexpr int ledColumn = 29;

/// The ends of the LED images' names, by operating state; none for the unknown state.
constexpr Keyed<OperatingState, const char *> elementNames[] = {
    {OperatingState::Unknown, nullptr},
    {OperatingState::StandBy, "Stand-by"},
    {OperatingState::Precharge, "Precharge"},
    {OperatingState::Calibration, "Calibration"},
    {OperatingState::WaitBatteryVoltage, "WaitVbatReady"},
    {OperatingState::On, "ON"},
    {OperatingState::OnBattery, "BatteryWorking"},
    {OperatingState::OnBypass, "OnBypass"},
};
static_assert(isComplete(elementNames, operatingStateCount), "one name for each state");

/// What an alarm state shows.
struct AlarmLook
{
    const char *led; ///< name of its LED, or of the group that the element state picks from
    bool byElement;  ///< whether there is one LED for each element state
    bool knowsUnknownElement;   ///< whether an unknown element state is foreseen
    const char *elementMessage; ///< for an unforeseen element state
};

constexpr Keyed<AlarmState, AlarmLook> alarmLooks[] = {
    {AlarmState::CommunicationLost, {"COMMLOST", false, true, nullptr}},
    {AlarmState::None, {"OK", true, true, "Caso elemSt di noneAlarm non previsto:0x%02X\n"}},
    {AlarmState::Warning,
     {"WARNING", true, false, "Caso elemSt di war/anomAlarm non previsto:0x%02X\n"}},
    {AlarmState::Anomaly,
     {"WARNING", true, false, "Caso elemSt di war/anomAlarm non previsto:0x%02X\n"}},
    {AlarmState::Fault, {"FAULT", true, false, "Caso elemSt di faultAlarm non previsto:0x%02X\n"}},
    {AlarmState::Locked, {"LOCK", false, true, nullptr}},
};
static_assert(isComplete(alarmLooks, alarmStateCount), "one look for each state");

QPixmap led(const QString &name)
{
    return libraryImage(QStringLiteral("stato-LED-%1").arg(name));
}

/// The LED of @p state; error lines name @p place.
QPixmap ledOf(elemDesc_t state, SourcePlace place)
{
    const QString lost = QStringLiteral("COMMLOST");
    if (state.alarmSt >= std::size(alarmLooks)) {
        writeErrorLine(place, "Caso st.alarmSt non previsto:0x%02X\n", asWord(state));
        return led(lost);
    }
    const AlarmLook &look = alarmLooks[state.alarmSt].value;
    const QString name = QLatin1String(look.led);
    if (!look.byElement)
        return led(name);
    const bool unknown = isState(state.elemSt, OperatingState::Unknown);
    if (unknown && look.knowsUnknownElement)
        return led(lost);
    if (unknown || state.elemSt >= std::size(elementNames)) {
        QT_WARNING_PUSH
        QT_WARNING_DISABLE_GCC("-Wformat-nonliteral")
        QT_WARNING_DISABLE_CLANG("-Wformat-nonliteral")
        writeErrorLine(place, look.elementMessage, asWord(state));
        QT_WARNING_POP
        return led(lost);
    }
    return led(name + QLatin1Char('-') + QLatin1String(elementNames[state.elemSt].value));
}

/// Where the LED goes on a tile whose last column is @p right and last row @p bottom.
QRectF ledRect(int right, int bottom)
{
    if (bottom > 24)
        return QRectF(right - ledColumn, (bottom - 20) / 2, 21, 21);
    return QRectF(right - 13, (bottom - 9) / 2, 10, 10);
}

} // namespace

MetroShelter::MetroShelter(QWidget *parent)
    : QAbstractButton(parent)
    , MetroStyle(this)
    , image(nullptr)
    , ImageBackground(new QPixmap(size()))
    , colorText(Qt::white)
    , xLabel(10)
{
    ImageBackground->fill(Qt::black);
    repaintSchedule(&image);
}

MetroShelter::~MetroShelter()
{
    MetroStyle::repaintSchedule(&image);
    delete ImageBackground;
}

QPixmap MetroShelter::getImageBackground() const
{
    return ImageBackground ? *ImageBackground : QPixmap();
}

void MetroShelter::setBackgroundImage(const QPixmap &pixmap)
{
    // The caller's pixmap may be the stored one.
    QPixmap *held = pixmap.isNull() ? nullptr : new QPixmap(pixmap);
    delete ImageBackground;
    ImageBackground = held;
    repaintSchedule(&image);
}

QColor MetroShelter::getColorText() const
{
    return colorText;
}

void MetroShelter::setColorText(const QColor &newColorText)
{
    if (assignIfChanged(colorText, newColorText))
        repaintSchedule(&image);
}

int MetroShelter::getXLabel() const
{
    return xLabel;
}

void MetroShelter::setxLabel(int x)
{
    if (assignIfChanged(xLabel, x))
        repaintSchedule(&image);
}

void MetroShelter::setIcon(const QIcon &newIcon)
{
    repaintSchedule(&image);
    QAbstractButton::setIcon(newIcon);
}

void MetroShelter::setText(const QString &newText)
{
    repaintSchedule(&image);
    QAbstractButton::setText(newText);
}

void MetroShelter::createImages()
{
    if (image)
        return;
    if (!ImageBackground && isAllocatable(size(), devicePixelRatioF())) {
        ImageBackground = new QPixmap(size());
        ImageBackground->fill(Qt::black);
    }
    createIfMissing(&image, this);
    paintImage();
}

void MetroShelter::paintEvent(QPaintEvent *)
{
    dropOutdated(this, lock, dirty, std::array{&image});
    if (dirty) {
        createImages();
        dirty = false;
    }
    showImage(this, *image);
}

void MetroShelter::repaintSchedule(QImage **cached)
{
    MetroStyle::repaintSchedule(cached);
    update();
}

bool MetroShelter::event(QEvent *event)
{
    if (isOneOf(event, sizedDropEvents)) {
        repaintSchedule(&image);
        absorbUpdateRequests(this, event);
    }
    return QAbstractButton::event(event);
}

void MetroShelter::paintImage()
{
    if (isMissing(image)) {
        reportNullImage(KIV_HERE, this, "Image");
        return;
    }
    // NOLINTNEXTLINE(clang-analyzer-core.NonNullParamChecker): it has a background.
    paintStretched(image, size(), *ImageBackground);
    StretchedPainter painter(image, size(), *ImageBackground);
    paintText(&painter);
}

void MetroShelter::paintText(QPainter *painter)
{
    painter->setOpacity(1.0);
    painter->setPen(palette().brush(QPalette::Current, QPalette::ButtonText).color());
    painter->setFont(font());
    const int right = width() - 1;
    const int bottom = height() - 1;
    drawStretched(painter, ledRect(right, bottom), ledOf(state, KIV_HERE));

    const QString label = text();
    const bool hasText = !label.isNull();
    const QFontMetrics metrics(font());
    if (!icon().isNull()) {
        // The icon is centred together with the text's width, while the text stays at its place.
        const int textWidth = hasText ? singleLineSize(font(), label).width() : 0;
        const qint64 labelWidth = qint64(textWidth) + iconSize().width();
        const int x = int((right - ledColumn - labelWidth) / 2);
        const int y = (height() - iconSize().height()) / 2;
        drawAtNaturalSize(painter, x, y, iconPixmap(this));
    }
    if (hasText) {
        painter->setPen(colorText);
        drawLine(painter, QPointF(xLabel, centredBaseline(metrics, height())), label);
    }
}

// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "metrotabicon.h"

#include "cachedimage_p.h"
#include "elementstate_p.h"
#include "errorline_p.h"
#include "events_p.h"
#include "iconpainting_p.h"
#include "pixmaps_p.h"

#include <QtGui/QIcon>
#include <QtGui/QImage>

#include <array>
#include <iterator>

using namespace KivPrivate;

namespace {

/// Where the LED goes, whatever the tab's size.
constexpr QRect ledRect(4, 39, 21, 21);

/// The LED's name by alarm state; no alarm shows none.
constexpr Keyed<AlarmState, const char *> ledNames[] = {
    {AlarmState::CommunicationLost, "COMMLOST"},
    {AlarmState::None, nullptr},
    {AlarmState::Warning, "WARNING-ON"},
    {AlarmState::Anomaly, "WARNING-ON"},
    {AlarmState::Fault, "FAULT-ON"},
    {AlarmState::Locked, "LOCK"},
};
static_assert(isComplete(ledNames, alarmStateCount), "one name for each state");

QPixmap ledOf(elemDesc_t state)
{
    const char *name = state.alarmSt < std::size(ledNames) ? ledNames[state.alarmSt].value : "none";
    if (!name)
        return QPixmap();
    return libraryImage(QStringLiteral("stato-LED-%1").arg(QLatin1String(name)));
}

} // namespace

MetroTabicon::MetroTabicon(QWidget *parent)
    : QAbstractButton(parent)
    , MetroStyle(this)
    , image(nullptr)
    , imagePressed(nullptr)
{
    setCheckable(true);
    setAutoExclusive(true);
    dropBoth();
}

MetroTabicon::~MetroTabicon()
{
    MetroStyle::repaintSchedule(&image);
    MetroStyle::repaintSchedule(&imagePressed);
}

void MetroTabicon::createImages()
{
    if (image && imagePressed)
        return;
    for (QImage **look : {&image, &imagePressed}) {
        delete *look;
        *look = nullptr;
        createIfMissing(look, this);
    }
    paintImages();
}

void MetroTabicon::paintImages()
{
    const QPixmap led = ledOf(state);
    if (isMissing(image)) {
        reportNullImage(KIV_HERE, this, "Image");
        return;
    }
    paintLook(image, QIcon::Off, led);
    if (isMissing(imagePressed)) {
        reportNullImage(KIV_HERE, this, "ImagePressed");
        return;
    }
    paintLook(imagePressed, QIcon::On, led);
}

void MetroTabicon::paintEvent(QPaintEvent *)
{
    dropOutdated(this, lock, dirty, std::array{&image, &imagePressed});
    if (dirty) {
        createImages();
        dirty = false;
    }
    // NOLINTNEXTLINE(clang-analyzer-core.NonNullParamChecker): a clean widget has both images.
    showImage(this, isChecked() ? *imagePressed : *image);
}

void MetroTabicon::repaintSchedule(QImage **cached)
{
    MetroStyle::repaintSchedule(cached);
    update();
}

bool MetroTabicon::event(QEvent *event)
{
    const bool mayGrow = isOneOf(event, growEvents);
    if ((mayGrow && growToIcon(this)) || isOneOf(event, unsizedDropEvents)) {
        dropBoth();
        absorbUpdateRequests(this, event);
    }
    return QAbstractButton::event(event);
}

void MetroTabicon::dropBoth()
{
    repaintSchedule(&image);
    repaintSchedule(&imagePressed);
}

void MetroTabicon::paintLook(QImage *look, QIcon::State iconState, const QPixmap &led)
{
    ImagePainter painter(look);
    if (!icon().isNull()) {
        drawAtNaturalSize(&painter, (width() - iconSize().width()) / 2,
                          (height() - iconSize().height()) / 2,
                          iconPixmap(this, QIcon::Normal, iconState));
    }
    drawStretched(&painter, QRectF(ledRect), led);
}

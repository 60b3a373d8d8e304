// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "iconpainting_p.h"

#include "ownsize_p.h"
#include "pixmaps_p.h"
#include "qtversion_p.h"

#include <QtGui/QPainter>
#include <QtWidgets/QAbstractButton>

#include <algorithm>

namespace KivPrivate {

namespace {

/// The pixmap of @p icon for @p size logical pixels at @p ratio, with no ratio set. Qt 5 takes its
/// own ratio into account when the application asks for that, so the pixels are asked for plainly.
QPixmap iconAtRatio(const QIcon &icon, QSize size, double ratio, QIcon::Mode mode,
                    QIcon::State state)
{
    return unscaledPixmap(icon, pixelSize(size, ratio), mode, state);
}

/// The extent that the icon needs, limited to that of a widget so that the growing ends.
int wanted(int iconExtent)
{
    return int(std::min<qint64>(qint64(iconExtent) + 2, QWIDGETSIZE_MAX));
}

} // namespace

QPixmap iconPixmap(const QAbstractButton *button, QIcon::Mode enabledMode, QIcon::State state)
{
    const QIcon icon = button->icon();
    const QIcon::Mode mode = button->isEnabled() ? enabledMode : QIcon::Disabled;
    const double ratio = button->devicePixelRatioF();
    QPixmap plain = iconAtRatio(icon, button->iconSize(), 1.0, mode, state);
    if (ratio <= 1.0)
        return plain;
    QPixmap sharp = iconAtRatio(icon, button->iconSize(), ratio, mode, state);
    if (plain.isNull() || sharp.width() <= plain.width())
        return plain;
    sharp.setDevicePixelRatio(double(sharp.width()) / plain.width());
    return sharp;
}

QPixmap iconPixmap(const QAbstractButton *button, QIcon::Mode enabledMode)
{
    return iconPixmap(button, enabledMode, button->isChecked() ? QIcon::On : QIcon::Off);
}

bool followIconSize(QAbstractButton *button)
{
    const QList<QSize> sizes = button->icon().availableSizes(QIcon::Normal, QIcon::Off);
    // An invalid size would not be kept, and so set again with every paint.
    if (sizes.isEmpty() || !sizes.first().isValid() || sizes.first() == button->iconSize())
        return false;
    button->setIconSize(sizes.first());
    return true;
}

bool growToIcon(QAbstractButton *button)
{
    if (isSizeEnforced(button))
        return false;
    const int width = wanted(button->iconSize().width());
    if (button->width() < width) {
        button->setMinimumWidth(std::max(width, button->minimumWidth()));
        button->setMaximumWidth(std::max(width, button->maximumWidth()));
        button->resize(width, button->height());
        return true;
    }
    const int height = wanted(button->iconSize().height());
    if (button->height() < height) {
        button->setMinimumHeight(std::max(height, button->minimumHeight()));
        button->setMaximumHeight(std::max(height, button->maximumHeight()));
        button->resize(button->width(), height);
        return true;
    }
    return false;
}

void drawAtNaturalSize(QPainter *painter, int x, int y, const QPixmap &pixmap)
{
    const double ratio = painter->device()->devicePixelRatioF();
    const QPixmap sharp = atRatio(pixmap, ratio);
    if (ratio != 1.0)
        useSmoothness(painter, sharp.devicePixelRatio());
    // A negative extent stands for the pixmap's own, an empty source for the whole pixmap.
    painter->drawPixmap(QRectF(x, y, -x, -y), sharp, QRectF());
}

void drawCentredIcon(QPainter *painter, const QAbstractButton *button, QIcon::Mode enabledMode)
{
    if (button->icon().isNull())
        return;
    const int dx = (button->width() - button->iconSize().width()) / 2;
    const int dy = (button->height() - button->iconSize().height()) / 2;
    painter->setOpacity(1.0);
    drawAtNaturalSize(painter, dx, dy, iconPixmap(button, enabledMode));
}

void drawDisabledWash(QPainter *painter, const QWidget *widget)
{
    painter->setCompositionMode(QPainter::CompositionMode_HardLight);
    painter->fillRect(QRect(1, 1, widget->width() - 2, widget->height() - 2), Qt::lightGray);
    painter->setCompositionMode(QPainter::CompositionMode_SourceOver);
}

} // namespace KivPrivate

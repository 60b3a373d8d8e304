#include "iconpainting_p.h"

#include <QtGui/QPainter>
#include <QtWidgets/QAbstractButton>

namespace KivPrivate {

QColor washedOut(const QColor &color)
{
    int h = 0;
    int s = 0;
    int v = 0;
    int a = 0;
    color.getHsv(&h, &s, &v, &a);
    return QColor::fromHsv(h, s / 2, v + (255 - v) / 2, a);
}

QPixmap iconPixmap(const QAbstractButton *button, QIcon::Mode enabledMode)
{
    return button->icon().pixmap(button->iconSize(),
                                 button->isEnabled() ? enabledMode : QIcon::Disabled,
                                 button->isChecked() ? QIcon::On : QIcon::Off);
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

void drawAtNaturalSize(QPainter *painter, int x, int y, const QPixmap &pixmap)
{
    // A negative extent stands for the pixmap's own, an empty source for the whole pixmap.
    painter->drawPixmap(QRectF(x, y, -x, -y), pixmap, QRectF());
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

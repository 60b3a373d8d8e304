// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "aerobutton.h"

#include "aeropanel_p.h"
#include "assign_p.h"
#include "cachedimage_p.h"
#include "errorline_p.h"
#include "events_p.h"
#include "iconpainting_p.h"
#include "pixmaps_p.h"
#include "text_p.h"

#include <QtGui/QFontMetrics>
#include <QtGui/QImage>

#include <array>

using namespace KivPrivate;

AeroButton::AeroButton(QWidget *parent)
    : QAbstractButton(parent)
    , AeroStyle(this)
    , colorText(Qt::white)
    , bold(true)
    , rotate(0.0)
    , image(nullptr)
{
    repaintSchedule(&image);
}

AeroButton::~AeroButton()
{
    AeroStyle::repaintSchedule(&image);
}

QColor AeroButton::getColorText() const
{
    return colorText;
}

void AeroButton::setColorText(const QColor &newColorText)
{
    if (assignIfChanged(colorText, newColorText))
        repaintSchedule(&image);
}

bool AeroButton::getBold() const
{
    return bold;
}

void AeroButton::setTextBold(bool newBold)
{
    if (assignIfChanged(bold, newBold))
        repaintSchedule(&image);
}

double AeroButton::getRotate() const
{
    return rotate;
}

void AeroButton::setRotate(double newRotate)
{
    if (assignIfChanged(rotate, newRotate))
        update();
}

void AeroButton::setText(const QString &newText)
{
    postUpdateRequest(this);
    QAbstractButton::setText(newText);
}

void AeroButton::setIcon(const QIcon &newIcon)
{
    postUpdateRequest(this);
    QAbstractButton::setIcon(newIcon);
}

bool AeroButton::event(QEvent *event)
{
    if (isOneOf(event, sizedDropEvents)) {
        repaintSchedule(&image);
        absorbUpdateRequests(this, event);
    }
    return QAbstractButton::event(event);
}

void AeroButton::paintEvent(QPaintEvent *)
{
    dropOutdated(this, lock, dirty, std::array{&image});
    if (dirty) {
        createImages();
        dirty = false;
    }
    showAeroImage(this, *image, opacity, rotate);
}

void AeroButton::createImages()
{
    if (createIfMissing(&image, this))
        paintImage();
}

void AeroButton::paintImage()
{
    if (image->isNull()) {
        reportNullImage(KIV_HERE, this, "Image");
        return;
    }
    const PanelColors colors = PanelColors{color, shadow, colorPen}.shownBy(this);
    paintGlassPanel(image, size(), {widthPen, roundness, opacity}, colors);
    PanelPainter painter(image, colors);
    paintText(&painter);
}

void AeroButton::repaintSchedule(QImage **cached)
{
    AeroStyle::repaintSchedule(cached);
    update();
}

void AeroButton::paintText(QPainter *painter)
{
    const QString label = text();
    const bool hasText = !label.isNull();
    const bool hasIcon = !icon().isNull();
    if (!hasText && !hasIcon)
        return;

    const QFont font = withWeight(this->font(), bold);
    const QFontMetrics metrics(font);
    const int textWidth = hasText ? singleLineSize(font, label).width() : 0;
    const QPixmap pixmap = hasIcon ? iconPixmap(this) : QPixmap();

    painter->setOpacity(1.0);
    const QSize iconExtent = logicalSize(pixmap);
    int x = (width() - (textWidth + iconExtent.width())) / 2;
    if (hasIcon) {
        drawAtNaturalSize(painter, x, (height() - iconExtent.height()) / 2, pixmap);
        x += iconExtent.width();
    } else {
        // Text that stands alone looks centred one pixel to the left.
        x -= 1;
    }
    if (hasText) {
        painter->setFont(font);
        painter->setPen(colorText);
        drawLine(painter, QPointF(x, centredBaseline(metrics, height())), label);
    }
}

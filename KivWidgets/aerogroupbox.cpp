// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "aerogroupbox.h"

#include "aeropanel_p.h"
#include "assign_p.h"
#include "cachedimage_p.h"
#include "errorline_p.h"
#include "events_p.h"
#include "pixmaps_p.h"
#include "text_p.h"

#include <QtGui/QFontMetrics>
#include <QtGui/QImage>

#include <array>

using namespace KivPrivate;

namespace {

/// Free pixels on each side of the title.
constexpr int titleMargin = 4;

QSize titleExtent(const QString &title, const QFont &font)
{
    if (title.isNull())
        return {0, 0};
    return singleLineSize(font, title) + QSize(2 * titleMargin, 0);
}

} // namespace

AeroGroupbox::AeroGroupbox(QWidget *parent)
    : QGroupBox(parent)
    , AeroStyle(this)
    , backgroudType(AeroStyleBG)
    , colorTitle(Qt::white)
    , bold(true)
    , image(nullptr)
    , imageTitle(nullptr)
{
    repaintSchedule(&image);
    repaintSchedule(&imageTitle);
}

AeroGroupbox::~AeroGroupbox()
{
    AeroStyle::repaintSchedule(&image);
    AeroStyle::repaintSchedule(&imageTitle);
}

AeroGroupbox::typeBG AeroGroupbox::getBackgroudType() const
{
    return backgroudType;
}

void AeroGroupbox::setBackgroundType(typeBG type)
{
    if (assignIfChanged(backgroudType, type))
        repaintSchedule(&image);
}

QPixmap AeroGroupbox::getBackgroundGroup() const
{
    return backgroundGroup;
}

void AeroGroupbox::setBackgroundGroup(const QPixmap &pixmap)
{
    backgroundGroup = pixmap;
    repaintSchedule(&image);
}

QColor AeroGroupbox::getColorTitle() const
{
    return colorTitle;
}

void AeroGroupbox::setColorTitle(const QColor &newColorTitle)
{
    if (assignIfChanged(colorTitle, newColorTitle))
        repaintSchedule(&image);
}

bool AeroGroupbox::getBold() const
{
    return bold;
}

void AeroGroupbox::setTextBold(bool newBold)
{
    if (assignIfChanged(bold, newBold))
        repaintSchedule(&image);
}

void AeroGroupbox::setTitle(const QString &newTitle)
{
    if (newTitle == title())
        return;
    QGroupBox::setTitle(newTitle);
    titleSize = titleExtent(newTitle, withWeight(font(), bold));
    repaintSchedule(&image);
    repaintSchedule(&imageTitle);
}

bool AeroGroupbox::event(QEvent *event)
{
    if (isOneOf(event, sizedBoxDropEvents)) {
        repaintSchedule(&image);
        if (backgroudType == AeroStyleBG)
            repaintSchedule(&imageTitle);
        absorbUpdateRequests(this, event);
    }
    if (event->type() == QEvent::MouseButtonRelease) {
        MoveOutside move;
        QGroupBox::mouseMoveEvent(&move);
    }
    return QGroupBox::event(event);
}

void AeroGroupbox::mousePressEvent(QMouseEvent *event)
{
    toggleOnLeftPress(this, event);
}

void AeroGroupbox::paintEvent(QPaintEvent *)
{
    dropOutdated(this, lock, dirty, std::array{&image, &imageTitle});
    if (dirty) {
        createImages();
        dirty = false;
    }
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (title().isNull()) {
        drawInto(&painter, QRectF(QPointF(), logicalSize(*image)), *image);
        return;
    }

    // A title set through the base class has no image yet.
    const double titleWidth = imageTitle ? logicalSize(*imageTitle).width() : 0;
    const auto left = double(cornerRadius(size(), widthPen, roundness));
    const double right = left + titleWidth;
    const double bodyHeight = logicalSize(*image).height();
    const double top = height() - bodyHeight;
    const double pen = widthPen;
    painter.setOpacity(opacity);
    drawPart(&painter, {0, top}, *image, {0, 0, left, bodyHeight});
    drawPart(&painter, {left, top + pen}, *image, {left, pen, titleWidth, bodyHeight - pen});
    drawPart(&painter, {right, top}, *image, {right, 0, width() - right, bodyHeight});
    if (imageTitle)
        drawAt(&painter, QPointF(left, 0), *imageTitle);
}

void AeroGroupbox::paintImage()
{
    if (image->isNull()) {
        reportNullImage(KIV_HERE, this, "Image");
        return;
    }
    switch (backgroudType) {
    case AeroStyleBG:
        paintGlassPanel(image, logicalSize(*image), {widthPen, roundness, opacity},
                        PanelColors{color, shadow, colorPen}.shownBy(this));
        return;
    case ImageBG:
        paintStretched(image, logicalSize(*image), backgroundGroup);
        return;
    }
    // No background for a number that names none.
    const ImagePainter cleared(image);
}

void AeroGroupbox::paintImageTitle()
{
    if (imageTitle->isNull()) {
        reportNullImage(KIV_HERE, this, "ImageTitle");
        return;
    }
    ImagePainter painter(imageTitle);
    paintTitle(&painter);
}

void AeroGroupbox::paintTitle(QPainter *painter)
{
    if (title().isNull())
        return;
    const QFont titleFont = withWeight(font(), bold);
    titleSize = titleExtent(title(), titleFont);
    painter->setFont(titleFont);
    painter->setPen(colorTitle);
    painter->setOpacity(1.0);
    drawLine(painter, QPointF(titleMargin, QFontMetrics(titleFont).ascent()), title());
}

void AeroGroupbox::createImages()
{
    titleSize = titleExtent(title(), withWeight(font(), bold));
    if (createIfMissing(&image, this))
        paintImage();
    if (imageTitle || title().isNull())
        return;
    createIfMissing(&imageTitle, this, titleSize);
    if (imageTitle && !imageTitle->isNull())
        paintImageTitle();
}

void AeroGroupbox::repaintSchedule(QImage **cached)
{
    AeroStyle::repaintSchedule(cached);
    update();
}

bool AeroGroupbox::showsImage() const
{
    return backgroudType == ImageBG;
}

bool AeroGroupbox::showsPanel() const
{
    return backgroudType == AeroStyleBG;
}

#include "aerostyle.h"

#include "aeropanel_p.h"
#include "cachedimage_p.h"

#include <QtGui/QLinearGradient>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>

using namespace KivPrivate;

namespace {

/// Where the glass gradient changes from the panel's colour to the band's and back.
constexpr double bandBegins = 0.4;
constexpr double bandEnds = 0.6;
/// Share of the panel colour's alpha at which the highlight is drawn.
constexpr double highlightStrength = 0.3;

/// The measures of a glass panel of a given size.
struct PanelGeometry
{
    double pen;         ///< width of the outer outline
    QRectF outline;     ///< the outer outline
    double outerRadius; ///< corner radius of the outer outline
    QRectF body;        ///< the glass body
    double innerRadius; ///< corner radius of the body
};

PanelGeometry panelGeometry(QSize size, int widthPen, int roundness)
{
    const double wp = widthPen;
    PanelGeometry panel{};
    panel.pen = wp;
    panel.outline = QRectF(wp * 0.5, wp * 0.5, size.width() - wp, size.height() - wp);
    panel.outerRadius = double(cornerRadius(size, widthPen, roundness));
    const double inset = wp * 5.0 * 0.25;
    panel.body = QRectF(inset, inset, size.width() - 2 * inset, size.height() - 2 * inset);
    panel.innerRadius = panel.outerRadius - wp * 3.0 * 0.25;
    return panel;
}

QPainterPath roundedRect(const QRectF &rect, double radius)
{
    QPainterPath path;
    path.addRoundedRect(rect, radius, radius, Qt::AbsoluteSize);
    return path;
}

/// The upper half of the body, rounded at its two upper corners.
QPainterPath highlightPath(const PanelGeometry &panel, QSize size)
{
    const double inset = panel.body.x();
    const double diameter = 2 * panel.innerRadius;
    const int middle = size.height() / 2;
    const double rightArc = size.width() - panel.pen * 0.5 - panel.outerRadius - panel.innerRadius;
    QPainterPath path;
    path.moveTo(inset, middle);
    path.arcTo(QRectF(inset, inset, diameter, diameter), -180, -90);
    path.arcTo(QRectF(rightArc, inset, diameter, diameter), -270, -90);
    path.lineTo(size.width() - inset, middle);
    path.closeSubpath();
    return path;
}

QLinearGradient glass(const QColor &edge, const QColor &band, QSize size, int widthPen)
{
    QLinearGradient gradient(widthPen, widthPen, widthPen, double(size.height()) - widthPen);
    gradient.setSpread(QGradient::ReflectSpread);
    gradient.setColorAt(0.0, edge);
    gradient.setColorAt(bandBegins, band);
    gradient.setColorAt(bandEnds, band);
    gradient.setColorAt(1.0, edge);
    return gradient;
}

} // namespace

AeroStyle::AeroStyle(QObject *ownerWidget)
    : color(Qt::gray)
    , shadow(Qt::black)
    , colorPen(Qt::black)
    , widthPen(2)
    , opacity(1.0)
    , roundness(25)
    , dirty(true)
    , owner(ownerWidget)
{}

AeroStyle::~AeroStyle() = default;

QColor AeroStyle::getColor() const
{
    return color;
}

void AeroStyle::setColor(const QColor &newColor)
{
    if (assignIfChanged(color, newColor))
        postUpdateRequest(owner);
}

QColor AeroStyle::getShadow() const
{
    return shadow;
}

void AeroStyle::setShadow(const QColor &newShadow)
{
    if (assignIfChanged(shadow, newShadow))
        postUpdateRequest(owner);
}

QColor AeroStyle::getColorPen() const
{
    return colorPen;
}

void AeroStyle::setColorPen(const QColor &newColorPen)
{
    if (assignIfChanged(colorPen, newColorPen))
        postUpdateRequest(owner);
}

int AeroStyle::getWidthPen() const
{
    return widthPen;
}

void AeroStyle::setWidthPen(int newWidthPen)
{
    if (assignIfChanged(widthPen, newWidthPen))
        postUpdateRequest(owner);
}

double AeroStyle::getOpacity() const
{
    return opacity;
}

void AeroStyle::setOpacity(double newOpacity)
{
    if (assignIfChanged(opacity, newOpacity))
        postUpdateRequest(owner);
}

int AeroStyle::getRoundness() const
{
    return roundness;
}

void AeroStyle::setRoundness(int newRoundness)
{
    if (assignIfChanged(roundness, newRoundness))
        postUpdateRequest(owner);
}

void AeroStyle::setAeroProperty(QColor *newColor, QColor *newShadow)
{
    const bool colorChanged = newColor && assignIfChanged(color, *newColor);
    const bool shadowChanged = newShadow && assignIfChanged(shadow, *newShadow);
    if (colorChanged || shadowChanged)
        postUpdateRequest(owner);
}

// NOLINTBEGIN(performance-unnecessary-value-param, readability-make-member-function-const): the
// public interface.
void AeroStyle::paintBase(QPainter *painter, QColor color1, QColor color2, QColor colorOutline,
                          QRect rect)
// NOLINTEND(performance-unnecessary-value-param, readability-make-member-function-const)
{
    const PanelGeometry panel = panelGeometry(rect.size(), widthPen, roundness);

    painter->setPen(QPen(QBrush(colorOutline), panel.pen));
    painter->setOpacity(opacity);
    painter->drawPath(roundedRect(panel.outline, panel.outerRadius));

    painter->setBrush(glass(color1, color2, rect.size(), widthPen));
    painter->setPen(QPen(QBrush(color1), panel.pen * 0.5));
    painter->drawPath(roundedRect(panel.body, panel.innerRadius));

    painter->setBrush(QBrush(Qt::white));
    painter->setPen(QPen(QBrush(Qt::white), 0.01));
    painter->setOpacity(color1.alpha() * highlightStrength / 255.0);
    painter->drawPath(highlightPath(panel, rect.size()));
}

void AeroStyle::repaintSchedule(QImage **image)
{
    dropImage(lock, dirty, image);
}

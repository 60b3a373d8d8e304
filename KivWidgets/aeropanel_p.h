#pragma once

#include <QtCore/QEvent>
#include <QtGui/QColor>

#include <initializer_list>

class AeroStyle;
class QImage;
class QPainter;
class QRect;
class QSize;
class QWidget;

/// What the Aero widgets share around the glass panel.
namespace KivPrivate {

/// The events that drop the images of most Aero widgets; a widget with another list keeps its own.
constexpr std::initializer_list<QEvent::Type> aeroDropEvents = {
    QEvent::Resize,        QEvent::EnabledChange, QEvent::ChildRemoved,
    QEvent::PolishRequest, QEvent::UpdateRequest,
};

/// The three colours of a glass panel.
struct PanelColors
{
    QColor panel;
    QColor band;
    QColor outline;

    /// These colours, washed out if @p widget is disabled.
    PanelColors shownBy(const QWidget *widget) const;
};

/// The corner radius of a panel of @p size in whole pixels: @p roundness percent of half the
/// shorter side that is left inside an outline of @p widthPen.
qint64 cornerRadius(QSize size, int widthPen, int roundness);

/// Paints the glass panel of @p style in @p colors.
void paintPanel(QPainter *painter, AeroStyle *style, const PanelColors &colors, const QRect &rect);

/// Shows a finished picture in the paint event of @p widget with @p opacity, turned by @p rotate
/// degrees about the widget's vertical centre line.
void showAeroImage(QWidget *widget, const QImage &image, double opacity, double rotate = 0.0);

} // namespace KivPrivate

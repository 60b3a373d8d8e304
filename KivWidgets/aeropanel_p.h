// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtGui/QColor>
#include <QtGui/QPainter>

class QImage;
class QSize;
class QWidget;

/// What the Aero widgets share around the glass panel.
namespace KivPrivate {

/// A colour as a disabled Aero widget shows it: half the saturation, half way to full brightness.
QColor washedOut(const QColor &color);

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

/// The settings that shape a glass panel.
struct PanelShape
{
    int widthPen;
    int roundness;
    double opacity;
};

/// Paints a glass panel of @p size at the painter's origin. Leaves its pen, brush and opacity set.
void drawGlassPanel(QPainter *painter, QSize size, const PanelShape &shape,
                    const PanelColors &colors);

/// Paints the panel on the whole of *@p image as on a cleared one. Equal panels are painted once.
void paintGlassPanel(QImage *image, QSize size, const PanelShape &shape, const PanelColors &colors);

/// A painter on an image with a glass panel of @p colors, with the pen and brush that painting the
/// panel sets.
class PanelPainter : public QPainter
{
public:
    PanelPainter(QImage *image, const PanelColors &colors);
};

/// Shows a finished image in the paint event of @p widget with @p opacity, turned by @p rotate
/// degrees about the widget's vertical centre line.
void showAeroImage(QWidget *widget, const QImage &image, double opacity, double rotate = 0.0);

} // namespace KivPrivate

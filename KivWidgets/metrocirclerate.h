// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "kivglobal.h"
#include "metroStyle.h"

#include <QtCore/QPoint>
#include <QtCore/QRect>
#include <QtCore/QString>
#include <QtWidgets/QWidget>

#include <array>

/// A dial gauge: a ring cut into segments, coloured from its start up to the value, with a label
/// and the formatted value written over it.
///
/// The dial computes its own size from radius and angles. A new dial takes it with its first resize
/// event, when it is shown. A resize ends at that size, with one exception: a dial that has its own
/// size keeps what it is resized to, with its layers as they are, and goes back with the resize
/// after that. A layout can therefore leave it larger or smaller than its arc. Angles are in
/// degrees, counter-clockwise from three o'clock; the arc runs clockwise from `minAngle`.
///
/// Three layers are cached: the value arc, the full arc under it, and the mask of gaps and inner
/// disc. Each property says which it drops; a changed geometry, a change of the enabled state and a
/// removed child drop all three. Texts are drawn on every paint. GUI thread only.
///
/// A value that breaks its property's rule, or equals the present one, is ignored silently. Integer
/// properties keep the low 8 or 16 bits of what is written before their rule is applied.
///
/// It accepts the size that a resizable QScrollArea gives it, or that it has as a maximised or
/// full-screen window.
///
/// It has no size hint: in a layout, give it its own size as its fixed size, 76 x 51 pixels with
/// the defaults. Size limits of the application override the size that it computes.
class KIVWIDGETS_EXPORT MetroCirclerate : public QWidget, public MetroStyle
{
    Q_OBJECT
    Q_PROPERTY(double value READ getValue WRITE setValue)
    Q_PROPERTY(bool paintFromZero READ getPaintFromZero WRITE setPaintFromZero)
    Q_PROPERTY(double minValue READ getMinValue WRITE setMinValue)
    Q_PROPERTY(double maxValue READ getMaxValue WRITE setMaxValue)
    Q_PROPERTY(int radius READ getRadius WRITE setRadius)
    Q_PROPERTY(int arcSize READ getArcSize WRITE setArcSize)
    Q_PROPERTY(int minAngle READ getMinAngle WRITE setMinAngle)
    Q_PROPERTY(int numTick READ getNumTick WRITE setNumTick)
    Q_PROPERTY(int tickness READ getTickness WRITE setTickness)
    Q_PROPERTY(QString formatStr READ getFormatStr WRITE setFormat)
    Q_PROPERTY(QPoint posStr READ getPosStr WRITE setPosStr)
    Q_PROPERTY(QString label READ getLabel WRITE setLabel)
    Q_PROPERTY(QPoint posLabel READ getPosLabel WRITE setPosLabel)
    Q_PROPERTY(QColor background READ getBackground WRITE setBackground)
    Q_PROPERTY(QColor cursor READ getCursor WRITE setCursor)

public:
    explicit MetroCirclerate(QWidget *parent = nullptr);
    ~MetroCirclerate() override;

    /// The value shown. Above the maximum the whole arc is filled in orange, above 125 % of the
    /// maximum in red. Default: 35.0. Drops the value arc.
    double getValue() const;
    void setValue(double value);
    /// Whether the arc starts at 0 instead of at a minimum below 0. Default: false. Drops the value
    /// arc.
    bool getPaintFromZero() const;
    void setPaintFromZero(bool fromZero);
    /// Value at the start of the arc, at least 1.0 below the maximum. Default: 0.0. Drops the value
    /// arc.
    double getMinValue() const;
    void setMinValue(double minimum);
    /// Value at the end of the arc, at least 1.0 above the minimum. Default: 100.0. Drops the value
    /// arc.
    double getMaxValue() const;
    void setMaxValue(double maximum);
    /// Radius in pixels, 2 to 65535. Default: 37. Resizes; until it is shown, a dial whose radius
    /// or angles were changed is 0 x 0.
    int getRadius() const;
    void setRadius(int pixels);
    /// Span of the arc, 0 to 359 degrees. Default: 200. Resizes.
    int getArcSize() const;
    void setArcSize(int degrees);
    /// Angle of the arc's start, 0 to 359 degrees. Default: 200. Resizes.
    int getMinAngle() const;
    void setMinAngle(int degrees);
    /// Number of segments, 1 to 255. Default: 20. Drops the mask.
    int getNumTick() const;
    void setNumTick(int segments);
    /// Thickness of the ring, 2 to 255 pixels. Default: 11. Drops the mask.
    int getTickness() const;
    void setTickness(int pixels);
    /// printf format of the value text, for one number; an integer conversion gets the value
    /// truncated. A format that asks for anything else is shown as it stands. Characters of Latin-1
    /// such as "°" show, others become "?"; the label shows any character. Default: "%d%%". Drops
    /// the value arc.
    QString getFormatStr() const;
    void setFormat(const QString &format);
    /// Offset of the value text in pixels to the right and down. Default: (0, 0). Drops the value
    /// arc.
    QPoint getPosStr() const;
    void setPosStr(const QPoint &offset);
    /// The label, in 70 % of the widget's font size, which must be given in points. Default: "L?".
    /// Drops the value arc.
    QString getLabel() const;
    void setLabel(const QString &label);
    /// Offset of the label in pixels to the right and down. Default: (0, 0). Drops the value arc.
    QPoint getPosLabel() const;
    void setPosLabel(const QPoint &offset);
    /// Colour of the full arc. Default: (167, 167, 167). Drops the full arc.
    QColor getBackground() const;
    void setBackground(const QColor &background);
    /// Colour of the value arc in range. Default: (0, 174, 240). Drops the value arc. Property and
    /// setter hide QWidget's cursor, which stays reachable through QWidget.
    QColor getCursor() const;
    void setCursor(const QColor &cursor);
    /// A pointer's shape would become a colour, and paint the arc black: use QWidget::setCursor().
    void setCursor(Qt::CursorShape) = delete;

    /// The angle of value @p v in sixteenths of a degree, beyond the arc for a value out of range.
    int val2angle(double v);

    bool event(QEvent *event) override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

    void paintImageBG();
    void paintImage();
    void paintImageFG();
    void repaintSchedule(QImage **layer);
    void createImages();
    void buildGraph(QImage &img);

    double value;
    bool paintFromZero;
    QString formatStr;
    QPoint posStr;
    quint8 numTick;
    quint8 tickness;
    quint16 radius;
    double minValue;
    double maxValue;
    quint16 arcSize;
    quint16 minAngle;
    QString label;
    QPoint posLabel;
    QColor cursor;
    QColor background;
    QRect arcRect;
    QImage *Image;
    QImage *ImageBG;
    QImage *ImageFG;

private:
    Q_DECL_HIDDEN std::array<QImage **, 3> layers();
    Q_DECL_HIDDEN void dropAll();
    Q_DECL_HIDDEN int spanBetween(double from, double to);
};

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
/// The dial computes its own size from its radius and angles. A new dial takes this size with its
/// first resize event, when it is shown. After a resize the dial returns to its own size. There is
/// one exception: a dial that has its own size accepts one resize, does not redraw its layers, and
/// returns at the next resize. In a layout it can therefore be larger or smaller than its arc.
/// Angles are in degrees, counter-clockwise from three o'clock; the arc runs clockwise from
/// `minAngle`.
///
/// Three layers are cached: the value arc, the full arc under it, and the mask of the gaps and the
/// inner disc. Each property's documentation names the layer that it drops. A changed geometry, a
/// change of the enabled state and the removal of a child drop all three. Every paint draws the
/// texts again. Use the dial only in the GUI thread.
///
/// A setter silently ignores a value that is out of range or equal to the present one. The setters
/// of integer properties keep the low 8 or 16 bits of a value, and then check the range.
///
/// In a resizable QScrollArea, and as a maximised or full-screen window, the dial accepts the size
/// that it gets. Size limits that the application sets override its own size.
///
/// The dial has no size hint. Recommended fixed size: 76 x 51 pixels with the default radius and
/// angles, and otherwise the size that the dial computes.
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
    /// Whether the value arc starts at 0 if the minimum is below 0. Default: false. Drops the value
    /// arc.
    bool getPaintFromZero() const;
    void setPaintFromZero(bool fromZero);
    /// Value at the start of the arc, at least 1.0 less than the maximum. Default: 0.0. Drops the
    /// value arc.
    double getMinValue() const;
    void setMinValue(double minimum);
    /// Value at the end of the arc, at least 1.0 more than the minimum. Default: 100.0. Drops the
    /// value arc.
    double getMaxValue() const;
    void setMaxValue(double maximum);
    /// Radius in pixels, 2 to 65535. Default: 37. A change resizes the dial. If the dial was not
    /// shown yet, a change of its radius or angles makes it 0 x 0 pixels until it is shown.
    int getRadius() const;
    void setRadius(int pixels);
    /// Span of the arc, 0 to 359 degrees. Default: 200. A change resizes the dial.
    int getArcSize() const;
    void setArcSize(int degrees);
    /// Angle of the arc's start, 0 to 359 degrees. Default: 200. A change resizes the dial.
    int getMinAngle() const;
    void setMinAngle(int degrees);
    /// Number of segments, 1 to 255. Default: 20. Drops the mask.
    int getNumTick() const;
    void setNumTick(int segments);
    /// Thickness of the ring, 2 to 255 pixels. Default: 11. Drops the mask.
    int getTickness() const;
    void setTickness(int pixels);
    /// printf format of the value text, for one number. An integer conversion gets the value
    /// truncated. A format that asks for anything else is shown unchanged. Characters of Latin-1
    /// such as "°" are shown, others become "?"; the label shows any character. Default: "%d%%".
    /// Drops the value arc.
    QString getFormatStr() const;
    void setFormat(const QString &format);
    /// Offset of the value text in pixels, to the right and downwards. Default: (0, 0). Drops the
    /// value arc.
    QPoint getPosStr() const;
    void setPosStr(const QPoint &offset);
    /// The label. It is written at 70 % of the widget's font size, which must be set in points.
    /// Default: "L?". Drops the value arc.
    QString getLabel() const;
    void setLabel(const QString &label);
    /// Offset of the label in pixels, to the right and downwards. Default: (0, 0). Drops the value
    /// arc.
    QPoint getPosLabel() const;
    void setPosLabel(const QPoint &offset);
    /// Colour of the full arc. Default: (167, 167, 167). Drops the full arc.
    QColor getBackground() const;
    void setBackground(const QColor &background);
    /// Colour of the value arc in range. Default: (0, 174, 240). Drops the value arc. This property
    /// hides QWidget's cursor: use QWidget::setCursor() for the mouse pointer.
    QColor getCursor() const;
    void setCursor(const QColor &cursor);
    /// Deleted, because a shape of the mouse pointer would become a colour and paint the arc black.
    /// Use QWidget::setCursor().
    void setCursor(Qt::CursorShape) = delete;

    /// The angle of the value @p v in sixteenths of a degree. A value out of range has an angle
    /// beyond the arc.
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

// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "kivglobal.h"
#include "metroStyle.h"

#include <QtCore/QString>
#include <QtWidgets/QWidget>

#include <array>

/// A horizontal bar gauge for a whole number with a unit: a bar with ten divisions, filled from the
/// left in light blue between a minimum and a maximum, with number and unit written beside it.
///
/// A value above the maximum fills the bar, a value below the minimum leaves it empty. If the value
/// is at least one pixel below the minimum, the bar also draws a light blue line in the first
/// column, left of the frame. The text is black and shows the true value. The bar leaves room for
/// the text 138 with its unit; a wider text is cut off at the right edge.
///
/// Three layers are cached: the value, the empty bar, and the mask of the frame and the scale.
/// Every paint, a resize, a change of the enabled state and the removal of a child drop all three,
/// and compute the bar's width again. Use the bar only in the GUI thread.
///
/// The bar has no size hint. Recommended minimum size: 160 x 30 pixels.
class KIVWIDGETS_EXPORT MetroXbar : public QWidget, public MetroStyle
{
    Q_OBJECT
    Q_PROPERTY(QColor backgroundcolor READ getBackgroundcolor WRITE setBackgroundColor)
    Q_PROPERTY(QColor foregroundcolor READ getForegroundcolor WRITE setForegroundColor)
    Q_PROPERTY(int value READ getValue WRITE setValue)
    Q_PROPERTY(int maxValue READ getMaxValue WRITE setMaxValue)
    Q_PROPERTY(int minValue READ getMinValue WRITE setMinValue)
    Q_PROPERTY(QString measure READ getMeasure WRITE setMeasure)

public:
    explicit MetroXbar(QWidget *parent = nullptr);
    ~MetroXbar() override;

    /// Colour of the empty bar. Default: (167, 167, 167). A change drops the value layer.
    QColor getBackgroundcolor() const;
    void setBackgroundColor(const QColor &color);
    /// Stored, but not used: the fill keeps its own colour. Default: (0, 174, 240). A change drops
    /// the value layer.
    QColor getForegroundcolor() const;
    void setForegroundColor(const QColor &color);
    /// The value shown, any int. Default: 35. A change drops the value layer.
    int getValue() const;
    void setValue(int value);
    /// Value of a full bar, any int. If maximum and minimum are equal, the bar is full for a value
    /// above them, and empty otherwise. Default: 300. A change drops the value layer.
    int getMaxValue() const;
    void setMaxValue(int maximum);
    /// Value of an empty bar, any int. Default: 0. A change drops the value layer.
    int getMinValue() const;
    void setMinValue(int minimum);
    /// Unit written after the number; it may contain any character. Default: empty. A change
    /// repaints.
    QString getMeasure() const;
    void setMeasure(const QString &unit);

    bool event(QEvent *event) override;

protected:
    void paintEvent(QPaintEvent *event) override;

    void paintImageBG();
    void paintImage();
    void paintImageFG();
    void repaintSchedule(QImage **layer);
    void createImages();
    void buildGraph(QImage &img);

    QColor foregroundcolor;
    QColor backgroundcolor;
    QString measure;
    int value;
    int maxValue;
    int minValue;
    int barWidth;
    QImage *Image;
    QImage *ImageBG;
    QImage *ImageFG;

private:
    Q_DECL_HIDDEN void measureBar(const QString &unit);
    Q_DECL_HIDDEN std::array<QImage **, 3> layers();
    Q_DECL_HIDDEN void dropAll();
};

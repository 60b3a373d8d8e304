// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "kivglobal.h"
#include "metroStyle.h"

#include <QtWidgets/QWidget>

#include <array>

/// A horizontal percentage bar with a scale of ten divisions, filled from the left in light blue,
/// with the percentage written beside it.
///
/// Above 100 the whole bar and the text are orange, from 126 on red, and a thin bar across the top
/// third shows the excess up to 150. Up to 100 the text is black.
///
/// Three layers are cached: the value, the empty bar, and the mask of frame and scale. Each
/// property drops the value layer; a resize, a change of the enabled state and a removed child drop
/// all three and compute the bar's width again. The text is drawn on every paint. GUI thread only.
///
/// It has no size hint: in a layout, give it a minimum or a fixed size. 240 x 30 pixels leave room
/// for scale and text.
class KIVWIDGETS_EXPORT MetroLinerate : public QWidget, public MetroStyle
{
    Q_OBJECT
    Q_PROPERTY(QColor backgroundcolor READ getBackgroundcolor WRITE setBackgroundColor)
    Q_PROPERTY(QColor foregroundcolor READ getForegroundcolor WRITE setForegroundColor)
    Q_PROPERTY(int value READ getValue WRITE setValue)

public:
    explicit MetroLinerate(QWidget *parent = nullptr);
    ~MetroLinerate() override;

    /// Colour of the empty bar. Default: (167, 167, 167). A change shows with the next event that
    /// drops all layers.
    QColor getBackgroundcolor() const;
    void setBackgroundColor(const QColor &color);
    /// Stored only: the fill keeps its own colours. Default: (0, 174, 240).
    QColor getForegroundcolor() const;
    void setForegroundColor(const QColor &color);
    /// The percentage, 0 to 255; the low 8 bits of what is written are kept. Default: 35.
    int getValue() const;
    void setValue(int percent);

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
    quint8 value;
    int barWidth;
    QImage *Image;
    QImage *ImageBG;
    QImage *ImageFG;

private:
    Q_DECL_HIDDEN void measureBar();
    Q_DECL_HIDDEN std::array<QImage **, 3> layers();
    Q_DECL_HIDDEN void dropAll();
};

// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "kivglobal.h"
#include "metroStyle.h"

#include <QtWidgets/QWidget>

#include <array>

/// A horizontal percentage bar with a scale of ten divisions, filled from the left in light blue,
/// with the percentage written beside it.
///
/// Above 100 the whole bar and the text are orange, from 126 on they are red. A thin bar across the
/// top third then shows the excess, up to 150. Up to 100 the text is black.
///
/// Three layers are cached: the value, the empty bar, and the mask of the frame and the scale. Each
/// property drops the value layer. A resize, a change of the enabled state and the removal of a
/// child drop all three, and compute the bar's width again. Every paint draws the text again. Use
/// the bar only in the GUI thread.
///
/// The bar has no size hint. Recommended minimum size: 140 x 30 pixels.
class KIVWIDGETS_EXPORT MetroLinerate : public QWidget, public MetroStyle
{
    Q_OBJECT
    Q_PROPERTY(QColor backgroundcolor READ getBackgroundcolor WRITE setBackgroundColor)
    Q_PROPERTY(QColor foregroundcolor READ getForegroundcolor WRITE setForegroundColor)
    Q_PROPERTY(int value READ getValue WRITE setValue)

public:
    explicit MetroLinerate(QWidget *parent = nullptr);
    ~MetroLinerate() override;

    /// Colour of the empty bar. Default: (167, 167, 167). A change becomes visible with the next
    /// event that drops all layers.
    QColor getBackgroundcolor() const;
    void setBackgroundColor(const QColor &color);
    /// Stored, but not used: the fill keeps its own colours. Default: (0, 174, 240).
    QColor getForegroundcolor() const;
    void setForegroundColor(const QColor &color);
    /// The percentage, 0 to 255. A write keeps the low 8 bits of its value. Default: 35.
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

// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtGui/QImage>
#include <QtWidgets/QWidget>

/// A widget that shows one cached image and does nothing else: the floor for every widget that
/// keeps a single image.
class MinimalImage : public QWidget
{
public:
    explicit MinimalImage(const QImage &image);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QImage image;
};

/// A gauge of three cached layers that are composed into a temporary image at every paint, with one
/// text: the floor for the layered gauges.
class MinimalGauge : public QWidget
{
public:
    explicit MinimalGauge(QWidget *parent);
    void setValue(int percent);

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void paintRing(QImage *layer, const QColor &color, int degrees);

    QImage background;
    QImage ring;
    QImage mask;
    int value = 35;
};

// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "history/store.h"
#include "model/upsmodel.h"

#include <QtGui/QPixmap>
#include <QtWidgets/QWidget>

#include <optional>

class MetroCirclerate;

/// A dial with what operators expect around it: the scale's end numbers, a mark for the nominal
/// value, arcs where a value is too low or too high, marks for the highest and the lowest value
/// that were seen; and a small curve of the past. The dial takes the largest radius that the room
/// has.
class GaugeRoom : public QWidget
{
    Q_OBJECT

public:
    GaugeRoom(Quantity quantity, const QString &label, QWidget *parent = nullptr);

    void showUps(const UpsModel &ups);
    /// Draws @p points of @p span as a small curve below the figures, where there is room for it;
    /// none: no curve.
    void showTrend(const QVector<TrendPoint> &points, TimeSpan span);
    Quantity shownQuantity() const;
    /// Forgets the highest and the lowest value.
    void forgetPeaks();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;

private:
    void arrange();
    void applyColors();
    void applyScale(double minimum, double maximum);
    void fitTexts();
    double angleOf(double value) const;
    void drawMark(QPainter *painter, double value, double from, double to) const;
    void explain();
    /// Whether @p now is drawn elsewhere than @p before.
    bool isSeen(double before, double now) const;
    void redraw();
    void drawSurroundings();
    void drawTrend(QPainter *painter) const;

    Quantity quantity;
    MetroCirclerate *dial;
    Scale scale;
    Reading reading;
    QString upsId; // whose values these are
    std::optional<double> highest;
    std::optional<double> lowest;
    std::optional<double> drawnHighest;
    std::optional<double> drawnLowest;
    QVector<TrendPoint> trend;
    TimeSpan trendSpan;
    QPixmap surroundings; // all but the dial, as drawn last
    QPointF center;
    int radius = 0;
    int ring = 0;
};

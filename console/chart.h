// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "history/history.h"
#include "timeaxis.h"

#include <QtGui/QPixmap>
#include <QtWidgets/QWidget>

/// What a chart shows of one quantity.
struct ChartLane
{
    Quantity quantity = Quantity::Load;
    Measure measure; ///< for its limits and its nominal value
    QVector<TrendPoint> points;
};

/// Quantities over time, one lane below the other: the mean as a line, with a band from the lowest
/// to the highest, limits as dashed lines, time on battery shaded, and gaps left out. A cursor,
/// which follows the pointer or the arrow keys, reads the values of an instant; wheel, pinch, + and
/// - zoom, and dragging moves in time.
class Chart : public QWidget
{
    Q_OBJECT

public:
    explicit Chart(QWidget *parent = nullptr);

    /// Shows @p lanes and the time on battery; their span is set on its own.
    void setLanes(const QVector<ChartLane> &lanes, const QVector<TimeSpan> &onBattery);
    const QVector<ChartLane> &lanes() const;
    void setSpan(TimeSpan span);
    TimeSpan span() const;
    /// Whose local time the axis has; the system's unless set.
    void setZone(const QTimeZone &zone);
    /// A line of text over it, or none.
    void setNotice(const QString &notice);

    std::optional<qint64> cursor() const;
    void setCursorTime(std::optional<qint64> at);
    /// The lane's name with what is to be read at the cursor, or in the whole span.
    QString readingOf(const ChartLane &lane) const;
    /// How many columns its curves can have.
    int columns() const;
    QRect plotRect() const;
    /// Draws all but the cursor.
    void paint(QPainter *painter) const;
    /// Of that, the curves with their bands and limits and the time on battery.
    void paintCurves(QPainter *painter) const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// The user asks for another span.
    void spanChosen(const TimeSpan &span);

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    /// Where instants and values are in a lane.
    struct Place
    {
        double x(qint64 at) const;
        double y(float value) const;

        qint64 from = 0;
        double left = 0.0;
        double perMsec = 0.0;
        double low = 0.0;
        double bottom = 0.0;
        double perUnit = 0.0;
    };

    QRect laneRect(int lane) const;
    double xOf(qint64 at) const;
    qint64 timeAt(double x) const;
    Place placeOf(int lane) const;
    void zoom(double factor, double x);
    void moveBy(qint64 msecs);
    void redraw();
    void arrange();
    const TrendPoint *pointAt(const ChartLane &lane, qint64 at) const;
    void paintAxis(QPainter *painter) const;
    void paintFrame(QPainter *painter) const;
    void paintScale(QPainter *painter, int index) const;
    void paintLimits(QPainter *painter, int index) const;
    void paintBand(QPainter *painter, int index) const;
    void paintLine(QPainter *painter, int index) const;
    void paintCursor(QPainter *painter) const;

    QVector<ChartLane> shown;
    QVector<ValueAxis> axes;
    QVector<TimeSpan> onBattery;
    TimeSpan shownSpan;
    QTimeZone zone;
    QString notice;
    std::optional<qint64> cursorAt;
    std::optional<double> dragFrom;
    TimeSpan dragSpan;
    int labelWidth = 0;
    int textHeight = 0;
    QVector<TimeTick> ticks;
    QPixmap frame;  // axes and texts
    QPixmap curves; // on top of it
};

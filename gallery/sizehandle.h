// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtWidgets/QWidget>

/// A small square at an edge or a corner of a widget, dragged to resize it.
class SizeHandle : public QWidget
{
    Q_OBJECT

public:
    static constexpr int side = 9;

    /// @p newRole names the edges that move: -1 left or top, 1 right or bottom, 0 neither, for the
    /// horizontal and the vertical direction.
    SizeHandle(QPoint newRole, QWidget *parent);

    QPoint role() const;
    /// Places the handle outside of @p target, at its edge or corner.
    void attachTo(const QRect &target);

Q_SIGNALS:
    void pressed();
    /// The pointer is at @p offset from where it was pressed.
    void dragged(QPoint offset);
    void released();

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QPoint handleRole;
    QPoint pressedAt;
    bool dragging = false;
};

// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtCore/QPointer>
#include <QtGui/QImage>
#include <QtWidgets/QScrollArea>

class QTimer;

/// Shows a live widget enlarged by a whole number, each of its pixels as a square, and passes the
/// mouse on to it.
class Magnifier : public QScrollArea
{
    Q_OBJECT

public:
    explicit Magnifier(QWidget *parent);

    /// Enlarges @p widget, which may be deleted at any time, @p newFactor times.
    void magnify(QWidget *widget, int newFactor);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void refresh();
    void passOn(const QMouseEvent *event);
    void hover(QWidget *target);

    QPointer<QWidget> source;
    QPointer<QWidget> pressed;
    QPointer<QWidget> hovered;
    QWidget *canvas;
    QTimer *timer;
    QImage image;
    int factor = 1;
};

// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "diagram.h"

#include <QtGui/QPixmap>
#include <QtWidgets/QWidget>

class ElidedLabel;
class MetroShelter;

/// The single-line diagram: each element of the UPS as a state tile with what it does and what is
/// measured there, and the lines between them, lit where energy flows.
class SingleLineDiagram : public QWidget
{
    Q_OBJECT

public:
    explicit SingleLineDiagram(QWidget *parent = nullptr);

    void showDiagram(const Diagram &diagram);
    const Diagram &shown() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    struct Block
    {
        MetroShelter *tile;
        ElidedLabel *caption;
        ElidedLabel *value;
    };

    const Block &block(Node node) const;
    void arrange();
    void fillIn();
    void showFaces();
    void redraw();
    void drawLines();
    void place(Node node, const QRect &tile, bool beside);
    void drawLine(QPainter *painter, const QPolygonF &line, bool lit, bool unusual) const;

    std::array<Block, nodeCount> blocks;
    Diagram diagram;
    QPixmap lines; // as drawn last
    int tileHeight = 0;
};

// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "singlelinediagram.h"

#include "display.h"
#include "elidedlabel.h"
#include "theme.h"

#include <metroshelter.h>

#include <QtCore/QEvent>
#include <QtGui/QPainter>

#include <algorithm>
#include <cmath>

namespace {

constexpr int columns = 4;
constexpr int rows = 3;
/// A lower tile shows its LED at half the size.
constexpr int leastTile = 26;
constexpr int usualTile = 30;
constexpr int highestTile = 46;
constexpr int leastGap = 22;
constexpr int leastBlock = 96;
constexpr int widestBlock = 220;
constexpr int tileLabel = 8;
constexpr int ledRoom = 26;

constexpr double idleWidth = 2.0;
constexpr double litWidth = 4.0;

/// The face of all tiles: a dark plate with a lighter upper edge.
QPixmap tileFace(int height, bool dark)
{
    QPixmap face(16, std::max(height, 1));
    QPainter painter(&face);
    QLinearGradient gradient(0, 0, 0, height);
    // On a dark card a lighter plate stands out.
    const int lighter = dark ? 18 : 0;
    gradient.setColorAt(0.0, QColor(74 + lighter, 80 + lighter, 87 + lighter));
    gradient.setColorAt(0.5, QColor(58 + lighter, 63 + lighter, 69 + lighter));
    gradient.setColorAt(1.0, QColor(46 + lighter, 50 + lighter, 55 + lighter));
    painter.fillRect(face.rect(), gradient);
    return face;
}

/// The longest of the texts that has room in @p label.
void showLongest(ElidedLabel *label, const QStringList &texts)
{
    for (const QString &text : texts) {
        if (label->fontMetrics().elidedText(text, Qt::ElideRight, label->width()) == text) {
            label->setText(text);
            return;
        }
    }
    label->setText(texts.constLast());
}

} // namespace

SingleLineDiagram::SingleLineDiagram(QWidget *parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("diagram"));
    setAccessibleName(tr("Single-line diagram"));
    for (Block &block : blocks) {
        block.tile = new MetroShelter(this);
        // An indicator, not a control.
        block.tile->setFocusPolicy(Qt::NoFocus);
        block.tile->setxLabel(tileLabel);
        block.caption = new ElidedLabel(this);
        block.caption->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
        Theme::setText(block.caption, Theme::Small);
        block.value = new ElidedLabel(this);
        block.value->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
        Theme::setText(block.value, Theme::Normal, true);
    }
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

const SingleLineDiagram::Block &SingleLineDiagram::block(Node node) const
{
    return blocks.at(std::size_t(node));
}

const Diagram &SingleLineDiagram::shown() const
{
    return diagram;
}

void SingleLineDiagram::showDiagram(const Diagram &newDiagram)
{
    if (newDiagram == diagram)
        return;
    const bool linesChanged = newDiagram.flows != diagram.flows;
    bool structureChanged = false;
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        const DiagramNode &node = newDiagram.nodes[i];
        const DiagramNode &old = diagram.nodes[i];
        const Block &block = blocks[i];
        if (node.title != block.tile->text()) {
            block.tile->setObjectName(node.title);
            block.tile->setText(node.title);
            structureChanged = true;
        }
        block.tile->setState(shownState(node.state));
        structureChanged = structureChanged || node.present != old.present;
        block.tile->setVisible(node.present);
        block.caption->setVisible(node.present);
        block.value->setVisible(node.present);
        const QString whole = node.title + QStringLiteral(": ") + node.caption +
                              (node.value.isEmpty() ? QString() : QLatin1Char('\n') + node.value);
        block.tile->setToolTip(whole);
        block.tile->setAccessibleDescription(node.caption);
    }
    diagram = newDiagram;
    if (structureChanged)
        arrange();
    else
        fillIn();
    if (structureChanged || linesChanged) {
        setAccessibleDescription(diagram.flowText());
        redraw();
    }
}

QSize SingleLineDiagram::minimumSizeHint() const
{
    const QFontMetrics small(Theme::font(Theme::Small));
    const QFontMetrics value(Theme::font(Theme::Normal, true));
    const int text = small.lineSpacing() + value.lineSpacing() + 2;
    const int tile = std::max(leastTile, Theme::px(usualTile));
    return {columns * Theme::px(leastBlock) + (columns - 1) * Theme::px(leastGap),
            rows * (tile + text) - text + (rows - 1) * Theme::px(4)};
}

QSize SingleLineDiagram::sizeHint() const
{
    return minimumSizeHint();
}

void SingleLineDiagram::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    arrange();
}

void SingleLineDiagram::place(Node node, const QRect &tile, bool beside)
{
    const Block &placed = block(node);
    placed.tile->setGeometry(tile);
    const int captionHeight = placed.caption->minimumSizeHint().height();
    const int valueHeight = placed.value->minimumSizeHint().height();
    const Qt::Alignment aligned = beside ? Qt::AlignLeft : Qt::AlignHCenter;
    placed.caption->setAlignment(aligned | Qt::AlignTop);
    placed.value->setAlignment(aligned | Qt::AlignTop);
    if (beside) {
        const int x = tile.right() + 1 + Theme::px(10);
        const int room = width() - x;
        const int y = tile.center().y() - (captionHeight + valueHeight) / 2;
        placed.value->setGeometry(x, y, room, valueHeight);
        placed.caption->setGeometry(x, y + valueHeight, room, captionHeight);
        return;
    }
    // Texts may take half of the gaps beside the tile, but for what the lines need.
    const int more = Theme::px(leastGap) / 2 - Theme::px(4);
    QRect text(tile.x() - more, tile.bottom() + 2, tile.width() + 2 * more, captionHeight);
    if (node == Node::Bypass)
        text.adjust(-tile.width() / 2, 0, tile.width() / 2, 0);
    text = text.intersected(QRect(0, text.y(), width(), captionHeight));
    placed.caption->setGeometry(text);
    placed.value->setGeometry(text.x(), text.bottom() + 1, text.width(), valueHeight);
}

void SingleLineDiagram::fillIn()
{
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        const DiagramNode &node = diagram.nodes[i];
        showLongest(blocks[i].caption, QStringList(node.caption) + node.shorter);
        showLongest(blocks[i].value, {node.value, node.shortValue});
    }
}

void SingleLineDiagram::arrange()
{
    if (width() <= 0 || height() <= 0)
        return;
    // With room to spare, texts are a size larger.
    constexpr int roomyWidth = 760;
    constexpr int roomyHeight = 270;
    const bool roomy = width() >= Theme::px(roomyWidth) && height() >= Theme::px(roomyHeight);
    for (const Block &placed : blocks) {
        Theme::setText(placed.caption, roomy ? Theme::Normal : Theme::Small);
        Theme::setText(placed.value, roomy ? Theme::Large : Theme::Normal, true);
    }
    const int textHeight = block(Node::Mains).caption->minimumSizeHint().height() +
                           block(Node::Mains).value->minimumSizeHint().height() + 2;
    const bool bypass = diagram.node(Node::Bypass).present;
    const int shownRows = bypass ? rows : rows - 1;
    // The battery's texts stand beside it.
    const int forTiles = height() - (shownRows - 1) * textHeight;
    tileHeight = std::clamp(forTiles / shownRows - Theme::px(6), leastTile,
                            std::max(leastTile, Theme::px(highestTile)));
    const int free = std::max(forTiles - shownRows * tileHeight, 0) / shownRows;

    const int gap =
        std::max(Theme::px(leastGap), (width() - columns * Theme::px(widestBlock)) / (columns - 1));
    const int blockWidth = (width() - (columns - 1) * gap) / columns;
    const auto left = [&](int column) { return column * (blockWidth + gap); };
    const int step = tileHeight + textHeight + free;
    int y = free / 2;
    const int middle = (width() - blockWidth) / 2;
    if (bypass) {
        place(Node::Bypass, QRect(middle, y, blockWidth, tileHeight), false);
        y += step;
    }
    const Node path[columns] = {Node::Mains, Node::Rectifier, Node::Inverter, Node::Load};
    for (int i = 0; i < columns; ++i)
        place(path[i], QRect(left(i), y, blockWidth, tileHeight), false);
    y += step;
    place(Node::Battery, QRect(middle, y, blockWidth, tileHeight), true);

    // The largest face that all titles have room in.
    QFont font = Theme::font(Theme::Normal, true);
    for (const Theme::TextSize size : {Theme::Large, Theme::Normal, Theme::Small}) {
        font = Theme::font(size, true);
        int widest = 0;
        for (const Block &placed : blocks)
            widest = std::max(widest, QFontMetrics(font).horizontalAdvance(placed.tile->text()));
        if (tileLabel + widest + ledRoom + 4 <= blockWidth &&
            QFontMetrics(font).height() <= tileHeight)
            break;
    }
    for (const Block &placed : blocks)
        placed.tile->setFont(font);
    fillIn();
    showFaces();
    redraw();
}

void SingleLineDiagram::showFaces()
{
    const QPixmap face = tileFace(tileHeight, Theme::isDark());
    for (const Block &placed : blocks)
        placed.tile->setBackgroundImage(face);
}

void SingleLineDiagram::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::ApplicationPaletteChange) {
        showFaces();
        redraw();
    }
    QWidget::changeEvent(event);
}

void SingleLineDiagram::drawLine(QPainter *painter, const QPolygonF &line, bool lit,
                                 bool unusual) const
{
    const Theme::GaugeColors colors = Theme::gaugeColors(Theme::isDark());
    const double scale = std::max(Theme::scale(), 0.75);
    if (!lit) {
        painter->setPen(QPen(colors.track.darker(Theme::isDark() ? 90 : 125), idleWidth * scale,
                             Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin));
        painter->setBrush(Qt::NoBrush);
        painter->drawPolyline(line);
        return;
    }
    const QColor color = unusual ? colors.outOfLimits : colors.fill;
    painter->setPen(QPen(color, litWidth * scale, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin));
    painter->setBrush(Qt::NoBrush);
    painter->drawPolyline(line);
    // Arrow heads show the direction without colour: one in the middle of each longer piece.
    const double head = 6.5 * scale;
    painter->setPen(Qt::NoPen);
    painter->setBrush(color);
    for (int i = 0; i + 1 < line.size(); ++i) {
        const QLineF piece(line.at(i), line.at(i + 1));
        if (piece.length() < 2 * head)
            continue;
        painter->save();
        painter->translate(piece.pointAt(0.5));
        painter->rotate(-piece.angle());
        painter->drawPolygon(QPolygonF({{-head, -head}, {head, 0}, {-head, head}}));
        painter->restore();
    }
}

void SingleLineDiagram::paintEvent(QPaintEvent *)
{
    if (tileHeight == 0)
        return;
    // The texts repaint with their values, and the lines under them with them.
    const double ratio = devicePixelRatioF();
    if (lines.isNull() || lines.devicePixelRatio() != ratio) {
        lines = QPixmap(int(std::ceil(width() * ratio)), int(std::ceil(height() * ratio)));
        lines.setDevicePixelRatio(ratio);
        lines.fill(Qt::transparent);
        drawLines();
    }
    QPainter(this).drawPixmap(0, 0, lines);
}

void SingleLineDiagram::redraw()
{
    lines = QPixmap();
    update();
}

void SingleLineDiagram::drawLines()
{
    QPainter painter(&lines);
    painter.setRenderHint(QPainter::Antialiasing);
    const auto at = [&](Node node) { return QRectF(block(node).tile->geometry()); };
    const QRectF mains = at(Node::Mains);
    const QRectF rectifier = at(Node::Rectifier);
    const QRectF inverter = at(Node::Inverter);
    const QRectF load = at(Node::Load);
    const QRectF battery = at(Node::Battery);
    const QRectF bypass = at(Node::Bypass);
    const double y = mains.center().y();
    const QPointF joint(battery.center().x(), y);

    using Points = QVector<QPointF>;
    struct Line
    {
        Points points;
        bool lit;
        bool unusual;
    };
    const auto flows = [&](Flow flow) { return diagram.isFlowing(flow); };
    QVector<Line> pieces = {
        {Points({{mains.right(), y}, {rectifier.left(), y}}), flows(Flow::MainsToRectifier), false},
        {Points({{rectifier.right(), y}, joint}),
         flows(Flow::RectifierToInverter) || flows(Flow::RectifierToBattery), false},
        {Points({joint, {inverter.left(), y}}),
         flows(Flow::RectifierToInverter) || flows(Flow::BatteryToInverter),
         flows(Flow::BatteryToInverter)},
        {Points({{inverter.right(), y}, {load.left(), y}}), flows(Flow::InverterToLoad),
         flows(Flow::BatteryToInverter)},
    };
    const QPointF top(joint.x(), battery.top());
    if (flows(Flow::BatteryToInverter))
        pieces.append({Points({top, joint}), true, true});
    else
        pieces.append({Points({joint, top}), flows(Flow::RectifierToBattery), false});
    if (diagram.node(Node::Bypass).present) {
        const double high = bypass.center().y();
        pieces.append({Points({{mains.center().x(), mains.top()},
                               {mains.center().x(), high},
                               {bypass.left(), high}}),
                       flows(Flow::MainsToBypass), true});
        pieces.append({Points({{bypass.right(), high},
                               {load.center().x(), high},
                               {load.center().x(), load.top()}}),
                       flows(Flow::BypassToLoad), true});
    }
    // The lit ones above the others.
    for (const bool lit : {false, true}) {
        for (const Line &line : pieces) {
            if (line.lit == lit)
                drawLine(&painter, QPolygonF(line.points), line.lit, line.unusual);
        }
    }
}

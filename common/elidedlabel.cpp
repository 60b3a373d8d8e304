// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "elidedlabel.h"

#include <QtGui/QHelpEvent>
#include <QtGui/QPainter>
#include <QtGui/QTextLayout>
#include <QtGui/QTextOption>
#include <QtWidgets/QToolTip>

#include <algorithm>

namespace {

/// No screen shows more characters; a UPS may send any amount.
constexpr int longest = 4000;

} // namespace

ElidedLabel::ElidedLabel(QWidget *parent)
    : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
}

void ElidedLabel::setLines(int lines)
{
    most = std::max(lines, 1);
    updateGeometry();
    update();
}

bool ElidedLabel::isElided() const
{
    bool isCut = false;
    fitted(contentsRect().width(), most, &isCut);
    return isCut;
}

void ElidedLabel::setElideMode(Qt::TextElideMode newMode)
{
    mode = newMode;
    update();
}

int ElidedLabel::linesAt(int width) const
{
    const QMargins margins = contentsMargins();
    return int(fitted(width - margins.left() - margins.right(), longest).size());
}

QStringList ElidedLabel::fitted(int width, int mostLines, bool *isCut) const
{
    const QString whole = text().left(longest).simplified();
    if (isCut)
        *isCut = text().size() > longest;
    QStringList lines;
    QTextLayout layout(whole, font());
    // A word that is wider than the label goes on below.
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    while (lines.size() < mostLines - 1) {
        QTextLine line = layout.createLine();
        if (!line.isValid())
            break;
        line.setLineWidth(width);
        lines.append(whole.mid(line.textStart(), line.textLength()).trimmed());
    }
    const QTextLine rest = layout.createLine();
    if (rest.isValid()) {
        const QString all = whole.mid(rest.textStart());
        lines.append(fontMetrics().elidedText(all, mode, width));
        if (isCut && lines.constLast() != all)
            *isCut = true;
    }
    layout.endLayout();
    return lines;
}

QSize ElidedLabel::sizeHint() const
{
    constexpr int widest = 4000;
    const QMargins margins = contentsMargins();
    const int width = std::min(fontMetrics().horizontalAdvance(text().left(widest)) + 1, widest);
    return {width / most + margins.left() + margins.right(), minimumSizeHint().height()};
}

QSize ElidedLabel::minimumSizeHint() const
{
    const QMargins margins = contentsMargins();
    // A few letters and the dots.
    const int width = fontMetrics().horizontalAdvance(QStringLiteral("abcd")) +
                      fontMetrics().horizontalAdvance(QChar(0x2026));
    const int own = fontMetrics().horizontalAdvance(text().left(5)) + 1;
    return {std::min(width, own) + margins.left() + margins.right(),
            (most - 1) * fontMetrics().lineSpacing() + fontMetrics().height() + margins.top() +
                margins.bottom()};
}

void ElidedLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setPen(
        palette().color(isEnabled() ? QPalette::Normal : QPalette::Disabled, foregroundRole()));
    painter.drawText(contentsRect(), int(alignment()) | Qt::TextDontClip,
                     fitted(contentsRect().width(), most).join(QLatin1Char('\n')));
}

bool ElidedLabel::event(QEvent *event)
{
    if (event->type() == QEvent::ToolTip && toolTip().isEmpty() && isElided()) {
        QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(), text().toHtmlEscaped(),
                           this);
        return true;
    }
    // A finger hovers nowhere: a touch shows the same. The event goes on to the parent.
    if (event->type() == QEvent::MouseButtonRelease && isElided())
        QToolTip::showText(mapToGlobal(rect().bottomLeft()),
                           toolTip().isEmpty() ? text().toHtmlEscaped() : toolTip(), this);
    return QLabel::event(event);
}

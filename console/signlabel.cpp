// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "signlabel.h"

#include "severitylook.h"
#include "theme.h"

#include <QtGui/QPainter>

#include <algorithm>

namespace {

constexpr int gapUnits = 6;

int signSide(const QFontMetrics &metrics)
{
    return metrics.ascent() + metrics.descent();
}

} // namespace

SignLabel::SignLabel(const QColor &plainPlate, QWidget *parent)
    : ElidedLabel(parent)
    , plain(plainPlate)
{
    setMessage(QString(), std::nullopt);
}

void SignLabel::setMessage(const QString &text, std::optional<Severity> severity)
{
    shown = severity;
    QPalette colors = palette();
    colors.setColor(QPalette::WindowText,
                    severity ? lookOf(*severity, true).ink : QColor(Qt::white));
    setPalette(colors);
    setText(text);
    applyScale();
}

std::optional<Severity> SignLabel::severity() const
{
    return shown;
}

void SignLabel::applyScale()
{
    const int gap = Theme::px(gapUnits);
    const bool hasPlate = shown || plain.isValid();
    const int above = plain.isValid() ? gap : 0;
    setContentsMargins((hasPlate ? gap : 0) + (shown ? signSide(fontMetrics()) + gap : 0), above,
                       hasPlate ? gap : 0, above);
}

void SignLabel::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    if (!shown) {
        if (plain.isValid())
            painter.fillRect(rect(), plain);
        painter.end();
        ElidedLabel::paintEvent(event);
        return;
    }
    const SeverityLook look = lookOf(*shown, true);
    const QRect room = contentsRect();
    const int gap = Theme::px(gapUnits);
    const int side = signSide(fontMetrics());
    // The sign is beside the text, wherever that is.
    const bool atRight = alignment().testFlag(Qt::AlignRight);
    const int width = std::min(fontMetrics().horizontalAdvance(text()), room.width());
    const int x = (atRight ? room.right() + 1 - width : room.left()) - gap - side;
    const int y = atRight ? (height() - side) / 2 : room.top();
    painter.fillRect(atRight ? rect().adjusted(x - gap, 0, 0, 0) : rect(), look.plate);
    painter.drawPixmap(x, y, severitySign(*shown, side, look.ink, look.plate, devicePixelRatioF()));
    painter.end();
    ElidedLabel::paintEvent(event);
}

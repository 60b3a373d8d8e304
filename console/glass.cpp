// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "glass.h"

#include "theme.h"

#include <aerogroupbox.h>

namespace {

const QColor glass(62, 78, 94);
const QColor glassShadow(27, 34, 42);

} // namespace

void Glass::setTextColor(QWidget *label, const QColor &color)
{
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, color);
    label->setPalette(palette);
}

void Glass::apply(AeroStyle *style, int roundness)
{
    style->setColor(glass);
    style->setShadow(glassShadow);
    style->setColorPen(outline);
    style->setWidthPen(2);
    style->setRoundness(roundness);
}

AeroGroupbox *Glass::box(QWidget *parent, const QString &title)
{
    auto *box = new AeroGroupbox(parent);
    Theme::setText(box, Theme::Normal);
    box->setColor(QColor(84, 100, 116, 70));
    box->setShadow(QColor(52, 64, 76, 70));
    box->setColorPen(QColor(92, 108, 124));
    box->setWidthPen(2);
    box->setRoundness(12);
    box->setColorTitle(textColor);
    box->setTitle(title);
    return box;
}

// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "glass.h"

#include "theme.h"

#include <aerogroupbox.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>
#include <QtCore/QVariant>
#include <QtWidgets/QLabel>

#include <algorithm>

namespace {

const QColor glass(62, 78, 94);
const QColor glassShadow(27, 34, 42);
/// Where a label keeps its ink.
constexpr const char *inkProperty = "kivInk";
constexpr int cornerUnits = 7;

/// Corners of one radius, whatever the size of the box: the box takes a share of its shorter side.
class EvenCorners : public QObject
{
public:
    explicit EvenCorners(AeroGroupbox *roundedBox)
        : QObject(roundedBox)
        , box(roundedBox)
    {
        box->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject *object, QEvent *event) override
    {
        if (event->type() == QEvent::Resize) {
            const int shorter = std::max(std::min(box->width(), box->height()), 1);
            constexpr int diameterPercent = 200;
            box->setRoundness(
                std::min((diameterPercent * Theme::px(cornerUnits) + shorter - 1) / shorter, 100));
        }
        return QObject::eventFilter(object, event);
    }

private:
    AeroGroupbox *box;
};

void colorBox(AeroGroupbox *box)
{
    // The title is painted anew with the panel.
    box->setColorTitle(Glass::colorOf(Glass::Ink::Text));
    // By day a card as on the other pages; at night little more than its outline, so that the
    // reflection makes no second area.
    const QColor fill = Theme::isDark() ? QColor(255, 255, 255, 15) : QColor(Qt::white);
    box->setColor(fill);
    box->setShadow(fill);
    box->setColorPen(Theme::isDark() ? QColor(92, 108, 124) : QColor(170, 180, 189));
}

} // namespace

QColor Glass::colorOf(Ink ink)
{
    const QPalette palette = Theme::palette(Theme::isDark());
    switch (ink) {
    case Ink::Text:
        break;
    case Ink::Faint:
        return palette.color(QPalette::Mid);
    case Ink::Danger:
        return Theme::gaugeColors(Theme::isDark()).outOfLimits;
    }
    return palette.color(QPalette::WindowText);
}

void Glass::setInk(QWidget *label, Ink ink)
{
    label->setProperty(inkProperty, int(ink));
    setTextColor(label, colorOf(ink));
}

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
    box->setWidthPen(2);
    colorBox(box);
    box->setTitle(title);
    new EvenCorners(box);
    return box;
}

int Glass::titleRoom()
{
    // The box itself leaves room for the text.
    return Theme::px(8);
}

QLabel *Glass::warning(QWidget *parent, const QString &consequence, const QString &description)
{
    QStringList lines;
    if (!description.isEmpty())
        lines += description;
    lines += QCoreApplication::translate("Glass", "%1 Hold for two seconds.").arg(consequence);
    QLabel *label = Theme::label(parent, Theme::Normal, false, lines.join(QLatin1Char('\n')));
    label->setWordWrap(true);
    setInk(label, Ink::Danger);
    return label;
}

void Glass::followTheme(QWidget *root)
{
    const QList<QWidget *> widgets = root->findChildren<QWidget *>();
    for (QWidget *widget : widgets) {
        if (auto *box = qobject_cast<AeroGroupbox *>(widget))
            colorBox(box);
        const QVariant ink = widget->property(inkProperty);
        if (ink.isValid())
            setTextColor(widget, colorOf(Ink(ink.toInt())));
    }
}

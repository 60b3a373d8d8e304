// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "theme.h"

#include "elementstate_p.h"

#include <QtGui/QGuiApplication>
#include <QtGui/QPainter>
#include <QtWidgets/QLabel>
#include <QtWidgets/QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace {

constexpr QRgb lightBackground = 0xffd6dce1;
constexpr int cornerRadius = 6;
constexpr double usualDotsPerInch = 96.0;
constexpr double smallestPoints = 7.0;
constexpr int leastTouchSize = 44;
/// Where a widget keeps the text size that it got.
constexpr const char *textProperty = "kivTextSize";
constexpr int boldFlag = 1000;

/// Marks the layouts from pageLayout().
constexpr const char *pageProperty = "kivPageLayout";

double unit = 1.0;
double textScale = 1.0;

void fitPageLayout(QLayout *layout)
{
    const int around = Theme::px(Theme::margin);
    layout->setContentsMargins(around, around, around, around);
    layout->setSpacing(Theme::px(Theme::spacing));
}

} // namespace

QPalette Theme::palette(bool dark)
{
    const QColor window(dark ? 0xff1d2125 : 0xffe8ecef);
    const QColor card(dark ? 0xff2b3137 : 0xffffffff);
    const QColor text(dark ? 0xffe3e8ec : 0xff2a2f34);
    const QColor faint(dark ? 0xffa7b1ba : 0xff535d66);

    QPalette palette(window);
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::Base, card);
    palette.setColor(QPalette::AlternateBase, dark ? 0xff353c43 : 0xfff1f4f6);
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::ButtonText, text);
    palette.setColor(QPalette::Mid, faint);
    palette.setColor(QPalette::Disabled, QPalette::WindowText, faint);
    palette.setColor(QPalette::Disabled, QPalette::Text, faint);
    return palette;
}

QVBoxLayout *Theme::pageLayout(QWidget *page)
{
    auto *layout = new QVBoxLayout(page);
    layout->setProperty(pageProperty, true);
    fitPageLayout(layout);
    return layout;
}

QString Theme::separator()
{
    return QStringLiteral("  ·  ");
}

QColor Theme::accent()
{
    return {KivPrivate::lightBlue};
}

QColor Theme::deepAccent()
{
    return {KivPrivate::deepBlue};
}

QFont Theme::font(TextSize size, bool bold)
{
    QFont font(QStringLiteral("DejaVu Sans"));
    const double least = smallestPoints * std::min(textScale / unit, 1.0);
    font.setPointSizeF(std::max(int(size) * textScale, least));
    font.setBold(bold);
    return font;
}

void Theme::setText(QWidget *widget, TextSize size, bool bold)
{
    widget->setProperty(textProperty, int(size) + (bold ? boldFlag : 0));
    widget->setFont(font(size, bold));
}

bool Theme::isDark()
{
    constexpr int middle = 128;
    return QGuiApplication::palette().color(QPalette::Window).lightness() < middle;
}

int Theme::px(double units)
{
    return int(std::lround(units * unit));
}

double Theme::scale()
{
    return unit;
}

void Theme::setScale(double pixelsPerUnit, int dotsPerInch)
{
    unit = pixelsPerUnit;
    textScale = pixelsPerUnit * usualDotsPerInch / std::max(dotsPerInch, 1);
}

void Theme::applyScale(QWidget *root)
{
    const QList<QWidget *> widgets = root->findChildren<QWidget *>();
    for (QWidget *widget : widgets) {
        const int kept = widget->property(textProperty).toInt();
        if (kept)
            widget->setFont(font(TextSize(kept % boldFlag), kept >= boldFlag));
    }
    const QList<QLayout *> layouts = root->findChildren<QLayout *>();
    for (QLayout *layout : layouts) {
        if (layout->property(pageProperty).toBool())
            fitPageLayout(layout);
    }
}

int Theme::touchSize()
{
    return std::max(leastTouchSize, px(leastTouchSize));
}

Theme::GaugeColors Theme::gaugeColors(bool dark)
{
    if (dark)
        return {QColor(0xff4a535c), QColor(0xff3f4d66), QColor(0xffc6d0d9),
                QColor(KivPrivate::orange)};
    return {QColor(0xffd0d7dd), QColor(0xffc3d3ea), QColor(0xff44525f), QColor(0xffa8480a)};
}

QLabel *Theme::label(QWidget *parent, TextSize size, bool bold, const QString &text)
{
    auto *label = new QLabel(text, parent);
    label->setTextFormat(Qt::PlainText);
    setText(label, size, bold);
    return label;
}

Card::Card(QWidget *parent)
    : QFrame(parent)
{}

void Card::setAlwaysLight(bool always)
{
    alwaysLight = always;
    update();
}

void Card::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const QColor base = palette().color(QPalette::Base);
    painter.setBrush(alwaysLight && base.lightness() < 128 ? QColor(lightBackground) : base);
    painter.drawRoundedRect(rect(), cornerRadius, cornerRadius);
}

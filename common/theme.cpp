#include "theme.h"

#include <QtGui/QPainter>
#include <QtWidgets/QLabel>
#include <QtWidgets/QVBoxLayout>

namespace {

constexpr QRgb lightGround = 0xffd6dce1;
constexpr int cornerRadius = 6;

} // namespace

QPalette Theme::palette(bool dark)
{
    const QColor window(dark ? 0xff1d2125 : 0xffe8ecef);
    const QColor card(dark ? 0xff2b3137 : 0xffffffff);
    const QColor text(dark ? 0xffe3e8ec : 0xff2a2f34);
    const QColor faint(dark ? 0xff9aa4ad : 0xff66717b);

    QPalette palette(window);
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::Base, card);
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
    layout->setContentsMargins(margin, margin, gutter, margin);
    layout->setSpacing(spacing);
    return layout;
}

QString Theme::separator()
{
    return QStringLiteral("  ·  ");
}

QColor Theme::accent()
{
    return {0, 174, 240};
}

QFont Theme::font(TextSize size, bool bold)
{
    QFont font(QStringLiteral("DejaVu Sans"), size);
    font.setBold(bold);
    return font;
}

QLabel *Theme::label(QWidget *parent, TextSize size, bool bold, const QString &text)
{
    auto *label = new QLabel(text, parent);
    label->setTextFormat(Qt::PlainText);
    label->setFont(font(size, bold));
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
    painter.setBrush(alwaysLight && base.lightness() < 128 ? QColor(lightGround) : base);
    painter.drawRoundedRect(rect(), cornerRadius, cornerRadius);
}

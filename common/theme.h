#pragma once

#include <QtGui/QFont>
#include <QtGui/QPalette>
#include <QtWidgets/QFrame>

class QLabel;
class QVBoxLayout;

/// The colours and building blocks of the programs' windows.
namespace Theme {

constexpr int margin = 12;  ///< between a page's edge and its cards, and inside a card
constexpr int spacing = 10; ///< between neighbours
constexpr int gutter = 58;  ///< at a page's right edge, where the drawer's tab hangs

/// Dark on light, or light on dark.
QPalette palette(bool dark);

/// The layout of a page: one column of cards.
QVBoxLayout *pageLayout(QWidget *page);

/// What stands between short texts on one line.
QString separator();

/// Accent colour of controls.
QColor accent();

enum TextSize { Small = 8, Normal = 10, Large = 13, Huge = 18 };
QFont font(TextSize size, bool bold = false);

/// A label for plain text; texts may come from a UPS.
QLabel *label(QWidget *parent, TextSize size, bool bold = false, const QString &text = QString());

} // namespace Theme

/// A rounded plate in the palette's Base colour that groups widgets.
class Card : public QFrame
{
    Q_OBJECT

public:
    explicit Card(QWidget *parent = nullptr);
    /// Keeps a light ground in both looks, for gauges that write in black.
    void setAlwaysLight(bool always);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    bool alwaysLight = false;
};

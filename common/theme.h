// SPDX-License-Identifier: LicenseRef-all-rights-reserved

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

/// Dark on light, or light on dark.
QPalette palette(bool dark);
/// Whether the application's palette is light on dark.
bool isDark();

/// Pixels for a length of @p units, of which a window of the smallest usual screen, 800 x 480, has
/// one a pixel.
int px(double units);
/// How many pixels a unit has; 1 until a window sets another.
double scale();
/// Takes a new scale: lengths from px() follow, and texts when applyScale() is called. @p
/// dotsPerInch is the font resolution of the screen; texts then have the scale's size, whatever it
/// is.
void setScale(double pixelsPerUnit, int dotsPerInch);
/// Gives all widgets under @p root that got their font from setText() or label() the present size,
/// and the layouts from pageLayout() the present margins.
void applyScale(QWidget *root);
/// The least size of what a finger hits, in pixels.
int touchSize();

/// The layout of a page: one column of cards.
QVBoxLayout *pageLayout(QWidget *page);

/// What stands between short texts on one line.
QString separator();

/// Accent colour of controls.
QColor accent();
/// A dark shade of it.
QColor deepAccent();

/// The smallest size is 7 points even where the scale asks for less.
enum TextSize { Small = 8, Normal = 10, Large = 13, Huge = 18, Figure = 24 };
QFont font(TextSize size, bool bold = false);
/// Sets the font of @p widget, which applyScale() keeps at the scale's size.
void setText(QWidget *widget, TextSize size, bool bold = false);

/// The colours of a gauge: at least 3:1 in luminance between the track and each of the others.
struct GaugeColors
{
    QColor track;
    QColor noData; ///< the track's tint where nothing is measured
    QColor fill;
    QColor outOfLimits;
};
GaugeColors gaugeColors(bool dark);

/// A label for plain text; texts may come from a UPS.
QLabel *label(QWidget *parent, TextSize size, bool bold = false, const QString &text = QString());

} // namespace Theme

/// A rounded plate in the palette's Base colour that groups widgets.
class Card : public QFrame
{
    Q_OBJECT

public:
    explicit Card(QWidget *parent = nullptr);
    /// Keeps a light background in both themes, for gauges that write in black.
    void setAlwaysLight(bool always);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    bool alwaysLight = false;
};

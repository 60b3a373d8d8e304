// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "kivglobal.h"
#include "metroStyle.h"

#include <QtWidgets/QAbstractButton>

/// A state tile: an image stretched over the button, a label at the left, an icon in the middle of
/// what the LED leaves free, and the state LED of an element at the right edge.
///
/// A tile at least 26 pixels high shows the LED at 21 x 21 pixels, a lower one at 10 x 10. The
/// finished image is cached; it is dropped by a new state, text, icon or property, by a resize, a
/// change of the enabled state, and when a child is removed. A state outside the tables shows the
/// LED of a lost communication and writes an error line whenever the image is painted; so does a
/// warning, an anomaly or a fault of an element with no state known. Use it only in the GUI thread,
/// except for MetroStyle::setState().
///
/// It has no size hint: in a layout, give it a minimum or a fixed size. 140 x 44 pixels suit a
/// short label. Set the icon size to that of the icon: it is the icon size that centres it. An `&`
/// in the text is drawn as it is, and still makes the letter after it a shortcut, as in every
/// QAbstractButton.
class KIVWIDGETS_EXPORT MetroShelter : public QAbstractButton, public MetroStyle
{
    Q_OBJECT
    Q_PROPERTY(QPixmap ImageBackground READ getImageBackground WRITE setBackgroundImage)
    Q_PROPERTY(QColor colorText READ getColorText WRITE setColorText)
    Q_PROPERTY(int xLabel READ getXLabel WRITE setxLabel)

public:
    explicit MetroShelter(QWidget *parent = nullptr);
    ~MetroShelter() override;

    /// The tile's face. Default: black. A null pixmap gives a black face of the tile's size with
    /// the next paint; until then reading gives a null pixmap. Every write rebuilds.
    QPixmap getImageBackground() const;
    void setBackgroundImage(const QPixmap &pixmap);
    /// Colour of the label's text. Default: Qt::white. A change rebuilds.
    QColor getColorText() const;
    void setColorText(const QColor &colorText);
    /// Where the label's text begins, in pixels from the left edge. Default: 10. A change rebuilds.
    int getXLabel() const;
    void setxLabel(int x);

    /// Sets the icon and rebuilds. Hides the base class's function, which does not rebuild the
    /// image.
    void setIcon(const QIcon &icon);
    /// Sets the text and rebuilds. Hides the base class's function, which does not rebuild the
    /// image.
    void setText(const QString &text);

    void createImages();
    void paintEvent(QPaintEvent *event) override;
    void repaintSchedule(QImage **cached);
    bool event(QEvent *event) override;

    void paintImage();
    /// Paints the LED and the label over the finished face.
    virtual void paintText(QPainter *painter);

protected:
    QImage *image;
    QPixmap *ImageBackground;
    QColor colorText;
    int xLabel;
};

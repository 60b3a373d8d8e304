// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "kivglobal.h"
#include "metroStyle.h"

#include <QtWidgets/QAbstractButton>

/// A state tile: an image stretched over the button, a label at the left, an icon in the middle of
/// the area left of the LED, and the state LED of an element at the right edge. With a label, the
/// icon stands further left by half the label's width.
///
/// A tile at least 26 pixels high shows the LED at 21 x 21 pixels, a lower tile at 10 x 10. A state
/// that is not in the tables shows the LED of a lost communication and writes an error line
/// whenever the image is painted. So does a warning, an anomaly or a fault of an element with no
/// state known.
///
/// The finished image is cached. It is dropped by a new state, text, icon or property, by a resize,
/// by a change of the enabled state, and when a child is removed. Use the tile only in the GUI
/// thread, except for MetroStyle::setState().
///
/// The tile has no size hint. Recommended minimum size: 120 x 40 pixels. Set the icon size to that
/// of the icon, because the icon size decides where the icon is drawn. An `&` in the text is drawn
/// as it is. It still makes the letter after it a shortcut, as in every QAbstractButton.
class KIVWIDGETS_EXPORT MetroShelter : public QAbstractButton, public MetroStyle
{
    Q_OBJECT
    Q_PROPERTY(QPixmap ImageBackground READ getImageBackground WRITE setBackgroundImage)
    Q_PROPERTY(QColor colorText READ getColorText WRITE setColorText)
    Q_PROPERTY(int xLabel READ getXLabel WRITE setxLabel)

public:
    explicit MetroShelter(QWidget *parent = nullptr);
    ~MetroShelter() override;

    /// The tile's background image. Default: black. With a null pixmap, the next paint sets a black
    /// one of the tile's size; until then the property is a null pixmap. Every write rebuilds the
    /// image.
    QPixmap getImageBackground() const;
    void setBackgroundImage(const QPixmap &pixmap);
    /// Colour of the label's text. Default: Qt::white. A change rebuilds the image.
    QColor getColorText() const;
    void setColorText(const QColor &colorText);
    /// Where the label's text begins, in pixels from the left edge. Default: 10. A change rebuilds
    /// the image.
    int getXLabel() const;
    void setxLabel(int x);

    /// Sets the icon and rebuilds the image. Hides the base class's function, which does not
    /// rebuild the image.
    void setIcon(const QIcon &icon);
    /// Sets the text and rebuilds the image. Hides the base class's function, which does not
    /// rebuild the image.
    void setText(const QString &text);

    void createImages();
    void paintEvent(QPaintEvent *event) override;
    void repaintSchedule(QImage **cached);
    bool event(QEvent *event) override;

    void paintImage();
    /// Paints the LED, the icon and the label over the background.
    virtual void paintText(QPainter *painter);

protected:
    QImage *image;
    QPixmap *ImageBackground;
    QColor colorText;
    int xLabel;
};

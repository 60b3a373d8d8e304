// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "aerostyle.h"
#include "kivglobal.h"

#include <QtWidgets/QAbstractButton>

/// A push button drawn as a glass panel with a text, an icon, or an icon followed by a text.
///
/// The finished image is cached. It is dropped by a resize, a change of the enabled state, of an
/// Aero setting, of `colorText` or `bold`, by setText() and setIcon(), and when a child is removed.
/// A changed font, icon size or checked state shows with the next drop. Pressing the button does
/// not change its look; disabled, its panel is washed out and its icon in disabled mode.
///
/// An icon shows only on a button that is at least two pixels higher than the icon, and two pixels
/// wider than icon and text together. Use it only in the GUI thread, except for the setters of
/// AeroStyle.
///
/// It has no size hint: in a layout, give it a minimum or a fixed size. 120 x 40 pixels suit a
/// short text. An `&` in the text is drawn as it is, and still makes the letter after it a
/// shortcut, as in every QAbstractButton.
class KIVWIDGETS_EXPORT AeroButton : public QAbstractButton, public AeroStyle
{
    Q_OBJECT
    Q_PROPERTY(QColor color READ getColor WRITE setColor)
    Q_PROPERTY(QColor shadow READ getShadow WRITE setShadow)
    Q_PROPERTY(QColor colorPen READ getColorPen WRITE setColorPen)
    Q_PROPERTY(int widthPen READ getWidthPen WRITE setWidthPen)
    Q_PROPERTY(double opacity READ getOpacity WRITE setOpacity)
    Q_PROPERTY(int roundness READ getRoundness WRITE setRoundness)
    Q_PROPERTY(QColor colorText READ getColorText WRITE setColorText)
    Q_PROPERTY(bool bold READ getBold WRITE setTextBold)
    Q_PROPERTY(double rotate READ getRotate WRITE setRotate)

public:
    explicit AeroButton(QWidget *parent = nullptr);
    ~AeroButton() override;

    /// Colour of the text. Default: Qt::white. A change repaints.
    QColor getColorText() const;
    void setColorText(const QColor &colorText);
    /// Whether the text is in bold weight. Default: true. A change repaints.
    bool getBold() const;
    void setTextBold(bool bold);
    /// Angle in degrees by which the finished image is turned about its vertical centre line, in
    /// perspective; at 90 the button is seen edge-on. Default: 0.0. A change keeps the cached
    /// image.
    double getRotate() const;
    void setRotate(double rotate);

    /// Sets the text and rebuilds the image, also for an equal text. Hides the base class's,
    /// which does not rebuild.
    void setText(const QString &text);
    /// Sets the icon and rebuilds the image. Hides the base class's function, which does not
    /// rebuild the image.
    void setIcon(const QIcon &icon);

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

    void createImages();
    void paintImage();
    void repaintSchedule(QImage **cached);
    /// Paints icon and text over the finished panel.
    virtual void paintText(QPainter *painter);

    QColor colorText;
    bool bold;
    double rotate;
    QImage *image;
};

// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "aerostyle.h"
#include "kivglobal.h"

#include <QtWidgets/QAbstractButton>

/// A push button drawn as a glass panel with a text, an icon, or an icon followed by a text.
///
/// The finished image is cached. It is dropped by a resize, by a change of the enabled state, of an
/// Aero setting, of `colorText` or of `bold`, by setText() and setIcon(), and when a child is
/// removed. A change of the font, of the icon size or of the checked state does not drop it, and
/// becomes visible with the next drop.
///
/// A pressed button looks like a released one. A disabled button has a washed-out panel, and its
/// icon in disabled mode. The icon is visible only if the button is at least two pixels higher than
/// the icon, and at least two pixels wider than icon and text together. Use the button only in the
/// GUI thread, except for the setters of AeroStyle.
///
/// The button has no size hint. Recommended minimum size: 80 x 32 pixels. An `&` in the text is
/// drawn as it is. It still makes the letter after it a shortcut, as in every QAbstractButton.
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
    /// Angle in degrees. The finished image is shown turned about its vertical centre line, in
    /// perspective: at 90 the button is seen edge-on. Default: 0.0. A change keeps the cached
    /// image.
    double getRotate() const;
    void setRotate(double rotate);

    /// Sets the text and rebuilds the image, even if the text is the same. Hides the base class's
    /// function, which does not rebuild the image.
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

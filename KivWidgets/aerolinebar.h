// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "aerostyle.h"
#include "kivglobal.h"

#include <QtCore/QString>
#include <QtWidgets/QWidget>

#include <array>

/// A horizontal bar gauge: a glass panel that covers a grey trough in proportion to the value, with
/// an optional value text and an optional strip of ticks below.
///
/// Panel, trough, text and ticks are cached as four images. A resize, a change of the enabled
/// state, of an Aero setting or of `tickSize`, and the removal of a child drop all four. A change
/// of `colorText`, of `bold` or of the text drops the text. A write of `tickInterval` drops the
/// ticks. The limits and `valuePosition` only repaint, so the ticks keep their places when the
/// limits change. Use the bar only in the GUI thread, except for the setters of AeroStyle.
///
/// The bar has no size hint. Recommended minimum size: 160 x 50 pixels.
class KIVWIDGETS_EXPORT AeroLinebar : public QWidget, public AeroStyle
{
    Q_OBJECT
    Q_PROPERTY(QColor color READ getColor WRITE setColor)
    Q_PROPERTY(QColor shadow READ getShadow WRITE setShadow)
    Q_PROPERTY(QColor colorPen READ getColorPen WRITE setColorPen)
    Q_PROPERTY(int widthPen READ getWidthPen WRITE setWidthPen)
    Q_PROPERTY(double opacity READ getOpacity WRITE setOpacity)
    Q_PROPERTY(int roundness READ getRoundness WRITE setRoundness)
    Q_PROPERTY(double minValueF READ getMinValueF WRITE setMinValue)
    Q_PROPERTY(double maxValueF READ getMaxValueF WRITE setMaxValue)
    Q_PROPERTY(int tickSize READ getTickSize WRITE setTickHeight)
    Q_PROPERTY(double tickInterval READ getTickInterval WRITE setTickStep)
    Q_PROPERTY(double valueF READ getValueF WRITE setValue)
    Q_PROPERTY(ValPos valuePosition READ getValuePosition WRITE setValuePosition)
    Q_PROPERTY(QString valueFormat READ getValueFormat WRITE setValueFormat)
    Q_PROPERTY(QColor colorText READ getColorText WRITE setColorText)
    Q_PROPERTY(bool bold READ getBold WRITE setTextBold)

public:
    /// The position of the value text. Any other value acts as rightVal.
    enum ValPos : int {
        NoVal = 0,     ///< no text
        CenterVal = 1, ///< centred on the end of the fill
        leftVal = 2,   ///< inside the fill, before its end
        rightVal = 3,  ///< directly after the fill
    };
    Q_ENUM(ValPos)

    explicit AeroLinebar(QWidget *parent = nullptr);
    ~AeroLinebar() override;

    /// Value at the left edge. It should be less than the maximum; if both are equal, the bar is
    /// empty. Default: 0.0. Every write repaints.
    double getMinValueF() const;
    void setMinValue(double minimum);
    /// Value at the right edge. Default: 100.0. Every write repaints.
    double getMaxValueF() const;
    void setMaxValue(double maximum);
    /// Height of the tick strip in percent of the widget's height, clamped to 0 to 100. Default:
    /// 20. Every write rebuilds all images.
    int getTickSize() const;
    void setTickHeight(int percent);
    /// Distance between two ticks. Default: 10.0. An interval that would give more than 50 ticks
    /// becomes a tenth of the range; a later change of the limits does not check this again. A
    /// negative interval acts as 1.0. Every write rebuilds the ticks.
    double getTickInterval() const;
    void setTickStep(double interval);
    /// The value shown. Default: 50.0. If the formatted text of a new value equals the present
    /// text, the value is not stored: the bar moves only when the text changes. A new bar has no
    /// text until the first write of a value, a format or a text.
    double getValueF() const;
    void setValue(double v);
    /// Position of the value text. Default: NoVal. Every write repaints.
    ValPos getValuePosition() const;
    void setValuePosition(ValPos position);
    /// printf format of the value text, for one number. An integer conversion gets the value
    /// truncated. A format that asks for anything else is shown unchanged. Characters of Latin-1
    /// such as "°" are shown, others become "?"; setText() shows any character. Default: "%.02f%%".
    QString getValueFormat() const;
    /// Colour of the value text. Default: an invalid colour. A change rebuilds the text.
    QColor getColorText() const;
    void setColorText(const QColor &colorText);
    /// Whether the value text is in bold weight. Default: true. A change rebuilds the text.
    bool getBold() const;
    void setTextBold(bool bold);

    /// Sets the value text and leaves the value unchanged. The next value whose formatted text
    /// differs from it replaces it.
    void setText(const QString &text);
    /// The value text. It is a null string before the first write of a value, a format or a text.
    QString getText() const;
    /// Divides the height between bar and tick strip. The widget calls it after each change of its
    /// height or of `tickSize`.
    void SplitArea();

    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

public Q_SLOTS:
    /// Sets the format and formats the present value again.
    void setValueFormat(QString vFormat);

protected:
    void createImages();
    void paintImage();
    void paintImageShadow();
    void paintText(QPainter *painter);
    void paintTick();
    void repaintSchedule(QImage **cached);

    int tickSize;
    double tickInterval;
    int tickHeight;
    int barHeight;
    double minValueF;
    double maxValueF;
    double valueF;
    ValPos valuePosition;
    QString valueFormat;
    QString valueText;
    QColor colorText;
    bool bold;
    QImage *image;
    QImage *imageShadow;
    QImage *imageText;
    QImage *imageTick;

private:
    Q_DECL_HIDDEN std::array<QImage **, 4> images();
    Q_DECL_HIDDEN void dropAll();
};

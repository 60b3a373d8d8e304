// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "aerostyle.h"
#include "kivglobal.h"

#include <QtCore/QString>
#include <QtWidgets/QWidget>

#include <array>

/// A horizontal bar gauge: a glass panel revealed over a grey trough in proportion to the value,
/// with an optional value text and an optional strip of ticks below.
///
/// Panel, trough, text and ticks are cached apart. A resize, a change of the enabled state, of an
/// Aero setting or of `tickSize`, and a removed child drop all four; `colorText`, `bold` and a
/// changed text drop the text, `tickInterval` the ticks. The limits and `valuePosition` only
/// repaint, so ticks keep their places when the limits change. Use it only in the GUI thread,
/// except for the setters of AeroStyle.
///
/// It has no size hint: in a layout, give it a minimum or a fixed size. 240 x 50 pixels leave room
/// for text and ticks.
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
    /// Where the value text stands. Any other value counts as rightVal.
    enum ValPos : int {
        NoVal = 0,     ///< nowhere
        CenterVal = 1, ///< centred on the end of the fill
        leftVal = 2,   ///< inside the fill, before its end
        rightVal = 3,  ///< just after the fill
    };
    Q_ENUM(ValPos)

    explicit AeroLinebar(QWidget *parent = nullptr);
    ~AeroLinebar() override;

    /// Value at the left edge, meant to be below the maximum. Default: 0.0. Every write repaints.
    /// With equal limits the bar is empty.
    double getMinValueF() const;
    void setMinValue(double minimum);
    /// Value at the right edge. Default: 100.0. Every write repaints.
    double getMaxValueF() const;
    void setMaxValue(double maximum);
    /// Height of the tick strip in percent of the widget's height, held within 0 to 100.
    /// Default: 20. Every write rebuilds all images.
    int getTickSize() const;
    void setTickHeight(int percent);
    /// Distance of two ticks. Default: 10.0. An interval that would give more than 50 ticks becomes
    /// a tenth of the range; this is checked only here, not when the limits change. A negative one
    /// counts as 1.0. Every write rebuilds the ticks.
    double getTickInterval() const;
    void setTickStep(double interval);
    /// The value shown. Default: 50.0. A value whose formatted text is the one already held is not
    /// stored: the bar moves only when the text does. A new bar holds no text until the first write
    /// of a value, a format or a text.
    double getValueF() const;
    void setValue(double v);
    /// Default: NoVal. Every write repaints.
    ValPos getValuePosition() const;
    void setValuePosition(ValPos position);
    /// printf format of the value text, for one number; an integer conversion gets the value
    /// truncated. A format that asks for anything else is shown as it stands. Characters of Latin-1
    /// such as "°" show, others become "?"; setText() shows any character. Default: "%.02f%%".
    QString getValueFormat() const;
    /// Colour of the value text. Default: an invalid colour. A change rebuilds the text.
    QColor getColorText() const;
    void setColorText(const QColor &colorText);
    /// Whether the value text is in bold weight. Default: true. A change rebuilds the text.
    bool getBold() const;
    void setTextBold(bool bold);

    /// Sets the value text alone, until the next value whose text differs from it.
    void setText(const QString &text);
    /// The value text held: a null string before the first write of a value, a format or a text.
    QString getText() const;
    /// Divides the height between bar and tick strip; called whenever that is needed.
    void SplitArea();

    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

public Q_SLOTS:
    /// Sets the format and writes the value text again.
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

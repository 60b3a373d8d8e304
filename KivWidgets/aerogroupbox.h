// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "aerostyle.h"
#include "kivglobal.h"

#include <QtGui/QPixmap>
#include <QtWidgets/QGroupBox>

/// A group box on a glass panel or on an image. The title stands over the top edge, where the
/// outline is left open for it.
///
/// A left press anywhere in the box toggles it if it is checkable, and then emits clicked(). No
/// check mark is painted.
///
/// Body and title are cached as two images. The body is dropped by a resize, and by a change of the
/// enabled state, of the contents rectangle or of an Aero setting. While the background is the
/// glass panel, the same events drop the title. A change of `colorTitle` or `bold` drops only the
/// body: the title keeps its look until one of those events or setTitle() drops it.
///
/// If the box has a title, `opacity` acts twice: on the panel, and on the finished images. While
/// the title is a null string, it acts on the panel only. Use the box only in the GUI thread,
/// except for the setters of AeroStyle.
///
/// Without a layout inside, the minimum size hint has room for the title only. Recommended minimum
/// size: 120 x 80 pixels. An `&` in the title is drawn as it is. It still makes the letter after it
/// a shortcut, as in every QGroupBox.
class KIVWIDGETS_EXPORT AeroGroupbox : public QGroupBox, public AeroStyle
{
    Q_OBJECT
    Q_PROPERTY(typeBG backgroudType READ getBackgroudType WRITE setBackgroundType)
    Q_PROPERTY(QPixmap backgroundGroup READ getBackgroundGroup WRITE setBackgroundGroup
                   KIVWIDGETS_DESIGNABLE(showsImage))
    Q_PROPERTY(QColor color READ getColor WRITE setColor KIVWIDGETS_DESIGNABLE(showsPanel))
    Q_PROPERTY(QColor shadow READ getShadow WRITE setShadow KIVWIDGETS_DESIGNABLE(showsPanel))
    Q_PROPERTY(QColor colorPen READ getColorPen WRITE setColorPen)
    Q_PROPERTY(int widthPen READ getWidthPen WRITE setWidthPen)
    Q_PROPERTY(double opacity READ getOpacity WRITE setOpacity)
    Q_PROPERTY(int roundness READ getRoundness WRITE setRoundness)
    Q_PROPERTY(QColor colorTitle READ getColorTitle WRITE setColorTitle)
    Q_PROPERTY(bool bold READ getBold WRITE setTextBold)

public:
    /// What the body shows. Any other value shows nothing.
    enum typeBG : int {
        ImageBG = 0,     ///< the image `backgroundGroup`
        AeroStyleBG = 1, ///< the glass panel
    };
    Q_ENUM(typeBG)

    explicit AeroGroupbox(QWidget *parent = nullptr);
    ~AeroGroupbox() override;

    /// Default: AeroStyleBG. A change rebuilds the body.
    typeBG getBackgroudType() const;
    void setBackgroundType(typeBG type);
    /// The image for ImageBG, stretched over the box. Default: a null pixmap, which leaves the
    /// body transparent. Every write rebuilds the body.
    QPixmap getBackgroundGroup() const;
    void setBackgroundGroup(const QPixmap &pixmap);
    /// Colour of the title. Default: Qt::white. A change rebuilds the body, not the title.
    QColor getColorTitle() const;
    void setColorTitle(const QColor &colorTitle);
    /// Whether the title is in bold weight. Default: true. A change rebuilds the body, not the
    /// title.
    bool getBold() const;
    void setTextBold(bool bold);

    /// Sets the title and rebuilds both images. An equal title does nothing. Hides the base class's
    /// function, which does not rebuild the title.
    void setTitle(const QString &title);

protected:
    bool event(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

    void paintImage();
    void paintImageTitle();
    void paintTitle(QPainter *painter);
    void createImages();
    void repaintSchedule(QImage **cached);

    // The property's name is spelled without the "n" too.
    typeBG backgroudType;
    QPixmap backgroundGroup;
    QColor colorTitle;
    bool bold;
    QImage *image;
    QImage *imageTitle;
    QSize titleSize;

private:
    Q_DECL_HIDDEN bool showsImage() const;
    Q_DECL_HIDDEN bool showsPanel() const;
};

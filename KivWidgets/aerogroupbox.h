// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "aerostyle.h"
#include "kivglobal.h"

#include <QtGui/QPixmap>
#include <QtWidgets/QGroupBox>

/// A group box on a glass panel or on an image, with its title over the panel's top edge, where
/// the outline is left open under it.
///
/// A left press anywhere in the box emits clicked(), after it has toggled the box if that is
/// checkable. No indicator is painted.
///
/// Body and title are cached apart. A resize, a change of the enabled state, of the contents
/// rectangle or of an Aero setting drops the body, and the title too while the background is the
/// glass panel. `colorTitle` and `bold` drop the body only: the title keeps its look until it is
/// dropped by one of those events or by setTitle(). While the title is a null string, `opacity`
/// acts on the panel alone, not on the finished body as well. Use it only in the GUI thread, except
/// for the setters of AeroStyle.
///
/// Without a layout inside it has only the minimum size of its title: in a layout, give it one,
/// such as 240 x 140 pixels. An `&` in the title is drawn as it is, and still makes the letter
/// after it a shortcut, as in every QGroupBox.
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

    /// Sets the title and rebuilds both images; an equal title does nothing. Hides the base
    /// class's, which does not rebuild the title.
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

    // The spelling without "n" is the property's name.
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

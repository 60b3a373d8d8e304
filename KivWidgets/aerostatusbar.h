// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "aerostyle.h"
#include "kivglobal.h"

#include <QtCore/QString>
#include <QtWidgets/QFrame>

/// A glass panel as the background of a status area. The application places its own widgets on it.
///
/// The finished panel is cached. It is dropped by a resize, by a change of the enabled state or of
/// any property, and when a child is removed. The frame of QFrame is not drawn. The panel shows no
/// text: `colorText` and `bold` are stored for an application that puts a label on it. Use the
/// panel only in the GUI thread, except for the setters of AeroStyle.
///
/// Without a layout inside, it has no useful size hint. Recommended minimum size: 120 x 36 pixels.
class KIVWIDGETS_EXPORT AeroStatusbar : public QFrame, public AeroStyle
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

public:
    explicit AeroStatusbar(QWidget *parent = nullptr);
    ~AeroStatusbar() override;

    /// Stored, but not used. Default: an invalid colour. A change rebuilds the panel.
    QColor getColorText() const;
    void setColorText(const QColor &colorText);
    /// Stored, but not used. Default: false. A change rebuilds the panel.
    bool getBold() const;
    void setTextBold(bool bold);

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

    void createImages();
    void paintImage();
    void repaintSchedule(QImage **cached);

    QString text;
    QColor colorText;
    bool bold;
    QImage *image;
};

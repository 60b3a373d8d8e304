// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "kivglobal.h"

#include <QtCore/QPoint>
#include <QtGui/QPixmap>
#include <QtWidgets/QAbstractButton>

/// A small checkable switch made of exchangeable images: a track for each state, and a knob that
/// the user drags. The checked track is visible from the left edge to the knob.
///
/// The switch has the fixed size of the track image that was written last. All four track images
/// should have the same size. Every write of an image repaints. Use the switch only in the GUI
/// thread.
///
/// A release without a movement since the press toggles the switch, wherever the release happens,
/// and emits only toggled(). A drag that ends on the other side of the middle toggles the switch,
/// and emits toggled() and clicked(). After a press without a movement, or a drag that does not
/// reach the other side, the base class gets no release. The button then stays down until a drag
/// toggles it or it is disabled.
///
/// In a resizable QScrollArea, and as a maximised or full-screen window, the switch accepts the
/// size that it gets.
///
/// The switch has no size hint, but its size limits fix its size in every layout. Recommended fixed
/// size: 78 x 27 pixels with the library's images. An `&` in the text is drawn as it is. It still
/// makes the letter after it a shortcut, as in every QAbstractButton.
class KIVWIDGETS_EXPORT SimpleSlideSwitch : public QAbstractButton
{
    Q_OBJECT
    Q_PROPERTY(QPixmap uncheckedImg READ getUncheckedImg WRITE setUncheckedImg)
    Q_PROPERTY(int marginLeft READ getMarginLeft WRITE setMarginLeft)
    Q_PROPERTY(QPixmap checkedImg READ getCheckedImg WRITE setCheckedImg)
    Q_PROPERTY(int marginRight READ getMarginRight WRITE setMarginRight)
    Q_PROPERTY(QPixmap uncheckedDisImg READ getUncheckedDisImg WRITE setUncheckedDisImg)
    Q_PROPERTY(QPixmap checkedDisImg READ getCheckedDisImg WRITE setCheckedDisImg)
    Q_PROPERTY(QPixmap btnImg READ getBtnImg WRITE setBtnImg)
    Q_PROPERTY(QPixmap btnDisImg READ getBtnDisImg WRITE setBtnDisImg)

public:
    explicit SimpleSlideSwitch(QWidget *parent = nullptr);
    ~SimpleSlideSwitch() override;

    /// Track while unchecked. Default: the library's, 78 x 27 pixels. A write sets the size.
    QPixmap getUncheckedImg() const;
    void setUncheckedImg(const QPixmap &pixmap);
    /// Left end of the knob's travel in pixels, any int. Default: 0. A write moves the knob at
    /// once. The visible part of the checked track follows with the next setChecked() or release.
    int getMarginLeft() const;
    void setMarginLeft(int margin);
    /// Track while checked. Default: the library's. A write sets the size.
    QPixmap getCheckedImg() const;
    void setCheckedImg(const QPixmap &pixmap);
    /// Distance from the right end of the knob's travel to the right edge in pixels, any int.
    /// Default: 0. A write acts like a write of `marginLeft`.
    int getMarginRight() const;
    void setMarginRight(int margin);
    /// Track while unchecked and disabled. Default: the library's. A write sets the size.
    QPixmap getUncheckedDisImg() const;
    void setUncheckedDisImg(const QPixmap &pixmap);
    /// Track while checked and disabled. Default: the library's. A write sets the size.
    QPixmap getCheckedDisImg() const;
    void setCheckedDisImg(const QPixmap &pixmap);
    /// The knob while enabled. Its size is also the size of the disabled knob. Default: the
    /// library's, 27 x 27 pixels.
    QPixmap getBtnImg() const;
    void setBtnImg(const QPixmap &pixmap);
    /// The knob while disabled. Default: the library's.
    QPixmap getBtnDisImg() const;
    void setBtnDisImg(const QPixmap &pixmap);

    /// Fixes the size of the switch to @p size and updates the icon from the track images.
    void updateWidgetsIcon(QSize size);
    /// Checks or unchecks the switch, and moves the knob to the end of its travel. Hides the slot
    /// of the base class, which does not change the visible part of the checked track.
    void setChecked(bool checked);

protected:
    bool event(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

    QPixmap uncheckedImg;
    int marginLeft;
    QPixmap checkedImg;
    int marginRight;
    QPixmap checkedDisImg;
    QPixmap uncheckedDisImg;
    QPixmap btnImg;
    QPixmap btnDisImg;
    bool dragFromOn;
    bool dragFromOff;
    bool moved;
    QPoint pointerPos;
    int leftLimit;
    int rightLimit;

private:
    Q_DECL_HIDDEN void setTrack(QPixmap &track, const QPixmap &pixmap);
    Q_DECL_HIDDEN void setMargin(int &margin, int value);
    Q_DECL_HIDDEN void updateLimits(int width);
    Q_DECL_HIDDEN qint64 travelEnd() const;
    Q_DECL_HIDDEN int restingPlace(bool checked) const;
    Q_DECL_HIDDEN int knobLeft() const;
};

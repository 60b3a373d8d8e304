// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "kivglobal.h"

#include <QtCore/QPoint>
#include <QtGui/QPixmap>
#include <QtWidgets/QAbstractButton>

/// A small checkable switch made of exchangeable images: a track for each state, of which the
/// checked one is revealed from the left up to the knob, and a knob that the user drags.
///
/// The switch has the fixed size of the track image that was written last; all four are meant to
/// be of one size. A release without a movement since the press toggles it wherever it happened; a
/// drag toggles it when it ends on the other side of the middle. The former emits toggled() alone,
/// the latter clicked() too. The base class does not get the release of the former, nor of a drag
/// that falls short: the button stays down until the next release that ends a drag, and is released
/// when it is disabled. Every write of an image repaints. GUI thread only.
///
/// It accepts the size that a resizable QScrollArea gives it, or that it has as a maximised or
/// full-screen window.
///
/// It has no size hint, but its size limits: a layout keeps it at the size of its images, 78 x 27
/// pixels with the library's. An `&` in the text is drawn as it is, and still makes the letter
/// after it a shortcut, as in every QAbstractButton.
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
    /// once; the revealed part of the track follows with the next setChecked() or release.
    int getMarginLeft() const;
    void setMarginLeft(int margin);
    /// Track while checked. Default: the library's. A write sets the size.
    QPixmap getCheckedImg() const;
    void setCheckedImg(const QPixmap &pixmap);
    /// Distance of the travel's right end from the right edge in pixels, any int. Default: 0. A
    /// write acts like one of the left margin.
    int getMarginRight() const;
    void setMarginRight(int margin);
    /// Track while unchecked and disabled. Default: the library's. A write sets the size.
    QPixmap getUncheckedDisImg() const;
    void setUncheckedDisImg(const QPixmap &pixmap);
    /// Track while checked and disabled. Default: the library's. A write sets the size.
    QPixmap getCheckedDisImg() const;
    void setCheckedDisImg(const QPixmap &pixmap);
    /// The knob; its size is the knob's size, disabled too. Default: the library's, 27 x 27 pixels.
    QPixmap getBtnImg() const;
    void setBtnImg(const QPixmap &pixmap);
    /// The knob while disabled. Default: the library's.
    QPixmap getBtnDisImg() const;
    void setBtnDisImg(const QPixmap &pixmap);

    /// Gives the switch the size @p size and the images that it holds.
    void updateWidgetsIcon(QSize size);
    /// Checks or unchecks the switch with the knob at its end. Hides the base class's slot, which
    /// leaves the revealed part of the track where it was.
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

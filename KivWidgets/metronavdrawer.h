// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "kivglobal.h"
#include "metroStyle.h"

#include <QtGui/QPixmap>
#include <QtWidgets/QGroupBox>

/// A drawer that opens to the left from a fixed right edge, over the page.
///
/// A closed drawer shows only its tab image. An open drawer is as wide as its visible children side
/// by side plus the tab, and shows a panel behind them. After every resize, a closed drawer returns
/// to its own size: the tab image plus 12 pixels beside, above and below it. With the library's
/// image that is 62 x 76 pixels. An open drawer is at least that large.
///
/// Opening sets the minimum size of each visible child to its width on both axes. Closing sets the
/// minimum height to 0. The drawer neither moves nor hides its children. A left press toggles the
/// checked state if the application made the drawer checkable, and then emits clicked(). The press
/// does not open or close the drawer: the application decides that.
///
/// The finished image is cached. It is dropped by a new state or property, by a change of the
/// enabled state or of the contents rectangle, by a move, and by a resize while the drawer is open.
/// The title and the frame of QGroupBox are not painted, and the element state of MetroStyle is not
/// used. Use the drawer only in the GUI thread.
///
/// In a resizable QScrollArea, and as a maximised or full-screen window, the drawer accepts the
/// size that it gets.
///
/// The drawer lies over the page, at a position that the application sets, so it does not belong in
/// a layout. Recommended minimum size: 62 x 76 pixels.
class KIVWIDGETS_EXPORT MetroNavdrawer : public QGroupBox, public MetroStyle
{
    Q_OBJECT
    Q_PROPERTY(state_E state READ getState WRITE setState)
    Q_PROPERTY(QPixmap ImageTab READ getImageTab WRITE setImageTab)
    Q_PROPERTY(QColor background READ getBackground WRITE setBackground)

public:
    /// The enumerator `close` hides QWidget::close(), so call that function through QWidget.
    enum state_E : int {
        close = 0,
        open = 1,
    };
    Q_ENUM(state_E)

    explicit MetroNavdrawer(QWidget *parent = nullptr);
    ~MetroNavdrawer() override;

    /// Default: open. Every write acts, even of the same state: if an open drawer is opened again,
    /// it moves left by the width of its children again. Opening has an effect only if the drawer
    /// was painted after its image was last dropped. Any other value is stored and does nothing.
    state_E getState() const;
    /// Hides MetroStyle::setState().
    void setState(state_E s);
    /// The tab image. Default: the library's, 50 x 52 pixels. Every write rebuilds.
    QPixmap getImageTab() const;
    void setImageTab(const QPixmap &newTab);
    /// Colour of the open panel. Default: (167, 167, 167). Every write rebuilds.
    QColor getBackground() const;
    void setBackground(const QColor &background);

    /// Sets the geometry. While the drawer is open, this is also stored as the open geometry. Hides
    /// the function of QWidget.
    void setGeometry(QRect r);
    /// Moves the drawer. While the drawer is open, only the upper left corner of the stored open
    /// geometry moves with it. Hides the function of QWidget.
    void move(QPoint p);

    void mousePressEvent(QMouseEvent *event) override;
    void repaintSchedule(QImage **cached);
    void createImages();
    void paintEvent(QPaintEvent *event) override;

protected:
    bool event(QEvent *event) override;

    void paintImage();

    // Hides MetroStyle::state.
    state_E state;
    QColor background;
    QRect openGeometry;
    QImage *image;
    QPixmap ImageTab;

private:
    Q_DECL_HIDDEN void openUp();
    Q_DECL_HIDDEN void closeDown();
    Q_DECL_HIDDEN void keepSize();
};

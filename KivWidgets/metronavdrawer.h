// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "kivglobal.h"
#include "metroStyle.h"

#include <QtGui/QPixmap>
#include <QtWidgets/QGroupBox>

/// A drawer that opens to the left from a fixed right edge, over the page.
///
/// Closed, it shows only its tab image; open, it is as wide as its visible children side by side
/// plus the tab, and shows a panel behind them. Every resize of a closed drawer ends at the tab's
/// size with 12 pixels beside it and 12 above and below, 62 x 76 with the library's image; an
/// open one is at least as large. Opening sets the minimum size of each visible child to its width
/// on both axes, closing sets the minimum height to 0; children are neither moved nor hidden. A
/// left press emits clicked(), after it has toggled the checked state if the application made the
/// box checkable; the application decides what follows.
///
/// The finished image is cached; it is dropped by a new state or property, a change of the
/// enabled state or of the contents rectangle, a move, and a resize while open. The title and the
/// frame of QGroupBox are not painted; the state of the Metro base plays no part here. GUI
/// thread only.
///
/// It accepts the size that a resizable QScrollArea gives it, or that it has as a maximised or
/// full-screen window.
///
/// It lies over the page at a place that the application gives it, so it belongs in no layout.
class KIVWIDGETS_EXPORT MetroNavdrawer : public QGroupBox, public MetroStyle
{
    Q_OBJECT
    Q_PROPERTY(state_E state READ getState WRITE setState)
    Q_PROPERTY(QPixmap ImageTab READ getImageTab WRITE setImageTab)
    Q_PROPERTY(QColor background READ getBackground WRITE setBackground)

public:
    /// The enumerator `close` hides QWidget::close(), so an application calls that through QWidget.
    enum state_E : int {
        close = 0,
        open = 1,
    };
    Q_ENUM(state_E)

    explicit MetroNavdrawer(QWidget *parent = nullptr);
    ~MetroNavdrawer() override;

    /// Default: open. Every write acts: opening takes place only once the drawer was painted since
    /// its image was last dropped; opened again, it moves left by its children's width again.
    /// Another value is stored and does nothing.
    state_E getState() const;
    /// Hides MetroStyle::setState().
    void setState(state_E s);
    /// The tab image. Default: the library's, 50 x 52 pixels. Every write rebuilds.
    QPixmap getImageTab() const;
    void setImageTab(const QPixmap &newTab);
    /// Colour of the open panel. Default: (167, 167, 167). Every write rebuilds.
    QColor getBackground() const;
    void setBackground(const QColor &background);

    /// Sets the geometry and, while open, keeps it as the open geometry. Hides the function of
    /// QWidget.
    void setGeometry(QRect r);
    /// Moves the drawer; while open, the kept geometry's upper left corner moves alone. Hides
    /// QWidget's.
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

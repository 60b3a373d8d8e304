// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtCore/QPointer>
#include <QtWidgets/QScrollArea>

#include <vector>

class Magnifier;
class SizeHandle;

/// Shows one live widget in the middle of a plain background, with handles around it to resize it.
class WidgetStage : public QScrollArea
{
    Q_OBJECT

public:
    static constexpr int smallestSide = 1;
    static constexpr int largestSide = 2000;
    static constexpr int largestZoom = 8;

    explicit WidgetStage(QWidget *parent = nullptr);

    /// The parent of a widget for this stage.
    QWidget *canvas() const;
    /// Shows @p newWidget, a child of the canvas, in place of the one before, which is deleted. The
    /// size that it has or takes now is its natural size; there are handles if it is @p resizable.
    void present(QWidget *newWidget, bool resizable);
    /// The widget shown; it may delete itself.
    QWidget *staged() const;

    void resizeStaged(QSize size);
    void takeNaturalSize();

    void setDark(bool dark);
    /// Keeps the background light even so, for a widget that writes in black.
    void setAlwaysLight(bool always);
    /// The colours that the canvas has now.
    QPalette canvasPalette() const;

    /// Shows each pixel of the widget as a square of @p factor pixels; 1 to largestZoom.
    void setZoom(int factor);

Q_SIGNALS:
    /// The widget came to a place and a size.
    void placed();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void dragHandle(QPoint role, QPoint offset);
    void placeSoon();
    void place();
    void showHandles(bool shown);
    void attachHandles();
    void applyColors();
    void applyZoom();

    QPointer<QWidget> widgetShown;
    QSize naturalSize;
    std::vector<SizeHandle *> handles;
    QRect geometryBeforeDrag;
    bool dragging = false;
    bool placing = false;
    bool placeIsDue = false;
    bool movedItself = false;
    bool dark = false;
    bool alwaysLight = false;
    int zoom = 1;
    Magnifier *magnifier;
};

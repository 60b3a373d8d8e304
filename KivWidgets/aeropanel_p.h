#pragma once

#include <QtCore/QEvent>
#include <QtGui/QColor>

#include <initializer_list>

class QPainter;
class QWidget;

/// What the Aero widgets share around the glass panel.
namespace KivPrivate {

/// The events that drop the images of most Aero widgets; a widget with another list keeps its own.
constexpr std::initializer_list<QEvent::Type> aeroDropEvents = {
    QEvent::Resize,        QEvent::EnabledChange, QEvent::ChildRemoved,
    QEvent::PolishRequest, QEvent::UpdateRequest,
};

/// The three colours of a glass panel.
struct PanelColors
{
    QColor panel;
    QColor band;
    QColor outline;

    /// These colours, washed out if @p widget is disabled.
    PanelColors shownBy(const QWidget *widget) const;
};

/// Sets @p painter, open on @p widget, up to show a finished picture: antialiased, with @p opacity,
/// turned by @p rotate degrees about the widget's vertical centre line.
void beginAeroShow(QPainter *painter, const QWidget *widget, double opacity, double rotate = 0.0);

} // namespace KivPrivate

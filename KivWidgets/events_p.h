// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtCore/QEvent>
#include <QtGui/QMouseEvent>

#include <algorithm>
#include <initializer_list>

class QGroupBox;
class QObject;
class QWidget;

/// The event handling that the widgets share.
namespace KivPrivate {

using EventTypes = std::initializer_list<QEvent::Type>;

// The sets of events that drop a widget's images. Each class uses one of them.

/// For a widget whose images depend on its size.
constexpr EventTypes sizedDropEvents = {
    QEvent::Resize,        QEvent::EnabledChange, QEvent::ChildRemoved,
    QEvent::PolishRequest, QEvent::UpdateRequest,
};
/// For a widget whose size depends on what it shows. It handles a resize itself, or stretches its
/// image.
constexpr EventTypes unsizedDropEvents = {
    QEvent::EnabledChange,
    QEvent::ChildRemoved,
    QEvent::PolishRequest,
    QEvent::UpdateRequest,
};
/// For a box whose images depend on its size. A removed child drops none of them.
constexpr EventTypes sizedBoxDropEvents = {
    QEvent::Resize,        QEvent::EnabledChange, QEvent::ContentsRectChange,
    QEvent::PolishRequest, QEvent::UpdateRequest,
};
/// For a box that handles a resize itself.
constexpr EventTypes unsizedBoxDropEvents = {
    QEvent::EnabledChange,
    QEvent::ContentsRectChange,
    QEvent::PolishRequest,
    QEvent::UpdateRequest,
};
/// For a widget that also drops its images at every paint.
constexpr EventTypes paintedDropEvents = {
    QEvent::Paint,        QEvent::Resize,        QEvent::EnabledChange,
    QEvent::ChildRemoved, QEvent::PolishRequest, QEvent::UpdateRequest,
};
/// The events at which a button checks whether it is too small for its icon.
constexpr EventTypes growEvents = {QEvent::Paint, QEvent::Resize};
/// The events that report that the pointer enters or leaves a widget.
constexpr EventTypes hoverEvents = {QEvent::Enter, QEvent::Leave};

/// Whether the type of @p event is one of @p types.
inline bool isOneOf(const QEvent *event, EventTypes types)
{
    return std::find(types.begin(), types.end(), event->type()) != types.end();
}

/// Posts an event that makes @p receiver drop its images. Any thread may call it.
void postUpdateRequest(QObject *receiver);

/// Removes the update requests that a schedule has posted while @p widget handles an update request
/// as a window. The base class paints at the present request, and each further request would
/// schedule the next one without end. Call it after the schedule, and before the base class's
/// handler.
void absorbUpdateRequests(QWidget *widget, const QEvent *event);

/// Handles a press on one of the library's boxes. The left button toggles the box, if it is
/// checkable, and always emits clicked(). Another button is ignored. A slot may delete the box.
void toggleOnLeftPress(QGroupBox *box, QMouseEvent *event);

/// A movement far outside of any box. QGroupBox toggles on a release when the movement before it
/// was over its check box or title; a box whose press has toggled it already passes this one to the
/// base class's mouseMoveEvent() before each release.
class MoveOutside : public QMouseEvent
{
public:
    MoveOutside();
};

} // namespace KivPrivate

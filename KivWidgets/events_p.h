// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtCore/QEvent>
#include <QtGui/QMouseEvent>

#include <algorithm>
#include <initializer_list>

class QGroupBox;
class QObject;
class QWidget;

/// What the widgets share in answering events.
namespace KivPrivate {

using EventTypes = std::initializer_list<QEvent::Type>;

// The events that drop a widget's images; each class says which set it uses.

/// Of a widget that is drawn for its size.
constexpr EventTypes sizedDropEvents = {
    QEvent::Resize,        QEvent::EnabledChange, QEvent::ChildRemoved,
    QEvent::PolishRequest, QEvent::UpdateRequest,
};
/// Of a widget whose size comes from what it shows: a resize is answered, or stretches the image.
constexpr EventTypes unsizedDropEvents = {
    QEvent::EnabledChange,
    QEvent::ChildRemoved,
    QEvent::PolishRequest,
    QEvent::UpdateRequest,
};
/// Of a box that is drawn for its size. A removed child is not among them.
constexpr EventTypes sizedBoxDropEvents = {
    QEvent::Resize,        QEvent::EnabledChange, QEvent::ContentsRectChange,
    QEvent::PolishRequest, QEvent::UpdateRequest,
};
/// Of a box that answers resizes by itself.
constexpr EventTypes unsizedBoxDropEvents = {
    QEvent::EnabledChange,
    QEvent::ContentsRectChange,
    QEvent::PolishRequest,
    QEvent::UpdateRequest,
};
/// Of a widget that is drawn again for every paint, too.
constexpr EventTypes paintedDropEvents = {
    QEvent::Paint,        QEvent::Resize,        QEvent::EnabledChange,
    QEvent::ChildRemoved, QEvent::PolishRequest, QEvent::UpdateRequest,
};
/// At which a button may find itself too small for its icon.
constexpr EventTypes growEvents = {QEvent::Paint, QEvent::Resize};
/// The pointer comes and goes.
constexpr EventTypes hoverEvents = {QEvent::Enter, QEvent::Leave};

/// Whether the type of @p event is one of @p types.
inline bool isOneOf(const QEvent *event, EventTypes types)
{
    return std::find(types.begin(), types.end(), event->type()) != types.end();
}

/// Asks @p receiver through Qt's event loop to drop its images. Any thread.
void postUpdateRequest(QObject *receiver);

/// Takes back what a schedule in the handler of an update request has posted to a @p widget that is
/// a window: the base class paints on this very request, and another one would schedule again, for
/// ever. Stands between the schedule and the base class's handler.
void absorbUpdateRequests(QWidget *widget, const QEvent *event);

/// What the library's boxes do on a press: the left button toggles the box, if it is checkable, and
/// emits clicked() in any case; another button is ignored. A slot may delete the box.
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

#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtGui/QAccessible>

#include <optional>

class WidgetInterface;

/// What a widget says that can change without a word from Qt.
struct Announcement
{
    QString label;               ///< a name that the widget itself shows
    QString status;              ///< what it shows in words
    std::optional<double> value; ///< of a gauge
    QAccessible::State state;    ///< only the bits that Qt does not announce
};

/// Announces changes of what a widget says. The widgets send no such notes, but whatever they show
/// anew they paint, so what they say is compared after each paint.
class ChangeWatcher : public QObject
{
public:
    /// Belongs to @p watched, which must be complete.
    explicit ChangeWatcher(WidgetInterface *watched);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    /// Compares once the events under way are done with: nobody may be told during a paint event.
    void compareLater();
    void compare();

    WidgetInterface *interface;
    Announcement last;
    bool waiting = false;
};

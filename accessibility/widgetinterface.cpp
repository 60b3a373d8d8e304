// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "widgetinterface.h"

#include "changewatcher.h"

#include <QtGui/QTextDocument>
#include <QtGui/QTextDocumentFragment>
#include <QtWidgets/QWidget>

namespace {

/// Whether some of @p widget lies inside all that it stands in.
bool isInSight(const QWidget *widget)
{
    QRect seen = widget->rect();
    for (const QWidget *at = widget; !at->isWindow() && at->parentWidget(); at = at->parentWidget())
        seen = seen.translated(at->pos()).intersected(at->parentWidget()->rect());
    return !seen.isEmpty();
}

} // namespace

WidgetInterface::WidgetInterface(QWidget *widget, QAccessible::Role role)
    : QAccessibleWidget(widget, role)
{}

WidgetInterface::~WidgetInterface() = default;

void WidgetInterface::watch()
{
    watcher = std::make_unique<ChangeWatcher>(
        object(), [this] { return isValid() ? std::make_optional(announcement()) : std::nullopt; });
}

Announcement WidgetInterface::announcement() const
{
    return {QString(), status(), std::nullopt, QAccessible::State()};
}

QString WidgetInterface::text(QAccessible::Text kind) const
{
    if (!isValid())
        return QString();
    switch (kind) {
    case QAccessible::Name:
        return name();
    case QAccessible::Description:
        return description();
    case QAccessible::Value:
        return status();
    case QAccessible::Accelerator:
        return ownShortcut();
    default:
        return QAccessibleWidget::text(kind);
    }
}

QAccessible::State WidgetInterface::state() const
{
    QAccessible::State state;
    const QWidget *shown = as<QWidget>();
    if (!shown) {
        state.invalid = true;
        return state;
    }
    state = QAccessibleWidget::state();
    state.offscreen = shown->isVisible() && !isInSight(shown);
    return state;
}

QStringList WidgetInterface::actionNames() const
{
    if (!isValid())
        return QStringList();
    QStringList names = QAccessibleWidget::actionNames();
    const QString own = ownAction();
    if (!own.isEmpty() && widget()->isEnabled())
        names.prepend(own);
    return names;
}

void WidgetInterface::doAction(const QString &action)
{
    if (!isValid() || !widget()->isEnabled())
        return;
    // What acts may delete the widget, and this interface with it.
    if (!action.isEmpty() && action == ownAction())
        act();
    else
        QAccessibleWidget::doAction(action);
}

QStringList WidgetInterface::keyBindingsForAction(const QString &action) const
{
    if (!isValid() || action != ownAction() || ownShortcut().isEmpty())
        return QStringList();
    return QStringList(ownShortcut());
}

QWindow *WidgetInterface::window() const
{
    return isValid() ? QAccessibleWidget::window() : nullptr;
}

QAccessibleInterface *WidgetInterface::parent() const
{
    return isValid() ? QAccessibleWidget::parent() : nullptr;
}

QAccessibleInterface *WidgetInterface::child(int index) const
{
    return isValid() ? QAccessibleWidget::child(index) : nullptr;
}

QAccessibleInterface *WidgetInterface::childAt(int x, int y) const
{
    return isValid() ? QAccessibleWidget::childAt(x, y) : nullptr;
}

QAccessibleInterface *WidgetInterface::focusChild() const
{
    return isValid() ? QAccessibleWidget::focusChild() : nullptr;
}

int WidgetInterface::childCount() const
{
    return isValid() ? QAccessibleWidget::childCount() : 0;
}

int WidgetInterface::indexOfChild(const QAccessibleInterface *child) const
{
    return isValid() ? QAccessibleWidget::indexOfChild(child) : -1;
}

QVector<QPair<QAccessibleInterface *, QAccessible::Relation>>
WidgetInterface::relations(QAccessible::Relation match) const
{
    if (!isValid())
        return {};
    return QAccessibleWidget::relations(match);
}

QRect WidgetInterface::rect() const
{
    return isValid() ? QAccessibleWidget::rect() : QRect();
}

QColor WidgetInterface::foregroundColor() const
{
    return isValid() ? QAccessibleWidget::foregroundColor() : QColor();
}

QColor WidgetInterface::backgroundColor() const
{
    return isValid() ? QAccessibleWidget::backgroundColor() : QColor();
}

QString WidgetInterface::label() const
{
    return QString();
}

QString WidgetInterface::status() const
{
    return QString();
}

bool WidgetInterface::needsName() const
{
    return true;
}

QString WidgetInterface::ownAction() const
{
    return QString();
}

void WidgetInterface::act()
{}

QString WidgetInterface::ownShortcut() const
{
    return QString();
}

QString WidgetInterface::name() const
{
    const QString given = widget()->accessibleName();
    for (const QString &candidate :
         {given, label(), buddyName(), toolTip(), widget()->windowTitle()}) {
        if (!candidate.trimmed().isEmpty())
            return candidate;
    }
    return needsName() ? widget()->objectName() : QString();
}

QString WidgetInterface::buddyName() const
{
    const auto labels = relations(QAccessible::Label);
    for (const auto &[labelling, relation] : labels) {
        // Qt takes the title of a box for the name of all that is in it.
        if (labelling && labelling->object() != widget()->parentWidget())
            return labelling->text(QAccessible::Name);
    }
    return QString();
}

QString WidgetInterface::description() const
{
    QStringList parts;
    parts.append(status());
    parts.append(widget()->accessibleDescription());
    if (parts.last().isEmpty() && toolTip() != name())
        parts.last() = toolTip();
    parts.removeAll(QString());
    return parts.join(QStringLiteral(". "));
}

QString WidgetInterface::toolTip() const
{
    const QString tip = widget()->toolTip();
    return Qt::mightBeRichText(tip) ? QTextDocumentFragment::fromHtml(tip).toPlainText() : tip;
}

QString withoutMnemonic(const QString &text)
{
    QString plain;
    for (int i = 0; i < text.size(); ++i) {
        // A mark stands before the key; a doubled one is the character itself.
        if (text.at(i) == QLatin1Char('&') && ++i == text.size())
            break;
        plain.append(text.at(i));
    }
    return plain;
}

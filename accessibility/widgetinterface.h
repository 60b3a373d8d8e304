// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "announcement.h"

#include <QtWidgets/QAccessibleWidget>

#include <memory>

class ChangeWatcher;

/// What the interfaces of all widgets share: name, description, and the notes on changes.
///
/// The name is the one that the application set, else what the widget shows as its name, else that
/// of a label whose buddy the widget is, its tool tip, its window title, or its object name. The
/// description begins with what the widget shows in words. Once the widget is being deleted,
/// everything is empty.
class WidgetInterface : public QAccessibleWidget
{
public:
    WidgetInterface(QWidget *widget, QAccessible::Role role);
    ~WidgetInterface() override;

    /// Starts announcing changes. Not for constructors: it asks the complete interface.
    void watch();
    virtual Announcement announcement() const;

    QString text(QAccessible::Text kind) const override;
    QAccessible::State state() const override;

    QStringList actionNames() const override;
    void doAction(const QString &action) override;
    QStringList keyBindingsForAction(const QString &action) const override;

    QWindow *window() const override;
    QAccessibleInterface *parent() const override;
    QAccessibleInterface *child(int index) const override;
    QAccessibleInterface *childAt(int x, int y) const override;
    QAccessibleInterface *focusChild() const override;
    int childCount() const override;
    int indexOfChild(const QAccessibleInterface *child) const override;
    QVector<QPair<QAccessibleInterface *, QAccessible::Relation>>
    relations(QAccessible::Relation match) const override;
    QRect rect() const override;
    QColor foregroundColor() const override;
    QColor backgroundColor() const override;

protected:
    /// The widget; null while it is being deleted, when its class is no longer whole.
    template <typename W>
    W *as() const
    {
        return isValid() ? qobject_cast<W *>(object()) : nullptr;
    }

    /// What the widget itself shows as its name.
    virtual QString label() const;
    /// What it shows in words: a formatted value, a state, a page.
    virtual QString status() const;
    /// Whether the object name is better than none. Not for mere surroundings.
    virtual bool needsName() const;

    /// The action of the widget itself, besides those of any widget; empty for none.
    virtual QString ownAction() const;
    virtual void act();
    virtual QString ownShortcut() const;

private:
    QString name() const;
    QString buddyName() const;
    QString description() const;
    QString toolTip() const;

    std::unique_ptr<ChangeWatcher> watcher;
};

/// @p text without the marks of its mnemonic.
QString withoutMnemonic(const QString &text);

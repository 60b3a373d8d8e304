// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "widgetinterface.h"

/// A strip that the application fills.
class StripInterface : public WidgetInterface
{
public:
    explicit StripInterface(QWidget *widget);

protected:
    bool needsName() const override;
};

/// A group box; a checkable one is a check box with children.
class GroupInterface : public WidgetInterface
{
public:
    explicit GroupInterface(QWidget *widget);

    QAccessible::Role role() const override;
    QAccessible::State state() const override;

protected:
    QString label() const override;
    bool needsName() const override;
    QString ownAction() const override;
    void act() override;
};

/// The drawer: expanded or collapsed. Its action is the press on it; the application decides what
/// follows.
class DrawerInterface : public WidgetInterface
{
public:
    explicit DrawerInterface(QWidget *widget);

    QAccessible::State state() const override;
    Announcement announcement() const override;

protected:
    QString label() const override;
    QString ownAction() const override;
    void act() override;
};

/// The stack: its children are its pages, in their order, and its status is the current one.
class StackInterface : public WidgetInterface
{
public:
    explicit StackInterface(QWidget *widget);

    QAccessibleInterface *child(int index) const override;
    QAccessibleInterface *childAt(int x, int y) const override;
    int childCount() const override;
    int indexOfChild(const QAccessibleInterface *child) const override;

protected:
    QString status() const override;
    bool needsName() const override;
};

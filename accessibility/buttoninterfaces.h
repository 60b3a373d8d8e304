// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "widgetinterface.h"

/// A button that is pressed, or toggled if it is checkable, as by a click of the user: applications
/// that listen to clicked() receive it.
class ButtonInterface : public WidgetInterface
{
public:
    using WidgetInterface::WidgetInterface;

    QAccessible::State state() const override;

protected:
    QString label() const override;
    QString ownAction() const override;
    void act() override;
    QString ownShortcut() const override;
};

/// A button that shows the state of an element, which it says in words.
class StateButtonInterface : public ButtonInterface
{
public:
    explicit StateButtonInterface(QWidget *widget);

protected:
    QString status() const override;
};

/// One tab of several: selected instead of checked, and silent on its element without an alarm.
class TabInterface : public ButtonInterface
{
public:
    explicit TabInterface(QWidget *widget);

    QAccessible::State state() const override;
    Announcement announcement() const override;

protected:
    QString status() const override;
    QString ownAction() const override;
};

/// The large slide switch, with its two looks that put the knob in the middle.
class SlideSwitchInterface : public ButtonInterface
{
public:
    explicit SlideSwitchInterface(QWidget *widget);

    QAccessible::State state() const override;
    Announcement announcement() const override;

protected:
    QString status() const override;
};

/// The small slide switch, whose image follows its own setter only.
class SimpleSlideSwitchInterface : public ButtonInterface
{
public:
    explicit SimpleSlideSwitchInterface(QWidget *widget);

protected:
    void act() override;
};

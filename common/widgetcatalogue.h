// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <metroStyle.h>

#include <QtCore/QSize>
#include <QtGui/QAccessible>
#include <QtGui/QIcon>

#include <functional>
#include <vector>

class QWidget;

enum class WidgetFamily { Aero, Metro, SwitchesAndPages };

/// One widget of the library, for the programs, plugins and tests that list them.
struct WidgetDescription
{
    /// The property that labels a widget, and its label.
    struct Label
    {
        const char *property = nullptr;
        const char *text = nullptr;
    };

    /// Brings a new widget into a state that shows what it is.
    void populate(QWidget *widget) const;
    /// The widget's own image, shrunk into squares of the sizes that lists show.
    QIcon drawIcon() const;

    const char *className = nullptr;
    const QMetaObject *metaObject = nullptr;
    QWidget *(*create)(QWidget *parent) = nullptr;
    WidgetFamily family = WidgetFamily::Aero;
    const char *toolTip = nullptr; ///< what it shows, in a few words
    QSize size;                    ///< of a new one, in pixels
    QSize minimumSize;             ///< recommended in a layout, in pixels
    QAccessible::Role role = QAccessible::NoRole;
    bool isContainer = false;          ///< whether other widgets are put into it
    bool sizesItself = false;          ///< whether it comes back to a size of its own
    bool needsLightBackground = false; ///< whether it writes in black around itself
    Label label;                       ///< of a new one, if it has any
    const char *use = "";              ///< for people who lay out forms, in a sentence or two
    /// Values and pages of a new one on a form, as elements of the form's XML.
    const char *formContents = "";
    /// How an editor of forms treats its properties, as elements of the form's XML.
    const char *formHints = "";
    /// What populate() does after setting the state to that of an element in order.
    void (*decorate)(QWidget *widget) = nullptr;
    /// For a widget whose look depends on an element's state.
    void (*setState)(QWidget *widget, elemDesc_t state) = nullptr;
};

/// All widgets of the library, in the order in which they are listed.
const std::vector<WidgetDescription> &widgetCatalogue();

/// The widget of class @p className, in any case; null if there is none.
const WidgetDescription *findWidget(const QString &className);

/// One look of a widget that is worth seeing, such as "disabled" or "fault".
struct WidgetState
{
    QString caption;
    /// A new widget in this state, a child of @p parent.
    std::function<QWidget *(QWidget *parent)> create;
    bool beginsRow = false; ///< whether it stands apart from the states before it
};

/// The states of the widget of class @p className that sheets and the gallery show; empty for an
/// unknown class. They are in widgetstates.cpp.
std::vector<WidgetState> widgetStates(const QString &className);

#pragma once

#include <metroStyle.h>

#include <QtCore/QSize>
#include <QtGui/QIcon>

#include <vector>

class QWidget;

enum class WidgetFamily { Aero, Metro, SwitchesAndPages };

/// One widget of the library, for the programs that list them.
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
    /// The widget's own picture, shrunk into squares of the sizes that lists show.
    QIcon drawIcon() const;

    const char *className;
    WidgetFamily family;
    const char *toolTip; ///< what it shows, in a few words
    QSize size;          ///< of a new one, in pixels
    bool isContainer;    ///< whether other widgets are put into it
    QWidget *(*create)(QWidget *parent);
    Label label; ///< of a new one, if it has any
    /// What populate() does after setting the state to that of an element in order.
    void (*decorate)(QWidget *widget) = nullptr;
    /// For a widget whose look depends on an element's state.
    void (*setState)(QWidget *widget, elemDesc_t state) = nullptr;
    bool sizesItself = false; ///< whether it comes back to a size of its own
};

/// All widgets of the library.
const std::vector<WidgetDescription> &widgetCatalogue();

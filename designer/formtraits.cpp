#include "formtraits.h"

#include <algorithm>
#include <iterator>

namespace {

#define KIV_PROPERTY(name, value) "<property name=\"" name "\">" value "</property>"
#define KIV_BOOL(name, value) KIV_PROPERTY(name, "<bool>" value "</bool>")
#define KIV_NUMBER(name, value) KIV_PROPERTY(name, "<number>" value "</number>")
#define KIV_DOUBLE(name, value) KIV_PROPERTY(name, "<double>" value "</double>")
#define KIV_ENUM(name, value) KIV_PROPERTY(name, "<enum>" value "</enum>")
#define KIV_PAGE(name) "<widget class=\"QWidget\" name=\"" name "\"/>"
/// A printf format is one line and is not translated.
#define KIV_FORMAT(property)                                                                       \
    "<propertyspecifications>"                                                                     \
    "<tooltip name=\"" property "\">printf format for one number</tooltip>"                        \
    "<stringpropertyspecification name=\"" property "\" notr=\"true\" type=\"singleline\"/>"       \
    "</propertyspecifications>"

// clang-format off
const FormTraits traits[] = {
    {"AeroButton",
     "Set color and shadow for the glass, colorPen and widthPen for the outline. "
     "Its look does not change when it is pressed; clicked() tells of a click.",
     "", ""},
    {"AeroSwitch",
     "While checked it takes its highlight colour; toggled() tells of a change.",
     KIV_BOOL("checked", "true"), ""},
    {"TranspButton",
     "Grows to hold its icon. posLabel moves the text away from the middle.",
     "", ""},
    {"AeroStatusbar",
     "Put lamps, labels and buttons into it and give it a horizontal layout.",
     "", ""},
    {"AeroGroupbox",
     "backgroudType chooses the ground: the glass panel, which takes color and shadow, "
     "or the picture backgroundGroup. What does not apply is greyed out.",
     "", ""},
    {"AeroLinebar",
     "minValueF and maxValueF are the ends of the scale, valueF is what is shown, "
     "valuePosition where the text of the value stands.",
     KIV_DOUBLE("valueF", "60.0") KIV_ENUM("valuePosition", "AeroLinebar::rightVal"), KIV_FORMAT("valueFormat")},
    {"MetroSysIcon",
     "Sizes itself to its icon and border. The state is set in code, with setState().",
     "", ""},
    {"MetroBattIcon",
     "The state is set in code, with setState(); until then it is unknown.",
     "", ""},
    {"MetroShelter",
     "xLabel is where the text begins. The state is set in code, with setState().",
     "", ""},
    {"MetroTabicon",
     "One tab among its siblings is checked. The state is set in code, with setState().",
     "", ""},
    {"MetroStatusbar",
     "Takes the size of its picture at a resize. Put tabs, labels and lamps into it.",
     "", ""},
    {"MetroNavdrawer",
     "Open, it is as wide as its children side by side and the tab; its right edge stays. "
     "Place that edge at the edge of the page.",
     "", ""},
    {"MetroLinerate",
     "Orange above 100, red from 126.",
     KIV_NUMBER("value", "60"), ""},
    {"MetroCirclerate",
     "radius, arcSize and minAngle decide its size; label and the value, written with "
     "formatStr, stand over it.",
     KIV_DOUBLE("value", "60.0"), KIV_FORMAT("formatStr")},
    {"MetroXbar",
     "minValue and maxValue are the ends of the scale; measure is the unit.",
     KIV_NUMBER("value", "230"), ""},
    {"SlideSwitch",
     "Drag the knob to the other side; toggled() tells of a change. locked and partialON put "
     "the knob in the middle.",
     "", ""},
    {"SimpleSlideSwitch",
     "Takes the size of the track picture that was set last; marginLeft and marginRight bound "
     "the way of the knob.",
     "", ""},
    {"RotateStackedWidget",
     "Add pages with its context menu. Animation is switched on in code, with "
     "setAnimationEnabled(), and setCurrentIndex() changes the page.",
     KIV_PAGE("page") KIV_PAGE("page_2"), ""},
};
// clang-format on

} // namespace

const FormTraits &formTraits(const QString &className)
{
    static const FormTraits none = {"", "", "", ""};
    const auto *found =
        std::find_if(std::begin(traits), std::end(traits), [&](const FormTraits &each) {
            return className == QLatin1String(each.className);
        });
    return found == std::end(traits) ? none : *found;
}

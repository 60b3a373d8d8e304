#include "statewords.h"

#include "../KivWidgets/elementstate_p.h"

#include <QtCore/QCoreApplication>

#include <iterator>

using namespace KivPrivate;

namespace {

constexpr char context[] = "StateWords";

// clang-format off
/// By AlarmState.
constexpr const char *alarms[] = {
    QT_TRANSLATE_NOOP("StateWords", "communication lost"),
    QT_TRANSLATE_NOOP("StateWords", "no alarm"),
    QT_TRANSLATE_NOOP("StateWords", "warning"),
    QT_TRANSLATE_NOOP("StateWords", "anomaly"),
    QT_TRANSLATE_NOOP("StateWords", "fault"),
    QT_TRANSLATE_NOOP("StateWords", "locked"),
};

/// By ElementState; nothing is said of an unknown one beside an alarm.
constexpr const char *elements[] = {
    QT_TRANSLATE_NOOP("StateWords", "state unknown"),
    QT_TRANSLATE_NOOP("StateWords", "stand-by"),
    QT_TRANSLATE_NOOP("StateWords", "precharge"),
    QT_TRANSLATE_NOOP("StateWords", "calibration"),
    QT_TRANSLATE_NOOP("StateWords", "waiting for the battery voltage"),
    QT_TRANSLATE_NOOP("StateWords", "on"),
    QT_TRANSLATE_NOOP("StateWords", "on battery"),
    QT_TRANSLATE_NOOP("StateWords", "on bypass"),
};
// clang-format on

/// Reaches what only a subclass may see.
struct OpenedStyle : MetroStyle
{
    static elemDesc_t stateOf(const MetroStyle &widget)
    {
        return widget.*(&OpenedStyle::state);
    }
};

template <std::size_t count>
QString word(const char *const (&words)[count], quint8 index, const char *otherwise)
{
    return QCoreApplication::translate(context, index < count ? words[index] : otherwise);
}

QString alarmWord(elemDesc_t state)
{
    return word(alarms, state.alarmSt, QT_TRANSLATE_NOOP("StateWords", "unknown alarm"));
}

QString elementWord(elemDesc_t state)
{
    return word(elements, state.elemSt, elements[ElementUnknown]);
}

QString sentence(QString text)
{
    if (!text.isEmpty())
        text[0] = text.at(0).toUpper();
    return text;
}

} // namespace

elemDesc_t heldState(const MetroStyle &widget)
{
    return OpenedStyle::stateOf(widget);
}

QString stateWords(elemDesc_t state)
{
    // The more urgent one comes first.
    if (state.alarmSt == AlarmNone)
        return sentence(elementWord(state) + QStringLiteral(", ") + alarmWord(state));
    // What an element did before its communication was lost is no longer known.
    const bool elementCounts = state.alarmSt != AlarmCommLost && state.elemSt != ElementUnknown &&
                               state.elemSt < std::size(elements);
    if (!elementCounts)
        return alarmWords(state);
    return sentence(alarmWord(state) + QStringLiteral(", ") + elementWord(state));
}

QString alarmWords(elemDesc_t state)
{
    return state.alarmSt == AlarmNone ? QString() : sentence(alarmWord(state));
}

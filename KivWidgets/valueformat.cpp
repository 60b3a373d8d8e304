#include "valueformat_p.h"

#include "numbers_p.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <cstring>

namespace KivPrivate {

namespace {

/// Widths and precisions beyond this only cost memory; no screen shows them.
constexpr int widestField = 1000;

enum class Argument { None, Integer, Real, Unfit };

/// A format with its length modifiers taken out, and the one argument that it asks for.
struct ParsedFormat
{
    QByteArray text;
    Argument argument = Argument::None;
};

bool isOneOf(char c, const char *set)
{
    return c != '\0' && std::strchr(set, c) != nullptr;
}

/// Copies the digits of a width or precision; false when the field would be too wide.
bool copyField(const char *&in, QByteArray &out)
{
    int field = 0;
    for (; *in >= '0' && *in <= '9'; ++in) {
        field = field * 10 + (*in - '0');
        if (field > widestField)
            return false;
        out.append(*in);
    }
    return true;
}

Argument argumentOf(char conversion)
{
    if (isOneOf(conversion, "diouxX"))
        return Argument::Integer;
    if (isOneOf(conversion, "eEfFgGaA"))
        return Argument::Real;
    return Argument::Unfit;
}

ParsedFormat parse(const QByteArray &format)
{
    ParsedFormat parsed;
    const char *in = format.constData();
    while (*in != '\0') {
        parsed.text.append(*in);
        if (*in++ != '%')
            continue;
        if (*in == '%') {
            parsed.text.append(*in++);
            continue;
        }
        while (isOneOf(*in, "#0- +'"))
            parsed.text.append(*in++);
        bool fits = copyField(in, parsed.text);
        if (fits && *in == '.') {
            parsed.text.append(*in++);
            fits = copyField(in, parsed.text);
        }
        while (isOneOf(*in, "hlLqjzt"))
            ++in;
        const Argument argument = fits ? argumentOf(*in) : Argument::Unfit;
        if (argument == Argument::Unfit || parsed.argument != Argument::None) {
            parsed.argument = Argument::Unfit;
            return parsed;
        }
        parsed.argument = argument;
        parsed.text.append(*in++);
    }
    return parsed;
}

} // namespace

QString formatValue(const QString &format, double value)
{
    const QByteArray latin1 = format.toLatin1();
    const ParsedFormat parsed = parse(latin1);
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_GCC("-Wformat-nonliteral")
    switch (parsed.argument) {
    case Argument::None:
    case Argument::Integer:
        return QString::asprintf(parsed.text.constData(), truncatedToInt(value));
    case Argument::Real:
        return QString::asprintf(parsed.text.constData(), value);
    case Argument::Unfit:
        break;
    }
    QT_WARNING_POP
    return QString::fromLatin1(latin1);
}

} // namespace KivPrivate

// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "valueformat_p.h"

#include "numbers_p.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <algorithm>
#include <cstring>

namespace KivPrivate {

namespace {

/// Widths and precisions beyond this only cost memory; no screen shows them.
constexpr int widestField = 1000;

/// None is also for what QString::asprintf takes for text since it is no conversion.
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

/// Passes over the digits of a width or precision; false when the field would be too wide.
bool skipField(const char *&in)
{
    int field = 0;
    for (; *in >= '0' && *in <= '9'; ++in)
        field = std::min(field * 10 + (*in - '0'), widestField + 1);
    return field <= widestField;
}

Argument argumentOf(char conversion)
{
    if (isOneOf(conversion, "diouxX"))
        return Argument::Integer;
    if (isOneOf(conversion, "eEfFgGaA"))
        return Argument::Real;
    return isOneOf(conversion, "scpn*") ? Argument::Unfit : Argument::None;
}

/// Whether decoding and encoding keep every byte; the first one keeps Qt from dropping a byte order
/// mark.
bool isUtf8(const QByteArray &bytes)
{
    const QByteArray guarded = '.' + bytes;
    return QString::fromUtf8(guarded.constData(), guarded.size()).toUtf8() == guarded;
}

/// @p format in Latin-1 where these bytes are UTF-8 by themselves, else the same characters in
/// UTF-8: this is what QString::asprintf takes a format for.
QByteArray encoded(const QString &format)
{
    const QByteArray latin1 = format.toLatin1();
    return isUtf8(latin1) ? latin1 : QString::fromLatin1(latin1).toUtf8();
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
        const char *const field = in;
        while (isOneOf(*in, "#0- +'"))
            ++in;
        bool fits = skipField(in);
        if (*in == '.')
            fits = skipField(++in) && fits;
        parsed.text.append(field, int(in - field));
        const char *const modifiers = in;
        while (isOneOf(*in, "hlLqjzt"))
            ++in;
        const Argument argument = argumentOf(*in);
        if (argument == Argument::None) {
            parsed.text.append(modifiers, int(in - modifiers));
            continue;
        }
        if (argument == Argument::Unfit || !fits || parsed.argument != Argument::None) {
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
    const QByteArray bytes = encoded(format);
    const ParsedFormat parsed = parse(bytes);
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_GCC("-Wformat-nonliteral")
    QT_WARNING_DISABLE_CLANG("-Wformat-nonliteral")
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
    return QString::fromUtf8(bytes);
}

} // namespace KivPrivate

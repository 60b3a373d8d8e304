// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "plaintext.h"

#include <algorithm>

static constexpr ushort ellipsis = 0x2026;

bool isPlainAscii(const QString &text)
{
    ushort before = ' ';
    for (const QChar c : text) {
        const ushort code = c.unicode();
        if (code < 0x20 || code >= 0x7f || (code == ' ' && before == ' '))
            return false;
        before = code;
    }
    return before != ' ' || text.isEmpty();
}

QString plainText(const QString &text)
{
    // Most texts are plain already, and stay shared.
    if (isPlainAscii(text))
        return text;
    QString plain;
    plain.reserve(text.size());
    for (const QChar c : text) {
        switch (c.category()) {
        case QChar::Other_Control:
        case QChar::Separator_Line:
        case QChar::Separator_Paragraph:
            plain += QLatin1Char(' ');
            break;
        case QChar::Other_Format:
            break;
        default:
            plain += c;
        }
    }
    return plain.simplified();
}

QString cutText(const QString &text, int longest)
{
    if (text.size() <= longest)
        return text;
    QString cut = text.left(std::max(longest - 1, 0));
    // Half of a character is none.
    if (!cut.isEmpty() && cut.at(cut.size() - 1).isHighSurrogate())
        cut.chop(1);
    return cut + QChar(ellipsis);
}

QString plainText(const QString &text, int longest)
{
    // What is not shown may take some room, too.
    const int most = 4 * longest;
    if (text.size() <= most)
        return cutText(plainText(text), longest);
    return cutText(plainText(text.left(most)) + QChar(ellipsis), longest);
}

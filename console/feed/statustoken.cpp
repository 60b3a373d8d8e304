// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "statustoken.h"

#include <array>

namespace {

constexpr std::array<const char *, nutTokenCount> tokenWords = {
    "OL",  "OB",  "LB",   "HB",   "RB",    "CHRG", "DISCHRG", "BYPASS",
    "CAL", "OFF", "OVER", "TRIM", "BOOST", "FSD",  "ALARM",   "WAIT",
};

} // namespace

QString wordOf(StatusToken token)
{
    for (int i = 0; i < nutTokenCount; ++i) {
        if (quint32(token) == 1U << i)
            return QString::fromLatin1(tokenWords.at(std::size_t(i)));
    }
    return QString();
}

StatusTokens tokensOf(const QStringList &words, QStringList *others)
{
    StatusTokens tokens;
    for (const QString &word : words) {
        bool known = false;
        for (int i = 0; i < nutTokenCount; ++i) {
            if (word == QLatin1String(tokenWords.at(std::size_t(i)))) {
                tokens |= StatusToken(1U << i);
                known = true;
            }
        }
        if (!known && others)
            others->append(word);
    }
    return tokens;
}

// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "headline.h"

#include <algorithm>
#include <iterator>

namespace {

using Token = StatusToken;

constexpr quint32 none = 0;
constexpr quint32 bits(Token token)
{
    return quint32(token);
}
constexpr quint32 bits(Token a, Token b)
{
    return quint32(a) | quint32(b);
}

struct StateRow
{
    quint32 needed; // all of these tokens
    const char *state;
    const char *detail; // unless a remark takes its place
    Severity severity;
    Protection protection;
    bool showsTimeLeft;
    bool takesRemarks; // the load is fed through the UPS, which may not be in order
};

// The first row whose tokens are all there counts. What leaves the load without protection stands
// above what protects it, so that a contradictory status never promises too much.
// clang-format off
constexpr StateRow stateTable[] = {
    {bits(Token::Waiting),     "Waiting for the first data", "",         Severity::Unknown,     Protection::Unknown,      false, false},
    {bits(Token::Locked),      "Locked",      "output off",              Severity::Critical,    Protection::NotFed,       false, false},
    {bits(Token::Bypass),      "Bypass",      "load NOT protected",      Severity::Warning,     Protection::NotProtected, false, false},
    {bits(Token::Starting),    "Starting",    "output off",              Severity::Information, Protection::NotFed,       false, false},
    {bits(Token::Off),         "Output off",  "",                        Severity::Information, Protection::NotFed,       false, false},
    {bits(Token::OnBattery, Token::Calibrating),
                               "Calibrating on battery", "load protected", Severity::Warning,   Protection::Protected,    true,  true},
    {bits(Token::OnBattery),   "On battery",  "load protected",          Severity::Warning,     Protection::Protected,    true,  true},
    {bits(Token::OnLine, Token::Calibrating),
                               "Calibrating", "load protected",          Severity::Information, Protection::Protected,    true,  true},
    {bits(Token::Calibrating), "Calibrating", "",                        Severity::Information, Protection::Unknown,      false, true},
    {bits(Token::OnLine),      "On line",     "load protected",          Severity::Normal,      Protection::Protected,    true,  true},
    {none,                     "State unknown", "",                      Severity::Unknown,     Protection::Unknown,      false, true},
};

struct RemarkRow
{
    quint32 needed;
    const char *detail; // none: only the severity counts
    Severity severity;
    bool limits;        // the protection
    bool hidesTimeLeft; // the load goes before the battery is empty
};

// What may be wrong meanwhile, the most urgent first: the first detail is shown, where the state's
// row takes remarks; the worst severity and the first row's rank always count.
constexpr RemarkRow remarkTable[] = {
    {bits(Token::Locked),                       "",                     Severity::Critical, false, false},
    {bits(Token::ForcedShutdown),               "forced shutdown",      Severity::Critical, true,  true},
    {bits(Token::OnBattery, Token::LowBattery), "battery nearly empty", Severity::Critical, true,  false},
    {bits(Token::Alarm),                        "alarm",                Severity::Critical, true,  false},
    {bits(Token::Bypass),                       "",                     Severity::Warning,  false, false},
    {bits(Token::Overload),                     "overload",             Severity::Warning,  true,  false},
    {bits(Token::LowBattery),                   "battery low",          Severity::Warning,  true,  false},
    {bits(Token::ReplaceBattery),               "replace the battery",  Severity::Warning,  true,  false},
    {bits(Token::OnBattery),                    "",                     Severity::Warning,  false, false},
    {bits(Token::HighBattery),                  "",                     Severity::Warning,  false, false},
    {bits(Token::Trimming),                     "",                     Severity::Warning,  false, false},
    {bits(Token::Boosting),                     "",                     Severity::Warning,  false, false},
};
// clang-format on

bool hasAll(quint32 needed, StatusTokens tokens)
{
    return (quint32(tokens) & needed) == needed;
}

const StateRow &rowOf(StatusTokens tokens)
{
    const StateRow *row = stateTable;
    while (!hasAll(row->needed, tokens)) // the last row needs none
        ++row;
    return *row;
}

void remark(Headline *headline, StatusTokens tokens, bool inWords)
{
    bool said = false;
    int rank = int(std::size(remarkTable));
    for (const RemarkRow &row : remarkTable) {
        if (!hasAll(row.needed, tokens)) {
            --rank;
            continue;
        }
        headline->rank = std::max(headline->rank, rank);
        headline->severity = worseOf(headline->severity, row.severity);
        if (!inWords)
            continue;
        if (row.limits && headline->protection == Protection::Protected)
            headline->protection = Protection::Limited;
        headline->showsTimeLeft = headline->showsTimeLeft && !row.hidesTimeLeft;
        if (!said && *row.detail != '\0') {
            headline->detail = QString::fromUtf8(row.detail);
            said = true;
        }
    }
}

} // namespace

bool operator==(const Headline &a, const Headline &b)
{
    return a.text == b.text && a.severity == b.severity && a.protection == b.protection &&
           a.showsTimeLeft == b.showsTimeLeft;
}

bool operator!=(const Headline &a, const Headline &b)
{
    return !(a == b);
}

Headline headlineOf(Snapshot::Link link, StatusTokens tokens)
{
    Headline headline;
    if (link == Snapshot::Link::CommunicationLost) {
        headline.state = QStringLiteral("No communication");
        headline.text = headline.state;
        return headline;
    }
    const StateRow &row = rowOf(tokens);
    headline.state = QString::fromUtf8(row.state);
    headline.detail = QString::fromUtf8(row.detail);
    headline.severity = row.severity;
    headline.protection = row.protection;
    headline.showsTimeLeft = row.showsTimeLeft;
    if (!hasAll(bits(Token::Waiting), tokens))
        remark(&headline, tokens, row.takesRemarks);
    headline.text = headline.state;
    if (!headline.detail.isEmpty())
        headline.text += QStringLiteral(" – ") + headline.detail;
    return headline;
}

Headline headlineOf(const Snapshot &snapshot)
{
    return headlineOf(snapshot.link, snapshot.tokens);
}

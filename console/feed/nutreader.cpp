// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "nutreader.h"

#include <algorithm>

// One switch over what a character may stand in.
// NOLINTNEXTLINE(readability-function-cognitive-complexity)
std::optional<QVector<QByteArray>> splitNutLine(const QByteArray &line)
{
    enum class Within { Nothing, Word, Quotes, Escape, AfterQuotes };

    QVector<QByteArray> words;
    Within within = Within::Nothing;
    for (const char c : line) {
        if (c >= 0 && c < 0x20) // bytes above 0x7f are UTF-8
            return std::nullopt;
        switch (within) {
        case Within::AfterQuotes:
            if (c != ' ')
                return std::nullopt;
            within = Within::Nothing;
            break;
        case Within::Nothing:
            if (c == ' ')
                break;
            words.append(QByteArray());
            within = c == '"' ? Within::Quotes : Within::Word;
            if (c != '"')
                words.last().append(c);
            break;
        case Within::Word:
            if (c == '"')
                return std::nullopt;
            if (c == ' ')
                within = Within::Nothing;
            else
                words.last().append(c);
            break;
        case Within::Quotes:
            if (c == '"')
                within = Within::AfterQuotes;
            else if (c == '\\')
                within = Within::Escape;
            else
                words.last().append(c);
            break;
        case Within::Escape:
            if (c != '"' && c != '\\')
                return std::nullopt;
            words.last().append(c);
            within = Within::Quotes;
            break;
        }
    }
    if (within == Within::Quotes || within == Within::Escape)
        return std::nullopt;
    return words;
}

std::optional<QByteArray> quotedForNut(const QString &text)
{
    QByteArray quoted("\"");
    const QByteArray bytes = text.toUtf8();
    for (const char c : bytes) {
        if ((c >= 0 && c < 0x20) || c == 0x7f)
            return std::nullopt;
        if (c == '"' || c == '\\')
            quoted.append('\\');
        quoted.append(c);
    }
    // The server's own lines are shorter than ours may be.
    constexpr int longest = 400;
    if (quoted.size() > longest)
        return std::nullopt;
    return quoted + '"';
}

NutReader::NutReader(const QByteArray &question)
    : asked(question)
{
    const QVector<QByteArray> words = splitNutLine(question).value_or(QVector<QByteArray>());
    const QByteArray verb = words.value(0);
    isList = verb == "LIST";
    if (isList || (verb == "GET" && words.value(1) != "TRACKING"))
        repeated = words.mid(1);
}

NutReader::~NutReader() = default;

const QByteArray &NutReader::question() const
{
    return asked;
}

int NutReader::takeFrom(const QByteArray &bytes, int position)
{
    while (position < bytes.size() && current == State::Reading) {
        const int lineEnd = int(bytes.indexOf('\n', position));
        const int end = lineEnd < 0 ? int(bytes.size()) : lineEnd;
        const int length = end - position;
        taken += length;
        if (taken > maxAnswer) {
            finish(State::Broken, QStringLiteral("too long a list"));
        } else if (partialLine.size() + length > maxLine) {
            finish(State::Broken, QStringLiteral("too long a line"));
        } else {
            partialLine.append(bytes.constData() + position, length);
            if (lineEnd >= 0) {
                QByteArray line;
                line.swap(partialLine);
                takeLine(line);
            }
        }
        position = end + 1;
    }
    return std::min(position, int(bytes.size()));
}

NutReader::State NutReader::take(const QByteArray &bytes)
{
    if (takeFrom(bytes, 0) < bytes.size() && current != State::Broken)
        finish(State::Broken, QStringLiteral("more than was asked for"));
    return current;
}

NutReader::State NutReader::state() const
{
    return current;
}

const QString &NutReader::problem() const
{
    return why;
}

const QVector<QVector<QByteArray>> &NutReader::rows() const
{
    return kept;
}

QString NutReader::firstWord() const
{
    return kept.isEmpty() ? QString() : QString::fromUtf8(kept.constFirst().value(0));
}

int NutReader::heldBytes() const
{
    return int(partialLine.size());
}

void NutReader::takeLine(QByteArray line)
{
    if (line.endsWith('\r'))
        line.chop(1);
    const std::optional<QVector<QByteArray>> words = splitNutLine(line);
    if (!words || words->isEmpty()) {
        finish(State::Broken, QStringLiteral("a line of another form"));
    } else if (!begun && words->first() == "ERR" && words->size() >= 2) {
        finish(State::Refused, QString::fromUtf8(words->at(1)));
    } else if (isList) {
        takeListLine(*words);
    } else {
        takeTail(*words);
        if (current == State::Reading)
            finish(State::Complete);
    }
}

void NutReader::takeListLine(const QVector<QByteArray> &words)
{
    const bool marks = words.size() == repeated.size() + 2 && words.at(1) == "LIST" &&
                       std::equal(repeated.cbegin(), repeated.cend(), words.cbegin() + 2);
    if (!begun && marks && words.first() == "BEGIN")
        begun = true;
    else if (begun && marks && words.first() == "END")
        finish(State::Complete);
    else if (!begun)
        finish(State::Broken, QStringLiteral("an unexpected line"));
    else if (++lines > maxRows)
        finish(State::Broken, QStringLiteral("too many variables"));
    else
        takeTail(words);
}

/// Takes what stands behind the repeated words.
void NutReader::takeTail(const QVector<QByteArray> &words)
{
    const bool repeats = words.size() >= repeated.size() + (isList ? 1 : 0) &&
                         std::equal(repeated.cbegin(), repeated.cend(), words.cbegin());
    if (repeats)
        takeRow(words.mid(repeated.size()));
    else
        finish(State::Broken, QStringLiteral("an unexpected line"));
}

void NutReader::takeRow(const QVector<QByteArray> &words)
{
    kept.append(words);
}

void NutReader::dropRows()
{
    kept.clear();
}

void NutReader::finish(State end, const QString &reason)
{
    current = end;
    why = reason;
    partialLine.clear();
    if (end != State::Complete)
        dropRows();
}

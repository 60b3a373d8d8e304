// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "nutreader.h"

#include <algorithm>
#include <utility>

namespace {

/// Where the run of characters ends that begins at @p from and has neither @p first, @p second nor
/// control characters. Bytes above 0x7f are UTF-8.
int endOfRun(const QByteArray &line, int from, char first, char second)
{
    while (from < line.size()) {
        const char c = line.at(from);
        if (c == first || c == second || (c >= 0 && c < 0x20))
            break;
        ++from;
    }
    return from;
}

/// Appends the quoted word that begins at @p from, behind its quote, and returns the position
/// behind the closing one; -1 when it is not of that form.
int takeQuoted(const QByteArray &line, int from, QByteArray *word)
{
    while (true) {
        const int end = endOfRun(line, from, '"', '\\');
        word->append(line.constData() + from, end - from);
        if (end == line.size())
            return -1;
        if (line.at(end) == '"')
            return end + 1;
        // An escape stands before a quote or another one.
        const char escaped = end + 1 < line.size() ? line.at(end + 1) : ' ';
        if (line.at(end) != '\\' || (escaped != '"' && escaped != '\\'))
            return -1;
        word->append(escaped);
        from = end + 2;
    }
}

} // namespace

std::optional<QVector<QByteArray>> splitNutLine(const QByteArray &line)
{
    constexpr int usual = 4;
    QVector<QByteArray> words;
    words.reserve(usual);
    int position = 0;
    while (position < line.size()) {
        if (line.at(position) == ' ') {
            ++position;
            continue;
        }
        if (line.at(position) == '"') {
            words.append(QByteArray());
            position = takeQuoted(line, position + 1, &words.last());
            if (position < 0)
                return std::nullopt;
        } else {
            const int end = endOfRun(line, position, ' ', '"');
            if (end == position)
                return std::nullopt;
            words.append(QByteArray(line.constData() + position, end - position));
            position = end;
        }
        // A space stands between words.
        if (position < line.size() && line.at(position) != ' ')
            return std::nullopt;
    }
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
    if (!isList)
        return;
    for (const QByteArray &word : std::as_const(repeated))
        rowBegin += word + ' ';
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
            if (lineEnd >= 0 && partialLine.isEmpty()) {
                // Nearly every line comes whole.
                takeLine(QByteArray::fromRawData(bytes.constData() + position, length));
            } else {
                partialLine.append(bytes.constData() + position, length);
                if (lineEnd >= 0) {
                    QByteArray line;
                    line.swap(partialLine);
                    takeLine(line);
                }
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

void NutReader::takeLine(const QByteArray &whole)
{
    const QByteArray line =
        QByteArray::fromRawData(whole.constData(), whole.size() - (whole.endsWith('\r') ? 1 : 0));
    if (takeUsualRow(line))
        return;
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

/// Takes a row of a list whose repeated words stand as they were asked for: of the thousands of
/// rows of a large site only what is new is split.
bool NutReader::takeUsualRow(const QByteArray &line)
{
    if (!begun || lines >= maxRows || !line.startsWith(rowBegin))
        return false;
    const std::optional<QVector<QByteArray>> words = splitNutLine(
        QByteArray::fromRawData(line.constData() + rowBegin.size(), line.size() - rowBegin.size()));
    if (!words || words->isEmpty())
        return false;
    ++lines;
    takeRow(*words);
    return true;
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

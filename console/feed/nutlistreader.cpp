#include "nutlistreader.h"

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

NutListReader::NutListReader(const QString &name)
    : upsName(name.toUtf8())
{}

NutListReader::State NutListReader::take(const QByteArray &bytes)
{
    int position = 0;
    while (position < bytes.size()) {
        if (current == State::Broken)
            break;
        if (current != State::Reading) {
            finish(State::Broken, QStringLiteral("more than was asked for"));
            break;
        }
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
    return current;
}

NutListReader::State NutListReader::state() const
{
    return current;
}

const NutVariables &NutListReader::variables() const
{
    return list;
}

const QString &NutListReader::problem() const
{
    return why;
}

int NutListReader::heldBytes() const
{
    return int(partialLine.size());
}

void NutListReader::takeLine(QByteArray line)
{
    if (line.endsWith('\r'))
        line.chop(1);
    const std::optional<QVector<QByteArray>> words = splitNutLine(line);
    const QVector<QByteArray> listOfThisUps{QByteArrayLiteral("LIST"), QByteArrayLiteral("VAR"),
                                            upsName};
    if (!words || words->isEmpty())
        finish(State::Broken, QStringLiteral("a line of another form"));
    else if (!begun && words->first() == "ERR" && words->size() >= 2)
        finish(State::Refused, QString::fromUtf8(words->at(1)));
    else if (!begun && words->first() == "BEGIN" && words->mid(1) == listOfThisUps)
        begun = true;
    else if (begun && words->first() == "END" && words->mid(1) == listOfThisUps)
        finish(State::Complete);
    else if (begun && words->first() == "VAR" && words->size() == 4 && words->at(1) == upsName)
        takeVariable(*words);
    else
        finish(State::Broken, QStringLiteral("an unexpected line"));
}

void NutListReader::takeVariable(const QVector<QByteArray> &words)
{
    if (++lines > maxVariables)
        finish(State::Broken, QStringLiteral("too many variables"));
    else
        list.insert(QString::fromUtf8(words.at(2)), QString::fromUtf8(words.at(3)));
}

void NutListReader::finish(State end, const QString &reason)
{
    current = end;
    why = reason;
    partialLine.clear();
    if (end != State::Complete)
        list.clear();
}

// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QVector>

#include <optional>

/// The words of one line of the server: separated by spaces, or in double quotes with \" and \\ as
/// escapes. Nothing when the line is not of that form.
std::optional<QVector<QByteArray>> splitNutLine(const QByteArray &line);

/// @p text in double quotes, with escapes, as the server takes it; nothing when it has control
/// characters, which no line can carry, or is longer than a line.
std::optional<QByteArray> quotedForNut(const QString &text);

/// Reads the answer to one question, however it comes in pieces.
///
/// It trusts nobody: the answer must be the one asked for or an error, in form, and within bounds.
/// More is not kept, so that no server can make the memory grow.
class NutReader
{
public:
    static constexpr int maxLine = 4096;         ///< bytes, without the line's end
    static constexpr int maxRows = 2000;         ///< lines of one list
    static constexpr int maxAnswer = 512 * 1024; ///< bytes of the whole answer

    enum class State {
        Reading,  ///< more must come
        Complete, ///< the whole answer is there
        Refused,  ///< the server answered an error: problem() is its code
        Broken,   ///< no answer of this protocol, or beyond the bounds: problem() says what
    };

    /// @p question is a line of the protocol without its end. To "LIST …" a list must come, to
    /// "GET VAR", "GET TYPE" and descriptions a line that repeats what they ask for, to anything
    /// else one line.
    explicit NutReader(const QByteArray &question);
    virtual ~NutReader();

    const QByteArray &question() const;
    /// Takes bytes from @p position to the answer's end, and returns the position behind.
    int takeFrom(const QByteArray &bytes, int position);
    /// Takes the next bytes. Bytes after the answer's end break it.
    State take(const QByteArray &bytes);

    State state() const;
    const QString &problem() const;
    /// The words of the answer's lines, without those that repeat the question.
    const QVector<QVector<QByteArray>> &rows() const;
    /// The first word of the first row as text; empty where there is none.
    QString firstWord() const;
    /// Bytes kept of a line that has not ended yet; never more than maxLine.
    int heldBytes() const;

protected:
    /// Takes one row of the answer. Here: keeps it.
    virtual void takeRow(const QVector<QByteArray> &words);
    /// Forgets the rows of an answer that is not complete. Here: those kept.
    virtual void dropRows();
    void finish(State end, const QString &reason = QString());

private:
    void takeLine(const QByteArray &whole);
    bool takeUsualRow(const QByteArray &line);
    void takeListLine(const QVector<QByteArray> &words);
    void takeTail(const QVector<QByteArray> &words);

    QByteArray asked;
    QVector<QByteArray> repeated; // the words that lines of the answer repeat
    QByteArray rowBegin;          // of the usual row of a list: these words, each with a space
    QByteArray partialLine;
    QVector<QVector<QByteArray>> kept;
    QString why;
    State current = State::Reading;
    bool isList = false;
    bool begun = false;
    int taken = 0;
    int lines = 0;
};

#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QHash>
#include <QtCore/QString>
#include <QtCore/QVector>

#include <optional>

/// The variables of a UPS, such as "battery.charge", with their values as the server gives them.
using NutVariables = QHash<QString, QString>;

/// The words of one line of the server: separated by spaces, or in double quotes with \" and \\ as
/// escapes. Nothing when the line is not of that form.
std::optional<QVector<QByteArray>> splitNutLine(const QByteArray &line);

/// Reads the answer to one "LIST VAR" request, however it comes in pieces.
///
/// It trusts nobody: the answer must be the list asked for or an error, in form, and within bounds.
/// More is not kept, so that no server can make the memory grow.
class NutListReader
{
public:
    static constexpr int maxLine = 4096;         ///< bytes, without the line's end
    static constexpr int maxVariables = 2000;    ///< lines of one list
    static constexpr int maxAnswer = 512 * 1024; ///< bytes of the whole answer

    enum class State {
        Reading,  ///< more must come
        Complete, ///< variables() is the whole list
        Refused,  ///< the server answered an error: problem() is its code
        Broken,   ///< no answer of this protocol, or beyond the bounds: problem() says what
    };

    explicit NutListReader(const QString &upsName);

    /// Takes the next bytes. Bytes after the answer's end break it.
    State take(const QByteArray &bytes);

    State state() const;
    const NutVariables &variables() const;
    const QString &problem() const;
    /// Bytes held back for a line that has not ended yet; never more than maxLine.
    int heldBytes() const;

private:
    void takeLine(QByteArray line);
    void takeVariable(const QVector<QByteArray> &words);
    void finish(State end, const QString &reason = QString());

    QByteArray upsName;
    QByteArray partialLine;
    NutVariables list;
    QString why;
    State current = State::Reading;
    int taken = 0;
    int lines = 0;
    bool begun = false;
};

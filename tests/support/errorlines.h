// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtCore/QList>
#include <QtCore/QString>

#include <cstdio>

/// One line that the library wrote to the standard error stream.
struct ErrorLine
{
    QString file;     ///< source file, relative to the repository
    QString function; ///< routine that the message belongs to
    QString message;  ///< without its line end

    bool operator==(const ErrorLine &other) const
    {
        return file == other.file && function == other.function && message == other.message;
    }
};

/// For QCOMPARE's report.
char *toString(const ErrorLine &line);
char *toString(const QList<ErrorLine> &lines);

/// Catches what is written to the standard error stream while it lives.
class ErrorCapture
{
public:
    ErrorCapture();
    ~ErrorCapture();
    ErrorCapture(const ErrorCapture &) = delete;
    ErrorCapture &operator=(const ErrorCapture &) = delete;

    /// The text written since the last call.
    QByteArray takeText();
    /// The same as error lines; a line of another form comes back with the file "?".
    QList<ErrorLine> takeLines();

private:
    std::FILE *file;
    int savedStream;
    long taken = 0;
};

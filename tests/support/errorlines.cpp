// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "errorlines.h"

#include <QtCore/QByteArray>
#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

#include <unistd.h>

#include <utility>

char *toString(const ErrorLine &line)
{
    return QTest::toString(
        QStringLiteral("%1 Err (%2): %3").arg(line.file, line.function, line.message));
}

char *toString(const QList<ErrorLine> &lines)
{
    QStringList texts;
    for (const ErrorLine &line : lines)
        texts += QStringLiteral("%1 Err (%2): %3").arg(line.file, line.function, line.message);
    return QTest::toString(QStringLiteral("{%1}").arg(texts.join(QStringLiteral(" | "))));
}

ErrorCapture::ErrorCapture()
    : file(std::tmpfile())
    , savedStream(dup(STDERR_FILENO))
{
    if (!file || savedStream < 0)
        qFatal("cannot catch the standard error stream");
    dup2(fileno(file), STDERR_FILENO);
}

ErrorCapture::~ErrorCapture()
{
    dup2(savedStream, STDERR_FILENO);
    close(savedStream);
    std::fclose(file);
}

QByteArray ErrorCapture::takeText()
{
    QByteArray text;
    char buffer[4096];
    ssize_t count = 0;
    while ((count = pread(fileno(file), buffer, sizeof buffer, taken)) > 0) {
        text.append(buffer, int(count));
        taken += count;
    }
    return text;
}

QList<ErrorLine> ErrorCapture::takeLines()
{
    static const QRegularExpression form(
        QStringLiteral("^\\[[0-2][0-9]:[0-5][0-9]:[0-6][0-9]\\](\\S+) Err \\((\\w+)\\): (.*)$"));
    QList<ErrorLine> lines;
    QStringList texts = QString::fromLatin1(takeText()).split(QLatin1Char('\n'));
    if (texts.last().isEmpty())
        texts.removeLast();
    for (const QString &text : std::as_const(texts)) {
        const QRegularExpressionMatch match = form.match(text);
        if (match.hasMatch())
            lines.append({match.captured(1), match.captured(2), match.captured(3)});
        else
            lines.append({QStringLiteral("?"), QString(), text});
    }
    return lines;
}

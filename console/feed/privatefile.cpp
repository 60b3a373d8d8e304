// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "privatefile.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

QString reasonFor(int code)
{
    return QString::fromLocal8Bit(std::strerror(code));
}

/// Why @p opened must not be used for secrets; empty when it may.
QString whyNotPrivate(const struct stat &opened)
{
    if (opened.st_uid != ::geteuid())
        return QStringLiteral("it belongs to another user");
    if ((opened.st_mode & (S_IRWXG | S_IRWXO)) != 0)
        return QStringLiteral("others may read it: change its mode to 600");
    return {};
}

std::optional<QByteArray> read(const QString &path, int mostBytes, bool secret, QString *error)
{
    const auto refuse = [&](const QString &reason) {
        *error = QStringLiteral("cannot use %1: %2").arg(path, reason);
        return std::nullopt;
    };
    // What is open is what is checked. A pipe must not stop the program.
    const int file = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (file < 0)
        return refuse(reasonFor(errno));
    QFile reader;
    if (!reader.open(file, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        ::close(file);
        return refuse(reader.errorString());
    }
    struct stat opened = {};
    if (::fstat(file, &opened) != 0)
        return refuse(reasonFor(errno));
    if (!S_ISREG(opened.st_mode))
        return refuse(QStringLiteral("it is not a regular file"));
    if (secret) {
        const QString reason = whyNotPrivate(opened);
        if (!reason.isEmpty())
            return refuse(reason);
    }
    QByteArray content = reader.read(mostBytes + 1);
    if (content.size() > mostBytes)
        return refuse(QStringLiteral("it has more than %1 bytes").arg(mostBytes));
    return content;
}

} // namespace

void keepOutOfDumps()
{
    ::prctl(PR_SET_DUMPABLE, 0);
}

std::optional<QByteArray> readSmallFile(const QString &path, int mostBytes, QString *error)
{
    return read(path, mostBytes, false, error);
}

std::optional<QByteArray> readPrivateFile(const QString &path, int mostBytes, QString *error)
{
    keepOutOfDumps();
    return read(path, mostBytes, true, error);
}

bool writePrivateFile(const QString &path, const QByteArray &content, QString *error)
{
    // A link stays, and leads to the new content.
    const QString real = QFileInfo(path).canonicalFilePath();
    const QByteArray name = QFile::encodeName(real.isEmpty() ? path : real);
    QByteArray fresh = name + ".XXXXXX";
    const int file = ::mkostemp(fresh.data(), O_CLOEXEC); // for its owner alone
    bool written = file >= 0;
    if (written) {
        const ssize_t length = ::write(file, content.constData(), std::size_t(content.size()));
        written = length == content.size() && ::fsync(file) == 0;
        written = ::close(file) == 0 && written;
    }
    written = written && ::rename(fresh.constData(), name.constData()) == 0;
    if (!written) {
        *error = QStringLiteral("cannot write %1: %2").arg(path, reasonFor(errno));
        if (file >= 0)
            ::unlink(fresh.constData());
    }
    return written;
}

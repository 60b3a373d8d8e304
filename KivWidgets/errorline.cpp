// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "errorline_p.h"

#include <QtCore/QByteArray>
#include <QtCore/QObject>
#include <QtCore/QString>

#include <cstdarg>
#include <cstdio>
#include <ctime>

namespace KivPrivate {

void writeErrorLine(SourcePlace place, const char *format, ...)
{
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    char clock[16];
    std::strftime(clock, sizeof clock, "[%H:%M:%S]", &local);

    QByteArray line(clock);
    line.append(place.file).append(" Err (").append(place.function).append("): ");

    va_list arguments;
    va_start(arguments, format);
    va_list measured;
    va_copy(measured, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, measured);
    va_end(measured);
    if (length > 0) {
        const auto head = line.size();
        // One byte more for the terminator, which is not written.
        line.resize(head + length + 1);
        std::vsnprintf(line.data() + head, static_cast<std::size_t>(length) + 1, format, arguments);
        line.chop(1);
    }
    va_end(arguments);

    std::fwrite(line.constData(), 1, static_cast<std::size_t>(line.size()), stderr);
    std::fflush(stderr);
}

void reportNullImage(SourcePlace place, const QObject *widget, const char *imageName)
{
    const QByteArray name = widget->objectName().toLatin1();
    writeErrorLine(place, "Nel controllo %s %s e' NULL\n", name.constData(), imageName);
}

} // namespace KivPrivate

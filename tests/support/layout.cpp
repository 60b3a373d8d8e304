// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "layout.h"

#include <QtCore/QByteArray>

#include <dlfcn.h>
#include <link.h>

namespace {

std::size_t aligned(std::size_t offset, std::size_t alignment)
{
    return (offset + alignment - 1) / alignment * alignment;
}

/// The size of the table that a library exports; 0 where there is none.
std::size_t virtualTableSize(const char *name)
{
    const QByteArray symbol = "_ZTV" + QByteArray::number(int(qstrlen(name))) + name;
    const void *table = dlsym(RTLD_DEFAULT, symbol.constData());
    Dl_info info;
    void *found = nullptr;
    if (!table || dladdr1(table, &info, &found, RTLD_DL_SYMENT) == 0 || !found)
        return 0;
    return static_cast<const ElfW(Sym) *>(found)->st_size;
}

} // namespace

QString gapIn(const std::vector<LayoutPart> &parts, std::size_t size)
{
    std::size_t end = 0;
    std::size_t strictest = 1;
    for (const LayoutPart &part : parts) {
        if (part.offset != aligned(end, part.alignment))
            return QStringLiteral("%1 is at %2 instead of %3")
                .arg(QLatin1String(part.name))
                .arg(part.offset)
                .arg(aligned(end, part.alignment));
        end = part.offset + part.size;
        strictest = qMax(strictest, part.alignment);
    }
    if (size != aligned(end, strictest))
        return QStringLiteral("%1 bytes instead of %2").arg(size).arg(aligned(end, strictest));
    return QString();
}

QString virtualTableProblem(const char *name, const std::vector<LayoutPart> &parts, int functions)
{
    std::size_t expected = std::size_t(functions) * sizeof(void *);
    for (const LayoutPart &part : parts) {
        if (!part.isBase)
            continue;
        const std::size_t size = virtualTableSize(part.name);
        if (size == 0)
            return QStringLiteral("no virtual table of %1").arg(QLatin1String(part.name));
        expected += size;
    }
    const std::size_t size = virtualTableSize(name);
    if (size == expected)
        return QString();
    return QStringLiteral("the virtual table of %1 has %2 bytes instead of %3")
        .arg(QLatin1String(name))
        .arg(size)
        .arg(expected);
}

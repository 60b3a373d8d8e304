// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "danger.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QRegularExpression>

namespace {

struct DangerRow
{
    const char *pattern; // of the whole name
    const char *consequence;
};

// The first row that fits counts; harmless ones have no consequence.
const DangerRow dangers[] = {
    {R"((.*\.)?shutdown\.stop)", ""},
    {R"(beeper\..*)", ""},
    {R"(outlet.*\.(load\.off|load\.cycle|shutdown).*)",
     QT_TRANSLATE_NOOP("Danger", "Switches the outlet off: what it feeds loses power.")},
    {R"((.*\.)?load\.(off|cycle).*)",
     QT_TRANSLATE_NOOP("Danger",
                       "Switches the output off: everything that the UPS feeds loses power.")},
    {R"((.*\.)?(shutdown|driver\.killpower|reboot).*)",
     QT_TRANSLATE_NOOP("Danger", "Shuts the UPS down: everything that it feeds loses power.")},
    {R"(bypass\.start.*)",
     QT_TRANSLATE_NOOP("Danger", "Feeds the load straight from the mains: it is not protected.")},
    {R"((test\.battery|test\.failure|calibrate)\.start.*)",
     QT_TRANSLATE_NOOP("Danger", "Runs the load on battery: a weak battery drops it.")},
    // What is not known by name, but says what it does.
    {R"(.*(\b|_)(off|kill|killpower|cycle|reboot|poweroff)(\b|_).*)",
     QT_TRANSLATE_NOOP("Danger", "May switch off what the UPS feeds.")},
};

const DangerRow settingDangers[] = {
    {R"(outlet(\..*)?\.switch)",
     QT_TRANSLATE_NOOP("Danger", "Switches the outlet: what it feeds may lose power.")},
};

template <std::size_t count>
QString find(const DangerRow (&rows)[count], const QString &name)
{
    for (const DangerRow &row : rows) {
        const QRegularExpression pattern(
            QRegularExpression::anchoredPattern(QLatin1String(row.pattern)));
        if (pattern.match(name).hasMatch())
            return QCoreApplication::translate("Danger", row.consequence);
    }
    return {};
}

} // namespace

QString consequenceOf(const QString &name)
{
    return find(dangers, name);
}

QString consequenceOfSetting(const QString &name)
{
    return find(settingDangers, name);
}

bool isNeverOffered(const QString &name)
{
    // The server's own order to shut all its clients down.
    return name.compare(QLatin1String("fsd"), Qt::CaseInsensitive) == 0;
}

// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "nutoffer.h"

#include "nutmapping.h"
#include "plaintext.h"

#include <algorithm>
#include <utility>

namespace {

/// Commands, settings, and choices or ranges of a setting.
constexpr int mostOffered = 200;

QString text(const QByteArray &bytes)
{
    constexpr int longest = 200;
    return plainText(QString::fromUtf8(bytes), longest);
}

/// The text of an answer that is only one.
QString textOf(const NutReader &answer)
{
    return text(answer.rows().value(0).value(0));
}

void takeType(const NutReader &answer, OfferedSetting *setting)
{
    const QVector<QByteArray> words = answer.rows().value(0);
    setting->isNumber = words.contains("NUMBER");
    for (const QByteArray &word : words) {
        if (word.startsWith("STRING:"))
            setting->longest = std::max(word.mid(int(sizeof "STRING")).toInt(), 0);
    }
}

void takeChoices(const NutReader &answer, OfferedSetting *setting)
{
    for (const QVector<QByteArray> &choice : answer.rows()) {
        if (setting->choices.size() < mostOffered)
            setting->choices += text(choice.value(0));
    }
}

void takeRanges(const NutReader &answer, OfferedSetting *setting)
{
    for (const QVector<QByteArray> &range : answer.rows()) {
        const auto from = nutNumber(QString::fromUtf8(range.value(0)));
        const auto to = nutNumber(QString::fromUtf8(range.value(1)));
        if (from && to && *from <= *to && setting->ranges.size() < mostOffered)
            setting->ranges.append({*from, *to});
    }
}

} // namespace

NutOffer::NutOffer(NutLink *usedLink, const QString &upsName, Answered whenAnswered, Done whenDone)
    : link(usedLink)
    , ups(upsName.toLatin1())
    , answered(std::move(whenAnswered))
    , done(std::move(whenDone))
{}

void NutOffer::ask(NutLink *link, const QString &ups, const Answered &answered, const Done &done)
{
    std::make_shared<NutOffer>(link, ups, answered, done)->start();
}

void NutOffer::start()
{
    ask("LIST CMD " + ups, [this](const NutReader &names) { takeCommands(names); });
    // Also where the server refuses: the last question follows in any case.
    link->ask("LIST RW " + ups, [self = shared_from_this()](const NutReader &names) {
        self->takeSettings(names);
        // Answers keep their order: behind this one all is known.
        self->link->ask("VER", [self](const NutReader &) {
            self->done(self->offer);
            self->answered();
        });
        self->answered();
    });
}

/// Lets @p take see the answer, unless the server refuses.
void NutOffer::ask(const QByteArray &question, const NutLink::Answer &take)
{
    link->ask(question, [self = shared_from_this(), take](const NutReader &answer) {
        if (answer.state() == NutReader::State::Complete)
            take(answer);
        self->answered();
    });
}

void NutOffer::takeCommands(const NutReader &names)
{
    for (const QVector<QByteArray> &row : names.rows()) {
        const QString name = QString::fromUtf8(row.value(0));
        if (!isNutName(name) || offer.commands.size() >= mostOffered)
            continue;
        const int index = int(offer.commands.size());
        offer.commands.append({name, {}});
        ask("GET CMDDESC " + ups + ' ' + row.value(0), [this, index](const NutReader &answer) {
            offer.commands[index].description = textOf(answer);
        });
    }
}

void NutOffer::takeSettings(const NutReader &names)
{
    for (const QVector<QByteArray> &row : names.rows()) {
        const QString name = QString::fromUtf8(row.value(0));
        if (!isNutName(name) || offer.settings.size() >= mostOffered)
            continue;
        const int index = int(offer.settings.size());
        OfferedSetting setting;
        setting.name = name;
        setting.value = text(row.value(1));
        offer.settings.append(setting);
        askAboutSetting(row.value(0), index);
    }
}

void NutOffer::askAboutSetting(const QByteArray &name, int index)
{
    const QByteArray subject = ups + ' ' + name;
    ask("GET DESC " + subject, [this, index](const NutReader &answer) {
        offer.settings[index].description = textOf(answer);
    });
    ask("GET TYPE " + subject,
        [this, index](const NutReader &answer) { takeType(answer, &offer.settings[index]); });
    ask("LIST ENUM " + subject,
        [this, index](const NutReader &answer) { takeChoices(answer, &offer.settings[index]); });
    ask("LIST RANGE " + subject,
        [this, index](const NutReader &answer) { takeRanges(answer, &offer.settings[index]); });
}

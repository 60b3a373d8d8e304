// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "nutlink.h"
#include "offer.h"

#include <QtCore/QByteArray>

#include <functional>
#include <memory>

/// The questions that find out what a UPS offers. They come in two turns: the names of its commands
/// and settings, and then all that is to know of each.
class NutOffer : public std::enable_shared_from_this<NutOffer>
{
public:
    using Answered = std::function<void()>;
    using Done = std::function<void(const Offer &)>;

    /// Asks over @p link, which must be open. @p answered is called behind each answer, @p done
    /// once, when all is known. The questions keep this alive until then.
    static void ask(NutLink *link, const QString &ups, const Answered &answered, const Done &done);

    NutOffer(NutLink *usedLink, const QString &upsName, Answered whenAnswered, Done whenDone);

private:
    void start();
    void ask(const QByteArray &question, const NutLink::Answer &take);
    void takeCommands(const NutReader &names);
    void takeSettings(const NutReader &names);
    void askAboutSetting(const QByteArray &name, int index);

    NutLink *const link;
    const QByteArray ups;
    const Answered answered;
    const Done done;
    Offer offer;
};

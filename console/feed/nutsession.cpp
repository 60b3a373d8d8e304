// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "nutsession.h"

#include "plaintext.h"
#include "privatefile.h"

#include <QtCore/QDateTime>
#include <QtCore/QPointer>

#include <algorithm>
#include <utility>

namespace {

constexpr std::size_t mostJobs = 20;

/// Why a server does not do what it was asked.
QString wordsFor(const QString &code)
{
    static const struct
    {
        const char *code;
        const char *words;
    } table[] = {
        {"ACCESS-DENIED", "the user's name, password or rights are wrong"},
        {"USERNAME-REQUIRED", "the server knows no user"},
        {"PASSWORD-REQUIRED", "the server knows no password"},
        {"CMD-NOT-SUPPORTED", "the UPS has no such command"},
        {"VAR-NOT-SUPPORTED", "the UPS has no such setting"},
        {"READONLY", "the UPS does not let this be set"},
        {"INVALID-VALUE", "the UPS does not take this value"},
        {"TOO-LONG", "the value is too long for the UPS"},
        {"INVALID-ARGUMENT", "the argument is invalid"},
        {"DRIVER-NOT-CONNECTED", "the UPS's driver is not running"},
        {"DATA-STALE", "the UPS's driver gives no fresh data"},
        {"UNKNOWN-UPS", "the server knows no such UPS"},
        {"INSTCMD-FAILED", "the UPS's driver did not take the command"},
        {"SET-FAILED", "the UPS's driver did not take the value"},
        {"FAILED", "the UPS tried and could not"},
        {"UNKNOWN", "the UPS's driver does not know it"},
    };
    for (const auto &row : table) {
        if (code == QLatin1String(row.code))
            return QString::fromLatin1(row.words);
    }
    return QStringLiteral("the server answers \"%1\"").arg(plainText(code, 40));
}

qint64 now()
{
    return QDateTime::currentMSecsSinceEpoch();
}

} // namespace

NutSession::NutSession(const NutHost &host, const NutTls &tls, const NutSessionTimes &usedTimes,
                       QObject *parent)
    : QObject(parent)
    , times(usedTimes)
    , link(host, tls)
{
    for (QTimer *timer : {&deadline, &tracking, &idle})
        timer->setSingleShot(true);
    connect(&link, &NutLink::opened, this, &NutSession::logIn);
    connect(&link, &NutLink::failed, this, &NutSession::lose);
    connect(&deadline, &QTimer::timeout, this, [this] {
        link.drop();
        lose(QStringLiteral("no answer for %1 s").arg(deadline.interval() / 1000.0));
    });
    connect(&tracking, &QTimer::timeout, this, &NutSession::askForTracking);
    connect(&idle, &QTimer::timeout, this, [this] {
        phase = Phase::Closed;
        link.close();
    });
}

NutSession::~NutSession()
{
    wipe(&secret);
    wipe(&formerSecret);
}

void NutSession::wipe(QByteArray *text)
{
    text->fill('\0');
    text->clear();
}

bool NutSession::setUser(const QString &newUser, const QString &password)
{
    const std::optional<QByteArray> quotedName = quotedForNut(newUser);
    std::optional<QByteArray> quotedPassword = quotedForNut(password);
    if (!quotedName || !quotedPassword || newUser.isEmpty() || password.isEmpty())
        return false;
    keepOutOfDumps();
    link.close();
    lose(QStringLiteral("another user logged in"));
    if (formerName.isEmpty()) {
        formerName = userName;
        formerSecret.swap(secret);
    }
    wipe(&secret);
    userName = newUser;
    forgotten.clear();
    quotedUser = *quotedName;
    secret.swap(*quotedPassword);
    return true;
}

void NutSession::acceptUser()
{
    formerName.clear();
    wipe(&formerSecret);
}

void NutSession::refuseUser()
{
    const std::optional<QByteArray> quotedName = quotedForNut(formerName);
    if (formerName.isEmpty() || !quotedName) {
        forgetUser();
        return;
    }
    link.close();
    lose(QStringLiteral("another user logged in"));
    secret.swap(formerSecret);
    userName = formerName;
    quotedUser = *quotedName;
    acceptUser();
}

void NutSession::forgetUser(const QString &reason)
{
    link.close();
    lose(QStringLiteral("nobody is logged in"));
    acceptUser();
    wipe(&secret);
    userName.clear();
    quotedUser.clear();
    forgotten = reason;
}

const QString &NutSession::forgottenFor() const
{
    return forgotten;
}

bool NutSession::isEncrypted() const
{
    return link.isTlsRequired();
}

bool NutSession::hasUser() const
{
    return !secret.isEmpty();
}

const QString &NutSession::user() const
{
    return userName;
}

void NutSession::probe(const QString &upsName, const Done &done)
{
    // Right users hear that there is no such variable, all others that access is denied.
    addJob("SET VAR " + upsName.toLatin1() + " no.such \"1\"", true, done);
}

void NutSession::run(const QString &upsName, const QString &command, const QString &value,
                     const Done &done)
{
    QByteArray line = "INSTCMD " + upsName.toLatin1() + ' ' + command.toUtf8();
    const std::optional<QByteArray> quoted = quotedForNut(value);
    if (!isNutName(command) || !quoted) {
        refuseLater(QStringLiteral("the server cannot be asked for this"), done);
        return;
    }
    if (!value.isEmpty())
        line += ' ' + *quoted;
    addJob(line, false, done);
}

void NutSession::set(const QString &upsName, const QString &variable, const QString &value,
                     const Done &done)
{
    const std::optional<QByteArray> quoted = quotedForNut(value);
    // An empty value deletes the variable in some drivers.
    if (!isNutName(variable) || !quoted || value.isEmpty()) {
        refuseLater(QStringLiteral("the server cannot be asked for this"), done);
        return;
    }
    addJob("SET VAR " + upsName.toLatin1() + ' ' + variable.toUtf8() + ' ' + *quoted, false, done);
}

void NutSession::refuseLater(const QString &reason, const Done &done)
{
    QTimer::singleShot(0, this, [=] { done(CommandOutcome::Refused, reason); });
}

void NutSession::addJob(const QByteArray &line, bool probes, const Done &done)
{
    if (!hasUser()) {
        refuseLater(QStringLiteral("nobody is logged in"), done);
        return;
    }
    if (jobs.size() >= mostJobs) {
        refuseLater(QStringLiteral("too many commands at once"), done);
        return;
    }
    Job job;
    job.id = ++lastId;
    job.line = line;
    job.probes = probes;
    job.done = done;
    jobs.push_back(std::move(job));
    idle.stop();
    if (phase == Phase::Ready) {
        send(&jobs.back());
    } else if (phase == Phase::Closed) {
        phase = Phase::Opening;
        link.open(times.open);
    }
}

void NutSession::logIn()
{
    phase = Phase::LoggingIn;
    deadline.start(times.open);
    expectOk("USERNAME ", quotedUser, &NutSession::sendPassword);
}

void NutSession::expectOk(const char *line, const QByteArray &argument, void (NutSession::*next)())
{
    link.ask(line + argument, [this, next](const NutReader &answer) {
        if (answer.state() == NutReader::State::Complete) {
            (this->*next)();
            return;
        }
        // A server's own words might be what it was just sent.
        const bool known = answer.problem() == QLatin1String("ACCESS-DENIED");
        const QString reason =
            known ? wordsFor(answer.problem()) : QStringLiteral("the server refuses the login");
        // Ends the answer too.
        link.close();
        lose(reason);
    });
}

void NutSession::sendPassword()
{
    expectOk("PASSWORD ", secret, &NutSession::switchTrackingOn);
}

void NutSession::switchTrackingOn()
{
    // A server that is too old for it leaves every outcome open.
    link.ask("SET TRACKING ON", [this](const NutReader &answer) {
        tracks = answer.state() == NutReader::State::Complete;
        ready();
    });
}

void NutSession::ready()
{
    phase = Phase::Ready;
    deadline.stop();
    for (Job &job : jobs)
        send(&job);
}

void NutSession::send(Job *job)
{
    job->sent = true;
    const int id = job->id;
    deadline.start(times.answer);
    link.ask(job->line, [this, id](const NutReader &answer) { takeAnswer(id, answer); });
}

void NutSession::takeAnswer(int id, const NutReader &answer)
{
    if (link.pending() == 0)
        deadline.stop();
    Job *job = find(id);
    if (!job)
        return;
    const QString &code = answer.problem();
    if (job->probes) {
        if (code == QLatin1String("VAR-NOT-SUPPORTED"))
            finish(id, CommandOutcome::Done, QString());
        else if (code == QLatin1String("ACCESS-DENIED"))
            finish(id, CommandOutcome::Refused, wordsFor(code));
        else
            finish(id, CommandOutcome::Failed,
                   QStringLiteral("the user cannot be checked now: ") + wordsFor(code));
        return;
    }
    if (answer.state() == NutReader::State::Refused) {
        finish(id, CommandOutcome::Refused, wordsFor(code));
        return;
    }
    const QVector<QByteArray> words = answer.rows().value(0);
    if (words.value(0) != "OK") {
        finish(id, CommandOutcome::Unconfirmed,
               QStringLiteral("the server's answer is not understood"));
    } else if (tracks && words.value(1) == "TRACKING" &&
               isNutName(QString::fromUtf8(words.value(2)))) {
        job->tracking = words.value(2);
        job->deadline = now() + times.confirmation;
        askForTracking();
    } else {
        finish(id, CommandOutcome::Unconfirmed,
               QStringLiteral("handed to the UPS; the server does not say how it ended"));
    }
}

void NutSession::askForTracking()
{
    bool any = false;
    std::vector<int> late;
    for (const Job &job : jobs) {
        if (job.tracking.isEmpty())
            continue;
        if (now() >= job.deadline) {
            late.push_back(job.id);
            continue;
        }
        any = true;
        const int id = job.id;
        if (link.isOpen())
            link.ask("GET TRACKING " + job.tracking,
                     [this, id](const NutReader &answer) { takeTracking(id, answer); });
    }
    if (any) {
        tracking.start(times.poll);
        if (!deadline.isActive())
            deadline.start(times.answer);
    }
    for (const int id : late)
        finish(id, CommandOutcome::Unconfirmed,
               QStringLiteral("the UPS has not answered within %1 s")
                   .arg(times.confirmation / 1000.0));
}

void NutSession::takeTracking(int id, const NutReader &answer)
{
    if (link.pending() == 0)
        deadline.stop();
    if (!find(id))
        return;
    if (answer.state() == NutReader::State::Refused)
        finish(id, CommandOutcome::Failed, wordsFor(answer.problem()));
    else if (answer.firstWord() == QLatin1String("SUCCESS"))
        finish(id, CommandOutcome::Done, QString());
    // PENDING: the next question follows.
}

/// Without a connection: what was sent may have happened.
void NutSession::lose(const QString &reason)
{
    phase = Phase::Closed;
    for (QTimer *timer : {&deadline, &tracking, &idle})
        timer->stop();
    std::vector<Job> given;
    given.swap(jobs);
    const QPointer<NutSession> guard(this);
    for (const Job &job : given) {
        if (!guard)
            return;
        if (job.probes)
            job.done(CommandOutcome::Failed,
                     QStringLiteral("the user cannot be checked now: ") + reason);
        else if (job.sent)
            job.done(CommandOutcome::Unconfirmed,
                     QStringLiteral("the connection was lost: ") + reason);
        else
            job.done(CommandOutcome::Refused, QStringLiteral("not sent: ") + reason);
    }
}

void NutSession::finish(int id, CommandOutcome outcome, const QString &text)
{
    const auto found =
        std::find_if(jobs.begin(), jobs.end(), [id](const Job &job) { return job.id == id; });
    if (found == jobs.end())
        return;
    const Done done = std::move(found->done);
    jobs.erase(found);
    if (jobs.empty())
        idle.start(times.idle);
    done(outcome, text);
}

NutSession::Job *NutSession::find(int id)
{
    const auto found =
        std::find_if(jobs.begin(), jobs.end(), [id](const Job &job) { return job.id == id; });
    return found == jobs.end() ? nullptr : &*found;
}

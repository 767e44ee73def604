// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/Changes.h"

#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/Identity.h"
#include "GitKit/repository/Locks.h"
#include "GitKit/runner/RunContext.h"
#include "app/store/ActionRuns.h"
#include "app/store/FailureWays.h"
#include "app/store/ShownText.h"
#include "app/store/Trust.h"
#include "app/store/WindowState.h"

#include <QLocale>
#include <QMetaObject>

#include <algorithm>
#include <chrono>
#include <utility>

namespace plovik {

using gitkit::GitRepository;

namespace {

/// For so long a change without a title may run unsaid.
constexpr std::chrono::milliseconds untitledTime{2000};

/// So many programs stand in a question.
constexpr std::size_t mostPrograms = 8;

struct ChangeTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::Changes)
};

/// What writes contents runs filters. What the user fetches runs the programs for it, after a question if there are any.
GitAccess::Programs programsFor(Verb verb)
{
    const bool writes = touches(verb, Touch::index) || touches(verb, Touch::workingTree);
    return writes ? GitAccess::Programs::run : GitAccess::Programs::fetchless;
}

/// Returns what a change runs, kept if anything keeps it.
GitAccess::Operation kept(const std::shared_ptr<StepKeeping>& keeping, const Change& change,
                          std::weak_ptr<const std::monostate> alive)
{
    return [keeping, prepare = change.prepare, operation = change.operation,
            alive = std::move(alive)](const GitRepository& repo) {
        if (prepare)
            prepare(repo);
        if (!keeping) {
            operation(repo);
            return;
        }
        keeping->begin(repo);
        try {
            operation(repo);
        } catch (...) {
            if (alive.expired()) // nobody goes on with it
                keeping->end(true);
            throw;
        }
        if (alive.expired())
            keeping->end(false);
    };
}

/// Returns the files that git knows and that are not as they are staged, if they are no more than are kept.
std::vector<std::string> changedByUser(const gitkit::ChangedFiles& files)
{
    constexpr std::size_t most = 2000;
    std::vector<std::string> paths;
    if (files.size() > most)
        return paths;
    for (const gitkit::FileChange& file : files) {
        if (!file.isUntracked() && !file.isSubmodule && file.hasUnstaged())
            paths.push_back(file.path);
    }
    return paths;
}

/// Returns the change, which moves a lock away before anything else.
Change withoutLock(Change change, const std::filesystem::path& lock)
{
    change.prepare = [prepare = change.prepare, lock](const GitRepository& repo) {
        gitkit::moveLockAway(repo, lock);
        if (prepare)
            prepare(repo);
    };
    return change;
}

/// Returns the change, which writes who makes the commits into the configuration before anything else.
Change withIdentity(Change change, const gitkit::Identity& identity, gitkit::IdentityPlace place)
{
    change.prepare = [prepare = change.prepare, identity, place](const GitRepository& repo) {
        gitkit::setIdentity(repo, identity, place);
        if (prepare)
            prepare(repo);
    };
    return change;
}

QString titleOfSlow(Verb verb)
{
    switch (verb) {
    case Verb::stage:
        return ChangeTexts::tr("Staging…");
    case Verb::unstage:
        return ChangeTexts::tr("Unstaging…");
    case Verb::discard:
        return ChangeTexts::tr("Discarding…");
    case Verb::undoDiscard:
        return ChangeTexts::tr("Bringing back…");
    case Verb::takeSide:
        return ChangeTexts::tr("Resolving…");
    case Verb::takeFile:
        return ChangeTexts::tr("Taking the file…");
    case Verb::ignore:
        return ChangeTexts::tr("Ignoring…");
    case Verb::undo:
        return ChangeTexts::tr("Undoing…");
    default:
        return ChangeTexts::tr("Working…");
    }
}

} // namespace

Changes::Changes(const GitAccess& git, const CommandLog& log, Snapshot& snapshot, Trust& trust, WindowState& window,
                 OpenSignIn signIn)
    : git_(git), log_(log), snapshot_(snapshot), trust_(trust), window_(window), openSignIn_(std::move(signIn))
{}

Changes::~Changes() = default;

bool Changes::run(Change change)
{
    if (isReadOnly() || (!change.title.isEmpty() && !offers(change.verb))) {
        // A question may have been answered after something else began.
        window_.tell(whyNot(change.verb));
        return false;
    }
    if (asksFirst(change.verb)) {
        askToTrust(std::move(change));
        return false;
    }
    if (change.begins)
        change.begins();
    window_.forgetWaysOfCommand();
    const quint64 number = ++lastNumber_;
    runs_.push_back({.shown = {number, change.verb, change.title}, .stop = {}, .isQuick = change.title.isEmpty()});
    turnsTaken_ += takesTurn(change.verb) ? 1 : 0;
    show();
    if (change.title.isEmpty())
        showIfSlow(number);
    launch(running_(std::move(change), number));
    return true;
}

bool Changes::asksFirst(Verb verb) const { return trust_.asksBefore(verb); }

void Changes::askToTrust(Change change)
{
    Confirmation question;
    question.title = tr("Let this repository run its programs?");
    question.message = tr("Its configuration names programs that git runs for this. They have been kept off so far.");
    question.detail = Trust::listOf(trust_.keptOff.value(), mostPrograms);
    question.actionTitle = tr("Trust and Continue");
    question.action = [this, shown = trust_.keptOff.value(), change = std::move(change)] {
        trust_.trust(shown);
        if (change.isFromDiff)
            window_.tell(tr("Nothing was done yet: the file may look different now. Choose again what is meant."));
        else
            run(change);
    };
    window_.ask(std::move(question));
}

QCoro::Task<> Changes::running_(Change change, quint64 number)
{
    const std::shared_ptr<ActionRuns> runs = listenTo(number);
    const auto run = find(number);
    run->commands = runs;
    const std::stop_token stop = run->stop.get_token();
    gitkit::RunContext context{.listener = runs, .stop = stop};
    run->signIn = signIns_.begin(change.title, openSignIn_, context);
    const Worker::Lane lane = touches(change.verb, Touch::network) ? Worker::Lane::network : Worker::Lane::change;
    std::shared_ptr<StepKeeping> keeping;
    if (change.undo) {
        Undoable undo = *change.undo;
        if (undo.scope.movesFiles)
            undo.scope.changed = changedByUser(snapshot_.status.value().files);
        keeping = std::make_shared<StepKeeping>(std::move(undo), snapshot_.gitDirectory(), change.consent);
    }
    std::optional<Turnstile::Pass> pass;
    std::optional<Failure> failure;
    bool isAsked = false; // the change waits for an answer, and nothing was done
    try {
        if (takesTurn(change.verb)) {
            run->isWaiting = true;
            pass.emplace(co_await turns_.enter());
            run->isWaiting = false;
        }
        co_await git_.change(lane, context, programsFor(change.verb), kept(keeping, change, git_.alive()));
    } catch (const std::exception& thrown) {
        failure = failureOf(thrown);
        failure->command = runs->failed();
        isAsked = !stop.stop_requested() && asksToKeep(change, thrown);
    }
    signIns_.end(run->signIn);
    runs_.erase(run);
    turnsTaken_ -= takesTurn(change.verb) ? 1 : 0;
    ++ended_;
    show();
    if (change.ended)
        change.ended();
    if (!failure && change.succeeded)
        change.succeeded();
    if (failure && stop.stop_requested())
        offerAgain(change, *runs);
    // A failure after a cancel is a result of the cancel. The log still shows it.
    if (failure && !isAsked && !stop.stop_requested() && !(change.failed && change.failed(*failure)) &&
        !(tellStops_ && tellStops_(*failure)))
        reportWithWays(
            git_, window_, *failure,
            {.again = [this, change] { this->run(change); },
             .withoutLock = [this, change](const auto& lock) { this->run(withoutLock(change, lock)); },
             .withIdentity = [this, change](const auto& identity,
                                            auto place) { this->run(withIdentity(change, identity, place)); }});
    snapshot_.refresh(change.title.isEmpty() ? RefreshScope::status : RefreshScope::full);
    // What was done is shown meanwhile; the next change waits for the end of this one's record.
    if (keeping && keeping->isKept())
        co_await keepingEnd(keeping, change.verb, failure.has_value());
}

QCoro::Task<> Changes::keepingEnd(std::shared_ptr<StepKeeping> keeping, Verb verb, bool hasFailed)
{
    try {
        co_await git_.change(Worker::Lane::change, {}, programsFor(verb),
                             [keeping, hasFailed](const GitRepository&) { keeping->end(hasFailed); });
    } catch (const std::exception&) { // as for a repository that is gone: the next window finds a step without an end
        co_return;
    }
    if (tellKept_)
        tellKept_(*keeping);
}

/// Asks where the way back cannot be kept as it is. Returns whether it does.
bool Changes::asksToKeep(const Change& change, const std::exception& thrown)
{
    if (const auto* const untracked = dynamic_cast<const UntrackedInTheWay*>(&thrown)) {
        askToMoveAside(change, untracked->paths());
        return true;
    }
    if (const auto* const notKept = dynamic_cast<const NotKept*>(&thrown)) {
        askToDoWithoutUndo(change, *notKept);
        return true;
    }
    return false;
}

void Changes::askToMoveAside(Change change, const std::vector<std::string>& paths)
{
    Confirmation question;
    question.title = tr("%Ln file(s) are in the way", nullptr, static_cast<int>(paths.size()));
    question.message = tr("Git does not know them, and files of the same names would come in their places. They can be "
                          "moved aside. Undo brings them back.");
    question.detail = namesInLines(paths);
    question.actionTitle = tr("Move Aside and Continue");
    question.risk = Confirmation::Risk::none;
    change.consent = StepKeeping::Consent::movesUntracked;
    question.action = [this, change = std::move(change)] { run(change); };
    window_.ask(std::move(question));
}

void Changes::askToDoWithoutUndo(Change change, const NotKept& why)
{
    Confirmation question;
    question.title = tr("No way back could be kept");
    question.message = why.bytes()
                           ? tr("%1 of changes cannot be kept, so nothing was done. Without a way back they are "
                                "gone for good.")
                                 .arg(QLocale().formattedDataSize(static_cast<qint64>(*why.bytes())))
                           : tr("Nothing was done. %1").arg(failureOf(why).message);
    question.actionTitle = tr("Do It Without Undo");
    change.consent = StepKeeping::Consent::noUndo;
    question.action = [this, change = std::move(change)] {
        if (change.undo->kept)
            change.undo->kept->isLeftOut = true;
        run(change);
    };
    window_.ask(std::move(question));
}

/// The listener is called on the threads of the runs, possibly after the store has been destroyed.
std::shared_ptr<ActionRuns> Changes::listenTo(quint64 number)
{
    const auto set = [this, number, alive = std::weak_ptr(git_.alive())](std::function<void(Run&)> change) {
        QCoreApplication* const application = QCoreApplication::instance();
        if (!application)
            return;
        const auto tell = [this, number, alive, change = std::move(change)] {
            if (alive.expired())
                return;
            if (const auto run = find(number); run != runs_.end()) {
                change(*run);
                show();
            }
        };
        QMetaObject::invokeMethod(application, tell, Qt::QueuedConnection);
    };
    return std::make_shared<ActionRuns>(
        log_.listener(),
        [set](const std::string& line) { set([text = shownText(line)](Run& run) { run.progress = text; }); },
        [set](CommandLog::Number command, const std::optional<gitkit::HookRun>& hook) {
            set([command, hook](Run& run) {
                run.hook =
                    hook ? std::optional(RunningHook{command, shownText(hook->name), hook->began}) : std::nullopt;
            });
        });
}

std::list<Changes::Run>::iterator Changes::find(quint64 number)
{
    return std::ranges::find(runs_, number, [](const Run& run) { return run.shown.number; });
}

/// Shows a change that began without a title once it has taken too long to stay unsaid. It can be cancelled then.
void Changes::showIfSlow(quint64 number)
{
    find(number)->untilShown = git_.worker().after(untitledTime, [this, number] {
        const auto run = find(number);
        run->shown.title = titleOfSlow(run->shown.verb);
        show();
    });
}

/// Whether the change is among the running ones that are shown. One that was cancelled while it waited for its turn is as
/// good as ended.
bool Changes::isShown(const Run& run) { return !run.shown.title.isEmpty() && !(run.isWaiting && run.isCancelling); }

/// Updates the observed values from the running changes.
void Changes::show()
{
    std::vector<RunningChange> titled;
    const Run* newest = nullptr;
    for (const Run& run : runs_) {
        if (!isShown(run))
            continue;
        titled.push_back(run.shown);
        newest = &run;
    }
    running = std::move(titled);
    activity = newest ? std::optional(newest->shown.title) : std::nullopt;
    progress = newest ? newest->progress : QString();
    hook = newest ? newest->hook : std::nullopt;
    isCancelling = newest && newest->isCancelling;
}

bool Changes::isRunning(std::initializer_list<Verb> verbs) const
{
    return std::ranges::any_of(running.value(), [verbs](const RunningChange& change) {
        return std::ranges::find(verbs, change.verb) != verbs.end();
    });
}

std::optional<RunningChange> Changes::obstacle(Verb verb) const
{
    const auto clashes = [verb](const RunningChange& change) {
        return change.verb == verb || (takesTurn(verb) && takesTurn(change.verb)) ||
               (touches(verb, Touch::network) && touches(change.verb, Touch::network));
    };
    const auto found = std::ranges::find_if(running.value(), clashes);
    return found == running.value().end() ? std::nullopt : std::optional(*found);
}

QString Changes::whyNot(Verb verb) const
{
    if (isReadOnly())
        return tr("This is a bare repository: it has no working tree, and is only shown.");
    const std::optional<RunningChange> other = obstacle(verb);
    return other ? tr("Not while this runs: %1").arg(other->title) : QString();
}

void Changes::cancelActivity()
{
    const auto shown = std::find_if(runs_.rbegin(), runs_.rend(), &Changes::isShown);
    if (shown != runs_.rend())
        cancel(*shown);
}

std::list<Changes::Run>::const_iterator Changes::findWith(CommandLog::Number command) const
{
    return std::ranges::find_if(runs_,
                                [command](const Run& run) { return run.commands && run.commands->has(command); });
}

bool Changes::isOfRunning(CommandLog::Number command) const
{
    const auto run = findWith(command);
    return run != runs_.end() && !run->isCancelling;
}

void Changes::cancelChangeOf(CommandLog::Number command)
{
    if (const auto run = findWith(command); run != runs_.end())
        cancel(*find(run->shown.number));
}

/// Leaves a way on in the log, beside the last command of a change that was cancelled.
void Changes::offerAgain(const Change& change, const ActionRuns& runs)
{
    if (const std::optional<CommandLog::Number> last = runs.last(); last && !change.title.isEmpty())
        window_.keepWays(*last, {{tr("Run Again"), [this, change] { run(change); }}});
}

void Changes::cancel(Run& run)
{
    if (run.isCancelling)
        return;
    run.isCancelling = true;
    run.stop.request_stop();
    signIns_.refuse(run.signIn);
    show();
}

void Changes::cancelPrompt(quint64 id)
{
    const std::optional<SignIns::Cancelled> cancelled = signIns_.cancel(id);
    if (!cancelled || cancelled->kind != SignInKind::notice)
        return;
    // A program that waits for a security key does not notice that its question was refused, so its change is ended.
    const auto run = std::ranges::find(runs_, cancelled->number, &Run::signIn);
    if (run != runs_.end() && !run->shown.title.isEmpty())
        cancel(*run);
}

} // namespace plovik

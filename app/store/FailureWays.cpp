// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/FailureWays.h"

#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/Identity.h"
#include "GitKit/repository/Locks.h"
#include "GitKit/repository/Worktrees.h"
#include "app/store/ShownText.h"
#include "app/store/WindowState.h"

#include <QCoreApplication>

#include <memory>
#include <optional>
#include <utility>
#include <vector>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

using gitkit::ErrorKind;

struct FailureTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::FailureWays)
};

/// Says what is wrong on the way to a remote; empty for other failures.
QString remoteProblem(ErrorKind kind)
{
    switch (kind) {
    case ErrorKind::authentication:
        return FailureTexts::tr("The remote did not accept the name, the password or the key.");
    case ErrorKind::hostKey:
        return FailureTexts::tr("The key of the remote is not known here, so nothing was sent.");
    case ErrorKind::network:
        return FailureTexts::tr("The remote cannot be reached.");
    default:
        return {};
    }
}

QString shownAge(std::chrono::seconds age)
{
    const auto minutes = static_cast<int>(age.count() / 60);
    return minutes < 1 ? FailureTexts::tr("less than a minute old")
                       : FailureTexts::tr("%Ln minute(s) old", nullptr, minutes);
}

QString shownPrograms(const std::vector<std::string>& programs)
{
    constexpr std::size_t most = 5;
    QStringList names;
    for (std::size_t index = 0; index < std::min(programs.size(), most); ++index)
        names += shownText(programs[index]);
    return names.join(u", "_s);
}

QString sentenceFor(const gitkit::HeldLock& lock)
{
    const QString file = inQuotes(lock.file.filename().string());
    if (!lock.programs.empty())
        return FailureTexts::tr("The lock %1 is held. It is %2, and these programs work in this repository: %3.")
            .arg(file, shownAge(lock.age), shownPrograms(lock.programs));
    return lock.isLeftBehind()
               ? FailureTexts::tr(
                     "The lock %1 is held. It is %2, and no program works in this repository: a git that was "
                     "ended has left it.")
                     .arg(file, shownAge(lock.age))
               : FailureTexts::tr("The lock %1 is held. It is %2.").arg(file, shownAge(lock.age));
}

Failure saidFirst(Failure failure, const QString& sentence)
{
    failure.message = sentence + u"\n\n"_s + failure.message;
    failure.speaker = gitkit::Speaker::plovik;
    return failure;
}

QCoro::Task<> reportingLock(const GitAccess& git, WindowState& window, Failure failure, WaysFromFailure ways)
{
    std::optional<gitkit::HeldLock> lock;
    try {
        lock = co_await git.read(&gitkit::heldLock, failure.message.toStdString());
    } catch (const std::exception&) {
        lock.reset();
    }
    std::vector<Way> buttons{{FailureTexts::tr("Try Again"), ways.again}};
    if (lock && lock->isLeftBehind())
        buttons.push_back({FailureTexts::tr("Move the Lock Away"),
                           [without = ways.withoutLock, file = lock->file] { without(file); }});
    window.report(lock ? saidFirst(failure, sentenceFor(*lock)) : failure, std::move(buttons));
}

/// Offers the window of the working tree where the branch is checked out.
QCoro::Task<> leadingElsewhere(const GitAccess& git, WindowState& window, Failure failure)
{
    std::optional<std::filesystem::path> folder;
    try {
        folder = co_await git.read(&gitkit::otherWorktree, failure.message.toStdString());
    } catch (const std::exception&) {
        folder.reset();
    }
    const std::optional<Way> way = folder ? window.wayToWindow(*folder) : std::nullopt;
    if (!way) {
        window.report(failure);
        co_return;
    }
    Confirmation question;
    question.title = FailureTexts::tr("This branch is checked out in another working tree");
    question.message =
        FailureTexts::tr("A branch belongs to the working tree that has checked it out: no other one can "
                         "check it out, move it or delete it meanwhile.");
    question.detail = shownText(folder->native());
    question.actionTitle = way->title;
    question.action = way->action;
    question.risk = Confirmation::Risk::none;
    window.ask(std::move(question));
}

QCoro::Task<> askingForIdentity(const GitAccess& git, WindowState& window, WaysFromFailure ways)
{
    gitkit::Identity known;
    try {
        known = co_await git.read(&gitkit::identityNow);
    } catch (const std::exception&) {
        known = {};
    }
    window.showSheet(IdentitySheet{known, std::make_shared<const IdentitySheet::Then>(std::move(ways.withIdentity))});
}

} // namespace

Failure toldFirst(Failure failure)
{
    const QString problem = remoteProblem(failure.kind);
    return problem.isEmpty() ? failure : saidFirst(std::move(failure), problem);
}

void reportWithWays(const GitAccess& git, WindowState& window, const Failure& failure, WaysFromFailure ways)
{
    if (failure.kind == ErrorKind::lockHeld) {
        launch(reportingLock(git, window, failure, std::move(ways)));
        return;
    }
    if (failure.kind == ErrorKind::checkedOutElsewhere) {
        launch(leadingElsewhere(git, window, failure));
        return;
    }
    if (failure.kind == ErrorKind::identityUnknown) {
        launch(askingForIdentity(git, window, std::move(ways)));
        return;
    }
    if (remoteProblem(failure.kind).isEmpty())
        window.report(failure);
    else
        window.report(toldFirst(failure), {{FailureTexts::tr("Try Again"), std::move(ways.again)}});
}

} // namespace plovik

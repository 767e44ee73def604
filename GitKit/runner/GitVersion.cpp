// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/runner/GitVersion.h"

#include "GitKit/Text.h"
#include "GitKit/runner/GitError.h"
#include "GitKit/runner/GitExecutable.h"
#include "GitKit/runner/GitRunner.h"

#include <charconv>
#include <mutex>

namespace gitkit {

namespace {

/// Takes a number from the front of `text`; nullopt when there is none.
std::optional<int> takeNumber(std::string_view& text)
{
    int number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || number < 0)
        return std::nullopt;
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return number;
}

GitVersion readVersion()
{
    const std::string text = GitRunner("/").run({"version"});
    if (const auto version = GitVersion::parse(text))
        return *version;
    throw LaunchError(LaunchCause::other, "“" + GitExecutable::path().string() + "” is of an unknown version: “" +
                                              std::string(trimmed(text)) + "”.");
}

} // namespace

std::optional<GitVersion> GitVersion::parse(std::string_view text)
{
    constexpr std::string_view start = "git version ";
    if (!text.starts_with(start))
        return std::nullopt;
    text.remove_prefix(start.size());
    const std::optional<int> major = takeNumber(text);
    if (!major || !text.starts_with('.'))
        return std::nullopt;
    text.remove_prefix(1);
    const std::optional<int> minor = takeNumber(text);
    return minor ? std::optional(GitVersion{*major, *minor}) : std::nullopt;
}

GitVersion firstVersionWith(Ability ability)
{
    switch (ability) {
    case Ability::combinesMessages:
    case Ability::namesGlobalConfiguration:
        return {2, 32};
    case Ability::mergesByOrt:
    case Ability::signsWithSsh:
    case Ability::addsOutsideSparseCheckout:
        return {2, 34};
    case Ability::writesZealousConflicts:
    case Ability::stashesStaged:
    case Ability::guardsCheckedOutBranches:
        return {2, 35};
    case Ability::listsWorktreesSafely:
    case Ability::runsHooks:
        return {2, 36};
    case Ability::mergesInMemory:
    case Ability::movesBranchesInRebase:
        return {2, 38};
    case Ability::countsAheadBehind:
    case Ability::fetchesForPrograms:
        return {2, 41};
    case Ability::staysOffline:
    case Ability::keepsRefsInTables:
    case Ability::dropsEmptyPicks:
        return {2, 45};
    case Ability::movesSymbolicRefs:
        return {2, 46};
    case Ability::writesReflogs:
        return {2, 52};
    case Ability::readsHooksFromConfiguration:
        return {2, 54};
    case Ability::watchesFilesOnLinux:
        break;
    }
    return {2, 55};
}

GitVersion gitVersion()
{
    // A call that throws leaves the flag unset, so that a git that is installed later is found.
    static std::once_flag read;
    static GitVersion version;
    std::call_once(read, [] { version = readVersion(); });
    return version;
}

bool can(Ability ability) { return gitVersion() >= firstVersionWith(ability); }

} // namespace gitkit

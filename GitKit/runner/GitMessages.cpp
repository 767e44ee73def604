// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/runner/GitMessages.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace gitkit {

namespace {

using Kind = ErrorKind;

constexpr int anyStatus = -1;

/// One sentence of git. A line fits when it begins with `beginning` and holds `part` later on, in whatever case: git
/// has changed first letters between versions. A row without both fits every output.
struct Row {
    Kind kind;
    std::string_view command; ///< the subcommand that says it; empty for any
    int status;
    std::string_view beginning;
    std::string_view part;
};

// The first row that fits any line decides, so a row stands before those that are less particular. Lines that a server
// says begin with "remote: " and so fit no row. What hooks print looks like git's own, so sentences that hooks print
// often are bound to the status 128 with which git itself gives up.
constexpr auto rows = std::to_array<Row>({
    // Finding the repository: no .git above the folder; a .git file that names a folder that is gone.
    {Kind::notARepository, "", 128, "fatal: not a git repository", ""},
    // Another user owns it: since 2.35.3, and as 2.35.2 and the corrections of older versions say it.
    {Kind::refusedBySafeDirectory, "", 128, "fatal: detected dubious ownership in repository", ""},
    {Kind::refusedBySafeDirectory, "", 128, "fatal: unsafe repository", ""},
    // A folder of git's own, and safe.bareRepository=explicit in a bare repository.
    {Kind::bareRepository, "", 128, "fatal: this operation must be run in a work tree", ""},
    {Kind::bareRepository, "", 128, "fatal: cannot use bare repository", ""},

    // A diff of a file that was deleted since it was listed.
    {Kind::fileGone, "diff", anyStatus, "", "No such file or directory"},

    // Locks: the index and HEAD, refs, the configuration.
    {Kind::lockHeld, "", anyStatus, "fatal: ", ".lock': File exists"},
    {Kind::lockHeld, "", anyStatus, "error: ", ".lock': File exists"},
    {Kind::lockHeld, "", anyStatus, "error: could not lock config file", "File exists"},

    // A commit without a name or address: with user.useConfigOnly or where the system has no name for the user.
    {Kind::identityUnknown, "", 128, "*** Please tell me who you are.", ""},
    {Kind::identityUnknown, "", 128, "fatal: empty ident name", ""},

    // Changes in the working tree that checkout, merge, pull, cherry-pick, revert or stash would lose; the next two are
    // said before a rebase begins, the last where a folder is in the way.
    {Kind::wouldOverwriteLocalChanges, "", anyStatus, "error: Your local changes", "would be overwritten by"},
    {Kind::wouldOverwriteLocalChanges, "", anyStatus, "error: cannot pull with rebase: ", ""},
    {Kind::wouldOverwriteLocalChanges, "", anyStatus, "error: cannot rebase: ", ""},
    {Kind::wouldOverwriteUnknownFiles, "", anyStatus, "error: The following untracked working tree files would be", ""},
    {Kind::wouldOverwriteUnknownFiles, "", anyStatus, "error: Updating the following directories would lose", ""},

    // stash apply --index: the staged part does not apply any more.
    {Kind::indexNotRestorable, "stash", anyStatus, "error: conflicts in index.", ""},

    // Conflicts: a merge of files, on standard output; a picked or reverted commit; a command that must wait until they
    // are resolved; checkout; stash, on standard output.
    {Kind::conflicts, "", anyStatus, "CONFLICT (", ""},
    {Kind::conflicts, "", anyStatus, "error: could not apply ", ""},
    {Kind::conflicts, "", anyStatus, "error: could not revert ", ""},
    {Kind::conflicts, "", anyStatus, "error: ", " is not possible because you have unmerged files"},
    {Kind::conflicts, "checkout", anyStatus, "error: you need to resolve your current index first", ""},
    {Kind::conflicts, "stash", anyStatus, "", ": needs merge"},

    // A patch that was made from another state of the file.
    {Kind::changedMeanwhile, "apply", anyStatus, "error: patch failed: ", ""},

    // Deleting a branch.
    {Kind::notFullyMerged, "branch", anyStatus, "error: the branch '", "' is not fully merged"},
    // A branch of another working tree: checkout and deletion, before 2.41 and since.
    {Kind::checkedOutElsewhere, "", anyStatus, "fatal: '", "' is already checked out at '"},
    {Kind::checkedOutElsewhere, "", anyStatus, "fatal: '", "' is already used by worktree at '"},
    {Kind::checkedOutElsewhere, "branch", anyStatus, "error: cannot delete branch '", "' checked out at '"},
    {Kind::checkedOutElsewhere, "branch", anyStatus, "error: cannot delete branch '", "' used by worktree at '"},

    // New branches and tags.
    {Kind::alreadyExists, "", 128, "fatal: a branch named '", "' already exists"},
    {Kind::alreadyExists, "", 128, "fatal: tag '", "' already exists"},
    {Kind::alreadyExists, "remote", anyStatus, "error: remote ", " already exists"},
    {Kind::invalidName, "remote", anyStatus, "fatal: '", "' is not a valid remote name"},
    {Kind::invalidName, "", 128, "fatal: '", "' is not a valid branch name"},
    {Kind::invalidName, "", 128, "fatal: '", "' is not a valid tag name"},

    // Remotes that cannot be spoken to: ssh's own sentences first, then those of https, then git's last word.
    {Kind::hostKeyChanged, "", anyStatus, "", "REMOTE HOST IDENTIFICATION HAS CHANGED!"},
    {Kind::hostKey, "", anyStatus, "Host key verification failed", ""},
    {Kind::hostKey, "", anyStatus, "No ", " host key is known for "},
    {Kind::authentication, "", anyStatus, "", ": Permission denied ("},
    {Kind::authentication, "", anyStatus, "fatal: Authentication failed for ", ""},
    {Kind::authentication, "", anyStatus, "fatal: could not read Username for ", ""},
    {Kind::authentication, "", anyStatus, "fatal: could not read Password for ", ""},
    {Kind::authentication, "", anyStatus, "fatal: unable to access '", "The requested URL returned error: 403"},
    {Kind::network, "", anyStatus, "fatal: unable to access '", ""},
    {Kind::network, "", anyStatus, "fatal: unable to connect to ", ""},
    {Kind::network, "", anyStatus, "fatal: unable to look up ", ""},
    {Kind::network, "", anyStatus, "ssh: ", ""},
    {Kind::other, "", anyStatus, "fatal: '", "' does not appear to be a git repository"},
    {Kind::network, "", anyStatus, "fatal: Could not read from remote repository", ""},

    // Pushing: hooks of the server; its own refusals; what it has and we have not.
    {Kind::rejectedByHook, "push", anyStatus, " ! [remote rejected]", "hook declined)"},
    {Kind::notFastForward, "push", anyStatus, " ! [remote rejected]", "(non-fast-forward)"},
    {Kind::other, "push", anyStatus, " ! [remote rejected]", ""},
    {Kind::alreadyExists, "push", anyStatus, " ! [rejected]", "(already exists)"},
    {Kind::notFastForward, "push", anyStatus, " ! [rejected]", ""},
    // A push that nobody rejected was stopped by the hook that runs before it.
    {Kind::rejectedByHook, "push", 1, "error: failed to push some refs to ", ""},
    // Pulling: both sides have commits, and nothing says how to join them, or pull.ff=only.
    {Kind::notFastForward, "pull", anyStatus, "fatal: Need to specify how to reconcile divergent branches", ""},
    {Kind::notFastForward, "", anyStatus, "fatal: Not possible to fast-forward", ""},
    {Kind::noUpstream, "push", anyStatus, "fatal: The current branch ", " has no upstream branch"},
    {Kind::noUpstream, "push", anyStatus, "fatal: No configured push destination", ""},
    {Kind::noUpstream, "pull", anyStatus, "There is no tracking information for the current branch", ""},

    // Files: blame in the working tree and in a commit, cat-file, check-ignore.
    {Kind::ignoreListMissing, "blame", 128, "fatal: could not open object name list: ", ""},
    {Kind::noSuchPath, "blame", 128, "fatal: no such path ", ""},
    {Kind::noSuchPath, "", 128, "fatal: path '", "' does not exist in '"},
    {Kind::noSuchPath, "", 128, "fatal: path '", "' exists on disk, but not in '"},
    {Kind::insideSubmodule, "", 128, "fatal: Pathspec '", "' is in submodule '"},

    // A partial clone that may not fetch, or cannot.
    {Kind::contentsNotHere, "", 128, "fatal: could not fetch ", " from promisor remote"},

    // Damage: an object or commit that a ref or a tree names is missing, or its file is no object. "bad object" is also
    // what git says of a whole hash that somebody typed.
    {Kind::missingObject, "", anyStatus, "fatal: bad object ", ""},
    {Kind::missingObject, "", anyStatus, "fatal: unable to read ", ""},
    {Kind::missingObject, "", anyStatus, "error: unable to read sha1 file of ", ""},
    {Kind::missingObject, "", anyStatus, "fatal: loose object ", " is corrupt"},
    {Kind::missingObject, "", anyStatus, "fatal: could not parse HEAD", ""},
    {Kind::missingObject, "", anyStatus, "error: Could not read ", ""},

    // Names: a short hash; rev-parse; log and show with and without "--"; checkout; branch and tag, made and deleted;
    // merge; stash.
    {Kind::ambiguousName, "", anyStatus, "error: short object ID ", " is ambiguous"},
    {Kind::noSuchRef, "", 128, "fatal: Needed a single revision", ""},
    {Kind::noSuchRef, "", 128, "fatal: bad revision '", ""},
    {Kind::noSuchRef, "", 128, "fatal: ambiguous argument '", "unknown revision or path"},
    {Kind::noSuchRef, "", 128, "fatal: invalid reference: ", ""},
    {Kind::noSuchRef, "checkout", 1, "error: pathspec '", "' did not match any file(s) known to git"},
    {Kind::noSuchRef, "branch", 1, "error: branch '", "' not found"},
    {Kind::noSuchRef, "branch", 128, "fatal: not a valid object name: ", ""},
    {Kind::noSuchRef, "", 128, "fatal: not a valid object name ", ""},
    {Kind::noSuchRef, "tag", 1, "error: tag '", "' not found"},
    {Kind::noSuchRef, "tag", 128, "fatal: Failed to resolve '", "' as a valid ref"},
    {Kind::noSuchRef, "merge", 1, "merge: ", " - not something we can merge"},
    {Kind::noSuchRef, "stash", 1, "error: ", " is not a valid reference"},

    // Committing with nothing staged, on standard output; a picked commit whose changes are there already.
    {Kind::nothingToDo, "commit", 1, "nothing to commit", ""},
    {Kind::nothingToDo, "commit", 1, "nothing added to commit", ""},
    {Kind::nothingToDo, "commit", 1, "no changes added to commit", ""},
    {Kind::nothingToDo, "", 1, "The previous cherry-pick is now empty", ""},
    {Kind::nothingToDo, "revert", 1, "nothing to commit", ""},
    {Kind::nothingToDo, "revert", 1, "nothing added to commit", ""},
    {Kind::other, "commit", 1, "Aborting commit", ""},
    // Git itself says nothing when a hook ends a commit, and gives up with another status where it does.
    {Kind::rejectedByHook, "commit", 1, "", ""},
});

/// Commands that print sentences on standard output. What the others print there is data.
constexpr std::array<std::string_view, 9> tellingOnOutput{"am",   "checkout", "cherry-pick", "commit", "merge",
                                                          "pull", "rebase",   "revert",      "stash"};

char lower(char letter) { return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter; }

bool equalLetters(char one, char other) { return lower(one) == lower(other); }

bool fits(const Row& row, std::string_view line)
{
    if (line.size() < row.beginning.size() ||
        !std::ranges::equal(line.substr(0, row.beginning.size()), row.beginning, equalLetters))
        return false;
    return row.part.empty() || !std::ranges::search(line.substr(row.beginning.size()), row.part, equalLetters).empty();
}

/// Progress ends each of its lines with a carriage return.
bool fitsAny(const Row& row, std::string_view text)
{
    while (!text.empty()) {
        const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
        if (fits(row, text.substr(0, end)))
            return true;
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return false;
}

/// What follows `start` in the lines that begin with it.
std::vector<std::string> endsOfLines(std::string_view text, std::string_view start)
{
    std::vector<std::string> ends;
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        if (line.starts_with(start))
            ends.emplace_back(line.substr(start.size()));
    }
    return ends;
}

} // namespace

ErrorKind errorKind(std::string_view command, const GitOutput& output)
{
    if (output.signalled)
        return Kind::other;
    const bool tells = std::ranges::find(tellingOnOutput, command) != tellingOnOutput.end();
    const auto found = std::ranges::find_if(rows, [&](const Row& row) {
        if ((!row.command.empty() && row.command != command) ||
            (row.status != anyStatus && row.status != output.status))
            return false;
        return (row.beginning.empty() && row.part.empty()) || fitsAny(row, output.stderrBytes) ||
               (tells && fitsAny(row, output.stdoutBytes));
    });
    return found == rows.end() ? Kind::other : found->kind;
}

bool isKeptFromIndex(std::string_view command, const GitOutput& output)
{
    // These take the lock before they do anything else. A stash or a merge may find it taken half-way.
    constexpr std::array<std::string_view, 6> lockFirst{"add", "apply", "checkout", "commit", "reset", "update-index"};
    return std::ranges::find(lockFirst, command) != lockFirst.end() && !output.signalled && output.status != 0 &&
           output.stderrBytes.find("/index.lock': File exists") != std::string::npos;
}

std::vector<std::string> brokenRefs(const GitOutput& output)
{
    std::vector<std::string> names = endsOfLines(output.stderrBytes, "warning: ignoring broken ref ");
    std::ranges::copy(endsOfLines(output.stderrBytes, "warning: ignoring dangling symref "), std::back_inserter(names));
    return names;
}

std::vector<std::string> embeddedRepositories(const GitOutput& output)
{
    // The path is printed as it is, without a slash at its end.
    return endsOfLines(output.stderrBytes, "warning: adding embedded git repository: ");
}

bool hasMissedProgram(const GitOutput& output)
{
    // The second one where the program was named by its path.
    return !endsOfLines(output.stderrBytes, "error: cannot run ").empty() ||
           !endsOfLines(output.stderrBytes, "fatal: cannot run ").empty();
}

std::vector<std::string> serverLines(const GitOutput& output) { return endsOfLines(output.stderrBytes, "remote: "); }

std::string lockNamedIn(std::string_view message)
{
    constexpr std::string_view start = "nable to create '";
    constexpr std::string_view end = "': File exists";
    const std::size_t place = message.find(start);
    if (place == std::string_view::npos)
        return {};
    message.remove_prefix(place + start.size());
    const std::size_t length = message.find(end);
    return length == std::string_view::npos ? std::string() : std::string(message.substr(0, length));
}

bool namesInQuotes(std::string_view message, const std::string& name)
{
    return message.find("'" + name + "'") != std::string_view::npos ||
           message.find("“" + name + "”") != std::string_view::npos;
}

GitError failureOf(const std::string& command, const GitOutput& output)
{
    std::string message(trimmed(output.errorText()));
    if (message.empty())
        message = trimmed(output.text());
    return GitError(command, output.status, std::move(message), errorKind(command, output), Speaker::git);
}

} // namespace gitkit

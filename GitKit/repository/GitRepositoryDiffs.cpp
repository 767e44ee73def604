// SPDX-License-Identifier: GPL-3.0-or-later
// Diffs, single commits, and applying parts of a diff to the index.
//
// Where the commands differ from the plain ones:
//   --no-ext-diff --no-textconv   keep a converter's output from being shown or applied as the file; no setting turns
//                                 off the drivers that a repository's attributes name
//   --full-index                  prints whole blob hashes, which are compared before a patch is applied
//   HASH^{commit}                 reads the commit of an annotated tag
//   exactPathspecs()              leave out what is in a folder that has the name of a deleted file
//   an index of its own           shows an untracked link, which --no-index follows, and a file named "-", which it
//                                 takes for the standard input

#include "GitKit/EditorConfig.h"
#include "GitKit/MovedLines.h"
#include "GitKit/Text.h"
#include "GitKit/parsers/DiffParser.h"
#include "GitKit/parsers/LogParser.h"
#include "GitKit/parsers/NameStatusParser.h"
#include "GitKit/repository/Comparing.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/IndexEntries.h"
#include "GitKit/repository/PathCommand.h"
#include "GitKit/repository/RefArguments.h"
#include "GitKit/repository/ScratchIndex.h"
#include "GitKit/repository/StaleChange.h"
#include "GitKit/repository/TreeChanges.h"
#include "GitKit/runner/GitError.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <string_view>
#include <utility>

namespace gitkit {

namespace {

using Arguments = std::vector<std::string>;

/// The bytes limit a file of a few endless lines.
constexpr std::size_t mostBeginning = std::size_t{16} << 20;
constexpr std::size_t mostWhole = std::size_t{64} << 20;

/// Allows more lines than are wanted, as room for headers.
OutputLimit limitOf(DiffReach reach)
{
    constexpr std::size_t headers = 100;
    return reach == DiffReach::beginning ? OutputLimit{ParsedDiff::shownLines + headers, mostBeginning}
                                         : OutputLimit{ParsedDiff::mostLines + headers, mostWhole};
}

Arguments diffArguments(std::initializer_list<std::string> start, std::initializer_list<std::string> end)
{
    Arguments arguments(start);
    arguments.insert(arguments.end(), {"--no-ext-diff", "--no-textconv", "--full-index"});
    arguments.insert(arguments.end(), end);
    return arguments;
}

/// Returns whether a hash, of either length, is that of an empty file. The index has it for an intended addition.
bool isEmptyBlob(std::string_view hash)
{
    return hash == "e69de29bb2d1d6434b8b29ae775ad8c2e48c5391" ||
           hash == "473a0f4c3be8a93681a267e3b1e9a7dcda1185436fe141f7749120a303721813";
}

Arguments onExactly(Arguments arguments, const std::vector<std::string>& paths)
{
    arguments.emplace_back("--");
    std::ranges::copy(exactPathspecs(paths), std::back_inserter(arguments));
    return arguments;
}

std::vector<std::string> allPaths(const CommitFile& file)
{
    return file.originalPath ? std::vector{file.path, *file.originalPath} : std::vector{file.path};
}

/// Tells of a truncated diff how many lines `text` has of it, or that it has no more than are there.
void addExtent(ParsedDiff& parsed, std::string_view text, bool isCut)
{
    const int count = DiffParser::lineCount(text);
    if (!isCut && std::cmp_equal(count, parsed.lines.size()))
        parsed.isTruncated = false;
    else
        parsed.extent = {std::min(count, ParsedDiff::mostLines), !isCut && count <= ParsedDiff::mostLines};
}

ParsedDiff diff(const GitRepository& repo, const std::string& path, const std::vector<std::string>& arguments,
                DiffReading reading, RunOptions options = {})
{
    std::vector<std::string> all = arguments;
    if (reading.whiteSpace == WhiteSpace::ignored)
        all.insert(std::ranges::find(all, "--full-index"), "-w");
    options.limit = limitOf(reading.reach);
    const GitOutput output = repo.runner().accepted(all, options);
    // A little more may have been read before the limit was noticed.
    const std::string_view text = std::string_view(output.stdoutBytes).substr(0, options.limit->bytes);
    const bool isWhole = reading.reach == DiffReach::whole;
    const std::string_view parsedText = isWhole ? text : text.substr(0, mostBeginning);
    ParsedDiff parsed = DiffParser::parse(parsedText, isWhole ? ParsedDiff::mostLines : ParsedDiff::shownLines);
    parsed.whiteSpace = reading.whiteSpace;
    parsed.isTruncated = parsed.isTruncated || output.cut || parsedText.size() < text.size();
    if (parsed.isTruncated && reading.reach == DiffReach::counted)
        addExtent(parsed, text, output.cut);
    parsed.moved = movedBlocks(parsed);
    parsed.tabWidth = editorTabWidth(repo.root(), path);
    return parsed;
}

ParsedDiff untrackedDiff(const GitRepository& repo, const std::string& path, DiffReading reading)
{
    std::error_code ignored;
    if (path != "-" && !std::filesystem::is_symlink(repo.root() / path, ignored))
        return diff(repo, path, diffArguments({"diff", "--no-index"}, {"--", "/dev/null", path}), reading,
                    {.accepting = {0, 1}});
    const ScratchIndex index(repo.runner());
    repo.runner().accepted({"add", "--intent-to-add", "--force", "--", literalPathspec(path)}, index.options());
    return diff(repo, path, onExactly(diffArguments({"diff"}, {}), {path}), reading, index.options());
}

/// Whether a patch changes a submodule from a commit to the same one with changed files, which git applies as nothing.
bool isDirtOfSubmodule(std::string_view patch)
{
    constexpr std::string_view before = "\n-Subproject commit ";
    constexpr std::string_view after = "\n+Subproject commit ";
    const std::size_t old = patch.find(before);
    const std::size_t now = patch.find(after);
    if (old == std::string_view::npos || now == std::string_view::npos)
        return false;
    const auto lineAt = [&](std::size_t start) { return patch.substr(start, patch.find('\n', start) - start); };
    return std::string(lineAt(old + before.size())) + "-dirty" == lineAt(now + after.size());
}

/// Throws unless the index has the blob that the patch was made from.
void requireIndexHolds(const GitRunner& runner, const PartialChange& change)
{
    if (!change.before)
        return;
    const EntriesAtPath found = indexEntries(runner, change.path);
    const std::string held = found.own.empty() ? std::string() : found.own.front().hash;
    const bool none = held.empty() || isEmptyBlob(held);
    const bool several = found.own.size() > 1;
    if (isNoHash(*change.before) && !found.inside.empty())
        throw GitError("apply", 1,
                       inQuotes(change.path) + " cannot be in the index together with " +
                           inQuotes(found.inside.front().path) + ". Nothing was done.");
    if (several || !(held == *change.before || (none && isNoHash(*change.before))))
        throw staleChange();
}

} // namespace

CommitDetail GitRepository::commitDetail(const std::string& hash, CommitKind kind) const
{
    const std::string commit = commitArgument("show", hash);
    const std::string output =
        runner_.bytes({"show", LogParser::detailFormat, "--name-status", "-z", "--first-parent", commit, "--"});
    std::optional<CommitDetail> detail = LogParser::parseDetail(output);
    if (!detail)
        throw GitError("show", 0, "Could not read commit " + hash);
    if (kind == CommitKind::stash && detail->parents.size() == 3) {
        const std::string& untracked = detail->parents[2];
        for (CommitFile& file :
             NameStatusParser::parse(runner_.bytes({"show", "--format=", "--name-status", "-z", untracked, "--"})))
        {
            file.source = untracked;
            detail->files.push_back(std::move(file));
        }
    }
    return std::move(*detail);
}

ParsedDiff GitRepository::commitDiff(const std::string& hash, const CommitFile& file, DiffReading reading) const
{
    const std::string revision = commitArgument("show", file.source.value_or(hash));
    Arguments arguments = diffArguments({"show", "--format=", "--first-parent"}, {revision});
    return diff(*this, file.path, onExactly(std::move(arguments), allPaths(file)), reading);
}

ParsedDiff GitRepository::treeDiff(const TreePair& trees, const CommitFile& file, DiffReading reading) const
{
    Arguments arguments = diffArguments({"diff"}, {});
    std::ranges::move(treeArguments(trees), std::back_inserter(arguments));
    return diff(*this, file.path, onExactly(std::move(arguments), allPaths(file)), reading);
}

ParsedDiff mergeDiff(const GitRepository& repo, const std::string& merge, const CommitFile& file, DiffReading reading)
{
    Arguments arguments = diffArguments({"show", "--format=", "--cc"}, {commitArgument("show", merge)});
    return diff(repo, file.path, onExactly(std::move(arguments), {file.path}), reading);
}

std::vector<DiffSection> GitRepository::workingDiff(const FileChange& file, DiffReading reading) const
{
    using Kind = DiffSection::Kind;
    std::vector<DiffSection> sections;
    if (file.isUntracked()) {
        // A repository inside this one is listed as a folder; it has no diff.
        if (!file.path.ends_with('/'))
            sections.push_back({"Untracked", untrackedDiff(*this, file.path, reading), Kind::untracked});
        return sections;
    }
    if (file.hasUnstaged())
        sections.push_back({file.isConflicted ? "Conflict" : "Unstaged",
                            diff(*this, file.path, onExactly(diffArguments({"diff"}, {}), {file.path}), reading),
                            file.isConflicted ? Kind::conflict : Kind::unstaged});
    // Without its old name, a renamed file would look like a new one.
    if (file.hasStaged())
        sections.push_back({"Staged",
                            diff(*this, file.path,
                                 onExactly(diffArguments({"diff", "--cached"}, {}),
                                           file.index == 'R' ? file.allPaths() : std::vector{file.path}),
                                 reading),
                            Kind::staged});
    return sections;
}

StagedChanges GitRepository::stagedChanges() const
{
    // Without a limit, one large file would be in memory several times.
    constexpr OutputLimit longest{.lines = std::numeric_limits<std::size_t>::max(), .bytes = 64 * 1024 * 1024};
    return {runner_.run({"diff", "--cached", "--stat"}, {.limit = longest}),
            runner_.run(diffArguments({"diff", "--cached"}, {}), {.limit = longest})};
}

void GitRepository::applyToIndex(const PartialChange& change) const
{
    if (isDirtOfSubmodule(change.patch))
        throw dirtySubmodule("apply", change.path);
    requireIndexHolds(runner_, change);
    Arguments arguments{"apply", "--cached", "--whitespace=nowarn"};
    if (change.direction == PatchDirection::reverse)
        arguments.emplace_back("-R");
    arguments.emplace_back("-");
    runner_.bytes(arguments, {.input = change.patch});
}

} // namespace gitkit

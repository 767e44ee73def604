// SPDX-License-Identifier: GPL-3.0-or-later
// Diffs and single commits; and parts of diffs on their way back into the index and the working tree.
//
// Where the commands differ from the plain ones:
//   --no-ext-diff --no-textconv   a converter's output is neither shown as the file nor applied to it; no setting turns
//                                 off drivers that a repository's attributes name
//   --full-index                  the blobs that a patch was made from are compared before it is applied
//   HASH^{commit}                 a tag's object stands for its commit
//   GIT_LITERAL_PATHSPECS         a path is its bytes, whatever wildcards it holds

#include "GitKit/parsers/DiffParser.h"
#include "GitKit/parsers/LogParser.h"
#include "GitKit/parsers/NameStatusParser.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/runner/GitError.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <limits>
#include <sys/stat.h>
#include <unistd.h>

namespace gitkit {

namespace {

using Arguments = std::vector<std::string>;

const std::vector<std::pair<std::string, std::string>> literalPaths{{"GIT_LITERAL_PATHSPECS", "1"}};

/// More than is shown, with room for headers; a file of a few endless lines ends at the bytes.
constexpr OutputLimit diffLimit{DiffParser::shownLines + 100, std::size_t{16} << 20};

/// Files past this are discarded without a way back.
constexpr std::uintmax_t largestKept = std::uintmax_t{64} << 20;

constexpr const char* staleSentence =
    "The file has changed since its changes were shown. Nothing was done; look at it again and repeat.";

Arguments diffArguments(std::initializer_list<std::string> start, std::initializer_list<std::string> end)
{
    Arguments arguments(start);
    arguments.insert(arguments.end(), {"--no-ext-diff", "--no-textconv", "--full-index"});
    arguments.insert(arguments.end(), end);
    return arguments;
}

/// A revision as an argument: nothing that git would take for an option.
std::string revisionArgument(const char* command, std::string revision)
{
    if (revision.starts_with('-'))
        throw GitError(command, 128, "“" + repairedUtf8(revision) + "” is not a revision.");
    return revision;
}

/// The hash of an empty file, in both kinds of repository: what the index holds for a file that is only meant to be
/// added.
bool isEmptyBlob(std::string_view hash)
{
    return hash == "e69de29bb2d1d6434b8b29ae775ad8c2e48c5391" ||
           hash == "473a0f4c3be8a93681a267e3b1e9a7dcda1185436fe141f7749120a303721813";
}

bool standsOnDisk(const std::filesystem::path& file)
{
    struct stat found{};
    return ::lstat(file.c_str(), &found) == 0;
}

/// A file's bytes; nothing when there is none. Throws when it cannot be read.
std::optional<std::string> fileBytes(const std::filesystem::path& file)
{
    if (!standsOnDisk(file))
        return std::nullopt;
    std::ifstream stream(file, std::ios::binary);
    std::string bytes{std::istreambuf_iterator<char>(stream), {}};
    if (!stream.is_open() || stream.bad())
        throw GitError("apply", 1, "“" + repairedUtf8(file.string()) + "” could not be read.");
    return bytes;
}

/// Puts bytes in a file's place in one step, with the mode that the file has or had.
void replaceFile(const std::filesystem::path& file, const std::string& bytes)
{
    struct stat previous{};
    const bool hasMode = ::lstat(file.c_str(), &previous) == 0;
    std::string temporary = file.string() + ".plovik-XXXXXX";
    const int descriptor = ::mkstemp(temporary.data());
    if (descriptor < 0)
        throw GitError("apply", 1, "“" + repairedUtf8(file.string()) + "” could not be written.");
    // A temporary file is its owner's alone; a new file is for whom the user's mask allows.
    const mode_t mask = ::umask(0);
    ::umask(mask);
    ::fchmod(descriptor, hasMode ? previous.st_mode & 07777U : 0666U & ~mask);
    ::close(descriptor);
    std::ofstream stream(temporary, std::ios::binary);
    stream << bytes;
    stream.close();
    if (!stream || ::rename(temporary.c_str(), file.c_str()) != 0) {
        ::unlink(temporary.c_str());
        throw GitError("apply", 1, "“" + repairedUtf8(file.string()) + "” could not be written.");
    }
}

} // namespace

ParsedDiff GitRepository::diff(const std::vector<std::string>& arguments, const std::vector<int>& accepting,
                               WhiteSpace whiteSpace) const
{
    std::vector<std::string> all = arguments;
    if (whiteSpace == WhiteSpace::ignored)
        all.insert(std::ranges::find(all, "--full-index"), "-w");
    const GitOutput output =
        runner_.accepted(all, {.accepting = accepting, .environment = literalPaths, .limit = diffLimit});
    ParsedDiff parsed = DiffParser::parse(output.stdoutBytes);
    parsed.whiteSpace = whiteSpace;
    parsed.isTruncated = parsed.isTruncated || output.cut;
    return parsed;
}

CommitDetail GitRepository::commitDetail(const std::string& hash, CommitKind kind) const
{
    const std::string commit = revisionArgument("show", hash) + "^{commit}";
    // One run for both: with -z a NUL, which no message holds, stands between the text and the files.
    const std::string output =
        runner_.bytes({"show", LogParser::detailFormat, "--name-status", "-z", "-M", "--first-parent", commit, "--"});
    const std::size_t end = std::min(output.find('\0'), output.size());
    std::optional<CommitDetail> detail = LogParser::parseDetail(std::string_view(output).substr(0, end));
    if (!detail)
        throw GitError("show", 0, "Could not read commit " + hash);
    const std::size_t files = std::min(output.find_first_not_of('\n', end + 1), output.size());
    detail->files = NameStatusParser::parse(std::string_view(output).substr(files));
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

ParsedDiff GitRepository::commitDiff(const std::string& hash, const CommitFile& file, WhiteSpace whiteSpace) const
{
    const std::string revision = revisionArgument("show", file.source.value_or(hash)) + "^{commit}";
    Arguments arguments = diffArguments({"show", "--format=", "--first-parent", "-M"}, {revision, "--", file.path});
    if (file.originalPath)
        arguments.push_back(*file.originalPath);
    return diff(arguments, {0}, whiteSpace);
}

std::vector<DiffSection> GitRepository::workingDiff(const FileChange& file, WhiteSpace whiteSpace) const
{
    using Kind = DiffSection::Kind;
    std::vector<DiffSection> sections;
    if (file.isUntracked()) {
        // A repository inside this one is listed as a folder; it has no diff.
        if (!file.path.ends_with('/'))
            sections.push_back(
                {"Untracked",
                 diff(diffArguments({"diff", "--no-index"}, {"--", "/dev/null", file.path}), {0, 1}, whiteSpace),
                 Kind::other});
        return sections;
    }
    if (file.hasUnstaged())
        sections.push_back({file.isConflicted ? "Conflict" : "Unstaged",
                            diff(diffArguments({"diff", "-M"}, {"--", file.path}), {0}, whiteSpace),
                            file.isConflicted ? Kind::other : Kind::unstaged});
    if (file.hasStaged())
        sections.push_back({"Staged",
                            diff(diffArguments({"diff", "--cached", "-M"}, {"--", file.path}), {0}, whiteSpace),
                            Kind::staged});
    return sections;
}

StagedChanges GitRepository::stagedChanges() const
{
    // Far beyond what anybody reads; without an end, one large file would be held in memory several times.
    constexpr OutputLimit longest{.lines = std::numeric_limits<std::size_t>::max(), .bytes = 64 * 1024 * 1024};
    return {runner_.run({"diff", "--cached", "-M", "--stat"}, {.limit = longest}),
            runner_.run(diffArguments({"diff", "--cached", "-M"}, {}), {.limit = longest})};
}

void GitRepository::applyToIndex(const PartialChange& change) const
{
    requireIndexHolds(change);
    Arguments arguments{"apply", "--cached", "--whitespace=nowarn"};
    if (change.direction == PatchDirection::reverse)
        arguments.emplace_back("-R");
    arguments.emplace_back("-");
    runner_.bytes(arguments, {.input = change.patch});
}

void GitRepository::requireIndexHolds(const PartialChange& change) const
{
    if (!change.before)
        return;
    // "mode hash stage<tab>path", NUL; a conflicted path has several
    const std::string entry = runner_.bytes({"ls-files", "-s", "-z", "--", change.path}, {.environment = literalPaths});
    const std::size_t blank = entry.find(' ');
    const std::string held =
        blank == std::string::npos ? std::string() : entry.substr(blank + 1, entry.find(' ', blank + 1) - blank - 1);
    const bool none = held.empty() || isEmptyBlob(held);
    const bool several = std::ranges::count(entry, '\0') > 1;
    if (several || !(held == *change.before || (none && isNoHash(*change.before))))
        throw GitError("apply", 1, staleSentence);
}

void GitRepository::requireWorkingTreeHolds(const PartialChange& change) const
{
    if (!change.before)
        return;
    const bool stands = standsOnDisk(root_ / change.path);
    if (stands == isNoHash(*change.before))
        throw GitError("apply", 1, staleSentence);
    if (stands && trimmed(runner_.bytes({"hash-object", "--", change.path})) != *change.before)
        throw GitError("apply", 1, staleSentence);
}

std::optional<PartialDiscard> GitRepository::discardPart(const PartialChange& change) const
{
    requireWorkingTreeHolds(change);
    const std::filesystem::path file = root_ / change.path;
    std::error_code ignored;
    const bool kept = !standsOnDisk(file) || std::filesystem::file_size(file, ignored) <= largestKept;
    PartialDiscard done{change.path, kept ? fileBytes(file) : std::nullopt, std::nullopt};
    runner_.bytes({"apply", "--whitespace=nowarn", "-R", "-"}, {.input = change.patch});
    if (!kept)
        return std::nullopt;
    done.after = fileBytes(file);
    return done;
}

void GitRepository::undoDiscard(const PartialDiscard& discard) const
{
    const std::filesystem::path file = root_ / discard.path;
    if (fileBytes(file) != discard.after)
        throw GitError("apply", 1, "The file has changed since the discard, so that it cannot be taken back any more.");
    if (discard.before)
        replaceFile(file, *discard.before);
    else
        std::filesystem::remove(file);
}

} // namespace gitkit

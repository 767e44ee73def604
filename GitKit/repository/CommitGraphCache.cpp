// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/CommitGraphCache.h"

#include "GitKit/FileReplacement.h"
#include "GitKit/Fingerprint.h"
#include "GitKit/RegularFile.h"
#include "GitKit/Text.h"
#include "GitKit/UniqueFd.h"
#include "GitKit/repository/Divergence.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/runner/GitError.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

namespace gitkit {

namespace {

namespace fs = std::filesystem;

constexpr const char* alternatesVariable = "GIT_ALTERNATE_OBJECT_DIRECTORIES";
constexpr std::string_view sealHeader = "plovik commit-graph 1\n";
constexpr std::uintmax_t longestSeal = 1024UL * 1024;
/// Filters of changed paths cost far more than the rest, and make the graph of a large repository no larger than a tenth
/// more: those of this many commits a run are written.
constexpr const char* mostFilters = "--max-new-filters=100000";

fs::path graphsIn(const fs::path& folder) { return folder / "info" / "commit-graphs"; }

std::optional<struct stat> statusOf(const fs::path& path)
{
    struct stat found{};
    return ::lstat(path.c_str(), &found) == 0 ? std::optional(found) : std::nullopt;
}

/// Whether nobody but the user can put another folder in this one's place.
bool isSafeAbove(const fs::path& folder)
{
    for (fs::path above = folder; above.has_relative_path(); above = above.parent_path()) {
        const auto found = statusOf(above.parent_path());
        const bool isOpenToAll = found && (found->st_mode & S_IWOTH) != 0 && (found->st_mode & S_ISVTX) == 0;
        if (!found || isOpenToAll || (found->st_uid != 0 && found->st_uid != ::geteuid()))
            return false;
    }
    return true;
}

bool isOwn(const fs::path& path, mode_t kind)
{
    const auto found = statusOf(path);
    return found && (found->st_mode & S_IFMT) == kind && found->st_uid == ::geteuid() &&
           (found->st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

/// Whether nothing is in a folder but these.
bool holdsOnly(const fs::path& folder, std::initializer_list<std::string_view> names)
{
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(folder, error)) {
        if (std::ranges::find(names, entry.path().filename().native()) == names.end())
            return false;
    }
    return !error;
}

/// Whether git may read from this object directory: it is the user's, and it holds no objects and names no others.
bool isTrusted(const fs::path& folder)
{
    return isSafeAbove(folder) && isOwn(folder, S_IFDIR) && isOwn(folder / "info", S_IFDIR) &&
           isOwn(graphsIn(folder), S_IFDIR) && holdsOnly(folder, {"info", "seal", "lock", "used"}) &&
           holdsOnly(folder / "info", {"commit-graphs"});
}

/// Hashes a file eight bytes at a time; nullopt when it cannot be read. Sixty megabytes take some ten milliseconds.
std::optional<std::uint64_t> hashOf(const fs::path& file)
{
    const UniqueFd opened = openRegularFile(file);
    if (!opened)
        return std::nullopt;
    std::uint64_t hash = 14695981039346656037U;
    std::vector<char> piece(1024UL * 1024);
    while (true) {
        std::size_t filled = 0;
        ssize_t count = 1;
        while (filled < piece.size() && count > 0) {
            count = ::read(opened.get(), piece.data() + filled, piece.size() - filled);
            filled += count > 0 ? static_cast<std::size_t>(count) : 0;
        }
        if (count < 0)
            return std::nullopt;
        for (std::size_t place = 0; place < filled; place += sizeof(std::uint64_t)) {
            std::uint64_t word = 0;
            std::memcpy(&word, piece.data() + place, std::min(sizeof word, filled - place));
            hash = (hash ^ word) * 0x9E3779B97F4A7C15U;
            hash ^= hash >> 32;
        }
        if (filled < piece.size())
            return hash;
    }
}

/// Returns what the seal of these files must say; nullopt when one cannot be read.
std::optional<std::string> graphSealOf(const fs::path& folder, std::string_view owner)
{
    std::vector<fs::path> files;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(graphsIn(folder), error))
        files.push_back(entry.path());
    if (error || files.empty())
        return std::nullopt;
    std::ranges::sort(files);
    std::string seal(sealHeader);
    seal.append(fingerprint(owner)).append("\n");
    for (const fs::path& file : files) {
        const auto hash = isOwn(file, S_IFREG) ? hashOf(file) : std::nullopt;
        if (!hash)
            return std::nullopt;
        seal.append(file.filename().native()).append(" ").append(std::to_string(*hash)).append("\n");
    }
    return seal;
}

/// Makes a folder that only the user can write to.
bool makeOwn(const fs::path& folder)
{
    ::mkdir(folder.c_str(), 0700);
    return isOwn(folder, S_IFDIR);
}

bool makeFolders(const fs::path& folder)
{
    const fs::path root = folder.parent_path();
    std::error_code ignored;
    fs::create_directories(root.parent_path(), ignored);
    return makeOwn(root) && makeOwn(folder) && makeOwn(folder / "info") && makeOwn(graphsIn(folder)) &&
           isTrusted(folder);
}

UniqueFd lockOf(const fs::path& folder)
{
    UniqueFd lock(::open((folder / "lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
    return lock && ::flock(lock.get(), LOCK_EX | LOCK_NB) == 0 ? std::move(lock) : UniqueFd();
}

/// Removes a folder in one step for everyone who looks for it.
void removeFolder(const fs::path& folder)
{
    std::error_code error;
    const fs::path aside =
        folder.parent_path() / (".removed-" + std::to_string(::getpid()) + "-" + folder.filename().native());
    fs::rename(folder, aside, error);
    fs::remove_all(error ? folder : aside, error);
}

std::uintmax_t bytesIn(const fs::path& folder)
{
    std::uintmax_t bytes = 0;
    std::error_code error;
    for (auto entry = fs::recursive_directory_iterator(folder, error); !error && entry != fs::end(entry);
         entry.increment(error))
    {
        if (entry->is_regular_file(error))
            bytes += entry->file_size(error);
    }
    return bytes;
}

/// Notes that a folder was used, for what goes first when there are too many.
void noteUse(const fs::path& folder)
{
    const UniqueFd used(::open((folder / "used").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
    if (used)
        ::futimens(used.get(), nullptr);
}

struct KeptGraph {
    fs::file_time_type used;
    fs::path folder;
    std::uintmax_t bytes = 0;
};

void removeLeastUsed(const fs::path& root, const fs::path& current, std::uintmax_t mostBytes)
{
    std::vector<KeptGraph> kept;
    std::uintmax_t sum = 0;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(root, error)) {
        kept.push_back({fs::last_write_time(entry.path() / "used", error), entry.path(), bytesIn(entry.path())});
        sum += kept.back().bytes;
    }
    std::ranges::sort(kept, {}, &KeptGraph::used);
    for (const KeptGraph& graph : kept) {
        if (sum <= mostBytes)
            return;
        if (graph.folder == current)
            continue;
        removeFolder(graph.folder);
        sum -= std::min(sum, graph.bytes);
    }
}

struct GraphSettings {
    bool isOff = false;
    bool isPartial = false; ///< looking for changed paths would fetch what was left out
};

GraphSettings settingsOf(const GitRunner& runner)
{
    const std::string pattern = R"(^(core\.commitgraph|extensions\.partialclone|remote\..*\.promisor)$)";
    GraphSettings result;
    for (const std::string& entry :
         splitNul(runner.bytes({"config", "-z", "--get-regexp", pattern}, {.accepting = {0, 1}})))
    {
        const std::size_t end = entry.find('\n');
        if (entry.substr(0, end) != "core.commitgraph")
            result.isPartial = true;
    }
    const std::string value = runner.output({"config", "--type=bool", "--get", "core.commitGraph"}).text();
    result.isOff = trimmed(value) == "false";
    return result;
}

bool hasOwnGraph(const fs::path& commonDirectory)
{
    const fs::path info = commonDirectory / "objects" / "info";
    return statusOf(info / "commit-graph") || statusOf(info / "commit-graphs" / "commit-graph-chain");
}

/// Removes what a git that was killed has left in a folder of graphs. The caller's lock keeps others away.
void removeLeftovers(const fs::path& folder)
{
    std::vector<fs::path> left;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(folder, error)) {
        const std::string name = entry.path().filename().native();
        if (name != "commit-graph-chain" && !name.ends_with(".graph"))
            left.push_back(entry.path());
    }
    for (const fs::path& file : left)
        fs::remove(file, error);
}

/// Throws as GitRunner does.
void writeGraph(const GitRunner& runner, const fs::path& folder, bool withPaths)
{
    removeLeftovers(graphsIn(folder));
    std::vector<std::string> arguments{"commit-graph", "write", "--reachable", "--split", "--no-progress"};
    if (withPaths)
        arguments.insert(arguments.end(), {"--changed-paths", mostFilters});
    arguments.push_back("--object-dir=" + folder.string());
    runner.bytes(arguments, {.environment = {{alternatesVariable, alternatesOf(folder)}}, .isIdle = true});
}

} // namespace

CommitGraphCache::CommitGraphCache(fs::path root) : root_(std::move(root)) {}

std::optional<CommitGraphCache::Stamps> CommitGraphCache::stampsIn(const fs::path& folder)
{
    constexpr std::int64_t second = 1'000'000'000;
    Stamps stamps;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(graphsIn(folder), error)) {
        const auto found = statusOf(entry.path());
        if (!found)
            return std::nullopt;
        stamps[entry.path().filename().native()] = {static_cast<std::uint64_t>(found->st_ino),
                                                    static_cast<std::int64_t>(found->st_size),
                                                    found->st_mtim.tv_sec * second + found->st_mtim.tv_nsec,
                                                    found->st_ctim.tv_sec * second + found->st_ctim.tv_nsec};
    }
    return error || stamps.empty() ? std::nullopt : std::optional(stamps);
}

/// The user's cache folder may be a link to another disk. What is below it must not be.
fs::path CommitGraphCache::folderOf(const Repository& repository) const
{
    std::error_code error;
    const fs::path above = fs::weakly_canonical(root_.parent_path(), error);
    return (error ? root_.parent_path() : above) / root_.filename() / fingerprint(repository.commonDirectory.string());
}

bool CommitGraphCache::isSound(const fs::path& folder, std::string_view owner)
{
    const auto seal = regularFileBytes(folder / "seal", longestSeal);
    return seal && isOwn(folder / "seal", S_IFREG) && seal == graphSealOf(folder, owner);
}

/// Uses the folder if it is sound.
bool CommitGraphCache::use(const fs::path& folder, std::string_view owner)
{
    // Taken before the contents are read, so that a later change shows.
    const std::optional<Stamps> stamps = stampsIn(folder);
    if (!stamps || !isTrusted(folder) || !isSound(folder, owner))
        return false;
    noteUse(folder);
    const std::lock_guard guard(mutex_);
    folder_ = folder;
    stamps_ = *stamps;
    return true;
}

void CommitGraphCache::open(const Repository& repository)
{
    if (root_.empty())
        return;
    const std::string owner = repository.commonDirectory.string();
    const fs::path folder = folderOf(repository);
    close();
    // Without a chain, nothing was written yet or a first writing has not ended.
    if (!statusOf(graphsIn(folder) / "commit-graph-chain"))
        return;
    if (use(folder, owner))
        return;
    // Who holds the lock is writing the files, and its seal comes last.
    if (isTrusted(folder) && lockOf(folder))
        removeFolder(folder);
}

void CommitGraphCache::close()
{
    const std::lock_guard guard(mutex_);
    folder_.clear();
    stamps_.clear();
}

bool CommitGraphCache::write(const GitRepository& repo, const Repository& repository, std::uintmax_t mostBytes)
{
    const std::string owner = repository.commonDirectory.string();
    const fs::path folder = folderOf(repository);
    if (root_.empty() || hasOwnGraph(repository.commonDirectory) ||
        !historyCuts(repository.commonDirectory, repository.replacements).empty())
        return false;
    try {
        const GraphSettings settings = settingsOf(repo.runner());
        if (settings.isOff || !makeFolders(folder))
            return false;
        const UniqueFd lock = lockOf(folder);
        if (!lock)
            return false;
        writeGraph(repo.runner(), folder, !settings.isPartial);
        const auto seal = graphSealOf(folder, owner);
        if (!seal || !replaceFile(folder / "seal", *seal) || !use(folder, owner)) {
            removeFolder(folder);
            return false;
        }
    } catch (const GitError&) {
        // What is half-written has no seal, and is not used.
        return false;
    }
    removeLeastUsed(folder.parent_path(), folder, mostBytes);
    return true;
}

std::optional<std::string> CommitGraphCache::alternates() const
{
    const std::lock_guard guard(mutex_);
    if (folder_.empty() || stampsIn(folder_) != stamps_)
        return std::nullopt;
    return alternatesOf(folder_);
}

std::uintmax_t commitGraphBytes(const fs::path& root) { return bytesIn(root); }

void removeCommitGraphs(const fs::path& root)
{
    std::vector<fs::path> folders;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(root, error))
        folders.push_back(entry.path());
    for (const fs::path& folder : folders)
        removeFolder(folder);
}

std::string alternatesOf(const fs::path& folder)
{
    std::string value = "\"";
    for (const char character : folder.native()) {
        if (character == '"' || character == '\\')
            value += '\\';
        value += character;
    }
    return value + '"';
}

bool walksHistory(std::string_view command)
{
    constexpr std::array commands{"log", "rev-list", "blame", "merge-base", "branch", "tag", "describe", "name-rev"};
    return std::ranges::find(commands, command) != commands.end();
}

Restriction CommitGraphGuard::before(const std::string& command, const RunContext& context)
{
    Restriction restriction = programs_ ? programs_->before(command, context) : Restriction();
    if (!walksHistory(command))
        return restriction;
    const auto value = graph_->alternates();
    if (!value)
        return restriction;
    const auto& own = context.environment;
    const auto before = std::ranges::find_if(own, [](const auto& entry) { return entry.first == alternatesVariable; });
    restriction.environment.emplace_back(alternatesVariable,
                                         before == own.end() ? *value : before->second + ':' + *value);
    // In a partial clone, a read may fetch what it lacks. What that fetch would write into the repository must not build
    // upon files that are only here.
    restriction.settings.insert(restriction.settings.end(),
                                {{"fetch.writeCommitGraph", "false"}, {"maintenance.auto", "false"}});
    return restriction;
}

} // namespace gitkit

// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/ProgramGuard.h"

#include "GitKit/RegularFile.h"
#include "GitKit/Text.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/runner/GitError.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <optional>
#include <string_view>
#include <sys/stat.h>
#include <system_error>

namespace gitkit {

namespace {

using namespace std::string_view_literals;

/// Commands that read no file of the working tree, so that no filter can run. They wait for no look.
constexpr auto withoutFiles = std::to_array<std::string_view>(
    {"config", "for-each-ref", "log", "remote", "rev-list", "rev-parse", "symbolic-ref"});

/// Git reads no longer link to a folder of its data.
constexpr std::uintmax_t longestLink = 1 << 20;

std::int64_t nanosecondsOf(const timespec& time)
{
    return static_cast<std::int64_t>(time.tv_sec) * 1'000'000'000 + time.tv_nsec;
}

/// Returns the folder of git's data for the working tree at `root`; empty when it is not found where it usually is.
std::filesystem::path ordinaryGitDirectory(const std::filesystem::path& root)
{
    std::error_code ignored;
    std::filesystem::path entry = root / ".git";
    if (std::filesystem::is_directory(entry, ignored))
        return entry;
    constexpr std::string_view start = "gitdir: ";
    const std::string link = regularFileBytes(entry, longestLink).value_or(std::string());
    return link.starts_with(start) ? root / trimmed(link, "\r\n").substr(start.size()) : std::filesystem::path();
}

/// Returns whether an index may list submodules, without reading it as git does: the mode of one is there in these
/// bytes, and a split index has its entries elsewhere.
bool mayListSubmodules(const std::filesystem::path& index)
{
    const std::string bytes = regularFileBytes(index).value_or(std::string());
    return bytes.find("\0\0\xE0\0"sv) != std::string::npos || bytes.find("link"sv) != std::string::npos;
}

/// A submodule is read in the way in which git reads one for its superproject.
RunOptions optionsFor(const std::string& submodule)
{
    return submodule.empty() ? RunOptions{} : RunOptions{.environment = {{"GIT_DIR", ".git"}}};
}

/// One setting as git lists it with its scope and its file.
struct Listed {
    std::string scope;
    std::filesystem::path file; ///< relative to the folder of the run; empty for settings of the run
    std::string entry;          ///< key, line break, value

    bool isOwn() const { return scope == "local" || scope == "worktree"; }
    bool isInclude() const { return entry.starts_with("include.") || entry.starts_with("includeif."); }
};

std::vector<Listed> listedSettings(std::string_view printed)
{
    constexpr std::string_view start = "file:";
    const std::vector<std::string> fields = splitNul(printed);
    std::vector<Listed> settings;
    for (std::size_t index = 0; index + 2 < fields.size(); index += 3) {
        const std::string_view origin = fields[index + 1];
        settings.push_back({fields[index], origin.starts_with(start) ? origin.substr(start.size()) : std::string_view(),
                            fields[index + 2]});
    }
    return settings;
}

} // namespace

ProgramGuard::ProgramGuard(std::filesystem::path root, IsTrusted isTrusted)
    : root_(std::move(root)), isTrusted_(std::move(isTrusted))
{}

void ProgramGuard::setTrusted(IsTrusted isTrusted)
{
    const std::lock_guard guard(result_);
    isTrusted_ = std::move(isTrusted);
    areTrusted_ = found_.empty() || (isTrusted_ && isTrusted_(found_));
}

ProgramGuard::Programs ProgramGuard::keptOff() const
{
    const std::lock_guard guard(result_);
    return areTrusted_ ? Programs() : found_;
}

void ProgramGuard::requireTrusted(const RunContext& context)
{
    look(context);
    if (!keptOff().empty())
        throw GitError("config", 1,
                       "The configuration of this repository names programs that git would run, and nobody has been "
                       "asked about them. Nothing was done.");
}

Restriction ProgramGuard::before(const std::string& command, const RunContext& context)
{
    if (std::ranges::find(withoutFiles, command) == withoutFiles.end())
        look(context);
    const std::lock_guard guard(result_);
    if (!hasLooked_)
        return withoutFetching();
    return areTrusted_ ? Restriction() : restrictionAgainst(found_);
}

ProgramGuard::Stamp ProgramGuard::stampOf(const std::filesystem::path& file)
{
    struct stat found{};
    if (::stat(file.c_str(), &found) != 0)
        return {};
    return {found.st_ino, found.st_size, nanosecondsOf(found.st_mtim), nanosecondsOf(found.st_ctim)};
}

bool ProgramGuard::isCurrent(const Look& look)
{
    return !look.hasInclude && !look.files.empty() &&
           std::ranges::all_of(look.files, [](const auto& file) { return stampOf(file.first) == file.second; });
}

void ProgramGuard::look(const RunContext& context)
{
    RunContext offline = context;
    offline.guard.reset();
    const Restriction restriction = withoutFetching();
    offline.environment.insert(offline.environment.end(), restriction.environment.begin(),
                               restriction.environment.end());
    const std::lock_guard guard(looking_);
    Looks looks;
    lookAt({root_}, offline, looks);
    looks_ = std::move(looks);
    Programs found;
    for (const auto& [folder, look] : looks_)
        std::ranges::copy(look.programs, std::back_inserter(found));
    std::ranges::sort(found);
    const std::lock_guard result(result_);
    if (!hasLooked_ || found != found_)
        areTrusted_ = found.empty() || (isTrusted_ && isTrusted_(found));
    hasLooked_ = true;
    found_ = std::move(found);
}

/// Looks at a repository and at its submodules, but at none twice: a link may lead back.
void ProgramGuard::lookAt(const Place& place, const RunContext& context, Looks& looks) const
{
    std::error_code ignored;
    const std::filesystem::path folder = std::filesystem::weakly_canonical(place.folder, ignored);
    const auto [entry, isNew] = looks.try_emplace(folder);
    if (!isNew)
        return;
    entry->second = lookedAt(place, folder, context);
    const Look& look = entry->second;
    for (const std::string& submodule : look.submodules) {
        const Place inside{look.workTree / submodule,
                           place.submodule.empty() ? submodule : place.submodule + "/" + submodule};
        if (std::filesystem::exists(inside.folder / ".git", ignored))
            lookAt(inside, context, looks);
    }
}

/// Reads again only what has changed.
ProgramGuard::Look ProgramGuard::lookedAt(const Place& place, const std::filesystem::path& folder,
                                          const RunContext& context) const
{
    const auto known = looks_.find(folder);
    Look look = known == looks_.end() ? Look() : known->second;
    try {
        if (!isCurrent(look))
            readConfiguration(place, context, look);
        const std::filesystem::path directory = ordinaryGitDirectory(place.folder);
        const Stamp index = directory.empty() ? Stamp() : stampOf(directory / "index");
        if (directory.empty() || index != look.index)
            readSubmodules(place, context, look);
        look.index = index;
    } catch (const GitError&) {
        // Git reads no submodule whose repository is missing or damaged.
        if (place.submodule.empty())
            throw;
        look = {};
    }
    return look;
}

void ProgramGuard::readConfiguration(const Place& place, const RunContext& context, Look& look)
{
    const GitRepository repo(place.folder, context);
    const std::string printed =
        repo.runner().bytes({"config", "--list", "--show-scope", "--show-origin", "-z"}, optionsFor(place.submodule));
    look = {};
    look.workTree = place.folder;
    std::string settings;
    // A submodule's link decides which configuration is its own.
    if (!place.submodule.empty())
        look.files.emplace(place.folder / ".git", stampOf(place.folder / ".git"));
    constexpr std::string_view workTree = "core.worktree\n";
    for (const Listed& each : listedSettings(printed)) {
        settings.append(each.scope).append(1, '\0').append(each.entry).append(1, '\0');
        if (!each.isOwn())
            continue;
        const std::filesystem::path file = place.folder / each.file;
        look.files.emplace(file, stampOf(file));
        look.hasInclude = look.hasInclude || each.isInclude();
        if (each.entry.starts_with(workTree))
            look.workTree = ordinaryGitDirectory(place.folder) / each.entry.substr(workTree.size());
    }
    look.programs = programsIn(settings);
    for (ConfiguredProgram& program : look.programs)
        program.submodule = place.submodule;
}

void ProgramGuard::readSubmodules(const Place& place, const RunContext& context, Look& look)
{
    look.submodules.clear();
    const std::filesystem::path directory = ordinaryGitDirectory(place.folder);
    if (!directory.empty() && !mayListSubmodules(directory / "index"))
        return;
    const GitRepository repo(place.folder, context);
    // "160000 hash stage<tab>path"
    for (const std::string& entry :
         splitNul(repo.runner().bytes({"ls-files", "-s", "-z"}, optionsFor(place.submodule))))
    {
        if (entry.starts_with("160000 "))
            look.submodules.push_back(entry.substr(entry.find('\t') + 1));
    }
}

} // namespace gitkit

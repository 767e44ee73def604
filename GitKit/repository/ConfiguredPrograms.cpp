// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/ConfiguredPrograms.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <optional>
#include <set>
#include <utility>

namespace gitkit {

namespace {

using Runs = ProgramKey::Runs;

/// Settings without a row: core.fsmonitor, gpg.program, pagers, editors and askpass programs are pinned for every run;
/// textconv and external diffs are switched off where diffs are read; hooks, merge drivers, commit signing and the
/// programs of an ordinary fetch run only in what the user asks for.
constexpr auto keys = std::to_array<ProgramKey>({
    {"filter.*.clean", Runs::withFiles, "compares a changed file with the index"},
    {"filter.*.process", Runs::withFiles, "does the same, and writes files"},
    {"filter.*.smudge", Runs::withFiles, "writes files"},
    {"lfs.extension.*.clean", Runs::withFiles, "is run by the filter of the user's own git-lfs"},
    {"lfs.extension.*.smudge", Runs::withFiles, "is run by the filter of the user's own git-lfs"},
    {"lfs.customtransfer.*.path", Runs::withFiles, "is run by the filter of the user's own git-lfs"},
    {"remote.*.uploadpack", Runs::whenFetching, "is run in place of git's own program at the other end"},
    {"core.sshcommand", Runs::whenFetching, "is run in place of ssh"},
    {"core.gitproxy", Runs::whenFetching, "connects to git:// addresses"},
    {"core.alternaterefscommand", Runs::whenFetching, "lists the refs of an alternate object store"},
    {"credential.helper", Runs::whenFetching, "answers for https:// addresses"},
    {"credential.*.helper", Runs::whenFetching, "answers for https:// addresses"},
    {"protocol.allow", Runs::whenFetching, "allows ext:: addresses, which are commands"},
    {"protocol.ext.allow", Runs::whenFetching, "allows ext:: addresses, which are commands"},
    {"remote.*.url", Runs::underThisName, "a repository on this machine is read with its own configuration"},
    {"url.*.insteadof", Runs::underThisName, "a repository on this machine is read with its own configuration"},
});

/// Returns the name in the middle of a key that fits the pattern, an empty one where the pattern has none, and nullopt
/// for a key that does not fit.
std::optional<std::string_view> nameIn(std::string_view key, std::string_view pattern)
{
    const std::size_t star = pattern.find('*');
    if (star == std::string_view::npos)
        return key == pattern ? std::optional(std::string_view()) : std::nullopt;
    const std::string_view before = pattern.substr(0, star);
    const std::string_view after = pattern.substr(star + 1);
    if (key.size() < before.size() + after.size() || !key.starts_with(before) || !key.ends_with(after))
        return std::nullopt;
    return key.substr(before.size(), key.size() - before.size() - after.size());
}

/// Returns whether git reads the address as a path of this machine.
bool isOnThisMachine(std::string_view address)
{
    const std::size_t colon = address.find(':');
    return address.starts_with("file:") || colon == std::string_view::npos || address.find('/') < colon;
}

const ProgramKey* rowOf(std::string_view key, std::string_view value)
{
    const auto row = std::ranges::find_if(keys, [&](const ProgramKey& each) {
        const auto name = nameIn(key, each.pattern);
        if (!name || each.runs != Runs::underThisName)
            return name.has_value();
        return isOnThisMachine(key.starts_with("url.") ? *name : value);
    });
    return row == keys.end() ? nullptr : &*row;
}

/// Returns whether the setting makes a repository a partial clone. One that is switched off counts, too: another file
/// may switch it on.
bool makesPartialClone(std::string_view key)
{
    return nameIn(key, "remote.*.promisor") || nameIn(key, "remote.*.partialclonefilter") ||
           key == "extensions.partialclone";
}

/// Returns the name of the filter through which a program runs.
std::optional<std::string> filterOf(const std::string& key)
{
    for (const std::string_view pattern : {"filter.*.clean", "filter.*.process", "filter.*.smudge"}) {
        if (const auto name = nameIn(key, pattern))
            return std::string(*name);
    }
    return key.starts_with("lfs.") ? std::optional<std::string>("lfs") : std::nullopt;
}

/// Cuts off what stands before the next NUL.
std::string_view nextField(std::string_view& rest)
{
    const std::string_view field = rest.substr(0, rest.find('\0'));
    rest.remove_prefix(std::min(rest.size(), field.size() + 1));
    return field;
}

} // namespace

std::span<const ProgramKey> programKeys() { return keys; }

bool runsWhenFetching(const ConfiguredProgram& program) { return !filterOf(program.key); }

std::vector<ConfiguredProgram> programsIn(std::string_view listed)
{
    std::vector<ConfiguredProgram> found;
    std::set<std::pair<std::string, std::string>> byUser;
    bool isPartial = false;
    while (!listed.empty()) {
        const std::string_view scope = nextField(listed);
        const std::string_view entry = nextField(listed);
        const std::string_view key = entry.substr(0, entry.find('\n'));
        const std::string_view value = entry.substr(std::min(entry.size(), key.size() + 1));
        isPartial = isPartial || makesPartialClone(key);
        if (value.empty() || !rowOf(key, value))
            continue;
        if (scope == "system" || scope == "global")
            byUser.emplace(key, value);
        else if (scope == "local" || scope == "worktree")
            found.push_back({.key = std::string(key), .value = std::string(value)});
    }
    std::erase_if(found, [&](const ConfiguredProgram& program) {
        return byUser.contains({program.key, program.value}) || (!isPartial && runsWhenFetching(program));
    });
    return found;
}

Restriction withoutFetching()
{
    // The second one forbids all protocols.
    return {.environment = {{"GIT_NO_LAZY_FETCH", "1"}, {"GIT_ALLOW_PROTOCOL", ""}}};
}

Restriction restrictionAgainst(std::span<const ConfiguredProgram> programs)
{
    Restriction all = std::ranges::any_of(programs, runsWhenFetching) ? withoutFetching() : Restriction();
    std::set<std::string> filters;
    for (const ConfiguredProgram& program : programs) {
        if (auto name = filterOf(program.key))
            filters.insert(std::move(*name));
    }
    for (const std::string& name : filters) {
        for (const std::string_view last : {".clean", ".process", ".smudge"})
            all.settings.emplace_back("filter." + name + std::string(last), "");
        // A filter that must be there makes git fail without it.
        all.settings.emplace_back("filter." + name + ".required", "false");
    }
    return all;
}

} // namespace gitkit

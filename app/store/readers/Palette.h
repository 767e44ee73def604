// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/ChangedFiles.h"

#include <QString>

#include <cstddef>
#include <memory>
#include <stop_token>
#include <string>
#include <vector>

namespace gitkit {
class GitRepository;
} // namespace gitkit

namespace plovik {

/// Something that can be found by typing a part of its title. A value; what it stands for is known by kind and name.
struct PaletteEntry {
    enum class Kind { command, repository, branch, remoteBranch, tag, file, commit, search };

    Kind kind = Kind::command;
    std::string name = {}; ///< full name of a ref, path, full hash, or folder, as bytes
    QString title = {};    ///< what is searched
    QString detail = {};   ///< shown beside it
    int number = 0;        ///< of a command, its place in the caller's list
    bool isOffered = true; ///< false for what cannot be chosen now

    bool operator==(const PaletteEntry&) const = default;
};
using PaletteEntries = std::vector<PaletteEntry>;

/// What of the repository to list.
struct PaletteRequest {
    enum class Scope {
        everything,
        branches,
        remoteBranches,
        states, ///< branches, tags and commits
        none    ///< only what `first` has
    };

    Scope scope = Scope::everything;
    std::string current = {};          ///< full name of the checked out branch; goes first
    bool isOrderedByDate = true;       ///< dates of many thousand refs take long to read
    gitkit::ChangedFiles changed = {}; ///< their untracked files are listed, too
    PaletteEntries first = {};         ///< go before all that is read
    /// Each list asks once.
    bool operator==(const PaletteRequest& other) const { return this == &other; }
};
/// Only the newest commits are listed.
inline constexpr std::size_t mostPaletteCommits = 5000;

/// Lists what can be found, each kind by itself and the newest first: branches in the order in which they were checked
/// out last and then by date. For Latest: any thread; blocks; throws gitkit::GitError.
std::shared_ptr<const PaletteEntries> readPalette(const gitkit::GitRepository& repo, const PaletteRequest& request);

/// Looks for what was typed among the entries.
struct PaletteQuery {
    std::shared_ptr<const PaletteEntries> entries;
    QString typed;
    bool operator==(const PaletteQuery&) const = default;
};
struct PaletteFound {
    std::vector<std::size_t> places; ///< in the entries, the best first, at most mostPaletteRows
    std::size_t count = 0;           ///< how many there are in all
};
inline constexpr std::size_t mostPaletteRows = 200;

/// Finds the entries whose titles have all typed words: titles that begin with them first, then words that begin so,
/// then parts of words, then their letters in the same order. Of equals the earlier go first, but what can be chosen goes
/// before what cannot. A hash finds its commit. For Latest: any thread; ends soon after `stop` is requested.
PaletteFound findInPalette(const PaletteQuery& query, const std::stop_token& stop);

} // namespace plovik

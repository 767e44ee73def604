// SPDX-License-Identifier: GPL-3.0-or-later
// What happened is found out from what each side has done since the base: both sides' lists of changes, with renames as a
// merge pairs them, tell it in every version of git and without merging again. They are read only where a path has not
// all of its sides.
//
//   ls-files --unmerged   tells the sides. Of a file that both have renamed, 2 and 3 hold the same blob, which is merged
//                         already; what a side had is in its own tree.
//   PATH~NAME             is how git calls a file where the other side has a folder, or something of another type.

#include "GitKit/repository/ConflictFinder.h"

#include "GitKit/Text.h"
#include "GitKit/parsers/Fields.h"
#include "GitKit/repository/GitRepository.h"

#include <algorithm>
#include <filesystem>
#include <set>
#include <string_view>

namespace gitkit {

namespace {

namespace fs = std::filesystem;

/// What one side has done with a file since the base.
struct SideChange {
    char status = 'M';
    Stage now;
    std::string source; ///< path in the base, for what was renamed
};

/// A side's changes by the paths in its own tree, and the new names of what it has renamed by the old ones.
struct SideChanges {
    std::map<std::string, SideChange> byPath;
    std::map<std::string, std::string> newNames;
    std::map<std::string, std::string> added; ///< paths by hashes
    std::set<std::string> deleted;

    const SideChange* find(const std::string& path) const
    {
        const auto found = byPath.find(path);
        return found == byPath.end() ? nullptr : &found->second;
    }
};

/// Reads ":OLDMODE MODE OLDHASH HASH STATUS<nul>PATH<nul>", with a second path after a rename.
SideChanges parseRaw(std::string_view listed)
{
    SideChanges changes;
    const std::vector<std::string> fields = splitNul(listed);
    for (std::size_t at = 0; at + 1 < fields.size();) {
        const auto parts = splitFields<5>(fields[at], ' ');
        if (!parts || parts->at(4).empty())
            break;
        const char status = parts->at(4).front();
        const bool isRename = status == 'R' || status == 'C';
        if (at + (isRename ? 2 : 1) >= fields.size())
            break;
        const std::string& first = fields[at + 1];
        const std::string& path = isRename ? fields[at + 2] : first;
        SideChange change{status, {std::string(parts->at(1)), std::string(parts->at(3))}, {}};
        if (status == 'R') {
            change.source = first;
            changes.newNames[first] = path;
        }
        if (status == 'D')
            changes.deleted.insert(path);
        else if (status == 'A')
            changes.added[change.now.hash] = path;
        if (status != 'D')
            changes.byPath[path] = std::move(change);
        at += isRename ? 3 : 2;
    }
    return changes;
}

SideChanges changesOf(const GitRepository& repo, const std::string& base, const std::string& side)
{
    if (base.empty() || side.empty())
        return {};
    return parseRaw(
        repo.runner()
            .output({"diff-tree", "-r", "-z", "--raw", "--full-index", "-M", "--no-ext-diff", base, side, "--"})
            .stdoutBytes);
}

bool hasAll(const Stages& stages) { return stages[1] && stages[2] && stages[3]; }

std::optional<ConflictVersion> versionOf(const std::optional<Stage>& stage, const std::string& path)
{
    return stage ? std::optional(ConflictVersion{stage->mode, stage->hash, path}) : std::nullopt;
}

/// Makes conflicts of the index's entries.
class ConflictFinder {
public:
    ConflictFinder(const GitRepository& repo, const std::map<std::string, Stages>& listed, const MergedCommits& merged)
        : repo_(repo), listed_(listed), merged_(merged)
    {
        if (std::ranges::all_of(listed, [](const auto& entry) { return hasAll(entry.second); }))
            return;
        left_ = changesOf(repo, merged.base, merged.left);
        right_ = changesOf(repo, merged.base, merged.right);
    }

    std::vector<Conflict> find()
    {
        // Conflicts of several paths take theirs first.
        for (const auto& [path, stages] : listed_) {
            if (stages[1] && !stages[2] && !stages[3])
                findTwoNames(path, stages);
        }
        for (const auto& [path, stages] : listed_)
            findTwoTypes(path, stages);
        for (const auto& [path, stages] : listed_) {
            if (!taken_.contains(path))
                found_.push_back(single(path, stages));
        }
        std::ranges::sort(found_, {}, &Conflict::path);
        return std::move(found_);
    }

private:
    const Stages* stagesAt(const std::string& path) const
    {
        const auto found = listed_.find(path);
        return found == listed_.end() || taken_.contains(path) ? nullptr : &found->second;
    }

    /// Returns the path under which the index has the side of a file that was renamed.
    std::optional<std::string> newName(const SideChanges& side, const std::string& path, std::size_t stage) const
    {
        const auto renamed = side.newNames.find(path);
        if (renamed == side.newNames.end())
            return std::nullopt;
        const Stages* const stages = stagesAt(renamed->second);
        return stages && (*stages)[stage] ? std::optional(renamed->second) : std::nullopt;
    }

    void findTwoNames(const std::string& path, const Stages& stages)
    {
        const std::optional<std::string> left = newName(left_, path, 2);
        const std::optional<std::string> right = newName(right_, path, 3);
        if (!left || !right)
            return;
        Conflict conflict{.path = path, .kind = ConflictKind::renamedBoth, .base = versionOf(stages[1], path)};
        conflict.left = versionOf(left_.find(*left)->now, *left);
        conflict.right = versionOf(right_.find(*right)->now, *right);
        conflict.related = {*left, *right};
        take(std::move(conflict));
    }

    /// Returns the path in the side's own tree of a file that git has called PATH~NAME; nullopt when it has not.
    std::optional<std::string> realName(const std::string& path, const Stages& stages) const
    {
        const bool isLeft = stages[2].has_value();
        const std::optional<Stage>& own = isLeft ? stages[2] : stages[3];
        const SideChanges& side = isLeft ? left_ : right_;
        for (std::size_t end = path.rfind('~'); own && end != std::string::npos && end > 0;
             end = path.rfind('~', end - 1))
        {
            std::string shorter = path.substr(0, end);
            const SideChange* const change = side.find(shorter);
            if (change && change->now == *own)
                return shorter;
        }
        return std::nullopt;
    }

    void findTwoTypes(const std::string& path, const Stages& stages)
    {
        if (taken_.contains(path) || (stages[2] && stages[3]))
            return;
        const std::optional<std::string> real = realName(path, stages);
        if (!real)
            return;
        const Stages* const other = stagesAt(*real);
        Conflict conflict{.path = path, .kind = ConflictKind::folderAndFile, .base = versionOf(stages[1], *real)};
        conflict.left = versionOf(stages[2], *real);
        conflict.right = versionOf(stages[3], *real);
        if (other && !((*other)[2] && (*other)[3])) {
            conflict.path = *real;
            conflict.kind = ConflictKind::fileAndLink;
            conflict.related = {path};
            conflict.isLeftRenamed = stages[2].has_value();
            if (!conflict.left)
                conflict.left = versionOf((*other)[2], *real);
            if (!conflict.right)
                conflict.right = versionOf((*other)[3], *real);
        } else if (!isFolder(*real)) {
            return;
        }
        take(std::move(conflict));
    }

    /// Whether the other side has a folder of this name.
    bool isFolder(const std::string& path) const
    {
        std::error_code ignored;
        return fs::is_directory(fs::symlink_status(repo_.root() / path, ignored));
    }

    Conflict single(const std::string& path, const Stages& stages) const
    {
        Conflict conflict{.path = path};
        conflict.base = versionOf(stages[1], path);
        conflict.left = versionOf(stages[2], path);
        conflict.right = versionOf(stages[3], path);
        if (stages[2] && stages[3])
            conflict.kind = kindOfBoth(path, stages);
        else if (stages[2] || stages[3])
            setKindOfOne(conflict, stages[2].has_value() ? left_ : right_);
        else
            conflict.kind = ConflictKind::renamedBoth;
        return conflict;
    }

    ConflictKind kindOfBoth(const std::string& path, const Stages& stages) const
    {
        const Stage& left = *stages[2];
        const Stage& right = *stages[3];
        if (left.isSubmodule() || right.isSubmodule())
            return ConflictKind::submodule;
        if (left.mode == "120000" || right.mode == "120000")
            return ConflictKind::link;
        if (left.hash == right.hash && left.mode != right.mode)
            return ConflictKind::mode;
        if (stages[1])
            return ConflictKind::bothChanged;
        const SideChange* const onLeft = left_.find(path);
        const SideChange* const onRight = right_.find(path);
        const bool isRename = (onLeft && onLeft->status == 'R') || (onRight && onRight->status == 'R');
        return isRename ? ConflictKind::sameName : ConflictKind::bothAdded;
    }

    /// The file is there on one side only.
    void setKindOfOne(Conflict& conflict, const SideChanges& side) const
    {
        const bool isLeft = conflict.left.has_value();
        const SideChange* const change = side.find(conflict.path);
        if (change && change->status == 'R') {
            conflict.kind = isLeft ? ConflictKind::renamedLeft : ConflictKind::renamedRight;
            if (conflict.base)
                conflict.base->path = change->source;
            return;
        }
        conflict.kind = isLeft ? ConflictKind::deletedRight : ConflictKind::deletedLeft;
        if (conflict.base)
            return;
        std::optional<ConflictVersion>& own = isLeft ? conflict.left : conflict.right;
        if (isFolder(conflict.path)) {
            conflict.kind = ConflictKind::folderAndFile; // where git has renamed the working file alone
            return;
        }
        if (change || side.byPath.empty())
            return;
        const auto added = side.added.find(own->hash);
        if (added != side.added.end()) {
            conflict.kind = ConflictKind::folderRenamed;
            own->path = added->second;
        }
    }

    void take(Conflict conflict)
    {
        for (std::string& path : conflict.allPaths())
            taken_.insert(std::move(path));
        found_.push_back(std::move(conflict));
    }

    const GitRepository& repo_;
    const std::map<std::string, Stages>& listed_;
    const MergedCommits& merged_;
    SideChanges left_, right_;
    std::set<std::string> taken_;
    std::vector<Conflict> found_;
};

} // namespace

std::vector<Conflict> findConflicts(const GitRepository& repo, const std::map<std::string, Stages>& listed,
                                    const MergedCommits& merged)
{
    return ConflictFinder(repo, listed, merged).find();
}

} // namespace gitkit

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Date.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace gitkit {

/// What two sides have done that git cannot put together. Left is what is checked out, or what a rebase has made so far;
/// right is what comes.
enum class ConflictKind : std::uint8_t {
    bothChanged,   ///< as text, which a merge takes apart
    bothAdded,     ///< the same as text, but without a base
    binary,        ///< both changed or added, and not as text
    link,          ///< both changed or added, and a side is a symbolic link
    submodule,     ///< a side is a commit of another repository
    mode,          ///< the same content, but only one may be executed
    deletedLeft,   ///< and changed on the right
    deletedRight,  ///< and changed on the left
    renamedBoth,   ///< one file, which has another new name on each side
    renamedLeft,   ///< and deleted on the right
    renamedRight,  ///< and deleted on the left
    sameName,      ///< two different files have got one name
    folderAndFile, ///< one name is a file on one side and a folder on the other
    fileAndLink, ///< one name is a file on one side and something else on the other; git gave one of them another name
    folderRenamed, ///< added on one side in a folder that the other has renamed
};

/// What stands in the index for one side of a conflicted path.
struct ConflictVersion {
    std::string mode; ///< in octal, as git prints it
    std::string hash;
    std::string path; ///< where the side itself has it

    bool isLink() const { return mode == "120000"; }
    bool isSubmodule() const { return mode == "160000"; }
    bool isExecutable() const { return mode == "100755"; }
    bool operator==(const ConflictVersion&) const = default;
};

/// One conflict. Several paths of the index may be in one: a file that both have renamed stands there under three names.
struct Conflict {
    std::string path; ///< by which it is listed, as bytes
    ConflictKind kind = ConflictKind::bothChanged;
    std::optional<ConflictVersion> base = {}, left = {}, right = {}; ///< nullopt where a side has no such file
    std::vector<std::string> related = {}; ///< further conflicted paths that are resolved with it
    bool isBinary = false;                 ///< a side's content is no text, or is not merged as text
    bool isRemembered = false;             ///< git has resolved the file as it was resolved before
    bool isEdited = false; ///< the working file is not what git wrote when it stopped; then its markers may be gone
    bool isLeftRenamed = false; ///< for fileAndLink: git gave the left one the other name
    int markerSize = 7;         ///< with which git has marked it

    const std::string& id() const { return path; }
    std::vector<std::string> allPaths() const
    {
        std::vector<std::string> all{path};
        all.insert(all.end(), related.begin(), related.end());
        return all;
    }
    /// Whether it can be resolved by merging lines.
    bool isText() const { return kind == ConflictKind::bothChanged || kind == ConflictKind::bothAdded; }

    bool operator==(const Conflict&) const = default;
};

/// How a conflict is resolved that is not merged as text, and those of text too where one side is taken whole.
enum class ConflictAnswer : std::uint8_t {
    left,  ///< as the left side has it: its content, name and mode, or gone
    right, ///< the same for the right side
    both,  ///< both files stay, where they have different names
    gone,  ///< no file is left
};

/// Returns the answers that a conflict can have.
inline std::vector<ConflictAnswer> answersTo(const Conflict& conflict)
{
    using enum ConflictAnswer;
    switch (conflict.kind) {
    case ConflictKind::renamedBoth:
        if (!conflict.left || !conflict.right)
            return {gone}; // git's own merge did not find the new names
        return {left, right, both};
    case ConflictKind::bothAdded:
    case ConflictKind::binary:
    case ConflictKind::link:
    case ConflictKind::sameName:
    case ConflictKind::folderAndFile:
    case ConflictKind::fileAndLink:
        return {left, right, both};
    case ConflictKind::bothChanged:
    case ConflictKind::submodule:
    case ConflictKind::mode:
    case ConflictKind::deletedLeft:
    case ConflictKind::deletedRight:
    case ConflictKind::renamedLeft:
    case ConflictKind::renamedRight:
    case ConflictKind::folderRenamed:
        break;
    }
    return {left, right};
}

/// What a side of a conflict is, as facts from which its name is made. Texts are bytes.
struct ConflictName {
    enum class Kind : std::uint8_t {
        unknown,
        branch,         ///< `name` is checked out, or a branch, tag or remote branch
        commit,         ///< `hash` with `subject`; no name is known
        ontoAndMoved,   ///< `name`, a rebase's new base, with `count` commits of `branch` that are moved already
        replayed,       ///< commit `subject` of `branch`, or of none, that a rebase is about to move
        picked,         ///< commit `subject`
        without,        ///< the parent of commit `subject`, which is reverted
        patch,          ///< `subject`
        stash,          ///< `subject` is its message
        parentOf,       ///< the parent of commit `subject`
        stashedFrom,    ///< the commit that a stash was made on
        commonAncestor, ///< of the two sides; `count` of them, where that is known
        label,          ///< `name` is what git wrote at the markers
    };

    Kind kind = Kind::unknown;
    std::string name = {};
    std::string branch = {};
    std::string hash = {};
    std::string subject = {};
    int count = 0;

    bool operator==(const ConflictName&) const = default;
};

/// The names of the sides of all conflicts that one action has made.
struct ConflictNames {
    ConflictName left = {}, right = {}, base = {};

    bool operator==(const ConflictNames&) const = default;
};

/// The commits that a submodule has on both sides, and how many each has that the other has not.
struct SubmoduleSides {
    struct Side {
        std::string hash, subject;
        Date date;
        int ahead = 0;

        bool operator==(const Side&) const = default;
    };
    Side left, right;

    bool operator==(const SubmoduleSides&) const = default;
};

/// All conflicts of a working tree, the ones with the first paths first.
struct ConflictList {
    std::vector<Conflict> conflicts;
    ConflictNames names;

    bool operator==(const ConflictList&) const = default;
};

} // namespace gitkit

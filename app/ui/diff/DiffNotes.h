// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/ParsedDiff.h"
#include "GitKit/records/Submodule.h"
#include "app/store/Failure.h"
#include "app/ui/diff/WideEncoding.h"

#include <QString>
#include <QStringList>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace plovik {

/// Sentences about a diff beside its lines. Value.
struct DiffNotes {
    QStringList above;       ///< before the lines, or instead of them
    QStringList below;       ///< after the lines
    QString more;            ///< title of the button that shows what was cut; empty without one
    QString wholeOnly;       ///< why its lines cannot be staged one by one; empty if they can
    bool hidesLines = false; ///< whether the sentences stand in place of the lines
};

/// What is known about the files of a diff beside the diff itself. Value.
struct FileFacts {
    bool isBeingRead = false;                      ///< nothing is known yet
    bool isPicture = false;                        ///< a picture is shown below the sentences
    std::optional<std::uint64_t> oldSize, newSize; ///< in bytes
    std::optional<WideEncoding> encoding;          ///< the encoding that makes git take it for binary
    std::optional<gitkit::SubmoduleLog> submodule; ///< the commits between the sides of a submodule

    bool operator==(const FileFacts&) const = default;
};

/// The commits that a diff of a submodule goes from and to; empty where there is none. Value.
struct SubmoduleCommits {
    std::string before;
    std::string after;
};
/// Returns them; nullopt for the diff of anything else. Pure.
std::optional<SubmoduleCommits> submoduleCommits(const gitkit::ParsedDiff& diff);

/// Conflicts differ in what stands there: both sides' versions, one that the other side deleted, one that only one side
/// has added, or none.
enum class DiffState { ordinary, conflicted, onOneSide, addedOnOneSide, onNoSide };

/// Whose versions a conflict is between: "main (checked out)", "topic (being merged)". Value.
struct ConflictNames {
    QString ours, theirs;

    bool operator==(const ConflictNames&) const = default;
};

/// Returns the sentences about the diff of the file at `path`: whether it is binary, too long, empty or conflicted, has
/// a new mode, or is of a submodule or symbolic link. Pure.
DiffNotes diffNotes(const gitkit::ParsedDiff& diff, DiffState state = DiffState::ordinary, const FileFacts& facts = {},
                    std::string_view path = {}, const ConflictNames& sides = {});
/// Returns a size as it is shown, as in "23.4 KB".
QString shownSize(std::uint64_t bytes);

/// A sentence in place of a diff that could not be read. Value.
struct DiffProblem {
    QString title;
    QString description;
};
DiffProblem diffProblem(const Failure& failure);
/// Returns the sentence for a file that was removed after the list of files was read.
DiffProblem fileIsGone();

} // namespace plovik

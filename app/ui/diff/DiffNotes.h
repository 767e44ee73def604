// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/ParsedDiff.h"
#include "app/ui/diff/WideEncoding.h"

#include <QString>
#include <QStringList>

#include <cstdint>
#include <optional>
#include <string_view>

namespace plovik {

/// What has to be said about a diff besides its lines, in sentences.
struct DiffNotes {
    QStringList above;       ///< before the lines, or instead of them
    QStringList below;       ///< after the lines
    QString wholeOnly;       ///< why its lines cannot be taken one by one; empty where they can
    bool hidesLines = false; ///< the sentences say it all
};

/// What is known of the files of a diff besides the diff. Value.
struct FileFacts {
    bool isBeingRead = false;                      ///< nothing is known yet, but soon
    bool isPicture = false;                        ///< shown beside the sentences
    std::optional<std::uint64_t> oldSize, newSize; ///< in bytes
    std::optional<WideEncoding> encoding;          ///< why it is no text to git

    bool operator==(const FileFacts&) const = default;
};

enum class DiffState { ordinary, conflicted };

/// The sentences about the diff of the file at `path`: binary, too long, mode only, empty, a submodule, a symbolic
/// link, conflicted. Pure.
DiffNotes diffNotes(const gitkit::ParsedDiff& diff, DiffState state = DiffState::ordinary, const FileFacts& facts = {},
                    std::string_view path = {});
/// "23.4 KB", as it is shown.
QString shownSize(std::uint64_t bytes);

/// What stands in place of a diff that could not be read.
struct DiffProblem {
    QString title;
    QString description;
};
DiffProblem diffProblem(const QString& message);
/// For a file that went away between the list and the diff.
DiffProblem fileIsGone();

} // namespace plovik

#pragma once

#include "GitKit/records/ParsedDiff.h"

#include <QString>
#include <QStringList>

#include <string_view>

namespace plovik {

/// What has to be said about a diff besides its lines, in sentences.
struct DiffNotes {
    QStringList above;       ///< before the lines, or instead of them
    QStringList below;       ///< after the lines
    QString wholeOnly;       ///< why its lines cannot be taken one by one; empty where they can
    bool hidesLines = false; ///< the sentences say it all
};

enum class DiffState { ordinary, conflicted };

/// The sentences about one file's diff: binary, too long, mode only, empty, a submodule, a symbolic link, conflicted.
/// Pure.
DiffNotes diffNotes(const gitkit::ParsedDiff& diff, DiffState state = DiffState::ordinary);

/// What stands in place of a diff that could not be read.
struct DiffProblem {
    QString title;
    QString description;
};
DiffProblem diffProblem(const QString& message);
/// For a file that went away between the list and the diff.
DiffProblem fileIsGone();

} // namespace plovik

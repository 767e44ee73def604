// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Conflict.h"
#include "GitKit/records/FileStamp.h"
#include "GitKit/records/MergedSides.h"
#include "app/store/GitAccess.h"
#include "app/store/Observed.h"
#include "app/store/readers/ConflictReaders.h"
#include "app/store/readers/Latest.h"

#include <QCoreApplication>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace plovik {

class Changes;
struct Change;
class Snapshot;
class WindowState;
struct Failure;

/// What is in conflict, and what ends it. The list is read again after each status that has conflicts. Owned by the store;
/// main thread.
///
/// An action that resolves a conflict or starts one over waits for its turn and is shown only when it is slow. Each is a
/// step that can be taken back: with it comes back what the working file held before.
class Conflicts {
    Q_DECLARE_TR_FUNCTIONS(plovik::Conflicts)

public:
    Conflicts(const GitAccess& git, WindowState& window, Snapshot& snapshot, Changes& changes);
    Conflicts(const Conflicts&) = delete;
    Conflicts& operator=(const Conflicts&) = delete;

    /// All conflicts and the names of their sides, as last read; empty when there are none.
    Observed<gitkit::ConflictList, Conflicts> list;
    /// Whether the operation in progress has stopped with conflicts that are all resolved now.
    Observed<bool, Conflicts> areResolved{false};
    /// Returns the conflict that a path is in, under whatever of its names; nullptr while none is known.
    const gitkit::Conflict* find(const std::string& path) const;
    /// Returns how many there are. Several paths may be one conflict.
    std::size_t count() const;
    /// Returns the markers with which the result of a conflict is kept in its working file.
    gitkit::MergeMarkers markers(const gitkit::Conflict& conflict) const;

    /// Shows the working copy with the conflict behind the selected one, or with the first.
    void selectNext();

    /// Resolves a conflict of text with these bytes, as they are to be in the repository. Tells the user, and does nothing,
    /// when the working file is not as `seen` says.
    void resolve(const gitkit::Conflict& conflict, std::string bytes, std::optional<gitkit::FileStamp> seen);
    /// Writes a result that is not done into the working file, so that a crash loses nothing of it; the conflict stays.
    /// `kept` gets the file's new stamp, or nullopt when nothing was written, because the file is not as `seen` says or
    /// cannot be written. The user has been told then. Where the user is asked first whether programs may run, `kept` gets
    /// nullopt at once, and a stamp if the answer is yes.
    void keepResult(const gitkit::Conflict& conflict, std::string bytes, std::optional<gitkit::FileStamp> seen,
                    std::function<void(std::optional<gitkit::FileStamp>)> kept);
    /// Answers conflicts that are not merged line by line, and takes one side of those that are.
    void answer(const std::vector<gitkit::Conflict>& conflicts, gitkit::ConflictAnswer answer);
    /// Makes the conflict again as git left it, also when it is resolved: the working file is written anew.
    void startOver(const gitkit::Conflict& conflict) { startOverAt(conflict.allPaths()); }
    void startOverAt(const std::vector<std::string>& paths);
    /// Has git forget how it resolved this before, and starts over.
    void forgetResolution(const gitkit::Conflict& conflict);

    /// Must be called when a stash is applied, which leaves no other trace.
    void willApply(const std::string& stash) { stash_ = stash; }
    /// Takes the failure of an action. Returns whether git has stopped with conflicts, which are shown then in place of an
    /// alert as soon as the status is read.
    bool takeFailure(const Failure& failure);

private:
    ConflictsRequest request() const;
    int markerSize(const std::vector<std::string>& paths) const;
    void statusRead();
    void listRead();
    void tellOfAutostash();
    void showStop();
    void show(const std::string& path);

    const GitAccess& git_;
    WindowState& window_;
    Snapshot& snapshot_;
    Changes& changes_;
    Latest<ConflictsRequest, gitkit::ConflictList> reading_;
    Latest<ResolvedRequest, bool> resolved_;
    std::string stash_;             ///< hash of the stash that was applied last
    std::unique_ptr<Failure> stop_; ///< whose conflicts are to be shown
    qint64 endedBeforeRead_ = 0;    ///< Changes::ended() when the last status read began
};

} // namespace plovik

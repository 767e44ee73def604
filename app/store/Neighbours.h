// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Submodule.h"
#include "GitKit/records/Worktree.h"
#include "app/store/GitAccess.h"
#include "app/store/Observed.h"
#include "app/store/readers/Latest.h"
#include "app/store/readers/NeighbourReaders.h"

#include <QCoreApplication>
#include <QString>

#include <set>
#include <string>
#include <vector>

namespace plovik {

class Snapshot;
class WindowState;

/// The other working trees of the repository and the submodules in this one, read again with every full refresh. A
/// repository that has none costs a look at two folders and a file. A failed read leaves the values unchanged. Owned by the store; main thread.
class Neighbours {
    Q_DECLARE_TR_FUNCTIONS(plovik::Neighbours)

public:
    Neighbours(const GitAccess& git, WindowState& window, Snapshot& snapshot);
    Neighbours(const Neighbours&) = delete;
    Neighbours& operator=(const Neighbours&) = delete;

    /// All working trees, the main one first; empty when there is only this one.
    Observed<std::vector<gitkit::Worktree>, Neighbours> worktrees;
    Observed<std::vector<gitkit::Submodule>, Neighbours> submodules;
    /// Submodules of which another commit was recorded by what has happened since the window was opened, such as a pull or
    /// a checkout, and that have not checked it out.
    Observed<std::vector<gitkit::Submodule>, Neighbours> outdated;
    /// Forgets them, because the user leaves them as they are.
    void leaveOutdated();
    /// Why the last read failed; empty when it has not.
    Observed<QString, Neighbours> problem;

private:
    QCoro::Task<> readingAgain();
    void wereRead();
    void tellUnreadable(int count);
    void noteRecorded(const std::vector<gitkit::Submodule>& now);
    void lookForOutdated();

    WindowState& window_;
    const Snapshot& snapshot_;
    std::set<std::string> rerecorded_; ///< the paths of those of which another commit was recorded
    bool hasRead_ = false;
    QPropertyNotifier notifier_;
    int told_ = 0; ///< the number of unreadable ones that the user was told
    Latest<NeighboursRequest, NeighboursRead> read_;
};

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/FileChange.h"
#include "GitKit/records/Kept.h"
#include "app/store/Changes.h"
#include "app/store/Observed.h"

#include <QCoreApplication>

#include <vector>

namespace plovik {

class Undo;

/// Keeps what actions take from the user's files. Owned by the store; main thread.
class Discards {
    Q_DECLARE_TR_FUNCTIONS(plovik::Discards)

public:
    using Files = std::vector<gitkit::FileChange>;

    Discards(WindowState& window, Snapshot& snapshot, Changes& changes, Undo& undo);
    Discards(const Discards&) = delete;
    Discards& operator=(const Discards&) = delete;

    /// Runs a change that takes work from `files`, which are kept first, after `check`, which throws when it must not be.
    /// Returns what Changes::run() does.
    bool run(Change change, const Files& files, GitAccess::Operation check = {})
    {
        return runKeeping(std::move(change), files, {std::move(check), false});
    }
    /// The same for a step of an operation in progress, which may stop again, and for all files that git knows and that
    /// are changed when it begins.
    bool runStep(Change change) { return runKeeping(std::move(change), {}, {{}, true}); }

    // What is kept, also by earlier windows: see readKept().

    /// Grows when what is kept has changed.
    Observed<qint64, Discards> generation{0};
    /// What cannot be put back, because the files have changed since, stays kept, and a question offers to save it
    /// elsewhere.
    void bringBack(const gitkit::Kept& kept);
    /// Writes copies of the files elsewhere: of one file to `place`, of several into that folder.
    void save(const gitkit::Kept& kept, const std::filesystem::path& place);
    /// Asks, and then removes the copies for good.
    void confirmDrop(const gitkit::Kept& kept);

private:
    struct Way {
        GitAccess::Operation check;
        bool isStep = false;
    };
    bool runKeeping(Change change, const Files& files, Way way);
    void broughtBack(const gitkit::Kept& kept, const gitkit::BroughtBack& result);
    void askAboutLeft(const gitkit::Kept& left);
    void drop(const gitkit::Kept& kept);
    void keepingChanged() { generation = generation.value() + 1; }

    WindowState& window_;
    Snapshot& snapshot_;
    Changes& changes_;
    bool isBringingBack_ = false;
};

} // namespace plovik

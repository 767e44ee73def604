// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/ChangedFiles.h"
#include "GitKit/records/FileStamp.h"
#include "GitKit/records/OperationInProgress.h"
#include "GitKit/records/ParsedDiff.h"
#include "GitKit/records/PartialChange.h"
#include "GitKit/records/Trash.h"
#include "app/store/GitAccess.h"
#include "app/store/Observed.h"

#include <QCoreApplication>
#include <QString>

#include <memory>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

namespace plovik {

class Changes;
struct Change;
class Discards;
class Snapshot;
class WindowState;

/// Stages, unstages and discards files, hunks and lines. These changes show no activity: they wait for their turn, and
/// the check boxes show their result at once. Owned by the store; main thread.
class Staging {
    Q_DECLARE_TR_FUNCTIONS(plovik::Staging)

public:
    using Files = gitkit::ChangedFiles;

    /// `trash` is called on the worker's threads.
    Staging(const GitAccess& git, WindowState& window, Snapshot& snapshot, Changes& changes, Discards& discards,
            gitkit::Trash trash);
    Staging(const Staging&) = delete;
    Staging& operator=(const Staging&) = delete;

    /// Returns the changed files that are selected, in the order of the status.
    Files selectedFiles() const;
    /// Returns the stage state that a file will have once the changes under way have ended.
    gitkit::StageState shownStageState(const gitkit::FileChange& file) const;
    struct StageCounts {
        std::ptrdiff_t touched = 0; ///< files of which something is staged
        std::ptrdiff_t whole = 0;   ///< files of which everything is staged
    };
    /// Returns how many changed files have which of these states.
    StageCounts shownCounts() const;
    /// Grows whenever the results of shownStageState() and shownCounts() may have changed.
    Observed<qint64, Staging> stagingGeneration{0};

    /// Stages files. Asks first when a conflicted one still contains conflict markers.
    void stage(const Files& files);
    void unstage(const Files& files);
    void stageAll();
    void unstageAll();
    /// Stages or unstages the selected lines of a file's diff. Does nothing when they cannot be applied.
    void applyToIndex(const std::string& path, const gitkit::ParsedDiff& diff, const std::set<int>& lines,
                      gitkit::PatchDirection direction);
    /// Stages or unstages a file, or the whole selection when the file is part of it. For clicks on a check box.
    void toggleStage(const gitkit::FileChange& file);
    void toggleStageOfSelection();

    /// Resolves the conflicted ones of these files with the whole content of one side. Edited files go to the Trash
    /// first.
    void takeSide(const Files& files, gitkit::ConflictSide side);

    static QString discardTitle(const Files& files);
    /// Returns why these files cannot be discarded, or an empty string when they can.
    static QString reasonAgainstDiscard(const Files& files);
    /// Asks what exactly to discard, once it is known how much there is.
    void confirmDiscard(const Files& files);
    /// Moves untracked files to the Trash without a question: they were chosen one by one.
    void discardUntracked(const Files& files);
    enum class DiscardedPart { hunk, lines };
    /// Asks, and then discards the selected lines of a file's unstaged diff.
    void confirmDiscardPart(const std::string& path, const gitkit::ParsedDiff& diff, const std::set<int>& lines,
                            DiscardedPart part);
    /// Asks what the stash is called that takes the selected lines of a file's unstaged diff.
    void stashPart(const std::string& path, const gitkit::ParsedDiff& diff, const std::set<int>& lines);

private:
    void stageChecked(const Files& files, GitAccess::Operation operation);
    void stageNow(const Files& files, GitAccess::Operation operation);
    void changeIndex(const Files& files, Change change);
    QCoro::Task<> stagingAfterMarkerCheck(Files files, GitAccess::Operation operation);
    gitkit::StageState stateBeneath(const gitkit::FileChange& file) const;
    void showStaging(const Files& files, gitkit::StageState state);
    void dropShownStaging();
    void forgetShownStaging();
    bool showsStaging() const { return shownOfAll_ || !shownStaging_.empty(); }
    bool isListOld() const;
    QCoro::Task<> askingToDiscard(Files files);
    enum class Discarded { all, unstaged };
    void discard(const Files& files, const std::vector<gitkit::FileStamp>& stamps, Discarded what);
    void discardPart(const gitkit::PartialChange& change);
    QCoro::Task<> discardingUntracked(Files files);

    const GitAccess& git_;
    WindowState& window_;
    Snapshot& snapshot_;
    Changes& changes_;
    Discards& discards_;
    gitkit::Trash trash_;
    struct ShownOfAll {
        Files files;
        gitkit::StageState state;
    };
    std::optional<ShownOfAll> shownOfAll_; ///< the state of all files of a status, once changed together
    /// The states of files with changes under way, by their paths. They are newer than the one of all.
    std::unordered_map<std::string, gitkit::StageState> shownStaging_;
    QPropertyNotifier slow_;
    qint64 endedBeforeRead_ = 0; ///< Changes::ended() when the last status read began
};

} // namespace plovik

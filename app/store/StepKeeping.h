// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/InTheWay.h"
#include "GitKit/records/UndoStep.h"
#include "GitKit/undo/UndoJournal.h"
#include "app/store/GitAccess.h"

#include <QString>

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace plovik {

/// What an operation that keeps files by itself tells and is told. Written on the main thread before it begins, and on the
/// worker while it runs.
struct KeptFiles {
    std::string name;       ///< of what keeping() has kept; empty when nothing
    bool isLeftOut = false; ///< the user wants it done without keeping anything
};

/// A branch that was pushed.
struct PushedBranch {
    std::string branch; ///< the local one, without refs/heads
    std::string told;   ///< address on the web; empty when the server has told none. Written on the worker

    bool operator==(const PushedBranch&) const = default;
};

/// What must be known of a change so that it can be taken back.
struct Undoable {
    QString title; ///< names it in a sentence, as “Merge of topic”
    QString done;  ///< says that it is done, as a sentence; empty where that is plain to see
    gitkit::UndoScope scope;
    /// Completes the scope with what must be looked at first. Called on the worker; may be empty.
    std::function<void(const gitkit::GitRepository&, gitkit::UndoScope&)> complete = {};
    /// Finds the files that git does not know and that the change would write over. Called on the worker; may be empty.
    std::function<gitkit::InTheWay(const gitkit::GitRepository&)> inTheWay = {};
    /// The change takes work that is nowhere else: without a way back it does not begin.
    bool takesWork = false;
    /// For an operation that keeps files by itself; may be empty.
    std::shared_ptr<KeptFiles> kept = {};
    /// For a push: the branch, and what the server has told. May be empty.
    std::shared_ptr<PushedBranch> pushed = {};
};

/// Files that git does not know stand where a change would write.
class UntrackedInTheWay : public std::exception {
public:
    explicit UntrackedInTheWay(std::vector<std::string> paths) : paths_(std::move(paths)) {}

    const std::vector<std::string>& paths() const { return paths_; }
    const char* what() const noexcept override { return "Files that git does not know are in the way."; }

private:
    std::vector<std::string> paths_;
};

/// No way back could be kept for a change that takes work. Nothing was done.
class NotKept : public std::exception {
public:
    NotKept(std::string why, std::optional<std::uintmax_t> bytes) : why_(std::move(why)), bytes_(bytes) {}

    /// Why, as a sentence for the user.
    const char* what() const noexcept override { return why_.c_str(); }
    /// How much would have to be kept, if that is the reason.
    std::optional<std::uintmax_t> bytes() const { return bytes_; }

private:
    std::string why_;
    std::optional<std::uintmax_t> bytes_;
};

/// Keeps one change so that it can be taken back: begin() before it and end() after it, both on the worker, one after the
/// other. Between and after them the main thread reads.
class StepKeeping {
public:
    /// What the user has agreed to.
    enum class Consent {
        none,
        movesUntracked, ///< files that git does not know may be moved out of the way
        noUndo,         ///< it is done without a way back
    };

    StepKeeping(Undoable what, std::optional<std::filesystem::path> gitDirectory, Consent consent);
    /// Keeps the state after where nobody did, because the window is gone.
    ~StepKeeping();
    StepKeeping(const StepKeeping&) = delete;
    StepKeeping& operator=(const StepKeeping&) = delete;

    /// Throws UntrackedInTheWay, NotKept, and what git throws where the repository cannot be read.
    void begin(const gitkit::GitRepository& repo);
    /// Keeps the state after, also after a failure of the change; `hasFailed` tells of one. Throws nothing. Does nothing
    /// a second time.
    void end(bool hasFailed) noexcept;

    const Undoable& what() const { return what_; }
    /// The step; nullopt when nothing has changed, or when it could not be kept.
    const std::optional<gitkit::UndoStep>& step() const { return step_; }
    /// Ignored files that were moved out of the way.
    const std::vector<std::string>& movedIgnored() const { return movedIgnored_; }
    /// Why the step could not be kept; empty when it was.
    const std::string& problem() const { return problem_; }
    /// Returns whether begin() has kept the state before.
    bool isKept() const { return recording_.has_value(); }

private:
    void keepBefore(gitkit::UndoScope scope);
    void moveOutOfTheWay();

    Undoable what_;
    std::optional<std::filesystem::path> gitDirectory_;
    Consent consent_;
    std::unique_ptr<const gitkit::GitRepository> repo_; ///< nobody listens to its runs
    std::optional<gitkit::UndoRecording> recording_;
    bool hasEnded_ = false;
    std::optional<gitkit::UndoStep> step_;
    std::vector<std::string> moved_;
    std::vector<std::string> movedIgnored_;
    std::string problem_;
};

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Trash.h"
#include "GitKit/records/UndoStep.h"
#include "app/store/Confirmation.h"
#include "app/store/Observed.h"
#include "app/store/StepKeeping.h"
#include "app/store/TimelineRows.h"

#include <QCoreApplication>
#include <QCoroTask>
#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace gitkit {
struct BroughtBack;
struct Kept;
struct TakenBack;
} // namespace gitkit

namespace plovik {

class Changes;
class GitAccess;
class Snapshot;
class StepKeeping;
class WindowState;

/// What this working tree's changes can be taken back, and the list of them. Owned by the store; main thread.
class Undo {
    Q_DECLARE_TR_FUNCTIONS(plovik::Undo)

public:
    Undo(const GitAccess& git, WindowState& window, Snapshot& snapshot, Changes& changes, gitkit::Trash trash);
    Undo(const Undo&) = delete;
    Undo& operator=(const Undo&) = delete;

    /// What undo() takes back and redo() does again, as in “Merge of topic”; nullopt when there is nothing.
    Observed<std::optional<QString>, Undo> undoTitle;
    Observed<std::optional<QString>, Undo> redoTitle;
    /// Returns a sentence that says why there is nothing to undo.
    QString whyNoUndo() const;
    void undo();
    void redo();

    /// Everything that has happened, the newest first; null before it was read.
    Observed<Timeline, Undo> timeline;
    /// Reads the timeline, and again whenever it may have changed. Call when it is shown first.
    void showTimeline();

    /// Asks, and then takes back all steps down to the one with this id.
    void confirmUndoTo(const std::string& id);
    /// Takes a step out of the list, after what was kept of it is gone.
    void forgotten(const std::string& id);

    /// The step that the timeline is to select; an empty id before any was meant.
    struct Meant {
        quint64 number = 0; ///< grows with each
        std::string id;

        bool operator==(const Meant&) const = default;
    };
    Observed<Meant, Undo> meant;

    /// What was just done, as a quiet sentence, and what can be done about it.
    struct Said {
        enum class Offer { none, undo, redo };
        quint64 number = 0; ///< grows with each
        QString sentence;
        Offer offer = Offer::none;
        /// Full names of the branches that it has moved to other commits than new ones of its own on top.
        std::vector<std::string> rewritten = {};
        std::optional<PushedBranch> pushed = {};

        bool operator==(const Said&) const = default;
    };
    Observed<std::optional<Said>, Undo> said;
    void dismissSaid() { said = std::nullopt; }

    /// The title of a step in whose middle the program ended; empty when there is none.
    Observed<QString, Undo> interrupted;
    void restoreInterrupted();
    void leaveInterrupted();

    /// Sets the function that is told of an action that was taken back (`isUndone`) or done again. For the draft of the
    /// commit message alone.
    void whenTakenBack(std::function<void(const gitkit::UndoStep& action, bool isUndone)> tell)
    {
        whenTakenBack_ = std::move(tell);
    }

    /// Sets the function that is told what became of files that a discard had kept. For Discards alone.
    void whenFilesBack(std::function<void(const gitkit::Kept& kept, const gitkit::BroughtBack& result)> tell)
    {
        whenFilesBack_ = std::move(tell);
    }

private:
    enum class Direction { undo, redo };

    QCoro::Task<> beginning();
    QCoro::Task<> reading();
    void show();
    void kept(const StepKeeping& keeping);
    void add(gitkit::UndoStep step);
    void tellMovedAside(const std::vector<std::string>& paths);
    void say(const QString& sentence, Said::Offer offer);
    bool isOnUpstream() const;
    void takeBack(std::vector<gitkit::UndoStep> steps, Direction direction, bool overEdits);
    void tellTakenBack(const gitkit::UndoStep& taken, const gitkit::TakenBack& done, Direction direction);
    void explain(const gitkit::UndoStep& step, Direction direction, gitkit::UndoRefusal cause,
                 const std::vector<std::string>& names);
    static QString reason(gitkit::UndoRefusal cause, const std::vector<std::string>& names);
    void offerOtherName(Confirmation& question, const gitkit::UndoStep& step, const std::vector<std::string>& names);
    void readElsewhere();
    QCoro::Task<> readingElsewhere();
    void closeInterrupted(bool restores);

    const GitAccess& git_;
    WindowState& window_;
    Snapshot& snapshot_;
    Changes& changes_;
    std::vector<gitkit::UndoStep> steps_; ///< those that have ended, the newest first
    std::vector<TimelineRow> elsewhere_;  ///< what other programs did, the newest first
    std::optional<gitkit::UndoStep> interrupted_;
    std::function<void(const gitkit::UndoStep&, bool)> whenTakenBack_;
    std::function<void(const gitkit::Kept&, const gitkit::BroughtBack&)> whenFilesBack_;
    gitkit::Trash trash_;
    quint64 lastSaid_ = 0;
    bool hasBegun_ = false;
    bool isShown_ = false; ///< the timeline was shown once
};

} // namespace plovik

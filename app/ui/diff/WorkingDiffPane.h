// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"
#include "app/store/readers/FileReaders.h"
#include "app/store/readers/Latest.h"
#include "app/ui/diff/DiffPane.h"

#include <QProperty>

#include <QCoroTask>

#include <optional>
#include <string>
#include <vector>

namespace plovik {

struct DiffProblem;

/// What changed in the selected file of the working copy, to be staged, unstaged and discarded in parts.
///
/// Follows the selected paths and the generation of the snapshot. Until a diff has arrived, the one before it stays on
/// display, but nothing can be done with it; the same holds after a part was staged or discarded, since the next one is
/// to be taken from what git has then. A reading that brings the same diff changes nothing. Main thread.
class WorkingDiffPane : public DiffPane {
    Q_OBJECT

public:
    /// `store` outlives the pane.
    explicit WorkingDiffPane(RepositoryStore& store, QWidget* parent = nullptr);

private:
    void follow();
    void ask(WorkingDiffRequest request);
    void awaitChanges();
    bool isShownFileStaged() const;
    void offerActions();
    void showCount(std::size_t selected);
    void take(const gitkit::FileChange& file, std::vector<gitkit::DiffSection> sections);
    void takeProblem(const DiffProblem& problem);
    void diffRead();
    void takeSide(gitkit::ConflictSide side);
    void apply(const DiffContent& content, const DiffAction& action);

    RepositoryStore& store_;
    Latest<WorkingDiffRequest, std::vector<gitkit::DiffSection>> reading_;
    std::string shown_;          ///< path of the file on display
    std::string awaited_;        ///< path of the file whose diff is old until changes under way have ended
    bool isReadCurrent_ = false; ///< no change was under way when the reading began, and none has begun since
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik

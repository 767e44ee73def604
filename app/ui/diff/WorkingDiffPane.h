// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"
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
/// Follows the store's `selectedPaths` and `generation`. One reading runs at a time and the one asked for last is
/// shown. Until it has arrived the picture before it stays, but nothing can be done with it. A reading that brings the
/// same diff changes nothing. Main thread.
class WorkingDiffPane : public DiffPane {
    Q_OBJECT

public:
    /// `store` outlives the pane.
    explicit WorkingDiffPane(RepositoryStore& store, QWidget* parent = nullptr);

private:
    static QCoro::Task<> readDiffs(QPointer<WorkingDiffPane> pane);

    void follow();
    void showCount(std::size_t selected);
    void take(const gitkit::FileChange& file, std::vector<gitkit::DiffSection> sections);
    void takeProblem(const DiffProblem& problem);
    bool isWanted(const std::string& path) const;
    void apply(const DiffContent& content, const DiffAction& action);

    RepositoryStore& store_;
    std::optional<gitkit::FileChange> wanted_; ///< to read next
    bool isReading_ = false;
    std::string shown_; ///< path of the file on display
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStackedWidget>

namespace plovik {

class ConflictCard;
class MergePane;
class RepositoryStore;
class WorkingDiffPane;

/// What stands beside the changed files: the changes of the selected one, its merge while it is in conflict line by
/// line, or a card for a conflict of another kind. Main thread.
class WorkingDetail : public QStackedWidget {
    Q_OBJECT

public:
    /// `store` outlives the widget.
    explicit WorkingDetail(RepositoryStore& store, QWidget* parent = nullptr);

    WorkingDiffPane* diff() const { return diff_; }
    MergePane* merge() const { return merge_; }
    ConflictCard* card() const { return card_; }

private:
    void choose();

    WorkingDiffPane* diff_;
    MergePane* merge_;
    ConflictCard* card_;
};

} // namespace plovik

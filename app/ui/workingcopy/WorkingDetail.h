// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStackedWidget>

namespace plovik {

class MergePane;
class RepositoryStore;
class WorkingDiffPane;

/// What stands beside the changed files: the changes of the selected one, or its merge while it is in conflict line by
/// line. Main thread.
class WorkingDetail : public QStackedWidget {
    Q_OBJECT

public:
    /// `store` outlives the widget.
    explicit WorkingDetail(RepositoryStore& store, QWidget* parent = nullptr);

    WorkingDiffPane* diff() const { return diff_; }
    MergePane* merge() const { return merge_; }

private:
    void choose();

    WorkingDiffPane* diff_;
    MergePane* merge_;
};

} // namespace plovik

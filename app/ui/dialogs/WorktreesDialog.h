// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/dialogs/Sheet.h"

#include <optional>

class QListWidget;
class QPushButton;

namespace plovik {

class EmptyState;

/// Lists the worktrees of the repository. Confirming opens the window of the selected one; the other buttons make, lock
/// and remove them. Main thread.
class WorktreesDialog : public Sheet {
    Q_OBJECT

public:
    WorktreesDialog(RepositoryStore& store, QWidget* parent);

    void submit() override;

protected:
    QString problem() const override;
    QString note() const override;
    bool isComplete() const override;

private:
    void layOut();
    void show();
    void selectionChanged();
    std::optional<gitkit::Worktree> selected() const;
    void make();
    void lock();
    void remove();

    QListWidget* list_;
    EmptyState* empty_;
    QPushButton* make_;
    QPushButton* lock_;
    QPushButton* remove_;
    std::vector<QPropertyNotifier> followers_;
};

} // namespace plovik

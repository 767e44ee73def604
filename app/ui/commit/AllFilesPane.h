// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/commit/CommitReading.h"

#include <QWidget>

#include <memory>

class QAbstractButton;

namespace plovik {

class AllFilesFinder;
class AllFilesView;
class DiffOptionsBar;
class FindBar;
class RepositoryStore;

/// The diffs of all files of a commit, with options for reading them and a search. Main thread.
class AllFilesPane : public QWidget {
    Q_OBJECT

public:
    /// `store` outlives the pane.
    explicit AllFilesPane(RepositoryStore& store, QWidget* parent = nullptr);

    AllFilesView& view() const { return *view_; }
    void setReading(std::shared_ptr<const CommitReading> reading);
    /// Shows a button before the options. Takes ownership.
    void addOption(QAbstractButton* button);

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    Q_INVOKABLE void find();
    bool isMine(const QKeyEvent& event) const;
    void placeOptions();

    AllFilesView* view_;
    DiffOptionsBar* options_;
    AllFilesFinder* finder_;
    FindBar* findBar_ = nullptr; ///< made for the first search
};

} // namespace plovik

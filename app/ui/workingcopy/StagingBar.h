// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"

#include <QProperty>
#include <QWidget>

#include <vector>

class QLabel;
class QPushButton;

namespace plovik {

/// The bar under the list of changed files: "Stage All", "Unstage All", and how many files have staged changes. Main
/// thread.
class StagingBar : public QWidget {
    Q_OBJECT

public:
    /// `store` outlives the bar.
    explicit StagingBar(RepositoryStore& store, QWidget* parent = nullptr);

private:
    void showCounts();

    RepositoryStore& store_;
    QPushButton* stageAll_;
    QPushButton* unstageAll_;
    QLabel* count_;
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"

#include <QProperty>
#include <QWidget>

#include <vector>

class QHBoxLayout;
class QLabel;

namespace plovik {

class BarButton;

/// The row at the top of the repository window: the names of the repository and of the branch, buttons for the most
/// frequent actions, and the running action. Main thread.
class Toolbar : public QWidget {
    Q_OBJECT

public:
    /// `store` outlives the toolbar.
    explicit Toolbar(RepositoryStore& store, QWidget* parent = nullptr);

Q_SIGNALS:
    void fetchRequested();
    void pullRequested();
    void pushRequested();
    void branchRequested();
    void stashRequested();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void makeButtons(QHBoxLayout& row);
    void statusChanged();
    void updateButtons();

    RepositoryStore& store_;
    QLabel* project_;
    QLabel* branch_;
    std::vector<BarButton*> buttons_;
    BarButton* pull_ = nullptr;
    BarButton* push_ = nullptr;
    BarButton* stash_ = nullptr;
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik

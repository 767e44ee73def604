// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"

#include <QProperty>
#include <QTimer>
#include <QWidget>

#include <vector>

class QCheckBox;
class QLabel;
class QLineEdit;

namespace plovik {

class CommandDetail;
class CommandList;
class CommandLogModel;

/// Lists every git command that the window ran, and shows the selected one in full. It is updated at most ten times a
/// second while it is visible, and not at all while it is hidden. Escape clears the filter first and then closes the
/// panel. Main thread.
class CommandLogPanel : public QWidget {
    Q_OBJECT

public:
    /// `store` must outlive the panel.
    explicit CommandLogPanel(RepositoryStore& store, QWidget* parent = nullptr);

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QWidget* makeHeader();
    void hearOfNews();
    void update();
    using QWidget::update;
    void showCount();
    void filter();
    void userSelected();
    void showSelected();
    void showDetail();

    RepositoryStore& store_;
    CommandLogModel* model_;
    CommandList* list_;
    CommandDetail* detail_;
    QLabel* title_;
    QLabel* count_;
    QLineEdit* field_;
    QCheckBox* hidesReads_;
    QTimer pause_; ///< since the last update
    bool isBehind_ = false;
    bool isSelecting_ = false;
    std::vector<QPropertyNotifier> notifiers_; ///< while it is shown
};

} // namespace plovik

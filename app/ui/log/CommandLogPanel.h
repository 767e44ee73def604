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

/// Every git command that the window ran, and the selected one in full. While it is hidden it does nothing; while it is
/// shown, what is new comes at most ten times a second. Escape takes the filter away, and then closes it. Main thread.
class CommandLogPanel : public QWidget {
    Q_OBJECT

public:
    /// `store` outlives the panel.
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

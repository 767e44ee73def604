// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"
#include "app/ui/commands/Commands.h"

#include <QProperty>
#include <QWidget>

#include <map>
#include <vector>

class QHBoxLayout;
class QLabel;

namespace plovik {

class BarButton;

/// The row at the top of the repository window: what is open, the commands that are used most, and what runs.
/// Main thread.
class Toolbar : public QWidget {
    Q_OBJECT

public:
    /// `store` outlives the toolbar.
    explicit Toolbar(RepositoryStore& store, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void makeButtons(QHBoxLayout& row);
    void statusChanged();
    void updateButtons();

    RepositoryStore& store_;
    QLabel* project_;
    QLabel* branch_;
    std::map<CommandId, BarButton*> buttons_;
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik

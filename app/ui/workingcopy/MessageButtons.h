// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"

#include <QProperty>
#include <QWidget>

#include <vector>

class QLabel;
class QPushButton;

namespace plovik {

class IconButton;
class Spinner;

/// The button that has a commit message written, with its menu. While a message is being written, a spinner and "Cancel"
/// take their place. Shown only while the settings enable it. Main thread.
class MessageButtons : public QWidget {
    Q_OBJECT

public:
    /// `store` outlives the buttons.
    explicit MessageButtons(RepositoryStore& store, QWidget* parent = nullptr);

    QWidget* lastInTabOrder() const;

private:
    void arrange();
    void write();
    void showMenu();
    void showState();

    RepositoryStore& store_;
    IconButton* write_;
    IconButton* more_;
    Spinner* spinner_;
    QLabel* writing_;
    QPushButton* cancel_;
    std::vector<QPropertyNotifier> notifiers_;
};

/// Starts writing a message for the staged changes.
void writeCommitMessage(RepositoryStore& store);

} // namespace plovik

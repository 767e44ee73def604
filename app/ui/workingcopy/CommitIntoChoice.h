// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"

#include <QWidget>

#include <vector>

class QLabel;
class QPushButton;

namespace plovik {

class IconButton;

/// The arrow beside "Commit" that opens a list of the commits into which the commit box may write. Main thread.
class CommitIntoButton : public QWidget {
    Q_OBJECT

public:
    /// `store` outlives the button.
    explicit CommitIntoButton(RepositoryStore& store, QWidget* parent = nullptr);

    /// Opens the list, once it is known which commits can be changed.
    void choose();

private:
    void open();
    void showState();

    RepositoryStore& store_;
    IconButton* button_;
    bool isWanted_ = false; ///< the list, once it is known
    std::vector<QPropertyNotifier> notifiers_;
};

/// Says below the message which commit it is about, and leads back to the next commit. Main thread.
class CommitIntoNote : public QWidget {
    Q_OBJECT

public:
    /// `store` outlives the note.
    explicit CommitIntoNote(RepositoryStore& store, QWidget* parent = nullptr);

private:
    void showState();

    RepositoryStore& store_;
    QLabel* words_;
    QLabel* published_;
    QPushButton* cancel_;
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik

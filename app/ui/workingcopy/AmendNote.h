// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"
#include "app/store/readers/AmendReaders.h"
#include "app/store/readers/Latest.h"

#include <QWidget>

#include <vector>

class QLabel;

namespace plovik {

/// What stands below "Amend" while that is ticked: the files that the amended commit holds already, and whether others
/// may have the commit. Main thread.
class AmendNote : public QWidget {
    Q_OBJECT

public:
    /// `store` outlives the note.
    explicit AmendNote(RepositoryStore& store, QWidget* parent = nullptr);

private:
    void ask();
    void show(const AmendedCommit& commit);

    RepositoryStore& store_;
    QLabel* files_;
    QLabel* published_;
    Latest<std::string, AmendedCommit> commit_;
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik

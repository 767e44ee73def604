// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"
#include "app/store/readers/ActionPreviews.h"
#include "app/store/readers/Latest.h"

#include <QObject>
#include <QString>

#include <functional>

class QAction;
class QMenu;

namespace plovik {

/// Finds out what an action would do while the pointer or the selection is on its entry. Ends the reading when the entry is
/// left. Main thread.
class Foretelling : public QObject {
    Q_OBJECT

public:
    /// `told` gets the words, which are never empty, or the empty text when nothing can be told. `store` outlives this.
    Foretelling(RepositoryStore& store, ForetoldQuestion question, std::function<void(const QString&)> told,
                QObject* parent);

    void begin();
    void end() { reading_.forget(); }

private:
    ForetoldQuestion question_;
    std::function<void(const QString&)> told_;
    Latest<ForetoldQuestion, Foretold> reading_;
};

/// Tells below an entry of a menu what it would do, while it is the current one. Does nothing for one that cannot be
/// chosen.
void foretellIn(QMenu& menu, QAction& entry, RepositoryStore& store, ForetoldQuestion question);

} // namespace plovik

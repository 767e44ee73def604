// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"
#include "app/store/readers/Latest.h"

#include <QObject>

#include <cstdint>
#include <string>
#include <vector>

class QWidget;

namespace plovik {

/// Offers the branches below a button, the checked out one and those that were checked out last first, and checks out
/// the one that is chosen. Owned by the button; main thread.
class BranchChoice : public QObject {
    Q_OBJECT

public:
    /// `store` outlives the button.
    BranchChoice(RepositoryStore& store, QWidget& button);

    /// Opens the list once git has told which branches were checked out last.
    void open();

private:
    void show();
    std::vector<gitkit::GitRef> ordered();

    RepositoryStore& store_;
    QWidget& button_;
    Latest<std::int64_t, std::vector<std::string>> recent_;
    std::int64_t question_ = 0;
};

} // namespace plovik

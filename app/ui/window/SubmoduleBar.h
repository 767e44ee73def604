// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"
#include "app/ui/widgets/WarningBar.h"

#include <QProperty>

#include <vector>

class QLabel;
class QPushButton;

namespace plovik {

/// A bar below the toolbar while other commits of submodules are recorded than those that are checked out in them, as
/// after a pull or a checkout. It has a button that updates them and one that closes it. Hidden otherwise. Main thread.
class SubmoduleBar : public WarningBar {
    Q_OBJECT

public:
    /// `store` outlives the bar.
    explicit SubmoduleBar(RepositoryStore& store, QWidget* parent = nullptr);

private:
    void showCount();
    void showOffer();

    RepositoryStore& store_;
    QLabel* sentence_;
    QPushButton* update_;
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik

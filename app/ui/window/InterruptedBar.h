// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"
#include "app/ui/widgets/WarningBar.h"

#include <QProperty>

#include <vector>

class QLabel;
class QPushButton;

namespace plovik {

/// A bar below the toolbar while a step is known in whose middle the program ended, with a button that goes back to the
/// state before it and one that leaves everything as it is. Hidden otherwise. Main thread.
class InterruptedBar : public WarningBar {
    Q_OBJECT

public:
    /// `store` outlives the bar.
    explicit InterruptedBar(RepositoryStore& store, QWidget* parent = nullptr);

private:
    void showStep();
    void showOffers();

    RepositoryStore& store_;
    QLabel* sentence_;
    std::vector<QPushButton*> buttons_;
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"

#include <QKeyCombination>
#include <QWidget>

#include <vector>

class QLabel;
class QPushButton;

namespace plovik {

/// The keys of the list of commits while a plan is open. In other views they do other things.
inline constexpr QKeyCombination applyPlanKeys = Qt::CTRL | Qt::Key_Return;
inline constexpr QKeyCombination cancelPlanKeys = Qt::Key_Escape;

/// Stands over the list of commits while a plan is open: what it does and what that comes to, and the buttons that carry it
/// out and drop it. Without a plan it offers to put fixup commits where they belong, if there are any. Main thread.
class PlanBar : public QWidget {
    Q_OBJECT

public:
    /// `store` outlives the bar.
    explicit PlanBar(RepositoryStore& store, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QPushButton* addButton(const QString& title, void (Rewriting::*act)());
    void show();
    void showPlan();
    void showFixups(int fixups);

    RepositoryStore& store_;
    QLabel* sentence_;
    QLabel* published_;
    QPushButton* dropEmptied_;
    QPushButton* squash_;
    QPushButton* cancel_;
    QPushButton* apply_;
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/OperationInProgress.h"
#include "app/store/RepositoryStore.h"
#include "app/store/actions/EditStop.h"
#include "app/store/actions/Operation.h"

#include <QPointer>
#include <QProperty>
#include <QWidget>

#include <vector>

class QLabel;
class QPushButton;

namespace plovik {

/// A slim bar over the view while a merge, rebase or another operation of git is unfinished: which one it is, how far it
/// has come, and the buttons for what git can do now. Hidden otherwise. Main thread.
class OperationBar : public QWidget {
    Q_OBJECT

public:
    /// `store` outlives the bar.
    explicit OperationBar(RepositoryStore& store, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QPushButton* makeButton(const QString& title, void (OperationBar::*act)());
    void observeStore();
    void showOperation();
    void showConflicts();
    void showButtons(const gitkit::OperationInProgress& now);
    bool canTakeStep() const;
    void runningChanged();
    QString whyNotContinue() const;

    void proceed() { actions::continueOperation(store_.actors()); }
    void takeApart() { actions::takeApart(store_.actors()); }
    void skip();
    void abort() { actions::abortOperation(store_.actors()); }
    void markGood() { actions::bisect(store_.actors(), gitkit::BisectMark::good); }
    void markBad() { actions::bisect(store_.actors(), gitkit::BisectMark::bad); }
    void showFound();
    void showConflict() { store_.conflicts().selectNext(); }
    void reset() { actions::resetBisect(store_.actors()); }

    RepositoryStore& store_;
    QLabel* title_;
    QLabel* detail_;
    QPushButton* conflicts_;
    QLabel* resolved_;
    QPushButton* continue_;
    QPushButton* takeApart_;
    QPushButton* good_;
    QPushButton* bad_;
    QPushButton* skip_;
    QPushButton* showFound_;
    QPushButton* abort_;
    QPushButton* reset_;
    QPointer<QPushButton> focused_; ///< had the focus when a change began that disables it
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Rebase.h"
#include "app/store/SheetKind.h"
#include "app/store/readers/Latest.h"
#include "app/ui/dialogs/Sheet.h"

class QCheckBox;
class QLineEdit;
class QListWidget;

namespace plovik {

/// Asks what commits are put on top of, and lists what becomes of each of them. Main thread.
class RebaseDialog : public Sheet {
    Q_OBJECT

public:
    RebaseDialog(RepositoryStore& store, RebaseSheet sheet, QWidget* parent);

    void submit() override;
    bool eventFilter(QObject* watched, QEvent* event) override;

protected:
    QString problem() const override;
    QString note() const override;
    bool isComplete() const override;
    std::optional<Verb> verb() const override { return Verb::rewrite; }

private:
    void layOut();
    void showTargets();
    gitkit::RebaseQuestion question() const;
    void ask();
    void showProposal();
    const gitkit::RebaseProposal* proposal() const;
    QString shownTarget() const;

    RebaseSheet sheet_;
    QLineEdit* search_;
    QListWidget* targets_;
    QCheckBox* squash_;
    QListWidget* commits_;
    Latest<gitkit::RebaseQuestion, gitkit::RebaseProposal> reading_;
    QPropertyNotifier notifier_;
};

} // namespace plovik

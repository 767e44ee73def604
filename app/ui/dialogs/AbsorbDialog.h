// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/readers/Latest.h"
#include "app/store/readers/RewriteReaders.h"
#include "app/ui/dialogs/Sheet.h"

#include <cstdint>
#include <vector>

class QComboBox;
class QLabel;
class QPlainTextEdit;
class QTreeView;

namespace plovik {

class AbsorbRows;

/// Shows which commits the staged changes belong to, lets the user leave some out or send them to others, and puts them
/// there. It is read again when what is staged or HEAD may have changed. Main thread.
class AbsorbDialog : public Sheet {
    Q_OBJECT

public:
    AbsorbDialog(RepositoryStore& store, QWidget* parent);

    void submit() override;

protected:
    QString problem() const override;
    QString note() const override;
    bool isComplete() const override;
    std::optional<Verb> verb() const override { return Verb::rewrite; }

private:
    void arrange();
    void read();
    void showProposal();
    void showChosen();
    void showCurrent();
    void showCommits(int row);
    void commitChosen(int place);

    QLabel* summary_;
    AbsorbRows* rows_;
    QTreeView* list_;
    QComboBox* commits_;
    QPlainTextEdit* lines_;
    std::int64_t readings_ = 0;
    Latest<std::int64_t, gitkit::AbsorbProposal> reading_;
    QPropertyNotifier refreshed_;
};

} // namespace plovik

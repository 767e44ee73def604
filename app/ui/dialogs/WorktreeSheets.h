// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/SheetKind.h"
#include "app/ui/dialogs/Sheet.h"

#include <string>

class QCheckBox;
class QComboBox;
class QLineEdit;
class QRadioButton;

namespace plovik {

class FolderField;

/// Asks for the branch of a new worktree, which may be a new one, and for its folder. Main thread.
class NewWorktreeDialog : public Sheet {
    Q_OBJECT

public:
    NewWorktreeDialog(RepositoryStore& store, QWidget* parent);

    void submit() override;

protected:
    QString problem() const override;
    QString note() const override;
    bool isComplete() const override;
    std::optional<Verb> verb() const override { return Verb::addWorktree; }

private:
    void layOut();
    void fillBranches();
    void changed();
    std::string branch() const;

    QRadioButton* makesBranch_;
    QLineEdit* name_;
    QRadioButton* takesBranch_;
    QComboBox* branches_;
    FolderField* folder_;
    QCheckBox* opens_;
};

/// Asks why a worktree is locked. Main thread.
class LockWorktreeDialog : public Sheet {
    Q_OBJECT

public:
    LockWorktreeDialog(RepositoryStore& store, LockWorktreeSheet sheet, QWidget* parent);

    void submit() override;

protected:
    QString note() const override;
    std::optional<Verb> verb() const override { return Verb::changeWorktree; }

private:
    LockWorktreeSheet sheet_;
    QLineEdit* reason_;
};

} // namespace plovik

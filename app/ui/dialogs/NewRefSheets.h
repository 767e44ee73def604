// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/SheetKind.h"
#include "app/ui/dialogs/Sheet.h"

#include <string>

class QCheckBox;
class QLineEdit;
class QPlainTextEdit;

namespace plovik {

/// Describes a commit by its short hash, and by its subject where the loaded history has it.
QString describedCommit(const RepositoryStore& store, const std::string& hash);

/// Asks for the name of a new branch, and whether it is checked out. Main thread.
class NewBranchDialog : public Sheet {
    Q_OBJECT

public:
    NewBranchDialog(RepositoryStore& store, NewBranchSheet sheet, QWidget* parent);

    void submit() override;

protected:
    QString problem() const override;
    QString note() const override;
    bool isComplete() const override;
    std::optional<Verb> verb() const override { return Verb::createBranch; }

private:
    std::string name() const;

    NewBranchSheet sheet_;
    QLineEdit* name_;
    QCheckBox* checkOut_;
};

/// Asks for another name of a branch. Main thread.
class RenameBranchDialog : public Sheet {
    Q_OBJECT

public:
    RenameBranchDialog(RepositoryStore& store, RenameBranchSheet sheet, QWidget* parent);

    void submit() override;

protected:
    QString problem() const override;
    QString note() const override;
    bool isComplete() const override;
    std::optional<Verb> verb() const override { return Verb::renameBranch; }

private:
    std::string name() const;
    const gitkit::GitRef* branch() const;
    std::optional<gitkit::RemoteBranch> upstream() const;

    RenameBranchSheet sheet_;
    QLineEdit* name_;
    QCheckBox* there_ = nullptr; ///< where a remote has a branch of that name
};

/// Asks for the name of a new tag, and for a message, which makes it an annotated one. Main thread.
class NewTagDialog : public Sheet {
    Q_OBJECT

public:
    NewTagDialog(RepositoryStore& store, NewTagSheet sheet, QWidget* parent);

    void submit() override;

protected:
    QString problem() const override;
    QString note() const override;
    bool isComplete() const override;
    std::optional<Verb> verb() const override { return Verb::createTag; }

private:
    std::string name() const;

    std::string message() const;

    NewTagSheet sheet_;
    QLineEdit* name_;
    QPlainTextEdit* message_;
};

} // namespace plovik

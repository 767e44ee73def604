// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/dialogs/Sheet.h"

class QCheckBox;
class QLineEdit;
class QRadioButton;

namespace plovik {

/// Asks what a new stash is called and what it takes: all changes, with the untracked files or without, only what is
/// staged, only some files, or lines of one. Main thread.
class StashDialog : public Sheet {
    Q_OBJECT

public:
    StashDialog(RepositoryStore& store, StashSheet sheet, QWidget* parent);

    void submit() override;

protected:
    QString problem() const override;
    QString note() const override;
    std::optional<Verb> verb() const override { return Verb::saveStash; }

private:
    QString problemWithAll() const;
    void addChoices();

    StashSheet sheet_;
    QLineEdit* message_;
    QRadioButton* all_;
    QRadioButton* staged_;
    QRadioButton* selected_;
    QCheckBox* untracked_;
};

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/dialogs/Sheet.h"

class QCheckBox;
class QLineEdit;

namespace plovik {

/// Asks what a new stash is called and whether it takes the untracked files. Main thread.
class StashDialog : public Sheet {
    Q_OBJECT

public:
    StashDialog(RepositoryStore& store, QWidget* parent);

    void submit() override;

protected:
    QString problem() const override;
    QString note() const override;
    std::optional<Verb> verb() const override { return Verb::saveStash; }

private:
    QLineEdit* message_;
    QCheckBox* untracked_;
};

} // namespace plovik

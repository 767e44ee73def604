// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/dialogs/Sheet.h"

class QCheckBox;
class QListView;

namespace plovik {

class UntrackedModel;

/// Lists the untracked files, of which the ticked ones are moved to the Trash. Main thread.
class CleanDialog : public Sheet {
    Q_OBJECT

public:
    CleanDialog(RepositoryStore& store, QWidget* parent);

    void submit() override;

protected:
    QString note() const override;
    bool isComplete() const override;
    std::optional<Verb> verb() const override { return Verb::discard; }

private:
    void countChanged();

    UntrackedModel* model_;
    QListView* list_;
    QCheckBox* all_;
};

} // namespace plovik

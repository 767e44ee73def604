// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Kept.h"
#include "app/store/readers/KeptReader.h"
#include "app/store/readers/Latest.h"
#include "app/ui/dialogs/Sheet.h"

#include <optional>
#include <vector>

class QListWidget;
class QPushButton;

namespace plovik {

class EmptyState;

/// Lists what was discarded in the repository and is kept, also what earlier windows discarded. Confirming restores the
/// selected row; with the other buttons its files are saved elsewhere, or their copies dropped. Main thread.
class DiscardedDialog : public Sheet {
    Q_OBJECT

public:
    DiscardedDialog(RepositoryStore& store, QWidget* parent);

    void submit() override;

protected:
    QString problem() const override;
    QString note() const override;
    bool isComplete() const override { return selected().has_value(); }
    std::optional<Verb> verb() const override { return Verb::undoDiscard; }

private:
    using Rows = std::vector<gitkit::Kept>;

    std::optional<gitkit::Kept> selected() const;
    void layOut();
    void showKept();
    void selectionChanged();
    void saveSelected();
    void dropSelected();

    QListWidget* list_;
    EmptyState* empty_;
    QPushButton* save_;
    QPushButton* drop_;
    Rows rows_;
    Latest<KeptRequest, Rows> kept_;
    QPropertyNotifier keepingNotifier_;
};

} // namespace plovik

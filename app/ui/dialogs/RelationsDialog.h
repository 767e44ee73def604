// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/SheetKind.h"
#include "app/store/readers/Latest.h"
#include "app/store/readers/RefLogReaders.h"
#include "app/ui/dialogs/Sheet.h"

#include <string>
#include <vector>

class QListWidget;

namespace plovik {

/// Lists the children of a commit, the branches and tags that contain it, and the nearest tags. Confirming goes to the
/// selected one. Main thread.
class RelationsDialog : public Sheet {
    Q_OBJECT

public:
    RelationsDialog(RepositoryStore& store, const RelationsSheet& sheet, QWidget* parent);

    void submit() override;

protected:
    QString problem() const override;
    QString note() const override;
    bool isComplete() const override;

private:
    struct Row {
        std::string commit = {}; ///< hash to go to; empty for a ref and for a title
        std::string ref = {};    ///< full name
    };

    void showRelations();
    void addTitle(const QString& title);
    void addRow(const QString& text, Row row);
    void addRefs();

    QListWidget* list_;
    std::vector<Row> rows_;
    Latest<std::string, CommitRelations> reading_;
};

} // namespace plovik

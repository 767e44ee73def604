// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Merge.h"
#include "app/store/SheetKind.h"
#include "app/store/readers/Latest.h"
#include "app/ui/dialogs/DialogParts.h"
#include "app/ui/dialogs/Sheet.h"

#include <array>
#include <string>

namespace plovik {

/// Asks how a branch is merged into what is checked out. What comes of it stands above, and is read again whenever the
/// branches change. Main thread.
class MergeDialog : public Sheet {
    Q_OBJECT

public:
    MergeDialog(RepositoryStore& store, MergeSheet sheet, QWidget* parent);

    void submit() override;

protected:
    QString problem() const override;
    QString note() const override;
    bool isComplete() const override;
    std::optional<Verb> verb() const override { return Verb::merge; }

private:
    struct Row {
        gitkit::MergeKind kind = gitkit::MergeKind::normal;
        dialogParts::ChoiceRow shown = {};
    };
    Row makeRow(gitkit::MergeKind kind, const QString& title);
    void showPreview();
    const Row* chosen() const;
    const gitkit::GitRef* ref() const;

    MergeSheet sheet_;
    Latest<std::string, gitkit::MergePreview> preview_;
    std::array<Row, 4> rows_;
    QPropertyNotifier notifier_;
};

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Reset.h"
#include "app/store/SheetKind.h"
#include "app/store/readers/Latest.h"
#include "app/ui/dialogs/DialogParts.h"
#include "app/ui/dialogs/Sheet.h"

#include <array>
#include <string>

namespace plovik {

/// Asks how the current branch is moved to another commit. Below each way stands what it does with the commits and the
/// changes, and it is read again whenever the working tree changes. Main thread.
class ResetDialog : public Sheet {
    Q_OBJECT

public:
    ResetDialog(RepositoryStore& store, ResetSheet sheet, QWidget* parent);

    void submit() override;

protected:
    QString problem() const override;
    QString note() const override;
    bool isComplete() const override;
    std::optional<Verb> verb() const override { return Verb::reset; }

private:
    struct Row {
        gitkit::ResetKind kind = gitkit::ResetKind::keep;
        dialogParts::ChoiceRow shown = {};
    };
    Row makeRow(gitkit::ResetKind kind, const QString& title);
    void showLoss();
    const Row* chosen() const;

    ResetSheet sheet_;
    Latest<std::string, gitkit::ResetLoss> loss_;
    std::array<Row, 4> rows_;
    QPropertyNotifier notifier_;
};

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/SheetKind.h"
#include "app/ui/dialogs/Sheet.h"

class QPlainTextEdit;

namespace plovik {

/// Asks for other words for a commit, which the plan takes. Main thread.
class CommitMessageDialog : public Sheet {
    Q_OBJECT

public:
    CommitMessageDialog(RepositoryStore& store, CommitMessageSheet sheet, QWidget* parent);

    void submit() override;

protected:
    bool isComplete() const override;

private:
    CommitMessageSheet sheet_;
    QPlainTextEdit* message_;
};

} // namespace plovik

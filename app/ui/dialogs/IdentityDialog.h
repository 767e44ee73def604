// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/dialogs/Sheet.h"

class QLineEdit;
class QRadioButton;

namespace plovik {

/// Asks for the name and the address of who commits, and commits. Main thread.
class IdentityDialog : public Sheet {
    Q_OBJECT

public:
    IdentityDialog(RepositoryStore& store, const IdentitySheet& asked, QWidget* parent);

    void submit() override;

protected:
    QString problem() const override;
    QString note() const override;
    bool isComplete() const override;
    std::optional<Verb> verb() const override { return Verb::commit; }

private:
    std::shared_ptr<const IdentitySheet::Then> then_;
    QLineEdit* name_;
    QLineEdit* email_;
    QRadioButton* everywhere_;
};

} // namespace plovik

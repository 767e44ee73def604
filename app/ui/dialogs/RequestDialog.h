// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/dialogs/Sheet.h"

class QComboBox;
class QLineEdit;

namespace plovik {

/// Returns the number in "12", "#12", "!12" or the address of a pull or merge request; 0 when there is none.
int requestNumber(const QString& text);

/// Asks for the number of a pull or merge request, for its remote where there are several, and for the name of the branch
/// that is made of it. Main thread.
class RequestDialog : public Sheet {
    Q_OBJECT

public:
    RequestDialog(RepositoryStore& store, QWidget* parent);

    void submit() override;

protected:
    QString problem() const override;
    QString note() const override;
    bool isComplete() const override;
    std::optional<Verb> verb() const override { return Verb::checkOutRequest; }

private:
    void suggestName();

    QLineEdit* number_;
    QComboBox* remote_;
    QLineEdit* name_;
    QString suggested_; ///< the name that was filled in last
};

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"

#include <QDialog>

#include <optional>
#include <vector>

class QLabel;
class QPushButton;
class QVBoxLayout;

namespace plovik {

/// A window-modal dialog that asks for the details of an action. It has a heading, the fields of the subclass, a
/// sentence below them, and two buttons. The user can confirm only while problem() is empty and isComplete(); Escape
/// cancels. It deletes itself when it closes. Main thread.
class Sheet : public QDialog {
    Q_OBJECT

public:
    /// Carries the action out. To be called once, after the sheet was accepted.
    virtual void submit() = 0;

protected:
    /// `store` must outlive the sheet.
    Sheet(RepositoryStore& store, const QString& title, const QString& confirmTitle, QWidget* parent);

    RepositoryStore& store() { return store_; }
    const RepositoryStore& store() const { return store_; }
    /// Returns the layout to which the constructor of the subclass adds its fields.
    QVBoxLayout& fields() { return *fields_; }

    /// To be called whenever something was typed or chosen.
    void validate();
    /// Confirms the sheet, as a click on its button does.
    void confirm();

    /// Returns a sentence that says why the sheet cannot be confirmed; empty when it can.
    virtual QString problem() const { return {}; }
    /// Returns the sentence that is shown while there is no problem.
    virtual QString note() const { return {}; }
    /// Returns whether every needed field is filled.
    virtual bool isComplete() const { return true; }
    /// Returns the change that confirming begins. The user can confirm only while that change is offered.
    virtual std::optional<Verb> verb() const { return std::nullopt; }

private:
    RepositoryStore& store_;
    QLabel* heading_;
    QVBoxLayout* fields_;
    QLabel* sentence_;
    QPushButton* confirm_;
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik

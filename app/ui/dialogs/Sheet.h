// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"

#include <QDialog>

#include <vector>

class QLabel;
class QPushButton;
class QVBoxLayout;

namespace plovik {

/// A window-modal dialog that asks for what an action needs: a heading, the fields of the subclass, a sentence under
/// them, and two buttons. Confirming is possible only while what stands in it can be done; Escape cancels. It deletes
/// itself when it closes. Main thread.
class Sheet : public QDialog {
    Q_OBJECT

public:
    /// Does what was confirmed; to be called once, after the sheet has been accepted.
    virtual void submit() = 0;

protected:
    /// `store` outlives the sheet.
    Sheet(RepositoryStore& store, const QString& title, const QString& confirmTitle, QWidget* parent);

    RepositoryStore& store() { return store_; }
    const RepositoryStore& store() const { return store_; }
    /// Where the subclass puts its fields, in its constructor.
    QVBoxLayout& fields() { return *fields_; }

    /// To be called whenever something was typed or chosen.
    void validate();

    /// What keeps the sheet from being confirmed, in a sentence for the user.
    virtual QString problem() const { return {}; }
    /// Said in the problem's place while there is none.
    virtual QString note() const { return {}; }
    /// Whether everything that is needed is there.
    virtual bool isComplete() const { return true; }
    /// Whether confirming starts an action, which waits for one that runs.
    virtual bool isAction() const { return true; }

private:
    RepositoryStore& store_;
    QLabel* heading_;
    QVBoxLayout* fields_;
    QLabel* sentence_;
    QPushButton* confirm_;
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"

#include <QObject>
#include <QPointer>

#include <vector>

class QDialog;
class QWidget;

namespace plovik {

class ErrorAlert;
class ConfirmationDialog;
class PromptDialog;
class Sheet;

/// Shows the error message, the questions and the sheet of a store, each in a dialog that blocks only the store's
/// window. It clears the store's field when the dialog closes, and closes the dialog when the field is cleared; a newer
/// value replaces an older one. It runs no event loop of its own. Main thread.
class StoreDialogs : public QObject {
    Q_OBJECT

public:
    /// `store` and `parent` must outlive this object; the dialogs belong to `parent`.
    StoreDialogs(RepositoryStore& store, QWidget* parent);

private:
    void showError();
    void showFailedCommand();
    void showQuestion();
    void showSheet();
    void showPrompt();
    void promptClosed(PromptDialog* dialog, quint64 id, int answer);
    void questionAnswered(const QUuid& id, int answer);
    void sheetClosed(Sheet* sheet, int answer);

    RepositoryStore& store_;
    QWidget* parent_;
    QPointer<ErrorAlert> error_;
    QPointer<ConfirmationDialog> question_;
    QPointer<Sheet> sheet_;
    QPointer<PromptDialog> prompt_;
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik

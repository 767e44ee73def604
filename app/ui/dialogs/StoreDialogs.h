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
class PromptDialog;
class Sheet;

/// Shows what a store has to say or to ask: its error message, its questions and its sheet, each in a dialog that
/// blocks the store's window alone. Clears the store's field when the dialog closes, and closes the dialog when the
/// field is cleared; a newer value takes the place of an older one. Runs no event loop of its own. Main thread.
class StoreDialogs : public QObject {
    Q_OBJECT

public:
    /// `store` and `parent` outlive it; the dialogs are the parent's.
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
    QPointer<QDialog> question_;
    QPointer<Sheet> sheet_;
    QPointer<PromptDialog> prompt_;
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik

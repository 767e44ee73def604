// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/dialogs/StoreDialogs.h"

#include "app/ui/dialogs/AbsorbDialog.h"
#include "app/ui/dialogs/CleanDialog.h"
#include "app/ui/dialogs/CommitMessageDialog.h"
#include "app/ui/dialogs/ConfirmationDialog.h"
#include "app/ui/dialogs/DialogParts.h"
#include "app/ui/dialogs/DiscardedDialog.h"
#include "app/ui/dialogs/ErrorAlert.h"
#include "app/ui/dialogs/GoToCommitDialog.h"
#include "app/ui/dialogs/IdentityDialog.h"
#include "app/ui/dialogs/MergeDialog.h"
#include "app/ui/dialogs/NewRefSheets.h"
#include "app/ui/dialogs/PromptDialog.h"
#include "app/ui/dialogs/PushDialog.h"
#include "app/ui/dialogs/RebaseDialog.h"
#include "app/ui/dialogs/RelationsDialog.h"
#include "app/ui/dialogs/RemoteDialog.h"
#include "app/ui/dialogs/RequestDialog.h"
#include "app/ui/dialogs/ResetDialog.h"
#include "app/ui/dialogs/SentChangesDialog.h"
#include "app/ui/dialogs/SplitDialog.h"
#include "app/ui/dialogs/StashDialog.h"
#include "app/ui/dialogs/WorktreeSheets.h"
#include "app/ui/dialogs/WorktreesDialog.h"

#include <QApplication>

#include <utility>

namespace plovik {

namespace {

/// Closes a dialog so that its closing does not count as an answer.
template <typename Dialog>
void dismiss(QPointer<Dialog>& shown)
{
    if (Dialog* const dialog = std::exchange(shown, nullptr))
        dialog->reject();
}

struct SheetMaker {
    RepositoryStore& store;
    QWidget* parent;

    Sheet* operator()(const NewBranchSheet& sheet) const { return new NewBranchDialog(store, sheet, parent); }
    Sheet* operator()(const RenameBranchSheet& sheet) const { return new RenameBranchDialog(store, sheet, parent); }
    Sheet* operator()(const MergeSheet& sheet) const { return new MergeDialog(store, sheet, parent); }
    Sheet* operator()(const PushSheet& sheet) const { return new PushDialog(store, sheet, parent); }
    Sheet* operator()(const RebaseSheet& sheet) const { return new RebaseDialog(store, sheet, parent); }
    Sheet* operator()(const NewTagSheet& sheet) const { return new NewTagDialog(store, sheet, parent); }
    Sheet* operator()(const AbsorbSheet&) const { return new AbsorbDialog(store, parent); }
    Sheet* operator()(const CleanSheet&) const { return new CleanDialog(store, parent); }
    Sheet* operator()(const RequestSheet&) const { return new RequestDialog(store, parent); }
    Sheet* operator()(const StashSheet& sheet) const { return new StashDialog(store, sheet, parent); }
    Sheet* operator()(const GoToCommitSheet&) const { return new GoToCommitDialog(store, parent); }
    Sheet* operator()(const SentChangesSheet&) const { return new SentChangesDialog(store, parent); }
    Sheet* operator()(const IdentitySheet& sheet) const { return new IdentityDialog(store, sheet, parent); }
    Sheet* operator()(const ResetSheet& sheet) const { return new ResetDialog(store, sheet, parent); }
    Sheet* operator()(const RelationsSheet& sheet) const { return new RelationsDialog(store, sheet, parent); }
    Sheet* operator()(const CommitMessageSheet& sheet) const { return new CommitMessageDialog(store, sheet, parent); }
    Sheet* operator()(const SplitSheet& sheet) const { return new SplitDialog(store, sheet, parent); }
    Sheet* operator()(const WorktreesSheet&) const { return new WorktreesDialog(store, parent); }
    Sheet* operator()(const NewWorktreeSheet&) const { return new NewWorktreeDialog(store, parent); }
    Sheet* operator()(const LockWorktreeSheet& sheet) const { return new LockWorktreeDialog(store, sheet, parent); }
    Sheet* operator()(const RemoteSheet& sheet) const { return new RemoteDialog(store, sheet, parent); }
    Sheet* operator()(const DiscardedSheet&) const { return new DiscardedDialog(store, parent); }
};

} // namespace

StoreDialogs::StoreDialogs(RepositoryStore& store, QWidget* parent) : QObject(parent), store_(store), parent_(parent)
{
    notifiers_.push_back(store.window().sheet.addNotifier([this] { showSheet(); }));
    notifiers_.push_back(store.window().confirmation.addNotifier([this] { showQuestion(); }));
    notifiers_.push_back(store.window().errorMessage.addNotifier([this] { showError(); }));
    notifiers_.push_back(store.changes().prompt().addNotifier([this] { showPrompt(); }));
    showSheet();
    showQuestion();
    showError();
    showPrompt();
}

void StoreDialogs::showError()
{
    const std::optional<QString> message = store_.window().errorMessage.value();
    if (!message) {
        dismiss(error_);
        return;
    }
    Failure failure = store_.window().failure.value();
    failure.message = *message;
    if (error_) {
        error_->setFailure(failure);
        return;
    }
    error_ = new ErrorAlert(failure, store_.window().ways(), parent_);
    connect(error_, &ErrorAlert::logRequested, this, &StoreDialogs::showFailedCommand);
    connect(error_, &QDialog::finished, this, [this, alert = error_.data()](int answer) {
        if (alert != error_)
            return;
        error_ = nullptr;
        if (answer >= ErrorAlert::firstWay)
            store_.window().takeWay(static_cast<std::size_t>(answer - ErrorAlert::firstWay));
        else
            store_.window().dismissError();
    });
    error_->open();
}

/// Closes the alert too, since it blocks the window that shows the log.
void StoreDialogs::showFailedCommand()
{
    const std::optional<CommandLog::Number> command = store_.window().failure.value().command;
    if (error_)
        error_->accept();
    store_.window().showCommand(command);
    store_.window().showCommandLog(true);
}

void StoreDialogs::showQuestion()
{
    dismiss(question_);
    const std::optional<Confirmation> question = store_.window().confirmation.value();
    if (!question)
        return;
    question_ = new ConfirmationDialog(*question, parent_);
    connect(question_, &QDialog::finished, this,
            [this, id = question->id](int answer) { questionAnswered(id, answer); });
    question_->open();
}

void StoreDialogs::questionAnswered(const QUuid& id, int answer)
{
    const std::optional<Confirmation> question = store_.window().confirmation.value();
    if (!question || question->id != id)
        return;
    const bool isSettled = question_ && question_->isSettled();
    if (answer != QDialog::Rejected)
        store_.window().setOption(id, question_ && question_->isOptionTicked());
    // The action may ask another question, so this one is removed first.
    question_ = nullptr;
    if (answer >= ConfirmationDialog::firstChoice) {
        store_.window().choose(id, static_cast<std::size_t>(answer - ConfirmationDialog::firstChoice));
    } else if (answer != QDialog::Accepted) {
        store_.window().dismissQuestion();
    } else {
        store_.window().confirm(id, isSettled ? WindowState::NextTime::act : WindowState::NextTime::ask);
        if (question->place)
            dialogParts::askForPlace(*question->place, parent_);
    }
}

void StoreDialogs::showSheet()
{
    dismiss(sheet_);
    const std::optional<SheetKind> kind = store_.window().sheet.value();
    if (!kind)
        return;
    sheet_ = std::visit(SheetMaker{store_, parent_}, *kind);
    connect(sheet_, &QDialog::finished, this,
            [this, sheet = sheet_.data()](int answer) { sheetClosed(sheet, answer); });
    sheet_->open();
}

void StoreDialogs::sheetClosed(Sheet* sheet, int answer)
{
    if (sheet != sheet_)
        return;
    sheet_ = nullptr;
    store_.window().closeSheet();
    if (answer == QDialog::Accepted)
        sheet->submit();
}

void StoreDialogs::showPrompt()
{
    dismiss(prompt_);
    const std::optional<SignInPrompt> asked = store_.changes().prompt().value();
    if (!asked)
        return;
    prompt_ = new PromptDialog(*asked, parent_);
    connect(prompt_, &QDialog::finished, this,
            [this, dialog = prompt_.data(), id = asked->id](int answer) { promptClosed(dialog, id, answer); });
    prompt_->open();
    // Git waits for the answer, and the user may look at another window.
    QApplication::alert(prompt_);
}

void StoreDialogs::promptClosed(PromptDialog* dialog, quint64 id, int answer)
{
    if (dialog != prompt_)
        return;
    prompt_ = nullptr;
    if (answer == QDialog::Accepted)
        store_.changes().answerPrompt(id, dialog->answer());
    else
        store_.changes().cancelPrompt(id);
}

} // namespace plovik

#include "moc_StoreDialogs.cpp"

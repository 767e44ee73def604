// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/WindowState.h"

#include <utility>

namespace plovik {

void WindowState::moved(Step step)
{
    for (const Listener& listener : listeners_) {
        if (listener.moved)
            listener.moved(step);
    }
}

void WindowState::select(SidebarItem item)
{
    const bool isNew = item != selection.value();
    selection = std::move(item);
    if (isNew)
        moved(Step::straight);
    for (const Listener& listener : listeners_) {
        if (listener.chosen)
            listener.chosen();
    }
}

void WindowState::selectCommit(std::optional<std::string> hash, Step step)
{
    if (hash == selectedCommit.value())
        return;
    selectedCommit = std::move(hash);
    leaveBlame();
    moved(step);
}

void WindowState::selectStash(std::optional<std::string> hash)
{
    if (hash == selectedStash.value())
        return;
    selectedStash = std::move(hash);
    leaveBlame();
    moved(Step::straight);
}

void WindowState::selectPaths(std::set<std::string> paths) { selectedPaths = std::move(paths); }

void WindowState::showSheet(SheetKind kind) { sheet = std::move(kind); }

void WindowState::closeSheet() { sheet = std::nullopt; }

void WindowState::ask(Confirmation question)
{
    if (!question.kind.isEmpty() && questions_.isSettled && questions_.isSettled(question.kind))
        question.action();
    else
        confirmation = std::move(question);
}

void WindowState::confirm(const QUuid& id, NextTime next)
{
    const std::optional<Confirmation> question = confirmation.value();
    if (!question || question->id != id)
        return;
    confirmation = std::nullopt;
    if (next == NextTime::act && !question->kind.isEmpty() && questions_.settle)
        questions_.settle(question->kind);
    if (question->action)
        question->action();
}

void WindowState::confirmAlternative(const QUuid& id)
{
    const std::optional<Confirmation> question = confirmation.value();
    if (!question || question->id != id)
        return;
    confirmation = std::nullopt;
    if (question->alternative)
        question->alternative();
}

void WindowState::dismissQuestion() { confirmation = std::nullopt; }

void WindowState::report(const Failure& failure)
{
    this->failure = failure;
    errorMessage = failure.message;
}

void WindowState::tell(const QString& sentence)
{
    notice = QString();
    notice = sentence;
}

void WindowState::inspect(InspectedFile file) { inspected = std::move(file); }

void WindowState::closeInspector() { inspected = std::nullopt; }

void WindowState::leaveBlame()
{
    if (inspected.value() && inspected.value()->tab == InspectedFile::Tab::blame)
        closeInspector();
}

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/WindowState.h"

#include <QCoreApplication>

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
    closeComparison();
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

void WindowState::choose(const QUuid& id, std::size_t choice)
{
    const std::optional<Confirmation> question = confirmation.value();
    if (!question || question->id != id || choice >= question->choices.size())
        return;
    confirmation = std::nullopt;
    if (const auto& action = question->choices[choice].action)
        action();
}

void WindowState::setOption(const QUuid& id, bool isTicked)
{
    const std::optional<Confirmation> question = confirmation.value();
    if (question && question->id == id && question->option)
        question->option->chosen(isTicked);
}

void WindowState::dismissQuestion() { confirmation = std::nullopt; }

void WindowState::report(const Failure& failure, std::vector<Way> ways)
{
    if (!ways_.empty() || !ways.empty())
        errorMessage = std::nullopt; // another alert has other buttons
    ways_ = std::move(ways);
    if (failure.command && !ways_.empty())
        keepWays(*failure.command, ways_);
    this->failure = failure;
    errorMessage = failure.message;
}

void WindowState::dismissError()
{
    ways_.clear();
    errorMessage = std::nullopt;
}

void WindowState::takeWay(std::size_t way)
{
    if (way >= ways_.size())
        return;
    const Way taken = ways_[way];
    dismissError();
    taken.action();
}

void WindowState::keepWays(CommandLog::Number command, std::vector<Way> ways)
{
    commandWithWays = std::nullopt; // another time it has other ways
    waysOfCommand_ = std::move(ways);
    commandWithWays = command;
}

void WindowState::takeWayOfCommand(std::size_t way)
{
    if (way >= waysOfCommand_.size())
        return;
    const Way taken = waysOfCommand_[way];
    forgetWaysOfCommand();
    dismissError(); // it may have led here
    taken.action();
}

void WindowState::forgetWaysOfCommand()
{
    commandWithWays = std::nullopt;
    waysOfCommand_.clear();
}

std::optional<Way> WindowState::wayToWindow(const std::filesystem::path& folder) const
{
    if (!openWindow_)
        return std::nullopt;
    return Way{QCoreApplication::translate("plovik::WindowState", "Open That Window"),
               [open = openWindow_, folder] { open(folder); }};
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

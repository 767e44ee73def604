// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/SignIns.h"

#include "GitKit/runner/RunContext.h"

#include <algorithm>
#include <utility>

namespace plovik {

SignIns::Number SignIns::begin(const QString& action, const OpenSignIn& open, gitkit::RunContext& context)
{
    const Number number = ++lastNumber_;
    Action& added = actions_[number];
    added.name = action;
    if (open)
        added.line =
            open([this, number](std::unique_ptr<SignInQuestion> question) { asked(number, std::move(question)); });
    if (added.line)
        context.environment = added.line->environment();
    return number;
}

void SignIns::end(Number number)
{
    refuse(number);
    actions_.erase(number);
}

void SignIns::refuse(Number number)
{
    const auto action = actions_.find(number);
    if (action == actions_.end())
        return;
    action->second.isRefused = true;
    std::erase_if(open_, [number](const Open& open) { return open.number == number; });
    show();
}

void SignIns::asked(Number number, std::unique_ptr<SignInQuestion> question)
{
    const auto action = actions_.find(number);
    if (action == actions_.end() || action->second.isRefused)
        return;
    SignInPrompt shown{.id = ++lastPrompt_,
                       .kind = question->kind,
                       .text = question->text,
                       .destination = question->destination,
                       .action = action->second.name,
                       .isRepeated = action->second.answered.contains(question->text)};
    question->gone = [this, id = shown.id] { take(id); };
    open_.push_back({std::move(shown), number, std::move(question)});
    show();
}

std::deque<SignIns::Open>::iterator SignIns::find(quint64 id)
{
    return std::ranges::find(open_, id, [](const Open& open) { return open.prompt.id; });
}

std::optional<SignIns::Open> SignIns::take(quint64 id)
{
    const auto found = find(id);
    if (found == open_.end())
        return std::nullopt;
    std::optional<Open> taken(std::move(*found));
    open_.erase(found);
    show();
    return taken;
}

void SignIns::show() { prompt = open_.empty() ? std::nullopt : std::optional(open_.front().prompt); }

void SignIns::answer(quint64 id, const QString& text)
{
    const std::optional<Open> open = take(id);
    if (!open)
        return;
    // A permission that is not given ends the question but not the change.
    if (open->prompt.kind == SignInKind::permission && text != QStringLiteral("yes"))
        return;
    if (const auto action = actions_.find(open->number); action != actions_.end())
        action->second.answered.insert(open->prompt.text);
    open->question->answer(text.toUtf8());
}

std::optional<SignIns::Cancelled> SignIns::cancel(quint64 id)
{
    const auto found = find(id);
    if (found == open_.end())
        return std::nullopt;
    const Cancelled cancelled{found->number, found->prompt.kind};
    refuse(cancelled.number);
    return cancelled;
}

} // namespace plovik

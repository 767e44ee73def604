// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/records/Autosquash.h"

#include <algorithm>
#include <array>

namespace gitkit {

namespace {

constexpr std::array<std::string_view, 3> squashMarks{"fixup! ", "squash! ", "amend! "};

std::string_view firstLine(std::string_view message) { return message.substr(0, message.find('\n')); }

/// Returns the message without its first paragraph.
std::string_view bodyOf(std::string_view message)
{
    const std::size_t end = message.find("\n\n");
    return end == std::string_view::npos ? std::string_view() : message.substr(end + 2);
}

std::string_view markOf(std::string_view subject)
{
    const auto mark =
        std::ranges::find_if(squashMarks, [&](std::string_view text) { return subject.starts_with(text); });
    return mark == squashMarks.end() ? std::string_view() : *mark;
}

std::string_view withoutMarks(std::string_view subject)
{
    for (std::string_view mark = markOf(subject); !mark.empty(); mark = markOf(subject))
        subject.remove_prefix(mark.size());
    return subject;
}

/// Returns which of the commits before `end` is named, as git finds it; `end` where none is.
std::size_t targetOf(const RewritePlan& plan, const std::vector<std::string>& messages, std::size_t end)
{
    const std::string_view name = withoutMarks(firstLine(messages[end]));
    constexpr std::size_t leastHash = 4;
    const auto first = [end](auto matches) {
        std::size_t index = 0;
        while (index < end && !matches(index))
            ++index;
        return index;
    };
    std::size_t found = first([&](std::size_t index) { return firstLine(messages[index]) == name; });
    if (found == end && name.size() >= leastHash)
        found = first([&](std::size_t index) { return plan.commits[index].starts_with(name); });
    if (found == end && !name.empty())
        found = first([&](std::size_t index) { return firstLine(messages[index]).starts_with(name); });
    return found;
}

} // namespace

RewritePlan autosquashed(const RewritePlan& plan, const std::vector<std::string>& messages)
{
    RewritePlan result = plan;
    for (std::size_t index = 0; index < plan.commits.size() && index < messages.size(); ++index) {
        const std::string_view mark = markOf(messages[index]);
        const std::size_t target = mark.empty() ? index : targetOf(plan, messages, index);
        if (target == index)
            continue;
        const std::string& into = plan.commits[target];
        result = squashed(result, {plan.commits[index]}, into,
                          mark == "squash! " ? RewriteStep::Act::squash : RewriteStep::Act::fixUp);
        if (mark == "amend! ")
            result = reworded(result, into, std::string(bodyOf(messages[index])));
    }
    return result;
}

std::string joinedMessages(std::string_view first, std::string_view second)
{
    if (!markOf(second).empty())
        second = bodyOf(second);
    const auto withoutEnd = [](std::string_view text) { return text.substr(0, text.find_last_not_of("\r\n \t") + 1); };
    first = withoutEnd(first);
    second = withoutEnd(second);
    std::string joined(first);
    if (!first.empty() && !second.empty())
        joined += "\n\n";
    return joined.append(second) + '\n';
}

} // namespace gitkit

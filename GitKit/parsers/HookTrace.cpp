// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/parsers/HookTrace.h"

#include <algorithm>
#include <charconv>

namespace gitkit {

namespace {

/// A longer line is none that is read here: it has a long list of arguments.
constexpr std::size_t mostOfLine = 64UL * 1024;
/// A rebase of very many commits starts hooks for each.
constexpr std::size_t mostHooks = 200;

/// Returns what stands behind a name in a line of JSON, up to the next comma, brace or quote. A value cannot hold a name with
/// quotes that are not escaped. The values that are wanted here hold no escapes.
std::string_view textAfter(std::string_view line, std::string_view name)
{
    const std::size_t found = line.find(name);
    if (found == std::string_view::npos)
        return {};
    std::string_view rest = line.substr(found + name.size());
    const bool isText = rest.starts_with('"');
    if (isText)
        rest.remove_prefix(1);
    return rest.substr(0, rest.find_first_of(isText ? "\"" : ",}"));
}

int statusIn(std::string_view digits)
{
    int number = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return number;
}

std::string startedIn(std::string_view line)
{
    return std::string(textAfter(line, R"("sid":)")).append(" ").append(textAfter(line, R"("child_id":)"));
}

} // namespace

bool HookTrace::read(std::string_view bytes, std::chrono::steady_clock::time_point now)
{
    bool hasChanged = false;
    while (!bytes.empty()) {
        const std::size_t end = bytes.find('\n');
        if (rest_.size() < mostOfLine)
            rest_ += bytes.substr(0, std::min(end, mostOfLine));
        if (end == std::string_view::npos)
            break;
        bytes.remove_prefix(end + 1);
        hasChanged = readLine(rest_, now) || hasChanged;
        rest_.clear();
    }
    return hasChanged;
}

bool HookTrace::readLine(std::string_view line, std::chrono::steady_clock::time_point now)
{
    if (line.starts_with(R"({"event":"child_start")") && line.find(R"("child_class":"hook")") != std::string_view::npos)
    {
        if (hooks_.size() == mostHooks) {
            hooks_.clear();
            open_.clear();
        }
        open_.push_back({startedIn(line), hooks_.size()});
        hooks_.push_back({std::string(textAfter(line, R"("hook_name":)")), now});
        return true;
    }
    if (open_.empty() || !line.starts_with(R"({"event":"child_exit")"))
        return false;
    const auto ended = std::ranges::find(open_, startedIn(line), &Open::child);
    if (ended == open_.end())
        return false;
    HookRun& hook = hooks_[ended->hook];
    hook.took = std::chrono::duration_cast<std::chrono::milliseconds>(now - hook.began);
    hook.status = statusIn(textAfter(line, R"("code":)"));
    open_.erase(ended);
    return true;
}

} // namespace gitkit

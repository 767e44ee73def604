// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/parsers/RefLabels.h"

#include "GitKit/parsers/Fields.h"

#include <algorithm>
#include <optional>
#include <ranges>
#include <string_view>
#include <utility>

namespace gitkit {

namespace {

struct Tip {
    std::string_view hash;
    std::string_view name;
    bool isPeeled = false;
};

std::vector<Tip> parseTips(std::string_view text)
{
    constexpr std::string_view peeled = "^{}";
    std::vector<Tip> tips;
    tips.reserve(static_cast<std::size_t>(std::ranges::count(text, '\n')));
    Pieces lines(text, '\n');
    while (const auto line = lines.next()) {
        const auto fields = splitFields<2>(*line, ' ');
        if (!fields)
            continue;
        Tip tip{.hash = fields->front(), .name = fields->back()};
        tip.isPeeled = tip.name.ends_with(peeled);
        tip.name.remove_suffix(tip.isPeeled ? peeled.size() : 0);
        tips.push_back(tip);
    }
    return tips;
}

std::optional<RefLabel> labelOf(const Tip& tip)
{
    constexpr std::array<std::pair<std::string_view, RefLabel::Kind>, 3> groups{{
        {"refs/heads/", RefLabel::Kind::localBranch},
        {"refs/remotes/", RefLabel::Kind::remoteBranch},
        {"refs/tags/", RefLabel::Kind::tag},
    }};
    for (const auto& [prefix, kind] : groups) {
        if (tip.name.starts_with(prefix) && !(kind == RefLabel::Kind::remoteBranch && tip.name.ends_with("/HEAD")))
            return RefLabel{kind, std::string(tip.name.substr(prefix.size())), false};
    }
    return std::nullopt;
}

/// Puts HEAD in front, or the branch on which it stands in place of both.
void addHead(std::vector<RefLabel>& labels, std::string_view headRef)
{
    constexpr std::string_view prefix = "refs/heads/";
    RefLabel head{RefLabel::Kind::head, "HEAD", true};
    if (headRef.starts_with(prefix)) {
        const RefLabel branch{RefLabel::Kind::localBranch, std::string(headRef.substr(prefix.size())), false};
        if (const auto found = std::ranges::find(labels, branch); found != labels.end()) {
            head = {branch.kind, branch.name, true};
            labels.erase(found);
        }
    }
    labels.insert(labels.begin(), std::move(head));
}

} // namespace

RefLabels refLabels(const RefTips& tips)
{
    const std::vector<Tip> all = parseTips(tips.lines);
    RefLabels labels;
    labels.reserve(all.size());
    for (const Tip& tip : all | std::views::reverse) {
        if (auto label = labelOf(tip))
            labels[std::string(tip.hash)].push_back(std::move(*label));
    }
    const auto head = std::ranges::find_if(all, [](const Tip& tip) { return tip.name == "HEAD" && !tip.isPeeled; });
    if (head != all.end())
        addHead(labels[std::string(head->hash)], tips.headRef);
    return labels;
}

} // namespace gitkit

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/RewritingWords.h"

#include "app/store/ShownText.h"

#include <QCoreApplication>
#include <QStringList>

#include <algorithm>
#include <string_view>

namespace plovik {

using namespace Qt::StringLiterals;
using gitkit::MovableCommit;
using gitkit::MovableCommits;
using gitkit::RewriteMark;
using gitkit::RewriteOutcome;
using gitkit::RewritePlan;

namespace {

struct RewritingTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::Rewriting)
};

/// Says what a plan does, in counts.
QString countsSentence(const gitkit::RewriteCounts& counts)
{
    QStringList parts;
    const auto add = [&parts](int count, const QString& text) {
        if (count > 0)
            parts << text;
    };
    add(counts.moved, RewritingTexts::tr("%Ln moved", nullptr, counts.moved));
    add(counts.squashed, RewritingTexts::tr("%Ln squashed", nullptr, counts.squashed));
    add(counts.reworded, RewritingTexts::tr("%Ln reworded", nullptr, counts.reworded));
    add(counts.dropped, RewritingTexts::tr("%Ln dropped", nullptr, counts.dropped));
    add(counts.split, RewritingTexts::tr("%Ln split", nullptr, counts.split));
    add(counts.stops, RewritingTexts::tr("%Ln stop(s)", nullptr, counts.stops));
    return parts.join(u", "_s);
}

QString outcomeSentence(const std::optional<RewriteOutcome>& outcome)
{
    if (!outcome)
        return RewritingTexts::tr("looking for conflicts…");
    using enum RewriteOutcome::Result;
    const auto stopped = std::ranges::find(outcome->marks, RewriteMark::Kind::conflicts, &RewriteMark::kind);
    const auto files = stopped == outcome->marks.end() ? 0 : static_cast<int>(stopped->paths.size());
    return outcome->result == clean       ? RewritingTexts::tr("no conflicts")
           : outcome->result == conflicts ? RewritingTexts::tr("conflicts in %Ln file(s)", nullptr, files)
                                          : RewritingTexts::tr("conflicts show when it runs");
}

} // namespace

QString planBranchesSentence(const RewritePlan& plan, const std::vector<gitkit::BranchOnCommit>& branches)
{
    const gitkit::Hashes affected = gitkit::affectedCommits(plan);
    int along = 0;
    const gitkit::BranchOnCommit* held = nullptr;
    for (const gitkit::BranchOnCommit& branch : branches) {
        if (std::ranges::find(affected, branch.commit) == affected.end())
            continue;
        along += branch.heldBy.empty() ? 1 : 0;
        held = branch.heldBy.empty() ? held : &branch;
    }
    QStringList sentences;
    if (along > 0)
        sentences << RewritingTexts::tr("%Ln branch(es) move along", nullptr, along);
    if (held)
        sentences << RewritingTexts::tr("%1 stays: it is held by %2")
                         .arg(inQuotes(withoutBranchPrefix(held->name)), inQuotes(held->heldBy));
    return sentences.join(u" · "_s);
}

QString planBranchesMoved(const RewritePlan& plan, const std::vector<gitkit::BranchOnCommit>& branches)
{
    const gitkit::Hashes affected = gitkit::affectedCommits(plan);
    QStringList moved;
    for (const gitkit::BranchOnCommit& branch : branches) {
        if (branch.heldBy.empty() && std::ranges::find(affected, branch.commit) != affected.end())
            moved << inQuotes(withoutBranchPrefix(branch.name));
    }
    if (moved.size() > 1)
        return RewritingTexts::tr("%Ln branch(es) moved along.", nullptr, static_cast<int>(moved.size()));
    return moved.isEmpty() ? QString() : RewritingTexts::tr("%1 moved along.").arg(moved.front());
}

QString planSentence(const RewritePlan& plan, const std::optional<RewriteOutcome>& outcome,
                     const MovableCommits& movable)
{
    const QString counts = countsSentence(gitkit::countsOf(plan));
    QString text = plan.isElsewhere
                       ? RewritingTexts::tr("Plan for %1: %2 — %3")
                             .arg(inQuotes(withoutBranchPrefix(plan.branch)), counts, outcomeSentence(outcome))
                       : RewritingTexts::tr("Plan: %1 — %2").arg(counts, outcomeSentence(outcome));
    if (const QString branches = planBranchesSentence(plan, movable.branches); !branches.isEmpty())
        text += u" · "_s + branches;
    return text;
}

QString planPublishedSentence(const RewritePlan& plan, const MovableCommits& movable)
{
    if (movable.publishedOn.empty())
        return {};
    int published = 0;
    for (const std::string& commit : gitkit::affectedCommits(plan)) {
        const auto found = std::ranges::find(movable.commits, commit, &MovableCommit::hash);
        published += found != movable.commits.end() && found->isPublished ? 1 : 0;
    }
    if (published == 0)
        return {};
    return RewritingTexts::tr("%Ln of these commits is (are) on %1. Others may have them; you will need to force-push.",
                              nullptr, published)
        .arg(shownText(movable.publishedOn));
}

QString planApplyTitle(const std::optional<RewriteOutcome>& outcome)
{
    const bool conflicts = outcome && outcome->result == RewriteOutcome::Result::conflicts;
    return conflicts ? RewritingTexts::tr("Apply and Resolve") : RewritingTexts::tr("Apply");
}

std::string withoutBranchPrefix(const std::string& name)
{
    constexpr std::string_view branchPrefix = "refs/heads/";
    return name.starts_with(branchPrefix) ? name.substr(branchPrefix.size()) : name;
}

} // namespace plovik

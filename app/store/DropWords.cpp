// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/DropWords.h"

#include "GitKit/records/Commit.h"
#include "app/store/ShownText.h"
#include "app/store/Snapshot.h"

#include <QCoreApplication>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

using Act = Drop::Act;
using Outcome = gitkit::MergePreview::Outcome;

struct DropTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::DropHint)
};

QString currentBranch(const Snapshot& now)
{
    const auto& branch = now.status.value().branch;
    return branch ? inQuotes(*branch) : u"HEAD"_s;
}

QString stashNamed(const Drop& drop, const Snapshot& now)
{
    const auto& all = now.stashes.value();
    const auto found = std::ranges::find(all, drop.names.front(), &gitkit::Stash::hash);
    return found == all.end() ? QString() : inQuotes(found->message);
}

QString shownRef(const std::string& fullName)
{
    constexpr std::string_view prefix = "refs/remotes/";
    return inQuotes(std::string_view(fullName).substr(fullName.starts_with(prefix) ? prefix.size() : 0));
}

QString pushWords(const Drop& drop)
{
    const QString branch = inQuotes(drop.push.branch);
    const QString to = inQuotes(drop.push.to.remote + '/' + drop.push.to.branch);
    return drop.act == Act::push ? DropTexts::tr("Push %1 to %2").arg(branch, to)
                                 : DropTexts::tr("Push %1 to %2…").arg(branch, to);
}

/// The files of the first few conflicts.
QString conflictWords(const std::vector<std::string>& files)
{
    constexpr std::size_t most = 3;
    QStringList names;
    for (std::size_t index = 0; index < std::min(files.size(), most); ++index)
        names += shownText(files[index]);
    if (files.size() > most)
        names += u"…"_s;
    return DropTexts::tr("will conflict in %Ln file(s): %1", nullptr, static_cast<int>(files.size()))
        .arg(names.join(u", "_s));
}

QString rememberedWords(bool remembers)
{
    return remembers ? u'\n' + DropTexts::tr("Git may remember how you resolved them before.") : QString();
}

QString wordsOf(const gitkit::MergePreview& preview)
{
    switch (preview.outcome) {
    case Outcome::unknown:
        return DropTexts::tr("%Ln commit(s)", nullptr, preview.commits);
    case Outcome::clean:
        return preview.own == 0 && !preview.alwaysMergeCommit
                   ? DropTexts::tr("%Ln commit(s), fast-forward", nullptr, preview.commits)
                   : DropTexts::tr("%Ln commit(s), merges cleanly", nullptr, preview.commits);
    case Outcome::conflicts:
        break;
    }
    return DropTexts::tr("%Ln commit(s)", nullptr, preview.commits) + u'\n' + conflictWords(preview.conflicts) +
           rememberedWords(preview.remembersResolutions);
}

QString wordsOf(const gitkit::RebasePreview& preview)
{
    if (preview.commits == 0)
        return DropTexts::tr("%Ln commit(s), fast-forward", nullptr, preview.beneath);
    switch (preview.outcome) {
    case Outcome::unknown:
        return DropTexts::tr("%Ln commit(s)", nullptr, preview.commits);
    case Outcome::clean:
        return DropTexts::tr("%Ln commit(s), no conflicts", nullptr, preview.commits);
    case Outcome::conflicts:
        break;
    }
    return DropTexts::tr("%Ln commit(s)", nullptr, preview.commits) + u'\n' + conflictWords(preview.conflicts) +
           rememberedWords(preview.remembersResolutions);
}

QString wordsOf(const MovePreview& preview)
{
    if (preview.left > 0)
        return DropTexts::tr("%Ln commit(s) are on no other branch: you are asked first", nullptr, preview.left);
    return preview.comes > 0 ? DropTexts::tr("%Ln commit(s)", nullptr, preview.comes) : QString();
}

QString wordsOf(std::monostate) { return {}; }

} // namespace

QString dropWords(const Drop& drop, const Snapshot& now)
{
    const QString ref = inQuotes(drop.ref.name);
    switch (drop.act) {
    case Act::nothing:
        return {};
    case Act::merge:
        return DropTexts::tr("Merge %1 into %2").arg(ref, currentBranch(now));
    case Act::squash:
        return DropTexts::tr("Squash %1 into changes on %2").arg(ref, currentBranch(now));
    case Act::rebase:
        return DropTexts::tr("Rebase %1 onto %2").arg(currentBranch(now), ref);
    case Act::push:
    case Act::askPush:
        return pushWords(drop);
    case Act::fastForward:
        return DropTexts::tr("Fast-forward %1 to %2").arg(ref, shownRef(drop.to));
    case Act::cherryPick:
        return DropTexts::tr("Cherry-pick %Ln commit(s) onto %1", nullptr, static_cast<int>(drop.names.size()))
            .arg(ref);
    case Act::moveBranch:
        return DropTexts::tr("Move %1 to %2").arg(ref, shownText(gitkit::shortHash(drop.to)));
    case Act::askReset:
        return DropTexts::tr("Reset %1 to %2…").arg(ref, shownText(gitkit::shortHash(drop.to)));
    case Act::planSquash:
        return DropTexts::tr("Squash into %1").arg(inQuotes(drop.subject));
    case Act::planFixUp:
        return DropTexts::tr("Fix up %1").arg(inQuotes(drop.subject));
    case Act::planMove:
        return drop.to.empty() ? DropTexts::tr("Move beneath all the others")
                               : DropTexts::tr("Move above %1").arg(inQuotes(drop.subject));
    case Act::stashFiles:
        return DropTexts::tr("Stash only %1").arg(namesOfFiles(drop.names));
    case Act::applyStash:
        return DropTexts::tr("Apply stash %1").arg(stashNamed(drop, now));
    case Act::popStash:
        return DropTexts::tr("Pop stash %1").arg(stashNamed(drop, now));
    case Act::takeFile:
        return DropTexts::tr("Take %1 as it is in %2", "file, commit")
            .arg(inQuotes(drop.names.front()), shownText(gitkit::shortHash(drop.revision)));
    }
    return {};
}

QString previewWords(const DropPreview& preview)
{
    return std::visit([](const auto& known) { return wordsOf(known); }, preview);
}

bool isInVain(Act act, const DropPreview& preview)
{
    if (const auto* const merge = std::get_if<gitkit::MergePreview>(&preview))
        return merge->commits == 0 || (act == Act::merge && merge->alwaysFastForward && merge->own > 0);
    if (const auto* const rebase = std::get_if<gitkit::RebasePreview>(&preview))
        return rebase->beneath == 0;
    if (const auto* const move = std::get_if<MovePreview>(&preview))
        return act == Act::fastForward && (move->own > 0 || move->comes == 0);
    return false;
}

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/timeline/StepText.h"

#include "GitKit/records/Commit.h"
#include "app/store/ShownText.h"

#include <QCoreApplication>

#include <algorithm>
#include <string_view>

namespace plovik::stepText {

namespace {

using gitkit::HeadPlace;
using gitkit::RefUpdate;
using gitkit::UndoStep;

struct StepTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::StepText)
};

constexpr std::size_t mostRefs = 6;
constexpr std::size_t mostFiles = 4;

QString shownHash(const std::string& hash) { return shownText(gitkit::shortHash(hash)); }

QString shownName(std::string_view fullName)
{
    for (const std::string_view prefix : {"refs/heads/", "refs/tags/", "refs/remotes/", "refs/"}) {
        if (fullName.starts_with(prefix))
            return shownText(fullName.substr(prefix.size()));
    }
    return shownText(fullName);
}

QString shownHead(const HeadPlace& head) { return head.branch.empty() ? shownHash(head.hash) : shownName(head.branch); }

QString movedText(const QString& name, const std::string& from, const std::string& to)
{
    return StepTexts::tr("%1 %2 → %3", "branch, from commit, to commit").arg(name, shownHash(from), shownHash(to));
}

QString headText(const HeadPlace& from, const HeadPlace& to)
{
    if (from.branch == to.branch && !to.branch.empty())
        return from.hash == to.hash ? QString() : movedText(shownName(to.branch), from.hash, to.hash);
    if (from == to)
        return {};
    if (from.branch.empty() && from.hash.empty())
        return shownHead(to);
    return StepTexts::tr("%1 → %2", "from branch or commit, to branch or commit").arg(shownHead(from), shownHead(to));
}

/// Returns the ref that says most about a step: of the checked out branch, or else the first one.
const RefUpdate* mainRef(const UndoStep& step)
{
    const auto isCheckedOut = [&step](const RefUpdate& ref) {
        return ref.name == step.before.head.branch || (step.after && ref.name == step.after->head.branch);
    };
    const auto found = std::ranges::find_if(step.refs, isCheckedOut);
    if (found != step.refs.end())
        return &*found;
    return step.refs.empty() ? nullptr : &step.refs.front();
}

QString refText(const RefUpdate& ref)
{
    const QString name = shownName(ref.name);
    if (ref.from && ref.to)
        return movedText(name, *ref.from, *ref.to);
    return ref.to
               ? StepTexts::tr("%1 made at %2", "branch or tag, commit").arg(name, shownHash(*ref.to))
               : StepTexts::tr("%1 deleted at %2", "branch or tag, commit").arg(name, shownHash(ref.from.value_or("")));
}

QString backText(const RefUpdate& ref)
{
    const QString name = shownName(ref.name);
    if (ref.from && ref.to)
        return movedText(name, *ref.to, *ref.from);
    return ref.to ? StepTexts::tr("%1: is deleted", "branch or tag").arg(name)
                  : StepTexts::tr("%1: comes back at %2", "branch or tag, commit")
                        .arg(name, shownHash(ref.from.value_or("")));
}

void addRefs(QStringList& lines, const UndoStep& step)
{
    const std::size_t shown = std::min(step.refs.size(), mostRefs);
    for (std::size_t index = 0; index < shown; ++index)
        lines.append(backText(step.refs[index]));
    if (step.refs.size() > shown)
        lines.append(
            StepTexts::tr("and %Ln more branch(es) or tag(s)", nullptr, static_cast<int>(step.refs.size() - shown)));
}

void addHead(QStringList& lines, const UndoStep& step)
{
    const HeadPlace& to = step.before.head;
    const HeadPlace& from = step.after->head;
    if (from.branch == to.branch && (!to.branch.empty() || from.hash == to.hash))
        return;
    lines.append(to.branch.empty()
                     ? StepTexts::tr("%1: is checked out again, with HEAD detached", "commit").arg(shownHash(to.hash))
                     : StepTexts::tr("%1: is checked out again", "branch").arg(shownName(to.branch)));
}

QStringList fileLines(const std::vector<std::string>& paths, const QString& pattern)
{
    QStringList lines;
    const std::size_t shown = std::min(paths.size(), mostFiles);
    for (std::size_t index = 0; index < shown; ++index)
        lines.append(pattern.arg(shownText(paths[index])));
    if (paths.size() > shown)
        lines.append(StepTexts::tr("and %Ln more file(s)", nullptr, static_cast<int>(paths.size() - shown)));
    return lines;
}

void addStashes(QStringList& lines, const UndoStep& step)
{
    if (!step.before.stashes || !step.after->stashes)
        return;
    const auto addMissing = [&lines](const auto& from, const auto& in, const QString& pattern) {
        for (const gitkit::KeptStash& stash : from) {
            if (std::ranges::find(in, stash.hash, &gitkit::KeptStash::hash) == in.end())
                lines.append(pattern.arg(inQuotes(stash.message)));
        }
    };
    addMissing(*step.before.stashes, *step.after->stashes, StepTexts::tr("Stash %1: comes back", "message"));
    addMissing(*step.after->stashes, *step.before.stashes, StepTexts::tr("Stash %1: is dropped", "message"));
}

void addRest(QStringList& lines, const UndoStep& step)
{
    if (!step.before.operation.empty() && step.after->operation.empty())
        lines.append(StepTexts::tr("The unfinished operation: stands where it stood"));
    if (step.before.operation.empty() && !step.after->operation.empty())
        lines.append(StepTexts::tr("The unfinished operation: ends"));
    if (step.before.settings != step.after->settings)
        lines.append(StepTexts::tr("The settings of branches and remotes: as before"));
    if (!step.message.empty())
        lines.append(StepTexts::tr("The message: comes back to where it was typed"));
}

} // namespace

QString move(const TimelineRow& row)
{
    const UndoStep& step = row.step;
    if (const RefUpdate* const ref = mainRef(step)) {
        const auto others = static_cast<int>(step.refs.size()) - 1;
        return others == 0 ? refText(*ref) : StepTexts::tr("%1 and %Ln more", nullptr, others).arg(refText(*ref));
    }
    return step.after ? headText(step.before.head, step.after->head) : QString();
}

QString fileCount(int files) { return files == 0 ? QString() : StepTexts::tr("%Ln file(s)", nullptr, files); }

QString state(const TimelineRow& row)
{
    if (row.kind == TimelineRow::Kind::undone)
        return StepTexts::tr("taken back");
    return row.kind != TimelineRow::Kind::terminal && !row.step.after ? StepTexts::tr("interrupted") : QString();
}

QString undoingTitle(const TimelineRow& row)
{
    switch (row.kind) {
    case TimelineRow::Kind::step:
        if (gitkit::isPublished(row.step))
            return StepTexts::tr(
                "Others may have it by now, so that it cannot be undone from here. Undoing earlier steps "
                "changes your branch only. “Revert” in the menu makes a commit that takes the last one of it back.");
        return row.step.after ? StepTexts::tr("Undoing it:")
                              : StepTexts::tr("Plovik was closed in the middle of it, so that it is not known what it "
                                              "has changed.");
    case TimelineRow::Kind::undone:
        return StepTexts::tr("It was taken back. Undoing it was:");
    case TimelineRow::Kind::undo:
        return StepTexts::tr("It took another step back. Redoing that is:");
    case TimelineRow::Kind::terminal:
        return StepTexts::tr("Another program did it, so that it is not undone here. The way back would be:");
    }
    return {};
}

QStringList undoing(const TimelineRow& row)
{
    QStringList lines;
    const UndoStep& step = row.step;
    if (!step.after || gitkit::isPublished(step))
        return lines;
    addRefs(lines, step);
    if (row.kind == TimelineRow::Kind::terminal && step.refs.empty()) {
        if (const QString back = headText(step.after->head, step.before.head); !back.isEmpty())
            lines.append(back);
    } else {
        addHead(lines, step);
    }
    addStashes(lines, step);
    addRest(lines, step);
    lines += comingBack(step.aside);
    return lines;
}

QStringList comingBack(const std::vector<std::string>& paths)
{
    return fileLines(paths, StepTexts::tr("%1: comes back", "file"));
}

QStringList staying(const std::vector<std::string>& submodules)
{
    return fileLines(submodules, StepTexts::tr("%1: what is checked out inside it stays", "submodule"));
}

QStringList going(const std::vector<std::string>& paths) { return fileLines(paths, StepTexts::tr("%1: goes", "file")); }

std::string hash(const TimelineRow& row)
{
    const UndoStep& step = row.step;
    if (const RefUpdate* const ref = mainRef(step))
        return ref->to ? *ref->to : ref->from.value_or("");
    return step.after ? step.after->head.hash : step.before.head.hash;
}

} // namespace plovik::stepText

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/SplitChoice.h"

#include "GitKit/PartialPatch.h"

#include <algorithm>
#include <utility>

namespace plovik {

namespace {

std::set<int> changesIn(const gitkit::ParsedDiff& diff)
{
    std::set<int> ids;
    for (const gitkit::DiffLine& line : diff.lines) {
        if (line.isChange())
            ids.insert(line.id);
    }
    return ids;
}

} // namespace

SplitChoice::SplitChoice(std::vector<gitkit::CommitFile> files) : files_(std::move(files)), chosen_(files_.size()) {}

void SplitChoice::setCounts(const std::vector<gitkit::ChangeCounts>& counts)
{
    for (std::size_t file = 0; file < std::min(counts.size(), files_.size()); ++file) {
        if (counts[file].path == files_[file].path)
            chosen_[file].changed = counts[file].added.value_or(0) + counts[file].removed.value_or(0);
    }
}

SplitChoice::Share SplitChoice::shareOf(std::size_t file) const { return chosen_[file].share; }

bool SplitChoice::canTakeLines(std::size_t file, const gitkit::ParsedDiff& diff) const
{
    return files_[file].status == 'M' && gitkit::partialRefusal(diff) == gitkit::PartialRefusal::none;
}

std::set<int> SplitChoice::linesOf(std::size_t file, const gitkit::ParsedDiff& diff) const
{
    const Chosen& chosen = chosen_[file];
    if (chosen.share == Share::all)
        return changesIn(diff);
    return chosen.share == Share::some && chosen.diff == diff ? chosen.lines : std::set<int>();
}

void SplitChoice::take(std::size_t file, Into into)
{
    chosen_[file] = {.share = into == Into::first ? Share::all : Share::none, .changed = chosen_[file].changed};
}

void SplitChoice::takeLines(std::size_t file, const gitkit::ParsedDiff& diff, const std::set<int>& lines, Into into)
{
    if (!canTakeLines(file, diff))
        return;
    const std::set<int> all = changesIn(diff);
    std::set<int> now = linesOf(file, diff);
    for (const int line : lines) {
        if (into == Into::second)
            now.erase(line);
        else if (all.contains(line))
            now.insert(line);
    }
    if (now.empty() || now == all)
        return take(file, now.empty() ? Into::second : Into::first);
    chosen_[file].share = Share::some;
    chosen_[file].diff = diff;
    chosen_[file].lines = std::move(now);
}

SplitChoice::Extent SplitChoice::inFirst() const
{
    Extent extent;
    for (const Chosen& chosen : chosen_) {
        extent.files += chosen.share == Share::none ? 0 : 1;
        extent.lines += chosen.share == Share::all ? chosen.changed : static_cast<int>(chosen.lines.size());
    }
    return extent;
}

SplitChoice::Extent SplitChoice::inSecond() const
{
    Extent extent;
    for (const Chosen& chosen : chosen_) {
        const int own = chosen.share == Share::some ? chosen.diff.additions + chosen.diff.deletions : chosen.changed;
        extent.files += chosen.share == Share::all ? 0 : 1;
        extent.lines += chosen.share == Share::all ? 0 : own - static_cast<int>(chosen.lines.size());
    }
    return extent;
}

gitkit::CommitPart SplitChoice::part() const
{
    gitkit::CommitPart part;
    for (std::size_t file = 0; file < files_.size(); ++file) {
        const Chosen& chosen = chosen_[file];
        if (chosen.share == Share::all) {
            part.files.push_back(files_[file].path);
            if (files_[file].status == 'R' && files_[file].originalPath)
                part.files.push_back(*files_[file].originalPath);
        } else if (chosen.share == Share::some) {
            part.patch += gitkit::partialPatch(chosen.diff, chosen.lines, gitkit::PatchDirection::forward)
                              .value_or(std::string());
        }
    }
    return part;
}

} // namespace plovik

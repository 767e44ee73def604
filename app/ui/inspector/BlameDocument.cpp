// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/inspector/BlameDocument.h"

#include "app/ui/history/RowText.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <unordered_map>

namespace plovik {

namespace {

using gitkit::BlameLine;

/// The unit of age in seconds. Commits of the same hour are about equally warm.
constexpr double finestAge = 3600;

} // namespace

BlameDocument::BlameDocument(std::span<const BlameLine> lines, std::optional<int> ownTabWidth, int tabWidth)
    : ownTabWidth_(ownTabWidth), tabWidth_(ownTabWidth.value_or(tabWidth))
{
    std::size_t size = 0;
    for (const BlameLine& line : lines)
        size += line.text.size() + 1;
    std::string text;
    text.reserve(size);
    rows_.reserve(lines.size());
    std::unordered_map<std::string_view, std::uint32_t> known;
    std::unordered_map<const gitkit::BlameOrigin*, std::uint32_t> knownOrigins;
    for (const BlameLine& line : lines) {
        const auto [commit, isNew] = known.try_emplace(line.hash, static_cast<std::uint32_t>(commits_.size()));
        if (isNew)
            commits_.push_back(
                {line.hash, shownLine(line.authorName), shownLine(line.summary), line.date, line.isUncommitted(), 1});
        const auto [origin, isNewOrigin] =
            knownOrigins.try_emplace(line.origin.get(), static_cast<std::uint32_t>(origins_.size()));
        if (isNewOrigin)
            origins_.push_back(line.origin);
        if (rows_.empty() || rows_.back().commit != commit->second)
            runs_.push_back({rowCount(), rowCount(), static_cast<int>(commit->second)});
        runs_.back().end = rowCount() + 1;
        rows_.push_back(
            {commit->second, static_cast<std::uint32_t>(runs_.size() - 1), origin->second, line.originalNumber});
        text.append(line.text).push_back('\n');
        columns_ = std::max(columns_, columnsOf(line.text, tabWidth_));
    }
    file_ = std::make_shared<const FileLines>(std::move(text));
    warmUp();
}

int BlameDocument::columns(int tabWidth) const
{
    if (tabWidth == tabWidth_)
        return columns_;
    int columns = 0;
    for (int row = 0; row < rowCount(); ++row)
        columns = std::max(columns, columnsOf(text(row), tabWidth));
    return columns;
}

void BlameDocument::warmUp()
{
    if (commits_.empty())
        return;
    const auto [oldest, newest] = std::ranges::minmax(commits_, {}, &Commit::date);
    // A logarithm, since a day between two new commits says more than a year between two old ones.
    const auto age = [last = newest.date](const Commit& commit) {
        return std::log1p(static_cast<double>((last - commit.date).count()) / finestAge);
    };
    const double whole = age(oldest);
    for (Commit& commit : commits_)
        commit.warmth = whole > 0 ? 1 - age(commit) / whole : 0.5;
}

const gitkit::BlameOrigin::Place* BlameDocument::previous(int row) const
{
    const auto& origin = origins_[line(row).origin];
    return origin && origin->previous ? &*origin->previous : nullptr;
}

/// Finds the lines of one blame in another.
class BlameDocument::Matcher {
public:
    Matcher(const BlameDocument& mine, const BlameDocument& theirs) : mine_(mine), theirs_(theirs)
    {
        std::unordered_map<std::string_view, std::uint32_t> known;
        for (std::uint32_t index = 0; index < mine.commits_.size(); ++index)
            known.emplace(mine.commits_[index].hash, index);
        for (const Commit& commit : theirs.commits_) {
            const auto found = known.find(commit.hash);
            commits_.push_back(found == known.end() ? std::nullopt : std::optional(found->second));
        }
        for (int row = 0; row < mine.rowCount(); ++row)
            rows_.emplace(key(mine.line(row).commit, mine.line(row).originalNumber), row);
    }

    int like(int row) const
    {
        if (row < 0 || row >= theirs_.rowCount() || mine_.rowCount() == 0)
            return -1;
        if (const auto found = same(row))
            return *found;
        std::optional<int> before;
        int above = row;
        while (above > 0 && !before)
            before = same(--above);
        std::optional<int> after;
        for (int below = row + 1; below < theirs_.rowCount() && !after; ++below)
            after = same(below);
        const int last = mine_.rowCount() - 1;
        const int low = std::min(before.value_or(-1) + 1, last);
        const int high = std::clamp(after.value_or(last + 1) - 1, low, last);
        return std::clamp(before ? *before + row - above : row, low, high);
    }

private:
    static std::uint64_t key(std::uint64_t commit, int number)
    {
        return commit << 32U | static_cast<std::uint32_t>(number);
    }

    std::optional<int> same(int row) const
    {
        const Row& line = theirs_.line(row);
        const auto& commit = commits_[line.commit];
        const auto found = commit ? rows_.find(key(*commit, line.originalNumber)) : rows_.end();
        return found == rows_.end() ? std::nullopt : std::optional(found->second);
    }

    const BlameDocument& mine_;
    const BlameDocument& theirs_;
    std::vector<std::optional<std::uint32_t>> commits_; ///< theirs as mine
    std::unordered_map<std::uint64_t, int> rows_;       ///< mine by commit and number in it
};

std::vector<int> BlameDocument::rowsLike(const BlameDocument& other, std::span<const int> rows) const
{
    const Matcher matcher(*this, other);
    std::vector<int> found;
    for (const int row : rows)
        found.push_back(matcher.like(row));
    return found;
}

} // namespace plovik

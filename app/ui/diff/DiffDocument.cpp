// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/DiffDocument.h"

#include "GitKit/records/HunkStart.h"
#include "app/ui/diff/LineWrap.h"

#include <QCache>
#include <QCoreApplication>

#include <algorithm>
#include <climits>
#include <utility>

namespace plovik {

namespace {

using namespace Qt::StringLiterals;

/// How many units of text are kept ready to be drawn: many screens of ordinary lines, or a few lines of a megabyte.
constexpr qsizetype keptUnits = qsizetype{1} << 22;
constexpr int keptMarks = 1000;
constexpr qsizetype keptPoints = qsizetype{1} << 16;

QString signOf(gitkit::DiffLine::Kind kind)
{
    if (kind == gitkit::DiffLine::Kind::addition)
        return u"+"_s;
    return kind == gitkit::DiffLine::Kind::deletion ? u"-"_s : QString();
}

} // namespace

struct DiffDocument::Caches {
    QCache<int, ShownLine> shown{keptUnits};
    QCache<int, std::vector<TextRange>> marks{keptMarks};
    QCache<int, std::vector<qsizetype>> points{keptPoints};
    int columns = 0; ///< of `points`
};

DiffDocument::~DiffDocument() = default;
DiffDocument::DiffDocument(DiffDocument&&) noexcept = default;
DiffDocument& DiffDocument::operator=(DiffDocument&&) noexcept = default;

DiffDocument::DiffDocument(gitkit::ParsedDiff diff, int tabWidth)
    : diff_(std::move(diff)), tabWidth_(tabWidth), caches_(std::make_unique<Caches>())
{
    if (!diff_.moved.empty())
        movedLines_.assign(diff_.lines.size(), -1);
    for (const gitkit::MovedBlock& block : diff_.moved) {
        for (int i = 0; i < block.count; ++i) {
            const int removed = block.removed + i;
            const int added = block.added + i;
            movedLines_[static_cast<std::size_t>(removed)] = added;
            movedLines_[static_cast<std::size_t>(added)] = removed;
        }
    }
    makeRows();
}

void DiffDocument::setGaps(DiffGaps gaps, Headers headers)
{
    gaps_ = std::move(gaps);
    headers_ = headers;
    makeRows();
}

void DiffDocument::setTabWidth(int tabWidth)
{
    tabWidth_ = tabWidth;
    makeRows();
}

void DiffDocument::makeRows()
{
    rows_.clear();
    rowOfLine_.clear();
    hunks_.clear();
    longestLine_ = 0;
    caches_ = std::make_unique<Caches>();
    rows_.reserve(diff_.lines.size());
    rowOfLine_.reserve(diff_.lines.size());
    for (const gitkit::DiffLine& line : diff_.lines) {
        if (line.kind == Kind::hunk)
            addHunk(line);
        else
            addRow(line);
    }
    if (gaps_.areKnown()) {
        const DiffGaps::Gap& last = gaps_.gap(gaps_.count() - 1);
        addGap(last, 0, last.top);
        if (last.rest() > 0) {
            rest_ = QCoreApplication::translate("Diff", "%Ln more line(s)", nullptr, last.rest()).toStdString();
            Row rest;
            rest.kind = Kind::hunk;
            push(std::move(rest));
        }
    }
    if (!hunks_.empty())
        hunks_.back().end = rowCount();
    if (!isCombined_)
        pairChanges();
}

void DiffDocument::addHunk(const gitkit::DiffLine& line)
{
    const DiffGaps::Gap gap = gaps_.areKnown() ? gaps_.gap(static_cast<int>(hunks_.size())) : DiffGaps::Gap();
    addGap(gap, 0, gap.top);
    if (!hunks_.empty())
        hunks_.back().end = rowCount();
    hunks_.push_back({rowCount(), 0});
    const std::size_t marks = line.text.find_first_not_of('@');
    isCombined_ = marks != std::string::npos && marks > 2;
    extraSigns_ = isCombined_ ? marks - 2 : 0;
    combinedNumber_ = gitkit::HunkStart::of(line.text).now;
    if (headers_ == Headers::atGaps && gap.size > 0 && gap.rest() == 0)
        rowOfLine_.push_back(rowCount());
    else
        addRow(line);
    addGap(gap, gap.size - gap.bottom, gap.bottom);
}

void DiffDocument::addRow(const gitkit::DiffLine& line)
{
    Row row{.kind = line.kind,
            .id = line.id,
            .line = static_cast<int>(rowOfLine_.size()),
            .sign = signOf(line.kind),
            .oldNumber = line.oldNumber,
            .newNumber = line.newNumber};
    if (isCombined_ && row.isCode())
        takeCombinedSigns(row, line);
    if (row.kind == Kind::deletion)
        row.side = DiffSide::before;
    else if (row.kind == Kind::addition)
        row.side = DiffSide::after;
    else if (row.kind == Kind::meta && !rows_.empty())
        row.side = rows_.back().side; // the note belongs to the line before it
    if (row.isCode())
        longestLine_ = std::max(longestLine_, columnsOf(line.text, tabWidth()));
    rowOfLine_.push_back(rowCount());
    push(std::move(row));
}

void DiffDocument::addGap(const DiffGaps::Gap& gap, int from, int count)
{
    for (int i = from; i < from + count; ++i) {
        Row row;
        row.oldNumber = gap.oldFirst + i;
        row.newNumber = gap.newFirst + i;
        longestLine_ = std::max(longestLine_, columnsOf(gaps_.line(*row.oldNumber, *row.newNumber), tabWidth()));
        push(std::move(row));
    }
}

void DiffDocument::push(Row row)
{
    row.hunk =
        gaps_.areKnown() ? std::max(0, static_cast<int>(hunks_.size()) - 1) : static_cast<int>(hunks_.size()) - 1;
    largestNumber_ = std::max({largestNumber_, row.oldNumber.value_or(0), row.newNumber.value_or(0)});
    hasOldLines_ = hasOldLines_ || row.oldNumber;
    hasNewLines_ = hasNewLines_ || row.newNumber;
    rows_.push_back(std::move(row));
}

DiffDocument::Place DiffDocument::placeOf(int row) const
{
    const Row& at = this->row(row);
    return {at.line, at.isRest() ? INT_MAX : at.newNumber.value_or(0)};
}

int DiffDocument::rowOf(const Place& place) const
{
    if (place.line >= 0 && place.line < static_cast<int>(rowOfLine_.size()))
        return std::min(rowOfLine_[static_cast<std::size_t>(place.line)], rowCount() - 1);
    const auto next = std::ranges::find_if(
        rows_, [&place](const Row& row) { return row.isCode() && row.newNumber.value_or(0) >= place.number; });
    return std::min(static_cast<int>(next - rows_.begin()), rowCount() - 1);
}

DiffLayout DiffDocument::layoutFor(DiffLayout wanted) const
{
    return isCombined_ || !hasOldLines_ || !hasNewLines_ ? DiffLayout::unified : wanted;
}

void DiffDocument::takeCombinedSigns(Row& row, const gitkit::DiffLine& line)
{
    // There is one sign for each parent, and the parser has taken the first one.
    const std::string_view more = std::string_view(line.text).substr(0, extraSigns_);
    row.sign = row.sign.isEmpty() ? u" "_s : row.sign;
    row.sign += QString::fromLatin1(more.data(), static_cast<qsizetype>(more.size()));
    if (row.sign.contains(u'-'))
        row.kind = Kind::deletion;
    else if (row.sign.contains(u'+'))
        row.kind = Kind::addition;
    row.oldNumber.reset();
    row.newNumber.reset();
    if (row.kind != Kind::deletion)
        row.newNumber = combinedNumber_++;
}

void DiffDocument::pairChanges()
{
    int row = 0;
    while (row < rowCount()) {
        if (this->row(row).kind != Kind::deletion) {
            ++row;
            continue;
        }
        // Notes on missing final newlines stand between the two runs.
        std::vector<int> removed;
        std::vector<int> added;
        for (; row < rowCount() && (this->row(row).kind == Kind::deletion || this->row(row).kind == Kind::meta); ++row)
        {
            if (this->row(row).kind == Kind::deletion)
                removed.push_back(row);
        }
        for (; row < rowCount() && this->row(row).kind == Kind::addition; ++row)
            added.push_back(row);
        for (std::size_t i = 0; i < std::min(removed.size(), added.size()); ++i) {
            rows_[static_cast<std::size_t>(removed[i])].partner = added[i];
            rows_[static_cast<std::size_t>(added[i])].partner = removed[i];
        }
    }
}

int DiffDocument::movedRow(int row) const
{
    const int line = this->row(row).line;
    const int other = line < 0 || movedLines_.empty() ? -1 : movedLines_[static_cast<std::size_t>(line)];
    return other < 0 ? -1 : rowOfLine_[static_cast<std::size_t>(other)];
}

std::string_view DiffDocument::bytes(int row) const
{
    const Row& at = this->row(row);
    if (at.isRest())
        return rest_;
    if (at.line < 0)
        return gaps_.line(*at.oldNumber, *at.newNumber);
    const std::string_view text = diff_.lines[static_cast<std::size_t>(at.line)].text;
    return at.isCode() ? text.substr(std::min(extraSigns_, text.size())) : text;
}

std::span<const SyntaxRun> DiffDocument::syntax(int row) const
{
    const Row& at = this->row(row);
    if (!at.isCode() || isCombined_)
        return {};
    const bool isOld = at.kind == Kind::deletion;
    const auto& file = isOld ? syntax_.before : syntax_.after;
    const auto& number = isOld ? at.oldNumber : at.newNumber;
    return file && number ? file->line(*number, bytes(row)) : std::span<const SyntaxRun>();
}

const ShownLine& DiffDocument::shown(int row) const
{
    if (const ShownLine* known = caches_->shown.object(row))
        return *known;
    auto* line = new ShownLine(ShownLine::of(bytes(row), tabWidth()));
    // A cache does not take what costs more than its limit.
    const qsizetype cost = std::min(line->source.size() + line->shown.size() + 32, keptUnits);
    static const ShownLine none;
    return caches_->shown.insert(row, line, cost) ? *line : none;
}

const std::vector<qsizetype>& DiffDocument::wrapPoints(int row, int columns) const
{
    static const std::vector<qsizetype> none;
    if (!this->row(row).isCode() || !mayNeedWrapping(bytes(row), tabWidth(), columns))
        return none;
    if (std::exchange(caches_->columns, columns) != columns)
        caches_->points.clear();
    if (const auto* known = caches_->points.object(row))
        return *known;
    auto* points = new std::vector<qsizetype>(plovik::wrapPoints(shown(row).shown, columns));
    const qsizetype cost = std::min(static_cast<qsizetype>(points->size()) + 8, keptPoints);
    return caches_->points.insert(row, points, cost) ? *points : none;
}

const std::vector<TextRange>& DiffDocument::marks(int row) const
{
    static const std::vector<TextRange> none;
    const int partner = this->row(row).partner;
    if (partner < 0)
        return none;
    if (const auto* known = caches_->marks.object(row))
        return *known;
    const bool isOld = this->row(row).kind == Kind::deletion;
    WordMarks found = wordMarks(text(isOld ? row : partner), text(isOld ? partner : row));
    auto* own = new std::vector<TextRange>(std::move(isOld ? found.removed : found.added));
    return caches_->marks.insert(row, own) ? *own : none;
}

QString DiffDocument::text(int row) const { return textOf(bytes(row)); }

std::set<int> DiffDocument::changesOf(const Hunk& hunk) const
{
    std::set<int> ids;
    for (int index = hunk.first; index < hunk.end; ++index) {
        if (row(index).isChange())
            ids.insert(row(index).id);
    }
    return ids;
}

} // namespace plovik

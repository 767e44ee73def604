#include "app/views/diff/DiffDocument.h"

#include "GitKit/records/HunkStart.h"

#include <QCache>

#include <algorithm>

namespace plovik {

namespace {

using namespace Qt::StringLiterals;

/// Lines kept ready to be drawn, by the memory that they take: many screens of ordinary ones, few of a megabyte.
constexpr qsizetype keptUnits = qsizetype{1} << 22;
constexpr int keptMarks = 1000;

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
};

DiffDocument::~DiffDocument() = default;
DiffDocument::DiffDocument(DiffDocument&&) noexcept = default;
DiffDocument& DiffDocument::operator=(DiffDocument&&) noexcept = default;

DiffDocument::DiffDocument(gitkit::ParsedDiff diff) : diff_(std::move(diff)), caches_(std::make_unique<Caches>())
{
    rows_.reserve(diff_.lines.size());
    for (const gitkit::DiffLine& line : diff_.lines)
        addRow(line);
    if (!hunks_.empty())
        hunks_.back().end = rowCount();
    if (!isCombined_)
        pairChanges();
}

void DiffDocument::addRow(const gitkit::DiffLine& line)
{
    Row row{line.kind, line.id, signOf(line.kind), line.oldNumber, line.newNumber, 0, -1};
    if (line.kind == Kind::hunk) {
        if (!hunks_.empty())
            hunks_.back().end = rowCount();
        hunks_.push_back({rowCount(), 0});
        const std::size_t marks = line.text.find_first_not_of('@');
        isCombined_ = marks != std::string::npos && marks > 2;
        extraSigns_ = isCombined_ ? marks - 2 : 0;
        combinedNumber_ = gitkit::HunkStart::of(line.text).now;
    } else if (isCombined_ && row.isCode()) {
        takeCombinedSigns(row, line);
    }
    row.hunk = static_cast<int>(hunks_.size()) - 1;
    largestNumber_ = std::max({largestNumber_, row.oldNumber.value_or(0), row.newNumber.value_or(0)});
    if (row.isCode())
        longestLine_ = std::max(longestLine_, columnsOf(line.text));
    rows_.push_back(std::move(row));
}

void DiffDocument::takeCombinedSigns(Row& row, const gitkit::DiffLine& line)
{
    // One sign for each parent; the parser took the first.
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

std::string_view DiffDocument::bytes(int row) const
{
    const std::string_view text = diff_.lines[static_cast<std::size_t>(row)].text;
    return this->row(row).isCode() ? text.substr(std::min(extraSigns_, text.size())) : text;
}

const ShownLine& DiffDocument::shown(int row) const
{
    if (const ShownLine* known = caches_->shown.object(row))
        return *known;
    auto* line = new ShownLine(ShownLine::of(bytes(row)));
    // Never so dear that the cache would not take it.
    const qsizetype cost = std::min(line->source.size() + line->shown.size() + 32, keptUnits);
    static const ShownLine none;
    return caches_->shown.insert(row, line, cost) ? *line : none;
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

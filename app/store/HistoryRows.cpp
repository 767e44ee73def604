// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/HistoryRows.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace plovik {

namespace {

// A row is packed as: hash, parents, author's date, name, address, subject, graph. A number is written in groups of
// seven bits. A hash of git's takes half of its digits; the number before it tells which form it has.

void putNumber(std::string& bytes, std::uint64_t number)
{
    for (; number >= 0x80; number >>= 7)
        bytes.push_back(static_cast<char>(number | 0x80));
    bytes.push_back(static_cast<char>(number));
}

void putText(std::string& bytes, std::string_view text)
{
    putNumber(bytes, text.size());
    bytes += text;
}

int digitOf(char character)
{
    if (character >= '0' && character <= '9')
        return character - '0';
    return character >= 'a' && character <= 'f' ? character - 'a' + 10 : -1;
}

void putHash(std::string& bytes, std::string_view hash)
{
    const bool isPacked =
        hash.size() % 2 == 0 && std::ranges::all_of(hash, [](char character) { return digitOf(character) >= 0; });
    putNumber(bytes, 2 * hash.size() + (isPacked ? 1 : 0));
    if (!isPacked) {
        bytes += hash;
        return;
    }
    for (std::size_t digit = 0; digit < hash.size(); digit += 2)
        bytes.push_back(static_cast<char>(16 * digitOf(hash[digit]) + digitOf(hash[digit + 1])));
}

void putLanes(std::string& bytes, const std::vector<int>& lanes)
{
    putNumber(bytes, lanes.size());
    int before = -1; // nearly always the next lane
    for (const int lane : lanes) {
        const int step = lane - before - 1;
        putNumber(bytes, step >= 0 ? 2 * static_cast<std::uint64_t>(step) : 2 * static_cast<std::uint64_t>(-step) - 1);
        before = lane;
    }
}

void putRow(std::string& bytes, const HistoryRow& row)
{
    putHash(bytes, row.commit.hash);
    putNumber(bytes, row.commit.parents.size());
    for (const std::string& parent : row.commit.parents)
        putHash(bytes, parent);
    putNumber(bytes, static_cast<std::uint64_t>(row.commit.date.time_since_epoch().count()));
    putText(bytes, row.commit.authorName);
    putText(bytes, row.commit.authorEmail);
    putText(bytes, row.commit.subject);
    putNumber(bytes, static_cast<std::uint64_t>(row.graph.lane));
    putLanes(bytes, row.graph.top);
    putLanes(bytes, row.graph.pass);
    putLanes(bytes, row.graph.bottom);
}

/// Reads what was packed. Nothing else ever stands in these bytes.
class Unpacking {
public:
    explicit Unpacking(std::string_view bytes) : rest_(bytes) {}

    std::uint64_t number()
    {
        std::uint64_t number = 0;
        for (int shift = 0;; shift += 7) {
            const auto byte = static_cast<unsigned char>(rest_.front());
            rest_.remove_prefix(1);
            number |= static_cast<std::uint64_t>(byte & 0x7F) << shift;
            if (byte < 0x80)
                return number;
        }
    }

    std::string text(std::uint64_t size)
    {
        std::string text(rest_.substr(0, size));
        rest_.remove_prefix(size);
        return text;
    }

    std::string text() { return text(number()); }

    std::string hash()
    {
        const std::uint64_t form = number();
        if (form % 2 == 0)
            return text(form / 2);
        std::string hash;
        hash.reserve(form / 2);
        for (const char character : text(form / 4)) {
            const auto byte = static_cast<unsigned char>(character);
            hash.push_back("0123456789abcdef"[byte >> 4]);
            hash.push_back("0123456789abcdef"[byte & 15]);
        }
        return hash;
    }

    std::vector<int> lanes()
    {
        std::vector<int> lanes(number());
        int before = -1;
        for (int& lane : lanes) {
            const auto step = static_cast<std::int64_t>(number());
            lane = before + 1 + static_cast<int>(step % 2 == 0 ? step / 2 : -(step + 1) / 2);
            before = lane;
        }
        return lanes;
    }

private:
    std::string_view rest_;
};

std::uint32_t keyOf(std::string_view hash) { return static_cast<std::uint32_t>(std::hash<std::string_view>{}(hash)); }

} // namespace

HistoryBlock::HistoryBlock(std::span<const HistoryRow> rows, std::vector<std::string> lanesBelow, int laneCount)
    : lanesBelow_(std::move(lanesBelow)), laneCount_(laneCount)
{
    starts_.reserve(rows.size());
    keys_.reserve(rows.size());
    for (const HistoryRow& row : rows) {
        starts_.push_back(static_cast<std::uint32_t>(bytes_.size()));
        keys_.push_back(keyOf(row.commit.hash));
        putRow(bytes_, row);
    }
    bytes_.shrink_to_fit();
}

std::string_view HistoryBlock::bytes(std::size_t first, std::size_t count) const
{
    const auto start = [this](std::size_t row) { return row < starts_.size() ? starts_[row] : bytes_.size(); };
    return std::string_view(bytes_).substr(start(first), start(first + count) - start(first));
}

HistoryRow HistoryBlock::row(std::size_t index) const
{
    Unpacking packed(std::string_view(bytes_).substr(starts_[index]));
    HistoryRow row;
    row.commit.hash = packed.hash();
    row.commit.parents.resize(packed.number());
    for (std::string& parent : row.commit.parents)
        parent = packed.hash();
    row.commit.date = gitkit::Date(std::chrono::seconds(static_cast<std::int64_t>(packed.number())));
    row.commit.authorName = packed.text();
    row.commit.authorEmail = packed.text();
    row.commit.subject = packed.text();
    row.graph.lane = static_cast<int>(packed.number());
    row.graph.top = packed.lanes();
    row.graph.pass = packed.lanes();
    row.graph.bottom = packed.lanes();
    return row;
}

std::string HistoryBlock::hash(std::size_t index) const
{
    return Unpacking(std::string_view(bytes_).substr(starts_[index])).hash();
}

std::optional<std::size_t> HistoryBlock::find(const std::string& hash) const
{
    const std::uint32_t key = keyOf(hash);
    for (auto found = keys_.begin(); (found = std::find(found, keys_.end(), key)) != keys_.end(); ++found) {
        const auto index = static_cast<std::size_t>(found - keys_.begin());
        if (this->hash(index) == hash)
            return index;
    }
    return std::nullopt;
}

HistoryRows::HistoryRows(const std::vector<HistoryRow>& rows)
{
    if (rows.empty())
        return;
    auto labels = std::make_shared<gitkit::RefLabels>();
    int lanes = 1;
    for (const HistoryRow& row : rows) {
        if (!row.commit.refs.empty())
            labels->emplace(row.commit.hash, row.commit.refs);
        lanes = std::max(lanes, row.graph.lane + 1);
    }
    append(std::make_shared<const HistoryBlock>(rows, std::vector<std::string>(), lanes));
    labels_ = std::move(labels);
}

HistoryRows::Place HistoryRows::place(std::size_t index) const
{
    const auto end = std::ranges::upper_bound(ends_, index);
    const auto block = static_cast<std::size_t>(end - ends_.begin());
    return {block, index - (block == 0 ? 0 : ends_[block - 1])};
}

HistoryRow HistoryRows::stored(std::size_t index) const
{
    const Place found = place(index);
    return blocks_[found.block]->row(found.index);
}

std::size_t HistoryRows::commitAt(std::size_t row) const
{
    if (!arrangement_)
        return row;
    const auto other = arrangement_->commitOf.find(row);
    return other == arrangement_->commitOf.end() ? row : other->second;
}

bool HistoryRows::isArrangedAs(const HistoryRows& other) const
{
    static const Arrangement none;
    return arrangement_ == other.arrangement_ ||
           (arrangement_ ? *arrangement_ : none) == (other.arrangement_ ? *other.arrangement_ : none);
}

void HistoryRows::arrange(const std::vector<std::string>& commits)
{
    std::vector<std::size_t> wanted;
    for (const std::string& commit : commits) {
        if (const auto row = storedRowOf(commit))
            wanted.push_back(*row);
    }
    std::vector<std::size_t> rows = wanted;
    std::ranges::sort(rows);
    auto arrangement = std::make_shared<Arrangement>();
    for (std::size_t index = 0; index < rows.size(); ++index) {
        if (rows[index] == wanted[index])
            continue;
        arrangement->commitOf[rows[index]] = wanted[index];
        arrangement->rowOf[wanted[index]] = rows[index];
    }
    arrangement_ = arrangement->rowOf.empty() ? nullptr : std::move(arrangement);
}

HistoryRow HistoryRows::operator[](std::size_t index) const
{
    HistoryRow row = stored(index);
    if (const std::size_t other = commitAt(index); other != index)
        row.commit = stored(other).commit;
    if (!labels_)
        return row;
    if (const auto labels = labels_->find(row.commit.hash); labels != labels_->end())
        row.commit.refs = labels->second;
    return row;
}

HistoryRow HistoryRows::at(std::size_t index) const
{
    if (index >= size())
        throw std::out_of_range("HistoryRows::at");
    return (*this)[index];
}

std::string HistoryRows::hashAt(std::size_t index) const
{
    const Place found = place(commitAt(index));
    return blocks_[found.block]->hash(found.index);
}

std::optional<std::size_t> HistoryRows::rowOf(const std::string& hash) const
{
    const std::optional<std::size_t> row = storedRowOf(hash);
    if (!row || !arrangement_)
        return row;
    const auto other = arrangement_->rowOf.find(*row);
    return other == arrangement_->rowOf.end() ? row : std::optional(other->second);
}

std::optional<std::size_t> HistoryRows::storedRowOf(const std::string& hash) const
{
    for (std::size_t block = 0; block < blocks_.size(); ++block) {
        if (const auto index = blocks_[block]->find(hash))
            return *index + (block == 0 ? 0 : ends_[block - 1]);
    }
    return std::nullopt;
}

std::optional<gitkit::Commit> HistoryRows::commit(const std::string& hash) const
{
    const auto row = rowOf(hash);
    return row ? std::optional((*this)[*row].commit) : std::nullopt;
}

void HistoryRows::append(Block block)
{
    if (!leftOut_.empty() && block->find(leftOut_)) {
        std::vector<HistoryRow> others;
        for (std::size_t index = 0; index < block->size(); ++index) {
            if (block->hash(index) != leftOut_)
                others.push_back(block->row(index));
        }
        block = std::make_shared<const HistoryBlock>(others, block->lanesBelow(), block->laneCount());
    }
    if (block->size() == 0)
        return;
    ends_.push_back(size() + block->size());
    blocks_.push_back(std::move(block));
}

void HistoryRows::putFirst(const HistoryRow& row)
{
    const std::vector<Block> others = std::exchange(blocks_, {});
    ends_.clear();
    append(std::make_shared<const HistoryBlock>(std::span(&row, 1)));
    leftOut_ = row.commit.hash;
    for (const Block& block : others)
        append(block);
}

void HistoryRows::appendFrom(const HistoryRows& other, std::size_t first)
{
    for (std::size_t block = 0; block < other.blocks_.size(); ++block) {
        if (other.ends_[block] - other.blocks_[block]->size() >= first)
            append(other.blocks_[block]);
    }
}

bool HistoryRows::beginsWith(const HistoryRows& other) const
{
    if (size() < other.size() || !isArrangedAs(other))
        return false;
    std::size_t row = 0;
    // Shared blocks at the beginning need no comparison.
    std::size_t shared = 0;
    while (shared < other.blocks_.size() && shared < blocks_.size() && blocks_[shared] == other.blocks_[shared])
        row = ends_[shared++];
    while (row < other.size()) {
        const Place mine = place(row);
        const Place its = other.place(row);
        const HistoryBlock& left = *blocks_[mine.block];
        const HistoryBlock& right = *other.blocks_[its.block];
        const std::size_t count = std::min(left.size() - mine.index, right.size() - its.index);
        if (&left != &right || mine.index != its.index) {
            if (left.bytes(mine.index, count) != right.bytes(its.index, count))
                return false;
        }
        row += count;
    }
    return true;
}

bool HistoryRows::hasLabelsOf(const HistoryRows& other) const
{
    static const gitkit::RefLabels none;
    return labels_ == other.labels_ || (labels_ ? *labels_ : none) == (other.labels_ ? *other.labels_ : none);
}

} // namespace plovik

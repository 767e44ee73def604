// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/parsers/DisplayOrder.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

namespace gitkit {

namespace {

using Ranks = std::array<unsigned char, 256>;

/// The order of single bytes: first the folder separator, so that a folder's files stay together, then other signs,
/// digits, letters, and last all bytes that are not ASCII.
constexpr Ranks makeRanks()
{
    constexpr std::string_view order = "/ _-,;:!?.'\"()[]{}@*\\&#%`^+<=>|~$0123456789";
    Ranks ranks{};
    unsigned char next = 1;
    for (unsigned byte = 1; byte < 0x20; ++byte)
        ranks[byte] = 1;
    for (const char sign : order)
        ranks[static_cast<unsigned char>(sign)] = ++next;
    for (unsigned letter = 'a'; letter <= 'z'; ++letter) {
        ranks[letter] = ++next;
        ranks[letter - 'a' + 'A'] = next;
    }
    ranks[0x7F] = ++next;
    for (unsigned byte = 0x80; byte < 256; ++byte)
        ranks[byte] = static_cast<unsigned char>(byte);
    ranks[static_cast<unsigned char>('/')] = 0;
    return ranks;
}

constexpr Ranks ranks = makeRanks();

/// The plain letters by which U+00C0 to U+017F are ordered; '?' for a character without one.
constexpr std::string_view plainLetters = "aaaaaaaceeeeiiiidnooooo?ouuuuytsaaaaaaaceeeeiiiidnooooo?ouuuuyty"
                                          "aaaaaaccccccccddddeeeeeeeeeegggggggghhhhiiiiiiiiiiiijjkkkllllllllll"
                                          "nnnnnnnnnoooooooorrrrrrssssssssttttttuuuuuuuuuuuuwwyyyzzzzzzs";
static_assert(plainLetters.size() == 0x180 - 0xC0);

bool isDigit(char character) { return character >= '0' && character <= '9'; }

void append(std::string& keys, unsigned value) { keys += static_cast<char>(static_cast<unsigned char>(value)); }

/// Numbers are ordered by how many digits they have, then by the digits. Leading zeros do not count.
std::size_t appendNumber(std::string& keys, std::string_view path, std::size_t start)
{
    std::size_t end = start;
    while (end < path.size() && isDigit(path[end]))
        ++end;
    std::size_t first = start;
    while (first + 1 < end && path[first] == '0')
        ++first;
    append(keys, ranks[static_cast<unsigned char>('0')]);
    std::size_t length = end - first;
    for (; length >= 255; length -= 255)
        append(keys, 255);
    append(keys, static_cast<unsigned>(length));
    keys += path.substr(first, end - first);
    return end;
}

/// Returns the lower case of Greek and Cyrillic capitals, and every other character unchanged.
unsigned lowered(unsigned codePoint)
{
    if ((codePoint >= 0x391 && codePoint <= 0x3A9) || (codePoint >= 0x410 && codePoint <= 0x42F))
        return codePoint + 0x20;
    if (codePoint >= 0x400 && codePoint <= 0x40F)
        return codePoint + 0x50;
    return codePoint;
}

/// All letters that are folded here have two bytes. Longer characters are ordered by their bytes.
std::size_t appendForeign(std::string& keys, std::string_view path, std::size_t start)
{
    const unsigned lead = static_cast<unsigned char>(path[start]);
    const unsigned next = start + 1 < path.size() ? static_cast<unsigned char>(path[start + 1]) : 0u;
    if (lead < 0xC2 || lead > 0xDF || (next & 0xC0) != 0x80) {
        append(keys, lead);
        return start + 1;
    }
    const unsigned codePoint = lowered(((lead & 0x1F) << 6) | (next & 0x3F));
    const char plain = codePoint >= 0xC0 && codePoint < 0x180 ? plainLetters[codePoint - 0xC0] : '?';
    if (plain != '?') {
        append(keys, ranks[static_cast<unsigned char>(plain)]);
    } else {
        append(keys, 0xC0 | (codePoint >> 6));
        append(keys, 0x80 | (codePoint & 0x3F));
    }
    return start + 2;
}

struct Item {
    std::string_view key;
    std::uint32_t index;
};

/// Merges neighbouring sorted runs until one is left. Git prints names sorted by their bytes, so there are only a few
/// long runs, and a list that is in order costs one comparison for each entry.
template <typename Less>
void mergeRuns(std::vector<Item>& items, const Less& less)
{
    std::vector<std::size_t> bounds{0};
    for (std::size_t index = 1; index < items.size(); ++index) {
        if (less(items[index], items[index - 1]))
            bounds.push_back(index);
    }
    bounds.push_back(items.size());
    std::vector<Item> merged(bounds.size() > 2 ? items.size() : 0);
    const auto at = [](std::vector<Item>& list, std::size_t index) {
        return list.begin() + static_cast<std::ptrdiff_t>(index);
    };
    while (bounds.size() > 2) {
        std::vector<std::size_t> wider{0};
        for (std::size_t run = 0; run + 1 < bounds.size(); run += 2) {
            const std::size_t middle = bounds[run + 1];
            const std::size_t end = run + 2 < bounds.size() ? bounds[run + 2] : middle;
            std::merge(at(items, bounds[run]), at(items, middle), at(items, middle), at(items, end),
                       at(merged, bounds[run]), less);
            wider.push_back(end);
        }
        items.swap(merged);
        bounds.swap(wider);
    }
}

} // namespace

void appendDisplayKey(std::string& keys, std::string_view path)
{
    std::size_t index = 0;
    while (index < path.size()) {
        const auto byte = static_cast<unsigned char>(path[index]);
        if (isDigit(path[index])) {
            index = appendNumber(keys, path, index);
        } else if (byte >= 0x80) {
            index = appendForeign(keys, path, index);
        } else {
            append(keys, ranks[byte]);
            ++index;
        }
    }
}

namespace {

template <typename File>
void sortByPath(std::vector<File>& files)
{
    std::string keys;
    std::vector<std::size_t> ends;
    ends.reserve(files.size());
    std::size_t bytes = 0;
    for (const File& file : files)
        bytes += file.path.size() + 4;
    keys.reserve(bytes);
    for (const File& file : files) {
        appendDisplayKey(keys, file.path);
        ends.push_back(keys.size());
    }
    std::vector<Item> items;
    items.reserve(files.size());
    std::size_t start = 0;
    for (std::uint32_t index = 0; index < files.size(); ++index) {
        items.push_back({std::string_view(keys).substr(start, ends[index] - start), index});
        start = ends[index];
    }
    mergeRuns(items, [&files](const Item& left, const Item& right) {
        const int order = left.key.compare(right.key);
        return order != 0 ? order < 0 : files[left.index].path < files[right.index].path;
    });
    std::vector<File> sorted;
    sorted.reserve(files.size());
    for (const Item& item : items)
        sorted.push_back(std::move(files[item.index]));
    files = std::move(sorted);
}

} // namespace

void sortForDisplay(std::vector<FileChange>& files) { sortByPath(files); }
void sortForDisplay(std::vector<CommitFile>& files) { sortByPath(files); }
void sortForDisplay(std::vector<ChangeCounts>& files) { sortByPath(files); }

void sortForDisplay(std::vector<GitRef>& refs)
{
    struct Keyed {
        GitRef ref;
        std::string key;
    };
    std::vector<Keyed> keyed;
    keyed.reserve(refs.size());
    for (GitRef& ref : refs) {
        std::string key;
        // The comma is ordered after "-" and before ".": v1.0-rc1, v1.0, v1.0.1.
        appendDisplayKey(key, ref.name + ',');
        keyed.push_back({std::move(ref), std::move(key)});
    }
    std::ranges::sort(keyed, [](const Keyed& left, const Keyed& right) {
        if (left.ref.kind != right.ref.kind)
            return left.ref.kind < right.ref.kind;
        const int order = left.key != right.key ? left.key.compare(right.key) : left.ref.name.compare(right.ref.name);
        return left.ref.kind == GitRef::Kind::tag ? order > 0 : order < 0;
    });
    for (std::size_t index = 0; index < refs.size(); ++index)
        refs[index] = std::move(keyed[index].ref);
}

} // namespace gitkit

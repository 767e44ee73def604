// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/DiffOutline.h"

#include "app/ui/diff/ShownDiff.h"
#include "app/ui/diff/syntax/SyntaxLanguage.h"

#include <algorithm>
#include <array>

namespace plovik {

namespace {

constexpr std::size_t longestName = 400; // in bytes

bool isBlankByte(char c) { return c == ' ' || c == '\t'; }

bool isWordByte(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '$' ||
           (static_cast<unsigned char>(c) & 0x80U) != 0;
}

std::string_view firstWord(std::string_view text)
{
    return text.substr(0, static_cast<std::size_t>(std::ranges::find_if_not(text, isWordByte) - text.begin()));
}

std::string_view withoutBlanks(std::string_view text)
{
    text.remove_prefix(static_cast<std::size_t>(std::ranges::find_if_not(text, isBlankByte) - text.begin()));
    return text;
}

template <std::size_t size>
bool holds(const std::array<std::string_view, size>& sorted, std::string_view word)
{
    return std::ranges::binary_search(sorted, word);
}

constexpr std::array<std::string_view, 16> declaring{"class",    "def",  "enum",      "fn",     "fun",       "func",
                                                     "function", "impl", "interface", "module", "namespace", "protocol",
                                                     "struct",   "sub",  "trait",     "union"};
constexpr std::array<std::string_view, 18> leading{"abstract",  "async",  "const",    "default", "export",   "extern",
                                                   "final",     "inline", "internal", "open",    "override", "private",
                                                   "protected", "pub",    "public",   "sealed",  "static",   "unsafe"};
constexpr std::array<std::string_view, 20> notDeclaring{
    "break", "case", "catch",  "do",      "elif",   "else",   "except", "finally", "for",   "from",
    "goto",  "if",   "import", "package", "return", "switch", "throw",  "try",     "using", "while"};
static_assert(std::ranges::is_sorted(declaring) && std::ranges::is_sorted(leading) &&
              std::ranges::is_sorted(notDeclaring));

/// Returns the name in a hunk's header; empty if git has found none.
std::string_view nameInHeader(std::string_view header)
{
    const std::size_t signs = header.find_first_not_of('@');
    if (signs == std::string_view::npos || signs < 2)
        return {};
    const std::size_t end = header.find(header.substr(0, signs), signs);
    return end == std::string_view::npos ? std::string_view() : withoutBlanks(header.substr(end + signs));
}

/// Prose and data have lines that look like functions.
bool isCodeLanguage(const ShownDiff& diff)
{
    const gitkit::ParsedDiff& parsed = diff.document().diff();
    const std::string language =
        syntaxLanguage(diff.content().path, parsed.lines.empty() ? "" : parsed.lines.front().text);
    constexpr std::array<std::string_view, 16> others{"bib",        "changelog", "css",   "desktop", "diff",     "html",
                                                      "ignored",    "json",      "latex", "log",     "markdown", "po",
                                                      "properties", "toml",      "xml",   "yaml"};
    static_assert(std::ranges::is_sorted(others));
    return !language.empty() && !holds(others, language);
}

} // namespace

bool beginsFunction(std::string_view line)
{
    const std::string_view text = withoutBlanks(line);
    std::string_view rest = text;
    std::string_view word = firstWord(rest);
    while (holds(leading, word)) {
        rest.remove_prefix(word.size());
        // "pub(crate)" is one word more.
        if (rest.starts_with('('))
            rest.remove_prefix(std::min(rest.find(')'), rest.size() - 1) + 1);
        rest = withoutBlanks(rest);
        word = firstWord(rest);
    }
    const std::size_t last = text.find_last_not_of(" \t\r");
    if (word.empty() || last == std::string_view::npos || text[last] == ';' || text[last] == ',')
        return false;
    if (holds(declaring, word))
        return rest.size() > word.size() && isBlankByte(rest[word.size()]);
    // Otherwise what stands at the left margin and has parameters, as C has it.
    return !isBlankByte(line.front()) && !holds(notDeclaring, word) && !(word.front() >= '0' && word.front() <= '9') &&
           rest.find('(') != std::string_view::npos;
}

void DiffOutline::read() const
{
    if (revision_ == diff_.revision())
        return;
    revision_ = diff_.revision();
    entries_.clear();
    const DiffDocument& document = diff_.document();
    const bool isCode = document.rowCount() > 0 && isCodeLanguage(diff_);
    for (int row = 0; row < document.rowCount(); ++row) {
        const DiffDocument::Row& at = document.row(row);
        if (at.kind == DiffDocument::Kind::hunk)
            entries_.push_back({row, !nameInHeader(document.bytes(row)).empty()});
        else if (isCode && at.isCode() && at.kind != DiffDocument::Kind::deletion &&
                 beginsFunction(document.bytes(row)))
            entries_.push_back({row, true});
    }
}

bool DiffOutline::isEmpty() const
{
    read();
    return std::ranges::none_of(entries_, &Entry::hasName);
}

int DiffOutline::nameRow(int row) const
{
    read();
    const auto after = std::ranges::upper_bound(entries_, row, {}, &Entry::row);
    if (after == entries_.begin())
        return -1;
    const Entry& entry = *(after - 1);
    return entry.hasName ? entry.row : -1;
}

QString DiffOutline::name(int row) const
{
    const DiffDocument& document = diff_.document();
    const std::string_view bytes = document.bytes(row);
    const bool isHeader = document.row(row).kind == DiffDocument::Kind::hunk;
    const std::string_view name = isHeader ? nameInHeader(bytes) : withoutBlanks(bytes);
    return ShownLine::of(name.substr(0, longestName)).shown;
}

} // namespace plovik

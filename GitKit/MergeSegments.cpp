// SPDX-License-Identifier: GPL-3.0-or-later
// Each side is compared with the base by git, with the settings that its own merge uses, and the two lists of changes are
// put together by the rules of that merge: changes that overlap or touch are one conflict, unless they are the same. A
// diff tells which side has changed what, and what git writes as a merge's result does not.
//
//   diff --no-index   runs in the temporary folder with no repository around it: attributes and settings of one would
//                     convert line ends and call files binary. -U1, since without context git leaves the files' common
//                     end out of the comparison, which may give other changes than its merge finds.

#include "GitKit/MergeSegments.h"

#include "GitKit/FileReplacement.h"
#include "GitKit/runner/GitError.h"
#include "GitKit/runner/GitRunner.h"

#include <array>
#include <charconv>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <utility>

namespace gitkit {

namespace {

namespace fs = std::filesystem;
using SegmentKind = MergeSegment::Kind;

/// Lines of the old text that are lines of the new text instead.
struct LineChange {
    LineSpan before, after;
};
using LineChanges = std::vector<LineChange>;

class MergeFolder {
public:
    MergeFolder()
    {
        std::string pattern = (fs::temp_directory_path() / "plovik-merge-XXXXXX").string();
        if (::mkdtemp(pattern.data()) == nullptr)
            throw GitError("merge-file", 1,
                           "No temporary folder could be made: " + std::generic_category().message(errno) + ".");
        path_ = pattern;
    }
    ~MergeFolder()
    {
        std::error_code ignored;
        fs::remove_all(path_, ignored);
    }
    MergeFolder(const MergeFolder&) = delete;
    MergeFolder& operator=(const MergeFolder&) = delete;

    const fs::path& path() const { return path_; }
    void write(const char* name, std::string_view bytes) const
    {
        if (!replaceFile(path_ / name, bytes))
            throw GitError("merge-file", 1,
                           "A temporary file could not be written: " + std::generic_category().message(errno) + ".");
    }

private:
    fs::path path_;
};

std::size_t takeNumber(std::string_view& text)
{
    std::size_t number = 0;
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    text.remove_prefix(static_cast<std::size_t>(stop - text.data()));
    return number;
}

/// Reads "FIRST,COUNT" or "FIRST", where an empty range is told by the line before it.
LineSpan takeRange(std::string_view& text)
{
    LineSpan span{.first = takeNumber(text), .count = 1};
    if (text.starts_with(',')) {
        text.remove_prefix(1);
        span.count = takeNumber(text);
    }
    span.first -= span.count > 0 ? 1 : 0;
    return span;
}

std::string_view takeLine(std::string_view& rest)
{
    const std::string_view line = rest.substr(0, rest.find('\n'));
    rest.remove_prefix(std::min(line.size() + 1, rest.size()));
    return line;
}

/// Reads a hunk's lines, of which `rest` begins with the first, and appends the changes among them.
void readHunk(std::string_view& rest, LineSpan before, LineSpan after, LineChanges& changes)
{
    std::size_t oldLine = before.first;
    std::size_t newLine = after.first;
    bool isInChange = false;
    while ((oldLine < before.end() || newLine < after.end()) && !rest.empty()) {
        const std::string_view line = takeLine(rest);
        const char mark = line.empty() ? ' ' : line.front();
        if (mark == '\\')
            continue;
        if (mark != '-' && mark != '+') {
            ++oldLine;
            ++newLine;
            isInChange = false;
            continue;
        }
        if (!std::exchange(isInChange, true))
            changes.push_back({{oldLine, 0}, {newLine, 0}});
        ++(mark == '-' ? oldLine : newLine);
        ++(mark == '-' ? changes.back().before : changes.back().after).count;
    }
}

LineChanges parseChanges(std::string_view diff)
{
    LineChanges changes;
    while (!diff.empty()) {
        std::string_view line = takeLine(diff);
        if (!line.starts_with("@@ -"))
            continue;
        line.remove_prefix(4);
        const LineSpan before = takeRange(line);
        line.remove_prefix(std::min<std::size_t>(line.size(), 2)); // " +"
        readHunk(diff, before, takeRange(line), changes);
    }
    return changes;
}

LineChanges changesBetween(const GitRunner& git, const char* before, const char* after)
{
    RunOptions options{.accepting = {0, 1}};
    options.environment = {{"GIT_CEILING_DIRECTORIES", fs::temp_directory_path().string()}, {"GIT_ATTR_NOSYSTEM", "1"}};
    options.settings = {"core.attributesFile=/dev/null", "core.autocrlf=false", "core.safecrlf=false"};
    return parseChanges(git.bytes({"diff", "--no-index", "--text", "--no-ext-diff", "--no-textconv", "--no-color",
                                   "--diff-algorithm=myers", "--no-indent-heuristic", "-U1", "--", before, after},
                                  options));
}

// Whole texts.

bool endsInCrLf(std::string_view line) { return line.ends_with("\r\n"); }

bool isMostlyCrLf(const MergeText& text)
{
    std::size_t count = 0;
    for (std::size_t index = 0; index < text.lineCount(); ++index)
        count += endsInCrLf(text.line(index)) ? 1 : 0;
    return count * 2 > text.lineCount();
}

/// Ends the last line as the one before it ends. Returns how many bytes that took.
std::size_t endLastLine(std::string& bytes)
{
    if (bytes.empty() || bytes.ends_with('\n'))
        return 0;
    const std::size_t before = bytes.rfind('\n');
    const std::string_view end = before != std::string::npos && before > 0 && bytes[before - 1] == '\r' ? "\r\n" : "\n";
    bytes += end;
    return end.size();
}

enum class LineEnds { lf, crLf };

std::string withLineEnds(const std::string& bytes, LineEnds ends)
{
    std::string converted;
    converted.reserve(bytes.size());
    for (std::size_t at = 0; at < bytes.size(); ++at) {
        const bool isCr = bytes[at] == '\r' && at + 1 < bytes.size() && bytes[at + 1] == '\n';
        if (isCr)
            continue;
        if (bytes[at] == '\n' && ends == LineEnds::crLf)
            converted += '\r';
        converted += bytes[at];
    }
    return converted;
}

std::string withoutBlanks(std::string_view text)
{
    std::string kept;
    kept.reserve(text.size());
    std::ranges::copy_if(text, std::back_inserter(kept), [](char byte) {
        return byte != ' ' && byte != '\t' && byte != '\r' && byte != '\v' && byte != '\f';
    });
    return kept;
}

/// Returns one more than the longest run of a marker's character with which a line begins, and 7 at least.
std::size_t markerSizeFor(const MergedSides& sides)
{
    std::size_t size = 6;
    for (const MergeText* text : {&sides.base, &sides.left, &sides.right}) {
        for (std::size_t index = 0; index < text->lineCount(); ++index) {
            const std::string_view line = text->line(index);
            if (std::string_view("<>=|").find(line.front()) != std::string_view::npos)
                size = std::max(size, std::min(line.find_first_not_of(line.front()), line.size()));
        }
    }
    return size + 1;
}

// Putting the changes together.

/// A piece that one side or both have changed, with the lines that stand for it on each side.
struct Piece {
    SegmentKind kind;
    LineSpan base, left, right;
};

class PieceList {
public:
    /// Pieces that touch or overlap the one before become one with it, and a conflict unless they are of one kind.
    void add(const Piece& piece)
    {
        if (!pieces_.empty() && pieces_.back().kind != SegmentKind::changedBoth) {
            Piece& last = pieces_.back();
            if (piece.left.first <= last.left.end() || piece.right.first <= last.right.end()) {
                if (piece.kind != last.kind)
                    last.kind = SegmentKind::conflict;
                last.base.count = piece.base.end() - last.base.first;
                last.left.count = piece.left.end() - last.left.first;
                last.right.count = piece.right.end() - last.right.first;
                return;
            }
        }
        pieces_.push_back(piece);
    }
    void addSame(const Piece& piece) { pieces_.push_back(piece); }
    std::vector<Piece> take() { return std::move(pieces_); }

private:
    std::vector<Piece> pieces_;
};

/// Where a line of the base, outside of all changes, is on the other side, when the changes before `next` are behind it.
std::size_t moved(std::size_t line, const LineChanges& changes, std::size_t next)
{
    return next == 0 ? line : changes[next - 1].after.end() + line - changes[next - 1].before.end();
}

Piece onlyLeft(const LineChange& change, std::size_t right)
{
    return {SegmentKind::changedLeft, change.before, change.after, {right, change.before.count}};
}

Piece onlyRight(const LineChange& change, std::size_t left)
{
    return {SegmentKind::changedRight, change.before, {left, change.before.count}, change.after};
}

/// Two changes that overlap or touch: both reach from where the first begins to where the last ends.
Piece clash(const LineChange& left, const LineChange& right)
{
    Piece piece{SegmentKind::conflict, left.before, left.after, right.after};
    const std::size_t first = std::min(left.before.first, right.before.first);
    const std::size_t end = std::max(left.before.end(), right.before.end());
    const auto widened = [&](const LineChange& change) {
        const std::size_t start = change.after.first - (change.before.first - first);
        return LineSpan{start, change.after.end() + (end - change.before.end()) - start};
    };
    piece.base = {first, end - first};
    piece.left = widened(left);
    piece.right = widened(right);
    return piece;
}

std::vector<Piece> piecesOf(const MergedSides& compared, const LineChanges& left, const LineChanges& right)
{
    PieceList pieces;
    std::size_t l = 0;
    std::size_t r = 0;
    while (l < left.size() || r < right.size()) {
        if (r == right.size() || (l < left.size() && left[l].before.end() < right[r].before.first)) {
            pieces.add(onlyLeft(left[l], moved(left[l].before.first, right, r)));
            ++l;
            continue;
        }
        if (l == left.size() || right[r].before.end() < left[l].before.first) {
            pieces.add(onlyRight(right[r], moved(right[r].before.first, left, l)));
            ++r;
            continue;
        }
        if (left[l].before == right[r].before &&
            compared.left.lines(left[l].after) == compared.right.lines(right[r].after))
            pieces.addSame({SegmentKind::changedBoth, left[l].before, left[l].after, right[r].after});
        else
            pieces.add(clash(left[l], right[r]));
        const std::size_t leftEnd = left[l].before.end();
        const std::size_t rightEnd = right[r].before.end();
        l += leftEnd <= rightEnd ? 1 : 0;
        r += rightEnd <= leftEnd ? 1 : 0;
    }
    return pieces.take();
}

/// Returns whether a line, or the last one if there are not so many, ends in CR LF; nullopt when there is none.
std::optional<bool> endsInCrLf(const MergeText& text, std::size_t index)
{
    if (text.lineCount() == 0)
        return std::nullopt;
    return endsInCrLf(text.line(std::min(index, text.lineCount() - 1)));
}

/// Decides it as git does: both lines before the conflict and the first of the base must say so.
bool areMarkersInCrLf(const MergedSides& sides, const Piece& piece)
{
    const auto before = [](LineSpan span) { return span.first > 0 ? span.first - 1 : 0; };
    std::optional<bool> isCrLf;
    for (const std::optional<bool> told : {endsInCrLf(sides.left, before(piece.left)),
                                           endsInCrLf(sides.right, before(piece.right)), endsInCrLf(sides.base, 0)})
    {
        isCrLf = told;
        if (isCrLf == false)
            return false;
    }
    return isCrLf.value_or(false);
}

MergeSegment segmentOf(const MergedSides& sides, const Piece& piece)
{
    MergeSegment segment{piece.kind, piece.base, piece.left, piece.right};
    if (piece.kind != SegmentKind::conflict)
        return segment;
    const std::string_view left = sides.left.lines(piece.left);
    const std::string_view right = sides.right.lines(piece.right);
    segment.isWhitespaceOnly = withoutBlanks(left) == withoutBlanks(right);
    segment.isLineEndsOnly = segment.isWhitespaceOnly && withLineEnds(std::string(left), LineEnds::lf) ==
                                                             withLineEnds(std::string(right), LineEnds::lf);
    segment.areMarkersInCrLf = areMarkersInCrLf(sides, piece);
    return segment;
}

std::vector<MergeSegment> segmentsOf(const MergedSides& sides, const std::vector<Piece>& pieces)
{
    std::vector<MergeSegment> segments;
    LineSpan base, left, right; // what lies behind
    const auto addEqual = [&](std::size_t count) {
        if (count > 0)
            segments.push_back({SegmentKind::equal,
                                {base.end(), sides.hasBase ? count : 0},
                                {left.end(), count},
                                {right.end(), count}});
    };
    for (const Piece& piece : pieces) {
        addEqual(piece.left.first - left.end());
        segments.push_back(segmentOf(sides, piece));
        base = piece.base;
        left = piece.left;
        right = piece.right;
    }
    addEqual(sides.left.lineCount() - left.end());
    return segments;
}

std::vector<Piece> differences(const LineChanges& changes)
{
    std::vector<Piece> pieces;
    for (const LineChange& change : changes)
        pieces.push_back({SegmentKind::conflict, {}, change.before, change.after});
    return pieces;
}

/// Returns the pieces of two or three texts, which are equal where their lines are.
std::vector<Piece> compare(const RunContext& context, const MergedSides& compared)
{
    const MergeFolder folder;
    RunContext own = context;
    own.requiredTopLevel.clear();
    own.guard.reset(); // no repository is read
    const GitRunner git(folder.path(), own);
    const std::string& left = compared.left.bytes();
    const std::string& right = compared.right.bytes();
    folder.write("left", left);
    folder.write("right", right);
    if (!compared.hasBase)
        return left == right ? std::vector<Piece>() : differences(changesBetween(git, "left", "right"));
    const std::string& base = compared.base.bytes();
    folder.write("base", base);
    const LineChanges onLeft = left == base ? LineChanges() : changesBetween(git, "base", "left");
    const LineChanges onRight = right == base   ? LineChanges()
                                : right == left ? onLeft
                                                : changesBetween(git, "base", "right");
    return piecesOf(compared, onLeft, onRight);
}

MergedSides textsOf(MergeInput input)
{
    MergedSides sides;
    sides.hasBase = input.base.has_value();
    std::string base = std::move(input.base).value_or(std::string());
    sides.addedToBase = endLastLine(base);
    sides.addedToLeft = endLastLine(input.left);
    sides.addedToRight = endLastLine(input.right);
    sides.base = MergeText(std::move(base));
    sides.left = MergeText(std::move(input.left));
    sides.right = MergeText(std::move(input.right));
    sides.lineEndsDiffer = sides.left.lineCount() > 0 && sides.right.lineCount() > 0 &&
                           isMostlyCrLf(sides.left) != isMostlyCrLf(sides.right);
    return sides;
}

MergedSides withoutCarriageReturns(MergedSides sides)
{
    for (MergeText* text : {&sides.base, &sides.left, &sides.right})
        *text = MergeText(withLineEnds(text->bytes(), LineEnds::lf));
    return sides;
}

} // namespace

MergedSides mergedSides(const RunContext& context, MergeInput input)
{
    const bool ignoresLineEnds = input.ignoresLineEnds;
    MergedSides sides = textsOf(std::move(input));
    std::vector<Piece> pieces;
    if (ignoresLineEnds) {
        pieces = compare(context, withoutCarriageReturns(sides));
        const LineEnds ends = isMostlyCrLf(sides.left) ? LineEnds::crLf : LineEnds::lf;
        for (MergeText* text : {&sides.base, &sides.right})
            *text = MergeText(withLineEnds(text->bytes(), ends));
        for (std::size_t* added : {&sides.addedToBase, &sides.addedToRight})
            *added = *added == 0 ? 0 : ends == LineEnds::crLf ? 2 : 1;
    } else {
        pieces = compare(context, sides);
    }
    sides.segments = segmentsOf(sides, pieces);
    sides.markerSize = markerSizeFor(sides);
    return sides;
}

} // namespace gitkit

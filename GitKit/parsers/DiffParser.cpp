// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/parsers/DiffParser.h"

#include "GitKit/Text.h"

#include <vector>

namespace gitkit {

namespace {

bool isFileHeader(std::string_view piece)
{
    return piece.starts_with("diff --git ") || piece.starts_with("diff --cc ") || piece.starts_with("diff --combined ");
}

/// Whether the lines of a diff are kept or only counted.
enum class Keeping { lines, count };

class Reader {
public:
    Reader(int maxLines, Keeping keeping) : maxLines_(static_cast<std::size_t>(maxLines)), keeping_(keeping) {}

    /// Returns false when no more lines are wanted.
    bool take(std::string_view piece, bool isLast)
    {
        if (diff_.lines.size() >= maxLines_) {
            diff_.isTruncated = true;
            return false;
        }
        if (isFileHeader(piece))
            startFile(piece);
        else if (piece.starts_with("@@"))
            startHunk(piece);
        else if (inHunk_)
            takeHunkLine(piece, isLast);
        else
            takeHeaderLine(piece);
        return true;
    }

    int count() const { return count_; }

    ParsedDiff finish()
    {
        if (files_ == 1 && isPlain_ && !diff_.isBinary) {
            // When no hunk follows the header, the line feed at the end of the text leaves an empty piece.
            if (header_.ends_with('\n'))
                header_.pop_back();
            diff_.patchHeader = std::move(header_);
        }
        if (files_ != 1 || (!isPlain_ && !diff_.isBinary)) {
            diff_.oldBlob.reset();
            diff_.newBlob.reset();
        }
        return std::move(diff_);
    }

private:
    void startFile(std::string_view piece)
    {
        ++files_;
        isPlain_ = files_ == 1 && piece.starts_with("diff --git ");
        inHunk_ = false;
        addToHeader(piece);
    }

    void startHunk(std::string_view piece)
    {
        const HunkStart start = HunkStart::of(piece);
        old_ = start.old;
        new_ = start.now;
        inHunk_ = true;
        add(DiffLine::Kind::hunk, piece, {}, {});
    }

    void takeHunkLine(std::string_view piece, bool isLast)
    {
        // Git can be told to print an empty context line without its blank. Only the last piece is no line.
        if (piece.empty()) {
            if (!isLast)
                add(DiffLine::Kind::context, piece, old_++, new_++);
            return;
        }
        const std::string_view text = piece.substr(1);
        switch (piece.front()) {
        case '-':
            ++diff_.deletions;
            add(DiffLine::Kind::deletion, text, old_++, {});
            break;
        case '+':
            ++diff_.additions;
            add(DiffLine::Kind::addition, text, {}, new_++);
            break;
        case ' ':
            add(DiffLine::Kind::context, text, old_++, new_++);
            break;
        case '\\':
            add(DiffLine::Kind::meta, piece, {}, {});
            break;
        default:
            break;
        }
    }

    void takeHeaderLine(std::string_view piece)
    {
        if (piece.starts_with("index "))
            takeBlobs(piece.substr(std::string_view("index ").size()));
        if (piece.starts_with("Binary files ") || piece.starts_with("GIT binary patch"))
            diff_.isBinary = true;
        addToHeader(piece);
    }

    /// Reads "old..new", and the mode if it stays the same; of a conflict "ours,theirs..result".
    void takeBlobs(std::string_view text)
    {
        const std::size_t dots = text.find("..");
        if (dots == std::string_view::npos || files_ != 1)
            return;
        if (!isPlain_) {
            const std::size_t comma = text.find(',');
            if (comma >= dots || text.find(',', comma + 1) < dots)
                return;
            diff_.oldBlob = text.substr(0, comma);
            diff_.newBlob = text.substr(comma + 1, dots - comma - 1);
            return;
        }
        diff_.oldBlob = text.substr(0, dots);
        diff_.newBlob = text.substr(dots + 2, text.find(' ', dots) - dots - 2);
    }

    void addToHeader(std::string_view piece)
    {
        if (hasHeader_)
            header_ += '\n';
        hasHeader_ = true;
        header_ += piece;
    }

    void add(DiffLine::Kind kind, std::string_view bytes, std::optional<int> oldNumber, std::optional<int> newNumber)
    {
        ++count_;
        if (keeping_ == Keeping::count)
            return;
        DiffLine line;
        line.id = static_cast<int>(diff_.lines.size());
        line.kind = kind;
        line.oldNumber = oldNumber;
        line.newNumber = newNumber;
        line.text = repairedUtf8(std::string(bytes));
        if (line.text != bytes)
            line.raw = std::string(bytes);
        diff_.lines.push_back(std::move(line));
    }

    std::size_t maxLines_;
    Keeping keeping_;
    int count_ = 0;
    ParsedDiff diff_;
    std::string header_;
    bool hasHeader_ = false;
    int files_ = 0;
    bool isPlain_ = true;
    bool inHunk_ = false;
    int old_ = 0;
    int new_ = 0;
};

void feed(Reader& reader, std::string_view text)
{
    while (true) {
        const std::size_t end = text.find('\n');
        const bool isLast = end == std::string_view::npos;
        if (!reader.take(text.substr(0, end), isLast) || isLast)
            return;
        text.remove_prefix(end + 1);
    }
}

} // namespace

ParsedDiff DiffParser::parse(std::string_view text, int maxLines)
{
    Reader reader(maxLines, Keeping::lines);
    feed(reader, text);
    return reader.finish();
}

int DiffParser::lineCount(std::string_view text)
{
    Reader reader(1, Keeping::count);
    feed(reader, text);
    return reader.count();
}

} // namespace gitkit

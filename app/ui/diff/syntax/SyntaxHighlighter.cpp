// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/syntax/SyntaxHighlighter.h"

#include "app/ui/diff/ShownLine.h"
#include "app/ui/diff/syntax/SyntaxLanguage.h"
#include "app/ui/diff/syntax/SyntaxWalk.h"

#include <srchilite/settings.h>

#include <algorithm>
#include <limits>
#include <mutex>
#include <stdexcept>

namespace plovik {

namespace {

using Clock = std::chrono::steady_clock;

/// Returns whether a file is text. Files that git takes for binary are not, nor is UTF-16.
bool isText(const std::string& bytes)
{
    return bytes.find('\0') == std::string::npos && !bytes.starts_with("\xFF\xFE") && !bytes.starts_with("\xFE\xFF");
}

bool isAscii(std::string_view text)
{
    return std::ranges::none_of(text, [](char byte) { return (static_cast<unsigned char>(byte) & 0x80U) != 0; });
}

/// Turns positions in the bytes of a UTF-8 line into units of UTF-16.
class UnitsOf {
public:
    explicit UnitsOf(const std::string& line) : line_(line) {}

    /// Returns the unit of a position. Positions must not decrease from call to call.
    std::uint16_t operator()(std::size_t position)
    {
        for (; at_ < std::min(position, line_.size()); ++at_) {
            const auto byte = static_cast<unsigned char>(line_[at_]);
            if ((byte & 0xC0U) != 0x80U)
                units_ = static_cast<std::uint16_t>(units_ + (byte >= 0xF0 ? 2 : 1));
        }
        return units_;
    }

private:
    const std::string& line_;
    std::size_t at_ = 0;
    std::uint16_t units_ = 0;
};

class Highlighter {
public:
    Highlighter(const SyntaxRequest& request, const std::stop_token& stop, const SyntaxGrammar& grammar)
        : request_(request), stop_(stop), deadline_(Clock::now() + request.budget),
          walk_(grammar, [this] { return isOver(); })
    {}

    void fill(FileSyntax& syntax)
    {
        for (int number = 1; number <= request_.file->count() && !isOver(); ++number)
            syntax.append(runsOf(request_.file->line(number)));
    }

private:
    bool isOver() const { return stop_.stop_requested() || Clock::now() > deadline_; }

    std::span<const SyntaxRun> runsOf(std::string_view line)
    {
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        const std::size_t most = std::min<std::size_t>(request_.longestLine, std::numeric_limits<std::uint16_t>::max());
        if (line.size() > most / 3) { // a byte that has to be repaired takes three
            if (line.size() > most || !isAscii(line))
                return {};
        }
        if (isAscii(line)) {
            text_ = line;
            return walk_.read(text_);
        }
        text_ = textOf(line).toStdString();
        units_ = walk_.read(text_);
        UnitsOf unitsOf(text_);
        for (SyntaxRun& run : units_) {
            const std::size_t end = std::size_t{run.first} + run.length;
            run.first = unitsOf(run.first);
            run.length = static_cast<std::uint16_t>(unitsOf(end) - run.first);
        }
        return units_;
    }

    const SyntaxRequest& request_;
    const std::stop_token& stop_;
    Clock::time_point deadline_;
    SyntaxWalk walk_;
    std::string text_;
    std::vector<SyntaxRun> units_;
};

std::string definitionsFolder(const SyntaxRequest& request)
{
    return request.definitions.empty() ? srchilite::Settings::getDefaultDataDir() : request.definitions;
}

} // namespace

std::shared_ptr<const FileSyntax> highlighted(const SyntaxRequest& request, const std::stop_token& stop)
{
    const auto syntax = std::make_shared<FileSyntax>(request.file);
    const std::string& bytes = request.file->bytes();
    if (bytes.empty() || bytes.size() > request.mostBytes || !isText(bytes))
        return syntax;
    const std::string language = syntaxLanguage(request.path, request.file->line(1));
    if (language.empty())
        return syntax;
    static std::mutex library;
    const std::scoped_lock lock(library);
    try {
        Highlighter(request, stop, SyntaxGrammar::named(language, definitionsFolder(request))).fill(*syntax);
    } catch (...) { // NOLINT(bugprone-empty-catch): it throws more than std::exception; what was read until then stands
    }
    return syntax;
}

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/EditorConfig.h"

#include "GitKit/RegularFile.h"
#include "GitKit/Text.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace gitkit {

namespace {

constexpr std::uintmax_t mostConfiguration = std::uintmax_t{64} * 1024;
constexpr std::size_t longestGlob = 1024;
/// A number in a path that is longer is taken for text.
constexpr std::size_t longestNumber = 9;
constexpr int widestTab = 32;

std::optional<int> wholeNumber(std::string_view text)
{
    if (text.starts_with('+'))
        text.remove_prefix(1);
    int value = 0;
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (failure != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return value;
}

/// A glob as a machine of steps, each of which leads to others. What has been tried is remembered, so that alternatives
/// in a row do not multiply.
class GlobMachine {
public:
    explicit GlobMachine(std::string_view glob) : glob_(glob)
    {
        end_ = add({});
        start_ = compile(0, glob.size(), end_);
    }

    bool matches(std::string_view path) const
    {
        std::vector<bool> tried(steps_.size() * (path.size() + 1));
        std::vector<std::pair<int, std::size_t>> open{{start_, 0}};
        const auto go = [&](int step, std::size_t at) {
            const std::size_t index = static_cast<std::size_t>(step) * (path.size() + 1) + at;
            if (!tried[index])
                open.emplace_back(step, at);
            tried[index] = true;
        };
        while (!open.empty()) {
            const auto [index, at] = open.back();
            open.pop_back();
            if (index == end_ && at == path.size())
                return true;
            const Step& step = steps_[static_cast<std::size_t>(index)];
            if (step.kind == Kind::number) {
                for (const std::size_t end : numberEnds(step, path, at))
                    go(step.next.front(), end);
            } else if (const std::size_t end = step.kind == Kind::fork ? at : taken(step, path, at);
                       end != std::string_view::npos)
            {
                for (const int next : step.next)
                    go(next, end);
            }
        }
        return false;
    }

private:
    enum class Kind { fork, text, anything, anyInName, set, number };
    struct Step {
        Kind kind = Kind::fork;
        std::vector<int> next = {};
        char text = 0;
        std::string_view set = {}; ///< between the brackets
        int low = 0, high = 0;
    };

    int add(Step step)
    {
        steps_.push_back(std::move(step));
        return static_cast<int>(steps_.size()) - 1;
    }
    /// Adds a step that can be repeated, also never, before `next`.
    int addRepeated(Kind kind, int next)
    {
        const int fork = add({Kind::fork, {next}});
        const int one = add({kind, {fork}});
        steps_[static_cast<std::size_t>(fork)].next.push_back(one);
        return fork;
    }

    /// Returns where the path goes on behind what a step takes; npos when it takes nothing there.
    static std::size_t taken(const Step& step, std::string_view path, std::size_t at)
    {
        if (at >= path.size())
            return std::string_view::npos;
        const char c = path[at];
        const bool takes = step.kind == Kind::text        ? c == step.text
                           : step.kind == Kind::anyInName ? c != '/'
                           : step.kind == Kind::set       ? c != '/' && isInSet(step.set, c)
                                                          : step.kind == Kind::anything;
        if (!takes)
            return std::string_view::npos;
        // Any character is all bytes of it.
        std::size_t end = at + 1;
        while (step.kind == Kind::anyInName && end < path.size() && (static_cast<unsigned char>(path[end]) >> 6U) == 2)
            ++end;
        return end;
    }

    static bool isInSet(std::string_view set, char c)
    {
        const bool isNegated = set.starts_with('!') || set.starts_with('^');
        if (isNegated)
            set.remove_prefix(1);
        bool isFound = false;
        for (std::size_t i = 0; i < set.size(); ++i) {
            if (set[i] == '\\' && i + 1 < set.size())
                ++i;
            const bool isRange = i + 2 < set.size() && set[i + 1] == '-';
            isFound = isFound || (isRange ? set[i] <= c && c <= set[i + 2] : set[i] == c);
            i += isRange ? 2 : 0;
        }
        return isFound != isNegated;
    }

    static std::vector<std::size_t> numberEnds(const Step& step, std::string_view path, std::size_t at)
    {
        std::vector<std::size_t> ends;
        std::size_t end = at < path.size() && (path[at] == '-' || path[at] == '+') ? at + 1 : at;
        for (const std::size_t first = end; end < path.size() && end < first + longestNumber; ++end) {
            if (path[end] < '0' || path[end] > '9')
                break;
            const std::optional<int> value = wholeNumber(path.substr(at, end + 1 - at));
            if (value && *value >= step.low && *value <= step.high)
                ends.push_back(end + 1);
        }
        return ends;
    }

    /// Returns the step that begins the part of the glob between two positions and goes on with `next`.
    int compile(std::size_t begin, std::size_t end, int next)
    {
        std::vector<std::pair<std::size_t, std::size_t>> pieces;
        for (std::size_t at = begin; at < end;) {
            const std::size_t behind = pieceEnd(at, end);
            pieces.emplace_back(at, behind);
            at = behind;
        }
        for (std::size_t i = pieces.size(); i-- > 0;)
            next = compilePiece(pieces[i].first, pieces[i].second, next);
        return next;
    }

    std::size_t pieceEnd(std::size_t at, std::size_t end) const
    {
        const std::string_view rest = glob_.substr(at, end - at);
        if (rest.starts_with("/**/"))
            return at + 4;
        if (rest.starts_with("**") || (rest.starts_with('\\') && rest.size() > 1))
            return at + 2;
        if (rest.starts_with('[')) {
            const std::size_t close = rest.find(']', 2);
            return close == std::string_view::npos || rest.substr(0, close).find('/') != std::string_view::npos
                       ? at + 1
                       : at + close + 1;
        }
        return rest.starts_with('{') ? braceEnd(at, end) : at + 1;
    }

    /// Returns one past the brace that closes the one at `at`, or past the opening one if it stays open.
    std::size_t braceEnd(std::size_t at, std::size_t end) const
    {
        int depth = 0;
        for (std::size_t i = at; i < end; ++i) {
            if (glob_[i] == '\\')
                ++i;
            else if (glob_[i] == '{')
                ++depth;
            else if (glob_[i] == '}' && --depth == 0)
                return i + 1;
        }
        return at + 1;
    }

    int compilePiece(std::size_t begin, std::size_t end, int next)
    {
        const std::string_view piece = glob_.substr(begin, end - begin);
        if (piece == "/**/") {
            const int slash = add({Kind::text, {next}, '/'});
            const int folders = addRepeated(Kind::anything, slash);
            return add({Kind::text, {next, folders}, '/'});
        }
        if (piece == "**")
            return addRepeated(Kind::anything, next);
        if (piece == "*")
            return addRepeated(Kind::anyInName, next);
        if (piece == "?")
            return add({Kind::anyInName, {next}});
        if (piece.size() == 2 && piece.front() == '\\')
            return add({Kind::text, {next}, piece.back()});
        if (piece.size() > 2 && piece.front() == '[')
            return add({Kind::set, {next}, 0, piece.substr(1, piece.size() - 2)});
        if (piece.size() > 1 && piece.front() == '{')
            return compileBraces(begin, end, next);
        return add({Kind::text, {next}, piece.front()});
    }

    int compileBraces(std::size_t begin, std::size_t end, int next)
    {
        const std::string_view inside = glob_.substr(begin + 1, end - begin - 2);
        if (const std::size_t dots = inside.find(".."); dots != std::string_view::npos) {
            const std::optional<int> low = wholeNumber(inside.substr(0, dots));
            const std::optional<int> high = wholeNumber(inside.substr(dots + 2));
            if (low && high)
                return add({Kind::number, {next}, 0, {}, *low, *high});
        }
        std::vector<std::size_t> commas;
        for (std::size_t at = begin + 1; at + 1 < end; at = glob_[at] == '{'    ? braceEnd(at, end - 1)
                                                            : glob_[at] == '\\' ? at + 2
                                                                                : at + 1)
        {
            if (glob_[at] == ',')
                commas.push_back(at);
        }
        // Braces around a single word stand for themselves.
        if (commas.empty()) {
            const int close = add({Kind::text, {next}, '}'});
            return add({Kind::text, {compile(begin + 1, end - 1, close)}, '{'});
        }
        commas.push_back(end - 1);
        Step fork;
        std::size_t from = begin + 1;
        for (const std::size_t comma : commas) {
            fork.next.push_back(compile(from, comma, next));
            from = comma + 1;
        }
        return add(std::move(fork));
    }

    std::string_view glob_;
    std::vector<Step> steps_;
    int start_ = 0;
    int end_ = 0;
};

std::string lowered(std::string_view text)
{
    std::string result(text);
    std::ranges::transform(result, result.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return result;
}

/// What a file ".editorconfig" says about a path below its folder. A value that is there but not usable unsets that of a
/// folder above.
struct Said {
    std::optional<std::string> tabWidth, indentSize;
    bool isRoot = false;
};

Said readConfiguration(std::string_view text, std::string_view path)
{
    Said said;
    bool isBeforeSections = true;
    bool isMeant = false;
    if (text.starts_with("\xEF\xBB\xBF"))
        text.remove_prefix(3);
    while (!text.empty()) {
        const std::size_t feed = std::min(text.find('\n'), text.size());
        const std::string_view line = trimmed(text.substr(0, feed));
        text.remove_prefix(std::min(feed + 1, text.size()));
        if (line.empty() || line.front() == '#' || line.front() == ';')
            continue;
        if (line.front() == '[' && line.back() == ']') {
            isBeforeSections = false;
            isMeant = editorGlobMatches(line.substr(1, line.size() - 2), path);
            continue;
        }
        const std::size_t equals = line.find('=');
        if (equals == std::string_view::npos)
            continue;
        const std::string key = lowered(trimmed(line.substr(0, equals)));
        const std::string value = lowered(trimmed(line.substr(equals + 1)));
        if (isBeforeSections && key == "root")
            said.isRoot = value == "true";
        else if (isMeant && key == "tab_width")
            said.tabWidth = value;
        else if (isMeant && key == "indent_size")
            said.indentSize = value;
    }
    return said;
}

} // namespace

bool editorGlobMatches(std::string_view glob, std::string_view path)
{
    if (glob.empty() || glob.size() > longestGlob)
        return false;
    // A glob without a slash is about the name, in whatever folder.
    if (glob.find('/') == std::string_view::npos)
        return GlobMachine(glob).matches(path.substr(path.rfind('/') + 1));
    if (glob.starts_with('/'))
        glob.remove_prefix(1);
    if (glob.starts_with("**/") && GlobMachine(glob.substr(3)).matches(path))
        return true;
    return GlobMachine(glob).matches(path);
}

std::optional<int> editorTabWidth(const std::filesystem::path& root, std::string_view path)
{
    std::optional<std::string> tabWidth;
    std::optional<std::string> indentSize;
    for (std::size_t slash = path.rfind('/');; slash = slash == 0 ? std::string_view::npos : path.rfind('/', slash - 1))
    {
        const std::string_view folder = slash == std::string_view::npos ? std::string_view() : path.substr(0, slash);
        const auto text = regularFileBytes(root / folder / ".editorconfig", mostConfiguration);
        if (text) {
            const Said said = readConfiguration(*text, folder.empty() ? path : path.substr(slash + 1));
            // The nearest file wins.
            tabWidth = tabWidth ? tabWidth : said.tabWidth;
            indentSize = indentSize ? indentSize : said.indentSize;
            if (said.isRoot)
                break;
        }
        if (slash == std::string_view::npos)
            break;
    }
    for (const auto& value : {tabWidth, indentSize}) {
        const std::optional<int> columns = value ? wholeNumber(*value) : std::nullopt;
        if (columns && *columns > 0)
            return std::min(*columns, widestTab);
    }
    return std::nullopt;
}

} // namespace gitkit

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/dialogs/RefNameRules.h"

#include "app/store/ShownText.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace plovik::refNames {

namespace {

using Refs = std::vector<gitkit::GitRef>;

/// What the sentences call the thing and its likes.
struct Kind {
    QString one;  ///< "branch"
    QString some; ///< "branches"
};

// Git writes a ref through a file that is named after it, with ".lock" at its end.
constexpr std::size_t longestPart = 255 - std::string_view(".lock").size();

bool isControl(char byte)
{
    const auto value = static_cast<unsigned char>(byte);
    return value < 0x20 || value == 0x7f;
}

/// What can follow "A branch name can't "; empty when nothing does.
QString breachOfBytes(std::string_view name)
{
    if (std::ranges::any_of(name, isControl))
        return u"contain control characters"_s;
    if (name.find(' ') != name.npos)
        return u"contain spaces"_s;
    if (const auto at = name.find_first_of("~^:?*[\\"); at != name.npos)
        return u"contain “%1”"_s.arg(QLatin1Char(name[at]));
    for (const std::string_view pair : {"..", "@{", "//"}) {
        if (name.find(pair) != name.npos)
            return u"contain “%1”"_s.arg(shownText(pair));
    }
    return {};
}

QString breachOfEnds(std::string_view name)
{
    for (const char first : {'-', '/'}) {
        if (name.starts_with(first))
            return u"begin with “%1”"_s.arg(QLatin1Char(first));
    }
    for (const char last : {'/', '.'}) {
        if (name.ends_with(last))
            return u"end with “%1”"_s.arg(QLatin1Char(last));
    }
    return {};
}

/// Each part between slashes is the name of a file.
QString breachOfParts(std::string_view name)
{
    for (std::size_t start = 0; start <= name.size();) {
        const std::size_t end = std::min(name.find('/', start), name.size());
        const std::string_view part = name.substr(start, end - start);
        const bool isWhole = part.size() == name.size();
        if (part.starts_with('.'))
            return isWhole ? u"begin with “.”"_s : u"have a part that begins with “.”"_s;
        if (part.ends_with(".lock"))
            return isWhole ? u"end with “.lock”"_s : u"have a part that ends with “.lock”"_s;
        if (part.size() > longestPart)
            return u"be that long"_s;
        start = end + 1;
    }
    return {};
}

QString breach(std::string_view name)
{
    for (const auto rule : {&breachOfBytes, &breachOfEnds, &breachOfParts}) {
        if (const QString found = rule(name); !found.isEmpty())
            return found;
    }
    return {};
}

bool isInside(std::string_view name, std::string_view folder)
{
    return name.size() > folder.size() && name.starts_with(folder) && name[folder.size()] == '/';
}

/// A ref is a file, so no other can have its name, nor lie below it.
QString clash(std::string_view name, const Refs& others, const Kind& kind)
{
    const auto is = [name](const gitkit::GitRef& other) { return other.name == name; };
    if (std::ranges::any_of(others, is))
        return u"There is already a %1 named “%2”."_s.arg(kind.one, shownText(name));
    for (const gitkit::GitRef& other : others) {
        if (isInside(other.name, name))
            return u"“%1” is a folder of other %2, such as “%3”."_s.arg(shownText(name), kind.some,
                                                                        shownText(other.name));
        if (isInside(name, other.name))
            return u"“%1” is a %2, so it can't be a folder of others."_s.arg(shownText(other.name), kind.one);
    }
    return {};
}

QString problem(std::string_view name, const Refs& others, const Kind& kind)
{
    if (name.empty())
        return {};
    if (name == "HEAD" || name == "@")
        return u"Git keeps the name “%1” for what is checked out."_s.arg(shownText(name));
    if (const QString found = breach(name); !found.isEmpty())
        return u"A %1 name can't %2."_s.arg(kind.one, found);
    return clash(name, others, kind);
}

} // namespace

QString branchProblem(std::string_view name, const Refs& branches)
{
    return problem(name, branches, {u"branch"_s, u"branches"_s});
}

QString tagProblem(std::string_view name, const Refs& tags) { return problem(name, tags, {u"tag"_s, u"tags"_s}); }

} // namespace plovik::refNames

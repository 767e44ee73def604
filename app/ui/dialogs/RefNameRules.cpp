// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/dialogs/RefNameRules.h"

#include "app/store/ShownText.h"

#include <QCoreApplication>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace plovik::refNames {

namespace {

using Refs = std::vector<gitkit::GitRef>;

enum class RefKind { branch, tag };

/// A sentence for each kind of name; %1 stands for what breaks the rule.
struct Sentence {
    const char* ofBranch;
    const char* ofTag;

    QString operator()(RefKind kind, const QString& what = {}) const
    {
        const QString said = QCoreApplication::translate("RefNameRules", kind == RefKind::branch ? ofBranch : ofTag);
        return what.isEmpty() ? said : said.arg(what);
    }
};

constexpr Sentence controlCharacters{
    QT_TRANSLATE_NOOP("RefNameRules", "A branch name can't contain control characters."),
    QT_TRANSLATE_NOOP("RefNameRules", "A tag name can't contain control characters.")};
constexpr Sentence spaces{QT_TRANSLATE_NOOP("RefNameRules", "A branch name can't contain spaces."),
                          QT_TRANSLATE_NOOP("RefNameRules", "A tag name can't contain spaces.")};
constexpr Sentence contains{QT_TRANSLATE_NOOP("RefNameRules", "A branch name can't contain “%1”."),
                            QT_TRANSLATE_NOOP("RefNameRules", "A tag name can't contain “%1”.")};
constexpr Sentence begins{QT_TRANSLATE_NOOP("RefNameRules", "A branch name can't begin with “%1”."),
                          QT_TRANSLATE_NOOP("RefNameRules", "A tag name can't begin with “%1”.")};
constexpr Sentence ends{QT_TRANSLATE_NOOP("RefNameRules", "A branch name can't end with “%1”."),
                        QT_TRANSLATE_NOOP("RefNameRules", "A tag name can't end with “%1”.")};
constexpr Sentence partBegins{
    QT_TRANSLATE_NOOP("RefNameRules", "A branch name can't have a part that begins with “%1”."),
    QT_TRANSLATE_NOOP("RefNameRules", "A tag name can't have a part that begins with “%1”.")};
constexpr Sentence partEnds{QT_TRANSLATE_NOOP("RefNameRules", "A branch name can't have a part that ends with “%1”."),
                            QT_TRANSLATE_NOOP("RefNameRules", "A tag name can't have a part that ends with “%1”.")};
constexpr Sentence tooLong{QT_TRANSLATE_NOOP("RefNameRules", "A branch name can't be that long."),
                           QT_TRANSLATE_NOOP("RefNameRules", "A tag name can't be that long.")};
constexpr Sentence isTaken{QT_TRANSLATE_NOOP("RefNameRules", "There is already a branch named “%1”."),
                           QT_TRANSLATE_NOOP("RefNameRules", "There is already a tag named “%1”.")};
constexpr Sentence isInside{QT_TRANSLATE_NOOP("RefNameRules", "“%1” is a branch, so it can't be a folder of others."),
                            QT_TRANSLATE_NOOP("RefNameRules", "“%1” is a tag, so it can't be a folder of others.")};
constexpr Sentence isFolder{QT_TRANSLATE_NOOP("RefNameRules", "“%1” is a folder of other branches, such as “%2”."),
                            QT_TRANSLATE_NOOP("RefNameRules", "“%1” is a folder of other tags, such as “%2”.")};

// Git writes a ref through a file that is named after it, with ".lock" at its end.
constexpr std::size_t longestPart = 255 - std::string_view(".lock").size();

bool isControl(char byte)
{
    const auto value = static_cast<unsigned char>(byte);
    return value < 0x20 || value == 0x7f;
}

QString breachOfBytes(std::string_view name, RefKind kind)
{
    if (std::ranges::any_of(name, isControl))
        return controlCharacters(kind);
    if (name.find(' ') != name.npos)
        return spaces(kind);
    if (const auto at = name.find_first_of("~^:?*[\\"); at != name.npos)
        return contains(kind, QChar::fromLatin1(name[at]));
    for (const std::string_view pair : {"..", "@{", "//"}) {
        if (name.find(pair) != name.npos)
            return contains(kind, shownText(pair));
    }
    return {};
}

QString breachOfEnds(std::string_view name, RefKind kind)
{
    for (const char first : {'-', '/'}) {
        if (name.starts_with(first))
            return begins(kind, QChar::fromLatin1(first));
    }
    for (const char last : {'/', '.'}) {
        if (name.ends_with(last))
            return ends(kind, QChar::fromLatin1(last));
    }
    return {};
}

/// Each part between slashes is the name of a file.
QString breachOfParts(std::string_view name, RefKind kind)
{
    for (std::size_t start = 0; start <= name.size();) {
        const std::size_t end = std::min(name.find('/', start), name.size());
        const std::string_view part = name.substr(start, end - start);
        const bool isWhole = part.size() == name.size();
        if (part.starts_with('.'))
            return (isWhole ? begins : partBegins)(kind, u"."_s);
        if (part.ends_with(".lock"))
            return (isWhole ? ends : partEnds)(kind, u".lock"_s);
        if (part.size() > longestPart)
            return tooLong(kind);
        start = end + 1;
    }
    return {};
}

/// Returns what in the name itself git would refuse; empty when nothing does.
QString breach(std::string_view name, RefKind kind)
{
    for (const auto rule : {&breachOfBytes, &breachOfEnds, &breachOfParts}) {
        if (const QString found = rule(name, kind); !found.isEmpty())
            return found;
    }
    return {};
}

bool liesIn(std::string_view name, std::string_view folder)
{
    return name.size() > folder.size() && name.starts_with(folder) && name[folder.size()] == '/';
}

/// A ref is a file, so no other can have its name, nor lie below it.
QString clash(std::string_view name, const Refs& others, RefKind kind)
{
    const auto is = [name](const gitkit::GitRef& other) { return other.name == name; };
    if (std::ranges::any_of(others, is))
        return isTaken(kind, shownText(name));
    for (const gitkit::GitRef& other : others) {
        if (liesIn(other.name, name))
            return isFolder(kind).arg(shownText(name), shownText(other.name));
        if (liesIn(name, other.name))
            return isInside(kind, shownText(other.name));
    }
    return {};
}

QString problem(std::string_view name, const Refs& others, RefKind kind)
{
    if (name.empty())
        return {};
    if (name == "HEAD" || name == "@")
        return QCoreApplication::translate("RefNameRules", "Git keeps the name “%1” for what is checked out.")
            .arg(shownText(name));
    const QString found = breach(name, kind);
    return found.isEmpty() ? clash(name, others, kind) : found;
}

} // namespace

QString branchProblem(std::string_view name, const Refs& branches) { return problem(name, branches, RefKind::branch); }

QString tagProblem(std::string_view name, const Refs& tags) { return problem(name, tags, RefKind::tag); }

QString remoteProblem(std::string_view name)
{
    return branchProblem(name, {}).isEmpty()
               ? QString()
               : QCoreApplication::translate("RefNameRules", "A remote can't be named %1.").arg(inQuotes(name));
}

} // namespace plovik::refNames

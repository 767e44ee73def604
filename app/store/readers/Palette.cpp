// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/readers/Palette.h"

#include "GitKit/repository/Findable.h"
#include "GitKit/repository/HistoryStream.h"
#include "GitKit/repository/RecentBranches.h"
#include "GitKit/runner/GitError.h"
#include "app/store/ShownText.h"

#include <QStringList>

#include <algorithm>
#include <map>
#include <optional>
#include <string_view>
#include <tuple>
#include <utility>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

using Kind = PaletteEntry::Kind;

struct RefFolder {
    std::string_view folder;
    Kind kind;
};
constexpr RefFolder refFolders[] = {
    {"refs/heads/", Kind::branch}, {"refs/remotes/", Kind::remoteBranch}, {"refs/tags/", Kind::tag}};

/// Returns the names with those first that were checked out, the latest first.
std::vector<std::string> latestFirst(const gitkit::GitRepository& repo, const PaletteRequest& request)
{
    std::vector<std::string> names =
        gitkit::refNames(repo, request.isOrderedByDate ? gitkit::RefOrder::newest : gitkit::RefOrder::name);
    std::map<std::string, int, std::less<>> places;
    if (!request.current.empty())
        places.emplace(request.current, 0);
    try {
        for (const std::string& name : gitkit::recentlyCheckedOut(repo))
            places.emplace("refs/heads/" + name, static_cast<int>(places.size()));
    } catch (const gitkit::GitError&) { // NOLINT(bugprone-empty-catch): nothing was committed yet
    }
    std::vector<std::pair<int, std::size_t>> order;
    for (std::size_t index = 0; index < names.size(); ++index) {
        const auto found = places.find(names[index]);
        order.emplace_back(found == places.end() ? static_cast<int>(places.size()) : found->second, index);
    }
    std::ranges::sort(order);
    std::vector<std::string> ordered;
    for (const auto& [place, index] : order)
        ordered.push_back(std::move(names[index]));
    return ordered;
}

void addRefs(PaletteEntries& entries, const std::vector<std::string>& names, const RefFolder& folder)
{
    for (const std::string& name : names) {
        if (name.starts_with(folder.folder))
            entries.push_back({.kind = folder.kind,
                               .name = name,
                               .title = shownText(std::string_view(name).substr(folder.folder.size()))});
    }
}

void addFiles(PaletteEntries& entries, const gitkit::GitRepository& repo, const gitkit::ChangedFiles& changed)
{
    const auto add = [&](const std::string& path) {
        entries.push_back({.kind = Kind::file, .name = path, .title = shownText(path)});
    };
    for (const gitkit::FileChange& file : changed) {
        if (file.isUntracked())
            add(file.path);
    }
    for (const std::string& path : gitkit::trackedPaths(repo))
        add(path);
}

void addCommits(PaletteEntries& entries, const gitkit::GitRepository& repo)
{
    gitkit::HistoryStream stream(repo, {.scope = gitkit::HistoryScope::all(), .mayLeaveOutTags = true});
    for (const gitkit::Commit& commit : stream.next(mostPaletteCommits))
        entries.push_back({.kind = Kind::commit,
                           .name = commit.hash,
                           .title = shownText(commit.subject),
                           .detail = shownText(commit.authorName) + u' ' + shownText(commit.shortHash())});
}

char16_t folded(QChar unit)
{
    const char16_t code = unit.unicode();
    if (code < 0x80)
        return code >= u'A' && code <= u'Z' ? static_cast<char16_t>(code + 0x20) : code;
    return unit.toCaseFolded().unicode();
}

bool beginsWord(QStringView text, qsizetype place)
{
    if (place == 0)
        return true;
    const QChar before = text[place - 1];
    return !before.isLetterOrNumber() || (before.isLower() && text[place].isUpper());
}

constexpr int costOfScattered = 100;

/// Returns how far the letters of `word`, which is folded, are scattered in `text` at their first occurrence in this
/// order, made as short as it can be from its end; nullopt if they do not occur. Of a sentence each run of letters must
/// begin a word, because almost all letters occur in it somewhere.
std::optional<int> costOfLetters(QStringView text, QStringView word, bool isSentence)
{
    qsizetype end = 0;
    qsizetype letters = 0;
    for (; end < text.size() && letters < word.size(); ++end)
        letters += folded(text[end]) == word[letters] ? 1 : 0;
    if (letters < word.size())
        return std::nullopt;
    int runs = 0;
    qsizetype last = end;
    qsizetype place = end;
    while (letters > 0) {
        --place;
        if (folded(text[place]) != word[letters - 1])
            continue;
        --letters;
        if (place + 1 != last && !beginsWord(text, last)) {
            if (isSentence)
                return std::nullopt;
            ++runs;
        }
        last = place;
    }
    if (isSentence && !beginsWord(text, last))
        return std::nullopt;
    runs += beginsWord(text, last) ? 0 : 1;
    return costOfScattered + static_cast<int>(4 * runs + std::min<qsizetype>(end - last, 200));
}

/// Returns where the part of a title begins by which it is known: a command without its menu, a file without its
/// folders.
qsizetype beginOfName(const PaletteEntry& entry)
{
    if (entry.kind == Kind::command) {
        const qsizetype colon = entry.title.indexOf(u": "_s);
        return colon < 0 ? 0 : colon + 2;
    }
    return entry.kind == Kind::commit ? 0 : entry.title.lastIndexOf(u'/') + 1;
}

/// The cost of a text that stands in the title as it is.
std::optional<int> costOfPart(const PaletteEntry& entry, QStringView text)
{
    const QStringView title(entry.title);
    const QStringView name = title.mid(beginOfName(entry));
    const auto isStart = [text](QStringView of) { return of.startsWith(text, Qt::CaseInsensitive); };
    if (isStart(title) || isStart(name))
        return title.size() == text.size() || name.size() == text.size() ? 0 : 10;
    const qsizetype place = title.indexOf(text, 0, Qt::CaseInsensitive);
    if (place < 0)
        return std::nullopt;
    return beginsWord(title, place) ? 20 : 30;
}

std::optional<int> costOf(const PaletteEntry& entry, const QString& typed, const QStringList& words)
{
    if (entry.kind == Kind::commit && typed.size() >= 4 && exactText(entry.name).startsWith(typed, Qt::CaseInsensitive))
        return 0;
    if (const auto whole = costOfPart(entry, typed))
        return whole;
    int cost = 0;
    for (const QString& word : words) {
        auto one = costOfPart(entry, word);
        if (!one)
            one = costOfLetters(entry.title, word, entry.kind == Kind::commit);
        if (!one)
            return std::nullopt;
        cost += 5 + *one;
    }
    return cost;
}

} // namespace

std::shared_ptr<const PaletteEntries> readPalette(const gitkit::GitRepository& repo, const PaletteRequest& request)
{
    auto entries = std::make_shared<PaletteEntries>(request.first);
    if (request.scope == PaletteRequest::Scope::none)
        return entries;
    const std::vector<std::string> names = latestFirst(repo, request);
    const bool hasEverything = request.scope == PaletteRequest::Scope::everything;
    const bool hasStates = hasEverything || request.scope == PaletteRequest::Scope::states;
    const bool hasLocal = request.scope != PaletteRequest::Scope::remoteBranches;
    for (const RefFolder& folder : refFolders) {
        if ((hasStates || folder.kind != Kind::tag) && (hasLocal || folder.kind != Kind::branch))
            addRefs(*entries, names, folder);
    }
    if (hasEverything)
        addFiles(*entries, repo, request.changed);
    if (hasStates)
        addCommits(*entries, repo);
    return entries;
}

PaletteFound findInPalette(const PaletteQuery& query, const std::stop_token& stop)
{
    const PaletteEntries& entries = *query.entries;
    const QString typed = query.typed.simplified().toCaseFolded();
    const QStringList words = typed.split(u' ', Qt::SkipEmptyParts);
    using Rank = std::tuple<int, bool, Kind, std::size_t>;
    std::vector<Rank> ranks;
    for (std::size_t place = 0; place < entries.size(); ++place) {
        if (place % 1024 == 0 && stop.stop_requested())
            return {};
        const PaletteEntry& entry = entries[place];
        if (words.empty())
            ranks.emplace_back(0, false, entry.kind, place);
        else if (const auto cost = costOf(entry, typed, words))
            ranks.emplace_back(*cost, !entry.isOffered, entry.kind, place);
    }
    PaletteFound found{.places = {}, .count = ranks.size()};
    const std::size_t shown = std::min(ranks.size(), mostPaletteRows);
    std::ranges::partial_sort(ranks, ranks.begin() + static_cast<std::ptrdiff_t>(shown));
    for (std::size_t row = 0; row < shown; ++row)
        found.places.push_back(std::get<std::size_t>(ranks[row]));
    return found;
}

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/undo/UndoRecord.h"

#include "GitKit/Text.h"
#include "GitKit/parsers/Fields.h"
#include "GitKit/repository/Blobs.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/undo/HelperRuns.h"

#include <charconv>
#include <set>

namespace gitkit {

namespace {

constexpr std::string_view version = "plovik undo 1";

/// The list is a sequence of fields, each ended by a zero byte: paths and names are any other bytes.
class Writer {
public:
    template <typename... Fields>
    void add(const Fields&... fields)
    {
        ((text_ += fields, text_ += '\0'), ...);
    }
    const std::string& text() const { return text_; }

private:
    std::string text_;
};

void addPoint(Writer& list, const char* moment, const UndoPoint& point)
{
    list.add("point", moment, point.head.branch, point.head.hash, point.filesTree, point.indexTree, point.overlay);
    for (const std::string& path : point.absent)
        list.add("absent", moment, path);
    for (const auto& [path, mode] : point.modes)
        list.add("mode", moment, path, std::to_string(mode));
}

std::string listOf(const UndoStep& step)
{
    Writer list;
    list.add(version, "step", step.id, step.kind, step.title, step.undoes);
    addPoint(list, "before", step.before);
    if (step.after)
        addPoint(list, "after", *step.after);
    for (const RefUpdate& ref : step.refs)
        list.add("ref", ref.name, ref.from.value_or(std::string()), ref.to.value_or(std::string()));
    for (const std::string& path : step.aside)
        list.add("aside", path);
    return list.text();
}

std::optional<std::string> some(std::string_view text)
{
    return text.empty() ? std::nullopt : std::optional(std::string(text));
}

/// Reads the list; any field that is missing makes it unreadable.
class Reader {
public:
    explicit Reader(std::string_view text) : fields_(text) {}

    std::optional<UndoStep> read()
    {
        if (next() != version)
            return std::nullopt;
        while (!fields_.atEnd() && isWhole_)
            readOne();
        return isWhole_ && !step_.id.empty() ? std::optional(std::move(step_)) : std::nullopt;
    }

private:
    std::string next()
    {
        const auto field = fields_.next();
        isWhole_ = isWhole_ && field;
        return std::string(field.value_or(std::string_view()));
    }

    UndoPoint& point(std::string_view moment)
    {
        if (moment == "before")
            return step_.before;
        if (!step_.after)
            step_.after.emplace();
        return *step_.after;
    }

    void readOne()
    {
        const std::string key = next();
        if (key == "step") {
            step_.id = next();
            step_.kind = next();
            step_.title = next();
            step_.undoes = next();
        } else if (key == "point") {
            UndoPoint& read = point(next());
            for (std::string* field :
                 {&read.head.branch, &read.head.hash, &read.filesTree, &read.indexTree, &read.overlay})
                *field = next();
        } else if (key == "absent") {
            UndoPoint& read = point(next());
            read.absent.push_back(next());
        } else if (key == "mode") {
            UndoPoint& read = point(next());
            std::string path = next();
            const std::string mode = next();
            unsigned bits = 0;
            std::from_chars(mode.data(), mode.data() + mode.size(), bits);
            read.modes.emplace_back(std::move(path), bits);
        } else if (key == "ref") {
            RefUpdate ref{.name = next(), .from = {}, .to = {}};
            ref.from = some(next());
            ref.to = some(next());
            step_.refs.push_back(std::move(ref));
        } else if (key == "aside") {
            step_.aside.push_back(next());
        } else {
            isWhole_ = false;
        }
    }

    NulFields fields_;
    bool isWhole_ = true;
    UndoStep step_;
};

std::string stored(const GitRepository& repo, std::vector<std::string> command, std::string input)
{
    RunOptions options = helperOptions();
    options.input = std::move(input);
    return std::string(withoutLineEnd(repo.runner().bytes(command, options)));
}

/// Returns the hashes that are commits, or lead to one, each once.
std::vector<std::string> commitsAmong(const GitRepository& repo, const std::set<std::string>& hashes)
{
    std::string names;
    for (const std::string& hash : hashes)
        names += hash + "^{commit}\n";
    RunOptions options = helperOptions();
    options.input = names;
    std::set<std::string> commits;
    const std::string answers = repo.runner().bytes({"cat-file", "--batch-check=%(objecttype) %(objectname)"}, options);
    Pieces lines(answers, '\n');
    while (const auto line = lines.next()) {
        if (line->starts_with("commit "))
            commits.insert(std::string(line->substr(7)));
    }
    return {commits.begin(), commits.end()};
}

/// Returns the entries of a tree with the bytes of annotated tags, which no commit can lead to.
std::string tagEntries(const GitRepository& repo, const UndoStep& step)
{
    std::string entries;
    for (const RefUpdate& ref : step.refs) {
        if (!ref.from || !ref.name.starts_with("refs/tags/"))
            continue;
        const GitOutput tag = repo.runner().output({"cat-file", "tag", *ref.from}, helperOptions());
        if (tag.status == 0) // not for one that is no object of its own
            entries += "100644 blob " +
                       stored(repo, {"hash-object", "-w", "--no-filters", "--stdin"}, tag.stdoutBytes) + "\ttag-" +
                       *ref.from + '\0';
    }
    return entries;
}

} // namespace

std::string writeUndoRecord(const GitRepository& repo, const UndoStep& step)
{
    std::string tree =
        "100644 blob " + stored(repo, {"hash-object", "-w", "--no-filters", "--stdin"}, listOf(step)) + "\tlist" + '\0';
    std::set<std::string> kept;
    const auto keepPoint = [&](const std::string& moment, const UndoPoint& point) {
        const auto addTree = [&](const char* name, const std::string& hash) {
            if (!hash.empty())
                tree += "040000 tree " + hash + '\t' + moment + '-' + name + '\0';
        };
        addTree("files", point.filesTree);
        addTree("index", point.indexTree);
        addTree("overlay", point.overlay);
        if (!point.head.hash.empty())
            kept.insert(point.head.hash);
    };
    keepPoint("before", step.before);
    if (step.after)
        keepPoint("after", *step.after);
    for (const RefUpdate& ref : step.refs) {
        if (ref.from)
            kept.insert(*ref.from);
        if (ref.to)
            kept.insert(*ref.to);
    }
    tree += tagEntries(repo, step);
    std::vector<std::string> commit{"commit-tree", stored(repo, {"mktree", "-z"}, tree)};
    if (!kept.empty()) {
        for (const std::string& parent : commitsAmong(repo, kept))
            commit.insert(commit.end(), {"-p", parent});
    }
    return stored(repo, commit, (step.after ? "a " : "b ") + step.id + '\n');
}

std::vector<std::optional<UndoStep>> readUndoRecords(const GitRepository& repo, const std::vector<std::string>& commits)
{
    constexpr std::size_t longestList = std::size_t{64} << 20;
    std::vector<std::string> names;
    for (const std::string& commit : commits)
        names.push_back(commit + ":list");
    std::vector<std::optional<UndoStep>> steps;
    for (const auto& list : blobs(repo, names, longestList)) {
        steps.push_back(list ? Reader(*list).read() : std::nullopt);
        if (steps.back())
            steps.back()->record = commits[steps.size() - 1];
    }
    return steps;
}

void restoreTags(const GitRepository& repo, const UndoStep& step)
{
    for (const RefUpdate& ref : step.refs) {
        if (!ref.from || !ref.name.starts_with("refs/tags/"))
            continue;
        const GitOutput tag =
            repo.runner().output({"cat-file", "blob", step.record + ":tag-" + *ref.from}, helperOptions());
        if (tag.status == 0)
            stored(repo, {"hash-object", "-t", "tag", "-w", "--stdin"}, tag.stdoutBytes);
    }
}

} // namespace gitkit

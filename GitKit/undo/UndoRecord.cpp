// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/undo/UndoRecord.h"

#include "GitKit/Text.h"
#include "GitKit/parsers/Fields.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/undo/HelperRuns.h"

#include <algorithm>
#include <charconv>
#include <set>

namespace gitkit {

namespace {

constexpr std::string_view version = "plovik undo 3";
constexpr std::string_view ending = "end";

/// The list has a line for each fact. Its fields are any bytes, so that all but plain ones are written as %XX.
class Writer {
public:
    template <typename... Fields>
    void add(std::string_view key, const Fields&... fields)
    {
        text_ += key;
        (addField(fields), ...);
        text_ += '\n';
    }
    const std::string& text() const { return text_; }

private:
    void addField(std::string_view field)
    {
        constexpr std::string_view digits = "0123456789abcdef";
        text_ += ' ';
        for (const char character : field) {
            const auto byte = static_cast<unsigned char>(character);
            if (byte > ' ' && byte < 0x7f && byte != '%') {
                text_ += character;
                continue;
            }
            text_ += {'%', digits[byte >> 4U], digits[byte & 15U]};
        }
    }

    std::string text_;
};

std::string plain(std::string_view field)
{
    std::string bytes;
    for (std::size_t index = 0; index < field.size(); ++index) {
        unsigned byte = 0;
        if (field[index] == '%' && index + 2 < field.size() &&
            std::from_chars(field.data() + index + 1, field.data() + index + 3, byte, 16).ec == std::errc())
        {
            bytes += static_cast<char>(byte);
            index += 2;
        } else {
            bytes += field[index];
        }
    }
    return bytes;
}

void addPoint(Writer& list, std::string_view moment, const UndoPoint& point)
{
    list.add("point", moment, point.head.branch, point.head.hash, point.filesTree, point.indexTree, point.overlay,
             point.operation);
    for (const std::string& entry : point.conflicts)
        list.add("conflict", moment, entry);
    for (const std::string& path : point.absent)
        list.add("absent", moment, path);
    for (const auto& [path, mode] : point.modes)
        list.add("mode", moment, path, std::to_string(mode));
    for (const auto& [name, hash] : point.operationRefs)
        list.add("mark", moment, name, hash);
    if (point.stashes) {
        list.add("stashes", moment);
        for (const KeptStash& stash : *point.stashes)
            list.add("stash", moment, stash.hash, stash.message);
    }
    if (point.settings) {
        list.add("settings", moment);
        for (const Setting& setting : *point.settings)
            list.add("setting", moment, setting.key, setting.value);
    }
}

std::string listOf(const UndoStep& step)
{
    Writer list;
    list.add(version);
    list.add("step", step.id, step.kind, step.title, step.undoes, step.target, step.kept);
    list.add("message", step.message);
    addPoint(list, "before", step.before);
    if (step.after)
        addPoint(list, "after", *step.after);
    for (const RefUpdate& ref : step.refs)
        list.add("ref", ref.name, ref.from.value_or(std::string()), ref.to.value_or(std::string()));
    for (const std::string& path : step.aside)
        list.add("aside", path);
    list.add(ending);
    return list.text();
}

std::optional<std::string> some(std::string text)
{
    return text.empty() ? std::nullopt : std::optional(std::move(text));
}

/// Reads one line of the list; fields that are missing are empty.
class Line {
public:
    explicit Line(std::string_view text) : rest_(text), key_(piece()) {}

    std::string_view key() const { return key_; }
    std::string next() { return plain(piece()); }

private:
    std::string_view piece()
    {
        const std::string_view found = rest_.substr(0, rest_.find(' '));
        rest_.remove_prefix(std::min(found.size() + 1, rest_.size()));
        return found;
    }

    std::string_view rest_;
    std::string_view key_;
};

void readPoint(Line& line, UndoPoint& point)
{
    if (line.key() == "point") {
        for (std::string* field : {&point.head.branch, &point.head.hash, &point.filesTree, &point.indexTree,
                                   &point.overlay, &point.operation})
            *field = line.next();
    } else if (line.key() == "conflict") {
        point.conflicts.push_back(line.next());
    } else if (line.key() == "absent") {
        point.absent.push_back(line.next());
    } else if (line.key() == "mode") {
        std::string path = line.next();
        const std::string mode = line.next();
        unsigned bits = 0;
        std::from_chars(mode.data(), mode.data() + mode.size(), bits);
        point.modes.emplace_back(std::move(path), bits);
    } else if (line.key() == "mark") {
        std::string name = line.next();
        point.operationRefs.emplace_back(std::move(name), line.next());
    } else if (line.key() == "stashes") {
        point.stashes.emplace();
    } else if (line.key() == "stash" && point.stashes) {
        std::string hash = line.next();
        point.stashes->push_back({std::move(hash), line.next()});
    } else if (line.key() == "settings") {
        point.settings.emplace();
    } else if (line.key() == "setting" && point.settings) {
        std::string key = line.next();
        point.settings->push_back({std::move(key), line.next()});
    }
}

/// Reads a line that is about no single moment. Returns whether it was one.
bool readFact(Line& line, UndoStep& step)
{
    if (line.key() == "step") {
        for (std::string* field : {&step.id, &step.kind, &step.title, &step.undoes, &step.target, &step.kept})
            *field = line.next();
    } else if (line.key() == "message") {
        step.message = line.next();
    } else if (line.key() == "ref") {
        RefUpdate ref{.name = line.next(), .from = {}, .to = {}};
        ref.from = some(line.next());
        ref.to = some(line.next());
        step.refs.push_back(std::move(ref));
    } else if (line.key() == "aside") {
        step.aside.push_back(line.next());
    } else {
        return false;
    }
    return true;
}

std::string stored(const GitRepository& repo, const std::vector<std::string>& command, std::string input)
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

/// The hashes that a record keeps.
struct Held {
    std::set<std::string> branches; ///< commits for sure
    std::set<std::string> others;   ///< possibly commits
    std::string entries;            ///< of the record's tree
};

void holdPoint(Held& held, const std::string& moment, const UndoPoint& point)
{
    const auto addTree = [&](const std::string& name, const std::string& hash) {
        held.entries += "040000 tree " + hash + '\t' + moment + '-' + name + '\0';
    };
    const std::pair<const char*, const std::string*> trees[] = {{"files", &point.filesTree},
                                                                {"index", &point.indexTree},
                                                                {"overlay", &point.overlay},
                                                                {"operation", &point.operation}};
    for (const auto& [name, hash] : trees) {
        if (!hash->empty())
            addTree(name, *hash);
    }
    for (const auto& [name, hash] : point.operationRefs) {
        if (name == "AUTO_MERGE")
            addTree("merge", hash);
        else
            held.others.insert(hash);
    }
    // Contents in conflict may be in no tree.
    std::set<std::string> contents;
    for (const std::string& entry : point.conflicts) {
        const std::size_t hash = entry.find(' ') + 1;
        if (!entry.starts_with("160000"))
            contents.insert(entry.substr(hash, entry.find(' ', hash) - hash));
    }
    for (const std::string& hash : contents)
        held.entries += "100644 blob " + hash + '\t' + moment + "-conflict-" + hash + '\0';
    if (!point.head.hash.empty())
        held.branches.insert(point.head.hash);
}

/// Returns the tree of a record. Most keep nothing but commits, and git knows the empty tree without having it.
std::string treeOf(const GitRepository& repo, const Held& held)
{
    constexpr std::string_view emptySha1 = "4b825dc642cb6eb9a060e54bf8d69288fbee4904";
    if (held.entries.empty() && !held.branches.empty() && held.branches.begin()->size() == emptySha1.size())
        return std::string(emptySha1);
    return stored(repo, {"mktree", "-z"}, held.entries);
}

/// Stashes that both moments have keep themselves.
void holdStashes(Held& held, const UndoStep& step)
{
    if (!step.after || !step.before.stashes || !step.after->stashes)
        return;
    const auto holdMissing = [&held](const std::vector<KeptStash>& from, const std::vector<KeptStash>& in) {
        for (const KeptStash& stash : from) {
            if (std::ranges::find(in, stash.hash, &KeptStash::hash) == in.end())
                held.branches.insert(stash.hash);
        }
    };
    holdMissing(*step.before.stashes, *step.after->stashes);
    holdMissing(*step.after->stashes, *step.before.stashes);
}

} // namespace

std::string writeUndoRecord(const GitRepository& repo, const UndoStep& step)
{
    Held held;
    holdPoint(held, "before", step.before);
    if (step.after)
        holdPoint(held, "after", *step.after);
    holdStashes(held, step);
    for (const RefUpdate& ref : step.refs) {
        std::set<std::string>& kind = ref.name.starts_with("refs/heads/") ? held.branches : held.others;
        for (const auto& hash : {ref.from, ref.to}) {
            if (hash)
                kind.insert(*hash);
        }
    }
    held.entries += tagEntries(repo, step);
    const std::string tree = treeOf(repo, held);
    if (!held.others.empty()) {
        for (std::string& commit : commitsAmong(repo, held.others))
            held.branches.insert(std::move(commit));
    }
    const auto command = [&tree](const auto& parents) {
        std::vector<std::string> arguments{"commit-tree", tree};
        for (const std::string& parent : parents)
            arguments.insert(arguments.end(), {"-p", parent});
        return arguments;
    };
    RunOptions options = helperOptions();
    options.input = listOf(step);
    const GitOutput written = repo.runner().output(command(held.branches), options);
    if (written.status == 0)
        return std::string(withoutLineEnd(written.stdoutBytes));
    // As in a repository that has lost a commit to which a branch points.
    return stored(repo, command(commitsAmong(repo, held.branches)), listOf(step));
}

std::optional<UndoStep> readUndoRecord(std::string_view message)
{
    Pieces lines(message, '\n');
    if (lines.next() != version)
        return std::nullopt;
    UndoStep step;
    while (const auto text = lines.next()) {
        Line line(*text);
        if (line.key() == ending)
            return step.id.empty() ? std::nullopt : std::optional(std::move(step));
        if (readFact(line, step))
            continue;
        const bool isBefore = line.next() == "before";
        if (!isBefore && !step.after)
            step.after.emplace();
        readPoint(line, isBefore ? step.before : *step.after);
    }
    return std::nullopt; // it was cut off
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

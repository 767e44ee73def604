// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/runner/GitEnvironment.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <mutex>
#include <unistd.h>
#include <utility>

namespace gitkit {

namespace {

using Action = VariablePin::Action;

constexpr std::string_view extraFolders = "/opt/homebrew/bin:/usr/local/bin:";
constexpr std::string_view ordinaryFolders = "/usr/bin:/bin";

constexpr auto variables = std::to_array<VariablePin>({
    // How git behaves without a person at a terminal.
    {"GIT_TERMINAL_PROMPT", Action::set, "0", "nobody can answer a question on a terminal"},
    {"GIT_OPTIONAL_LOCKS", Action::set, "0", "reading in the background must not make the user's own git fail"},
    {"GIT_EDITOR", Action::set, "true", "a prepared message is taken as it is; no editor opens"},
    {"GIT_SEQUENCE_EDITOR", Action::set, "true", "an interactive rebase takes its list as it is"},
    {"GIT_MERGE_AUTOEDIT", Action::set, "no", "a merge takes its prepared message"},

    // Messages are compared, so they must be in one language. Character handling stays the user's.
    {"LC_MESSAGES", Action::set, "C", "what git says is matched against English"},
    {"LC_ALL", Action::remove, "", "beats LC_MESSAGES"},
    {"LANGUAGE", Action::remove, "", "beats LC_MESSAGES"},

    // What ties git to another repository. An application that is started from a hook or an alias inherits these, and
    // its windows would show and change the wrong repository.
    {"GIT_DIR", Action::remove, "", "names another repository"},
    {"GIT_WORK_TREE", Action::remove, "", "names another working tree"},
    {"GIT_IMPLICIT_WORK_TREE", Action::remove, "", "denies the working tree"},
    {"GIT_COMMON_DIR", Action::remove, "", "names another repository"},
    {"GIT_INDEX_FILE", Action::remove, "", "names another index"},
    {"GIT_OBJECT_DIRECTORY", Action::remove, "", "names another object store"},
    {"GIT_ALTERNATE_OBJECT_DIRECTORIES", Action::remove, "", "adds another object store"},
    {"GIT_GRAFT_FILE", Action::remove, "", "rewrites parents"},
    {"GIT_SHALLOW_FILE", Action::remove, "", "cuts history"},
    {"GIT_NO_REPLACE_OBJECTS", Action::remove, "", "shows other objects than git shows in a terminal"},
    {"GIT_REPLACE_REF_BASE", Action::remove, "", "shows other objects than git shows in a terminal"},
    {"GIT_PREFIX", Action::remove, "", "shifts relative paths"},
    {"GIT_INTERNAL_SUPER_PREFIX", Action::remove, "", "shifts printed paths"},
    {"GIT_NAMESPACE", Action::remove, "", "hides the repository's refs behind a prefix"},
    {"GIT_QUARANTINE_PATH", Action::remove, "", "inherited from a hook, it refuses every change of a ref"},
    {"GIT_REFLOG_ACTION", Action::remove, "", "inherited from a hook, it falsifies reflog messages"},
    {"GIT_AUTHOR_", Action::removePrefix, "", "inherited from a rebase, it signs commits with somebody else's name"},
    {"GIT_COMMITTER_", Action::removePrefix, "", "inherited from a rebase, it signs commits with a wrong name or date"},
    {"GIT_CHERRY_PICK_HELP", Action::remove, "", "inherited from a rebase, it makes cherry-pick forget what it picks"},
    {"GITHEAD_", Action::removePrefix, "", "inherited from a merge, it names the sides of conflicts"},
    {"GIT_MERGE_VERBOSITY", Action::remove, "", "silences what a merge says of conflicts"},
    {"GIT_PUSH_OPTION_", Action::removePrefix, "", "inherited from a hook of a server"},
    {"GIT_REF_PARANOIA", Action::remove, "", "hides broken refs"},
    {"GIT_ATTR_SOURCE", Action::remove, "", "reads attributes from elsewhere"},
    {"GIT_CONFIG", Action::removePrefix, "", "settings of another command; the user's files are kept, see isKept"},

    // What changes how arguments are read or results printed.
    {"GIT_LITERAL_PATHSPECS", Action::remove, "", "the path search is a pattern"},
    {"GIT_GLOB_PATHSPECS", Action::remove, "", "changes what a pattern matches"},
    {"GIT_NOGLOB_PATHSPECS", Action::remove, "", "changes what a pattern matches"},
    {"GIT_ICASE_PATHSPECS", Action::remove, "", "a path is its bytes"},
    {"GIT_EXTERNAL_DIFF", Action::remove, "", "replaces the diff by a program's output"},
    {"GIT_DIFF_OPTS", Action::remove, "", "changes the lines of context"},
    {"GIT_TRACE", Action::removePrefix, "", "mixes tracing into what git says"},
    {"GIT_CURL_VERBOSE", Action::remove, "", "mixes tracing into what git says"},
});

/// Settings that do not change what is read here have no row: pagers, columns and blame marks are for terminals and
/// for formats that people read.
constexpr auto settings = std::to_array<ConfigurationPin>({
    // The shape of a diff.
    {"diff.noprefix", "false", "paths in a patch begin with a/ and b/"},
    {"diff.mnemonicPrefix", "false", "paths in a patch begin with a/ and b/"},
    {"diff.srcPrefix", "a/", "paths in a patch begin with a/ and b/"},
    {"diff.dstPrefix", "b/", "paths in a patch begin with a/ and b/"},
    {"diff.context", "3", "a patch without context lands anywhere"},
    {"diff.interHunkContext", "0", "hunks stay apart"},
    {"diff.orderFile", "/dev/null", "files come in git's order"},
    {"diff.algorithm", "default", "the same change is the same hunks for everybody"},
    {"diff.indentHeuristic", "true", "the same change is the same hunks for everybody"},
    {"diff.submodule", "short", "a submodule's change is a patch, not a log"},
    {"diff.ignoreSubmodules", "none", "changed submodules are listed"},
    {"diff.renames", "true", "renames are shown, copies are not guessed"},
    {"diff.suppressBlankEmpty", "false", "an empty line of context keeps its blank"},
    {"diff.autoRefreshIndex", "false", "a read never writes the index"},
    {"apply.ignoreWhitespace", "no", "a patch applies exactly or not at all"},

    // The shape of a status.
    {"status.renames", "true", "renames are shown, copies are not guessed"},
    {"status.showStash", "false", "stashes are listed elsewhere"},

    // The shape of a log, a stash list, a list of refs.
    {"log.showSignature", "false", "runs a program and prints what it says between the commits"},
    {"log.follow", "false", "a search by path is no file's history, and git refuses to mix them"},
    {"log.showRoot", "true", "a first commit lists its files"},
    {"log.mailmap", "true", "a search by author finds the same commits for everybody"},
    {"i18n.logOutputEncoding", "UTF-8", "all text is UTF-8"},
    {"i18n.commitEncoding", "UTF-8", "what is typed here is UTF-8"},
    {"core.warnAmbiguousRefs", "true", "a short name that means two refs is not used"},

    // What a command may take for granted.
    {"branch.autoSetupMerge", "false", "a new branch tracks nothing unless that is asked for"},
    {"commit.verbose", "false", "a message is not cut where a line looks like the start of the commit's diff"},
    {"merge.verbosity", "2", "a merge, pull or pick says what is in conflict"},
    {"push.default", "simple", "a push changes only the branch of the same name"},
    {"tag.gpgSign", "false", "a tag made here has no message that could be signed"},

    // Colours of single commands: "always" there beats color.ui.
    {"color.diff", "false", "no colours in what is parsed"},
    {"color.push", "false", "no colours in what is shown"},
    {"color.remote", "false", "no colours in what is shown"},
    {"color.transport", "false", "no colours in what is shown"},
    {"color.advice", "false", "no colours in what is shown"},
});

/// The user may choose configuration files. All other names that begin with GIT_CONFIG hold settings of one command.
bool isKept(std::string_view name)
{
    return name == "GIT_CONFIG_GLOBAL" || name == "GIT_CONFIG_SYSTEM" || name == "GIT_CONFIG_NOSYSTEM";
}

std::string_view nameOf(std::string_view entry) { return entry.substr(0, entry.find('=')); }

std::optional<std::string_view> valueOf(std::span<const std::string_view> entries, std::string_view name)
{
    for (const std::string_view entry : entries) {
        if (nameOf(entry) == name && entry.size() > name.size())
            return entry.substr(name.size() + 1);
    }
    return std::nullopt;
}

bool isReplaced(std::string_view name)
{
    return std::ranges::any_of(variables, [name](const VariablePin& pin) {
        return pin.action == Action::removePrefix ? name.starts_with(pin.name) && !isKept(name) : name == pin.name;
    });
}

std::string assignment(std::string_view name, std::string_view value)
{
    std::string result;
    result.reserve(name.size() + 1 + value.size());
    result += name;
    result += '=';
    result += value;
    return result;
}

/// The folders where git looks for programs. Only absolute ones: it would find the others in the repository.
std::string searchPath(std::optional<std::string_view> inherited)
{
    std::string path(extraFolders);
    std::string_view rest = inherited && !inherited->empty() ? *inherited : ordinaryFolders;
    while (!rest.empty()) {
        const std::string_view folder = rest.substr(0, rest.find(':'));
        rest.remove_prefix(std::min(folder.size() + 1, rest.size()));
        if (folder.starts_with('/'))
            path.append(folder).push_back(':');
    }
    path.pop_back();
    return path;
}

std::mutex& environmentLock()
{
    static std::mutex lock;
    return lock;
}

/// Guarded by environmentLock().
std::optional<std::string>& ownSearchPath()
{
    static std::optional<std::string> path;
    return path;
}

void set(std::vector<std::string>& entries, std::string_view name, std::string_view value)
{
    std::erase_if(entries, [name](const std::string& entry) { return nameOf(entry) == name; });
    entries.push_back(assignment(name, value));
}

void addConfiguration(std::vector<std::string>& entries, const std::optional<std::string>& fileSystemMonitor,
                      std::span<const std::pair<std::string, std::string>> more)
{
    std::size_t count = 0;
    const auto add = [&](std::string_view key, std::string_view value) {
        const std::string number = std::to_string(count++);
        entries.push_back(assignment("GIT_CONFIG_KEY_" + number, key));
        entries.push_back(assignment("GIT_CONFIG_VALUE_" + number, value));
    };
    for (const ConfigurationPin& pin : settings)
        add(pin.key, pin.value);
    add("core.fsmonitor", fileSystemMonitor.value_or("false"));
    for (const auto& [key, value] : more)
        add(key, value);
    entries.push_back(assignment("GIT_CONFIG_COUNT", std::to_string(count)));
}

} // namespace

std::span<const VariablePin> variablePins() { return variables; }

std::span<const ConfigurationPin> configurationPins() { return settings; }

std::vector<std::string> gitEnvironment(std::span<const std::string_view> inherited,
                                        std::span<const std::pair<std::string, std::string>> overrides,
                                        const std::optional<std::string>& fileSystemMonitor,
                                        std::span<const std::pair<std::string, std::string>> more)
{
    std::vector<std::string> entries;
    entries.reserve(inherited.size() + 2 * settings.size() + variables.size());
    for (const std::string_view entry : inherited) {
        if (!isReplaced(nameOf(entry)))
            entries.emplace_back(entry);
    }
    for (const VariablePin& pin : variables) {
        if (pin.action == Action::set)
            entries.push_back(assignment(pin.name, pin.value));
    }
    if (const auto all = valueOf(inherited, "LC_ALL"); all && !all->empty())
        set(entries, "LC_CTYPE", *all);
    set(entries, "PATH", searchPath(valueOf(inherited, "PATH")));
    addConfiguration(entries, fileSystemMonitor, more);
    for (const auto& [name, value] : overrides)
        set(entries, name, value);
    return entries;
}

std::vector<std::string> applicationEnvironment()
{
    const std::lock_guard guard(environmentLock());
    std::vector<std::string> entries;
    for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry)
        entries.emplace_back(*entry);
    if (ownSearchPath())
        set(entries, "PATH", *ownSearchPath());
    return entries;
}

void setSearchPath(std::string path)
{
    const std::lock_guard guard(environmentLock());
    ownSearchPath() = std::move(path);
}

void setApplicationVariable(const std::string& name, const std::string& value)
{
    const std::lock_guard guard(environmentLock());
    if (value.empty())
        ::unsetenv(name.c_str());
    else
        ::setenv(name.c_str(), value.c_str(), 1);
}

} // namespace gitkit

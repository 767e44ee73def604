// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/OwnCommand.h"

#include "GitKit/repository/GitRepository.h"

#include <algorithm>
#include <array>
#include <utility>

namespace gitkit {

namespace {

struct Placeholder {
    std::string_view word;
    std::string_view parameter;
};

constexpr std::array placeholders{Placeholder{"{commit}", "$PLOVIK_COMMIT"}, Placeholder{"{branch}", "$PLOVIK_BRANCH"},
                                  Placeholder{"{file}", "$PLOVIK_FILE"}, Placeholder{"{files}", "$@"}};

const Placeholder* placeholderAt(std::string_view rest)
{
    const auto found =
        std::ranges::find_if(placeholders, [rest](const auto& known) { return rest.starts_with(known.word); });
    return found == placeholders.end() ? nullptr : &*found;
}

bool names(const OwnCommand& command, std::string_view word) { return command.line.find(word) != std::string::npos; }

/// Returns the name without "refs/heads/" or the like, as people write it; a ref that is not the only one of its name keeps all.
std::string shortBranch(const GitRepository& repo, const std::string& ref)
{
    if (ref.empty())
        return {};
    const GitOutput name = repo.runner().output({"rev-parse", "--abbrev-ref=strict", ref});
    const std::string_view found = withoutLineEnd(name.stdoutBytes);
    return name.status == 0 && !found.empty() ? std::string(found) : ref;
}

} // namespace

std::string shellLine(std::string_view line)
{
    std::string shell;
    char quote = '\0';
    for (std::size_t place = 0; place < line.size();) {
        if (const Placeholder* const found = placeholderAt(line.substr(place))) {
            const std::string_view before = quote == '"' ? "" : quote == '\'' ? "'\"" : "\"";
            const std::string_view after = quote == '"' ? "" : quote == '\'' ? "\"'" : "\"";
            shell.append(before).append(found->parameter).append(after);
            place += found->word.size();
            continue;
        }
        const char letter = line[place];
        if (letter == '\\' && quote != '\'' && place + 1 < line.size())
            shell += line[place++];
        else if (letter == quote)
            quote = '\0';
        else if (quote == '\0' && (letter == '"' || letter == '\''))
            quote = letter;
        shell += line[place++];
    }
    return shell;
}

bool lacksWhatItNames(const OwnCommand& command)
{
    return (command.commit.empty() && names(command, "{commit}")) ||
           (command.branch.empty() && names(command, "{branch}")) ||
           (command.files.empty() && (names(command, "{file}") || names(command, "{files}")));
}

void runOwnCommand(const GitRepository& repo, const OwnCommand& command)
{
    RunOptions options;
    options.environment = {{"PLOVIK_COMMIT", command.commit},
                           {"PLOVIK_BRANCH", shortBranch(repo, command.branch)},
                           {"PLOVIK_FILE", command.files.empty() ? std::string() : command.files.front()}};
    // A name such as "*" means the file of this name, also for the git that the line runs.
    if (!command.files.empty())
        options.environment.emplace_back("GIT_LITERAL_PATHSPECS", "1");
    options.dropsMiddle = true;
    const std::string name(ownCommandName);
    // As an alias of git's it runs where git runs hooks. A function gets the files where the line wants them.
    options.settings = {"alias." + name + "=!run() {\n" + shellLine(command.line) + "\n}; run"};
    std::vector<std::string> arguments{name};
    arguments.insert(arguments.end(), command.files.begin(), command.files.end());
    repo.runner().bytes(arguments, options);
}

} // namespace gitkit

// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/OutsideTool.h"

#include "GitKit/Text.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/runner/GitError.h"

#include <map>
#include <string_view>

namespace gitkit {

namespace {

struct Named {
    std::string value;
    bool isOfRepository = false; ///< stands in the repository's own configuration
};

/// Returns the settings of tools by their keys, as they are in force.
std::map<std::string, Named> toolSettings(const GitRepository& repo)
{
    const GitOutput listed =
        repo.runner().output({"config", "--show-scope", "-z", "--get-regexp",
                              R"(^((diff|merge)\.(gui)?tool|(difftool|mergetool)\..*\.(cmd|path))$)"});
    std::map<std::string, Named> settings;
    const std::vector<std::string> fields = splitNul(listed.stdoutBytes);
    // A record is the scope, and then "KEY<line end>VALUE". The last one of a key counts.
    for (std::size_t index = 0; index + 1 < fields.size(); index += 2) {
        const std::string& entry = fields[index + 1];
        const std::size_t end = entry.find('\n');
        if (end != std::string::npos)
            settings[entry.substr(0, end)] = {entry.substr(end + 1),
                                              fields[index] == "local" || fields[index] == "worktree"};
    }
    return settings;
}

[[noreturn]] void refuse(const char* command, const std::string& sentence) { throw GitError(command, 1, sentence); }

} // namespace

std::vector<std::string> outsideToolCommand(const GitRepository& repo, OutsideTool tool, const std::string& path)
{
    const bool merges = tool == OutsideTool::conflict;
    const char* const command = merges ? "mergetool" : "difftool";
    const std::map<std::string, Named> settings = toolSettings(repo);
    std::string name;
    // In the order in which git looks for the tool of a graphical program.
    for (const char* key : {merges ? "merge.guitool" : "diff.guitool", merges ? "merge.tool" : "diff.tool",
                            "merge.guitool", "merge.tool"})
    {
        const auto found = settings.find(key);
        if (name.empty() && found != settings.end())
            name = found->second.value;
    }
    if (name.empty())
        refuse(command, std::string("No tool is set up for this. “git config --global ") +
                            (merges ? "merge.tool" : "diff.tool") + " NAME” chooses one.");
    if (name.starts_with("vimdiff") || name.starts_with("nvimdiff"))
        refuse(command, inQuotes(name) + " runs in a terminal.");
    for (const char* section : {"difftool.", "mergetool."}) {
        for (const char* key : {".cmd", ".path"}) {
            const auto found = settings.find(section + name + key);
            if (found != settings.end() && found->second.isOfRepository)
                refuse(command, "This repository's own configuration says what " + inQuotes(name) +
                                    " runs: " + found->second.value + ". It is not started from here.");
        }
    }
    std::vector<std::string> arguments{command, "--no-prompt", "--gui"};
    if (tool == OutsideTool::staged)
        arguments.emplace_back("--cached");
    arguments.insert(arguments.end(), {"--", path});
    return arguments;
}

} // namespace gitkit

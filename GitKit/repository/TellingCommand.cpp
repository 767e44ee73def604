// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/TellingCommand.h"

#include "GitKit/RegularFile.h"
#include "GitKit/Text.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/runner/GitError.h"
#include "GitKit/runner/GitMessages.h"
#include "GitKit/runner/Progress.h"

#include <chrono>
#include <filesystem>
#include <thread>
#include <utility>

namespace gitkit {

void waitForIndex(const GitRepository& repo)
{
    std::filesystem::path directory = repo.root() / ".git";
    // A file there names the folder: "gitdir: PATH".
    constexpr std::string_view start = "gitdir: ";
    if (const auto link = regularFileBytes(directory, 64 << 10); link && link->starts_with(start))
        directory = repo.root() / trimmed(std::string_view(*link).substr(start.size()), "\r\n");
    std::error_code ignored;
    for (std::chrono::milliseconds pause{30};
         pause.count() < 500 && std::filesystem::exists(directory / "index.lock", ignored); pause *= 2)
        std::this_thread::sleep_for(pause);
}

GitOutput runTelling(const GitRunner& runner, const std::vector<std::string>& arguments, const RunOptions& options)
{
    GitOutput output = runner.output(arguments, options);
    if (!output.signalled && output.status == 0)
        return output;
    const std::string outputText = output.text();
    const std::string errorText = withoutProgress(output.errorText());
    std::string message(trimmed(outputText));
    if (const std::string_view said = trimmed(errorText); !said.empty())
        message = message.empty() ? std::string(said) : message + "\n\n" + std::string(said);
    throw GitError(arguments.front(), output.status, std::move(message), errorKind(arguments.front(), output),
                   Speaker::git);
}

} // namespace gitkit

// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/TellingCommand.h"

#include "GitKit/Text.h"
#include "GitKit/runner/GitError.h"
#include "GitKit/runner/GitMessages.h"
#include "GitKit/runner/Progress.h"

#include <utility>

namespace gitkit {

void runTelling(const GitRunner& runner, const std::vector<std::string>& arguments, const RunOptions& options)
{
    const GitOutput output = runner.output(arguments, options);
    if (!output.signalled && output.status == 0)
        return;
    const std::string outputText = output.text();
    const std::string errorText = withoutProgress(output.errorText());
    std::string message(trimmed(outputText));
    if (const std::string_view said = trimmed(errorText); !said.empty())
        message = message.empty() ? std::string(said) : message + "\n\n" + std::string(said);
    throw GitError(arguments.front(), output.status, std::move(message), errorKind(arguments.front(), output));
}

} // namespace gitkit

// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/Divergence.h"

#include "GitKit/Fingerprint.h"
#include "GitKit/RegularFile.h"
#include "GitKit/parsers/Fields.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/RefArguments.h"
#include "GitKit/runner/GitError.h"

namespace gitkit {

Divergence countDivergence(const GitRepository& repo, const CommitPair& pair)
{
    const std::string between = exactArgument("rev-list", pair.ours) + "..." + exactArgument("rev-list", pair.theirs);
    const std::string output = repo.runner().bytes({"rev-list", "--left-right", "--count", between, "--"});
    const std::string_view line = std::string_view(output).substr(0, output.find('\n'));
    const auto numbers = splitFields<2>(line, '\t');
    if (!numbers)
        throw GitError("rev-list", 0, "The commits could not be counted.");
    return {readNumber(numbers->front()), readNumber(numbers->back())};
}

std::string historyCuts(const std::filesystem::path& commonDirectory, std::string_view replacements)
{
    const std::string shallow = regularFileBytes(commonDirectory / "shallow").value_or(std::string());
    const std::string grafts = regularFileBytes(commonDirectory / "info" / "grafts").value_or(std::string());
    if (shallow.empty() && grafts.empty() && replacements.empty())
        return {};
    return fingerprint(fingerprint(shallow) + fingerprint(grafts) + fingerprint(replacements));
}

} // namespace gitkit

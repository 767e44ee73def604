// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/shell/CommandLineSettings.h"

#include "app/platform/FileBrowser.h"
#include "app/store/ShownText.h"

#include <memory>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

using Offer = CommandLineState::Offer;

CommandLineState stateOf(const CommandLineTool& tool)
{
    if (!tool.bundled())
        return {.statement = u"Only an installed Plovik contains the command line tool."_s, .path = {}};
    if (const auto packaged = tool.packaged())
        return {.statement = u"Installed with Plovik, where terminals find it"_s, .path = *packaged};
    const auto link = tool.installation();
    if (!link)
        return {.statement = u"Not installed"_s, .path = {}, .offer = Offer::install};
    if (link->isCurrent)
        return {.statement = u"Installed at"_s, .path = link->path, .offer = Offer::reveal};
    return {.statement = shownText(CommandLineTool::staleDescription(*link)),
            .path = link->target.value_or(link->path),
            .offer = Offer::update};
}

/// The sentence that an installation failed with; empty when it did not.
std::string problemOfInstalling(const CommandLineTool& tool)
{
    try {
        tool.install();
        return {};
    } catch (const std::exception& failure) {
        return failure.what();
    }
}

} // namespace

CommandLineCommands commandLineCommands(const CommandLineTool& tool, Worker& worker)
{
    CommandLineCommands commands;
    commands.state = [tool] { return stateOf(tool); };
    commands.install = [tool, &worker](std::function<void(QString)> finished) {
        const auto problem = std::make_shared<std::string>();
        // It waits for a password: not where reads of git would wait behind it.
        worker.post(
            Worker::Lane::network, [tool, problem] { *problem = problemOfInstalling(tool); },
            [problem, finished = std::move(finished)] { finished(shownText(*problem)); });
    };
    commands.reveal = [](const std::filesystem::path& path, std::function<void(QString)> failed) {
        revealFiles({path}, [failed = std::move(failed)](const std::string& problem) { failed(shownText(problem)); });
    };
    return commands;
}

} // namespace plovik

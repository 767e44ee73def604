// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/shell/CommandLineSettings.h"

#include "app/platform/FileBrowser.h"
#include "app/store/Failure.h"
#include "app/store/ShownText.h"

#include <QCoreApplication>

#include <memory>
#include <system_error>

namespace plovik {

namespace {

using Offer = CommandLineState::Offer;

struct ToolText {
    Q_DECLARE_TR_FUNCTIONS(CommandLineSettings)
};

CommandLineState stateOf(const CommandLineTool& tool)
{
    if (!tool.bundled())
        return {.statement = ToolText::tr("Only an installed Plovik contains the command line tool."), .path = {}};
    if (const auto packaged = tool.packaged())
        return {.statement = ToolText::tr("Installed with Plovik, where terminals find it"), .path = *packaged};
    const auto link = tool.installation();
    if (!link)
        return {.statement = ToolText::tr("Not installed"), .path = {}, .offer = Offer::install};
    if (link->isCurrent)
        return {.statement = ToolText::tr("Installed at"), .path = link->path, .offer = Offer::reveal};
    return {.statement = CommandLineTool::staleDescription(*link),
            .path = link->target.value_or(link->path),
            .offer = Offer::update};
}

/// Installs the tool. Returns a sentence that says why this failed, or an empty text after success.
std::string installReportingProblem(const CommandLineTool& tool)
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
    commands.install = [tool, &worker](const std::function<void(QString)>& finished) {
        const auto problem = std::make_shared<std::string>();
        // The installation may wait for a password, so it must not block the threads that read from git.
        try {
            worker.post(
                Worker::Lane::network, [tool, problem] { *problem = installReportingProblem(tool); },
                [problem, finished] { finished(shownText(*problem)); });
        } catch (const std::system_error& failure) {
            finished(failureOf(failure).message);
        }
    };
    commands.reveal = [](const std::filesystem::path& path, std::function<void(QString)> failed) {
        revealFiles({path}, [failed = std::move(failed)](const std::string& problem) { failed(shownText(problem)); });
    };
    return commands;
}

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/actions/OwnCommands.h"

#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/OwnCommand.h"
#include "app/store/Changes.h"
#include "app/store/ShownText.h"
#include "app/store/Undoables.h"
#include "app/store/WindowState.h"

#include <QCoreApplication>

#include <algorithm>

namespace plovik::actions {

namespace {

struct OwnCommandTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::OwnCommands)
};

/// Shows the newest run of an own command in the log, if it has printed anything.
void showOutput(const Actors& actors)
{
    const CommandLog& log = actors.changes.commandLog();
    for (const CommandLog::Command& command : log.commands()) {
        if (std::ranges::find(command.arguments, gitkit::ownCommandName) == command.arguments.end())
            continue;
        const std::optional<CommandLog::Output> output = log.output(command.number);
        if (output && !output->beginning.empty()) {
            actors.window.showCommand(command.number);
            actors.window.showCommandLog(true);
        }
        return;
    }
}

void begin(Actors actors, const OwnCommandRun& run)
{
    actors.changes.run({.verb = Verb::runOwnCommand,
                        .title = OwnCommandTexts::tr("%1…").arg(run.title),
                        .operation = [command = run.command](
                                         const gitkit::GitRepository& repo) { gitkit::runOwnCommand(repo, command); },
                        .undo = undoable::ownCommand(run.title),
                        .succeeded = [actors] { showOutput(actors); }});
}

} // namespace

void runOwnCommand(Actors actors, const OwnCommandRun& run)
{
    if (gitkit::lacksWhatItNames(run.command)) {
        actors.window.tell(OwnCommandTexts::tr("%1 names what is not selected here, so it was not run.")
                               .arg(inQuotes(run.title.toStdString())));
        return;
    }
    if (!run.asksFirst) {
        begin(actors, run);
        return;
    }
    Confirmation question;
    question.title = OwnCommandTexts::tr("Run %1?").arg(inQuotes(run.title.toStdString()));
    question.message = OwnCommandTexts::tr("Undo covers what it does to branches, tags, stashes and the files that git "
                                           "knows, and nothing else.");
    question.detail = shownText(run.command.line);
    question.actionTitle = OwnCommandTexts::tr("Run");
    question.action = [actors, run] { begin(actors, run); };
    question.risk = Confirmation::Risk::none;
    actors.window.ask(std::move(question));
}

} // namespace plovik::actions

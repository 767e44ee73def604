// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/actions/Ignoring.h"

#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/Ignoring.h"
#include "app/store/Changes.h"
#include "app/store/ShownText.h"
#include "app/store/Undoables.h"
#include "app/store/WindowState.h"

#include <QCoreApplication>

#include <algorithm>
#include <memory>
#include <optional>

using namespace Qt::StringLiterals;

namespace plovik::actions {

namespace {

struct IgnoreTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::Ignoring)
};

constexpr int mostFiles = 500;

/// Returns the folder of a path, with a slash at its end; a folder itself. Empty at the top level.
std::string folderOf(const std::string& path) { return path.substr(0, path.rfind('/') + 1); }

std::optional<std::string> patternOf(const std::string& path, IgnoreWhat what)
{
    if (what == IgnoreWhat::ending)
        return gitkit::ignorePatternOfEnding(path);
    return gitkit::ignorePatternOf(what == IgnoreWhat::folder ? folderOf(path) : path);
}

QString shownPatterns(const std::vector<std::string>& patterns)
{
    constexpr std::size_t most = 3;
    QStringList names;
    for (std::size_t index = 0; index < std::min(patterns.size(), most); ++index)
        names.append(inQuotes(patterns[index]));
    return names.join(u", "_s) + (patterns.size() > most ? u"…"_s : QString());
}

QString titleOf(const Staging::Files& files, IgnoreWhat what, const std::vector<std::string>& patterns)
{
    const int count = static_cast<int>(patterns.size());
    if (what == IgnoreWhat::files)
        return files.size() == 1 ? IgnoreTexts::tr("This File")
                                 : IgnoreTexts::tr("These %Ln File(s)", nullptr, static_cast<int>(files.size()));
    if (what == IgnoreWhat::ending)
        return patterns.empty() ? IgnoreTexts::tr("All with This Ending")
                                : IgnoreTexts::tr("All %1").arg(shownPatterns(patterns));
    return count < 2 ? IgnoreTexts::tr("This Folder") : IgnoreTexts::tr("These %Ln Folder(s)", nullptr, count);
}

QString whyNot(const Staging::Files& files, IgnoreWhat what)
{
    if (files.size() > mostFiles)
        return IgnoreTexts::tr("Select no more than %Ln file(s).", nullptr, mostFiles);
    for (const gitkit::FileChange& file : files) {
        if (file.isConflicted)
            return IgnoreTexts::tr("Resolve the conflict first.");
        if (file.isSubmodule)
            return IgnoreTexts::tr("A submodule is part of this repository.");
        if (what == IgnoreWhat::folder && folderOf(file.path).empty())
            return IgnoreTexts::tr("%1 is in no folder.").arg(inQuotes(file.path));
        if (patternOf(file.path, what))
            continue;
        return what == IgnoreWhat::ending
                   ? IgnoreTexts::tr("%1 has no ending.").arg(inQuotes(file.path))
                   : IgnoreTexts::tr("%1 has a line end in its name, which no list of ignored files can say.")
                         .arg(inQuotes(file.path));
    }
    return {};
}

/// Tells which file is not ignored, and why.
void tellNotIgnored(WindowState& window, const std::vector<gitkit::NotIgnored>& left)
{
    if (left.empty())
        return;
    const gitkit::NotIgnored& first = left.front();
    const QString message =
        first.pattern.empty()
            ? IgnoreTexts::tr("Git does not ignore %1 all the same.").arg(inQuotes(first.path))
            : IgnoreTexts::tr("Git does not ignore %1 all the same: line %2 of %3 makes an exception, %4.")
                  .arg(inQuotes(first.path), shownText(first.line), inQuotes(first.source), inQuotes(first.pattern));
    window.report({.message = message});
}

void begin(Actors actors, const gitkit::IgnoreRequest& request)
{
    const auto left = std::make_shared<std::vector<gitkit::NotIgnored>>();
    actors.changes.run(
        {.verb = Verb::ignore,
         .operation = [request, left](const gitkit::GitRepository& repo) { *left = gitkit::ignore(repo, request); },
         .undo = undoable::ignore(request),
         .succeeded = [&window = actors.window, left] { tellNotIgnored(window, *left); }});
}

/// Asks what to do about files that git tracks, which it never ignores.
void askToStopTracking(Actors actors, gitkit::IgnoreRequest request, const std::vector<std::string>& tracked)
{
    Confirmation question;
    question.title =
        tracked.size() == 1
            ? IgnoreTexts::tr("%1 is in the repository already").arg(inQuotes(tracked.front()))
            : IgnoreTexts::tr("%Ln file(s) are in the repository already", nullptr, static_cast<int>(tracked.size()));
    question.message = IgnoreTexts::tr("Git ignores only what it does not track. If it stops tracking, the next commit "
                                       "removes what was committed, and the file stays on your disk.");
    question.detail = tracked.size() == 1 ? QString() : namesInLines(tracked);
    question.risk = Confirmation::Risk::none;
    question.choices = {{IgnoreTexts::tr("Write the Rule Only"), [actors, request] { begin(actors, request); }}};
    question.actionTitle = IgnoreTexts::tr("Stop Tracking");
    request.stopsTracking = true;
    question.action = [actors, request] { begin(actors, request); };
    actors.window.ask(std::move(question));
}

} // namespace

IgnoreChoice ignoreChoice(const Staging::Files& files, IgnoreWhat what)
{
    IgnoreChoice choice;
    choice.whyNot = whyNot(files, what);
    for (std::size_t index = 0; index < std::min<std::size_t>(files.size(), mostFiles); ++index) {
        const auto pattern = patternOf(files[index].path, what);
        if (pattern && std::ranges::find(choice.patterns, *pattern) == choice.patterns.end())
            choice.patterns.push_back(*pattern);
    }
    choice.title = titleOf(files, what, choice.patterns);
    choice.patternsInLines = namesInLines(choice.patterns);
    return choice;
}

void ignore(Actors actors, const Staging::Files& files, IgnoreWhat what, gitkit::IgnorePlace place)
{
    IgnoreChoice choice = ignoreChoice(files, what);
    if (!choice.whyNot.isEmpty())
        return;
    gitkit::IgnoreRequest request{.patterns = std::move(choice.patterns), .files = {}, .place = place};
    std::vector<std::string> tracked;
    for (const gitkit::FileChange& file : files) {
        request.files.push_back(file.path);
        if (!file.isUntracked())
            tracked.push_back(file.path);
    }
    if (tracked.empty())
        begin(actors, request);
    else
        askToStopTracking(actors, std::move(request), tracked);
}

} // namespace plovik::actions

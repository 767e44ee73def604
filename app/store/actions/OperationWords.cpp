// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/actions/OperationWords.h"

#include "app/store/ShownText.h"

#include <QCoreApplication>
#include <QStringList>

#include <algorithm>

namespace plovik::operationWords {

namespace {

constexpr const char* wordsContext = "plovik::Operation";
constexpr std::size_t mostNames = 3;

struct Words {
    Kind kind;
    const char* continuing;
    const char* ending;
    const char* abortQuestion;
    const char* cannotGoBack;
    const char* canEndHere;
    const char* undoneSteps;
    const char* continueTitle;
    const char* abortTitle;
    const char* continued;
    const char* aborted;
};

// clang-format off
constexpr Words table[] = {
    {Kind::merge,
     QT_TRANSLATE_NOOP("plovik::Operation", "Continuing merge…"),
     QT_TRANSLATE_NOOP("plovik::Operation", "Aborting merge…"),
     QT_TRANSLATE_NOOP("plovik::Operation", "Abort the merge?"),
     QT_TRANSLATE_NOOP("plovik::Operation", "Git cannot go back to where the merge began"),
     QT_TRANSLATE_NOOP("plovik::Operation", "The merge can be ended here instead. Every file stays as it is."),
     QT_TRANSLATE_N_NOOP("plovik::Operation", "The %Ln step(s) of the merge that were already done are undone."),
     QT_TRANSLATE_NOOP("plovik::Operation", "Continuing the Merge"),
     QT_TRANSLATE_NOOP("plovik::Operation", "Abort of the Merge"),
     QT_TRANSLATE_NOOP("plovik::Operation", "Continued the merge."),
     QT_TRANSLATE_NOOP("plovik::Operation", "Aborted the merge.")},
    {Kind::rebase,
     QT_TRANSLATE_NOOP("plovik::Operation", "Continuing rebase…"),
     QT_TRANSLATE_NOOP("plovik::Operation", "Aborting rebase…"),
     QT_TRANSLATE_NOOP("plovik::Operation", "Abort the rebase?"),
     QT_TRANSLATE_NOOP("plovik::Operation", "Git cannot go back to where the rebase began"),
     QT_TRANSLATE_NOOP("plovik::Operation", "The rebase can be ended here instead. Every file stays as it is."),
     QT_TRANSLATE_N_NOOP("plovik::Operation", "The %Ln step(s) of the rebase that were already done are undone."),
     QT_TRANSLATE_NOOP("plovik::Operation", "Continuing the Rebase"),
     QT_TRANSLATE_NOOP("plovik::Operation", "Abort of the Rebase"),
     QT_TRANSLATE_NOOP("plovik::Operation", "Continued the rebase."),
     QT_TRANSLATE_NOOP("plovik::Operation", "Aborted the rebase.")},
    {Kind::applyPatches,
     QT_TRANSLATE_NOOP("plovik::Operation", "Continuing patch series…"),
     QT_TRANSLATE_NOOP("plovik::Operation", "Aborting patch series…"),
     QT_TRANSLATE_NOOP("plovik::Operation", "Abort the patch series?"),
     QT_TRANSLATE_NOOP("plovik::Operation", "Git cannot go back to where the patch series began"),
     QT_TRANSLATE_NOOP("plovik::Operation", "The patch series can be ended here instead. Every file stays as it is."),
     QT_TRANSLATE_N_NOOP("plovik::Operation", "The %Ln step(s) of the patch series that were already done are undone."),
     QT_TRANSLATE_NOOP("plovik::Operation", "Continuing the Patch Series"),
     QT_TRANSLATE_NOOP("plovik::Operation", "Abort of the Patch Series"),
     QT_TRANSLATE_NOOP("plovik::Operation", "Continued the patch series."),
     QT_TRANSLATE_NOOP("plovik::Operation", "Aborted the patch series.")},
    {Kind::cherryPick,
     QT_TRANSLATE_NOOP("plovik::Operation", "Continuing cherry-pick…"),
     QT_TRANSLATE_NOOP("plovik::Operation", "Aborting cherry-pick…"),
     QT_TRANSLATE_NOOP("plovik::Operation", "Abort the cherry-pick?"),
     QT_TRANSLATE_NOOP("plovik::Operation", "Git cannot go back to where the cherry-pick began"),
     QT_TRANSLATE_NOOP("plovik::Operation", "The cherry-pick can be ended here instead. Every file stays as it is."),
     QT_TRANSLATE_N_NOOP("plovik::Operation", "The %Ln step(s) of the cherry-pick that were already done are undone."),
     QT_TRANSLATE_NOOP("plovik::Operation", "Continuing the Cherry-Pick"),
     QT_TRANSLATE_NOOP("plovik::Operation", "Abort of the Cherry-Pick"),
     QT_TRANSLATE_NOOP("plovik::Operation", "Continued the cherry-pick."),
     QT_TRANSLATE_NOOP("plovik::Operation", "Aborted the cherry-pick.")},
    {Kind::revert,
     QT_TRANSLATE_NOOP("plovik::Operation", "Continuing revert…"),
     QT_TRANSLATE_NOOP("plovik::Operation", "Aborting revert…"),
     QT_TRANSLATE_NOOP("plovik::Operation", "Abort the revert?"),
     QT_TRANSLATE_NOOP("plovik::Operation", "Git cannot go back to where the revert began"),
     QT_TRANSLATE_NOOP("plovik::Operation", "The revert can be ended here instead. Every file stays as it is."),
     QT_TRANSLATE_N_NOOP("plovik::Operation", "The %Ln step(s) of the revert that were already done are undone."),
     QT_TRANSLATE_NOOP("plovik::Operation", "Continuing the Revert"),
     QT_TRANSLATE_NOOP("plovik::Operation", "Abort of the Revert"),
     QT_TRANSLATE_NOOP("plovik::Operation", "Continued the revert."),
     QT_TRANSLATE_NOOP("plovik::Operation", "Aborted the revert.")},
    {Kind::bisect,
     QT_TRANSLATE_NOOP("plovik::Operation", "Continuing bisect…"),
     QT_TRANSLATE_NOOP("plovik::Operation", "Resetting bisect…"),
     QT_TRANSLATE_NOOP("plovik::Operation", "Abort the bisect?"),
     QT_TRANSLATE_NOOP("plovik::Operation", "Git cannot go back to where the bisect began"),
     QT_TRANSLATE_NOOP("plovik::Operation", "The bisect can be ended here instead. Every file stays as it is."),
     QT_TRANSLATE_N_NOOP("plovik::Operation", "The %Ln step(s) of the bisect that were already done are undone."),
     QT_TRANSLATE_NOOP("plovik::Operation", "Continuing the Bisect"),
     QT_TRANSLATE_NOOP("plovik::Operation", "Abort of the Bisect"),
     QT_TRANSLATE_NOOP("plovik::Operation", "Continued the bisect."),
     QT_TRANSLATE_NOOP("plovik::Operation", "Aborted the bisect.")},
};
// clang-format on

QString said(Kind kind, const char* Words::* sentence, int count = -1)
{
    const Words& words = *std::ranges::find(table, kind, &Words::kind);
    return QCoreApplication::translate(wordsContext, words.*sentence, nullptr, count);
}

} // namespace

QString continuing(Kind kind) { return said(kind, &Words::continuing); }

QString ending(Kind kind) { return said(kind, &Words::ending); }

QString abortQuestion(Kind kind) { return said(kind, &Words::abortQuestion); }

QString cannotGoBack(Kind kind) { return said(kind, &Words::cannotGoBack); }

QString canEndHere(Kind kind) { return said(kind, &Words::canEndHere); }

QString undoneSteps(Kind kind, int count) { return said(kind, &Words::undoneSteps, count); }

QString stepTitle(Kind kind, gitkit::OperationStep step)
{
    if (step == gitkit::OperationStep::skip)
        return QCoreApplication::translate(wordsContext, "Skip of a Commit");
    return said(kind, step == gitkit::OperationStep::proceed ? &Words::continueTitle : &Words::abortTitle);
}

QString stepDone(Kind kind, gitkit::OperationStep step)
{
    if (step == gitkit::OperationStep::skip)
        return QCoreApplication::translate(wordsContext, "Skipped the commit.");
    return said(kind, step == gitkit::OperationStep::proceed ? &Words::continued : &Words::aborted);
}

QString lostFiles(const std::vector<std::string>& paths)
{
    QStringList names;
    for (std::size_t index = 0; index < std::min(paths.size(), mostNames); ++index)
        names.append(inQuotes(paths[index]));
    const QString comma = QCoreApplication::translate("plovik::Operation", ", ", "between the names of files");
    if (paths.size() > mostNames)
        return QCoreApplication::translate(
                   "plovik::Operation",
                   "What was resolved or changed in %1 and %Ln more file(s) since git stopped is lost.", nullptr,
                   static_cast<int>(paths.size() - mostNames))
            .arg(names.join(comma));
    const QString last = names.takeLast();
    return names.isEmpty()
               ? QCoreApplication::translate("plovik::Operation",
                                             "What was resolved or changed in %1 since git stopped is lost.")
                     .arg(last)
               : QCoreApplication::translate("plovik::Operation",
                                             "What was resolved or changed in %1 and %2 since git stopped is lost.",
                                             "names of files")
                     .arg(names.join(comma), last);
}

} // namespace plovik::operationWords

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/DiscardQuestion.h"

#include "app/store/ShownText.h"

#include <QCoreApplication>
#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

using gitkit::DiscardExtent;
using gitkit::FileChange;

struct DiscardTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::Discard)
};

bool isNewFile(const FileChange& file) { return file.index == '?' || file.index == 'A'; }

/// Returns "3 changed lines and 1 staged one", or the one of the two that is there.
QString linesText(const DiscardExtent& counts)
{
    const int changed = counts.unstagedLines;
    const int staged = counts.stagedLines;
    if (changed == 0)
        return staged == 0 ? QString() : DiscardTexts::tr("%Ln staged line(s)", nullptr, staged);
    const QString lines = DiscardTexts::tr("%Ln changed line(s)", nullptr, changed);
    return staged == 0 ? lines
                       : DiscardTexts::tr("%1 and %Ln staged one(s)", "behind a number of lines", staged).arg(lines);
}

/// Returns "3 changed lines and 1 staged one; 2 new files".
QString countsText(const DiscardExtent& counts)
{
    QStringList parts;
    if (const QString lines = linesText(counts); !lines.isEmpty())
        parts.append(lines);
    const int binaryFiles = counts.binaryFiles;
    if (binaryFiles > 0)
        parts.append(DiscardTexts::tr("%Ln binary file(s)", nullptr, binaryFiles));
    const int newFiles = counts.newFiles;
    if (newFiles > 0)
        parts.append(DiscardTexts::tr("%Ln new file(s)", nullptr, newFiles));
    return parts.join(u"; "_s);
}

/// Whether Undo brings all of them back: folders with repositories of their own are in the Trash only.
bool isKept(const FileChange& file) { return !file.isSubmodule && !file.path.ends_with('/'); }

QString undoText(const std::vector<FileChange>& files)
{
    if (std::ranges::all_of(files, isKept))
        return DiscardTexts::tr("Undo brings everything back.");
    return std::ranges::none_of(files, isKept)
               ? DiscardTexts::tr("A folder with a repository of its own can come back from the Trash only.")
               : DiscardTexts::tr("Undo brings everything back, except folders with repositories of their own: these "
                                  "can come back from the Trash only.");
}

bool hasBothSides(const std::vector<FileChange>& files)
{
    return std::ranges::any_of(files, &FileChange::hasStaged) && std::ranges::any_of(files, &FileChange::hasUnstaged) &&
           std::ranges::none_of(files, &FileChange::isConflicted);
}

} // namespace

Confirmation discardQuestion(const std::vector<FileChange>& files, const std::optional<DiscardExtent>& counts)
{
    const auto count = static_cast<int>(files.size());
    Confirmation question;
    if (std::ranges::all_of(files, isNewFile)) {
        question.title = count == 1 ? DiscardTexts::tr("Delete %1?").arg(inQuotes(files.front().path))
                                    : DiscardTexts::tr("Delete %Ln file(s)?", nullptr, count);
        question.message = count == 1 ? DiscardTexts::tr("The file is moved to the Trash.")
                                      : DiscardTexts::tr("The files are moved to the Trash.");
        question.actionTitle = DiscardTexts::tr("Delete");
    } else {
        question.title = count == 1 ? DiscardTexts::tr("Discard changes in %1?").arg(inQuotes(files.front().path))
                                    : DiscardTexts::tr("Discard changes in %Ln file(s)?", nullptr, count);
        question.message = std::ranges::any_of(files, isNewFile)
                               ? DiscardTexts::tr("Local modifications are lost. New files are moved to the Trash.")
                               : DiscardTexts::tr("Local modifications are lost.");
        question.actionTitle = DiscardTexts::tr("Discard");
    }
    QStringList detail;
    if (const QString text = counts ? countsText(*counts) : QString(); !text.isEmpty())
        detail.append(text + u'.');
    detail.append(undoText(files));
    question.detail = detail.join(u'\n');
    // A question with a choice, and one about what undo does not bring back, is asked every time.
    if (hasBothSides(files))
        question.choices.push_back({DiscardTexts::tr("Discard Unstaged Only"), {}});
    else if (std::ranges::all_of(files, isKept))
        question.kind = u"discardFiles"_s;
    return question;
}

} // namespace plovik

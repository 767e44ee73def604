// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/DiffNotes.h"

#include "GitKit/PartialPatch.h"
#include "GitKit/records/QuotedName.h"
#include "app/store/RepositoryStore.h"
#include "app/store/ShownText.h"

#include <QCoreApplication>
#include <QLocale>

#include <algorithm>
#include <optional>
#include <string>
#include <utility>

namespace plovik {

namespace {

using namespace Qt::StringLiterals;
using gitkit::DiffLine;
using gitkit::PartialRefusal;

/// Returns the rest of the header line that begins with `start`.
std::optional<QString> headerValue(const gitkit::ParsedDiff& diff, std::string_view start)
{
    std::string_view header = diff.patchHeader ? std::string_view(*diff.patchHeader) : std::string_view();
    while (!header.empty()) {
        const std::string_view line = header.substr(0, header.find('\n'));
        if (line.starts_with(start))
            return shownText(gitkit::unquotedName(line.substr(start.size())));
        header.remove_prefix(std::min(header.size(), line.size() + 1));
    }
    return std::nullopt;
}

QString modeSentence(const QString& before, const QString& after, bool isAll)
{
    if (before == u"100644"_s && after == u"100755"_s)
        return (isAll ? QCoreApplication::translate(
                            "Diff", "The file was made executable (mode %1 → %2); its contents are the same.")
                      : QCoreApplication::translate(
                            "Diff", "The file was made executable (mode %1 → %2). The mode is staged with the whole "
                                    "file, never with single lines."))
            .arg(before, after);
    if (before == u"100755"_s && after == u"100644"_s)
        return (isAll
                    ? QCoreApplication::translate(
                          "Diff", "The file is no longer executable (mode %1 → %2); its contents are the same.")
                    : QCoreApplication::translate(
                          "Diff", "The file is no longer executable (mode %1 → %2). The mode is staged with the whole "
                                  "file, never with single lines."))
            .arg(before, after);
    return (isAll ? QCoreApplication::translate("Diff", "The file’s mode changed: %1 → %2; its contents are the same.")
                  : QCoreApplication::translate(
                        "Diff", "The file’s mode changed: %1 → %2. The mode is staged with the whole file, never with "
                                "single lines."))
        .arg(before, after);
}

/// Returns the first line of a kind.
std::optional<QString> firstText(const gitkit::ParsedDiff& diff, DiffLine::Kind kind)
{
    const auto found = std::ranges::find(diff.lines, kind, &DiffLine::kind);
    return found == diff.lines.end() ? std::nullopt : std::optional(shownText(found->text));
}

QString submoduleCommit(const QString& line)
{
    const QString commit = line.section(u' ', -1);
    const QString hash = commit.section(u'-', 0, 0).left(12);
    return commit.endsWith(u"-dirty"_s)
               ? QCoreApplication::translate("Diff", "%1 (with changes of its own that are not committed)").arg(hash)
               : hash;
}

QString submoduleSentence(const gitkit::ParsedDiff& diff)
{
    const auto before = firstText(diff, DiffLine::Kind::deletion);
    const auto after = firstText(diff, DiffLine::Kind::addition);
    if (before && after)
        return QCoreApplication::translate("Diff", "This submodule goes from commit %1 to commit %2.")
            .arg(submoduleCommit(*before), submoduleCommit(*after));
    if (after)
        return QCoreApplication::translate("Diff", "A submodule is added at commit %1.").arg(submoduleCommit(*after));
    return QCoreApplication::translate("Diff", "A submodule, at commit %1, is removed.")
        .arg(before ? submoduleCommit(*before) : QString());
}

QStringList submoduleCounts(const gitkit::SubmoduleLog& log)
{
    QStringList counts;
    if (log.ahead > 0)
        counts << QCoreApplication::translate("Diff", "%Ln commit(s) are added.", nullptr, log.ahead);
    if (log.behind > 0)
        counts << QCoreApplication::translate("Diff", "%Ln commit(s) are taken away.", nullptr, log.behind);
    return counts;
}

/// Returns the commits of a submodule, one a line, or why they are not known.
QStringList submoduleNotes(const gitkit::SubmoduleLog& log)
{
    using Missing = gitkit::SubmoduleLog::Missing;
    if (log.missing == Missing::repository)
        return {QCoreApplication::translate("Diff",
                                            "The submodule is not initialised here, so its commits are not known.")};
    if (log.missing == Missing::commits)
        return {QCoreApplication::translate(
            "Diff", "Not all of these commits are here. Updating the submodule fetches what is recorded.")};
    QStringList rows;
    for (const gitkit::SubmoduleLog::Row& row : log.rows)
        rows << (row.isRemoved ? u"− "_s : u"+ "_s) + shownText(gitkit::shortHash(row.hash)) + u"  "_s +
                    shownText(row.subject);
    if (const int more = log.ahead + log.behind - static_cast<int>(log.rows.size()); more > 0)
        rows << QCoreApplication::translate("Diff", "and %Ln other(s)", nullptr, more);
    QStringList notes{submoduleCounts(log).join(u' '), rows.join(u'\n')};
    notes.removeAll(QString());
    return notes;
}

QString emptySentence(const gitkit::ParsedDiff& diff)
{
    if (const auto from = headerValue(diff, "rename from "))
        return QCoreApplication::translate("Diff", "The file was renamed from “%1”; its contents are the same.")
            .arg(*from);
    if (const auto from = headerValue(diff, "copy from "))
        return QCoreApplication::translate("Diff", "The file was copied from “%1”; its contents are the same.")
            .arg(*from);
    if (headerValue(diff, "new file mode "))
        return QCoreApplication::translate("Diff", "The file is new and empty.");
    if (headerValue(diff, "deleted file mode "))
        return QCoreApplication::translate("Diff", "The file was empty and is deleted.");
    if (diff.whiteSpace == gitkit::WhiteSpace::ignored)
        return QCoreApplication::translate("Diff",
                                           "Besides white space, which is ignored, nothing changed in the file.");
    return QCoreApplication::translate("Diff", "Git finds no difference in the file’s contents.");
}

void addModeChange(DiffNotes& notes, const gitkit::ParsedDiff& diff)
{
    const auto before = headerValue(diff, "old mode ");
    const auto after = headerValue(diff, "new mode ");
    if (before && after)
        notes.above << modeSentence(*before, *after, diff.lines.empty() && !diff.isBinary);
}

void addRefusal(DiffNotes& notes, const gitkit::ParsedDiff& diff, const FileFacts& facts)
{
    switch (partialRefusal(diff)) {
    case PartialRefusal::symlink:
        notes.above << QCoreApplication::translate("Diff",
                                                   "This is a symbolic link; the line is the path that it points to.");
        notes.wholeOnly = QCoreApplication::translate("Diff", "A symbolic link is staged whole.");
        return;
    case PartialRefusal::submodule:
        notes.above << submoduleSentence(diff);
        if (facts.submodule)
            notes.above << submoduleNotes(*facts.submodule);
        notes.wholeOnly = QCoreApplication::translate("Diff", "A submodule is staged whole.");
        notes.hidesLines = true;
        return;
    case PartialRefusal::noPatch:
        notes.wholeOnly = QCoreApplication::translate("Diff", "These changes can only be staged with the whole file.");
        return;
    case PartialRefusal::whiteSpace:
        notes.wholeOnly = QCoreApplication::translate(
            "Diff", "While white space is ignored, changes are staged with the whole file.");
        return;
    case PartialRefusal::none:
        return;
    }
}

QString moreTitle(const gitkit::ParsedDiff& diff)
{
    if (!diff.extent || std::cmp_less_equal(diff.extent->lines, diff.lines.size()))
        return {};
    const QString lines = QLocale().toString(diff.extent->lines);
    return (diff.extent->isAll ? QCoreApplication::translate("Diff", "Show All %1 Lines")
                               : QCoreApplication::translate("Diff", "Show the First %1 Lines"))
        .arg(lines);
}

void addLength(DiffNotes& notes, const gitkit::ParsedDiff& diff)
{
    notes.wholeOnly =
        QCoreApplication::translate("Diff", "A diff this long cannot be staged by lines, only with the whole file.");
    if (!diff.isTruncated) {
        notes.above << notes.wholeOnly;
        return;
    }
    const QString lines = QLocale().toString(static_cast<qulonglong>(diff.lines.size()));
    notes.more = moreTitle(diff);
    notes.above << QCoreApplication::translate(
                       "Diff",
                       "Only the first %1 lines are shown. A diff this long cannot be staged by lines, only with "
                       "the whole file.")
                       .arg(lines);
    notes.below << QCoreApplication::translate("Diff", "The rest of this diff is not shown.");
}

QString binarySentence(const FileFacts& facts)
{
    if (facts.oldSize && facts.newSize)
        return QCoreApplication::translate("Diff", "Binary file, %1 → %2.")
            .arg(shownSize(*facts.oldSize), shownSize(*facts.newSize));
    if (facts.newSize)
        return QCoreApplication::translate("Diff", "New binary file, %1.").arg(shownSize(*facts.newSize));
    if (facts.oldSize)
        return QCoreApplication::translate("Diff", "Deleted binary file, %1.").arg(shownSize(*facts.oldSize));
    return QCoreApplication::translate("Diff", "This is a binary file. Its changes cannot be shown as text.");
}

/// Returns the pattern that means files like this one in .gitattributes.
QString attributePattern(std::string_view path)
{
    const QString name = shownText(path).section(u'/', -1);
    const qsizetype dot = name.lastIndexOf(u'.');
    return dot > 0 ? u'*' + name.mid(dot) : name;
}

void addEncoding(DiffNotes& notes, const WideEncoding& encoding, std::string_view path)
{
    notes.above
        << QCoreApplication::translate(
               "Diff",
               "This file is encoded in UTF-%1, which Git takes for binary, so that its changes cannot be shown "
               "as text.")
               .arg(encoding.bits);
    notes.above
        << QCoreApplication::translate(
               "Diff",
               "To see them, add the line “%1 text working-tree-encoding=%2” to .gitattributes and stage the file "
               "again. Git then keeps it as UTF-8; the file in the working copy stays as it is.")
               .arg(attributePattern(path), shownText(attributeName(encoding)));
}

void addBinary(DiffNotes& notes, const FileFacts& facts, std::string_view path)
{
    notes.wholeOnly = QCoreApplication::translate("Diff", "A binary file is staged whole.");
    if (facts.isBeingRead || facts.isPicture)
        return;
    if (facts.encoding)
        addEncoding(notes, *facts.encoding, path);
    notes.above << binarySentence(facts);
}

QString conflictSentence(const gitkit::ParsedDiff& diff, DiffState state)
{
    if (state == DiffState::onOneSide)
        return QCoreApplication::translate("Diff",
                                           "This file was changed on one side and deleted on the other. Keep or delete "
                                           "it, and stage the result.");
    if (state == DiffState::addedOnOneSide)
        return QCoreApplication::translate("Diff",
                                           "This file is there on one side only, because the other renamed or moved "
                                           "it. Keep or delete it, and stage the result.");
    if (state == DiffState::onNoSide)
        return QCoreApplication::translate("Diff",
                                           "Both sides deleted or renamed this file. Stage it to leave it deleted.");
    if (diff.isBinary)
        return QCoreApplication::translate(
            "Diff", "Both sides changed this binary file. Choose one side in the file’s menu, or "
                    "put the right file in its place, and stage the result.");
    if (diff.lines.empty())
        return QCoreApplication::translate("Diff",
                                           "Both sides changed this file, and it stands here as one of them has it. "
                                           "Stage it if that is right.");
    return QCoreApplication::translate("Diff",
                                       "This file has conflicts. Edit the marked parts, and stage the file once they "
                                       "are resolved.");
}

void addSizes(DiffNotes& notes, const FileFacts& facts, const ConflictNames& sides)
{
    if (facts.oldSize)
        notes.above
            << QCoreApplication::translate("Diff", "%1: %2", "side, size").arg(sides.ours, shownSize(*facts.oldSize));
    if (facts.newSize)
        notes.above
            << QCoreApplication::translate("Diff", "%1: %2", "side, size").arg(sides.theirs, shownSize(*facts.newSize));
}

} // namespace

QString shownSize(std::uint64_t bytes)
{
    const QLocale english(QLocale::English);
    QString size = english.formattedDataSize(static_cast<qint64>(bytes), 1, QLocale::DataSizeTraditionalFormat);
    return size.replace(u" kB"_s, u" KB"_s); // like the larger units
}

std::optional<SubmoduleCommits> submoduleCommits(const gitkit::ParsedDiff& diff)
{
    if (diff.lines.empty() || partialRefusal(diff) != gitkit::PartialRefusal::submodule)
        return std::nullopt;
    // "Subproject commit HASH", and "-dirty" where its own files have changed.
    const auto commit = [&diff](DiffLine::Kind kind) {
        const auto line = std::ranges::find(diff.lines, kind, &DiffLine::kind);
        const std::string text = line == diff.lines.end() ? std::string() : line->text;
        const std::string last = text.substr(text.rfind(' ') + 1);
        return last.substr(0, last.find('-'));
    };
    return SubmoduleCommits{commit(DiffLine::Kind::deletion), commit(DiffLine::Kind::addition)};
}

DiffNotes diffNotes(const gitkit::ParsedDiff& diff, DiffState state, const FileFacts& facts, std::string_view path,
                    const ConflictNames& sides)
{
    DiffNotes notes;
    if (state != DiffState::ordinary) {
        notes.wholeOnly =
            QCoreApplication::translate("Diff", "A file with conflicts is staged whole, once they are resolved.");
        notes.above << conflictSentence(diff, state);
        if (diff.isBinary && !facts.isPicture)
            addSizes(notes, facts, sides);
        if (diff.isLong())
            addLength(notes, diff);
        return notes;
    }
    addModeChange(notes, diff);
    if (diff.isBinary) {
        addBinary(notes, facts, path);
    } else if (diff.isLong()) {
        addLength(notes, diff);
    } else if (diff.lines.empty()) {
        if (notes.above.isEmpty() || headerValue(diff, "rename from "))
            notes.above << emptySentence(diff);
    } else {
        addRefusal(notes, diff, facts);
    }
    return notes;
}

DiffProblem fileIsGone()
{
    return {QCoreApplication::translate("Diff", "The File Is Gone"),
            QCoreApplication::translate("Diff",
                                        "It was deleted or moved meanwhile. The list follows at the next refresh.")};
}

DiffProblem diffProblem(const Failure& failure)
{
    if (failure.kind == gitkit::ErrorKind::fileGone)
        return fileIsGone();
    return {QCoreApplication::translate("Diff", "The Diff Could Not Be Read"), failure.message};
}

} // namespace plovik

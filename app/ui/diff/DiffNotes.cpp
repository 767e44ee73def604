// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/DiffNotes.h"

#include "GitKit/PartialPatch.h"
#include "GitKit/records/QuotedName.h"
#include "app/store/RepositoryStore.h"
#include "app/store/ShownText.h"

#include <QLocale>

#include <algorithm>
#include <optional>
#include <string>

namespace plovik {

namespace {

using namespace Qt::StringLiterals;
using gitkit::DiffLine;
using gitkit::PartialRefusal;

/// The rest of the header's line that begins with `start`.
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
    QString sentence = u"The file’s mode changed: %1 → %2"_s.arg(before, after);
    if (before == u"100644"_s && after == u"100755"_s)
        sentence = u"The file was made executable (mode %1 → %2)"_s.arg(before, after);
    else if (before == u"100755"_s && after == u"100644"_s)
        sentence = u"The file is no longer executable (mode %1 → %2)"_s.arg(before, after);
    return sentence + (isAll ? u"; its contents are the same."_s
                             : u". The mode is staged with the whole file, never with single lines."_s);
}

/// The first line of a kind, or nothing.
std::optional<QString> firstText(const gitkit::ParsedDiff& diff, DiffLine::Kind kind)
{
    const auto found = std::ranges::find(diff.lines, kind, &DiffLine::kind);
    return found == diff.lines.end() ? std::nullopt : std::optional(shownText(found->text));
}

QString submoduleCommit(const QString& line)
{
    const QString commit = line.section(u' ', -1);
    const QString hash = commit.section(u'-', 0, 0).left(12);
    return commit.endsWith(u"-dirty"_s) ? hash + u" (with changes of its own that are not committed)"_s : hash;
}

QString submoduleSentence(const gitkit::ParsedDiff& diff)
{
    const auto before = firstText(diff, DiffLine::Kind::deletion);
    const auto after = firstText(diff, DiffLine::Kind::addition);
    if (before && after)
        return u"This submodule goes from commit %1 to commit %2."_s.arg(submoduleCommit(*before),
                                                                         submoduleCommit(*after));
    if (after)
        return u"A submodule is added at commit %1."_s.arg(submoduleCommit(*after));
    return u"A submodule, at commit %1, is removed."_s.arg(before ? submoduleCommit(*before) : QString());
}

QString emptySentence(const gitkit::ParsedDiff& diff)
{
    if (const auto from = headerValue(diff, "rename from "))
        return u"The file was renamed from “%1”; its contents are the same."_s.arg(*from);
    if (const auto from = headerValue(diff, "copy from "))
        return u"The file was copied from “%1”; its contents are the same."_s.arg(*from);
    if (headerValue(diff, "new file mode "))
        return u"The file is new and empty."_s;
    if (headerValue(diff, "deleted file mode "))
        return u"The file was empty and is deleted."_s;
    if (diff.whiteSpace == gitkit::WhiteSpace::ignored)
        return u"Besides white space, which is ignored, nothing changed in the file."_s;
    return u"Git finds no difference in the file’s contents."_s;
}

void addModeChange(DiffNotes& notes, const gitkit::ParsedDiff& diff)
{
    const auto before = headerValue(diff, "old mode ");
    const auto after = headerValue(diff, "new mode ");
    if (before && after)
        notes.above << modeSentence(*before, *after, diff.lines.empty() && !diff.isBinary);
}

void addRefusal(DiffNotes& notes, const gitkit::ParsedDiff& diff)
{
    switch (partialRefusal(diff)) {
    case PartialRefusal::symlink:
        notes.above << u"This is a symbolic link; the line is the path that it points to."_s;
        notes.wholeOnly = u"A symbolic link is staged whole."_s;
        return;
    case PartialRefusal::submodule:
        notes.above << submoduleSentence(diff);
        notes.wholeOnly = u"A submodule is staged whole."_s;
        notes.hidesLines = true;
        return;
    case PartialRefusal::noPatch:
        notes.wholeOnly = u"These changes can only be staged with the whole file."_s;
        return;
    case PartialRefusal::whiteSpace:
        notes.wholeOnly = u"While white space is ignored, changes are staged with the whole file."_s;
        return;
    case PartialRefusal::none:
        return;
    }
}

void addTruncation(DiffNotes& notes, const gitkit::ParsedDiff& diff)
{
    const QString what = u"Only the first %1 lines are shown."_s.arg(
        QLocale(QLocale::English).toString(static_cast<qulonglong>(diff.lines.size())));
    notes.wholeOnly = u"A diff this long cannot be staged by lines, only with the whole file."_s;
    notes.above << what + u' ' + notes.wholeOnly;
    notes.below << u"The rest of this diff is not shown."_s;
}

QString binarySentence(const FileFacts& facts)
{
    if (facts.oldSize && facts.newSize)
        return u"Binary file, %1 → %2."_s.arg(shownSize(*facts.oldSize), shownSize(*facts.newSize));
    if (facts.newSize)
        return u"New binary file, %1."_s.arg(shownSize(*facts.newSize));
    if (facts.oldSize)
        return u"Deleted binary file, %1."_s.arg(shownSize(*facts.oldSize));
    return u"This is a binary file. Its changes cannot be shown as text."_s;
}

/// What a line of .gitattributes says to mean files like this one.
QString attributePattern(std::string_view path)
{
    const QString name = shownText(path).section(u'/', -1);
    const qsizetype dot = name.lastIndexOf(u'.');
    return dot > 0 ? u'*' + name.mid(dot) : name;
}

void addEncoding(DiffNotes& notes, const WideEncoding& encoding, std::string_view path)
{
    notes.above << u"This file is encoded in UTF-%1, which Git takes for binary, so that its changes cannot be shown "
                   u"as text."_s.arg(encoding.bits);
    notes.above << u"To see them, add the line “%1 text working-tree-encoding=%2” to .gitattributes and stage the file "
                   u"again. Git then keeps it as UTF-8; the file in the working copy stays as it is."_s.arg(
                       attributePattern(path), shownText(attributeName(encoding)));
}

void addBinary(DiffNotes& notes, const FileFacts& facts, std::string_view path)
{
    notes.wholeOnly = u"A binary file is staged whole."_s;
    if (facts.isBeingRead || facts.isPicture)
        return;
    if (facts.encoding)
        addEncoding(notes, *facts.encoding, path);
    notes.above << binarySentence(facts);
}

} // namespace

QString shownSize(std::uint64_t bytes)
{
    const QLocale english(QLocale::English);
    QString size = english.formattedDataSize(static_cast<qint64>(bytes), 1, QLocale::DataSizeTraditionalFormat);
    return size.replace(u" kB"_s, u" KB"_s); // as all larger ones are written
}

DiffNotes diffNotes(const gitkit::ParsedDiff& diff, DiffState state, const FileFacts& facts, std::string_view path)
{
    DiffNotes notes;
    if (state == DiffState::conflicted) {
        notes.wholeOnly = u"A file with conflicts is staged whole, once they are resolved."_s;
        notes.above << (diff.lines.empty()
                            ? u"This file was changed on one side and deleted on the other. Keep or delete it, and "
                              u"stage the result."_s
                            : u"This file has conflicts. Edit the marked parts, and stage the file once they are "
                              u"resolved."_s);
        if (diff.isTruncated)
            addTruncation(notes, diff);
        return notes;
    }
    addModeChange(notes, diff);
    if (diff.isBinary) {
        addBinary(notes, facts, path);
    } else if (diff.isTruncated) {
        addTruncation(notes, diff);
    } else if (diff.lines.empty()) {
        if (notes.above.isEmpty() || headerValue(diff, "rename from "))
            notes.above << emptySentence(diff);
    } else {
        addRefusal(notes, diff);
    }
    return notes;
}

DiffProblem fileIsGone()
{
    return {u"The File Is Gone"_s, u"It was deleted or moved meanwhile. The list follows at the next refresh."_s};
}

DiffProblem diffProblem(const QString& message)
{
    if (message.contains(u"No such file or directory"_s))
        return fileIsGone();
    return {u"The Diff Could Not Be Read"_s, message};
}

} // namespace plovik

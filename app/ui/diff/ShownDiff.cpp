// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/ShownDiff.h"

#include <QCoreApplication>

#include <algorithm>
#include <utility>

namespace plovik {

using namespace Qt::StringLiterals;

namespace {

/// Returns which commit of a split a change goes into.
QString commitOfSplit(const DiffContent& content, int change)
{
    return content.inFirst.contains(change) ? QCoreApplication::translate("Diff", "first commit")
                                            : QCoreApplication::translate("Diff", "second commit");
}

} // namespace

QString movedText(const DiffDocument& document, int row)
{
    const int other = document.movedRow(row);
    if (other < 0)
        return {};
    const DiffDocument::Row& there = document.row(other);
    return there.kind == DiffDocument::Kind::deletion
               ? QCoreApplication::translate("Diff", "Moved from line %1").arg(there.oldNumber.value_or(0))
               : QCoreApplication::translate("Diff", "Moved to line %1").arg(there.newNumber.value_or(0));
}

void ShownDiff::setContent(DiffContent content)
{
    content_ = std::move(content);
    notes_ = diffNotes(content_.diff, content_.state, content_.facts, content_.path, content_.sides);
    ++revision_;
}

void ShownDiff::makeRows()
{
    document_ = DiffDocument(notes_.hidesLines ? gitkit::ParsedDiff() : content_.diff, tabWidth_);
    lines_ = DiffLines(document_, layout_);
    texts_ = {};
    ++revision_;
}

void ShownDiff::setLayout(DiffLayout layout)
{
    layout_ = layout;
    if (hasLayout(layout))
        return;
    lines_ = DiffLines(document_, layout_);
    ++revision_;
}

bool ShownDiff::hasLayout(DiffLayout layout) const
{
    return lines_.areSideBySide() == (document_.layoutFor(layout) == DiffLayout::sideBySide);
}

void ShownDiff::setGaps(DiffGaps gaps)
{
    // Hunks that can be staged keep all of their headers, because their buttons stand there.
    const bool isRead = content_.use == DiffContent::Use::read;
    document_.setGaps(std::move(gaps), isRead ? DiffDocument::Headers::atGaps : DiffDocument::Headers::all);
    lines_ = DiffLines(document_, layout_);
    ++revision_;
}

void ShownDiff::setTabWidth(int columns)
{
    tabWidth_ = columns;
    document_.setTabWidth(columns);
    ++revision_;
}

std::optional<DiffGaps> ShownDiff::gapsWithTexts(DiffTexts texts)
{
    if (texts == texts_)
        return std::nullopt;
    texts_ = std::move(texts);
    DiffGaps gaps = DiffGaps::of(document_.diff(), texts_);
    if (!gaps.areKnown() && !document_.gaps().areKnown())
        return std::nullopt;
    gaps.showAs(document_.gaps());
    if (showsWholeFile_)
        gaps.showAll();
    return gaps;
}

std::optional<DiffGaps> ShownDiff::gapsWithWholeFile(bool whole)
{
    showsWholeFile_ = whole;
    DiffGaps gaps = document_.gaps();
    if (whole ? !gaps.hidesLines() : !gaps.showsLines())
        return std::nullopt;
    if (whole)
        gaps.showAll();
    else
        gaps.showNone();
    return gaps;
}

std::optional<DiffGaps> ShownDiff::gapsWithMore(int hunk, GapSide side) const
{
    const int index = openGap(hunk, side);
    if (index < 0)
        return std::nullopt;
    DiffGaps gaps = document_.gaps();
    gaps.showMore(index, side == GapSide::above ? DiffGaps::End::bottom : DiffGaps::End::top, DiffGaps::step);
    return gaps;
}

/// Returns the nearest gap above or below a hunk that still hides lines, or -1. Hunk -1 stands for the start of the
/// file.
int ShownDiff::openGap(int hunk, GapSide side) const
{
    const DiffGaps& gaps = document_.gaps();
    const int step = side == GapSide::above ? -1 : 1;
    int index = side == GapSide::above ? hunk : hunk + 1;
    while (hunk >= 0 && index >= 0 && index < gaps.count() && gaps.gap(index).rest() == 0)
        index += step;
    return hunk < -1 || index < 0 || index >= gaps.count() ? -1 : index;
}

QString ShownDiff::plainText() const
{
    QStringList lines = notes_.above;
    for (int row = 0; row < document_.rowCount(); ++row) {
        lines << document_.row(row).sign + document_.text(row);
        if (document_.movedRow(row) >= 0)
            lines.back() += u" ("_s + movedText(document_, row) + u')';
        if (content_.use == DiffContent::Use::split && document_.row(row).isChange())
            lines.back() += u" ("_s + commitOfSplit(content_, document_.row(row).id) + u')';
    }
    lines << notes_.below;
    return lines.join(u'\n');
}

std::vector<int> ShownDiff::rowsOf(const DiffSelection& selection) const
{
    std::vector<int> rows;
    const DiffSelection::Lines lines = selection.lines();
    for (int line = lines.first; line < std::min(lines.end, lines_.count()); ++line) {
        const int before = lines_.rowAt(line, DiffSide::before);
        const int after = lines_.rowAt(line, DiffSide::after);
        for (const int row : {before, after == before ? -1 : after}) {
            if (row >= 0 && selection.holds(line, document_.row(row).side))
                rows.push_back(row);
        }
    }
    std::ranges::sort(rows);
    return rows;
}

std::set<int> ShownDiff::changesOf(const DiffSelection& selection) const
{
    std::set<int> ids;
    for (const int row : rowsOf(selection)) {
        if (document_.row(row).isChange())
            ids.insert(document_.row(row).id);
    }
    return ids;
}

QString ShownDiff::textOf(const DiffSelection& selection) const
{
    QStringList lines;
    for (const int row : rowsOf(selection)) {
        if (!document_.row(row).isCode())
            continue;
        QString text = document_.text(row);
        if (selection.hasText()) {
            const int line = lines_.lineOf(row);
            if (line == selection.textEnd().line)
                text.truncate(selection.textEnd().column);
            if (line == selection.textBegin().line)
                text.remove(0, selection.textBegin().column);
        } else if (!document_.row(row).isChange()) {
            continue;
        }
        lines << text;
    }
    // Whole lines are copied with the end of the last one.
    if (!lines.isEmpty() && !selection.hasText())
        lines << QString();
    return lines.join(u'\n');
}

} // namespace plovik

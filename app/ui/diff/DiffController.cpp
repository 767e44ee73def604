// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/DiffController.h"

#include <algorithm>
#include <utility>

namespace plovik {

namespace {

using ActionVerb = DiffAction::Verb;
using Part = DiffAction::Part;
using Place = DiffDocument::Place;

constexpr int linesAroundChange = 3;

/// Returns whether a row begins a run of changed lines.
bool beginsChange(const DiffDocument& document, int row)
{
    if (!document.row(row).isChange())
        return false;
    // A note on a missing final newline does not end a run.
    int before = row - 1;
    while (before >= 0 && document.row(before).kind == DiffDocument::Kind::meta)
        --before;
    return before < 0 || !document.row(before).isChange();
}

int endOfChange(const DiffDocument& document, int row)
{
    while (row + 1 < document.rowCount() && document.row(row + 1).isChange())
        ++row;
    return row;
}

/// A selection by what it holds, to be found again after the rows were made anew.
struct HeldSelection {
    DiffSelection before;
    std::vector<Place> changes; ///< of a selection of lines
    Place begin, end;           ///< of a selection of text

    HeldSelection(const ShownDiff& diff, const DiffSelection& selection) : before(selection)
    {
        const DiffDocument& document = diff.document();
        if (selection.hasText()) {
            const auto placeOf = [&](const DiffPosition& at) {
                const int row = diff.lines().nearestRow(at.line, selection.textSide());
                return row < 0 ? Place() : document.placeOf(row);
            };
            begin = placeOf(selection.textBegin());
            end = placeOf(selection.textEnd());
            return;
        }
        for (const int row : diff.rowsOf(selection)) {
            if (document.row(row).isChange())
                changes.push_back(document.placeOf(row));
        }
    }

    DiffSelection in(const ShownDiff& diff) const
    {
        const DiffDocument& document = diff.document();
        DiffSelection selection;
        for (const Place& place : changes) {
            const int row = document.rowOf(place);
            selection.pick(diff.lines().lineOf(row), document.row(row).side);
        }
        if (before.hasText()) {
            const auto lineOf = [&](const Place& place) { return diff.lines().lineOf(document.rowOf(place)); };
            selection.startText({lineOf(begin), before.textBegin().column}, before.textSide());
            selection.extendText({lineOf(end), before.textEnd().column});
        }
        return selection;
    }
};

} // namespace

void DiffController::setContent(DiffContent content, DiffPlace place)
{
    if (content == diff_.content())
        return;
    const bool isOther = content.diff != diff_.content().diff || diff_.document().rowCount() == 0;
    if (isOther)
        Q_EMIT aboutToReplace(place);
    const int hunk = keyboardHunk();
    const std::size_t hunks = diff_.document().hunks().size();
    diff_.setContent(std::move(content));
    if (isOther) {
        diff_.makeRows();
        selection_.clear();
        wasWalked_ = false;
        hovered_ = -1;
        placeCursor(place, hunk, hunks);
    }
    Q_EMIT contentChanged();
}

/// Sets the cursor in new rows. `hunk` of `hunks` is where it was in the rows before.
void DiffController::placeCursor(DiffPlace place, int hunk, std::size_t hunks)
{
    const DiffDocument& document = diff_.document();
    if (document.rowCount() == 0)
        current_ = -1;
    else if (place == DiffPlace::start || hunk < 0)
        current_ = 0;
    else if (document.hunks().size() == hunks)
        current_ = std::min(current_, document.rowCount() - 1);
    else // A hunk has come or gone: the next one to look at is the one in its place.
        current_ = document.hunks()[std::min(static_cast<std::size_t>(hunk), document.hunks().size() - 1)].first;
}

void DiffController::setTexts(DiffTexts texts)
{
    if (std::optional<DiffGaps> gaps = diff_.gapsWithTexts(std::move(texts)))
        relay({}, [&] { diff_.setGaps(std::move(*gaps)); });
}

void DiffController::setShowsWholeFile(bool whole)
{
    if (std::optional<DiffGaps> gaps = diff_.gapsWithWholeFile(whole))
        relay({}, [&] { diff_.setGaps(std::move(*gaps)); });
}

void DiffController::showMore(int hunk, GapSide side, std::optional<int> anchor)
{
    if (std::optional<DiffGaps> gaps = diff_.gapsWithMore(hunk, side))
        relay(anchor, [&] { diff_.setGaps(std::move(*gaps)); });
}

void DiffController::setSyntax(const SyntaxOf& syntax)
{
    if (syntax == diff_.document().syntax())
        return;
    diff_.setSyntax(syntax);
    Q_EMIT looksChanged();
}

void DiffController::setLayout(DiffLayout layout)
{
    if (diff_.hasLayout(layout)) {
        diff_.setLayout(layout);
        return;
    }
    // Text selected within one side is not the same text in both, and the other way round.
    if (selection_.hasText())
        selection_.clear();
    relay({}, [&] { diff_.setLayout(layout); });
}

void DiffController::setTabWidth(int columns)
{
    if (columns != diff_.tabWidth())
        relay({}, [&] { diff_.setTabWidth(columns); });
}

void DiffController::setWraps(bool wraps)
{
    if (wraps != diff_.wraps())
        relay({}, [&] { diff_.setWraps(wraps); });
}

void DiffController::relay(std::optional<int> anchor, const std::function<void()>& change)
{
    Q_EMIT aboutToRelay(anchor);
    const HeldSelection held(diff_, selection_);
    const Place place = current_ < 0 ? Place() : diff_.document().placeOf(current_);
    change();
    selection_ = held.in(diff_);
    if (current_ >= 0)
        current_ = diff_.document().rowOf(place);
    Q_EMIT relaid();
}

void DiffController::setActionsAvailable(bool available)
{
    if (available == std::exchange(isAvailable_, available))
        return;
    Q_EMIT offersChanged();
}

void DiffController::setSelection(const DiffSelection& selection)
{
    selection_ = selection;
    Q_EMIT selectionChanged();
}

void DiffController::selectAll()
{
    if (diff_.document().rowCount() == 0)
        return;
    // Side by side, all of one file's text is selected: the file that the keyboard is in.
    const DiffSide side = diff_.lines().areSideBySide() ? keyboardSide_ : DiffSide::both;
    const int last = diff_.lines().count() - 1;
    const int row = diff_.lines().rowAt(last, side);
    selection_.startText({0, 0}, side);
    selection_.extendText({last, std::max<qsizetype>(1, row < 0 ? 1 : diff_.document().text(row).size())});
    Q_EMIT selectionChanged();
}

std::optional<gitkit::LineRange> DiffController::linesAtHand() const
{
    std::vector<int> rows = diff_.rowsOf(selection_);
    if (rows.empty() && current_ >= 0)
        rows.push_back(current_);
    std::optional<gitkit::LineRange> lines;
    // Lines that are not committed have no history. In a diff of the working copy the old lines are looked up instead.
    const std::optional<LinesInHead>& inHead = diff_.content().inHead;
    for (const int row : rows) {
        const auto& at = diff_.document().row(row);
        const std::optional<int> number = inHead ? at.oldNumber : at.newNumber;
        if (!number || !diff_.document().row(row).isCode())
            continue;
        lines = lines ? gitkit::LineRange{std::min(lines->first, *number), std::max(lines->last, *number)}
                      : gitkit::LineRange{*number, *number};
    }
    return lines && inHead ? inHead->rangeOf(*lines) : lines;
}

void DiffController::turnTicks(Part part, const std::set<int>& changes)
{
    const DiffContent& content = diff_.content();
    if (!canTakeParts() || !content.allows(ActionVerb::toFirst) || changes.empty())
        return;
    const bool isTicked = std::ranges::includes(content.inFirst, changes);
    Q_EMIT actionRequested({isTicked ? ActionVerb::toSecond : ActionVerb::toFirst, part, changes});
}

void DiffController::turnTick(int row)
{
    if (!diff_.document().row(row).isChange())
        return;
    const int id = diff_.document().row(row).id;
    const std::set<int> selected = selectedChanges();
    turnTicks(Part::lines, selected.contains(id) ? selected : std::set{id});
}

void DiffController::toggleCurrent()
{
    if (current_ < 0)
        return;
    if (diff_.content().use == DiffContent::Use::split) {
        const std::set<int> selected = selectedChanges();
        return selected.empty() ? turnTick(current_) : turnTicks(Part::lines, selected);
    }
    const DiffSide side = diff_.lines().areSideBySide() ? currentSide() : DiffSide::both;
    selection_.toggleLine(diff_.lines().lineOf(current_), side);
    Q_EMIT selectionChanged();
}

DiffSide DiffController::currentSide() const
{
    const DiffSide side = current_ < 0 ? DiffSide::both : diff_.document().row(current_).side;
    return side == DiffSide::both ? keyboardSide_ : side;
}

void DiffController::setCurrentRow(int row)
{
    if (row < 0 || row >= diff_.document().rowCount())
        return;
    current_ = row;
    Q_EMIT looksChanged();
}

void DiffController::moveTo(int row, bool extend)
{
    if (diff_.document().rowCount() == 0)
        return;
    const int target = std::clamp(row, 0, diff_.document().rowCount() - 1);
    if (extend) {
        if (selection_.isEmpty() || selection_.hasText())
            selection_.startLines(diff_.lines().lineOf(current_));
        selection_.extendLines(diff_.lines().lineOf(target));
    } else {
        selection_.clear();
    }
    current_ = target;
    hovered_ = -1;
    Q_EMIT selectionChanged();
    Q_EMIT revealRequested(current_, current_, 0);
}

void DiffController::moveBy(int lines, bool extend)
{
    const DiffLines& all = diff_.lines();
    if (all.count() == 0)
        return;
    const int line = std::clamp(all.lineOf(std::max(0, current_)) + lines, 0, all.count() - 1);
    moveTo(all.nearestRow(line, keyboardSide_), extend);
}

bool DiffController::moveToSide(DiffSide side)
{
    if (!diff_.lines().areSideBySide() || current_ < 0 || currentSide() == side)
        return false;
    const int row = diff_.lines().rowAt(diff_.lines().lineOf(current_), side);
    if (row < 0)
        return false;
    keyboardSide_ = side;
    moveTo(row, false);
    return true;
}

void DiffController::moveToHunk(int direction)
{
    const std::vector<DiffDocument::Hunk>& hunks = diff_.document().hunks();
    const int target = keyboardHunk() + direction;
    if (keyboardHunk() < 0 || target < 0 || target >= static_cast<int>(hunks.size())) {
        Q_EMIT leaveRequested(direction);
        return;
    }
    const DiffDocument::Hunk& next = hunks[static_cast<std::size_t>(target)];
    moveTo(next.first, false);
    Q_EMIT revealRequested(next.first, next.end - 1, 0);
}

void DiffController::moveOn(int direction)
{
    if (diff_.content().use == DiffContent::Use::read)
        Q_EMIT changeRequested(direction);
    else
        moveToHunk(direction);
}

bool DiffController::moveToChange(int direction, int from)
{
    const DiffDocument& document = diff_.document();
    int row = from + direction;
    while (row >= 0 && row < document.rowCount() && !beginsChange(document, row))
        row += direction;
    if (row < 0 || row >= document.rowCount())
        return false;
    moveTo(row, false);
    wasWalked_ = true;
    Q_EMIT revealRequested(row, endOfChange(document, row), linesAroundChange);
    return true;
}

void DiffController::stopWalk()
{
    wasWalked_ = false;
    Q_EMIT looksChanged();
}

void DiffController::setHoveredHunk(int hunk)
{
    if (hunk == std::exchange(hovered_, hunk))
        return;
    Q_EMIT looksChanged();
}

void DiffController::request(int hunk, ActionVerb verb, Part part)
{
    if (!isAvailable_ || !diff_.content().allows(verb))
        return;
    if (sideOf(verb))
        Q_EMIT actionRequested({verb, Part::all, {}});
    if (!canTakeParts())
        return;
    const DiffDocument& document = diff_.document();
    DiffAction action{verb, part, {}};
    if (part == Part::lines)
        action.lines = selectedChanges();
    else if (part == Part::hunk && hunk >= 0)
        action.lines = document.changesOf(document.hunks()[static_cast<std::size_t>(hunk)]);
    else if (part == Part::all)
        action.lines = document.changesOf({0, document.rowCount()});
    if (!action.lines.empty())
        Q_EMIT actionRequested(action);
}

void DiffController::requestFromKey(ActionVerb verb)
{
    if (verb == ActionVerb::stage && diff_.content().use == DiffContent::Use::split) {
        const std::set<int> selected = selectedChanges();
        if (!selected.empty())
            turnTicks(Part::lines, selected);
        else if (keyboardHunk() >= 0)
            turnTicks(Part::hunk,
                      diff_.document().changesOf(diff_.document().hunks()[static_cast<std::size_t>(keyboardHunk())]));
        return;
    }
    // The key that stages means the only verb of a staged diff.
    if (verb == ActionVerb::stage && !diff_.content().allows(verb))
        verb = ActionVerb::unstage;
    // Keys mean the keyboard's own hunk, wherever the pointer rests.
    request(keyboardHunk(), verb, selectedChanges().empty() ? Part::hunk : Part::lines);
}

} // namespace plovik

#include "moc_DiffController.cpp"

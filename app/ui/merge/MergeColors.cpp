// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/merge/MergeColors.h"

#include "app/ui/widgets/Theme.h"

namespace plovik::mergeColors {

namespace {

constexpr float tintShare = 0.15F;
constexpr int blueLane = 0;
constexpr int greenLane = 2;
constexpr int orangeLane = 3;
constexpr int tealLane = 5;

} // namespace

QColor strong(gitkit::MergeSide side)
{
    if (side == gitkit::MergeSide::base)
        return Theme::current().secondaryText;
    return Theme::current().lane(side == gitkit::MergeSide::left ? blueLane : orangeLane);
}

QColor tinted(const QColor& color) { return Theme::mixed(Theme::current().content, color, tintShare); }
QColor tint(gitkit::MergeSide side) { return tinted(strong(side)); }
QColor strongConflict() { return Theme::current().statusConflicted; }
QColor tintConflict() { return tinted(strongConflict()); }

QColor ofPiece(const MergeResult& result, std::size_t index)
{
    using Choice = MergeResult::Choice;
    using Kind = gitkit::MergeSegment::Kind;
    const MergeResult::Piece& piece = result.pieces()[index];
    if (piece.isEdited)
        return Theme::current().lane(tealLane);
    const Kind kind = result.sides().segments[index].kind;
    switch (piece.choice) {
    case Choice::left:
        return kind == Kind::equal ? QColor() : strong(gitkit::MergeSide::left);
    case Choice::right:
        return kind == Kind::equal ? QColor() : strong(gitkit::MergeSide::right);
    case Choice::leftThenRight:
    case Choice::rightThenLeft:
        return Theme::current().lane(greenLane);
    case Choice::base:
    case Choice::none:
        return kind == Kind::equal ? QColor() : strong(gitkit::MergeSide::base);
    case Choice::undecided:
        break;
    }
    switch (kind) {
    case Kind::conflict:
        return strongConflict();
    case Kind::changedLeft:
        return strong(gitkit::MergeSide::left);
    case Kind::changedRight:
        return strong(gitkit::MergeSide::right);
    case Kind::changedBoth:
        return Theme::current().lane(greenLane);
    case Kind::equal:
        break;
    }
    return {};
}

} // namespace plovik::mergeColors

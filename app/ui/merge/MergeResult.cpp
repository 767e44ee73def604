// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/merge/MergeResult.h"

#include <algorithm>
#include <array>
#include <numeric>

namespace plovik {

namespace {

using gitkit::MergeSegment;
using gitkit::MergeSide;

constexpr std::array allSides{MergeSide::base, MergeSide::left, MergeSide::right};

bool isUtf8(const std::string& bytes)
{
    return QUtf8StringView(bytes.data(), static_cast<qsizetype>(bytes.size())).isValidUtf8();
}

bool isInUtf8(const gitkit::MergedSides& sides)
{
    return std::ranges::all_of(allSides, [&](MergeSide side) { return isUtf8(sides.text(side).bytes()); });
}

bool areInUtf8(const std::vector<MergeResult::Start>& starts)
{
    return std::ranges::all_of(starts, [](const auto& start) { return !start.bytes || isUtf8(*start.bytes); });
}

/// Returns whether each line feed of all sides follows a carriage return.
bool isInCrLf(const gitkit::MergedSides& sides)
{
    bool hasAny = false;
    for (const MergeSide side : allSides) {
        const std::string& bytes = sides.text(side).bytes();
        for (std::size_t at = bytes.find('\n'); at != std::string::npos; at = bytes.find('\n', at + 1)) {
            if (at == 0 || bytes[at - 1] != '\r')
                return false;
            hasAny = true;
        }
    }
    return hasAny;
}

} // namespace

MergeResult::MergeResult(Sides sides, const std::vector<Start>& starts)
    : sides_(std::move(sides)), isUtf8_(isInUtf8(*sides_) && areInUtf8(starts)), isCrLf_(isInCrLf(*sides_)),
      text_(begun(starts, pieces_))
{}

/// Returns the text with these starts, and its pieces.
QString MergeResult::begun(const std::vector<Start>& starts, std::vector<Piece>& pieces) const
{
    const bool isStarted = starts.size() == sides_->segments.size();
    QString all;
    for (std::size_t index = 0; index < sides_->segments.size(); ++index) {
        Piece piece;
        QString text;
        if (isStarted && starts[index].bytes) {
            piece.isEdited = true;
            text = decoded(*starts[index].bytes);
        } else {
            piece.choice = isStarted ? starts[index].choice : Choice::undecided;
            text = textFor(index, piece.choice);
        }
        piece.length = text.size();
        pieces.push_back(piece);
        all += text;
    }
    return all;
}

std::optional<MergeResult::Edit> MergeResult::replaceAll(const std::vector<Start>& starts)
{
    if (isUtf8_ && !areInUtf8(starts))
        return std::nullopt;
    std::vector<Piece> after;
    const Edit edit{0, text_.size(), begun(starts, after)};
    keep(change(edit, 0, std::move(after)));
    return edit;
}

QString MergeResult::decoded(std::string_view bytes) const
{
    const auto size = static_cast<qsizetype>(bytes.size());
    QString text;
    if (!isUtf8_)
        text = QString::fromLatin1(bytes.data(), size);
    else if (bytes.starts_with("\xEF\xBB\xBF")) // Qt would drop it
        text = QChar(0xFEFF) + QString::fromUtf8(bytes.data() + 3, size - 3);
    else
        text = QString::fromUtf8(bytes.data(), size);
    if (isCrLf_)
        text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    return text;
}

std::optional<std::string> MergeResult::encoded(QStringView text) const
{
    QString copy = text.toString();
    if (isCrLf_)
        copy.replace(u'\n', QLatin1String("\r\n"));
    if (isUtf8_)
        return copy.toStdString();
    if (std::ranges::any_of(copy, [](QChar unit) { return unit.unicode() > 0xFF; }))
        return std::nullopt;
    return copy.toLatin1().toStdString();
}

/// Returns whether the file has no line end after its last line if its last segment is decided so.
bool MergeResult::endsBare(Choice last) const
{
    if (sides_->addedToBase + sides_->addedToLeft + sides_->addedToRight == 0)
        return false;
    std::vector<Choice> choices(sides_->segments.size(), Choice::undecided);
    choices.back() = last;
    return !gitkit::joined(*sides_, choices).ends_with('\n');
}

QString MergeResult::textFor(std::size_t index, Choice choice) const
{
    const MergeSegment& segment = sides_->segments[index];
    if (choice == Choice::undecided && segment.kind == MergeSegment::Kind::conflict)
        return QString(sign) + u'\n';
    QString text = decoded(gitkit::textOf(*sides_, segment, choice));
    if (index + 1 == sides_->segments.size() && text.endsWith(u'\n') && endsBare(choice))
        text.chop(1);
    return text;
}

qsizetype MergeResult::begin(std::size_t index) const
{
    const auto end = pieces_.begin() + static_cast<std::ptrdiff_t>(index);
    return std::accumulate(pieces_.begin(), end, qsizetype{0},
                           [](qsizetype sum, const Piece& piece) { return sum + piece.length; });
}

std::size_t MergeResult::pieceAt(qsizetype position) const
{
    std::size_t last = 0;
    qsizetype end = 0;
    for (std::size_t index = 0; index < pieces_.size(); ++index) {
        if (pieces_[index].length == 0)
            continue;
        last = index;
        end += pieces_[index].length;
        if (position < end)
            break;
    }
    return last;
}

bool MergeResult::isUndecided(std::size_t index) const
{
    return sides_->segments[index].kind == MergeSegment::Kind::conflict && !pieces_[index].isEdited &&
           pieces_[index].choice == Choice::undecided;
}

int MergeResult::undecidedCount() const
{
    int count = 0;
    for (std::size_t index = 0; index < pieces_.size(); ++index)
        count += isUndecided(index) ? 1 : 0;
    return count;
}

std::optional<std::size_t> MergeResult::nextConflict(std::optional<std::size_t> from, int direction) const
{
    const auto count = static_cast<std::ptrdiff_t>(pieces_.size());
    const std::ptrdiff_t start = from ? static_cast<std::ptrdiff_t>(*from) : direction > 0 ? -1 : count;
    const bool onlyUndecided = undecidedCount() > 0;
    for (std::ptrdiff_t step = 1; step <= count; ++step) {
        const auto index = static_cast<std::size_t>(((start + direction * step) % count + count) % count);
        const bool isConflict = sides_->segments[index].kind == MergeSegment::Kind::conflict;
        if (onlyUndecided ? isUndecided(index) : isConflict)
            return index;
    }
    return std::nullopt;
}

std::optional<MergeResult::Edit> MergeResult::choose(std::size_t index, Choice choice)
{
    const Piece& piece = pieces_[index];
    const Edit edit{begin(index), piece.length, textFor(index, choice)};
    const Piece after{edit.added.size(), choice, false};
    if (piece == after && QStringView(text_).mid(edit.position, edit.removed) == edit.added)
        return std::nullopt;
    keep(change(edit, index, {after}));
    return edit;
}

void MergeResult::typed(const Edit& edit)
{
    if (pieces_.empty())
        return;
    const std::size_t first = pieceAt(edit.position);
    std::vector<Piece> after;
    qsizetype left = edit.removed;
    qsizetype inside = edit.position - begin(first);
    for (std::size_t index = first; index < pieces_.size(); ++index) {
        Piece piece = pieces_[index];
        const qsizetype taken = std::min(left, piece.length - inside);
        if (index != first && left == 0)
            break;
        piece.length -= taken;
        // A piece of which nothing was taken stays as it was decided.
        piece.isEdited = piece.isEdited || taken > 0 || (index == first && !edit.added.isEmpty());
        if (index == first)
            piece.length += edit.added.size();
        after.push_back(piece);
        left -= taken;
        inside = 0;
    }
    Step step = change(edit, first, std::move(after));
    step.isTyped = true;
    keep(std::move(step));
}

std::optional<MergeResult::Edit> MergeResult::cleared()
{
    if (done_ == 0)
        return std::nullopt;
    Step& last = steps_[done_ - 1];
    qsizetype position = begin(last.first);
    for (std::size_t index = 0; index < last.after.size(); ++index) {
        Piece& piece = pieces_[last.first + index];
        const qsizetype at = text_.indexOf(sign, position);
        const Piece& was = last.before[index];
        const bool wasUndecided = !was.isEdited && was.choice == Choice::undecided &&
                                  sides_->segments[last.first + index].kind == MergeSegment::Kind::conflict;
        if (wasUndecided && piece.isEdited && at >= 0 && at < position + piece.length) {
            // One step brings both back: all that the pieces were before.
            Step whole;
            whole.first = last.first;
            whole.before = last.before;
            whole.edit.position = begin(last.first);
            const qsizetype removedBefore = whole.edit.position;
            QString old = text_;
            old.replace(last.edit.position, last.edit.added.size(), last.removedText);
            const auto lengthOf = [](const std::vector<Piece>& pieces) {
                return std::accumulate(pieces.begin(), pieces.end(), qsizetype{0},
                                       [](qsizetype sum, const Piece& each) { return sum + each.length; });
            };
            whole.removedText = old.mid(removedBefore, lengthOf(last.before));
            text_.remove(at, 1);
            --piece.length;
            --last.after[index].length;
            whole.after = last.after;
            whole.edit.removed = whole.removedText.size();
            whole.edit.added = text_.mid(removedBefore, lengthOf(whole.after));
            last = std::move(whole);
            return Edit{at, 1, {}};
        }
        position += piece.length;
    }
    return std::nullopt;
}

/// Makes a change and returns it.
MergeResult::Step MergeResult::change(const Edit& edit, std::size_t first, std::vector<Piece> after)
{
    Step step{.edit = edit,
              .removedText = text_.mid(edit.position, edit.removed),
              .first = first,
              .before = {},
              .after = std::move(after)};
    const auto begin = pieces_.begin() + static_cast<std::ptrdiff_t>(first);
    step.before.assign(begin, begin + static_cast<std::ptrdiff_t>(step.after.size()));
    std::ranges::copy(step.after, begin);
    text_.replace(edit.position, edit.removed, edit.added);
    return step;
}

/// Returns whether a typed character belongs to the word that was typed before it.
bool MergeResult::joinsLast(const Step& step) const
{
    if (done_ == 0 || !step.isTyped || !steps_[done_ - 1].isTyped)
        return false;
    const Step& last = steps_[done_ - 1];
    return step.edit.removed == 0 && step.edit.added.size() == 1 && !step.edit.added.front().isSpace() &&
           last.edit.position + last.edit.added.size() == step.edit.position && step.first == last.first &&
           step.after.size() == 1 && last.after.size() == 1 && !last.edit.added.isEmpty();
}

void MergeResult::keep(Step step)
{
    steps_.resize(done_);
    if (joinsLast(step)) {
        Step& last = steps_.back();
        last.edit.added += step.edit.added;
        last.after = std::move(step.after);
        return;
    }
    steps_.push_back(std::move(step));
    ++done_;
}

MergeResult::Edit MergeResult::undo()
{
    const Step& step = steps_[--done_];
    Edit back{step.edit.position, step.edit.added.size(), step.removedText};
    std::ranges::copy(step.before, pieces_.begin() + static_cast<std::ptrdiff_t>(step.first));
    text_.replace(back.position, back.removed, back.added);
    return back;
}

MergeResult::Edit MergeResult::redo()
{
    const Step& step = steps_[done_++];
    std::ranges::copy(step.after, pieces_.begin() + static_cast<std::ptrdiff_t>(step.first));
    text_.replace(step.edit.position, step.edit.removed, step.edit.added);
    return step.edit;
}

std::optional<std::string> MergeResult::bytes(const gitkit::MergeMarkers& markers) const
{
    if (std::ranges::none_of(pieces_, &Piece::isEdited)) {
        std::vector<Choice> choices;
        std::ranges::transform(pieces_, std::back_inserter(choices), &Piece::choice);
        return gitkit::joined(*sides_, choices, markers);
    }
    std::string all;
    qsizetype position = 0;
    for (std::size_t index = 0; index < pieces_.size(); ++index) {
        const Piece& piece = pieces_[index];
        if (isUndecided(index)) {
            all += gitkit::textOf(*sides_, sides_->segments[index], Choice::undecided, markers);
        } else {
            const auto bytes = encoded(QStringView(text_).mid(position, piece.length));
            if (!bytes)
                return std::nullopt;
            all += *bytes;
        }
        position += piece.length;
    }
    return all;
}

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/MergedSides.h"

#include <QString>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace plovik {

/// The result of a merge while it is decided and edited: a text in pieces, one for each segment of the merge. Positions
/// and lengths are UTF-16 units. A conflict that is not decided is a line with one sign, which is never part of the
/// bytes. Every change can be undone. Main thread.
///
/// The text has one line feed for each line end. Bytes that are not UTF-8 are read as Latin-1, so that all come back as
/// they were.
class MergeResult {
public:
    using Choice = gitkit::MergeChoice;
    using Sides = std::shared_ptr<const gitkit::MergedSides>;

    /// What stands in the place of a conflict that is not decided.
    static constexpr QChar sign{QChar::ObjectReplacementCharacter};

    /// What a segment is at first: a choice, or bytes that were found in its place.
    struct Start {
        Choice choice = Choice::undecided;
        std::optional<std::string> bytes = std::nullopt;

        bool operator==(const Start&) const = default;
    };
    struct Piece {
        qsizetype length = 0;
        Choice choice = Choice::undecided;
        bool isEdited = false; ///< the text is neither side's, but as the user has written it

        bool operator==(const Piece&) const = default;
    };
    /// A change of the text.
    struct Edit {
        qsizetype position = 0;
        qsizetype removed = 0;
        QString added;

        bool operator==(const Edit&) const = default;
    };

    /// Without starts, all conflicts are undecided and all clean changes are taken.
    explicit MergeResult(Sides sides, const std::vector<Start>& starts = {});

    const gitkit::MergedSides& sides() const { return *sides_; }
    const QString& text() const { return text_; }
    /// One for each segment, in the same order.
    const std::vector<Piece>& pieces() const { return pieces_; }
    qsizetype begin(std::size_t index) const;
    /// Returns the piece that a position is in; the last one that is not empty at the end of the text.
    std::size_t pieceAt(qsizetype position) const;

    bool isUndecided(std::size_t index) const;
    int conflictCount() const { return static_cast<int>(sides_->conflictCount()); }
    int undecidedCount() const;
    /// Returns the next (1) or previous (-1) conflict from a segment on, first those that are not decided; nullopt
    /// without conflicts.
    std::optional<std::size_t> nextConflict(std::optional<std::size_t> from, int direction) const;

    /// Decides a segment. Returns the change of the text; nullopt when nothing changes.
    std::optional<Edit> choose(std::size_t index, Choice choice);
    /// Notes what was typed. The sign of a conflict that was typed into is to be taken away by cleared().
    void typed(const Edit& edit);
    /// Takes the signs away that edited pieces still have, as a part of the last change. Returns the change of the text.
    std::optional<Edit> cleared();

    /// Takes other contents for all segments, as one change. Returns the change of the text; nullopt if there are bytes that
    /// this text cannot hold.
    std::optional<Edit> replaceAll(const std::vector<Start>& starts);

    bool canUndo() const { return done_ > 0; }
    bool canRedo() const { return done_ < steps_.size(); }
    Edit undo();
    Edit redo();

    /// Returns the result. Conflicts that are not decided stand there with markers. Returns nullopt if the text has a
    /// character that the file's encoding lacks.
    std::optional<std::string> bytes(const gitkit::MergeMarkers& markers) const;
    /// Returns bytes of a side as text, as this text has it.
    QString decoded(std::string_view bytes) const;

private:
    /// A change with the pieces from `first` on that it has changed.
    struct Step {
        Edit edit;
        QString removedText;
        std::size_t first = 0;
        std::vector<Piece> before, after;
        bool isTyped = false;
    };

    QString textFor(std::size_t index, Choice choice) const;
    QString begun(const std::vector<Start>& starts, std::vector<Piece>& pieces) const;
    Step change(const Edit& edit, std::size_t first, std::vector<Piece> after);
    void keep(Step step);
    bool joinsLast(const Step& step) const;
    bool endsBare(Choice last) const;
    std::optional<std::string> encoded(QStringView text) const;

    Sides sides_;
    bool isUtf8_ = true;
    bool isCrLf_ = false; ///< all lines of all sides end so
    std::vector<Piece> pieces_;
    QString text_;
    std::vector<Step> steps_;
    std::size_t done_ = 0; ///< how many of the steps are in force
};

} // namespace plovik

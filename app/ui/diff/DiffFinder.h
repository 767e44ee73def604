// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/diff/DiffAction.h"
#include "app/ui/diff/DiffDocument.h"
#include "app/ui/diff/DiffFound.h"
#include "app/ui/widgets/Finder.h"

#include <QBasicTimer>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringMatcher>

#include <deque>
#include <optional>

namespace plovik {

class DiffSectionView;
class DiffView;

/// Searches the code that a view of diffs shows, a slice at a time between events, and goes from one match to the next.
/// Searches again when what is shown changes, and stays at the match where it was. Main thread.
class DiffFinder : public Finder {
    Q_OBJECT

public:
    /// `view` outlives the finder.
    explicit DiffFinder(DiffView& view, QObject* parent);
    ~DiffFinder() override;

    void search(const Query& query) override;
    void step(int direction) override;
    /// Lets the next search begin at the start, without bringing a match into sight.
    void forgetPlace();

    int count() const override { return count_; }
    int current() const override { return current_; }
    bool isSearching() const override { return timer_.isActive(); }
    bool isCut() const override { return count_ >= mostMatches; }
    /// Goes to a match; -1 takes the tint of the current one away without going anywhere.
    void goTo(int index);

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    static constexpr int mostMatches = 100'000;

    struct Section {
        QPointer<DiffSectionView> view;
        DiffFound found;
        int revision = 0; ///< of the diff that was searched
    };
    /// Where a search goes on, even if other rows are shown by then.
    struct Place {
        DiffKind kind;
        DiffDocument::Place row;
        qsizetype column = 0;
    };
    struct Match {
        std::size_t section = 0;
        std::size_t run = 0;
    };

    bool isOld() const;
    void restart();
    void forget();
    void runSlice();
    bool searchRow(Section& section);
    void take(DiffFound::Run run);
    bool isAtOrBehindPlace(const DiffFound::Run& run) const;
    void settle();
    Match matchAt(int index) const;
    std::optional<Place> placeInSight() const;
    void resolvePlace();
    void showCurrent(bool isShown);

    DiffView& view_;
    Query query_;
    QStringMatcher matcher_;
    std::deque<Section> sections_; ///< whose elements do not move, because the views point to what was found
    int count_ = 0;
    int current_ = -1;
    bool revealsFirst_ = false; ///< whether the first match at or behind the place is brought into sight
    QBasicTimer timer_;

    std::optional<Place> place_;
    std::size_t placeSection_ = 0; ///< where `place_` is in the sections that are searched now
    int placeRow_ = 0;

    // Where the next slice goes on.
    std::size_t section_ = 0;
    int row_ = 0;
    qsizetype column_ = 0;
    QString text_; ///< of the row that is being searched
};

} // namespace plovik

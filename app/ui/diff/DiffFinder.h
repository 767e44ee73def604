// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/diff/DiffDocument.h"
#include "app/ui/diff/DiffFound.h"

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
class DiffFinder : public QObject {
    Q_OBJECT

public:
    /// `view` outlives the finder.
    explicit DiffFinder(DiffView& view, QObject* parent);
    ~DiffFinder() override;

    struct Query {
        QString text;
        Qt::CaseSensitivity cases = Qt::CaseInsensitive;

        bool operator==(const Query&) const = default;
    };
    /// Goes to the first match at or behind the one where the search was, or what is in sight. An empty text ends it.
    void search(const Query& query);
    void stop() { search({}); }
    /// To the match before (-1) or behind (1).
    void step(int direction);
    /// The next search begins at the start of what is shown by then, and brings nothing into sight by itself.
    void forgetPlace();

    int count() const { return count_; }
    int current() const { return current_; } ///< from 0; -1 for none
    bool isSearching() const { return timer_.isActive(); }
    /// Whether there are more matches than are counted.
    bool isCut() const { return count_ >= mostMatches; }

Q_SIGNALS:
    /// What the functions above tell.
    void changed();
    /// The last step went on at the other end.
    void wrapped(int direction);

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    static constexpr int mostMatches = 100'000;

    struct Section {
        QPointer<DiffSectionView> view;
        DiffFound found;
        int revision = 0; ///< of the content that was searched
        int rows = 0;     ///< likewise
    };
    /// Where a search goes on, whatever is shown around it by then.
    struct Place {
        QString section;
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
    void goTo(int index);
    Match matchAt(int index) const;
    std::optional<Place> placeInSight() const;
    void resolvePlace();
    void showCurrent(bool isShown);

    DiffView& view_;
    Query query_;
    QStringMatcher matcher_;
    std::deque<Section> sections_; ///< stays where it is: the views hold pointers to what was found
    int count_ = 0;
    int current_ = -1;
    bool revealsFirst_ = false; ///< once one is found at or behind the place
    QBasicTimer timer_;

    std::optional<Place> place_;
    std::size_t placeSection_ = 0; ///< what `place_` comes to in the sections searched now
    int placeRow_ = 0;

    // Where the slice that comes next goes on.
    std::size_t section_ = 0;
    int row_ = 0;
    qsizetype column_ = 0;
    QString text_; ///< of the row, once it is begun
};

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/diff/DiffFound.h"
#include "app/ui/widgets/Finder.h"

#include <QBasicTimer>
#include <QStringMatcher>

namespace plovik {

class BlameList;

/// Searches the lines of a blame, a slice at a time between events. Searches again when another blame is shown. Main
/// thread.
class BlameFinder : public Finder {
    Q_OBJECT

public:
    /// `list` outlives the finder.
    explicit BlameFinder(BlameList& list, QObject* parent);
    ~BlameFinder() override;

    void search(const Query& query) override;
    void step(int direction) override;
    int count() const override { return static_cast<int>(found_.runs.size()); }
    int current() const override { return found_.current; }
    bool isSearching() const override { return timer_.isActive(); }
    bool isCut() const override { return count() >= mostMatches; }

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    static constexpr int mostMatches = 100'000;

    void restart();
    void runSlice();
    void goTo(int match);

    BlameList& list_;
    Query query_;
    QStringMatcher matcher_;
    DiffFound found_;
    QBasicTimer timer_;
    int next_ = 0; ///< the next row to search
    int from_ = 0; ///< the row that the search began at
    bool revealsFirst_ = false;
};

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/HistoryFilter.h"
#include "app/store/GitAccess.h"
#include "app/store/HistoryRow.h"
#include "app/store/Observed.h"
#include "app/store/SidebarItem.h"

#include <QCoreApplication>
#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace plovik {

struct FoundCommit;
struct HistoryPage;
class Snapshot;
class WindowState;

/// The history page: which commits it lists, with their graph, paging, searching, and coming to a commit. Owned by the
/// store; main thread.
class History {
    Q_DECLARE_TR_FUNCTIONS(plovik::History)

public:
    History(const GitAccess& git, WindowState& window, Snapshot& snapshot);
    ~History();
    History(const History&) = delete;
    History& operator=(const History&) = delete;

    Observed<std::vector<HistoryRow>, History> history;
    Observed<int, History> graphLanes{1};
    Observed<bool, History> hasMoreHistory{false};
    Observed<QString, History> historySearch;
    Observed<gitkit::HistoryFilter::Field, History> historySearchField{gitkit::HistoryFilter::Field::message};
    Observed<bool, History> isHistoryFiltered{false};
    /// Why the page is empty although git was asked; empty otherwise.
    Observed<QString, History> historyProblem;
    /// Grows whenever the selected commit is to be brought into sight, though it may be selected already.
    Observed<qint64, History> commitReveals{0};
    /// What is being looked for, once that takes a moment. It holds up no change.
    Observed<std::optional<QString>, History> lookup;

    /// Shows 500 commits more, when there are more.
    void loadMoreHistory();
    /// Searches once typing has paused; an empty text ends the search.
    void search(const QString& text, gitkit::HistoryFilter::Field field);
    /// Moves the commit selection by rows; selects the first row when none is selected.
    void moveCommitSelection(int rows);
    /// Shows a commit in the history, wherever the user is now: in the loaded history when that holds it, otherwise in
    /// that of all refs, as far down as it takes. Says so quietly when no branch or tag leads to it. A part of a hash
    /// will do. Anything that the user selects in the meantime is the newer wish, and wins.
    void showCommit(const std::string& hash);

    // For the trail.

    /// How the user came to the commit that is selected now.
    enum class Arrival { newPlace, samePlace };
    /// Called when a commit that was looked for has been selected, and with nothing when a page has come.
    std::function<void(std::optional<Arrival>)> arrived = {};
    /// Returns whose history the shown page is.
    const SidebarItem& shownScope() const { return shownScope_; }
    /// Whether the page is an item's and holds a commit.
    bool isOnPage(const SidebarItem& item, const std::string& hash) const;
    /// Gives up what was wished for before. Returns a number that isWished() knows until the next wish.
    qint64 beginWish();
    bool isWished(qint64 wish) const { return wish == wish_; }
    /// Says that `hash` is being looked for, once that takes a moment.
    void lookFor(const std::string& hash);
    /// Awaits where a commit stands in the history of an item. Throws as findCommit() does.
    BlockingCall<FoundCommit> find(const std::string& hash, const SidebarItem& item) const;
    /// Loads so much of an item's history that it holds the row at `position`, and then selects `hash` there.
    void loadAsFarAs(const SidebarItem& item, int position, const std::string& hash, Arrival arrival);
    /// Selects a commit of the page that is shown.
    void reveal(const SidebarItem& item, const std::string& hash);
    /// Brings the page in line with the item that the window has selected.
    void showSelected();

private:
    /// A commit that is to be selected as soon as the history that is being loaded holds it.
    struct Wanted {
        std::optional<std::string> hash; ///< the first row's when absent: the tip of a ref
        Arrival arrival = Arrival::samePlace;
    };
    QCoro::Task<> reload();
    QCoro::Task<> reloadWhatIsLeft();
    std::optional<gitkit::HistoryFilter> filter() const;
    void apply(HistoryPage page, bool filtered);
    bool holds(const std::vector<HistoryRow>& page, const std::string& hash) const;
    QCoro::Task<> showing(std::string name, qint64 wish);
    void showTipOfRef();
    std::optional<std::string> wantedOn(const std::vector<HistoryRow>& page, bool filtered) const;
    void selectWanted(const std::string& hash);
    void missWanted();

    const GitAccess& git_;
    WindowState& window_;
    Snapshot& snapshot_;
    int limit_;
    SidebarItem scope_ = SidebarItem::history();      ///< whose history is loaded next
    SidebarItem shownScope_ = SidebarItem::history(); ///< whose history the page is
    qint64 loads_ = 0;                                ///< only the newest load may write
    std::unique_ptr<Worker::Delay> typingPause_;
    std::optional<Wanted> wanted_;
    qint64 wish_ = 0;
    std::unique_ptr<Worker::Delay> patience_;
};

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/HistoryFilter.h"
#include "app/store/GitAccess.h"
#include "app/store/HistoryPages.h"
#include "app/store/Observed.h"

#include <QCoreApplication>
#include <QString>
#include <QStringList>

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace plovik {

struct FoundCommit;
class Snapshot;
class WindowState;

/// What a search looks for in the texts of rows.
struct SearchMarks {
    QStringList subjects, authors;
    std::vector<std::string> hashes; ///< beginnings

    bool operator==(const SearchMarks&) const = default;
};

/// The history page: the listed commits with their graph, paging, searching, and jumping to a commit. Owned by the
/// store; main thread.
class History {
    Q_DECLARE_TR_FUNCTIONS(plovik::History)

public:
    History(const GitAccess& git, WindowState& window, Snapshot& snapshot);
    ~History();
    History(const History&) = delete;
    History& operator=(const History&) = delete;

    /// The rows that are read so far.
    Observed<HistoryRows, History> history;
    Observed<int, History> graphLanes{1};
    Observed<bool, History> hasMoreHistory{false};
    Observed<QString, History> historySearch;
    Observed<gitkit::HistoryFilter::Field, History> historySearchField{gitkit::HistoryFilter::Field::message};
    /// Why what is searched for cannot be found: in git's words, or what is wrong with a term. Empty otherwise.
    Observed<QString, History> searchProblem;
    /// Whether a search leaves all rows in the list, where HistoryMatches marks what it finds.
    Observed<bool, History> searchesInGraph{false};
    Observed<bool, History> isHistoryFiltered{false};
    /// Whether a search goes on. What it has found so far is shown.
    Observed<bool, History> isSearching{false};
    /// Whether the page still shows what was searched for before.
    Observed<bool, History> isOutdated{false};
    /// Whether all rows to the end of the history are being read.
    Observed<bool, History> isReadingToEnd{false};
    /// Why the page could not be read; empty after success.
    Observed<QString, History> historyProblem;
    /// Grows whenever views should scroll to the selected commit, also when it was selected before.
    Observed<qint64, History> commitReveals{0};
    /// The sentence that says which commit is being looked for, once that takes a moment. Changes do not wait for it.
    Observed<std::optional<QString>, History> lookup;

    /// Shows 500 more commits if there are more.
    void loadMoreHistory();
    /// Returns whether the history goes on after the rows that were read, as far as is known.
    bool hasUnreadRows() const;
    /// Reads the history to its end, and then selects its last commit unless another one was selected meanwhile.
    void readToEnd();
    /// Ends such a reading, or a search. What was found stays.
    void stopReading();
    /// Shows commits in another order than git's, the newest first, in the rows that they take up together. An empty list
    /// ends it. Not while a search shows what it has found alone.
    void arrange(std::vector<std::string> commits);
    /// Searches once typing has paused. An empty text ends the search; a selected commit stays selected and in sight.
    void search(const QString& text, gitkit::HistoryFilter::Field field);
    /// Chooses whether a search leaves all rows in the list.
    void setSearchesInGraph(bool inGraph);
    /// Returns what is searched for, in either way; nullopt when that is nothing or cannot be understood.
    std::optional<gitkit::HistoryFilter> searched() const;
    SearchMarks searchMarks() const;
    /// Moves the commit selection by rows; selects the first row when none is selected.
    void moveCommitSelection(int rows);
    /// Shows a commit in the history, from any view: in the loaded history when it contains the commit, otherwise in
    /// the history of all refs, of which as much is loaded as needed. Shows a notice when no branch or tag leads to the
    /// commit. A part of a hash is enough. A selection by the user in the meantime replaces this wish.
    void showCommit(const std::string& hash);

    // For the trail.

    /// Whether the selected commit is a new place for the trail, one that the trail has led back to, or selected because
    /// nothing else was.
    enum class Arrival { newPlace, samePlace, unchosen };
    /// Called when a commit that was looked for has been selected, and with nullopt when a page has been loaded.
    std::function<void(std::optional<Arrival>)> arrived = {};
    /// Returns the item whose history is shown.
    SidebarItem shownScope() const;
    /// Returns whether the page is that of `item` and contains the commit.
    bool isOnPage(const SidebarItem& item, const std::string& hash) const;
    /// Drops the previous wish for a commit and begins a new one. Returns its number, for which isWished() is true
    /// until the next wish.
    qint64 beginWish();
    bool isWished(qint64 wish) const { return wish == wish_; }
    /// Sets `lookup` after a moment, unless the wish ends before.
    void lookFor(const std::string& hash);
    /// Awaits the position of a commit in the history of an item. Throws as findCommit() does.
    BlockingCall<FoundCommit> find(const std::string& hash, const SidebarItem& item) const;
    /// Loads an item's history as far as the row at `position`, and then selects `hash` there.
    void loadAsFarAs(const SidebarItem& item, int position, const std::string& hash, Arrival arrival);
    /// Selects a commit of the shown page.
    void reveal(const SidebarItem& item, const std::string& hash);
    /// Shows the history of the item that is selected in the window.
    void showSelected();

private:
    /// The commit to select as soon as the loaded history contains it.
    struct Wanted {
        std::optional<std::string> hash; ///< nullopt for the first row, the tip of a ref, or for HEAD
        bool isHead = false;
        Arrival arrival = Arrival::samePlace;
    };

    QCoro::Task<> reloadWhatIsLeft();
    void show(bool isAll);
    HistoryRows arranged(HistoryRows rows) const;
    void showSearching();
    void follow(const HistoryRows& page, bool isAll);
    std::optional<gitkit::HistoryFilter> typed() const;
    std::optional<gitkit::HistoryFilter> filter() const;
    void showOtherRows(bool wasFiltered);
    void reloadFirstPage();
    QCoro::Task<> goingTo(std::string hash, qint64 wish, Arrival arrival);
    QCoro::Task<> showing(std::string name, qint64 wish);
    void showTipOfRef();
    void showHead();
    std::optional<std::string> wantedOn(const HistoryRows& page) const;
    void selectWanted(const std::string& hash);
    void missWanted();

    const GitAccess& git_;
    WindowState& window_;
    Snapshot& snapshot_;
    HistoryPages pages_;
    std::vector<std::string> arranged_; ///< commits that are shown in another order
    bool wantsLast_ = false;            ///< the last commit is selected once it is read
    std::unique_ptr<Worker::Delay> typingPause_;
    std::optional<Wanted> wanted_;
    qint64 wish_ = 0;
    std::stop_source wishStop_; ///< ends the git of the wish
    std::unique_ptr<Worker::Delay> patience_;
};

} // namespace plovik

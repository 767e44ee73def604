#pragma once

#include "GitKit/GitRepository.h"
#include "GitKit/records/HistoryFilter.h"
#include "app/store/Await.h"
#include "app/store/Confirmation.h"
#include "app/store/HistoryPage.h"
#include "app/store/HistoryRow.h"
#include "app/store/SheetKind.h"
#include "app/store/SidebarItem.h"
#include "app/store/Worker.h"

#include <QProperty>
#include <QString>

#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace plovik {

/// How much of the repository a refresh reads again.
enum class RefreshScope { status, full };

/// Everything that one repository window shows, and every action it offers.
///
/// Owned by its window; used on the main thread only. Git runs on the worker's threads while the store's coroutines are
/// suspended; destroying the store at any moment is safe. Views hold QPropertyNotifiers on the fields they show, write
/// the selections, the search and the commit box, and call methods; equal writes notify nobody.
class RepositoryStore {
public:
    /// `root` is a working tree's top level. Starts no git work: the window asks for the first refresh.
    explicit RepositoryStore(std::filesystem::path root, Worker& worker = Worker::pool());
    ~RepositoryStore();
    RepositoryStore(const RepositoryStore&) = delete;
    RepositoryStore& operator=(const RepositoryStore&) = delete;

    const std::filesystem::path& root() const { return repo_.root(); }
    const gitkit::GitRepository& repo() const { return repo_; }

    // What the repository is.
    QProperty<gitkit::RepoStatus> status;
    QProperty<std::vector<gitkit::GitRef>> branches;
    QProperty<std::vector<gitkit::GitRef>> remoteBranches;
    QProperty<std::vector<gitkit::GitRef>> tags;
    QProperty<std::vector<std::string>> remotes;
    QProperty<std::vector<gitkit::Stash>> stashes;

    // What the user looks at.
    QProperty<SidebarItem> selection{SidebarItem::workingCopy()};
    QProperty<std::set<std::string>> selectedPaths;
    /// Counts the successful status reads; what depends on file contents reloads when it grows.
    QProperty<qint64> generation{0};

    // The history page.
    QProperty<std::vector<HistoryRow>> history;
    QProperty<int> graphLanes{1};
    QProperty<bool> hasMoreHistory{false};
    QProperty<QString> historySearch;
    QProperty<gitkit::HistoryFilter::Field> historySearchField{gitkit::HistoryFilter::Field::message};
    QProperty<bool> isHistoryFiltered{false};
    QProperty<std::optional<std::string>> selectedCommit;
    QProperty<std::optional<std::string>> selectedStash;

    // The commit box.
    QProperty<QString> commitSubject;
    QProperty<QString> commitBody;
    QProperty<bool> amend{false};
    QProperty<bool> generatingMessage{false};

    // What is going on.
    QProperty<std::optional<QString>> activity;
    QProperty<std::optional<QString>> errorMessage;
    QProperty<std::optional<SheetKind>> sheet;
    QProperty<std::optional<Confirmation>> confirmation;
    /// Why the last refresh could not read something, in git's words; empty while all reads succeed. The fields keep
    /// what was read before, so this is what tells an unreadable repository from an empty one.
    QProperty<QString> readProblem;
    /// Why the shown history page is empty although git was asked; empty otherwise.
    QProperty<QString> historyProblem;
    /// Whether the first full refresh has ended; until then empty fields only mean that git has not answered yet.
    QProperty<bool> hasLoaded{false};

    /// The branch, "HEAD detached at …", or nothing when there is neither.
    QString headDescription() const;

    /// Asks for a new read and returns at once. Requests made while one runs fold into a single further pass.
    void refresh(RefreshScope scope);

    /// To be called after `selection` was written: brings the history page in line with it.
    void selectionChanged();

    /// Shows 500 commits more, when there are more.
    void loadMoreHistory();
    /// To be called after `historySearch` or `historySearchField` was written: searches once typing has paused.
    void historySearchChanged();
    /// Moves the commit selection by rows; selects the first row when there is none.
    void moveCommitSelection(int rows);

    /// Awaits one of the repository's methods on the worker, with copies of the arguments.
    template <typename Result, typename... Parameters, typename... Arguments>
    BlockingCall<Result> run(Result (gitkit::GitRepository::*verb)(Parameters...) const, Arguments&&... arguments) const
    {
        return BlockingCall<Result>(
            worker_, Worker::Lane::local, alive_,
            [repo = repo_, verb, ... copies = std::decay_t<Arguments>(std::forward<Arguments>(arguments))]() -> Result {
                return (repo.*verb)(copies...);
            });
    }

    /// Awaits a function of the repository and one request on the worker.
    template <typename Result, typename Request>
    BlockingCall<Result> runFunction(Result (*function)(const gitkit::GitRepository&, const Request&),
                                     std::type_identity_t<Request> request) const
    {
        return BlockingCall<Result>(
            worker_, Worker::Lane::local, alive_,
            [repo = repo_, function, copy = std::move(request)] { return function(repo, copy); });
    }

private:
    static constexpr int pageSize = 500;

    QCoro::Task<> refreshLoop(RefreshScope scope);
    QCoro::Task<> performRefresh(RefreshScope scope);
    QCoro::Task<> readStatus();
    QCoro::Task<> readRefs();
    QCoro::Task<> readRemotes();
    QCoro::Task<> readStashes();
    void applyStatus(gitkit::RepoStatus read);
    void dropStaleSelection();
    void noteListingProblem(const std::exception& failure);
    bool hasRef(const std::string& fullName) const;

    QCoro::Task<> reloadHistory();
    std::optional<gitkit::HistoryFilter> historyFilter() const;
    void applyHistory(HistoryPage page, bool filtered);

    gitkit::GitRepository repo_;
    Worker& worker_;
    AliveToken alive_ = std::make_shared<const std::monostate>();

    int historyLimit_ = pageSize;
    SidebarItem historyScopeItem_ = SidebarItem::history();
    qint64 historyToken_ = 0;
    std::unique_ptr<Worker::Delay> historySearchDelay_;
    bool isRefreshing_ = false;
    std::optional<RefreshScope> pendingRefresh_;
    QString statusProblem_;  ///< why the last status read failed
    QString listingProblem_; ///< the first failure of the last full pass's other reads
};

} // namespace plovik

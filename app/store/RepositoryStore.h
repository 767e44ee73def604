// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/HistoryFilter.h"
#include "GitKit/records/OperationInProgress.h"
#include "GitKit/records/PartialChange.h"
#include "GitKit/repository/Blobs.h"
#include "GitKit/repository/Commits.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/runner/GitError.h"
#include "app/await/Await.h"
#include "app/await/Turnstile.h"
#include "app/await/Worker.h"
#include "app/store/CommandLog.h"
#include "app/store/Confirmation.h"
#include "app/store/HistoryRow.h"
#include "app/store/InspectedFile.h"
#include "app/store/NavigationTrail.h"
#include "app/store/SheetKind.h"
#include "app/store/SidebarItem.h"
#include "app/store/SignIns.h"
#include "app/store/StoreServices.h"
#include "app/store/readers/HistoryPage.h"
#include "app/store/readers/RepositoryState.h"

#include <QProperty>
#include <QString>

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <stop_token>
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
    explicit RepositoryStore(std::filesystem::path root, Worker& worker = Worker::pool(), StoreServices services = {});
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

    /// What git stopped in the middle of; read together with the status.
    QProperty<std::optional<gitkit::OperationInProgress>> inProgress;

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

    // The way through the window.
    QProperty<bool> canGoBack{false};
    QProperty<bool> canGoForward{false};
    /// Grows whenever the selected commit is to be brought into sight, though it may be selected already.
    QProperty<qint64> commitReveals{0};
    /// What is being looked for, once that takes a moment. Locks out no action.
    QProperty<std::optional<QString>> lookup;
    /// Whether the panel with the commands is open; views write it.
    QProperty<bool> showsCommandLog{false};
    /// The command that is selected there.
    QProperty<std::optional<CommandLog::Number>> shownCommand;
    /// Something to tell quietly; empty again once it no longer matters.
    QProperty<QString> notice;

    // What is going on.
    QProperty<std::optional<QString>> activity;
    /// How far git says the running action has come, in its words; empty while it says nothing.
    QProperty<QString> progress;
    /// The running action has been asked to end.
    QProperty<bool> isCancelling{false};
    QProperty<std::optional<QString>> errorMessage;
    /// The command that `errorMessage` tells of, where there is one.
    QProperty<std::optional<CommandLog::Number>> failedCommand;
    QProperty<std::optional<SheetKind>> sheet;
    QProperty<std::optional<Confirmation>> confirmation;
    /// The file that the inspector shows; no inspector without. Views write it.
    QProperty<std::optional<InspectedFile>> inspected;
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

    /// To be called after `selection` was written: brings the history page in line with it. A ref's own commit is
    /// selected and brought into sight.
    void selectionChanged();

    /// Shows 500 commits more, when there are more.
    void loadMoreHistory();
    /// To be called after `historySearch` or `historySearchField` was written: searches once typing has paused.
    void historySearchChanged();
    /// Moves the commit selection by rows; selects the first row when there is none.
    void moveCommitSelection(int rows);
    /// Selects a commit of the page on the way to another, as held keys do: going back does not stop at it.
    void walkToCommit(const std::string& hash);

    /// Shows a commit in the history, wherever the user is now: in the loaded history when that holds it, otherwise in
    /// that of all refs, as far down as it takes. Tells in `notice` when no branch or tag leads to it. A part of a hash
    /// will do. What the user does meanwhile is the newer wish, and wins.
    void showCommit(const std::string& hash);
    /// To the selection before, or again to the one after. What is gone by now is skipped.
    void goBack() { travel(NavigationTrail::Direction::back); }
    void goForward() { travel(NavigationTrail::Direction::forward); }

    /// Every git command that this store ran.
    CommandLog& commandLog() const { return *log_; }

    /// Ends the running action, with all that git has started for it: gently, and after two seconds firmly. What it had
    /// done by then is read; nothing is reported as an error.
    void cancelActivity();

    /// What git, or a program that it started, asks while an action runs: one question at a time, the oldest first. It
    /// goes away when whoever asked does, and when its action ends.
    QProperty<std::optional<SignInPrompt>> prompt;
    /// For a permission, "yes" gives it. A prompt that is not open any more needs no answer.
    void answerPrompt(quint64 id, const QString& text) { signIns_.answer(id, text); }
    /// Refuses this question and all later ones of its action, which then fails in git's words.
    void cancelPrompt(quint64 id);

    // Actions. Each shows what it does in `activity` and its failure in `errorMessage`, and reads the repository again
    // afterwards. While one runs, another is dropped.

    void fetch();
    void pull();
    void push();
    void checkout(const gitkit::GitRef& ref);
    void checkoutCommit(const std::string& hash);
    /// `startPoint` is a full ref name or a hash; HEAD without.
    void createBranch(const std::string& name, const std::optional<std::string>& startPoint,
                      gitkit::AfterCreating after);
    void createTag(const std::string& name, const std::string& target);
    /// Asks, and then deletes a local branch or a tag. Remote branches are not deleted here.
    void confirmDelete(const gitkit::GitRef& ref);
    void merge(const gitkit::GitRef& ref);
    void cherryPick(const std::string& hash);
    void revert(const std::string& hash);

    // Where `inProgress` tells of something. Nothing happens otherwise.

    std::ptrdiff_t conflictCount() const;
    /// Whether git would take a step now: there are no conflicts left.
    bool canContinueOperation() const;
    /// Goes on. A message that the user typed is recorded first when there is something to record; otherwise git takes
    /// the one that it prepared.
    void continueOperation();
    void skipOperation();
    /// Asks first when work would be lost.
    void abortOperation();
    void bisect(gitkit::BisectMark mark);
    void resetBisect();

    void stashSave(const QString& message, gitkit::UntrackedFiles untracked);
    void stashApply(const gitkit::Stash& stash, gitkit::StashUse use);
    void confirmDrop(const gitkit::Stash& stash);
    void reveal(const std::vector<gitkit::FileChange>& files);
    void openInEditor(const std::vector<gitkit::FileChange>& files);

    // Staging. These show no activity, run one after another, and are never held up by a fetch or a push.

    using Files = std::vector<gitkit::FileChange>;
    /// The changed files that are selected, in the order of the status.
    Files selectedFiles() const;
    /// A file's stage state as it will be once what is under way has ended.
    gitkit::StageState shownStageState(const gitkit::FileChange& file) const;
    /// Grows whenever shownStageState() may answer differently.
    QProperty<qint64> stagingGeneration{0};

    /// Stages files; asks first when a conflicted one still holds conflict markers.
    void stage(const Files& files);
    void unstage(const Files& files);
    void stageAll();
    void unstageAll();
    /// Stages or unstages the selected lines of a file's diff; what cannot be applied does nothing.
    void applyToIndex(const std::string& path, const gitkit::ParsedDiff& diff, const std::set<int>& lines,
                      gitkit::PatchDirection direction);
    /// A click on a file's check box; acts on the selection when the file is in it.
    void toggleStage(const gitkit::FileChange& file);
    void toggleStageOfSelection();

    /// Resolves the conflicted ones of these files with one side, whole. Nothing that was edited is lost: it goes to
    /// the Trash.
    void takeSide(const Files& files, gitkit::ConflictSide side);

    static QString discardTitle(const Files& files);
    void confirmDiscard(const Files& files);
    enum class DiscardedPart { hunk, lines };
    /// Asks, and then takes the selected lines of a file's unstaged diff out of the working tree.
    void confirmDiscardPart(const std::string& path, const gitkit::ParsedDiff& diff, const std::set<int>& lines,
                            DiscardedPart part);
    /// Whether the last discard of hunks or lines can be taken back.
    QProperty<bool> canUndoDiscard{false};
    void undoDiscard();

    // Committing.

    bool canCommit() const;
    void commit();
    /// To be called after `amend` was written: fills an empty commit box with the message to amend.
    void amendChanged();
    /// Splits a message into subject and body.
    void fillCommitFields(const QString& message);
    /// Whether the commit box holds just what git has prepared, which is git's to keep.
    bool holdsPreparedMessage() const { return prepared_ && boxText() == *prepared_; }

    /// Has a message written for what is staged, and fills the commit box with it; whether it did. Why not is told in
    /// `errorMessage`. Does nothing while one is being written, or without anything staged.
    QCoro::Task<bool> generateCommitMessage();
    /// Ends the writing, if any; the commit box stays as it is.
    void cancelCommitMessage();
    /// What generateCommitMessage() would send. Throws what keeps it from being sent.
    QCoro::Task<MessageRequest> commitMessageRequest();
    /// Whether the commit box holds a written message as it came, and what stood there before can be brought back.
    QProperty<bool> canUndoMessage{false};
    void undoMessage();

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

    /// Awaits a function over the repository on the worker, with copies of the arguments.
    template <typename Result, typename... Parameters, typename... Arguments>
    BlockingCall<Result> run(Result (*verb)(const gitkit::GitRepository&, Parameters...),
                             Arguments&&... arguments) const
    {
        return BlockingCall<Result>(
            worker_, Worker::Lane::local, alive_,
            [repo = repo_, verb, ... copies = std::decay_t<Arguments>(std::forward<Arguments>(arguments))]() -> Result {
                return verb(repo, copies...);
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

    /// Something that changes the repository, to be run on the worker.
    using Operation = std::function<void(const gitkit::GitRepository&)>;
    struct Action {
        QString title;
        Operation operation;
        Worker::Lane lane = Worker::Lane::local;
        std::function<void()> succeeded = {}; ///< on the main thread, before the refresh
        std::function<bool(const QString& message, gitkit::ErrorKind kind)> failed =
            {}; ///< true when it dealt with the failure
    };
    void perform(Action action);
    QCoro::Task<> performing(Action action);
    void quick(Operation operation);
    QCoro::Task<> quickly(Operation operation);
    BlockingCall<void> runOperation(Worker::Lane lane, gitkit::RunContext context, Operation operation) const;
    std::shared_ptr<ActionRuns> actionRuns();
    void showProgress(const QString& line);
    void fail(const QString& message, std::optional<CommandLog::Number> command = {});
    StoreServices::Failed failing();
    StoreServices::Files absolutePaths(const Files& files) const;

    void deleteBranch(const std::string& branch, const QString& name);
    void confirmForceDelete(const std::string& branch, const QString& name);

    void stageChecked(const Files& files, Operation operation);
    void stageNow(const Files& files, Operation operation);
    QCoro::Task<> stagingAfterMarkerCheck(Files files, Operation operation);
    void showStaging(const Files& files, gitkit::StageState state);
    void forgetShownStaging();
    /// Whether writes are under way that the listed files do not show: their letters must not be acted on.
    bool isListOld() const { return stagingUnderWay_ > 0 || !shownStaging_.empty(); }
    QCoro::Task<> discardingPart(gitkit::PartialChange change);
    std::string commitMessage() const;
    QCoro::Task<> fillingAmendedMessage();
    QCoro::Task<QString> writtenMessage(std::stop_token stop);
    void fillWithWritten(const QString& message);
    void updateMessageUndo();

    void applyOperation(const RepositoryState& read);
    void showPrepared(const QString& message);
    void emptyCommitBox();
    QCoro::Task<> abortingAfterCheck(gitkit::OperationInProgress now);
    void endOperation(const gitkit::OperationInProgress& now, gitkit::OperationStep step);
    void confirmForget(const gitkit::OperationInProgress& now, const QString& problem);

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

    /// A commit that is to be selected as soon as the history that is being loaded holds it.
    struct WantedCommit {
        enum class Arrival { newPlace, samePlace };
        std::optional<std::string> hash; ///< the first row's without: the tip of a ref
        Arrival arrival = Arrival::samePlace;
    };
    void observePlace();
    NavigationPlace place() const;
    void placeChanged();
    qint64 beginNavigation();
    void travel(NavigationTrail::Direction direction);
    QCoro::Task<> travelling(NavigationTrail::Direction direction, qint64 request);
    QCoro::Task<> showingCommit(std::string name, qint64 request);
    bool isGone(const NavigationPlace& place) const;
    bool arrivesAtOnce(const NavigationPlace& place) const;
    void arriveAt(const NavigationPlace& place);
    void loadAsFarAs(const SidebarItem& item, int position, WantedCommit wanted);
    std::optional<std::string> wantedOnPage(const std::vector<HistoryRow>& page, bool filtered) const;
    void selectWanted(const std::string& hash);
    void missWanted();
    void fillPlace();
    void showTipOfRef();
    bool isOnPage(const std::string& hash) const;
    void updateTravel();
    void lookFor(const std::string& hash);
    void tell(const QString& sentence);

    std::shared_ptr<CommandLog> log_ = std::make_shared<CommandLog>();
    gitkit::GitRepository repo_;
    Worker& worker_;
    StoreServices services_;
    Turnstile writing_; ///< writers of the index and the working tree pass one by one
    AliveToken alive_ = std::make_shared<const std::monostate>();

    SignIns signIns_{prompt};
    SignIns::Number actingSignIn_ = 0;                       ///< of the running action
    std::stop_source acting_;                                ///< ends the running action
    std::map<std::string, gitkit::StageState> shownStaging_; ///< by path: what is under way
    int stagingUnderWay_ = 0;
    qint64 finishedWrites_ = 0;
    std::optional<gitkit::PartialDiscard> lastDiscard_;
    struct AmendedMessage {
        std::string bytes; ///< as git has them
        QString subject;
        QString body;
    };
    std::optional<AmendedMessage> amended_; ///< what the commit box was filled with
    struct BoxText {
        QString subject;
        QString body;
        bool operator==(const BoxText&) const = default;
    };
    BoxText boxText() const { return {commitSubject.value(), commitBody.value()}; }
    std::optional<std::filesystem::path> gitDirectory_; ///< this working tree's own
    std::string preparedBytes_;                         ///< the message git has prepared, comments and all
    std::optional<BoxText> prepared_;                   ///< what the commit box was filled with from it
    struct WrittenMessage {
        BoxText before;
        BoxText after;
    };
    std::optional<WrittenMessage> written_; ///< the last one that came
    std::stop_source generating_;
    std::vector<QPropertyNotifier> boxNotifiers_;

    int historyLimit_ = pageSize;
    SidebarItem historyScopeItem_ = SidebarItem::history();
    SidebarItem shownScopeItem_ = SidebarItem::history(); ///< whose history the page is
    qint64 historyToken_ = 0;
    std::unique_ptr<Worker::Delay> historySearchDelay_;

    NavigationTrail trail_{{SidebarItem::workingCopy(), std::nullopt}};
    std::optional<WantedCommit> wanted_;
    qint64 navigationRequest_ = 0;
    bool isFollowing_ = false;   ///< selections change by themselves, not by the user
    bool isWalking_ = false;     ///< the selection changes on the way to another
    bool hasJustWalked_ = false; ///< so the present place is one on the way
    std::unique_ptr<Worker::Delay> walkPause_;
    std::unique_ptr<Worker::Delay> lookupDelay_;
    std::vector<QPropertyNotifier> placeNotifiers_;
    bool isRefreshing_ = false;
    std::optional<RefreshScope> pendingRefresh_;
    QString statusProblem_;  ///< why the last status read failed
    QString listingProblem_; ///< the first failure of the last full pass's other reads
};

} // namespace plovik

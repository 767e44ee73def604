// SPDX-License-Identifier: GPL-3.0-or-later
/// Selecting commits: how soon a commit is on screen beside git's own time for the same reads, and whether a held key
/// is ever kept waiting. selecting LARGE_REPOSITORY

#include "GitKit/parsers/LogParser.h"
#include "GitKit/repository/GitRepository.h"
#include "app/ui/widgets/Theme.h"
#include "bench/window/OpenWindow.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QKeyEvent>
#include <QTemporaryDir>
#include <QTextEdit>

#include <algorithm>
#include <functional>
#include <utility>

namespace {

using namespace plovik;
using namespace Qt::StringLiterals;

constexpr int keys = 500;
constexpr std::chrono::milliseconds keyRepeat{33};
constexpr int rounds = 15;

double percentile(std::vector<double> values, double share)
{
    std::ranges::sort(values);
    return values.at(static_cast<std::size_t>(share * static_cast<double>(values.size() - 1)));
}

/// What the header and the files are read from.
double gitMilliseconds(const std::filesystem::path& repository, const std::string& hash)
{
    const auto start = Clock::now();
    runGit(repository, {"show", gitkit::LogParser::detailFormat, "--name-status", "-z", "-M", "--first-parent",
                        hash + "^{commit}", "--"});
    return millisecondsSince(start);
}

/// Commits of `files` files each, one after another.
void makeWide(const std::filesystem::path& repository, int commits, int files)
{
    runGit(repository, {"init", "-q", "-b", "main"});
    std::string stream;
    for (int commit = 0; commit < commits; ++commit) {
        const std::string subject = "Touch everything for the time " + std::to_string(commit);
        stream += "commit refs/heads/main\ncommitter Ada <ada@example.org> " + std::to_string(1'700'000'000 + commit) +
                  " +0000\ndata " + std::to_string(subject.size()) + "\n" + subject + "\n";
        for (int file = 0; file < files; ++file) {
            const std::string text = "line " + std::to_string(file) + " of " + std::to_string(commit) + "\n";
            stream += "M 100644 inline folder" + std::to_string(file % 50) + "/file" + std::to_string(commit) + "-" +
                      std::to_string(file) + ".txt\ndata " + std::to_string(text.size()) + "\n" + text;
        }
    }
    runGit(repository, {"fast-import", "--quiet"}, stream);
    runGit(repository, {"reset", "-q", "--hard"});
}

/// A window with its history in sight.
class Window : public OpenWindow {
public:
    explicit Window(const std::filesystem::path& repository) : OpenWindow(repository), repo(repository)
    {
        store.window().select(SidebarItem::history());
        store.snapshot().refresh(RefreshScope::full);
        spinUntil([this] { return store.snapshot().hasLoaded.value() && !store.history().history.value().empty(); });
        list = named<QAbstractItemView>(u"History"_s);
        list->setFocus();
        // The detail's widgets may be made with the first commit.
        store.window().selectCommit(store.history().history.value().front().commit.hash);
        settle();
        message = named<QWidget>(u"Commit Message"_s);
        files = named<QAbstractItemView>(u"Commit Files"_s);
        list->viewport()->installEventFilter(this);
        files->viewport()->installEventFilter(this);
    }

    /// Whether the detail shows this commit: its subject, and all of its files.
    bool shows(const gitkit::Commit& commit, const gitkit::CommitDetail& detail) const
    {
        const auto* const text = qobject_cast<const QTextEdit*>(message);
        if (text && !text->toPlainText().contains(QString::fromStdString(commit.subject)))
            return false;
        const QAbstractItemModel& model = *files->model();
        if (store.window().selectedCommit.value() != commit.hash ||
            model.rowCount() != static_cast<int>(detail.files.size()))
            return false;
        const QVariant name = model.index(0, 0).data(Qt::AccessibleTextRole);
        return name.toString().contains(QString::fromStdString(detail.files.front().path));
    }

    double selectingMilliseconds(const gitkit::Commit& commit)
    {
        const gitkit::CommitDetail detail = repo.commitDetail(commit.hash, gitkit::CommitKind::ordinary);
        settle();
        isDrawn = false;
        const auto start = Clock::now();
        awaited = [this, &commit, &detail] { return shows(commit, detail); };
        store.window().selectCommit(commit.hash);
        spinUntil([this] { return isDrawn; });
        const double taken = millisecondsSince(start);
        awaited = nullptr;
        return taken;
    }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() != QEvent::Paint)
            return false;
        if (watched == list->viewport())
            ++listPaints;
        else if (awaited && awaited())
            isDrawn = true; // once the events at hand are dealt with
        return false;
    }

    gitkit::GitRepository repo;
    QAbstractItemView* list = nullptr;
    QWidget* message = nullptr;
    QAbstractItemView* files = nullptr;
    std::function<bool()> awaited; ///< asked when the files are drawn
    bool isDrawn = false;
    int listPaints = 0;
};

void measureSelecting(const char* what, Window& window)
{
    std::vector<double> git, ours;
    for (std::size_t round = 0; round < rounds; ++round) {
        const gitkit::Commit commit = window.store.history()
                                          .history.value()
                                          .at(1 + round % (window.store.history().history.value().size() - 1))
                                          .commit;
        if (commit.parents.size() > 1)
            continue;
        gitMilliseconds(window.store.root(), commit.hash);
        git.push_back(gitMilliseconds(window.store.root(), commit.hash));
        ours.push_back(window.selectingMilliseconds(commit));
    }
    const double alone = percentile(git, 0.5), shown = percentile(ours, 0.5);
    std::printf("\nSelecting %s (medians of %zu)\n", what, ours.size());
    row("git's own reads", alone);
    row("selected to header and files on screen", shown,
        std::to_string(static_cast<int>(shown - alone + 0.5)) + " ms more than git, at most 20 ms");
}

void measureHolding(Window& window)
{
    window.store.history().loadMoreHistory();
    window.settle();
    window.store.window().selectCommit(window.store.history().history.value().front().commit.hash);
    window.settle();
    window.worker.posted = 0;
    window.listPaints = 0;

    std::vector<double> handling, used, late, drawn;
    const auto begin = Clock::now();
    int pressed = 0;
    double usedBefore = usedMilliseconds();
    for (int key = 0; key < keys; ++key) {
        const auto due = begin + (key + 1) * keyRepeat;
        Window::spinUntil([due] { return Clock::now() >= due; });
        late.push_back(millisecondsSince(due));
        used.push_back(usedMilliseconds() - std::exchange(usedBefore, usedMilliseconds()));
        const int paintsBefore = window.listPaints;
        const auto start = Clock::now();
        QKeyEvent press(QEvent::KeyPress, Qt::Key_Down, Qt::NoModifier, QString(), true);
        QApplication::sendEvent(window.list, &press);
        handling.push_back(millisecondsSince(start));
        Window::spinUntil([&] { return window.listPaints > paintsBefore; });
        drawn.push_back(millisecondsSince(due));
        pressed += window.store.window().selectedCommit.value() ==
                           window.store.history().history.value().at(static_cast<std::size_t>(key) + 1).commit.hash
                       ? 1
                       : 0;
    }
    const int loads = window.worker.posted;
    const gitkit::Commit last = window.store.history().history.value().at(keys).commit;
    const gitkit::CommitDetail detail = window.repo.commitDetail(last.hash, gitkit::CommitKind::ordinary);
    const auto released = Clock::now();
    Window::spinUntil([&] { return window.shows(last, detail); });

    std::printf("\nHolding Down through %d commits at 30 keys a second, large repository\n", keys);
    const auto three = [](const char* what, const std::vector<double>& values, const std::string& limit = {}) {
        std::printf("  %-38s median %6.2f ms   p99 %6.2f ms   worst %6.2f ms  %s\n", what, percentile(values, 0.5),
                    percentile(values, 0.99), percentile(values, 1), limit.c_str());
    };
    three("in the key's own handler", handling);
    three("the window's processor time per key", used, "with all that the key led to");
    three("key due until it is heard", late);
    three("key due until the row is drawn", drawn, "a key comes every 33 ms");
    std::printf("  %d of %d keys had moved the selection before the next; git was asked %d times\n", pressed, keys,
                loads);
    row("last key to its commit in the detail", millisecondsSince(released), "the last wins");
}

/// The commit that stands at the very end of a long history.
void measureShowing(Window& window)
{
    const std::filesystem::path& repository = window.store.root();
    const Strings walk{"--date-order", "--branches", "--remotes", "--tags", "HEAD", "--"};
    Strings positions{"rev-list"}, page{"log", "--format=%H%x00%P%x00%an%x00%ae%x00%at%x00%D%x00%s"};
    positions.insert(positions.end(), walk.begin(), walk.end());
    page.insert(page.end(), walk.begin(), walk.end());
    const std::string list = window.repo.git(positions);
    const std::string oldest = list.substr(list.rfind('\n', list.size() - 2) + 1).substr(0, 40);
    auto start = Clock::now();
    runGit(repository, positions);
    runGit(repository, page);
    const double git = millisecondsSince(start);

    start = Clock::now();
    auto turn = start;
    double longest = 0, usedBefore = usedMilliseconds(), mostUsed = 0;
    window.store.history().showCommit(oldest);
    Window::spinUntil([&] {
        longest = std::max(longest, millisecondsSince(turn));
        turn = Clock::now();
        mostUsed = std::max(mostUsed, usedMilliseconds() - usedBefore);
        usedBefore = usedMilliseconds();
        return window.store.window().selectedCommit.value() == oldest;
    });
    std::printf("\nShowing the oldest commit, %zu rows down, large repository\n",
                window.store.history().history.value().size());
    row("git finding it and listing what stands above it", git);
    row("asked for to selected", millisecondsSince(start));
    row("longest time in which the window heard nothing", longest);
    row("most processor time that the window used at a stretch", mostUsed);
}

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    plovik::Theme::apply(plovik::Theme::light(), application);
    if (argc != 2) {
        std::fprintf(stderr, "Usage: selecting LARGE_REPOSITORY\n");
        return 2;
    }
    const QTemporaryDir folder;
    const std::filesystem::path wide = folder.path().toStdString();
    makeWide(wide, 4, 5000);
    {
        Window window{std::filesystem::path(argv[1])};
        measureSelecting("an ordinary commit, large repository", window);
        measureHolding(window);
        measureShowing(window);
    }
    {
        Window window{wide};
        measureSelecting("a commit of 5,000 files", window);
    }
    return 0;
}

// SPDX-License-Identifier: GPL-3.0-or-later
/// How soon a window shows the history of a large repository, and what it costs to keep it shown, compared with git:
/// reading REPOSITORY
///
/// Makes one commit in the repository and takes it back.

#include "app/ui/history/HistoryList.h"
#include "app/ui/widgets/Theme.h"
#include "bench/window/ListeningApplication.h"
#include "bench/window/OpenWindow.h"

#include <algorithm>
#include <fstream>
#include <memory>

namespace {

using namespace plovik;

constexpr int rounds = 5;
constexpr const char* format = "--format=%H%x00%P%x00%an%x00%ae%x00%at%x00%ct%x00%s";

double takeLongest() { return ListeningApplication::takeLongest().used; }

double median(std::vector<double> values)
{
    std::ranges::sort(values);
    return values[values.size() / 2];
}

template <typename Step>
double gitTime(const Step& step)
{
    std::vector<double> times;
    for (int round = 0; round < rounds; ++round) {
        const auto start = Clock::now();
        step();
        times.push_back(millisecondsSince(start));
    }
    return median(times);
}

double memoryMib()
{
    std::ifstream rollup("/proc/self/smaps_rollup");
    for (std::string word; rollup >> word;) {
        double kib = 0;
        if (word == "Pss:" && rollup >> kib)
            return kib / 1024;
    }
    return 0;
}

void memory(const char* what) { std::printf("  %-58s%9.1f MiB\n", what, memoryMib()); }

const HistoryRows& rowsOf(const OpenWindow& window) { return window.store.history().history.value(); }

/// Refreshes until everything is read again.
void refresh(OpenWindow& window)
{
    const qint64 generation = window.store.snapshot().generation.value();
    window.store.snapshot().refresh(RefreshScope::full);
    OpenWindow::spinUntil([&] {
        return window.store.snapshot().generation.value() > generation &&
               window.worker.underWay == window.worker.walking;
    });
}

void measureOpening(const std::filesystem::path& repository)
{
    std::vector<double> first;
    std::vector<double> settled;
    for (int round = 0; round < rounds; ++round) {
        OpenWindow window(repository);
        window.store.window().select(SidebarItem::history());
        const auto start = Clock::now();
        window.store.snapshot().refresh(RefreshScope::full);
        OpenWindow::spinUntil([&] { return !rowsOf(window).empty(); });
        first.push_back(millisecondsSince(start));
        OpenWindow::spinUntil([&] { return window.store.snapshot().hasLoaded.value(); });
        settled.push_back(millisecondsSince(start));
    }
    row("git: first page in default order, and show-ref", gitTime([&] {
            runGit(repository, {"log", "-n", "501", "-z", format, "--branches", "--remotes", "--tags", "HEAD", "--"});
            runGit(repository, {"show-ref", "--head", "--dereference"});
        }));
    row("first rows in the list after the refresh begins", median(first));
    row("everything read but what branches are ahead and behind", median(settled));
    row("longest pause of the main thread", takeLongest(), "at most 50");
}

void measureRefresh(OpenWindow& window)
{
    const std::filesystem::path root = window.store.snapshot().root();
    refresh(window);
    takeLongest();
    row("git: status, show-ref, for-each-ref, stash list, remote", gitTime([&] {
            runGit(root, {"status", "--porcelain=v2", "--branch", "--no-ahead-behind", "-z"});
            runGit(root, {"show-ref", "--head", "--dereference"});
            runGit(root, {"for-each-ref", "--format=%(refname) %(objectname) %(upstream)"});
            runGit(root, {"stash", "list"});
            runGit(root, {"remote"});
        }));
    std::vector<double> times;
    for (int round = 0; round < rounds; ++round) {
        const auto start = Clock::now();
        refresh(window);
        times.push_back(millisecondsSince(start));
    }
    row("full refresh, nothing changed", median(times), "at most git + 10");
}

void measureCommit(OpenWindow& window)
{
    const std::filesystem::path root = window.store.snapshot().root();
    const std::string before = rowsOf(window).hashAt(0);
    runGit(root, {"commit", "--allow-empty", "-q", "-m", "A commit of the benchmark"});
    const auto start = Clock::now();
    window.store.snapshot().refresh(RefreshScope::full);
    OpenWindow::spinUntil([&] { return rowsOf(window).hashAt(0) != before; });
    row("a commit: its row after the refresh begins", millisecondsSince(start), "at most 300");
    runGit(root, {"reset", "-q", "--soft", "HEAD~1"});
    refresh(window);
}

void measureEnd(OpenWindow& window)
{
    const std::filesystem::path root = window.store.snapshot().root();
    takeLongest();
    const auto start = Clock::now();
    window.store.history().readToEnd();
    OpenWindow::spinUntil([&] { return !window.store.history().hasUnreadRows(); });
    OpenWindow::spinUntil([&] { return window.store.window().selectedCommit.value().has_value(); });
    const double taken = millisecondsSince(start);
    const double git = [&] {
        const auto begin = Clock::now();
        runGit(root, {"log", format, "-z", "--branches", "--remotes", "--tags", "HEAD", "--"});
        return millisecondsSince(begin);
    }();
    row("git: the whole log, read and thrown away", git);
    row("End: the last row selected", taken, "at most twice git");
    std::printf("  %-58s%9zu\n", "rows", rowsOf(window).size());
    memory("memory with all rows");
    row("longest pause of the main thread", takeLongest(), "at most 50");
    measureCommit(window);
    row("longest pause of the main thread, a commit with all rows", takeLongest(), "at most 50");
}

/// Ticks a new file while a search for a path goes on and three windows refresh.
void measureTick(OpenWindow& window)
{
    const std::filesystem::path root = window.store.snapshot().root();
    const std::string path = "plovik-bench-ticked-file.txt";
    std::ofstream(root / path) << "new\n";
    OpenWindow second(root);
    OpenWindow third(root);
    refresh(window);
    std::vector<double> ticked;
    std::vector<double> git;
    for (int round = 0; round < rounds; ++round) {
        window.store.history().search(QStringLiteral("no-such-file-in-any-commit"), gitkit::HistoryFilter::Field::path);
        OpenWindow::spinUntil([&] { return window.worker.walking > 0; });
        for (OpenWindow* other : {&second, &third, &window})
            other->store.snapshot().refresh(RefreshScope::full);
        const auto start = Clock::now();
        const bool isStaged = round % 2 == 0;
        const gitkit::FileChange* const file = window.store.snapshot().status.value().files.find(path);
        window.store.staging().toggleStage(gitkit::FileChange(*file));
        OpenWindow::spinUntil([&] {
            const gitkit::FileChange* const now = window.store.snapshot().status.value().files.find(path);
            return now && (now->stageState() == gitkit::StageState::full) == isStaged;
        });
        ticked.push_back(millisecondsSince(start));
        for (OpenWindow* other : {&second, &third})
            other->store.snapshot().refresh(RefreshScope::full);
        const auto begin = Clock::now();
        runGit(root, {"add", "--", path});
        runGit(root, {"status", "--porcelain=v2", "--branch", "--no-ahead-behind", "-z", "--untracked-files=all"});
        git.push_back(millisecondsSince(begin));
        if (!isStaged)
            runGit(root, {"reset", "-q", "--", path});
    }
    window.store.history().search({}, gitkit::HistoryFilter::Field::path);
    row("git: add and status, during the same", median(git));
    row("a file ticked during a path search and three refreshes", median(ticked), "at most git + 20");
    runGit(root, {"reset", "-q", "--", path});
    std::filesystem::remove(root / path);
    refresh(window);
}

} // namespace

int main(int argc, char** argv)
{
    ListeningApplication application(argc, argv);
    Theme::apply(Theme::light(), application);
    if (argc != 2) {
        std::fprintf(stderr, "reading REPOSITORY\n");
        return 1;
    }
    std::printf("\nReading the history\n");
    measureOpening(argv[1]);
    OpenWindow window(argv[1]);
    window.store.window().select(SidebarItem::history());
    refresh(window);
    memory("memory with the first page");
    measureRefresh(window);
    measureCommit(window);
    row("longest pause of the main thread", takeLongest(), "at most 50");
    measureTick(window);
    measureEnd(window);
    return 0;
}

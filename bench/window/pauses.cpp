// SPDX-License-Identifier: GPL-3.0-or-later
/// How long the main thread hears nothing while a window shows 100,000 changed files and 50,000 refs, step by step.
/// pauses

#include "app/ui/widgets/Theme.h"
#include "bench/window/ListeningApplication.h"
#include "bench/window/OpenWindow.h"

#include <QAbstractItemView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTreeView>

#include <algorithm>

namespace {

using namespace plovik;
using namespace Qt::StringLiterals;

constexpr int fileCount = 100'000;
constexpr int untrackedCount = 5'000;
constexpr int refCount = 50'000;
constexpr int commitCount = 2'000;
constexpr double longestPause = 50;

std::string pathOf(int file)
{
    return "module" + std::to_string(file % 40) + "/part" + std::to_string(file % 1000) + "/source-file-" +
           std::to_string(file) + ".txt";
}

/// Tags, branches and branches of a remote, most of them in folders.
std::string refName(int ref)
{
    const std::string folder = std::to_string(ref % 200);
    const std::string change = "topic/" + folder + "/change-" + std::to_string(ref);
    if (ref % 5 < 2)
        return "refs/tags/v" + folder + "." + std::to_string(ref);
    return (ref % 5 < 3 ? "refs/heads/" : "refs/remotes/origin/") + change;
}

/// A history that ends in a commit of files of which none is there, which status lists as deleted; and new files.
void makeFiles(const std::filesystem::path& repository)
{
    runGit(repository, {"init", "-q", "-b", "main"});
    std::string stream;
    for (int commit = 0; commit <= commitCount; ++commit)
        stream += "commit refs/heads/main\nmark :" + std::to_string(commit + 1) + "\ncommitter Ada <ada@example.org> " +
                  std::to_string(1'700'000'000 + commit) + " +0000\ndata 4\nMany\n";
    for (int file = 0; file < fileCount - untrackedCount; ++file)
        stream += "M 100644 inline " + pathOf(file) + "\ndata 5\ntext\n\n";
    for (int ref = 0; ref < refCount; ++ref)
        stream += "reset " + refName(ref) + "\nfrom :" + std::to_string(1 + ref % commitCount) + "\n\n";
    runGit(repository, {"fast-import", "--quiet"}, stream);
    runGit(repository, {"pack-refs", "--all"});
    runGit(repository, {"remote", "add", "origin", "https://example.org/many.git"});
    runGit(repository, {"read-tree", "HEAD"});
    for (int file = 0; file < untrackedCount; ++file) {
        const std::filesystem::path path = repository / "new" / std::to_string(file % 100);
        std::filesystem::create_directories(path);
        std::fclose(std::fopen((path / std::to_string(file)).c_str(), "w"));
    }
}

class Window : public OpenWindow {
public:
    using OpenWindow::OpenWindow;

    /// Does something and follows the window until all that came of it is shown. Shows the longest event, and the most
    /// processor time between two chances to hear a key; other programs do not count in the latter.
    template <typename Step>
    void measure(const char* what, const Step& step)
    {
        QTimer clock;
        clock.start(5);
        QTimer::singleShot(0, this, step);
        ListeningApplication::takeLongest();
        double used = 0;
        for (auto since = Clock::now(); millisecondsSince(since) < 600;) {
            const int before = worker.posted;
            const double usedBefore = usedMilliseconds();
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            used = std::max(used, usedMilliseconds() - usedBefore);
            if (worker.posted != before || worker.underWay > 0 || stepsLeft > 0)
                since = Clock::now();
        }
        std::printf("  %-58s%9.1f ms  %7.1f ms of a processor%s\n", what, ListeningApplication::takeLongest().elapsed,
                    used, used > longestPause ? "  TOO LONG" : "");
        std::fflush(stdout);
    }

    /// Presses a key again and again, as a user does, and measures the worst.
    void measureKeys(const char* what, QWidget& target, const QString& keys)
    {
        measureEach(what, static_cast<int>(keys.size()),
                    [&](int place) { press(target, Qt::Key_A, Qt::NoModifier, QString(keys[place])); });
    }

    template <typename Step>
    void measureEach(const char* what, int times, const Step& step)
    {
        stepsLeft = times;
        QTimer repeat;
        repeat.callOnTimeout([&] {
            if (stepsLeft > 0)
                step(times - stepsLeft--);
        });
        measure(what, [&] { repeat.start(33); });
    }

    static void press(QWidget& target, int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier,
                      const QString& text = {})
    {
        QKeyEvent down(QEvent::KeyPress, key, modifiers, text);
        QApplication::sendEvent(&target, &down);
        QKeyEvent up(QEvent::KeyRelease, key, modifiers, text);
        QApplication::sendEvent(&target, &up);
    }

    static void click(QWidget& target, const QPoint& point)
    {
        for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
            QMouseEvent event(type, QPointF(point), QPointF(target.mapToGlobal(point)), Qt::LeftButton, Qt::LeftButton,
                              Qt::NoModifier);
            QApplication::sendEvent(&target, &event);
        }
    }

    int stepsLeft = 0;
};

void measureFiles(Window& window)
{
    auto& list = *window.named<QAbstractItemView>(u"Changed Files"_s);
    auto& subject = *window.named<QLineEdit>(u"Commit Subject"_s);
    auto& body = *window.named<QPlainTextEdit>(u"Commit Body"_s);
    const auto row = [&list](int number) { return list.visualRect(list.model()->index(number, 0)); };

    window.measureKeys("subject typed", subject, u"A subject for all of it"_s);
    window.measureKeys("body typed", body, u"And a body that says why"_s);
    list.setFocus();
    window.measureKeys("a file looked for by its name", list, u"none"_s);
    window.measureEach("scrolled by pages", 40, [&](int) { Window::press(list, Qt::Key_PageDown); });
    window.measure("scrolled to the end", [&] { Window::press(list, Qt::Key_End); });
    window.measure("scrolled back", [&] { Window::press(list, Qt::Key_Home); });
    window.measure("a file selected", [&] { Window::click(*list.viewport(), row(3).center()); });
    window.measure("a file ticked", [&] { Window::click(*list.viewport(), row(2).topLeft() + QPoint(23, 14)); });
    window.measure("a selected file ticked",
                   [&] { Window::click(*list.viewport(), row(3).topLeft() + QPoint(23, 14)); });
    window.measure("all files selected", [&] { list.selectAll(); });
    window.measure("refreshed with all files selected", [&] { window.store.snapshot().refresh(RefreshScope::status); });
    window.measure("one file selected instead", [&] { Window::click(*list.viewport(), row(5).center()); });
    window.measure("all staged", [&] { window.named<QPushButton>(u"Stage All"_s)->click(); });
    window.measureKeys("subject typed with all staged", subject, u"More"_s);
    window.measure("all unstaged", [&] { window.named<QPushButton>(u"Unstage All"_s)->click(); });
    list.selectAll();
    window.measure("all selected files staged by the space bar", [&] { Window::press(list, Qt::Key_Space); });
    window.measure("all selected files unstaged by the space bar", [&] { Window::press(list, Qt::Key_Space); });
    Window::click(*list.viewport(), row(5).center());
}

void measureRefs(Window& window)
{
    auto& tree = *window.named<QAbstractItemView>(u"Sidebar"_s);
    auto& filter = *window.named<QLineEdit>(u"Filter Refs"_s);
    window.measureKeys("refs filtered", filter, u"change-12"_s);
    window.measure("the filter cleared", [&] { filter.clear(); });
    window.measureEach("the sidebar scrolled by pages", 40, [&](int) { Window::press(tree, Qt::Key_PageDown); });
    window.measure("the sidebar scrolled to the end", [&] { Window::press(tree, Qt::Key_End); });
    const auto open = [&tree](const char* title, bool opens) {
        for (int row = 0; row < tree.model()->rowCount(); ++row) {
            const QModelIndex group = tree.model()->index(row, 0);
            if (group.data().toString() == QLatin1String(title))
                static_cast<QTreeView&>(tree).setExpanded(group, opens);
        }
    };
    window.measure("the tags opened", [&] { open("TAGS", true); });
    window.measure("refreshed with everything open", [&] { window.store.snapshot().refresh(RefreshScope::full); });
    runGit(window.store.root(), {"branch", "made-elsewhere"});
    window.measure("a branch made elsewhere shown", [&] { window.store.snapshot().refresh(RefreshScope::full); });
    window.measure("the tags closed", [&] { open("TAGS", false); });
    window.measure("the history of a ref shown",
                   [&] { window.store.window().select(SidebarItem::ref("refs/tags/v0.49800")); });
    window.measure("the working copy shown again", [&] { window.store.window().select(SidebarItem::workingCopy()); });
}

} // namespace

int main(int argc, char** argv)
{
    ListeningApplication application(argc, argv);
    plovik::Theme::apply(plovik::Theme::light(), application);
    const QTemporaryDir folder;
    const std::filesystem::path repository = folder.path().toStdString();
    makeFiles(repository);

    std::printf("\nLongest pause of the main thread, %d changed files and %d refs, at most %.0f ms\n", fileCount,
                refCount, longestPause);
    Window window(repository);
    window.store.window().select(SidebarItem::workingCopy());
    window.settle();
    window.measure("files and refs shown", [&] { window.store.snapshot().refresh(RefreshScope::full); });
    window.measure("refreshed, nothing changed", [&] { window.store.snapshot().refresh(RefreshScope::full); });
    measureFiles(window);
    measureRefs(window);
    return 0;
}

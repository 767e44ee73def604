// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/app/EventWait.h"
#include "tests/app/PaintedTexts.h"
#include "tests/store/ManualWorker.h"
#include "tests/support/TestRepository.h"

#include "app/settings/Settings.h"
#include "app/ui/commit/AllFilesFinder.h"
#include "app/ui/commit/AllFilesPane.h"
#include "app/ui/commit/AllFilesView.h"
#include "app/ui/commit/CommitDetailView.h"
#include "app/ui/commit/CommitFilesList.h"
#include "app/ui/commit/FileBar.h"
#include "app/ui/commit/FileDiff.h"
#include "app/ui/diff/DiffSectionView.h"
#include "app/ui/diff/DiffView.h"

#include <QApplication>
#include <QClipboard>
#include <QScrollBar>

#include <gtest/gtest.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace plovik {
namespace {

constexpr int files = 300;
/// Three heights of the view, filled with the lowest diffs there are.
constexpr int mostHeld = 24;

struct AllFilesTest : testing::Test {
    TestRepository repo;
    ManualWorker worker;
    RepositoryStore store{repo.path(), worker};
    std::unique_ptr<CommitDetailView> view;

    AllFilesTest() { Settings::shared().set(settings::commitShowsAllFiles, true); }
    ~AllFilesTest() override { Settings::shared().set(settings::commitShowsAllFiles, false); }

    static std::string nameOf(int file) { return "f" + std::to_string(1000 + file); }

    void open()
    {
        for (int file = 0; file < files; ++file) {
            std::string text;
            for (int line = 0; line < 3 + file % 40; ++line)
                text += "line " + std::to_string(line) + "\n";
            repo.write(nameOf(file), text + (file % 100 == 50 ? "needle needle\n" : ""));
        }
        repo.commit("many");
        store.snapshot().refresh(RefreshScope::full);
        worker.finishAll();
        view = std::make_unique<CommitDetailView>(store, gitkit::CommitKind::ordinary);
        view->resize(1200, 600);
        view->show();
        store.window().selectCommit(repo.head());
        settle();
    }
    void settle()
    {
        QApplication::processEvents();
        worker.finishAll();
        QApplication::processEvents();
        worker.finishAll();
    }
    AllFilesView& all() const { return view->findChild<AllFilesPane*>()->view(); }
    /// Returns where a file's bar stands in the view, if it is in sight.
    std::optional<int> barTop(int file) const
    {
        for (const FileBar* const bar : all().findChildren<FileBar*>()) {
            if (bar->isVisible() && bar->accessibleName() == QString::fromStdString(nameOf(file)))
                return bar->y();
        }
        return {};
    }
    CommitFilesList& list() const { return *view->findChild<CommitFilesList*>(); }
};

TEST_F(AllFilesTest, AreReadNearWhatIsInSightAndDroppedFarFromIt)
{
    open();
    EXPECT_EQ(barTop(0), 0);
    ASSERT_NE(all().diffOf(0), nullptr);
    EXPECT_EQ(all().diffOf(0)->controller().diff().document().rowCount(), 4);
    EXPECT_EQ(all().diffOf(100), nullptr);
    QScrollBar& bar = *all().verticalScrollBar();
    for (int step = 0; bar.value() < bar.maximum(); ++step) {
        bar.setValue(bar.value() + 500);
        settle();
        ASSERT_LE(all().diffsHeld(), mostHeld);
        ASSERT_LT(step, 1000);
    }
    EXPECT_EQ(all().diffOf(0), nullptr);
    ASSERT_NE(all().diffOf(files - 1), nullptr);
    EXPECT_EQ(list().currentFile()->path, nameOf(static_cast<int>(all().currentFile())));
}

TEST_F(AllFilesTest, StayInPlaceWhileHeightsBecomeKnownAndTheListLeadsAndFollows)
{
    open();
    list().setCurrentFile(200);
    EXPECT_EQ(barTop(200), 0);
    settle();
    EXPECT_EQ(barTop(200), 0) << "what was read above has moved nothing";
    all().verticalScrollBar()->setValue(all().verticalScrollBar()->value() + 40);
    EXPECT_EQ(barTop(200), 0) << "the bar stays while its diff scrolls by";
    all().verticalScrollBar()->setValue(all().verticalScrollBar()->value() - 100);
    EXPECT_EQ(list().currentFile()->path, nameOf(199));
    settle();
    EXPECT_NE(barTop(199), std::nullopt);
    EXPECT_EQ(list().currentFile()->path, nameOf(199));
}

TEST_F(AllFilesTest, FoldAndOpenAndAreWalkedThroughAndCopied)
{
    open();
    const auto barOf = [&](int file) {
        const auto bars = all().findChildren<FileBar*>();
        return *std::ranges::find(bars, QString::fromStdString(nameOf(file)), &QWidget::accessibleName);
    };
    QApplication::setLayoutDirection(Qt::RightToLeft);
    const std::vector<test::PaintedText> painted = test::paintedTexts(*barOf(0));
    QApplication::setLayoutDirection(Qt::LeftToRight);
    const auto path = std::ranges::find(painted, QString::fromStdString(nameOf(0)), &test::PaintedText::text);
    ASSERT_NE(path, painted.end());
    EXPECT_LT(path->place.left(), 100) << "a bar is read from left to right, as the code below it";
    const std::optional<int> before = barTop(1);
    barOf(0)->click();
    EXPECT_EQ(barTop(1), FileBar::barHeight());
    EXPECT_EQ(all().diffOf(0), nullptr);
    barOf(0)->click();
    settle();
    EXPECT_EQ(barTop(1), before);

    all().nextChange();
    all().nextChange();
    settle();
    EXPECT_TRUE(all().diffOf(1)->controller().wasWalked()) << "from one file to the next";
    EXPECT_FALSE(all().diffOf(0)->controller().wasWalked());

    all().diffOf(1)->controller().selectAll();
    list().setCurrentFile(250);
    settle();
    ASSERT_NE(all().diffOf(1), nullptr) << "a selection is not dropped";
    all().copy();
    EXPECT_TRUE(QGuiApplication::clipboard()->text().contains(u"line 0\nline 1"_s));
    all().foldAll(true);
    settle();
    EXPECT_EQ(all().diffsHeld(), 0);
}

TEST_F(AllFilesTest, AllLinesThatWereAskedForComeWhateverElseIsLookedAt)
{
    std::string longText;
    for (int line = 0; line < gitkit::ParsedDiff::shownLines + 100; ++line)
        longText += "line " + std::to_string(line) + "\n";
    repo.write("a1", longText).write("a2", longText);
    open();
    const auto rows = [&](std::size_t file) { return all().diffOf(file)->controller().diff().document().rowCount(); };
    const auto showAll = [&](std::size_t file) {
        list().setCurrentFile(file);
        settle();
        ASSERT_TRUE(all().diffOf(file));
        ASSERT_LE(rows(file), gitkit::ParsedDiff::shownLines);
        all().diffOf(file)->controller().selectAll(); // so that it stays in memory
        Q_EMIT all().diffOf(file)->controller().allLinesRequested();
    };
    showAll(0);
    list().setCurrentFile(200);
    settle();
    list().setCurrentFile(0);
    settle();
    EXPECT_GT(rows(0), gitkit::ParsedDiff::shownLines) << "where another file was looked at meanwhile";
    showAll(1);
    all().verticalScrollBar()->setValue(0);
    settle();
    list().setCurrentFile(1);
    settle();
    EXPECT_GT(rows(1), gitkit::ParsedDiff::shownLines);
}

TEST_F(AllFilesTest, AreSearchedBeyondThoseInMemory)
{
    open();
    auto& finder = *view->findChild<AllFilesFinder*>();
    finder.search({u"NEEDLE"_s});
    settle();
    EXPECT_FALSE(finder.isSearching());
    EXPECT_EQ(finder.count(), 6);
    EXPECT_EQ(finder.current(), 0);
    EXPECT_NE(barTop(50), std::nullopt);
    for (const int expected : {1, 2, 3, 4, 5, 0}) {
        finder.step(1);
        settle();
        EXPECT_EQ(finder.current(), expected);
    }
    finder.step(-1);
    settle();
    EXPECT_EQ(finder.current(), 5);
    EXPECT_NE(barTop(250), std::nullopt);
    finder.stop();
    EXPECT_EQ(finder.count(), 0);
}

} // namespace
} // namespace plovik

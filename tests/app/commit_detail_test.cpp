#include "tests/store/ManualWorker.h"
#include "tests/support/TestRepository.h"

#include "app/views/commit/CommitDetailView.h"
#include "app/views/commit/CommitFilesList.h"
#include "app/views/diff/DiffSectionView.h"
#include "app/views/diff/DiffView.h"

#include <QLabel>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace plovik {
namespace {

using gitkit::GitRepository;

struct CommitDetailTest : testing::Test {
    TestRepository repo;
    ManualWorker worker;
    RepositoryStore store{repo.path(), worker};

    void load()
    {
        store.refresh(RefreshScope::full);
        worker.finishAll();
    }

    std::unique_ptr<CommitDetailView> show(GitRepository::CommitKind kind)
    {
        auto view = std::make_unique<CommitDetailView>(store, kind);
        view->resize(1000, 500);
        view->show();
        worker.finishAll();
        return view;
    }

    static QStringList paths(const CommitDetailView& view)
    {
        QStringList list;
        for (const auto& file : view.findChild<CommitFilesList*>()->files())
            list << QString::fromStdString(file.path);
        return list;
    }

    /// The diff's name and lines; empty when none is shown.
    static QString shownDiff(const CommitDetailView& view)
    {
        const auto* diff = view.findChild<DiffView*>();
        if (!diff->isVisible() || diff->sections().empty())
            return {};
        return diff->sections().front()->accessibleName() + u": "_s + diff->sections().front()->plainText();
    }

    static bool says(const CommitDetailView& view, const QString& sentence)
    {
        const auto labels = view.findChildren<QLabel*>();
        return std::ranges::any_of(
            labels, [&](const QLabel* label) { return label->isVisible() && label->text() == sentence; });
    }
};

TEST_F(CommitDetailTest, listsTheFilesOfACommitAndShowsTheDiffOfTheCurrentOne)
{
    repo.write("a", "1\n").write("b", "1\n").commit("one").write("a", "2\n").git({"mv", "b", "c"}).commit("two");
    load();
    store.selectedCommit = store.history.value()[0].commit.hash;
    const auto view = show(GitRepository::CommitKind::ordinary);
    EXPECT_EQ(paths(*view), (QStringList{u"a"_s, u"c"_s}));
    EXPECT_TRUE(says(*view, u"2 files changed"_s));
    EXPECT_TRUE(shownDiff(*view).startsWith(u"Diff: "_s));
    EXPECT_TRUE(shownDiff(*view).contains(u"+2"_s)) << shownDiff(*view).toStdString();

    auto* const files = view->findChild<CommitFilesList*>();
    files->setCurrentIndex(files->model()->index(1, 0));
    worker.finishAll();
    EXPECT_FALSE(shownDiff(*view).contains(u"+2"_s)) << shownDiff(*view).toStdString();
    EXPECT_EQ(files->model()->index(1, 0).data(Qt::AccessibleTextRole), u"c"_s);
}

TEST_F(CommitDetailTest, theCommitSelectedLastWinsAndAClosedViewIsNotTouched)
{
    repo.write("a", "1\n").commit("one").write("b", "2\n").commit("two").write("c", "3\n").commit("three");
    load();
    auto view = show(GitRepository::CommitKind::ordinary);
    EXPECT_EQ(paths(*view), QStringList());
    for (const HistoryRow& row : store.history.value())
        store.selectedCommit = row.commit.hash;
    worker.finishAll();
    EXPECT_EQ(paths(*view), QStringList{u"a"_s});
    EXPECT_TRUE(shownDiff(*view).contains(u"+1"_s));

    store.selectedCommit = store.history.value()[0].commit.hash;
    EXPECT_GE(worker.waiting(), 1U);
    view.reset();
    worker.finishAll();
}

TEST_F(CommitDetailTest, saysWhatAMergeIsComparedWithAndThatAnEmptyCommitIsEmpty)
{
    repo.write("a", "1\n").commit("one").git({"branch", "side"}).write("b", "1\n").commit("two");
    repo.git({"checkout", "-q", "side"}).write("c", "1\n").commit("three").git({"checkout", "-q", "main"});
    repo.git({"merge", "-q", "--no-ff", "-m", "merge", "side"}).git({"commit", "-q", "--allow-empty", "-m", "empty"});
    load();
    const auto view = show(GitRepository::CommitKind::ordinary);
    store.selectedCommit = repo.read({"rev-parse", "HEAD~1"});
    worker.finishAll();
    EXPECT_EQ(paths(*view), QStringList{u"c"_s});
    EXPECT_TRUE(says(*view, u"1 file changed against the first parent"_s));
    store.selectedCommit = repo.head();
    worker.finishAll();
    EXPECT_EQ(paths(*view), QStringList());
    EXPECT_TRUE(says(*view, u"This commit changes no files."_s));
    EXPECT_EQ(shownDiff(*view), QString());
}

TEST_F(CommitDetailTest, aStashShowsItsUntrackedFilesToo)
{
    repo.write("a", "1\n").commit("one").write("a", "2\n").write("new", "n\n");
    repo.git({"stash", "push", "-q", "--include-untracked"});
    load();
    const auto view = show(GitRepository::CommitKind::stash);
    EXPECT_EQ(paths(*view), (QStringList{u"a"_s, u"new"_s}));
    repo.git({"stash", "drop", "-q"});
    load();
    EXPECT_TRUE(says(*view, u"No Stash Selected"_s));
    EXPECT_EQ(shownDiff(*view), QString());
}

} // namespace
} // namespace plovik

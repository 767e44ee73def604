// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/RepositoryStore.h"
#include "app/ui/history/CommitMenu.h"
#include "app/ui/sidebar/RefMenu.h"
#include "app/ui/stashes/StashMenu.h"
#include "app/ui/window/OperationBar.h"
#include "app/ui/workingcopy/ChangedFilesMenu.h"
#include "app/ui/workingcopy/ChangedFilesModel.h"
#include "tests/app/SettlingWorker.h"
#include "tests/app/ShownWidgets.h"
#include "tests/support/TestRepository.h"

#include <QPushButton>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace plovik {
namespace {

struct OperationBarTest : testing::Test {
    OperationBarTest()
    {
        repo.write("a", "1\n").write("z", "1\n").commit("base").git({"checkout", "-q", "-b", "topic"});
        repo.write("z", "2\n").commit("first").write("a", "2\n").commit("second");
        repo.git({"checkout", "-q", "main"}).write("z", "3\n").commit("ours");
        bar.resize(900, 40);
    }
    ~OperationBarTest() override { worker.settle(); }

    void load()
    {
        store.snapshot().refresh(RefreshScope::full);
        ASSERT_TRUE(worker.settle());
    }
    void begin(const std::vector<std::string>& arguments)
    {
        int status = 0;
        runPlainGit(repo.path(), arguments, status);
        load();
    }
    QPushButton* button(const QString& name) const { return test::named<QPushButton>(bar, name); }
    std::string buttons() const
    {
        std::string names;
        for (const QPushButton* each : bar.findChildren<QPushButton*>()) {
            if (!each->isHidden())
                names += (each->isEnabled() ? "" : "-") + each->accessibleName().toStdString() + " ";
        }
        return names;
    }
    std::string says() const { return bar.accessibleDescription().toStdString(); }

    TestRepository repo;
    test::SettlingWorker worker;
    RepositoryStore store{repo.path(), worker};
    OperationBar bar{store};
};

TEST_F(OperationBarTest, SaysWhatGoesOnAndOffersWhatGitDoes)
{
    load();
    EXPECT_TRUE(bar.isHidden());
    begin({"rebase", "main", "topic"});
    EXPECT_FALSE(bar.isHidden());
    EXPECT_EQ(bar.accessibleName(), u"Operation"_s);
    const std::string first = repo.read({"rev-parse", "--short=7", "topic~1"});
    EXPECT_EQ(says(), "Rebasing topic onto main 1 of 2: " + first + " first 1 conflict left");
    EXPECT_EQ(buttons(), "1 conflict left -Continue Skip Abort ");
    store.window().select(SidebarItem::history());
    button(u"1 conflict left"_s)->click();
    EXPECT_EQ(store.window().selection.value(), SidebarItem::workingCopy());
    EXPECT_EQ(store.window().selectedPaths.value(), std::set<std::string>{"z"});
    repo.write("z", "4\n").git({"add", "z"});
    load();
    EXPECT_TRUE(says().ends_with("first All conflicts resolved.")) << says();
    EXPECT_EQ(buttons(), "Continue Skip Abort ");
    button(u"Skip"_s)->click();
    ASSERT_TRUE(worker.settle());
    ASSERT_TRUE(store.window().confirmation.value()) << "what was resolved is lost";
    store.window().confirm(store.window().confirmation.value()->id);
    ASSERT_TRUE(worker.settle());
    EXPECT_TRUE(bar.isHidden());

    begin({"checkout", "-q", "main"});
    begin({"merge", "--no-commit", "--no-ff", "topic"});
    EXPECT_EQ(says(), "Merging topic into main");
    EXPECT_EQ(buttons(), "Continue Abort ");
    button(u"Continue"_s)->click();
    EXPECT_EQ(buttons(), "-Continue -Abort ") << "while it runs";
    ASSERT_TRUE(worker.settle());
    EXPECT_EQ(repo.read({"log", "-1", "--format=%s"}), "Merge branch 'topic'");

    begin({"bisect", "start", "--term-new=slow", "--term-old=fast"});
    EXPECT_EQ(says(), "Bisecting Waiting for a fast and a slow commit, at " +
                          repo.read({"log", "-1", "--abbrev=7", "--format=%h %s"}));
    EXPECT_EQ(buttons(), "Good Bad Skip Reset ");
    EXPECT_TRUE(button(u"Bad"_s)->toolTip().contains(u"“slow”"_s));
    button(u"Bad"_s)->click();
    ASSERT_TRUE(worker.settle());
    begin({"bisect", "fast", "HEAD^1", "HEAD^2"});
    ASSERT_TRUE(says().starts_with("Bisecting First slow commit: ")) << says();
    EXPECT_EQ(buttons(), "Show Commit Reset ");
    button(u"Show Commit"_s)->click();
    ASSERT_TRUE(worker.settle());
    EXPECT_EQ(store.window().selectedCommit.value(), store.snapshot().inProgress.value()->bisect->found->hash);
    button(u"Reset"_s)->click();
    ASSERT_TRUE(worker.settle());
    EXPECT_TRUE(bar.isHidden());
}

TEST_F(OperationBarTest, ConflictsComeFirstAndCanBeTakenFromTheMenu)
{
    repo.write("b", "new\n");
    begin({"merge", "topic"});
    ChangedFilesModel model(store);
    ASSERT_EQ(model.rowCount(), 3);
    EXPECT_EQ(model.index(0).data().toString(), u"z"_s);
    EXPECT_EQ(model.index(1).data().toString(), u"a"_s);
    EXPECT_EQ(store.snapshot().status.value().files.front().path, "a") << "the store's order is git's";
    EXPECT_EQ(model.indexOf("z").row(), 0);
    EXPECT_EQ(model.file(model.indexOf("b")).path, "b");

    const std::unique_ptr<QMenu> menu(
        makeChangedFilesMenu(store, store.snapshot().status.value().files, u"Open in Kate"_s, nullptr));
    const std::vector<std::string> titles = test::entries(*menu);
    EXPECT_EQ((std::vector(titles.begin(), titles.begin() + 4)),
              (std::vector<std::string>{"Keep main", "Keep topic", "Mark Resolved", "—"}));
    test::entry(*menu, u"Mark Resolved"_s)->trigger();
    ASSERT_TRUE(worker.settle());
    ASSERT_TRUE(store.window().confirmation.value()) << "markers are left";
    store.window().dismissQuestion();
    test::entry(*menu, u"Keep topic"_s)->trigger();
    ASSERT_TRUE(worker.settle());
    EXPECT_EQ(readFile(repo / "z"), "2\n");
    model.rebuild();
    EXPECT_EQ(model.index(0).data().toString(), u"a"_s);

    // In a rebase the names stay with what they name.
    repo.git({"merge", "--abort"});
    begin({"rebase", "main", "topic"});
    const std::unique_ptr<QMenu> other(makeChangedFilesMenu(store, store.snapshot().status.value().files, {}, nullptr));
    EXPECT_EQ(test::entries(*other).front(), "Keep main");
}

TEST_F(OperationBarTest, SaysWhatBecomesOfChangesAtAStopToEdit)
{
    repo.git({"checkout", "-q", "topic"});
    begin({"-c", "sequence.editor=sed -i s/^pick/edit/", "rebase", "-i", "topic~1"});
    EXPECT_TRUE(says().ends_with("Stopped at “second”: change files, then Continue.")) << says();
    EXPECT_EQ(buttons(), "Continue Take Apart Skip Abort ");
    repo.write("z", "4\n").git({"add", "z"});
    load();
    EXPECT_TRUE(says().ends_with(" Staged changes become part of “second”.")) << says();
    button(u"Take Apart"_s)->click();
    ASSERT_TRUE(worker.settle());
    EXPECT_TRUE(says().ends_with("Stopped at “second”: commit what it becomes, then Continue.")) << says();
    EXPECT_EQ(buttons(), "Continue Skip Abort ");
    EXPECT_EQ(repo.read({"status", "--porcelain"}), " M a\n M z");
}

TEST_F(OperationBarTest, MenusForetellWhatPicksMergesAndStashesDo)
{
    load();
    const auto told = [&](QMenu& menu, const QString& title) {
        QAction* const entry = test::entry(menu, title);
        entry->hover();
        EXPECT_TRUE(worker.settle());
        return entry->toolTip().toStdString();
    };
    const auto commitMenu = [&](const char* name) {
        gitkit::Commit commit;
        commit.hash = repo.read({"rev-parse", name});
        commit.parents = {repo.read({"rev-parse", std::string(name) + "^"})};
        return std::unique_ptr<QMenu>(makeCommitMenu(store, commit, nullptr));
    };
    EXPECT_NE(told(*commitMenu("topic"), u"Cherry-Pick"_s).find("No conflicts · 1 file"), std::string::npos);
    EXPECT_NE(told(*commitMenu("topic~1"), u"Cherry-Pick"_s).find("Will conflict in 1 file: z"), std::string::npos);
    const auto& branches = store.snapshot().branches.value();
    const auto topic = std::ranges::find(branches, "topic", &gitkit::GitRef::name);
    ASSERT_NE(topic, branches.end());
    const std::unique_ptr<QMenu> refs(makeRefMenu(store, *topic, nullptr));
    EXPECT_NE(told(*refs, u"Merge into “main”"_s).find("Will conflict in 1 file: z"), std::string::npos);
    EXPECT_NE(told(*refs, u"Rebase “main” onto “topic”"_s).find("Will conflict in 1 file: z"), std::string::npos);
    repo.write("a", "work\n").git({"stash", "push", "-q"});
    load();
    const std::unique_ptr<QMenu> stash(makeStashMenu(store, store.snapshot().stashes.value().front(), nullptr));
    EXPECT_NE(told(*stash, u"Apply Stash"_s).find("No conflicts · 1 file"), std::string::npos);
}

TEST_F(OperationBarTest, AFileThatOneSideDeletedCanBeOpenedWhileItIsThere)
{
    repo.git({"checkout", "-q", "-b", "without", "main~1"}).remove("z").commit("removed");
    begin({"merge", "main"});
    const Staging::Files files = store.snapshot().status.value().files;
    ASSERT_EQ(files.size(), 1U);
    ASSERT_TRUE(files.front().isConflicted);
    const auto opens = [&] {
        const std::unique_ptr<QMenu> menu(makeChangedFilesMenu(store, files, u"Open"_s, nullptr));
        return test::entry(*menu, u"Open"_s)->isEnabled() &&
               test::entry(*menu, u"Reveal in File Browser"_s)->isEnabled();
    };
    EXPECT_TRUE(opens());
    std::filesystem::remove(repo / "z");
    EXPECT_FALSE(opens());
}

} // namespace
} // namespace plovik

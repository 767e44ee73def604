// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/RepositoryStore.h"
#include "app/store/readers/FileReaders.h"
#include "app/ui/diff/DiffNotes.h"
#include "app/ui/sidebar/SidebarView.h"
#include "app/ui/sidebar/SubmoduleMenu.h"
#include "app/ui/window/SubmoduleBar.h"
#include "tests/app/SettlingWorker.h"
#include "tests/app/ShownWidgets.h"
#include "tests/support/TestRepository.h"

#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QTreeView>
#include <QtTest/QTest>

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

using namespace Qt::StringLiterals;

namespace plovik {
namespace {

using test::entries;
using test::entry;
using Titles = std::vector<std::string>;

TEST(SubmodulesUi, AreListedAndUpdated)
{
    TestRepository inner;
    TestRepository repo;
    test::SettlingWorker worker;
    std::vector<std::filesystem::path> opened;
    RepositoryStore store(
        repo.path(), worker,
        StoreServices{.openWindow = [&opened](const std::filesystem::path& folder) { opened.push_back(folder); }});
    const auto refresh = [&] {
        store.snapshot().refresh(RefreshScope::full);
        ASSERT_TRUE(worker.settle());
    };
    inner.write("i", "1\n").commit("one").write("i", "2\n").commit("two");
    for (const char* const path : {"lib", "other"})
        repo.git({"-c", "protocol.file.allow=always", "submodule", "add", "-q", inner.path().string(), path});
    repo.commit("with submodules");
    repo.git({"submodule", "deinit", "-q", "-f", "other"});
    refresh();

    SidebarView view(store);
    view.resize(260, 500);
    view.show();
    SubmoduleBar bar(store);
    EXPECT_TRUE(bar.isHidden());
    const auto row = [&](const char* path) { return view.model().indexOfKey(std::string("submodule ") + path); };
    ASSERT_TRUE(row("lib").isValid() && row("other").isValid());
    const auto described = [&](const char* path) { return row(path).data(Qt::AccessibleDescriptionRole).toString(); };
    EXPECT_TRUE(described("lib").contains(u"at the recorded commit"_s));
    EXPECT_TRUE(described("other").contains(u"not initialised"_s));
    const auto menuOf = [&](const char* path) {
        return makeSubmoduleMenu(store, *view.model().submodule(row(path)), &view);
    };
    EXPECT_EQ(entries(*menuOf("lib")), (Titles{"Open", "—", "Update", "Update All Submodules", "—", "Copy Path"}));
    EXPECT_EQ(entries(*menuOf("other")),
              (Titles{"(Open)", "—", "Initialise", "Update All Submodules", "—", "Copy Path"}));
    EXPECT_EQ(entry(*menuOf("other"), u"Open"_s)->toolTip(), u"It is not initialised."_s);
    for (const char* const path : {"other", "lib"}) {
        view.tree()->setCurrentIndex(row(path));
        QTest::keyClick(view.tree(), Qt::Key_Return);
    }
    EXPECT_EQ(opened, std::vector<std::filesystem::path>{repo / "lib"});

    repo.git({"update-index", "--cacheinfo", "160000," + inner.read({"rev-parse", "HEAD~"}) + ",lib"});
    refresh();
    EXPECT_FALSE(bar.isHidden());
    QTest::mouseClick(test::named<QPushButton>(bar, u"Update"_s), Qt::LeftButton);
    ASSERT_TRUE(worker.settle());
    EXPECT_TRUE(bar.isHidden());
    EXPECT_TRUE(described("lib").contains(u"at the recorded commit"_s));
}

TEST(SubmodulesUi, ADiffListsTheCommits)
{
    TestRepository inner;
    TestRepository repo;
    inner.write("i", "1\n").commit("one").write("i", "2\n").commit("two");
    repo.git({"-c", "protocol.file.allow=always", "submodule", "add", "-q", inner.path().string(), "lib"});
    repo.commit("with a submodule");
    const std::string before = inner.read({"rev-parse", "HEAD~"});
    int status = 0;
    runPlainGit(repo / "lib", {"checkout", "-q", before}, status);
    const gitkit::GitRepository door = repo.repository();
    const auto notesOf = [&](const gitkit::ParsedDiff& diff) {
        const auto commits = submoduleCommits(diff);
        FileFacts facts;
        if (commits)
            facts.submodule = readDiffFiles(door, {{commits->before, commits->after, {}}, 0, "lib"}).submodule;
        return diffNotes(diff, DiffState::ordinary, facts, "lib", {}).above.join(u'\n');
    };
    const gitkit::ParsedDiff diff = door.workingDiff(door.status().files.at(0)).at(0).diff;
    EXPECT_EQ(submoduleCommits(diff).value().before, inner.head());
    EXPECT_EQ(submoduleCommits(diff).value().after, before);
    EXPECT_TRUE(notesOf(diff).endsWith(u"− "_s + QString::fromStdString(inner.head().substr(0, 7)) + u"  two"_s))
        << notesOf(diff).toStdString();
    repo.git({"submodule", "deinit", "-q", "-f", "lib"});
    EXPECT_TRUE(notesOf(diff).endsWith(u"is not initialised here, so its commits are not known."_s));

    repo.write("a", "1\n").git({"add", "-N", "a"});
    for (const gitkit::FileChange& file : door.status().files) {
        if (file.path == "a")
            EXPECT_FALSE(submoduleCommits(door.workingDiff(file).at(0).diff));
    }
}

} // namespace
} // namespace plovik

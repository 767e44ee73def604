// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/RepositoryStore.h"
#include "app/ui/dialogs/WorktreeSheets.h"
#include "app/ui/dialogs/WorktreesDialog.h"
#include "app/ui/sidebar/SidebarView.h"
#include "app/ui/sidebar/WorktreeMenu.h"
#include "tests/app/SettlingWorker.h"
#include "tests/app/ShownWidgets.h"
#include "tests/support/TestRepository.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTreeView>
#include <QtTest/QTest>

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

using namespace Qt::StringLiterals;

namespace plovik {
namespace {

namespace fs = std::filesystem;
using test::entries;
using test::entry;
using test::named;
using Titles = std::vector<std::string>;

/// A window on `main` with worktrees `topic`, locked, and `gone`, whose folder is missing.
class WorktreesUiTest : public testing::Test {
protected:
    WorktreesUiTest()
    {
        repo.write("a", "1\n").commit("one").git({"branch", "free"});
        for (const char* const name : {"topic", "gone"})
            repo.git({"worktree", "add", "-q", "-b", name, (beside / name).string()});
        repo.git({"worktree", "lock", "--reason", "on a stick", (beside / "topic").string()});
        fs::remove_all(beside / "gone");
        refresh();
    }

    void refresh()
    {
        store.snapshot().refresh(RefreshScope::full);
        ASSERT_TRUE(worker.settle());
    }
    std::vector<std::string> sidebarRows(const SidebarView& view) const
    {
        std::vector<std::string> texts;
        bool isInGroup = false;
        for (QModelIndex row = view.model().index(0, 0); row.isValid(); row = view.tree()->indexBelow(row)) {
            isInGroup = isInGroup || view.model().kind(row) == SidebarKind::worktrees;
            if (isInGroup)
                texts.push_back(row.data().toString().toStdString());
        }
        return texts;
    }
    const gitkit::Worktree& tree(std::size_t place) const { return store.neighbours().worktrees.value().at(place); }
    bool shows(const QWidget& dialog, const QString& text) const
    {
        for (const QLabel* const label : dialog.findChildren<QLabel*>()) {
            if (label->text().contains(text))
                return true;
        }
        return false;
    }

    TestRepository repo;
    ::TemporaryFolder beside;
    test::SettlingWorker worker;
    std::vector<fs::path> opened;
    RepositoryStore store{repo.path(), worker,
                          StoreServices{.openWindow = [this](const fs::path& folder) { opened.push_back(folder); }}};
};

TEST_F(WorktreesUiTest, TheSidebarListsThemAndOpensThem)
{
    SidebarView view(store);
    view.resize(240, 500);
    view.show();
    const std::string here = repo.path().filename().string();
    EXPECT_EQ(sidebarRows(view), (Titles{"WORKTREES", here, "gone", "topic"}));
    const QModelIndex topic = view.model().indexOfKey("worktree " + (beside / "topic").string());
    ASSERT_TRUE(topic.isValid());
    EXPECT_TRUE(topic.data(Qt::AccessibleDescriptionRole).toString().contains(u"Locked: on a stick"_s));
    const SidebarItem before = store.window().selection.value();
    view.tree()->setCurrentIndex(topic);
    QTest::keyClick(view.tree(), Qt::Key_Return);
    EXPECT_EQ(opened, std::vector<fs::path>{beside / "topic"});
    EXPECT_EQ(store.window().selection.value(), before) << "it belongs to another window";

    repo.git({"worktree", "remove", "-f", "-f", (beside / "topic").string()}).git({"worktree", "prune"});
    refresh();
    EXPECT_EQ(sidebarRows(view), Titles());
}

TEST_F(WorktreesUiTest, TheirMenusSayWhyNot)
{
    QWidget parent;
    const auto menuOf = [&](std::size_t place) { return makeWorktreeMenu(store, tree(place), &parent); };
    EXPECT_EQ(entries(*menuOf(0)), (Titles{"(Open)", "New Worktree…", "—", "(Lock…)", "Copy Path", "—", "(Remove…)"}));
    EXPECT_EQ(entry(*menuOf(0), u"Open"_s)->toolTip(), u"This window shows it."_s);
    EXPECT_EQ(entry(*menuOf(0), u"Remove…"_s)->toolTip(), u"It holds the repository."_s);
    EXPECT_EQ(entries(*menuOf(1)), (Titles{"(Open)", "New Worktree…", "—", "Lock…", "Copy Path", "—", "Forget…"}));
    EXPECT_EQ(entries(*menuOf(2)), (Titles{"Open", "New Worktree…", "—", "Unlock", "Copy Path", "—", "Remove…"}));
}

TEST_F(WorktreesUiTest, TheListSaysWhatIsThereAndWhatIsNot)
{
    QWidget parent;
    auto* dialog = new WorktreesDialog(store, &parent);
    dialog->open();
    auto* const list = named<QListWidget>(*dialog, u"Worktrees"_s);
    ASSERT_EQ(list->count(), 3);
    EXPECT_EQ(list->currentRow(), 1) << "the first of the others";
    EXPECT_TRUE(list->item(1)->text().contains(u"gone: gone, missing"_s));
    EXPECT_TRUE(named<QPushButton>(*dialog, u"Forget…"_s)->isEnabled());
    list->setCurrentRow(2);
    EXPECT_TRUE(shows(*dialog, u"Locked: on a stick"_s));
    QTest::mouseClick(named<QPushButton>(*dialog, u"Unlock"_s), Qt::LeftButton);
    ASSERT_TRUE(worker.settle());
    EXPECT_TRUE(named<QPushButton>(*dialog, u"Lock…"_s)) << "the list is read again";
    dialog->reject();

    repo.git({"worktree", "remove", (beside / "topic").string()}).git({"worktree", "prune"});
    refresh();
    dialog = new WorktreesDialog(store, &parent);
    dialog->open();
    EXPECT_TRUE(shows(*dialog, u"No Other Worktrees"_s));
    QTest::mouseClick(named<QPushButton>(*dialog, u"New Worktree…"_s), Qt::LeftButton);
    EXPECT_TRUE(std::holds_alternative<NewWorktreeSheet>(*store.window().sheet.value()));
}

TEST_F(WorktreesUiTest, ANewOneIsRefusedWhileItIsTyped)
{
    QWidget parent;
    auto* const dialog = new NewWorktreeDialog(store, &parent);
    dialog->open();
    auto* const name = named<QLineEdit>(*dialog, u"New Branch Name"_s);
    auto* const folder = named<QLineEdit>(*dialog, u"Folder"_s);
    auto* const confirm = named<QPushButton>(*dialog, u"Make Worktree"_s);
    EXPECT_FALSE(confirm->isEnabled());
    name->setText(u"feature/x"_s);
    EXPECT_TRUE(folder->text().endsWith(QString::fromStdString(repo.path().filename().string()) + u"-feature-x"_s));
    EXPECT_TRUE(confirm->isEnabled());
    name->setText(u"topic"_s);
    EXPECT_FALSE(confirm->isEnabled());
    name->setText(u"new"_s);
    folder->setText(QString::fromStdString((beside / "topic").string()));
    EXPECT_TRUE(shows(*dialog, u"is not empty"_s));
    EXPECT_FALSE(confirm->isEnabled());
    folder->setText(QString::fromStdString((repo / "inside").string()));
    EXPECT_TRUE(shows(*dialog, u"lies inside this worktree"_s));

    QTest::mouseClick(named<QWidget>(*dialog, u"Existing branch"_s), Qt::LeftButton);
    auto* const branches = named<QComboBox>(*dialog, u"Branch"_s);
    ASSERT_EQ(branches->count(), 1) << "the others are checked out";
    EXPECT_EQ(branches->currentText(), u"free"_s);
    folder->setText(QString::fromStdString((beside / "free").string()));
    dialog->submit();
    ASSERT_TRUE(worker.settle());
    EXPECT_EQ(opened, std::vector<fs::path>{beside / "free"});
}

} // namespace
} // namespace plovik

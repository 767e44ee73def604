// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/runner/GitVersion.h"
#include "app/settings/SettledQuestions.h"
#include "app/store/RepositoryStore.h"
#include "app/store/actions/Refs.h"
#include "app/store/actions/Remotes.h"
#include "app/ui/commands/Commands.h"
#include "app/ui/dialogs/ErrorAlert.h"
#include "app/ui/dialogs/RefNameRules.h"
#include "app/ui/dialogs/RequestDialog.h"
#include "app/ui/settings/GeneralTab.h"
#include "app/ui/widgets/TerminalText.h"
#include "app/ui/window/QuietLine.h"
#include "app/ui/window/RepositoryView.h"
#include "tests/app/GivenRunning.h"
#include "tests/app/SettlingWorker.h"
#include "tests/app/ShownWidgets.h"
#include "tests/support/Given.h"
#include "tests/support/TestRepository.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTreeView>
#include <QtTest/QTest>

#include <gtest/gtest.h>

#include <random>

using namespace Qt::StringLiterals;

namespace plovik {
namespace {

using test::named;
using test::openDialog;

TEST(RefNames, AreRefusedExactlyWhereGitRefusesThem)
{
    const std::vector<std::string> pieces{"a", "b", ".",  "/",     "-",    "@",    "{", "~",  "^",
                                          ":", "?", "*",  "[",     "]",    "\\",   " ", "\t", "\x7f",
                                          "ü", "'", "\"", ".lock", "HEAD", "lock", "%", "$"};
    std::mt19937 random(7); // NOLINT(cert-msc51-cpp): the same names each time
    const TestRepository repo;
    std::vector<std::string> names{"HEAD", "@",  "-",  "-a",   "a.lock", "a.lock/b",
                                   "a..b", "a/", "/a", "a//b", "a/.b",   "a."};
    while (names.size() < 300) {
        std::string name;
        for (auto left = 1 + random() % 4; left > 0; --left)
            name += pieces[random() % pieces.size()];
        names.push_back(name);
    }
    int accepted = 0;
    for (const std::string& name : names) {
        int status = 0;
        runPlainGit(repo.path(), {"check-ref-format", "--branch", name}, status);
        // Git takes this one for what is checked out.
        const bool isFine = status == 0 && name != "@";
        EXPECT_EQ(refNames::branchProblem(name, {}).isEmpty(), isFine) << name;
        accepted += isFine ? 1 : 0;
    }
    EXPECT_GT(accepted, 30);
    EXPECT_LT(accepted, 270);
}

TEST(RefNames, AreExplained)
{
    std::vector<gitkit::GitRef> refs(2);
    refs[0].name = "main";
    refs[1].name = "feature/login";
    const auto said = [&refs](const std::string& name) { return refNames::branchProblem(name, refs).toStdString(); };
    EXPECT_EQ(said("my branch"), "A branch name can't contain spaces.");
    EXPECT_EQ(said("-f"), "A branch name can't begin with “-”.");
    EXPECT_EQ(said("a/.b"), "A branch name can't have a part that begins with “.”.");
    EXPECT_EQ(said("main"), "There is already a branch named “main”.");
    EXPECT_EQ(said("main/new"), "“main” is a branch, so it can't be a folder of others.");
    EXPECT_EQ(said("feature"), "“feature” is a folder of other branches, such as “feature/login”.");
    EXPECT_EQ(said("feature/logout"), "");
    EXPECT_EQ(said(""), "");
    EXPECT_EQ(refNames::tagProblem("v 1", {}).toStdString(), "A tag name can't contain spaces.");
}

/// A window's content over a real repository, as the application has it.
class DialogsTest : public testing::Test {
protected:
    DialogsTest()
    {
        repo.write("a", "1\n").commit("one").git({"branch", "side"}).write("a", "2\n").commit("two");
        view.resize(900, 600);
        view.show();
        store.snapshot().refresh(RefreshScope::full);
        EXPECT_TRUE(worker.settle());
    }
    ~DialogsTest() override { worker.settle(); }

    QDialog* dialog() const { return openDialog(view); }
    QPushButton* button(const QString& title) const { return named<QPushButton>(*dialog(), title); }
    bool says(const QString& sentence) const { return named<QLabel>(*dialog(), sentence) != nullptr; }

    TestRepository repo;
    test::SettlingWorker worker;
    RepositoryStore store{repo.path(), worker, {.trash = [](const auto& file) { std::filesystem::remove_all(file); }}};
    RepositoryView view{store};
};

TEST_F(DialogsTest, ARemoteIsAddedChangedAndRemoved)
{
    const auto edit = [this](const QString& name) { return named<QLineEdit>(*dialog(), name); };
    const auto setting = [this](const char* key) { return repo.read({"config", "--get", key}); };
    command(CommandId::addRemote).run(store);
    ASSERT_TRUE(dialog());
    EXPECT_EQ(edit(u"Name"_s)->text(), u"origin"_s) << "the first is mostly called so";
    EXPECT_FALSE(button(u"Add Remote"_s)->isEnabled());
    edit(u"Name"_s)->setText(u"my fork"_s);
    EXPECT_TRUE(says(u"A remote can't be named “my fork”."_s));
    edit(u"Name"_s)->setText(u"origin"_s);
    edit(u"Address"_s)->setText(u"."_s);
    button(u"Add Remote"_s)->click();
    ASSERT_TRUE(worker.settle());
    EXPECT_EQ(store.snapshot().remoteBranches.value().size(), 2U) << "it is fetched";

    repo.git({"branch", "-q", "--set-upstream-to=origin/side", "main"});
    store.snapshot().refresh(RefreshScope::full);
    ASSERT_TRUE(worker.settle());
    actions::askToEditRemote(store.actors(), "origin", actions::RemoteFocus::name);
    ASSERT_TRUE(worker.settle());
    ASSERT_TRUE(dialog());
    EXPECT_FALSE(button(u"Save"_s)->isEnabled()) << "nothing has changed";
    edit(u"Name"_s)->setText(u"up"_s);
    edit(u"Push Address"_s)->setText(u"../there"_s);
    named<QCheckBox>(*dialog(), u"Fetched with All Others"_s)->click();
    button(u"Save"_s)->click();
    ASSERT_TRUE(worker.settle());
    EXPECT_EQ(setting("branch.main.remote"), "up");
    EXPECT_EQ(setting("remote.up.pushurl"), "../there");
    EXPECT_EQ(setting("remote.up.skipfetchall"), "true");
    EXPECT_EQ(store.snapshot().remoteBranches.value().front().name, "up/main");

    actions::confirmRemoveRemote(store.actors(), "up");
    ASSERT_TRUE(dialog());
    EXPECT_TRUE(
        says(u"Its address goes, and what was fetched from it: 2 branches. Nothing changes there, and Undo brings "
             "it back."_s));
    EXPECT_TRUE(says(u"1 branch will follow nothing any more:\nmain"_s));
    button(u"Remove"_s)->click();
    ASSERT_TRUE(worker.settle());
    EXPECT_TRUE(store.snapshot().remotes.value().empty());
    EXPECT_TRUE(store.snapshot().remoteBranches.value().empty());
}

TEST_F(DialogsTest, ANewBranchIsMadeWhereItWasAskedFor)
{
    named<QPushButton>(view, u"Branch"_s)->click();
    ASSERT_TRUE(dialog());
    EXPECT_EQ(dialog()->accessibleName(), u"New Branch"_s);
    EXPECT_TRUE(says(u"Starts at main"_s));
    EXPECT_FALSE(button(u"Create Branch"_s)->isEnabled());
    auto* name = named<QLineEdit>(*dialog(), u"New Branch Name"_s);
    name->setText(u"no good"_s);
    EXPECT_TRUE(says(u"A branch name can't contain spaces."_s));
    QTest::keyClick(name, Qt::Key_Return);
    ASSERT_TRUE(dialog());
    EXPECT_FALSE(button(u"Create Branch"_s)->isEnabled());
    QTest::keyClick(dialog(), Qt::Key_Escape);
    EXPECT_FALSE(dialog());
    EXPECT_FALSE(store.window().sheet.value());

    store.window().showSheet(NewBranchSheet{"refs/heads/side"});
    EXPECT_TRUE(says(u"Starts at side"_s));
    named<QCheckBox>(*dialog(), u"Check Out After Creating"_s)->setChecked(false);
    name = named<QLineEdit>(*dialog(), u"New Branch Name"_s);
    name->setText(u"näher/dran"_s);
    QTest::keyClick(name, Qt::Key_Return);
    EXPECT_EQ(store.changes().activity.value(), u"Creating branch…"_s);
    ASSERT_TRUE(worker.settle());
    EXPECT_FALSE(dialog());
    EXPECT_EQ(repo.read({"rev-parse", "näher/dran"}), repo.read({"rev-parse", "side"}));
    EXPECT_EQ(repo.read({"branch", "--show-current"}), "main");

    store.window().showSheet(NewBranchSheet{});
    named<QLineEdit>(*dialog(), u"New Branch Name"_s)->setText(u"next"_s);
    button(u"Create Branch"_s)->click();
    ASSERT_TRUE(worker.settle());
    EXPECT_FALSE(dialog());
    EXPECT_EQ(repo.read({"branch", "--show-current"}), "next");
}

TEST_F(DialogsTest, ATagAndAStashAreMade)
{
    store.window().showSheet(NewTagSheet{repo.head()});
    named<QLineEdit>(*dialog(), u"New Tag Name"_s)->setText(u"v1"_s);
    button(u"Create Tag"_s)->click();
    ASSERT_TRUE(worker.settle());
    EXPECT_FALSE(dialog());
    EXPECT_EQ(repo.read({"rev-parse", "v1"}), repo.head());

    EXPECT_FALSE(named<QPushButton>(view, u"Stash"_s)->isEnabled());
    repo.write("new", "n");
    store.snapshot().refresh(RefreshScope::status);
    ASSERT_TRUE(worker.settle());
    named<QPushButton>(view, u"Stash"_s)->click();
    auto* untracked = named<QCheckBox>(*dialog(), u"Include Untracked Files"_s);
    EXPECT_TRUE(untracked->isChecked()); // there is nothing else
    untracked->setChecked(false);
    EXPECT_FALSE(button(u"Stash Changes"_s)->isEnabled());
    untracked->setChecked(true);
    named<QLineEdit>(*dialog(), u"Stash Message"_s)->setText(u"-m put aside"_s);
    button(u"Stash Changes"_s)->click();
    ASSERT_TRUE(worker.settle());
    ASSERT_EQ(store.snapshot().stashes.value().size(), 1U);
    EXPECT_EQ(store.snapshot().stashes.value().front().message, "On main: -m put aside");
    EXPECT_FALSE(std::filesystem::exists(repo / "new"));
}

TEST_F(DialogsTest, UntrackedFilesAreCleanedAndComeBack)
{
    repo.write("one", "1").write("dir/two", "2").write("keep", "3");
    int status = 0;
    runPlainGit(repo.path(), {"init", "-q", "inner"}, status);
    store.snapshot().refresh(RefreshScope::status);
    ASSERT_TRUE(worker.settle());
    command(CommandId::cleanUntracked).run(store);
    QAbstractItemModel& files = *named<QListView>(*dialog(), u"Untracked Files"_s)->model();
    EXPECT_EQ(files.rowCount(), 3) << "a repository of its own is none of them";
    auto& all = *named<QCheckBox>(*dialog(), u"All Untracked Files"_s);
    all.click();
    EXPECT_FALSE(button(u"Move to Trash"_s)->isEnabled());
    all.click();
    for (int row = 0; row < files.rowCount(); ++row) {
        if (files.index(row, 0).data().toString() == u"keep"_s)
            files.setData(files.index(row, 0), Qt::Unchecked, Qt::CheckStateRole);
    }
    EXPECT_EQ(all.checkState(), Qt::PartiallyChecked);
    EXPECT_TRUE(says(u"2 untracked files. Undo brings everything back."_s));
    button(u"Move to Trash"_s)->click();
    ASSERT_TRUE(worker.settle());
    EXPECT_EQ(repo.read({"status", "--porcelain", "--untracked-files=all"}), "?? inner/\n?? keep");
    store.undo().undo();
    ASSERT_TRUE(worker.settle());
    EXPECT_EQ(repo.read({"ls-files", "--others"}), "dir/two\ninner/\nkeep\none");
}

TEST_F(DialogsTest, ARequestIsNamedByNumberOrAddress)
{
    EXPECT_EQ(requestNumber(u" #12 "_s), 12);
    EXPECT_EQ(requestNumber(u"!7"_s), 7);
    EXPECT_EQ(requestNumber(u"https://example.org/a/b/pull/345/files?x=1"_s), 345);
    EXPECT_EQ(requestNumber(u"https://example.org/a/b/-/merge_requests/9#note_1"_s), 9);
    for (const QString& none : {u""_s, u"12a"_s, u"-1"_s, u"99999999999999"_s, u"https://example.org/a/12"_s})
        EXPECT_EQ(requestNumber(none), 0) << none.toStdString();

    repo.git({"remote", "add", "fork", "."}).git({"remote", "add", "origin", "."}).git({"branch", "request-3"});
    store.snapshot().refresh(RefreshScope::full);
    ASSERT_TRUE(worker.settle());
    store.window().showSheet(RequestSheet{});
    auto& number = *named<QLineEdit>(*dialog(), u"Request Number"_s);
    auto& name = *named<QLineEdit>(*dialog(), u"New Branch Name"_s);
    EXPECT_EQ(named<QComboBox>(*dialog(), u"Remote"_s)->currentText(), u"origin"_s);
    number.setText(u"3"_s);
    EXPECT_EQ(name.text(), u"request-3"_s);
    EXPECT_FALSE(button(u"Check Out"_s)->isEnabled()) << "there is such a branch";
    number.setText(u"34"_s);
    EXPECT_TRUE(button(u"Check Out"_s)->isEnabled());
    name.setText(u"mine"_s);
    number.setText(u"35"_s);
    EXPECT_EQ(name.text(), u"mine"_s);
}

TEST_F(DialogsTest, AStashTakesWhatIsStagedOrSelected)
{
    repo.write("a", "2").git({"add", "a"}).write("b", "2").write("c", "2");
    store.snapshot().refresh(RefreshScope::status);
    ASSERT_TRUE(worker.settle());
    const gitkit::FileChange selected = *store.snapshot().status.value().files.find("b");
    store.window().showSheet(StashSheet{.files = {selected}, .lines = {}});
    EXPECT_TRUE(named<QRadioButton>(*dialog(), u"Only 1 Selected File"_s)->isChecked());
    EXPECT_FALSE(named<QCheckBox>(*dialog(), u"Include Untracked Files"_s)->isEnabled());
    EXPECT_TRUE(says(u"1 changed file is put aside."_s));
    button(u"Stash Changes"_s)->click();
    ASSERT_TRUE(worker.settle());
    EXPECT_EQ(repo.read({"status", "--porcelain"}), "M  a\n?? c");
    store.window().showSheet(StashSheet{});
    named<QRadioButton>(*dialog(), u"Only What Is Staged"_s)->setChecked(true);
    button(u"Stash Changes"_s)->click();
    ASSERT_TRUE(worker.settle());
    EXPECT_EQ(repo.read({"status", "--porcelain"}), "?? c");
    EXPECT_EQ(store.snapshot().stashes.value().size(), 2U);
    store.window().showSheet(NewBranchSheet{.startPoint = {}, .stash = store.snapshot().stashes.value().front()});
    named<QLineEdit>(*dialog(), u"New Branch Name"_s)->setText(u"from-stash"_s);
    button(u"Create Branch"_s)->click();
    ASSERT_TRUE(worker.settle());
    EXPECT_EQ(repo.read({"status", "--porcelain", "--branch"}), "## from-stash\nM  a\n?? c");
}

TEST_F(DialogsTest, WhatAnEarlierWindowDiscardedIsRestoredOrDropped)
{
    const auto open = [this] {
        command(CommandId::restoreDiscarded).run(store);
        EXPECT_TRUE(worker.settle());
    };
    open();
    EXPECT_TRUE(says(u"Nothing Is Kept"_s));
    EXPECT_FALSE(button(u"Restore"_s)->isEnabled());
    QTest::keyClick(dialog(), Qt::Key_Escape);
    for (const char* name : {"first", "second"}) {
        repo.write("a", name).write(name, "n");
        RepositoryStore earlier{
            repo.path(), worker, {.trash = [](const auto& file) { std::filesystem::remove(file); }}};
        earlier.snapshot().refresh(RefreshScope::full);
        ASSERT_TRUE(worker.settle());
        earlier.staging().confirmDiscard(earlier.snapshot().status.value().files);
        ASSERT_TRUE(worker.settle());
        earlier.window().confirm(earlier.window().confirmation.value()->id);
        ASSERT_TRUE(worker.settle());
    }
    ASSERT_EQ(repo.read({"status", "--porcelain"}), "");

    open();
    auto* list = named<QListWidget>(*dialog(), u"Discarded"_s);
    ASSERT_EQ(list->count(), 2);
    EXPECT_TRUE(list->hasFocus());
    EXPECT_TRUE(list->item(0)->text().endsWith(u": “a” and 1 other file"_s)) << list->item(0)->text().toStdString();
    EXPECT_EQ(list->item(0)->toolTip(), u"a\nsecond"_s) << "the newest is first";
    EXPECT_TRUE(button(u"Save In…"_s)->isEnabled());
    QTest::keyClick(list, Qt::Key_Delete);
    EXPECT_EQ(dialog()->accessibleName(), u"Drop the copy of “a” and 1 other file?"_s);
    button(u"Drop the Copy"_s)->click();
    ASSERT_TRUE(worker.settle());
    ASSERT_EQ(list->count(), 1);
    QTest::keyClick(list, Qt::Key_Return);
    ASSERT_TRUE(worker.settle());
    EXPECT_FALSE(dialog());
    EXPECT_EQ(repo.read({"status", "--porcelain"}), " M a\n?? first");
    open();
    EXPECT_TRUE(says(u"Nothing Is Kept"_s));
}

TEST_F(DialogsTest, AChangeInTheWayKeepsASheetFromBeingConfirmed)
{
    store.window().showSheet(NewBranchSheet{});
    named<QLineEdit>(*dialog(), u"New Branch Name"_s)->setText(u"next"_s);
    EXPECT_TRUE(button(u"Create Branch"_s)->isEnabled());
    test::givenRunning(store, Verb::fetch);
    EXPECT_TRUE(button(u"Create Branch"_s)->isEnabled());
    test::givenRunning(store, Verb::pull);
    EXPECT_FALSE(button(u"Create Branch"_s)->isEnabled());
    EXPECT_EQ(button(u"Create Branch"_s)->toolTip(), u"Not while this runs: Something…"_s);
    test::givenRunning(store, std::nullopt);
    EXPECT_TRUE(button(u"Create Branch"_s)->isEnabled());
}

TEST_F(DialogsTest, AProblemIsToldInFullUntilItIsRead)
{
    store.window().report({.message = u"Cannot push: this repository has no remote."_s});
    ASSERT_TRUE(dialog());
    EXPECT_EQ(dialog()->windowTitle(), u"This could not be done"_s);
    EXPECT_TRUE(says(u"Cannot push: this repository has no remote."_s));

    QStringList lines;
    for (int number = 0; number < 2000; ++number)
        lines.append(u"%1: \x1b[31merror\x1b[0m <b>&amp;"_s.arg(number));
    store.window().report({.message = lines.join(u'\n'), .speaker = gitkit::Speaker::git});
    EXPECT_EQ(dialog()->windowTitle(), u"Git reported a problem"_s);
    EXPECT_EQ(dialog()->accessibleName(), u"Git reported a problem"_s);
    auto* text = dialog()->findChild<QPlainTextEdit*>();
    ASSERT_TRUE(text && text->isVisible());
    EXPECT_EQ(text->toPlainText(), lines.join(u'\n').remove(u"\x1b[31m"_s).remove(u"\x1b[0m"_s));
    EXPECT_TRUE(text->textInteractionFlags() & Qt::TextSelectableByMouse);
    EXPECT_LT(dialog()->height(), 700);

    button(u"OK"_s)->click();
    EXPECT_FALSE(dialog());
    EXPECT_FALSE(store.window().errorMessage.value());
    given(store.window().errorMessage, u"again"_s);
    EXPECT_TRUE(dialog());
    store.window().dismissError();
    EXPECT_FALSE(dialog());
}

TEST_F(DialogsTest, AFailureWithWaysOnGoesTheOneThatIsTaken)
{
    std::string taken;
    const auto report = [&] {
        store.window().report({.message = u"no"_s, .speaker = gitkit::Speaker::hook},
                              {{u"Commit Without Hooks"_s, [&taken] { taken += "without "; }},
                               {u"Run Again"_s, [&taken] { taken += "again "; }}});
    };
    report();
    EXPECT_EQ(dialog()->windowTitle(), u"A hook did not allow this"_s);
    QTest::keyClick(dialog()->focusWidget(), Qt::Key_Return);
    EXPECT_FALSE(dialog());
    EXPECT_EQ(taken, "") << "Return does nothing";
    for (const QString& way : {u"Commit Without Hooks"_s, u"Run Again"_s, u"Cancel"_s}) {
        report();
        button(way)->click();
        EXPECT_FALSE(dialog());
        EXPECT_FALSE(store.window().errorMessage.value());
    }
    EXPECT_EQ(taken, "without again ");
    store.window().report({.message = u"no"_s});
    EXPECT_TRUE(button(u"OK"_s));
}

TEST_F(DialogsTest, ABranchIsRenamedFromTheSidebar)
{
    auto* const tree = named<QTreeView>(view, u"Sidebar"_s);
    store.window().select(SidebarItem::ref("refs/heads/side"));
    ASSERT_TRUE(worker.settle());
    QTest::keyClick(tree, Qt::Key_F2);
    ASSERT_TRUE(dialog());
    auto* const name = named<QLineEdit>(*dialog(), u"New Branch Name"_s);
    EXPECT_EQ(name->selectedText(), u"side"_s);
    EXPECT_FALSE(button(u"Rename"_s)->isEnabled());
    name->setText(u"main"_s);
    EXPECT_TRUE(says(u"There is already a branch named “main”."_s));
    name->setText(u"side/ways"_s);
    EXPECT_FALSE(says(u"“side” is a branch, so it can't be a folder of others."_s));
    QTest::keyClick(name, Qt::Key_Return);
    ASSERT_TRUE(worker.settle());
    EXPECT_EQ(repo.read({"branch", "--format=%(refname:short)"}), "main\nside/ways");
    EXPECT_EQ(store.window().selection.value(), SidebarItem::ref("refs/heads/side/ways"));
}

TEST_F(DialogsTest, ARebaseSaysWhatBecomesOfEachCommit)
{
    if (!gitkit::can(gitkit::Ability::mergesInMemory))
        GTEST_SKIP() << "this git cannot merge in memory";
    repo.git({"checkout", "-q", "-b", "other", "side"}).write("b", "1\n").commit("b").git({"tag", "clashing", "main"});
    repo.git({"checkout", "-q", "-b", "topic", "side"}).write("c", "1\n").commit("three");
    const std::string three = repo.head();
    repo.write("a", "3\n").commit("four").write("c", "2\n").commit("fixup! three").git({"checkout", "-q", "main"});
    store.snapshot().refresh(RefreshScope::full);
    ASSERT_TRUE(worker.settle());
    store.window().showSheet(RebaseSheet{.branch = "refs/heads/topic"});
    ASSERT_TRUE(worker.settle());
    ASSERT_TRUE(dialog());
    auto* const search = named<QLineEdit>(*dialog(), u"Search Branches and Tags"_s);
    auto* const commits = named<QListWidget>(*dialog(), u"What Becomes of the Commits"_s);
    const auto lines = [commits] {
        QStringList texts;
        for (int row = 0; row < commits->count(); ++row)
            texts += commits->item(row)->text();
        return texts.join(u'\n').toStdString();
    };
    EXPECT_TRUE(search->hasFocus());
    search->setText(u"nowhere"_s);
    EXPECT_TRUE(says(u"No branch or tag is called so."_s));
    search->setText(u"CLASH"_s);
    ASSERT_TRUE(worker.settle());
    EXPECT_EQ(lines(), "Moves: “three”\nConflicts in “a”: “four”\nNot known yet: “fixup! three”");
    EXPECT_TRUE(says(u"Check out “topic” first: git needs its files where commits conflict."_s));
    EXPECT_FALSE(button(u"Rebase"_s)->isEnabled());
    search->setText(QString());
    auto* const onto = named<QListWidget>(*dialog(), u"Onto"_s);
    while (onto->currentItem()->text() != u"other"_s) {
        const int row = onto->currentRow();
        QTest::keyClick(search, row > 1 ? Qt::Key_Up : Qt::Key_Down);
        ASSERT_NE(onto->currentRow(), row);
    }
    ASSERT_TRUE(worker.settle());
    EXPECT_TRUE(says(u"Puts 3 commits on top of other, no conflicts."_s));
    named<QCheckBox>(*dialog(), u"Squash 1 fixup commit"_s)->setChecked(true);
    ASSERT_TRUE(worker.settle());
    EXPECT_EQ(lines(), "Moves: “three”\nGoes into the one above: “fixup! three”\nMoves: “four”");
    button(u"Rebase"_s)->click();
    ASSERT_TRUE(worker.settle());
    EXPECT_FALSE(dialog());
    EXPECT_EQ(repo.read({"log", "--reverse", "--format=%s", "topic"}), "one\nb\nthree\nfour");
    EXPECT_EQ(repo.read({"symbolic-ref", "--short", "HEAD"}), "main");
}

TEST_F(DialogsTest, APushSaysWhatGoesWhere)
{
    TestRepository remote{{"--bare"}};
    repo.git({"remote", "add", "origin", remote.path().string()}).git({"push", "-q", "origin", "side:main"});
    repo.git({"push", "-q", "origin", "main:topic"}).git({"tag", "v1"}).git({"fetch", "-q"});
    repo.git({"commit", "-q", "--amend", "-m", "two again"});
    repo.git({"tag", "v2"});
    store.snapshot().refresh(RefreshScope::full);
    ASSERT_TRUE(worker.settle());
    command(CommandId::pushTo).run(store);
    ASSERT_TRUE(dialog());
    ASSERT_TRUE(worker.settle());
    EXPECT_TRUE(says(u"This sends 1 commit to origin/main. Others may fetch that within seconds."_s));
    EXPECT_FALSE(named<QCheckBox>(*dialog(), u"Replace what is there"_s)->isEnabled());
    auto* const tags = named<QCheckBox>(*dialog(), u"With the tags on these commits: “v2”"_s);
    ASSERT_TRUE(tags);
    tags->setChecked(true);
    auto* const name = named<QLineEdit>(*dialog(), u"Name There"_s);
    name->setText(u"new"_s);
    ASSERT_TRUE(worker.settle());
    EXPECT_TRUE(says(u"origin/new is made."_s));
    name->setText(u"topic"_s);
    ASSERT_TRUE(worker.settle());
    EXPECT_TRUE(says(u"This would lose 1 commit there. Pull first, or replace what is there."_s));
    EXPECT_FALSE(button(u"Push"_s)->isEnabled());
    EXPECT_EQ(named<QListWidget>(*dialog(), u"What Goes and What Comes"_s)->item(0)->text(), u"Changed: “two”"_s);
    named<QCheckBox>(*dialog(), u"Replace what is there"_s)->setChecked(true);
    EXPECT_TRUE(named<QCheckBox>(*dialog(), u"Make it the upstream"_s)->isChecked());
    button(u"Push"_s)->click();
    ASSERT_TRUE(worker.settle());
    EXPECT_FALSE(dialog());
    EXPECT_EQ(remote.read({"rev-parse", "topic", "v2"}), repo.head() + '\n' + repo.head());
    EXPECT_EQ(repo.read({"config", "branch.main.merge"}), "refs/heads/topic");

    // What was just rewritten is one click from there, with the branches that moved along.
    repo.git({"branch", "-q", "low"}).git({"push", "-q", "-u", "origin", "low"});
    repo.git({"commit", "-q", "--allow-empty", "-m", "three"}).git({"push", "-q", "origin", "main:topic"});
    store.snapshot().refresh(RefreshScope::full);
    store.rewriting().watch();
    ASSERT_TRUE(worker.settle());
    store.rewriting().reword(repo.read({"rev-parse", "low"}), u"two at last"_s);
    ASSERT_TRUE(worker.settle());
    store.rewriting().apply();
    ASSERT_TRUE(worker.settle());
    auto* const way = named<QPushButton>(*view.findChild<QuietLine*>(), u"Push…"_s);
    ASSERT_TRUE(way->isVisible());
    EXPECT_EQ(way->toolTip(), u"origin/topic still has what “main” was before"_s);
    way->click();
    ASSERT_TRUE(worker.settle());
    auto* const along = named<QCheckBox>(*dialog(), u"Replace the branches that moved along, too: “low”"_s);
    ASSERT_TRUE(along);
    EXPECT_FALSE(along->isChecked());
    EXPECT_TRUE(says(u"This takes 2 commits off origin/topic for everybody, unless somebody has pushed since. Undo "
                     "cannot bring that back."_s));
    named<QCheckBox>(*dialog(), u"Replace what is there"_s)->setChecked(false);
    EXPECT_FALSE(along->isVisible());
    named<QCheckBox>(*dialog(), u"Replace what is there"_s)->setChecked(true);
    along->setChecked(true);
    button(u"Push"_s)->click();
    ASSERT_TRUE(worker.settle());
    EXPECT_EQ(remote.read({"rev-parse", "topic", "low"}), repo.read({"rev-parse", "main", "low"}));
    repo.git({"branch", "-q", "-D", "low"});
    remote.git({"branch", "-q", "-D", "low"});

    // The rename goes there, too.
    store.window().showSheet(RenameBranchSheet{"main"});
    EXPECT_FALSE(named<QCheckBox>(*dialog(), u"Rename on origin, too"_s)) << "it is called otherwise there";
    store.window().closeSheet();
    repo.git({"branch", "-q", "-m", "main", "topic"});
    store.snapshot().refresh(RefreshScope::full);
    ASSERT_TRUE(worker.settle());
    store.window().showSheet(RenameBranchSheet{"topic"});
    named<QCheckBox>(*dialog(), u"Rename on origin, too"_s)->setChecked(true);
    named<QLineEdit>(*dialog(), u"New Branch Name"_s)->setText(u"better"_s);
    button(u"Rename"_s)->click();
    ASSERT_TRUE(worker.settle());
    EXPECT_EQ(remote.read({"branch", "--format=%(refname:short)"}), "better\nmain");
    EXPECT_EQ(repo.read({"config", "branch.better.merge"}), "refs/heads/better");
}

TEST_F(DialogsTest, AMergeSaysWhatComesOfIt)
{
    repo.git({"checkout", "-q", "side"}).write("a", "3\n").commit("theirs").git({"checkout", "-q", "main"});
    store.snapshot().refresh(RefreshScope::full);
    ASSERT_TRUE(worker.settle());
    store.window().showSheet(MergeSheet{"refs/heads/side"});
    ASSERT_TRUE(worker.settle());
    EXPECT_EQ(dialog()->accessibleName(), u"Merge “side” into “main”"_s);
    if (gitkit::can(gitkit::Ability::mergesInMemory))
        EXPECT_TRUE(says(u"1 commit, conflicts in “a”."_s));
    EXPECT_FALSE(named<QRadioButton>(*dialog(), u"Only fast-forward"_s)->isEnabled());
    EXPECT_TRUE(says(u"Not possible while it lacks 1 commit of here."_s));
    store.window().closeSheet();

    repo.git({"reset", "-q", "--hard", "side~1"});
    store.snapshot().refresh(RefreshScope::full);
    ASSERT_TRUE(worker.settle());
    store.window().showSheet(MergeSheet{"refs/heads/side"});
    ASSERT_TRUE(worker.settle());
    EXPECT_TRUE(says(u"1 commit, merges cleanly."_s));
    EXPECT_TRUE(says(u"Fast-forwards: no merge commit is needed."_s));
    named<QRadioButton>(*dialog(), u"Always with a merge commit"_s)->click();
    button(u"Merge"_s)->click();
    ASSERT_TRUE(worker.settle());
    EXPECT_EQ(repo.read({"log", "-1", "--format=%s"}), "Merge branch 'side'");
    store.window().showSheet(MergeSheet{"refs/heads/side"});
    ASSERT_TRUE(worker.settle());
    EXPECT_TRUE(says(u"All of it is merged already."_s));
    EXPECT_FALSE(button(u"Merge"_s)->isEnabled());
}

TEST_F(DialogsTest, AResetSaysWhatEachWayDoes)
{
    const std::string first = repo.read({"rev-parse", "HEAD~1"});
    repo.write("a", "mine\n");
    store.snapshot().refresh(RefreshScope::full);
    ASSERT_TRUE(worker.settle());
    store.window().showSheet(ResetSheet{first});
    EXPECT_FALSE(button(u"Reset"_s)->isEnabled()) << "nothing is known yet";
    ASSERT_TRUE(worker.settle());
    EXPECT_EQ(dialog()->accessibleName(), u"Reset “main”"_s);
    EXPECT_TRUE(says(u"To %1, “one”"_s.arg(QString::fromStdString(first.substr(0, 7)))));
    EXPECT_TRUE(says(u"Not possible. Changed here and in those commits: “a”."_s));
    EXPECT_TRUE(says(u"Turns 1 commit into staged changes."_s));
    EXPECT_TRUE(says(u"Overwrites 1 changed file: “a”. Undo brings this back."_s));
    EXPECT_TRUE(says(u"No other branch or tag leads to 1 commit. Undo knows the way back for 30 days."_s));
    EXPECT_FALSE(button(u"Reset"_s)->isEnabled());

    // What changes while it is open counts.
    repo.git({"checkout", "-q", "a"});
    store.snapshot().refresh(RefreshScope::status);
    ASSERT_TRUE(worker.settle());
    EXPECT_TRUE(says(u"Moves main back by 1 commit. Changed files stay as they are."_s));
    EXPECT_TRUE(button(u"Reset"_s)->isEnabled());
    named<QRadioButton>(*dialog(), u"Keep those commits’ changes, too, staged"_s)->click();
    button(u"Reset"_s)->click();
    ASSERT_TRUE(worker.settle());
    EXPECT_FALSE(dialog());
    EXPECT_EQ(repo.head(), first);
    EXPECT_EQ(repo.read({"status", "--porcelain"}), "M  a");
}

TEST_F(DialogsTest, WhoCommitsIsAskedFor)
{
    repo.write("a", "3\n").git({"add", "a"});
    store.snapshot().refresh(RefreshScope::status);
    ASSERT_TRUE(worker.settle());
    store.draft().setSubject(u"three"_s);
    store.window().showSheet(IdentitySheet{{"Ada", ""}});
    auto* const email = named<QLineEdit>(*dialog(), u"E-Mail"_s);
    EXPECT_EQ(named<QLineEdit>(*dialog(), u"Name"_s)->text(), u"Ada"_s);
    EXPECT_EQ(dialog()->focusWidget(), email);
    EXPECT_FALSE(button(u"Commit"_s)->isEnabled());
    email->setText(u"<ada@example.org>"_s);
    EXPECT_TRUE(says(u"Git leaves “<” and “>” out."_s));
    EXPECT_FALSE(button(u"Commit"_s)->isEnabled());
    email->setText(u" ada@example.org"_s);
    button(u"Commit"_s)->click();
    ASSERT_TRUE(worker.settle());
    EXPECT_FALSE(dialog());
    EXPECT_EQ(repo.read({"log", "-1", "--format=%an <%ae>: %s"}), "Ada <ada@example.org>: three");
}

TEST(ErrorText, IsWhatATerminalWouldHaveLeft)
{
    EXPECT_EQ(withoutTerminalCodes(u" 10%\r 20%\rdone\r\nnext\r\n"_s), u"done\nnext"_s);
    EXPECT_EQ(withoutTerminalCodes(u"\x1b]0;title\x07\x1b[1;31mred\x1b[m\ttab\b"_s), u"red\ttab"_s);
}

TEST_F(DialogsTest, AQuestionActsOnlyWhenItIsConfirmed)
{
    int acted = 0;
    Confirmation first{
        .title = u"Drop it?"_s, .message = u"Gone."_s, .actionTitle = u"Drop"_s, .action = [&acted] { ++acted; }};
    store.window().ask(first);
    ASSERT_TRUE(dialog());
    EXPECT_EQ(dialog()->accessibleName(), u"Drop it?"_s);
    QTest::keyClick(dialog(), Qt::Key_Return); // the button with the focus is the one that loses nothing
    EXPECT_FALSE(dialog());
    EXPECT_FALSE(store.window().confirmation.value());
    EXPECT_EQ(acted, 0);

    store.window().ask(first);
    Confirmation second = first;
    second.id = QUuid::createUuid();
    second.title = u"Merge?"_s;
    second.actionTitle = u"Merge"_s;
    second.risk = Confirmation::Risk::none;
    second.action = [&acted] { acted += 10; };
    store.window().ask(second);
    EXPECT_EQ(dialog()->accessibleName(), u"Merge?"_s);
    EXPECT_EQ(acted, 0);
    QTest::keyClick(dialog(), Qt::Key_Return);
    EXPECT_EQ(acted, 10);
    EXPECT_FALSE(store.window().confirmation.value());
}

TEST_F(DialogsTest, AQuestionMayHaveFurtherWaysAndAnOption)
{
    std::string chosen;
    Confirmation question{
        .title = u"Leave?"_s, .message = {}, .actionTitle = u"Leave"_s, .action = [&chosen] { chosen += "action "; }};
    question.choices.push_back({u"New Branch…"_s, [&chosen] { chosen += "first "; }});
    question.choices.push_back({u"Stay"_s, [&chosen] { chosen += "second "; }});
    question.option = {.title = u"Remember"_s, .chosen = [&chosen](bool is) { chosen += is ? "ticked " : "plain "; }};
    for (const QString& title : {u"New Branch…"_s, u"Stay"_s, u"Leave"_s, u"Cancel"_s}) {
        question.id = QUuid::createUuid();
        store.window().ask(question);
        ASSERT_TRUE(dialog());
        EXPECT_EQ(dialog()->focusWidget(), button(u"Cancel"_s)) << "Return loses nothing";
        for (const QString& next : {u"New Branch…"_s, u"Stay"_s, u"Leave"_s}) {
            QTest::keyClick(dialog()->focusWidget(), Qt::Key_Tab);
            EXPECT_EQ(dialog()->focusWidget(), button(next)) << "as they stand, left to right";
        }
        if (title == u"Stay"_s)
            named<QCheckBox>(*dialog(), u"Remember"_s)->click();
        button(title)->click();
        EXPECT_FALSE(store.window().confirmation.value());
    }
    EXPECT_EQ(chosen, "plain first ticked second plain action ");
}

TEST_F(DialogsTest, AQuestionIsAnsweredForGoodUntilAllAreAskedAgain)
{
    RepositoryStore its(repo.path(), worker,
                        {.questions = {.isSettled = &settledQuestions::contains, .settle = &settledQuestions::add}});
    RepositoryView shown(its);
    shown.show();
    int acted = 0;
    const auto ask = [&](const QString& kind) {
        its.window().ask({.title = u"Drop it?"_s,
                          .message = {},
                          .actionTitle = u"Drop"_s,
                          .action = [&acted] { ++acted; },
                          .kind = kind});
        return openDialog(shown);
    };
    const QString offer = u"Do not ask again; Undo brings it back"_s;
    const auto answer = [&](QDialog* dialog, const QString& title) {
        named<QCheckBox>(*dialog, offer)->setChecked(true);
        named<QPushButton>(*dialog, title)->click();
    };
    ASSERT_TRUE(ask({}));
    EXPECT_FALSE(named<QCheckBox>(*openDialog(shown), offer)) << "what is always asked";
    answer(ask(u"drop"_s), u"Cancel"_s);
    answer(ask(u"drop"_s), u"Drop"_s);
    EXPECT_EQ(acted, 1) << "a question that was not confirmed is asked again";
    EXPECT_FALSE(ask(u"drop"_s));
    EXPECT_EQ(acted, 2);
    EXPECT_TRUE(ask(u"delete"_s)) << "another kind";
    its.window().dismissQuestion();

    GeneralTab settings{{}};
    auto* const again = named<QPushButton>(settings, u"Ask Again Before Everything"_s);
    again->click();
    EXPECT_FALSE(again->isEnabled());
    EXPECT_TRUE(ask(u"drop"_s));
    EXPECT_EQ(acted, 2);
}

TEST_F(DialogsTest, AnUnmergedBranchIsDeletedAfterTwoQuestions)
{
    repo.git({"checkout", "-q", "side"}).write("b", "b").commit("only here").git({"checkout", "-q", "main"});
    store.snapshot().refresh(RefreshScope::full);
    ASSERT_TRUE(worker.settle());
    actions::confirmDelete(store.actors(), store.snapshot().branches.value().back());
    ASSERT_TRUE(worker.settle());
    EXPECT_EQ(dialog()->accessibleName(), u"Delete branch “side”?"_s);
    button(u"Delete"_s)->click();
    ASSERT_TRUE(worker.settle());
    ASSERT_TRUE(dialog());
    EXPECT_EQ(dialog()->accessibleName(), u"“side” is not fully merged"_s);
    EXPECT_FALSE(store.window().errorMessage.value());
    button(u"Force Delete"_s)->click();
    ASSERT_TRUE(worker.settle());
    EXPECT_EQ(store.snapshot().branches.value().size(), 1U);
    EXPECT_EQ(repo.read({"branch", "--list", "side"}), "");
}

} // namespace
} // namespace plovik

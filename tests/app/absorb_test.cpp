// SPDX-License-Identifier: GPL-3.0-or-later
// Staged changes that go into older commits: by the sheet that knows which ones, and by the commit box.

#include "GitKit/runner/GitVersion.h"
#include "app/settings/CommitDrafts.h"
#include "app/store/RepositoryStore.h"
#include "app/ui/dialogs/StoreDialogs.h"
#include "app/ui/workingcopy/WorkingCopyView.h"
#include "tests/app/SettlingWorker.h"
#include "tests/app/ShownWidgets.h"
#include "tests/support/TestRepository.h"

#include <QAbstractItemModel>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTreeView>
#include <QtTest/QTest>

#include <gtest/gtest.h>

#include <map>
#include <string>

using namespace Qt::StringLiterals;

namespace plovik {
namespace {

using test::named;

/// main has two commits of its own, each of which has changed two of ten lines.
struct AbsorbSheetShown : testing::Test {
    void SetUp() override
    {
        repo.write("f", text({})).commit("base").git({"update-ref", "refs/remotes/origin/main", "HEAD"});
        repo.write("f", text({{2, "two"}})).commit("Second line");
        repo.write("f", text({{2, "two"}, {8, "eight"}})).commit("Eighth line");
        repo.write("f", text({{2, "TWO"}, {5, "FIVE"}, {8, "EIGHT"}})).write("new", "n").git({"add", "-A"});
        store.snapshot().refresh(RefreshScope::full);
        EXPECT_TRUE(worker.settle());
        window.show();
    }
    static std::string text(const std::map<int, std::string>& changed)
    {
        std::string all;
        for (int line = 1; line <= 10; ++line)
            all += (changed.contains(line) ? changed.at(line) : std::to_string(line)) + '\n';
        return all;
    }
    QDialog& open()
    {
        store.window().showSheet(AbsorbSheet{});
        EXPECT_TRUE(worker.settle());
        return *test::openDialog(window);
    }
    QTreeView& list() const { return *test::openDialog(window)->findChild<QTreeView*>(); }
    std::string row(int row) const
    {
        const QAbstractItemModel& model = *list().model();
        const bool isTicked = model.index(row, 0).data(Qt::CheckStateRole).toInt() == Qt::Checked;
        const QString target = model.index(row, 1).data().toString();
        return (isTicked ? "+ " : "- ") + model.index(row, 0).data().toString().toStdString() + " > " +
               target.mid(target.startsWith(u"Stays"_s) ? 0 : 9).toStdString();
    }
    std::string summary() const { return named<QLabel>(*test::openDialog(window), u"Summary"_s)->text().toStdString(); }
    QPushButton* confirm() const { return named<QPushButton>(*test::openDialog(window), u"Absorb"_s); }
    void refresh()
    {
        store.snapshot().refresh(RefreshScope::full);
        EXPECT_TRUE(worker.settle());
    }

    TestRepository repo;
    test::SettlingWorker worker;
    RepositoryStore store{repo.path(), worker};
    QWidget window;
    StoreDialogs dialogs{store, &window};
};

TEST_F(AbsorbSheetShown, ListsWhereChangesGoAndLetsTheUserChooseOtherwise)
{
    QDialog& dialog = open();
    EXPECT_EQ(summary(), "2 of 4 staged changes will go into 2 commits. The rest stays staged.");
    EXPECT_EQ(row(0), "+ f, line 2  TWO > Second line");
    EXPECT_EQ(row(1), "+ f, line 8  EIGHT > Eighth line");
    EXPECT_EQ(row(2), "- f, line 5  FIVE > Stays staged: its lines are on origin/main");
    EXPECT_EQ(row(3), "- new > Stays staged: a new file");
    auto& lines = *named<QPlainTextEdit>(dialog, u"Changed Lines"_s);
    EXPECT_EQ(lines.toPlainText(), u"-two\n+TWO"_s);
    auto& commits = *named<QComboBox>(dialog, u"Commit That It Goes Into"_s);
    EXPECT_EQ(commits.currentText().mid(9), u"Second line"_s);

    // The eighth line was not like this in the older commit, so it cannot be sent there.
    list().setCurrentIndex(list().model()->index(1, 0));
    ASSERT_EQ(commits.count(), 3);
    EXPECT_TRUE(commits.itemText(2).endsWith(u"Second line — it does not fit there"_s));
    EXPECT_FALSE(commits.model()->flags(commits.model()->index(2, 0)) & Qt::ItemIsEnabled);
    // Space leaves it out, and what was older goes where the user wants it.
    QTest::keyClick(&list(), Qt::Key_Space);
    EXPECT_EQ(row(1), "- f, line 8  EIGHT > Stays staged");
    list().setCurrentIndex(list().model()->index(2, 0));
    EXPECT_EQ(lines.toPlainText(), u"-5\n+FIVE"_s);
    commits.setCurrentIndex(2);
    Q_EMIT commits.activated(2);
    EXPECT_EQ(row(2), "+ f, line 5  FIVE > Second line");
    EXPECT_EQ(summary(), "2 of 4 staged changes will go into 1 commit. The rest stays staged.");
    list().setCurrentIndex(list().model()->index(3, 0));
    EXPECT_FALSE(commits.isEnabled()) << "a new file goes nowhere";
    refresh();
    EXPECT_EQ(row(2), "+ f, line 5  FIVE > Second line") << "nothing has changed that was asked for";

    QTest::keyClick(&dialog, Qt::Key_Return, Qt::ControlModifier);
    QApplication::processEvents();
    EXPECT_TRUE(worker.settle());
    EXPECT_EQ(store.window().errorMessage.value().value_or(QString()).toStdString(), "");
    EXPECT_EQ(repo.read({"log", "--format=%s"}), "Eighth line\nSecond line\nbase");
    EXPECT_EQ(repo.read({"show", "HEAD~:f"}) + '\n', text({{2, "TWO"}, {5, "FIVE"}}));
    EXPECT_EQ(repo.read({"diff", "--cached", "--numstat"}), "1\t1\tf\n1\t0\tnew");
}

TEST_F(AbsorbSheetShown, IsReadAgainWhenSomethingElseIsStagedAndSaysWhyNothingGoes)
{
    open();
    repo.git({"reset", "-q"}).write("f", text({{2, "two"}, {8, "8 again"}})).git({"add", "f"});
    refresh();
    EXPECT_EQ(summary(), "1 of 1 staged change will go into 1 commit. The rest stays staged.");
    EXPECT_EQ(row(0), "+ f, line 8  8 again > Eighth line");
    EXPECT_TRUE(confirm()->isEnabled());
    QTest::keyClick(&list(), Qt::Key_Space);
    EXPECT_EQ(summary(), "None of 1 staged change will go into a commit.");
    EXPECT_FALSE(confirm()->isEnabled());

    const auto says = [this](const QString& words) {
        return named<QLabel>(*test::openDialog(window), words) != nullptr;
    };
    repo.git({"update-ref", "refs/remotes/origin/main", "HEAD"});
    refresh();
    EXPECT_TRUE(says(u"Nothing here is only yours: all commits are on origin/main."_s));
    EXPECT_FALSE(confirm()->isEnabled());
    repo.git({"reset", "-q"});
    refresh();
    EXPECT_TRUE(says(u"Nothing is staged."_s));
    const std::string head = repo.head();
    QTest::keyClick(test::openDialog(window), Qt::Key_Escape);
    QApplication::processEvents();
    EXPECT_FALSE(test::openDialog(window));
    EXPECT_EQ(repo.head(), head);
}

/// The commit box of the same repository, with a message that somebody has begun.
struct CommitBoxInto : AbsorbSheetShown {
    void SetUp() override
    {
        AbsorbSheetShown::SetUp();
        if (!gitkit::can(gitkit::Ability::mergesInMemory))
            GTEST_SKIP() << "this git cannot merge in memory";
        repo.git({"reset", "-q"}).write("f", text({{2, "TWO"}, {8, "eight"}})).git({"add", "f"});
        view.resize(900, 600);
        view.show();
        refresh();
        subject().setText(u"The next one"_s);
        body().setPlainText(u"With words"_s);
    }
    QLineEdit& subject() const { return *named<QLineEdit>(view, u"Commit Subject"_s); }
    QPlainTextEdit& body() const { return *named<QPlainTextEdit>(view, u"Commit Body"_s); }
    QAbstractButton& commit() const { return *named<QAbstractButton>(view, u"Commit"_s); }
    std::string note() const
    {
        auto* const label = named<QLabel>(view, u"Commit That Is Written Into"_s);
        return label->isVisible() ? label->text().toStdString() : "";
    }
    void choose(const QString& typed)
    {
        named<QAbstractButton>(view, u"Commit into an Older Commit…"_s)->click();
        EXPECT_TRUE(worker.settle());
        auto* const field = named<QLineEdit>(view, u"Filter Commits"_s);
        ASSERT_TRUE(field);
        field->setText(typed);
        EXPECT_TRUE(worker.settle());
        QTest::keyClick(field, Qt::Key_Return);
        EXPECT_TRUE(worker.settle());
    }
    void press(QAbstractButton& button)
    {
        button.click();
        EXPECT_TRUE(worker.settle());
        EXPECT_EQ(store.window().errorMessage.value().value_or(QString()).toStdString(), "");
    }

    WorkingCopyView view{store};
};

TEST_F(CommitBoxInto, WritesIntoTheChosenCommitAndBringsTheDraftBack)
{
    choose(u"second"_s);
    EXPECT_EQ(note(), "Commit into “Second line”");
    EXPECT_EQ(subject().text(), u"Second line"_s);
    EXPECT_FALSE(named<QAbstractButton>(view, u"Amend"_s)->isEnabled());
    subject().setText(u"The second line"_s);
    const std::string before = repo.head();
    press(commit());
    EXPECT_EQ(repo.read({"log", "--format=%s"}), "Eighth line\nThe second line\nbase");
    EXPECT_EQ(repo.read({"show", "HEAD~:f"}) + '\n', text({{2, "TWO"}}));
    EXPECT_EQ(repo.read({"status", "--porcelain"}), "?? new");
    EXPECT_EQ(note(), "");
    EXPECT_EQ(subject().text() + u'|' + body().toPlainText(), u"The next one|With words"_s);
    store.undo().undo();
    EXPECT_TRUE(worker.settle());
    EXPECT_EQ(repo.head(), before) << "one step";
    EXPECT_EQ(subject().text(), u"The next one"_s);
}

TEST_F(CommitBoxInto, LosesNoMessageWhenItIsLeft)
{
    choose(u"eighth"_s);
    subject().setText(u"Other words"_s);
    named<QAbstractButton>(view, u"Cancel Committing into an Older Commit"_s)->click();
    EXPECT_EQ(subject().text() + u'|' + body().toPlainText(), u"The next one|With words"_s);
    store.draft().undoMessage();
    EXPECT_EQ(subject().text(), u"Other words"_s);

    // What waits is what is kept for the next window.
    subject().setText(u"The next one"_s);
    choose(u"eighth"_s);
    subject().setText(u"Words for the eighth"_s);
    view.hide();
    commitDrafts::finishWriting();
    EXPECT_EQ(commitDrafts::read(store.root()).subject, u"The next one"_s);

    // The commit goes: nothing can be committed into it, and nothing is dropped.
    view.show();
    repo.git({"reset", "-q", "--soft", "HEAD~2"});
    refresh();
    EXPECT_FALSE(commit().isEnabled());
    EXPECT_EQ(commit().toolTip(), u"The commit is not on the branch any more; choose another one"_s);
    EXPECT_EQ(subject().text(), u"Words for the eighth"_s);
}

} // namespace
} // namespace plovik

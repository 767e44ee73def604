// SPDX-License-Identifier: GPL-3.0-or-later
// Where HEAD and branches were, and bringing branches back.

#include "app/store/RepositoryStore.h"
#include "app/ui/reflog/RefLogList.h"
#include "app/ui/reflog/RefLogView.h"
#include "app/ui/window/RepositoryView.h"
#include "tests/app/SettlingWorker.h"
#include "tests/app/ShownWidgets.h"
#include "tests/support/TestRepository.h"

#include <QDialog>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QtTest/QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace plovik {
namespace {

using test::entry;
using test::named;

struct RefLog : testing::Test {
    RefLog()
    {
        view.resize(1100, 700);
        view.show();
    }
    ~RefLog() override { worker.settle(); }

    void show(const std::string& ref)
    {
        store.snapshot().refresh(RefreshScope::full);
        EXPECT_TRUE(worker.settle());
        store.window().select(SidebarItem::refLog(ref));
        EXPECT_TRUE(worker.settle());
    }
    RefLogList& list() const { return *view.findChild<RefLogView*>()->list(); }
    std::vector<std::string> rows() const
    {
        std::vector<std::string> found;
        for (int row = 0; row < list().model()->rowCount(); ++row) {
            const RefLogRow& shown = *list().rowAt(list().model()->index(row, 0));
            found.push_back(shown.move.action + (shown.move.isOnlyHere ? " (only here)" : ""));
        }
        return found;
    }

    TestRepository repo;
    test::SettlingWorker worker;
    RepositoryStore store{repo.path(), worker};
    RepositoryView view{store};
};

TEST_F(RefLog, ShowsWhereHeadWasAndBringsBackADeletedBranchWhichCanBeUndone)
{
    repo.write("a", "1").commit("one").git({"checkout", "-q", "-b", "gone"});
    repo.write("a", "2").commit("lost\x1f work").git({"checkout", "-q", "main"}).git({"branch", "-q", "-D", "gone"});
    const std::string lost = repo.read({"rev-parse", "HEAD@{1}"});
    show("HEAD");
    EXPECT_EQ(rows(),
              (std::vector<std::string>{"checkout: moving from gone to main", "commit: lost\x1f work (only here)",
                                        "checkout: moving from main to gone", "commit (initial): one"}));
    list().setCurrentIndex(list().model()->index(1, 0));
    ASSERT_TRUE(worker.settle());
    EXPECT_EQ(store.window().selectedCommit.value(), lost);

    list().setCurrentIndex(list().model()->index(0, 0));
    QAction* const back = entry(*view.findChild<RefLogView*>()->makeContextMenu(), u"Bring Back “gone”"_s);
    ASSERT_TRUE(back && back->isEnabled()) << back->toolTip().toStdString();
    back->trigger();
    ASSERT_TRUE(worker.settle());
    EXPECT_EQ(store.window().errorMessage.value().value_or(QString()).toStdString(), "");
    EXPECT_EQ(repo.read({"for-each-ref", "--format=%(objectname)", "refs/heads/gone"}), lost);
    EXPECT_EQ(repo.read({"branch", "--show-current"}), "main");
    EXPECT_EQ(rows().at(1), "commit: lost\x1f work") << "a branch leads to it again";
    EXPECT_FALSE(entry(*view.findChild<RefLogView*>()->makeContextMenu(), u"Bring Back “gone”"_s));
    store.undo().undo();
    ASSERT_TRUE(worker.settle());
    EXPECT_EQ(repo.read({"branch", "--list", "gone"}), "");
    EXPECT_EQ(rows().at(1), "commit: lost\x1f work (only here)");
}

TEST_F(RefLog, ChildrenAndTagsOfACommitAreLookedForOnRequest)
{
    repo.commit("one").git({"tag", "v1"}).commit("two").git({"tag", "v2"});
    show("HEAD");
    store.window().showSheet(RelationsSheet{repo.read({"rev-parse", "v1"})});
    ASSERT_TRUE(worker.settle());
    QDialog* const dialog = test::openDialog(view);
    auto* const found = named<QListWidget>(*dialog, u"Children, Branches and Tags"_s);
    QStringList texts;
    for (int row = 0; row < found->count(); ++row)
        texts += found->item(row)->text();
    EXPECT_EQ(
        texts.join(u'|').toStdString(),
        "Children|" + repo.head().substr(0, 7) +
            "  two|Nearest Tags|v1, at it or before it|v1, the oldest that contains it|Contained in 3 refs|main|v1|v2");
    dialog->accept();
    ASSERT_TRUE(worker.settle());
    EXPECT_EQ(store.window().selectedCommit.value(), repo.head()) << "the first child";
}

TEST_F(RefLog, ShowsThatOfABranchAndSaysWhenThereIsNone)
{
    show("HEAD");
    EXPECT_TRUE(named<QLabel>(view, u"Nothing Is Known"_s)) << "nothing was committed yet";
    repo.write("a", "1").commit("one").git({"branch", "HEAD2"}).git({"tag", "main"}).write("a", "2").commit("two");
    repo.git({"checkout", "-q", "--detach"}).git({"reset", "-q", "--hard", "HEAD~"});
    show("refs/heads/main");
    EXPECT_EQ(rows(), (std::vector<std::string>{"commit: two", "commit (initial): one"})) << "not that of the tag";
    show("HEAD");
    EXPECT_EQ(rows().front(), "reset: moving to HEAD~") << "what a program did outside is there, too";
}

} // namespace
} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/settings/Settings.h"
#include "app/store/RepositoryStore.h"
#include "app/ui/sidebar/RefMenu.h"
#include "app/ui/sidebar/SidebarView.h"
#include "app/ui/widgets/RowPainting.h"
#include "tests/app/ShownWidgets.h"
#include "tests/support/Given.h"

#include <QAccessible>
#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QTreeView>

#include <gtest/gtest.h>

using gitkit::GitRef;

namespace plovik {
namespace {

GitRef makeRef(GitRef::Kind kind, const std::string& name)
{
    static const std::map<GitRef::Kind, std::string> prefixes{{GitRef::Kind::local, "refs/heads/"},
                                                              {GitRef::Kind::remote, "refs/remotes/"},
                                                              {GitRef::Kind::tag, "refs/tags/"}};
    GitRef ref;
    ref.fullName = prefixes.at(kind) + name;
    ref.name = name;
    ref.kind = kind;
    ref.hash = std::string(40, 'a');
    return ref;
}

std::vector<GitRef> makeRefs(GitRef::Kind kind, const std::vector<std::string>& names)
{
    std::vector<GitRef> refs;
    for (const std::string& name : names)
        refs.push_back(makeRef(kind, name));
    return refs;
}

std::vector<std::string> numbered(const std::string& prefix, int from, int to)
{
    std::vector<std::string> names;
    for (int number = from; number < to; ++number)
        names.push_back(prefix + std::to_string(1000 + number));
    return names;
}

class SidebarTest : public testing::Test {
protected:
    SidebarTest()
    {
        for (const auto* setting : {&settings::sidebarBranchesExpanded, &settings::sidebarRemotesExpanded})
            Settings::shared().set(*setting, true);
        Settings::shared().set(settings::sidebarTagsExpanded, false);
        given(store.snapshot().branches,
              makeRefs(GitRef::Kind::local, {"feature/login", "feature/word-diff", "main", "release/2.4"}));
        given(store.snapshot().remotes, std::vector<std::string>{"origin", "team/fork"});
        given(store.snapshot().remoteBranches, makeRefs(GitRef::Kind::remote, {"origin/main", "team/fork/main"}));
        given(store.snapshot().tags, makeRefs(GitRef::Kind::tag, {"v1.0"}));
        view.resize(220, 400);
        view.show();
    }

    /// The rows that are on screen or could be scrolled to, indented, in order.
    std::vector<std::string> rows() const
    {
        std::vector<std::string> texts;
        for (QModelIndex row = tree().model()->index(0, 0); row.isValid(); row = tree().indexBelow(row))
            texts.push_back(std::string(static_cast<std::size_t>(view.model().depth(row)), ' ') +
                            row.data().toString().toStdString());
        return texts;
    }

    QTreeView& tree() const { return *view.tree(); }
    QModelIndex indexOf(const std::string& fullName) const { return view.model().indexOf(SidebarItem::ref(fullName)); }
    QLineEdit& filter() const { return *view.findChild<QLineEdit*>(); }
    int topOf(const std::string& fullName) const { return tree().visualRect(indexOf(fullName)).top(); }

    void press(QWidget& widget, Qt::Key key) const
    {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        QApplication::sendEvent(&widget, &event);
    }

    RepositoryStore store{"/nonexistent"};
    SidebarView view{store};
};

TEST_F(SidebarTest, MakesFoldersOfSharedPrefixesAndOfRemotes)
{
    EXPECT_EQ(rows(),
              (std::vector<std::string>{"Working Copy", "History", "Stashes", "Timeline", "Where HEAD Was", "BRANCHES",
                                        " main", " release/2.4", " feature", "  login", "  word-diff", "REMOTES",
                                        " origin", "  main", " team/fork", "  main", "TAGS"}));
    given(store.snapshot().tags, std::vector<GitRef>{});
    EXPECT_EQ(rows().back(), "  main");
}

TEST_F(SidebarTest, NamesItsRowsForAssistiveTechnology)
{
    QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(&tree());
    ASSERT_NE(interface, nullptr);
    EXPECT_EQ(interface->text(QAccessible::Name), QStringLiteral("Sidebar"));
    EXPECT_EQ(interface->role(), QAccessible::Tree);
    QStringList names;
    for (int i = 0; i < interface->childCount(); ++i)
        names.append(interface->child(i)->text(QAccessible::Name));
    for (const char* name : {"Working Copy", "History", "Stashes", "Timeline", "Where HEAD Was", "main",
                             "feature/login", "origin/main", "team/fork/main"})
        EXPECT_TRUE(names.contains(QLatin1String(name))) << name;
    EXPECT_EQ(filter().accessibleName(), QStringLiteral("Filter Refs"));
}

TEST_F(SidebarTest, SharesItsSelectionWithTheStore)
{
    tree().setCurrentIndex(indexOf("refs/remotes/origin/main"));
    EXPECT_EQ(store.window().selection.value(), SidebarItem::ref("refs/remotes/origin/main"));

    // Standing on a group with the keyboard selects nothing else.
    tree().setCurrentIndex(indexOf("refs/heads/main").parent());
    EXPECT_EQ(store.window().selection.value(), SidebarItem::ref("refs/remotes/origin/main"));

    tree().setCurrentIndex(tree().model()->index(3, 0));
    EXPECT_EQ(store.window().selection.value(), SidebarItem::timeline());
    store.window().select(SidebarItem::stashes());
    EXPECT_EQ(tree().currentIndex().row(), 2);

    // What is selected elsewhere is shown, even where it was folded away.
    store.window().select(SidebarItem::ref("refs/tags/v1.0"));
    EXPECT_TRUE(tree().selectionModel()->isSelected(indexOf("refs/tags/v1.0")));
    EXPECT_TRUE(tree().isExpanded(indexOf("refs/tags/v1.0").parent()));
}

TEST_F(SidebarTest, KeepsFoldersGroupsAndSelectionWhenRefsChange)
{
    store.window().select(SidebarItem::ref("refs/heads/main"));
    tree().collapse(indexOf("refs/heads/feature/login").parent());
    tree().expand(indexOf("refs/tags/v1.0").parent());
    EXPECT_TRUE(Settings::shared().value(settings::sidebarTagsExpanded));

    given(store.snapshot().branches,
          makeRefs(GitRef::Kind::local, {"aaa", "feature/login", "feature/new", "feature/word-diff", "main"}));
    EXPECT_EQ(rows(), (std::vector<std::string>{"Working Copy", "History", "Stashes", "Timeline", "Where HEAD Was",
                                                "BRANCHES", " aaa", " main", " feature", "REMOTES", " origin", "  main",
                                                " team/fork", "  main", "TAGS", " v1.0"}));
    EXPECT_EQ(tree().selectionModel()->selectedIndexes(), QModelIndexList{indexOf("refs/heads/main")});
    EXPECT_EQ(store.window().selection.value(), SidebarItem::ref("refs/heads/main"));
}

TEST_F(SidebarTest, StaysWhereItWasScrolledToWhenRefsAppearAbove)
{
    given(store.snapshot().branches, makeRefs(GitRef::Kind::local, numbered("topic-", 100, 300)));
    tree().verticalScrollBar()->setValue(1234);
    const int before = topOf("refs/heads/topic-1150");

    given(store.snapshot().branches, makeRefs(GitRef::Kind::local, numbered("topic-", 90, 290)));
    EXPECT_EQ(topOf("refs/heads/topic-1150"), before);
    EXPECT_NE(tree().verticalScrollBar()->value(), 1234);

    // At the top it stays at the top.
    tree().verticalScrollBar()->setValue(0);
    given(store.snapshot().branches, makeRefs(GitRef::Kind::local, numbered("topic-", 50, 290)));
    EXPECT_EQ(tree().verticalScrollBar()->value(), 0);
}

TEST_F(SidebarTest, FiltersWhileTypingAndForgetsNothing)
{
    tree().collapse(indexOf("refs/heads/feature/login").parent());
    store.window().select(SidebarItem::ref("refs/heads/main"));

    filter().setText(QStringLiteral("LOG"));
    EXPECT_EQ(rows(), (std::vector<std::string>{"Working Copy", "History", "Stashes", "Timeline", "Where HEAD Was",
                                                "BRANCHES", " feature/login"}));
    filter().setText(QStringLiteral("v1"));
    EXPECT_EQ(rows().back(), " v1.0"); // in a group that is closed otherwise
    filter().setText(QStringLiteral("nothing of this name"));
    EXPECT_EQ(rows().back(), "No branch or tag matches");
    EXPECT_EQ(store.window().selection.value(), SidebarItem::ref("refs/heads/main"));

    press(filter(), Qt::Key_Escape);
    EXPECT_TRUE(filter().text().isEmpty());
    EXPECT_EQ(rows().size(), 15U); // the folder and the tags closed as before
    EXPECT_TRUE(tree().selectionModel()->isSelected(indexOf("refs/heads/main")));

    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Down}) {
        store.window().select(SidebarItem::history());
        filter().setText(QStringLiteral("word"));
        press(filter(), key);
        EXPECT_EQ(store.window().selection.value(), SidebarItem::ref("refs/heads/feature/word-diff"));
    }
}

TEST_F(SidebarTest, ShowsNamesOfAnyBytesAndUpstreamsThatAreGone)
{
    std::vector<GitRef> refs = makeRefs(GitRef::Kind::local, {"caf\xE9", "kept", "lost"});
    refs[1].upstream = "origin/main";
    refs[2].upstream = "origin/lost";
    given(store.snapshot().branches, refs);
    EXPECT_EQ(indexOf("refs/heads/caf\xE9").data().toString(), QStringLiteral("caf\uFFFD"));
    tree().setCurrentIndex(indexOf("refs/heads/caf\xE9"));
    EXPECT_EQ(store.window().selection.value().refName, "refs/heads/caf\xE9");
    EXPECT_FALSE(view.model().isUpstreamGone(indexOf("refs/heads/kept")));
    EXPECT_TRUE(view.model().isUpstreamGone(indexOf("refs/heads/lost")));
    given(store.snapshot().remotes, std::vector<std::string>{"origin"});
    EXPECT_EQ(view.model().remoteOfUpstream(indexOf("refs/heads/lost")), QStringLiteral("origin"));
}

TEST_F(SidebarTest, ARemoteHasAMenuAndOtherFoldersHaveNone)
{
    const auto titlesAt = [this](const QModelIndex& index) {
        tree().selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
        QMenu* const menu = view.makeContextMenu();
        return menu ? test::entries(*menu) : std::vector<std::string>();
    };
    const QModelIndex main = indexOf("refs/remotes/team/fork/main");
    EXPECT_EQ(view.model().remote(main.parent()), "team/fork");
    EXPECT_EQ(titlesAt(main.parent()),
              (std::vector<std::string>{"Push All Tags…", "—", "Edit…", "Rename…", "Remove…", "—", "Add Remote…"}));
    // Where no branch was fetched from a remote, this is the way to it.
    EXPECT_EQ(titlesAt(main.parent().parent()),
              (std::vector<std::string>{"Add Remote…", "—", "Edit “origin”…", "Remove “origin”…", "—",
                                        "Edit “team/fork”…", "Remove “team/fork”…"}));
    EXPECT_EQ(titlesAt(indexOf("refs/heads/feature/login").parent()), std::vector<std::string>());
}

TEST_F(SidebarTest, MarksDamagedRefsAndChecksNoneOut)
{
    std::vector<GitRef> refs = makeRefs(GitRef::Kind::local, {"good", "main"});
    refs[1].hash.clear();
    given(store.snapshot().branches, refs);
    const QString why = QStringLiteral("“main” is damaged: it leads to no commit, so it cannot be checked out.");
    const QModelIndex row = indexOf("refs/heads/main");
    EXPECT_EQ(row.data(Qt::AccessibleDescriptionRole).toString(), QStringLiteral("main\n") + why);
    EXPECT_EQ(row.data(Qt::ToolTipRole).toString(), plainToolTip(QStringLiteral("main\n") + why));
    EXPECT_FALSE(indexOf("refs/heads/good").data(Qt::ToolTipRole).toString().contains(QStringLiteral("damaged")));
    QMenu* const menu = makeRefMenu(store, refs[1], &view);
    for (const char* title : {"Check Out", "New Branch from Here…"}) {
        const QAction* const entry = test::entry(*menu, QString::fromUtf8(title));
        EXPECT_FALSE(entry->isEnabled());
        EXPECT_EQ(entry->toolTip(), plainToolTip(why));
    }
    EXPECT_TRUE(test::entry(*menu, QStringLiteral("Delete…"))->isEnabled()) << "the way out";

    // A double click, also on the remote branch that it follows, asks git for nothing.
    for (const char* name : {"refs/heads/main", "refs/remotes/origin/main"}) {
        store.window().tell({});
        Q_EMIT tree().doubleClicked(indexOf(name));
        EXPECT_EQ(store.window().notice.value(), why) << name;
    }
}

TEST_F(SidebarTest, LooksAtEachOfManyRefsOnceWhenTheyChange)
{
    class Counting : public QStyledItemDelegate {
    public:
        using QStyledItemDelegate::QStyledItemDelegate;
        QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override { return ++asked, QSize(9, 26); }
        mutable int asked = 0;
    };
    const auto* const counting = new Counting(&view);
    tree().setItemDelegate(const_cast<Counting*>(counting));
    given(store.snapshot().branches, makeRefs(GitRef::Kind::local, numbered("topic-", 0, 1000)));
    store.window().select(SidebarItem::ref("refs/heads/topic-1500"));
    tree().verticalScrollBar()->setValue(5000);
    counting->asked = 0;
    given(store.snapshot().branches, makeRefs(GitRef::Kind::local, numbered("topic-", 1, 1000)));
    EXPECT_EQ(tree().verticalScrollBar()->value(), 5000 - 26);
    EXPECT_LT(counting->asked, 1100);
}

TEST_F(SidebarTest, ReachesTheLastOfManyRefs)
{
    given(store.snapshot().branches, makeRefs(GitRef::Kind::local, numbered("topic/", 0, 20000)));
    EXPECT_EQ(view.model().count(indexOf("refs/heads/topic/1000").parent()), 20000);
    const QModelIndex last = indexOf("refs/heads/topic/20999");
    tree().scrollTo(last);
    EXPECT_TRUE(tree().viewport()->rect().contains(tree().visualRect(last).center()));
    EXPECT_EQ(tree().indexBelow(last).data().toString(), QStringLiteral("REMOTES"));
}

} // namespace
} // namespace plovik

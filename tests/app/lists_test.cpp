// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/settings/Settings.h"
#include "app/store/RepositoryStore.h"
#include "app/ui/stashes/StashesView.h"
#include "app/ui/widgets/EmptyState.h"
#include "app/ui/widgets/EqualRowList.h"
#include "app/ui/widgets/FocusRing.h"
#include "app/ui/widgets/TypedText.h"
#include "app/ui/window/RepositoryView.h"
#include "app/ui/workingcopy/ChangedFilesModel.h"
#include "app/ui/workingcopy/WorkingCopyView.h"
#include "tests/app/GivenRunning.h"
#include "tests/support/Given.h"

#include <QAbstractButton>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QScrollBar>
#include <QStringListModel>
#include <QStyledItemDelegate>

#include <QTest>

#include <gtest/gtest.h>

using gitkit::FileChange;
using namespace Qt::StringLiterals;

namespace plovik {
namespace {

gitkit::RepoStatus statusOf(const std::vector<std::string>& paths, char worktree = 'M')
{
    gitkit::RepoStatus status;
    status.branch = "main";
    status.oid = std::string(40, 'a');
    gitkit::ChangedFiles::List files;
    for (const std::string& path : paths)
        files.push_back({path, std::nullopt, '.', worktree, false});
    status.files = std::move(files);
    return status;
}

std::vector<std::string> numbered(int from, int to)
{
    std::vector<std::string> paths;
    for (int number = from; number < to; ++number)
        paths.push_back("file-" + std::to_string(100000 + number));
    return paths;
}

QString shownSentence(const QWidget& empty)
{
    QStringList texts;
    for (const QLabel* label : empty.findChildren<QLabel*>())
        texts.append(label->text());
    return texts.join(QLatin1Char(' '));
}

/// Rows without content. Counts what a view asks of them.
class CountedRows : public QAbstractListModel {
public:
    int rowCount(const QModelIndex& parent) const override { return parent.isValid() ? 0 : rows; }
    QModelIndex index(int row, int column, const QModelIndex& parent) const override
    {
        ++asked;
        return QAbstractListModel::index(row, column, parent);
    }
    QVariant data(const QModelIndex&, int) const override
    {
        ++asked;
        return {};
    }
    void append(int more)
    {
        beginInsertRows({}, rows, rows + more - 1);
        rows += more;
        endInsertRows();
    }
    void replace(int number)
    {
        beginResetModel();
        rows = number;
        endResetModel();
    }
    void change() { Q_EMIT dataChanged(createIndex(0, 0), createIndex(rows - 1, 0)); }

    int rows = 0;
    mutable int asked = 0;
};

class High : public QStyledItemDelegate {
public:
    QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override { return {10, 23}; }
};

TEST(EqualRowList, AsksForTheRowsInSightAlone)
{
    CountedRows model;
    EqualRowList list;
    list.setModel(&model);
    list.resize(300, 400);
    list.show();
    const auto settled = [&] {
        QCoreApplication::processEvents();
        list.grab();
        return std::exchange(model.asked, 0);
    };
    settled();
    model.append(1'000'000);
    EXPECT_LT(settled(), 2'000);
    model.append(65'000);
    EXPECT_LT(settled(), 2'000);
    model.change();
    EXPECT_LT(settled(), 2'000);
    list.setCurrentIndex(model.index(999'999, 0, {}));
    EXPECT_LT(settled(), 2'000);
    model.replace(1'000'001);
    EXPECT_LT(settled(), 2'000);
    EXPECT_EQ(list.verticalScrollBar()->maximum(),
              1'000'001 * list.visualRect(model.index(0, 0, {})).height() - list.viewport()->height());
}

TEST(EqualRowList, PlacesSelectsAndMovesLikeTheToolkitsList)
{
    QStringList texts;
    for (int number = 0; number < 200; ++number)
        texts << QString::number(number);
    QStringListModel model(texts);
    High delegate;
    EqualRowList own;
    QListView toolkit;
    toolkit.setUniformItemSizes(true);
    giveFocusRing(toolkit);
    toolkit.setVerticalScrollMode(QListView::ScrollPerPixel);
    toolkit.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    for (QListView* list : {static_cast<QListView*>(&own), &toolkit}) {
        list->setSelectionMode(QListView::ExtendedSelection);
        list->setItemDelegate(&delegate);
        list->setModel(&model);
        list->resize(200, 310);
        list->show();
        list->setCurrentIndex(model.index(0));
    }
    const auto expectSame = [&](const std::string& after) {
        for (int round = 0; round < 3; ++round)
            QCoreApplication::processEvents();
        EXPECT_EQ(own.verticalScrollBar()->maximum(), toolkit.verticalScrollBar()->maximum()) << after;
        EXPECT_EQ(own.verticalScrollBar()->value(), toolkit.verticalScrollBar()->value()) << after;
        EXPECT_EQ(own.currentIndex().row(), toolkit.currentIndex().row()) << after;
        for (const int row : {0, 7, 100, 199})
            EXPECT_EQ(own.visualRect(model.index(row)), toolkit.visualRect(model.index(row))) << after;
        for (const int y : {-1, 0, 22, 23, 305, 309})
            EXPECT_EQ(own.indexAt({5, y}).row(), toolkit.indexAt({5, y}).row()) << after << ", at " << y;
        const auto rows = [](const QListView& list) {
            std::set<int> selected;
            for (const QModelIndex& index : list.selectionModel()->selectedIndexes())
                selected.insert(index.row());
            return selected;
        };
        EXPECT_EQ(rows(own), rows(toolkit)) << after;
    };
    expectSame("nothing");
    const auto press = [&](int key, Qt::KeyboardModifiers modifiers = {}) {
        for (QListView* list : {static_cast<QListView*>(&own), &toolkit})
            QTest::keyClick(list, static_cast<Qt::Key>(key), modifiers);
        expectSame("key " + std::to_string(key));
    };
    for (const int key : {Qt::Key_Down, Qt::Key_PageDown, Qt::Key_PageDown, Qt::Key_Down, Qt::Key_PageUp, Qt::Key_End,
                          Qt::Key_Down, Qt::Key_PageUp, Qt::Key_Up, Qt::Key_Home, Qt::Key_Up, Qt::Key_Right})
        press(key);
    press(Qt::Key_PageDown, Qt::ShiftModifier);
    press(Qt::Key_Up, Qt::ShiftModifier);
    const auto click = [&](int y, Qt::KeyboardModifiers modifiers = {}) {
        for (QListView* list : {static_cast<QListView*>(&own), &toolkit})
            QTest::mouseClick(list->viewport(), Qt::LeftButton, modifiers, {40, y});
        expectSame("click at " + std::to_string(y));
    };
    click(50);
    click(200, Qt::ShiftModifier);
    click(100, Qt::ControlModifier);
    model.removeRows(3, 195);
    expectSame("fewer rows");
    click(300);
    model.insertRows(2, 1);
    expectSame("one more row");
}

class WorkingCopyListTest : public testing::Test {
protected:
    WorkingCopyListTest()
    {
        view.resize(800, 600);
        view.show();
    }

    std::set<std::string> selected() const
    {
        std::set<std::string> paths;
        for (const QModelIndex& index : list().selectionModel()->selectedIndexes())
            paths.insert(index.data().toString().toStdString());
        return paths;
    }

    QListView& list() const { return *view.list(); }
    QModelIndex row(int number) const { return list().model()->index(number, 0); }

    RepositoryStore store{"/nonexistent"};
    WorkingCopyView view{store};
};

TEST_F(WorkingCopyListTest, SharesItsSelectionWithTheStore)
{
    given(store.snapshot().status, statusOf({"a", "b", "c", "d"}));
    store.window().selectPaths(std::set<std::string>{"a", "b", "d"});
    EXPECT_EQ(selected(), (std::set<std::string>{"a", "b", "d"}));
    list().selectionModel()->select(row(1), QItemSelectionModel::Toggle);
    EXPECT_EQ(store.window().selectedPaths.value(), (std::set<std::string>{"a", "d"}));
}

TEST_F(WorkingCopyListTest, KeepsSelectionAndPlaceWhenOtherFilesChange)
{
    given(store.snapshot().status, statusOf(numbered(1000, 21000)));
    store.window().selectPaths(std::set<std::string>{"file-106000"});
    list().verticalScrollBar()->setValue(5003 * 28 + 5);
    const QString top = list().indexAt(QPoint(1, 0)).data().toString();
    const int offset = list().visualRect(list().indexAt(QPoint(1, 0))).top();

    given(store.snapshot().status, statusOf(numbered(900, 21000), 'D'));
    EXPECT_EQ(list().indexAt(QPoint(1, 0)).data().toString(), top);
    EXPECT_EQ(list().visualRect(list().indexAt(QPoint(1, 0))).top(), offset);
    EXPECT_EQ(selected(), (std::set<std::string>{"file-106000"}));
    EXPECT_EQ(store.window().selectedPaths.value(), (std::set<std::string>{"file-106000"}));
}

TEST_F(WorkingCopyListTest, PutsConflictsFirstAndFindsEveryRow)
{
    for (const unsigned conflicted : {0U, 1U, 0b1000U, 0b1011U, 0b0110100U, 0b1111111U}) {
        gitkit::ChangedFiles::List files;
        std::vector<std::string> expected[2];
        for (unsigned place = 0; place < 7; ++place) {
            const bool isConflicted = (conflicted >> place) & 1;
            files.push_back({std::string(1, static_cast<char>('a' + place)), {}, '.', 'M', isConflicted});
            expected[isConflicted ? 0 : 1].push_back(files.back().path);
        }
        expected[0].insert(expected[0].end(), expected[1].begin(), expected[1].end());
        gitkit::RepoStatus status = statusOf({});
        status.files = std::move(files);
        given(store.snapshot().status, status);
        store.window().selectPaths({"b", "c", "f"});
        EXPECT_EQ(selected(), (std::set<std::string>{"b", "c", "f"})) << conflicted;
        for (int number = 0; number < 7; ++number)
            EXPECT_EQ(row(number).data().toString().toStdString(), expected[0][static_cast<std::size_t>(number)]);
    }
}

TEST_F(WorkingCopyListTest, ShowsFoldersThatFoldTickAndKeepTheSelection)
{
    auto& model = static_cast<ChangedFilesModel&>(*list().model());
    const auto shown = [&] {
        QStringList rows;
        for (int number = 0; number < model.rowCount(); ++number)
            rows << QString(model.row(row(number)).depth, QLatin1Char(' ')) +
                        QString::fromStdString(model.keyOf(row(number)));
        return rows.join(QLatin1Char('|'));
    };
    Settings::shared().set(settings::filesAsTree, true);
    gitkit::ChangedFiles::List files;
    for (const char* path : {"a/b/one", "a/b/two", "a/c", "new/x/1", "new/x/2", "top"})
        files.push_back({path, {}, '.', 'M'});
    files[3].index = files[3].worktree = files[4].index = files[4].worktree = '?';
    gitkit::RepoStatus status = statusOf({});
    status.files = files;
    given(store.snapshot().status, status);
    EXPECT_EQ(shown(), QStringLiteral("a/| a/b/|  a/b/one|  a/b/two| a/c|new/x/|top"));
    EXPECT_EQ(row(0).data(Qt::CheckStateRole).toInt(), Qt::Unchecked);
    files[2].index = 'M';
    files[2].worktree = '.';
    status.files = files;
    given(store.snapshot().status, status);
    EXPECT_EQ(row(0).data(Qt::CheckStateRole).toInt(), Qt::PartiallyChecked);
    EXPECT_EQ(row(1).data(Qt::CheckStateRole).toInt(), Qt::Unchecked);

    list().setCurrentIndex(row(1));
    EXPECT_EQ(store.window().selectedPaths.value(), (std::set<std::string>{"a/b/one", "a/b/two"}));
    QTest::keyClick(&list(), Qt::Key_Left);
    EXPECT_EQ(shown(), QStringLiteral("a/| a/b/| a/c|new/x/|top"));
    store.window().selectPaths({"a/b/one"});
    EXPECT_EQ(list().selectionModel()->selectedIndexes().size(), 0) << "only a part of the folder";
    store.window().selectPaths({"a/b/one", "a/b/two", "new/x/1"});
    EXPECT_EQ(list().selectionModel()->selectedIndexes(), QModelIndexList{row(1)});
    files.push_back({"zoo", {}, '.', 'M'});
    status.files = files;
    given(store.snapshot().status, status);
    EXPECT_EQ(shown(), QStringLiteral("a/| a/b/| a/c|new/x/|top|zoo")) << "what was folded stays folded";
    QTest::keyClick(&list(), Qt::Key_Right);
    EXPECT_EQ(model.rowCount(), 8);

    QTest::keyClick(&list(), Qt::Key_Slash);
    auto* const field = view.findChild<QLineEdit*>();
    ASSERT_EQ(field->accessibleName(), QStringLiteral("File Filter"));
    EXPECT_FALSE(field->isHidden());
    field->setText(QStringLiteral("X/2"));
    EXPECT_EQ(shown(), QStringLiteral("new/x/| new/x/2")) << "what is found is not folded";
    Settings::shared().set(settings::filesAsTree, false);
    EXPECT_EQ(shown(), QStringLiteral("new/x/2"));
    QTest::keyClick(field, Qt::Key_Escape);
    EXPECT_TRUE(field->isHidden());
    EXPECT_EQ(model.rowCount(), 7);
}

TEST_F(WorkingCopyListTest, FindsNamesInAnyScript)
{
    given(store.snapshot().status,
          statusOf({"a/plain", "b/\u00C4rger", "c/\u05D0\u05D1", "\u0416/k", "d/\xE4", "d/K"}));
    const ChangedFilesModel model(store);
    EXPECT_EQ(model.nextMatch(u"PL"_s, 3).row(), 0);
    EXPECT_EQ(model.nextMatch(u"\u00E4r"_s, 0).row(), 1);
    EXPECT_EQ(model.nextMatch(u"\u05D0\u05D1"_s, 0).row(), 2);
    EXPECT_EQ(model.nextMatch(u"\u0436/k"_s, 0).row(), 3) << "by the path";
    EXPECT_EQ(model.nextMatch(u"k"_s, 4).row(), 5);
    EXPECT_FALSE(model.nextMatch(u"plainly"_s, 0).isValid());
    EXPECT_FALSE(model.nextMatch(u"\u00E4rgern"_s, 0).isValid());

    EXPECT_TRUE(containsTyped("topic/Login-page", u"LOGIN"_s));
    EXPECT_FALSE(containsTyped("topic/Login-page", u"login page"_s));
    EXPECT_TRUE(containsTyped("topic/caf\u00E9s", u"F\u00C9"_s));
    EXPECT_TRUE(containsTyped("topic/caf\u00E9s", u"CAF"_s));
    EXPECT_TRUE(containsTyped("", QString()));
}

TEST_F(WorkingCopyListTest, NeverTakesAFailedReadForACleanTree)
{
    EXPECT_EQ(shownSentence(*view.emptyState()).trimmed(), QString()); // git has not answered yet
    given(store.snapshot().readProblem, QStringLiteral("fatal: index file corrupt"));
    EXPECT_TRUE(shownSentence(*view.emptyState()).contains(QStringLiteral("Could Not Be Read")));
    given(store.snapshot().hasLoaded, true);
    EXPECT_TRUE(shownSentence(*view.emptyState()).contains(QStringLiteral("Could Not Be Read")));
    given(store.snapshot().readProblem, QString());
    EXPECT_TRUE(shownSentence(*view.emptyState()).contains(QStringLiteral("Nothing has been committed yet")));
    given(store.snapshot().status, statusOf({}));
    EXPECT_TRUE(shownSentence(*view.emptyState()).contains(QStringLiteral("No Changes")));
    given(store.snapshot().status, statusOf({"a"}));
    EXPECT_FALSE(view.emptyState()->isVisible());
}

TEST(StashesList, SharesItsSelectionAndSaysWhyItIsEmpty)
{
    RepositoryStore store{"/nonexistent"};
    StashesView view(store);
    given(store.snapshot().hasLoaded, true);
    EXPECT_TRUE(shownSentence(*view.currentWidget()).contains(QStringLiteral("Stashed changes are listed here.")));
    given(store.snapshot().readProblem, QStringLiteral("fatal: broken"));
    EXPECT_TRUE(shownSentence(*view.currentWidget()).contains(QStringLiteral("Could Not Be Read")));

    given(store.snapshot().stashes,
          std::vector<gitkit::Stash>{{"stash@{0}", "1111", {}, "newer"}, {"stash@{1}", "2222", {}, "older"}});
    store.window().selectStash("2222");
    EXPECT_EQ(view.list()->currentIndex().data().toString(), QStringLiteral("older"));
    view.list()->setCurrentIndex(view.list()->model()->index(0, 0));
    EXPECT_EQ(store.window().selectedStash.value(), "1111");
    EXPECT_EQ(view.list()->currentIndex().data(Qt::ToolTipRole).toString(), QStringLiteral("stash@{0}"));
}

TEST(RepositoryView, ShowsWhatIsSelectedAndWhatGoesOn)
{
    RepositoryStore store{"/tmp/parser-kit"};
    RepositoryView view(store);
    view.resize(1000, 600);
    view.show();
    const auto named = [&view](const char* name) {
        for (QWidget* widget : view.findChildren<QWidget*>()) {
            if (widget->accessibleName() == QLatin1String(name))
                return widget;
        }
        return static_cast<QWidget*>(nullptr);
    };
    for (const char* name : {"Fetch", "Pull", "Push", "Branch", "Stash", "Activity", "Sidebar", "Changed Files"})
        EXPECT_NE(named(name), nullptr) << name;
    test::givenRunning(store, Verb::fetch);
    EXPECT_FALSE(named("Fetch")->isEnabled());
    EXPECT_EQ(named("Fetch")->toolTip(), QStringLiteral("Fetch (Ctrl+Shift+F)\nNot while this runs: Something…"));
    EXPECT_TRUE(named("Branch")->isEnabled());
    EXPECT_EQ(qobject_cast<QLabel*>(named("Activity"))->text(), QStringLiteral("Something…"));
    test::givenRunning(store, std::nullopt);
    EXPECT_TRUE(named("Fetch")->isEnabled());
    EXPECT_EQ(named("Fetch")->toolTip(), QStringLiteral("Fetch (Ctrl+Shift+F)"));
    EXPECT_EQ(qobject_cast<QLabel*>(named("Activity"))->text(), QString());

    given(store.snapshot().readProblem, QStringLiteral("fatal: broken"));
    EXPECT_EQ(qobject_cast<QLabel*>(named("Problem"))->text(), QStringLiteral("fatal: broken"));
    EXPECT_TRUE(named("Problem")->isVisible());
    given(store.snapshot().readProblem, QString());
    EXPECT_FALSE(named("Problem")->isVisible());

    store.window().select(SidebarItem::stashes());
    EXPECT_NE(named("Stashes"), nullptr);
    EXPECT_FALSE(named("Changed Files")->isVisible());
    store.window().select(SidebarItem::history());
    ASSERT_NE(named("History Search"), nullptr);
    EXPECT_TRUE(named("History Search")->isVisible());
}

} // namespace
} // namespace plovik

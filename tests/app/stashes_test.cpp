// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/commit/CommitDetailView.h"
#include "app/ui/stashes/StashMenu.h"
#include "app/ui/stashes/StashesModel.h"
#include "app/ui/stashes/StashesView.h"
#include "app/ui/widgets/EmptyState.h"
#include "tests/app/ShownWidgets.h"
#include "tests/store/ManualWorker.h"
#include "tests/support/TestRepository.h"

#include <QLabel>
#include <QListView>
#include <QPushButton>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace plovik {
namespace {

using test::entries;
using test::entry;
using test::named;

struct StashesViewTest : testing::Test {
    TestRepository repo;
    ManualWorker worker;
    RepositoryStore store{repo.path(), worker};
    StashesView view{store};

    StashesViewTest()
    {
        repo.write("a", "1\n").commit("one");
        view.resize(1000, 700);
        view.show();
    }

    void load()
    {
        store.snapshot().refresh(RefreshScope::full);
        worker.finishAll();
    }

    void stash(const std::string& content)
    {
        repo.write("a", content).git({"stash", "push", "-q", "-m", content});
        load();
    }

    QPushButton* button(const QString& name) const { return named<QPushButton>(view, name); }

    bool shows(const QString& text) const
    {
        const auto labels = view.findChildren<QLabel*>();
        return std::ranges::any_of(labels,
                                   [&](const QLabel* label) { return label->isVisible() && label->text() == text; });
    }
};

TEST_F(StashesViewTest, OffersToStashWhereThereIsSomethingToStash)
{
    load();
    EXPECT_TRUE(shows(u"No Stashes"_s));
    EXPECT_TRUE(shows(u"Stashed changes are listed here."_s));
    EXPECT_FALSE(button(u"Stash Changes…"_s)->isEnabled());
    repo.write("a", "2\n");
    load();
    ASSERT_TRUE(button(u"Stash Changes…"_s)->isEnabled());
    button(u"Stash Changes…"_s)->click();
    ASSERT_TRUE(store.window().sheet.value());
    EXPECT_TRUE(std::holds_alternative<StashSheet>(*store.window().sheet.value()));
}

TEST_F(StashesViewTest, CountsListsAndUsesTheSelectedStash)
{
    stash("first");
    EXPECT_TRUE(shows(u"1 stash"_s));
    stash("second");
    EXPECT_TRUE(shows(u"2 stashes"_s));
    const std::string second = store.snapshot().stashes.value()[0].hash;
    const std::string first = store.snapshot().stashes.value()[1].hash;
    view.list()->setCurrentIndex(view.list()->model()->index(0, 0));
    EXPECT_EQ(store.window().selectedStash.value(), second);
    EXPECT_EQ(view.list()->currentIndex().data(Qt::ToolTipRole).toString(), u"stash@{0}"_s);

    button(u"Drop…"_s)->click();
    ASSERT_TRUE(store.window().confirmation.value());
    store.window().confirmation.value()->action();
    for (const char16_t* name : {u"Apply", u"Pop", u"Drop…"})
        EXPECT_FALSE(button(QString::fromUtf16(name))->isEnabled()) << "while one action runs another would be dropped";
    worker.finishAll();
    EXPECT_EQ(store.window().selectedStash.value(), first);
    EXPECT_EQ(view.list()->currentIndex().data().toString(), u"first"_s);

    button(u"Apply"_s)->click();
    worker.finishAll();
    EXPECT_EQ(readFile(repo / "a"), "first");
    EXPECT_EQ(store.snapshot().stashes.value().size(), 1U);
    repo.git({"checkout", "-q", "--", "a"});
    button(u"Pop"_s)->click();
    worker.finishAll();
    EXPECT_EQ(readFile(repo / "a"), "first");
    EXPECT_TRUE(shows(u"No Stashes"_s));
    EXPECT_EQ(store.window().errorMessage.value(), std::nullopt);
}

TEST_F(StashesViewTest, TheMenuActsOnTheStashItWasOpenedFor)
{
    stash("first");
    stash("second");
    const std::unique_ptr<QMenu> menu(makeStashMenu(store, store.snapshot().stashes.value()[1], nullptr));
    EXPECT_EQ(entries(*menu),
              (std::vector<std::string>{"Apply Stash", "Pop Stash", "New Branch from Stash…", "—", "Drop Stash…"}));
    entry(*menu, u"Apply Stash"_s)->trigger();
    worker.finishAll();
    EXPECT_EQ(readFile(repo / "a"), "first");
    EXPECT_EQ(store.snapshot().stashes.value().size(), 2U);
}

} // namespace
} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/settings/RecentRepositories.h"
#include "app/settings/Settings.h"
#include "app/store/RepositoryStore.h"
#include "app/ui/commands/PalettePopup.h"
#include "app/ui/window/RepositoryChoice.h"
#include "tests/app/NoTarget.h"
#include "tests/app/SettlingWorker.h"
#include "tests/app/ShownWidgets.h"
#include "tests/support/TestRepository.h"

#include <QListView>
#include <QPushButton>
#include <QtTest/QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace plovik {
namespace {

class OneOpen : public test::NoTarget {
public:
    explicit OneOpen(std::filesystem::path root) : root_(std::move(root)) {}

    void openFolder(const std::filesystem::path& folder) override { opened.push_back(folder); }
    std::vector<std::filesystem::path> openRoots() const override { return {root_}; }
    void openDocument() override { ++asked; }

    std::vector<std::filesystem::path> opened;
    int asked = 0;

private:
    std::filesystem::path root_;
};

class RepositoryChoiceTest : public testing::Test {
protected:
    RepositoryChoiceTest()
    {
        Settings::shared().set(u"recentRepositories"_s, QStringList());
        Settings::shared().set(u"pinnedRepositories"_s, QStringList());
        here.commit("one");
        origin.commit("one");
        other.commit("mine").git({"remote", "add", "origin", origin.path().string()}).git({"fetch", "-q", "origin"});
        other.git({"branch", "-q", "--set-upstream-to=origin/main"}).write("a", "1").write("b", "1");
        recentRepositories::add(other.path());
        button.show();
    }
    ~RepositoryChoiceTest() override { worker.settle(); }

    void open()
    {
        chooseRepository(store, target, button);
        EXPECT_TRUE(worker.settle());
        button.findChild<PalettePopup*>()->grab(); // what is drawn is looked at
        EXPECT_TRUE(worker.settle());
    }
    QListView& list() const { return *test::named<QListView>(button, u"Repositories"_s); }
    QString row(int place) const
    {
        const QModelIndex index = list().model()->index(place, 0);
        return index.data().toString() + u'|' + index.data(Qt::AccessibleTextRole).toString();
    }

    TestRepository here;
    TestRepository origin;
    TestRepository other;
    test::SettlingWorker worker;
    RepositoryStore store{here.path(), worker, {}};
    OneOpen target{here.path()};
    QPushButton button;
};

TEST_F(RepositoryChoiceTest, SaysWhatCanBeSeenOfEachAndOpensTheChosenOne)
{
    open();
    ASSERT_EQ(list().model()->rowCount(), 3);
    EXPECT_TRUE(row(0).startsWith(QString::fromStdString(here.path().filename().string()))) << row(0).toStdString();
    EXPECT_TRUE(row(1).contains(u"main · 2 changes · ↑1 ↓1"_s) || row(1).contains(u"main · 2 changes · ↑1 · ↓1"_s))
        << row(1).toStdString();
    EXPECT_TRUE(row(2).startsWith(u"Open Repository…"_s)) << row(2).toStdString();
    list().setCurrentIndex(list().model()->index(1, 0));
    QTest::keyClick(&list(), Qt::Key_Return);
    EXPECT_EQ(target.opened, std::vector{other.path()});

    open();
    list().setCurrentIndex(list().model()->index(2, 0));
    QTest::keyClick(&list(), Qt::Key_Return);
    EXPECT_EQ(target.asked, 1);
}

TEST_F(RepositoryChoiceTest, APinnedOneStandsFirstAndStaysSo)
{
    open();
    list().setCurrentIndex(list().model()->index(1, 0));
    QTest::keyClick(&list(), Qt::Key_P, Qt::ControlModifier);
    EXPECT_TRUE(row(1).contains(u"pinned"_s)) << row(1).toStdString();
    QTest::keyClick(&list(), Qt::Key_Escape);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    for (int number = 0; number < 30; ++number) // more than are remembered
        recentRepositories::add("/tmp/" + std::to_string(number));
    EXPECT_EQ(recentRepositories::pinned(), std::vector{other.path()});
    open();
    EXPECT_TRUE(row(0).startsWith(QString::fromStdString(other.path().filename().string()))) << row(0).toStdString();
    list().setCurrentIndex(list().model()->index(0, 0));
    QTest::keyClick(&list(), Qt::Key_P, Qt::ControlModifier);
    EXPECT_TRUE(recentRepositories::pinned().empty());
}

TEST_F(RepositoryChoiceTest, OfAnUntrustedRepositoryNoProgramRuns)
{
    const std::filesystem::path witness = other / "../witness";
    other.write(".gitattributes", "* filter=evil\n").git({"add", "."});
    other.git({"config", "filter.evil.clean", "touch '" + witness.string() + "'; cat"}).write("a", "2");
    open();
    EXPECT_TRUE(row(1).contains(u"main"_s)) << row(1).toStdString();
    EXPECT_FALSE(std::filesystem::exists(witness));
}

} // namespace
} // namespace plovik

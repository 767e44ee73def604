// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/settings/RecentRepositories.h"
#include "app/settings/Settings.h"
#include "app/ui/welcome/WelcomeView.h"
#include "tests/app/ShownWidgets.h"

#include <QApplication>
#include <QDropEvent>
#include <QListWidget>
#include <QMimeData>
#include <QPushButton>
#include <QTemporaryDir>
#include <QUrl>
#include <QtTest/QTest>

#include <gtest/gtest.h>

namespace plovik {
namespace {

using namespace Qt::StringLiterals;
using Paths = std::vector<std::filesystem::path>;

class WelcomeTest : public testing::Test {
protected:
    WelcomeTest() { Settings::shared().set(u"recentRepositories"_s, QStringList()); }
    // The toolkit does not remove what it cannot name.
    ~WelcomeTest() override { std::filesystem::remove_all(root()); }

    std::filesystem::path make(const std::string& name) const
    {
        const std::filesystem::path folder = root() / name;
        std::filesystem::create_directories(folder);
        return folder;
    }

    std::filesystem::path root() const { return folder_.path().toStdString(); }

    void show()
    {
        view_.show();
        QApplication::setActiveWindow(&view_);
    }

    QListWidget& list() { return *test::named<QListWidget>(view_, u"Recent"_s); }

    QTemporaryDir folder_;
    Paths opened_;
    int browsed_ = 0;
    QStringList cloned_;
    int created_ = 0;
    WelcomeView view_{{.open = [this](std::filesystem::path path) { opened_.push_back(std::move(path)); },
                       .browse = [this] { ++browsed_; },
                       .clone = [this](const QString& address) { cloned_ += address; },
                       .create = [this] { ++created_; }}};
};

TEST_F(WelcomeTest, RecentListKeepsTheLatestTwentyFiveOfAnyName)
{
    const Paths odd = {make("a, b;%25 \"c\\d"), make("Latin-1 \xe9\xff"), make("line\nbreak")};
    for (const auto& path : odd)
        recentRepositories::add(path);
    recentRepositories::add(odd[0]);
    EXPECT_EQ(recentRepositories::all(), (Paths{odd[0], odd[2], odd[1]}));
    Settings::shared().save();
    EXPECT_EQ(recentRepositories::all(), (Paths{odd[0], odd[2], odd[1]}));

    // What is gone is not shown, but comes back with its folder.
    std::filesystem::remove(odd[2]);
    EXPECT_EQ(recentRepositories::all(), (Paths{odd[0], odd[1]}));
    std::filesystem::create_directory(odd[2]);
    EXPECT_EQ(recentRepositories::all().size(), 3U);

    for (int number = 0; number < 23; ++number)
        recentRepositories::add(make(std::to_string(number)));
    const Paths all = recentRepositories::all();
    ASSERT_EQ(all.size(), 25U);
    EXPECT_EQ(all.front(), root() / "22");
    EXPECT_EQ(all.back(), odd[2]);

    Settings::shared().set(u"recentRepositories"_s, 7.5);
    EXPECT_TRUE(recentRepositories::all().empty());
    recentRepositories::add(odd[0]);
    EXPECT_EQ(recentRepositories::all(), Paths{odd[0]});
}

TEST_F(WelcomeTest, WithoutRecentsTheButtonsAreAllAndReturnPressesThem)
{
    show();
    EXPECT_FALSE(list().isVisible());
    auto* const button = test::named<QPushButton>(view_, u"Open Repository…"_s);
    EXPECT_EQ(view_.focusWidget(), button);
    QTest::keyClick(button, Qt::Key_Return);
    EXPECT_EQ(browsed_, 1);
    for (const QString& other : {u"Clone…"_s, u"New Repository…"_s}) {
        QTest::keyClick(&view_, Qt::Key_Tab);
        EXPECT_EQ(view_.focusWidget(), test::named<QPushButton>(view_, other));
        QTest::keyClick(view_.focusWidget(), Qt::Key_Return);
    }
    EXPECT_EQ(cloned_, QStringList(QString()));
    EXPECT_EQ(created_, 1);
}

TEST_F(WelcomeTest, RecentsAreToldApartOpenedAndRemovedFromTheKeyboard)
{
    const QByteArray home = qgetenv("HOME");
    qputenv("HOME", folder_.path().toLocal8Bit());
    const Paths same = {make("one/site"), make("two/site"), make("caf\xe9")};
    for (const auto& path : same)
        recentRepositories::add(path);
    show();
    ASSERT_EQ(list().count(), 3);
    EXPECT_EQ(list().item(1)->data(Qt::AccessibleTextRole), u"site, ~/two"_s);
    EXPECT_EQ(list().item(2)->data(Qt::AccessibleTextRole), u"site, ~/one"_s);
    EXPECT_EQ(list().item(2)->toolTip().toStdString(), same[0].string());
    qputenv("HOME", home);

    EXPECT_EQ(view_.focusWidget(), &list());
    QTest::keyClick(&list(), Qt::Key_Return);
    QTest::keyClick(&list(), Qt::Key_Down);
    QTest::keyClick(&list(), Qt::Key_Return);
    EXPECT_EQ(opened_, (Paths{same[2], same[1]}));

    QTest::keyClick(&list(), Qt::Key_Delete);
    EXPECT_EQ(recentRepositories::all(), (Paths{same[2], same[0]}));
    EXPECT_EQ(list().currentRow(), 1);
    QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, list().visualItemRect(list().item(1)).center());
    EXPECT_EQ(opened_.back(), same[0]);
    for (int left = 0; left < 2; ++left)
        list().actions().back()->trigger();
    EXPECT_FALSE(list().isVisible());
    EXPECT_TRUE(std::filesystem::exists(same[0])) << "only the list forgets it";
}

TEST_F(WelcomeTest, DroppedFoldersAreOpenedAndFilesAreNot)
{
    show();
    const auto drop = [this](const std::filesystem::path& path) {
        QMimeData data;
        data.setUrls({QUrl::fromEncoded("file://" + QByteArray::fromStdString(path.string()).toPercentEncoding("/"))});
        QDragEnterEvent enter({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        enter.ignore();
        QApplication::sendEvent(&view_, &enter);
        if (!enter.isAccepted())
            return;
        QDropEvent event({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&view_, &event);
    };
    const auto folder = make("Latin-1 \xe9");
    drop(folder);
    drop("/etc/passwd");
    drop(root() / "missing");
    EXPECT_EQ(opened_, Paths{folder});
}

} // namespace
} // namespace plovik

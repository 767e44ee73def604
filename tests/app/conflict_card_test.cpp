// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/RepositoryStore.h"
#include "app/ui/merge/ConflictCard.h"
#include "app/ui/workingcopy/WorkingDetail.h"
#include "tests/app/SettlingWorker.h"
#include "tests/app/ShownWidgets.h"
#include "tests/support/EveryConflict.h"

#include <QBuffer>
#include <QLabel>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace plovik {
namespace {

std::string square(int side, Qt::GlobalColor color)
{
    QImage image(side, side, QImage::Format_RGB32);
    image.fill(color);
    QBuffer buffer;
    buffer.open(QBuffer::WriteOnly);
    image.save(&buffer, "PNG");
    return buffer.data().toStdString();
}

struct ConflictCardTest : testing::Test {
    ~ConflictCardTest() override { worker.settle(); }

    void merge()
    {
        runIntoConflicts(repo, {"merge", "topic"});
        load();
    }
    void load()
    {
        store.snapshot().refresh(RefreshScope::full);
        ASSERT_TRUE(worker.settle());
    }
    void select(std::set<std::string> paths)
    {
        store.window().selectPaths(std::move(paths));
        ASSERT_TRUE(worker.settle());
    }
    std::string buttons() const
    {
        std::string names;
        for (const QPushButton* button : card.buttons())
            names += (names.empty() ? "" : ", ") + button->accessibleName().toStdString();
        return names;
    }
    std::string says() const
    {
        std::string text;
        for (const QLabel* label : card.findChildren<QLabel*>()) {
            if (!label->isHidden() && !label->text().isEmpty())
                text += label->text().toStdString() + '|';
        }
        return text;
    }

    TestRepository repo;
    test::SettlingWorker worker;
    RepositoryStore store{repo.path(), worker};
    WorkingDetail detail{store};
    ConflictCard& card = *detail.card();
};

TEST_F(ConflictCardTest, OffersTheAnswersOfEachKindByTheNamesOfTheSides)
{
    makeEveryConflict(repo);
    merge();
    const std::vector<std::pair<const char*, const char*>> expected{
        {"goneLeft", "Keep main (deleted), Keep topic (changed)"},
        {"f", "Keep main (fLeft), Keep topic (fRight), Keep Both"},
        {"fRight", "Keep main (fLeft), Keep topic (fRight), Keep Both"},
        {"newRight", "Keep main (deleted), Keep topic (renamed)"},
        {"bin", "Keep main, Keep topic, Keep Both"},
        {"link", "Keep main (the link), Keep topic (the link), Keep Both"},
        {"dir~topic", "Keep main (the folder), Keep topic (the file), Keep Both"},
        {"typed", "Keep main (the file), Keep topic (the link), Keep Both"},
        {"same", "Keep main, Keep topic, Keep Both"},
    };
    for (const auto& [path, titles] : expected) {
        select({path});
        EXPECT_EQ(detail.currentWidget(), &card) << path;
        EXPECT_EQ(buttons(), titles) << path;
    }
    select({"link"});
    EXPECT_NE(says().find("Leads to “left”"), std::string::npos) << says();
    select({"f", "fLeft", "fRight"});
    EXPECT_TRUE(card.isFilled()) << "they are one conflict";
    for (const std::set<std::string>& others : {std::set<std::string>{"both"}, {"added"}, {"f", "bin"}, {}}) {
        select(others);
        EXPECT_NE(detail.currentWidget(), &card);
    }
}

TEST_F(ConflictCardTest, AnswersByButtonAndByKeyAndShowsPicturesOfBothSides)
{
    repo.write("p.png", square(2, Qt::red)).write("q.png", square(2, Qt::red)).commit("base");
    repo.git({"checkout", "-q", "-b", "topic"}).write("p.png", square(4, Qt::blue)).write("q.png", square(4, Qt::blue));
    repo.commit("right").git({"checkout", "-q", "main"}).write("p.png", square(3, Qt::green));
    repo.write("q.png", square(3, Qt::green)).commit("left");
    merge();
    detail.resize(700, 500);
    detail.show();
    select({"p.png"});
    ASSERT_TRUE(card.findChild<ImagePane*>());
    EXPECT_NE(says().find("3 × 3"), std::string::npos) << says();
    EXPECT_NE(says().find("4 × 4"), std::string::npos) << says();
    card.buttons().at(1)->click();
    EXPECT_FALSE(card.buttons().at(0)->isEnabled()) << "one answer is enough";
    ASSERT_TRUE(worker.settle());
    EXPECT_EQ(readFile(repo / "p.png"), square(4, Qt::blue));
    EXPECT_FALSE(card.isFilled());
    select({"q.png"});
    detail.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&detail));
    card.buttons().front()->setFocus();
    QTest::keyClick(card.buttons().front(), Qt::Key_3, Qt::AltModifier);
    ASSERT_TRUE(worker.settle());
    EXPECT_EQ(readFile(repo / "q.png"), square(3, Qt::green));
    EXPECT_EQ(readFile(repo / "q~topic.png"), square(4, Qt::blue));
    EXPECT_EQ(repo.read({"ls-files", "-u"}), "");
}

} // namespace
} // namespace plovik

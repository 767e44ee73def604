// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/settings/TrustedPrograms.h"
#include "app/store/RepositoryStore.h"
#include "app/ui/window/TrustBar.h"
#include "tests/app/SettlingWorker.h"
#include "tests/app/ShownWidgets.h"
#include "tests/support/TestRepository.h"

#include <QLabel>
#include <QPushButton>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace plovik {
namespace {

struct TrustBarTest : testing::Test {
    TrustBarTest()
    {
        repo.write("f", "1\n").commit("one").git({"config", "filter.x.clean", "sh -c 'a\nfilter.y.clean = <b>b</b>'"});
        bar.resize(900, 80);
    }
    ~TrustBarTest() override { worker.settle(); }

    void load()
    {
        store.snapshot().refresh(RefreshScope::full);
        ASSERT_TRUE(worker.settle());
    }
    void press(const QString& name)
    {
        auto* const button = test::named<QPushButton>(bar, name);
        ASSERT_TRUE(button);
        EXPECT_EQ(button->accessibleName(), button->text());
        button->click();
        ASSERT_TRUE(worker.settle());
    }

    TestRepository repo;
    test::SettlingWorker worker;
    RepositoryStore store{repo.path(),
                          worker,
                          {.trust = {.trusted = &trustedPrograms::trusted,
                                     .keptOff = &trustedPrograms::keptOff,
                                     .trust = &trustedPrograms::trust,
                                     .keepOff = &trustedPrograms::keepOff}}};
    TrustBar bar{store};
};

TEST_F(TrustBarTest, ShowsWhatWantsToRunWordByWordUntilTheUserDecides)
{
    EXPECT_TRUE(bar.isHidden());
    load();
    EXPECT_FALSE(bar.isHidden());
    const auto* const list = test::named<QLabel>(bar, u"Programs"_s);
    ASSERT_TRUE(list);
    EXPECT_EQ(list->textFormat(), Qt::PlainText);
    EXPECT_EQ(list->text(), u"filter.x.clean = sh -c 'a^Jfilter.y.clean = <b>b</b>'"_s) << "one setting is one line";

    press(u"Keep It Off"_s);
    EXPECT_TRUE(bar.isHidden());
    EXPECT_FALSE(store.trust().keptOff.value().empty());
    EXPECT_EQ(trustedPrograms::trusted(repo.path()), QString());
    EXPECT_NE(trustedPrograms::keptOff(repo.path()), QString());

    repo.git({"config", "filter.x.clean", "cat"});
    load();
    EXPECT_EQ(list->text(), u"filter.x.clean = cat"_s);
    press(u"Trust This Repository"_s);
    EXPECT_TRUE(bar.isHidden());
    EXPECT_TRUE(store.trust().keptOff.value().empty());
    const QString fingerprint = trustedPrograms::trusted(repo.path());
    EXPECT_NE(fingerprint, QString());

    // A folder whose path begins with this one's is another.
    EXPECT_EQ(trustedPrograms::trusted(repo.path().string() + " x"), QString());
    trustedPrograms::trust(repo.path(), u"other"_s);
    EXPECT_EQ(trustedPrograms::trusted(repo.path()), u"other"_s);
}

} // namespace
} // namespace plovik

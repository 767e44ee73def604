// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/store/ManualWorker.h"
#include "tests/support/TestRepository.h"

#include "app/store/RepositoryStore.h"
#include "app/store/actions/Refs.h"
#include "app/store/actions/Remotes.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <memory>

namespace plovik {
namespace {

using gitkit::FileChange;
using namespace Qt::StringLiterals;

struct StoreTrust : testing::Test {
    StoreTrust()
    {
        repo.write(".gitattributes", "f filter=upper\n").write("f", "ONE\n").commit("one");
        repo.git({"config", "filter.upper.clean", command}).write("f", "two\n");
        reopen();
    }

    /// What a new window shows.
    void reopen()
    {
        worker.finishAll();
        const TrustMemory memory{
            .trusted = [this](const auto& root) { return remembered[root]; },
            .keptOff = [this](const auto&) { return keptOff; },
            .trust = [this](const auto& root, const QString& fingerprint) { remembered[root] = fingerprint; },
            .keepOff = [this](const auto&, const QString& fingerprint) { keptOff = fingerprint; }};
        store_ = std::make_unique<RepositoryStore>(repo.path(), worker, StoreServices{.trust = memory});
    }
    RepositoryStore& store() { return *store_; }
    void load()
    {
        store().snapshot().refresh(RefreshScope::full);
        worker.finishAll();
    }
    void answer()
    {
        ASSERT_TRUE(store().window().confirmation.value());
        store().window().confirm(store().window().confirmation.value()->id);
        worker.finishAll();
    }
    bool ran() const { return std::filesystem::exists(outside / "ran"); }
    std::string staged() const { return repo.read({"show", ":f"}); }
    std::vector<FileChange> files() { return store().snapshot().status.value().files; }

    TestRepository repo;
    TemporaryFolder outside;
    ManualWorker worker;
    std::map<std::filesystem::path, QString> remembered;
    QString keptOff;
    const std::string command = "touch " + (outside / "ran").string() + "; tr a-z A-Z";

private:
    std::unique_ptr<RepositoryStore> store_;
};

TEST_F(StoreTrust, AFilterOfTheRepositoryRunsOnlyOnceTheUserHasSaidSo)
{
    load();
    EXPECT_FALSE(ran());
    ASSERT_EQ(files().size(), 1u);
    EXPECT_TRUE(store().trust().isAsking.value());
    EXPECT_EQ(Trust::listOf(store().trust().keptOff.value(), 9).toStdString(), "filter.upper.clean = " + command);

    store().staging().stageAll();
    worker.finishAll();
    ASSERT_TRUE(store().window().confirmation.value());
    EXPECT_EQ(store().window().confirmation.value()->actionTitle, u"Trust and Continue"_s);
    EXPECT_EQ(store().staging().shownStageState(files()[0]), gitkit::StageState::none) << "not before the answer";
    store().window().dismissQuestion();
    EXPECT_EQ(staged(), "ONE");
    EXPECT_FALSE(ran());

    store().staging().stage(files());
    answer();
    EXPECT_EQ(staged(), "TWO") << "written through the filter";
    EXPECT_FALSE(store().trust().isAsking.value());

    // The next window knows.
    std::filesystem::remove(outside / "ran");
    repo.write("f", "six\n");
    reopen();
    load();
    EXPECT_TRUE(ran());
    EXPECT_FALSE(store().trust().isAsking.value());

    // Another program is another question.
    repo.git({"config", "filter.upper.smudge", "cat"});
    load();
    EXPECT_TRUE(store().trust().isAsking.value());
    EXPECT_EQ(store().trust().keptOff.value().size(), 2u);
}

TEST_F(StoreTrust, KeptOffIsNotAskedAgainButBeforeAChange)
{
    load();
    store().trust().keepOff();
    load();
    EXPECT_FALSE(store().trust().isAsking.value());
    store().staging().unstageAll();
    EXPECT_TRUE(store().window().confirmation.value());
    store().window().dismissQuestion();
    reopen();
    load();
    EXPECT_FALSE(store().trust().isAsking.value()) << "the next window knows";
    EXPECT_FALSE(store().trust().keptOff.value().empty());

    repo.git({"config", "filter.other.process", "x"});
    load();
    EXPECT_TRUE(store().trust().isAsking.value());
    EXPECT_FALSE(ran());
}

TEST_F(StoreTrust, LinesOfADiffWithoutItsFilterAreNotStaged)
{
    load();
    const auto sections = repo.repository().workingDiff(files()[0]);
    std::filesystem::remove(outside / "ran");
    store().staging().applyToIndex("f", sections.at(0).diff, {1, 2}, gitkit::PatchDirection::forward);
    answer();
    EXPECT_EQ(staged(), "ONE");
    EXPECT_NE(store().window().notice.value(), QString());
    EXPECT_TRUE(store().trust().keptOff.value().empty());
}

TEST_F(StoreTrust, AChangeBeforeTheFirstStatusIsRefusedAndSaysWhy)
{
    store().changes().run({.verb = Verb::stage, .operation = &gitkit::GitRepository::stageAll});
    worker.finishAll();
    EXPECT_FALSE(ran());
    EXPECT_EQ(staged(), "ONE");
    EXPECT_TRUE(store().window().errorMessage.value());
    EXPECT_TRUE(store().trust().isAsking.value());
}

TEST_F(StoreTrust, OnlyWhatNeedsAProgramAsksFirst)
{
    repo.git({"branch", "side"});
    load();
    for (const Verb verb : {Verb::checkOut, Verb::merge, Verb::commit, Verb::saveStash, Verb::discard, Verb::pull})
        EXPECT_TRUE(store().changes().asksFirst(verb)) << static_cast<int>(verb);
    for (const Verb verb : {Verb::deleteBranch, Verb::createTag, Verb::dropStash, Verb::fetch, Verb::push})
        EXPECT_FALSE(store().changes().asksFirst(verb)) << static_cast<int>(verb);

    repo.git({"remote", "add", "origin", "https://localhost/none"}).git({"config", "remote.origin.promisor", "true"});
    repo.git({"config", "core.sshCommand", "touch " + (outside / "ran").string()});
    load();
    EXPECT_TRUE(store().changes().asksFirst(Verb::fetch));
    EXPECT_FALSE(store().changes().asksFirst(Verb::deleteBranch));
    EXPECT_FALSE(ran());
}

} // namespace
} // namespace plovik

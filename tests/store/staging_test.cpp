// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/PartialPatch.h"
#include "tests/store/ManualWorker.h"
#include "tests/support/TestRepository.h"

#include "app/store/RepositoryStore.h"
#include "app/store/actions/Merges.h"
#include "app/store/actions/Refs.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>

namespace plovik {
namespace {

using gitkit::DiffSection;
using gitkit::FileChange;
using gitkit::GitRepository;
using gitkit::ParsedDiff;
using gitkit::PatchDirection;
using gitkit::StageState;

struct StoreStaging : testing::Test {
    TestRepository repo;
    TemporaryFolder trash;
    ManualWorker worker;
    RepositoryStore store{repo.path(), worker, {.reveal = {}, .openInEditor = {}, .trash = [this](const auto& file) {
                                                    std::filesystem::rename(file, trash.path() / file.filename());
                                                }}};

    void load()
    {
        store.snapshot().refresh(RefreshScope::full);
        worker.finishAll();
    }

    std::string error() const { return store.window().errorMessage.value().value_or(QString()).toStdString(); }

    const FileChange& file(const std::string& path) const
    {
        const auto& files = store.snapshot().status.value().files;
        const auto found = std::ranges::find(files, path, &FileChange::path);
        if (found == files.end())
            throw std::runtime_error("no change in " + path);
        return *found;
    }

    std::string content(const std::string& name) const
    {
        std::ifstream stream(repo / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    ParsedDiff diffOf(const std::string& path, const std::string& title) const
    {
        for (const DiffSection& section : repo.repository().workingDiff(file(path))) {
            if (section.title == title)
                return section.diff;
        }
        return {};
    }

    static std::set<int> changesIn(const ParsedDiff& diff)
    {
        std::set<int> ids;
        for (const auto& line : diff.lines) {
            if (line.isChange())
                ids.insert(line.id);
        }
        return ids;
    }

    void confirm()
    {
        ASSERT_TRUE(store.window().confirmation.value().has_value());
        const Confirmation question = *store.window().confirmation.value();
        store.window().dismissQuestion();
        question.action();
        worker.finishAll();
    }
};

TEST_F(StoreStaging, EveryClickCountsOnTheOnesBeforeIt)
{
    repo.write("a", "1\n").write("old name", "1\n2\n3\n").write("gone", "1\n").commit("one");
    repo.write("a", "2\n").git({"mv", "old name", "new name"}).git({"rm", "-q", "gone"});
    load();
    const Staging::Files files = store.snapshot().status.value().files;
    ASSERT_EQ(files.size(), 3U);
    store.staging().stage(files);
    store.staging().unstage(files);
    worker.finishAll();
    EXPECT_EQ(repo.read({"diff", "--cached", "--name-only"}), "");
    store.staging().unstage(files);
    store.staging().stage(files);
    worker.finishAll();
    EXPECT_EQ(repo.read({"diff", "--cached", "--name-status"}), "M\ta\nD\tgone\nR100\told name\tnew name");
    EXPECT_EQ(error(), "");
}

TEST_F(StoreStaging, ADiscardAsksNothingThatItThenRefusesBesideSubmodules)
{
    TestRepository library;
    library.write("l", "1").commit("library");
    const auto addModule = [this, &library](const char* path) {
        repo.git({"-c", "protocol.file.allow=always", "submodule", "--quiet", "add", library.path().string(), path});
    };
    repo.write("a", "1").commit("one");
    for (const char* path : {"edited", "staged", "gone", "removed", "conflict"})
        addModule(path);
    repo.commit("two").git({"branch", "topic"});
    const auto move = [this](const std::string& module) {
        repo.git({"-C", module, "commit", "-q", "--allow-empty", "-m", module});
    };
    repo.write("edited/l", "2");
    move("staged");
    repo.git({"add", "staged"}).git({"rm", "-q", "removed"}); // which changes .gitmodules, too
    std::filesystem::remove_all(repo / "gone");
    addModule("added");
    move("added"); // otherwise it would be the removed one under another name
    repo.git({"add", "added"}).git({"config", "-f", ".gitmodules", "submodule.gone.branch", "main"});
    const std::string commit = repo.read({"-C", "edited", "rev-parse", "HEAD"});
    const std::string stages = "160000 " + commit + " 1\tconflict\n160000 " + repo.head() + " 2\tconflict\n160000 " +
                               repo.read({"-C", "staged", "rev-parse", "HEAD"}) + " 3\tconflict\n";
    repo.repository().runner().bytes({"update-index", "--index-info"},
                                     {.input = "0 " + std::string(40, '0') + "\tconflict\n" + stages});
    load();
    const Staging::Files files = store.snapshot().status.value().files;
    std::vector<std::string> shown;
    std::ranges::transform(files, std::back_inserter(shown), &FileChange::path);
    ASSERT_EQ(shown,
              (std::vector<std::string>{".gitmodules", "added", "conflict", "edited", "gone", "removed", "staged"}));
    for (const FileChange& each : files) {
        store.window().clearNotice();
        store.staging().confirmDiscard({each});
        worker.finishAll();
        const bool asks = store.window().confirmation.value().has_value();
        EXPECT_EQ(asks, each.path == ".gitmodules") << each.path;
        EXPECT_NE(asks, !store.window().notice.value().isEmpty()) << each.path;
        if (asks)
            confirm();
        EXPECT_EQ(error(), "") << each.path;
    }
    EXPECT_EQ(repo.read({"diff", "HEAD", "--name-only", "--", ".gitmodules"}), "");
    EXPECT_EQ(store.snapshot().status.value().files.size(), 6U);
}

TEST_F(StoreStaging, AClickShowsAtOnceAndIsCorrectedByGit)
{
    repo.write("a", "1").write("b", "1").commit("one").write("a", "2").write("b", "2");
    load();
    store.staging().toggleStage(file("a"));
    EXPECT_EQ(store.staging().shownStageState(file("a")), StageState::full) << "before git has run";
    EXPECT_EQ(file("a").stageState(), StageState::none);
    worker.finishAll();
    EXPECT_EQ(file("a").stageState(), StageState::full);

    // A failure puts the box back.
    repo.write(".git/index.lock", "");
    store.staging().toggleStage(file("b"));
    EXPECT_EQ(store.staging().shownStageState(file("b")), StageState::full);
    worker.finishAll();
    EXPECT_EQ(store.staging().shownStageState(file("b")), StageState::none);
    EXPECT_NE(error().find("index.lock"), std::string::npos) << error();
}

TEST_F(StoreStaging, CountsWhatItShowsOfManyFiles)
{
    repo.write("a", "1").write("b", "1").write("gone", "1").write("there again", "1").commit("one");
    repo.write("a", "2")
        .write("b", "2")
        .write("new", "unlike the others\n")
        .git({"rm", "-q", "--cached", "there again"});
    repo.git({"rm", "-q", "gone"});
    load();
    const auto counts = [this] {
        std::ptrdiff_t touched = 0, whole = 0;
        for (const FileChange& each : store.snapshot().status.value().files) {
            touched += store.staging().shownStageState(each) != StageState::none ? 1 : 0;
            whole += store.staging().shownStageState(each) == StageState::full ? 1 : 0;
        }
        EXPECT_EQ(store.staging().shownCounts().touched, touched);
        EXPECT_EQ(store.staging().shownCounts().whole, whole);
        return whole;
    };
    ASSERT_EQ(store.snapshot().status.value().files.size(), 6U) << "one twice, as gone and as new";
    EXPECT_EQ(counts(), 2);
    store.staging().toggleStage(file("new"));
    EXPECT_EQ(counts(), 3);
    store.window().selectPaths({"a", "b", "gone", "new", "there again"});
    EXPECT_TRUE(store.staging().selectedFiles().isSameList(store.snapshot().status.value().files));
    store.staging().toggleStageOfSelection();
    EXPECT_EQ(counts(), 6);
    store.window().selectPaths({"a", "there again"});
    EXPECT_EQ(store.staging().selectedFiles().size(), 3U);
    store.staging().toggleStageOfSelection();
    EXPECT_EQ(counts(), 3);
    worker.finishAll();
    EXPECT_EQ(error(), "");
    EXPECT_EQ(repo.read({"diff", "--cached", "--name-status"}), "M\tb\nD\tgone\nA\tnew");
    EXPECT_EQ(counts(), 3);

    // What appears while all is being staged is not among what is shown as staged.
    store.staging().stageAll();
    repo.write("newer", "1");
    store.snapshot().refresh(RefreshScope::status);
    while (store.snapshot().status.value().files.find("newer") == nullptr)
        worker.finish();
    counts();
    worker.finishAll();
}

TEST_F(StoreStaging, ThirtyQuickClicksRunOneAfterAnother)
{
    for (int i = 0; i < 30; ++i)
        repo.write("f" + std::to_string(i), "1");
    repo.commit("one");
    for (int i = 0; i < 30; ++i)
        repo.write("f" + std::to_string(i), "2");
    load();
    const auto files = store.snapshot().status.value().files;
    for (const FileChange& each : files) {
        store.staging().toggleStage(each);
        EXPECT_LE(worker.waiting(), 1u);
    }
    worker.finishAll();
    EXPECT_EQ(store.snapshot().status.value().stagedCount(), 30);
    EXPECT_EQ(error(), "");
}

TEST_F(StoreStaging, AFileStagedDuringACommitWaitsForIt)
{
    repo.write("a", "1").write("b", "1").commit("one").write("a", "2").write("b", "2").git({"add", "a"});
    load();
    store.draft().setSubject(QStringLiteral("only a"));
    store.draft().commit();
    store.staging().stage({file("b")});
    EXPECT_EQ(worker.waiting(), 1u) << "the commit alone";
    worker.finishAll();
    EXPECT_EQ(repo.read({"show", "--format=", "--name-only", "HEAD"}), "a");
    EXPECT_EQ(file("b").stageState(), StageState::full);
}

TEST_F(StoreStaging, TheSelectionIsToggledTogetherByTheClickedFile)
{
    repo.write("a", "1").write("b", "1").write("c", "1").commit("one");
    repo.write("a", "2").write("b", "2").write("c", "2").git({"add", "a"});
    load();
    store.window().selectPaths(std::set<std::string>{"a", "b"});
    store.staging().toggleStage(file("a")); // staged already, so both are unstaged
    worker.finishAll();
    EXPECT_EQ(store.snapshot().status.value().stagedCount(), 0);
    store.staging().toggleStageOfSelection();
    worker.finishAll();
    EXPECT_EQ(store.snapshot().status.value().stagedCount(), 2);
    EXPECT_EQ(file("c").stageState(), StageState::none);
}

TEST_F(StoreStaging, UnstagingEverythingWorksBeforeTheFirstCommit)
{
    repo.write("a", "1").write("b", "1").git({"add", "a"});
    load();
    store.staging().unstageAll();
    worker.finishAll();
    EXPECT_EQ(store.snapshot().status.value().stagedCount(), 0);
    EXPECT_EQ(error(), "");
    EXPECT_EQ(content("a"), "1");
}

TEST_F(StoreStaging, StagingAConflictWithMarkersAsksFirst)
{
    repo.write("a", "base\n").commit("base").git({"branch", "side"}).write("a", "ours\n").commit("ours");
    repo.git({"checkout", "-q", "side"}).write("a", "theirs\n").commit("theirs").git({"checkout", "-q", "main"});
    load();
    actions::merge(store.actors(), store.snapshot().branches.value().at(1));
    worker.finishAll();
    store.staging().stageAll();
    worker.finishAll();
    ASSERT_TRUE(store.window().confirmation.value().has_value());
    EXPECT_EQ(store.window().confirmation.value()->title, QStringLiteral("“a” still contains conflict markers"));
    EXPECT_TRUE(file("a").isConflicted);

    store.window().dismissQuestion();
    repo.write("a", "resolved\n");
    store.staging().stage({file("a")});
    worker.finishAll();
    EXPECT_FALSE(store.window().confirmation.value().has_value());
    EXPECT_EQ(file("a").stageState(), StageState::full);
}

TEST_F(StoreStaging, ASelectionIsStagedOnceAndAStaleDiffNever)
{
    repo.write("a", "1\n2\n3\n").commit("one").write("a", "1\n2\n3\nx\nx\n");
    load();
    const ParsedDiff diff = diffOf("a", "Unstaged");
    const std::set<int> first{*changesIn(diff).begin()};
    store.staging().applyToIndex("a", diff, first, PatchDirection::forward);
    store.staging().applyToIndex("a", diff, first, PatchDirection::forward); // a double click
    worker.finishAll();
    EXPECT_EQ(repo.read({"show", ":a"}), "1\n2\n3\nx");
    EXPECT_NE(error().find("has changed since"), std::string::npos) << error();
}

TEST_F(StoreStaging, ADiscardOfLinesCanBeTakenBackWhileTheFileMatches)
{
    repo.write("a", "1\n2\n").commit("one").write("a", "1\r\n2\nnew");
    load();
    const std::string before = content("a");
    const ParsedDiff diff = diffOf("a", "Unstaged");
    store.staging().confirmDiscardPart("a", diff, changesIn(diff), Staging::DiscardedPart::lines);
    EXPECT_EQ(content("a"), before) << "not before it is confirmed";
    confirm();
    EXPECT_EQ(content("a"), "1\n2\n");
    ASSERT_TRUE(store.undo().undoTitle.value());
    store.undo().undo();
    store.undo().undo(); // a second press finds nothing, and disturbs nothing
    worker.finishAll();
    EXPECT_EQ(content("a"), before);
    EXPECT_EQ(error(), "");
    EXPECT_FALSE(store.undo().undoTitle.value());

    load();
    const ParsedDiff again = diffOf("a", "Unstaged");
    store.staging().confirmDiscardPart("a", again, changesIn(again), Staging::DiscardedPart::hunk);
    confirm();
    repo.write("a", "typed since\n");
    store.undo().undo();
    worker.finishAll();
    EXPECT_EQ(content("a"), "typed since\n");
    ASSERT_TRUE(store.window().confirmation.value() && store.window().confirmation.value()->place);
    EXPECT_TRUE(store.undo().undoTitle.value()) << "the copy stays";
    store.window().confirmation.value()->place->chosen(trash.path() / "saved");
    worker.finishAll();
    std::ifstream saved(trash.path() / "saved", std::ios::binary);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(saved), {}), before);
    store.window().choose(store.window().confirmation.value()->id, 0);
    worker.finishAll();
}

TEST_F(StoreStaging, DiscardingAsksInTheRightWordsAndKeepsNewFilesInTheTrash)
{
    repo.write("a", "1").commit("one").write("a", "2").write("new.txt", "mine");
    load();
    store.staging().confirmDiscard({file("new.txt")});
    worker.finishAll();
    EXPECT_EQ(store.window().confirmation.value()->detail, QStringLiteral("1 new file.\nUndo brings everything back."));
    EXPECT_EQ(store.window().confirmation.value()->title, QStringLiteral("Delete “new.txt”?"));
    EXPECT_EQ(store.window().confirmation.value()->message, QStringLiteral("The file is moved to the Trash."));
    store.staging().confirmDiscard({file("a")});
    worker.finishAll();
    EXPECT_EQ(store.window().confirmation.value()->title, QStringLiteral("Discard changes in “a”?"));
    EXPECT_EQ(store.window().confirmation.value()->message, QStringLiteral("Local modifications are lost."));

    const auto both = store.snapshot().status.value().files;
    EXPECT_EQ(Staging::discardTitle(both), QStringLiteral("Discard Changes…"));
    store.staging().confirmDiscard(both);
    worker.finishAll();
    EXPECT_EQ(store.window().confirmation.value()->title, QStringLiteral("Discard changes in 2 files?"));
    EXPECT_EQ(store.window().confirmation.value()->message,
              QStringLiteral("Local modifications are lost. New files are moved to the Trash."));
    confirm();
    EXPECT_EQ(error(), "");
    EXPECT_EQ(content("a"), "1");
    EXPECT_TRUE(std::filesystem::exists(trash.path() / "new.txt"));
    EXPECT_TRUE(store.snapshot().status.value().files.empty());
}

TEST_F(StoreStaging, ADiscardTakesOnlyWhatItAskedAbout)
{
    repo.write("a", "1").write("b", "1").commit("one").write("a", "2").write("b", "2");
    load();
    store.staging().confirmDiscard(store.snapshot().status.value().files);
    worker.finishAll();
    repo.write("a", "typed while the question stood");
    confirm();
    EXPECT_EQ(content("a"), "typed while the question stood");
    EXPECT_EQ(content("b"), "2");
    EXPECT_NE(error().find("has changed since you were asked"), std::string::npos) << error();
}

TEST_F(StoreStaging, StagedWorkIsNamedBeforeItIsDiscardedAndCanStay)
{
    repo.write("a", "1\n").commit("one").write("a", "2\n").git({"add", "a"}).write("a", "2\n3\n").write("new", "n");
    load();
    const auto both = store.snapshot().status.value().files;
    store.staging().confirmDiscard(both);
    worker.finishAll();
    const Confirmation question = *store.window().confirmation.value();
    EXPECT_EQ(question.detail,
              QStringLiteral("1 changed line and 1 staged one; 1 new file.\nUndo brings everything back."));
    EXPECT_EQ(question.choices.at(0).title, QStringLiteral("Discard Unstaged Only"));
    store.window().choose(question.id, 0);
    worker.finishAll();
    EXPECT_EQ(content("a"), "2\n");
    EXPECT_EQ(repo.read({"show", ":a"}), "2");

    store.staging().confirmDiscard({file("a")});
    worker.finishAll();
    EXPECT_TRUE(store.window().confirmation.value()->choices.empty());
    confirm();
    EXPECT_EQ(content("a"), "1\n");
    store.undo().undo();
    worker.finishAll();
    EXPECT_EQ(repo.read({"show", ":a"}), "2");
    store.undo().undo();
    worker.finishAll();
    EXPECT_EQ(content("a"), "2\n3\n");
    EXPECT_EQ(content("new"), "n");
}

TEST_F(StoreStaging, WhatOnlyTheIndexHadComesBack)
{
    repo.write("a", "1").commit("one").write("a", "2").write("new", "n").git({"add", "."}).remove("a").remove("new");
    load();
    const std::string before = repo.read({"ls-files", "-s"});
    const auto both = store.snapshot().status.value().files;
    const std::vector<std::function<void()>> clicks{[&] { store.staging().unstageAll(); },
                                                    [&] { store.staging().unstage(both); },
                                                    [&] { store.staging().stageAll(); }};
    for (const auto& click : clicks) {
        click();
        worker.finishAll();
        EXPECT_NE(repo.read({"ls-files", "-s"}), before);
        store.undo().undo();
        worker.finishAll();
        EXPECT_EQ(repo.read({"ls-files", "-s"}), before);
        EXPECT_EQ(error(), "");
    }
}

TEST_F(StoreStaging, CommittingNeedsASubjectAndSomethingToCommit)
{
    repo.write("a", "1").commit("one").write("a", "2");
    load();
    store.draft().setSubject(QStringLiteral("  \t "));
    EXPECT_FALSE(store.draft().canCommit());
    store.draft().setSubject(QStringLiteral("#12 fix "));
    EXPECT_FALSE(store.draft().canCommit()) << "nothing is staged";
    store.draft().setAmend(true);
    EXPECT_TRUE(store.draft().canCommit());
    store.draft().setAmend(false);
    store.staging().stageAll();
    worker.finishAll();
    ASSERT_TRUE(store.draft().canCommit());
    store.draft().setBody(QStringLiteral("\n\n  \n"));
    store.draft().commit();
    EXPECT_FALSE(store.draft().canCommit()) << "one at a time";
    EXPECT_EQ(store.changes().activity.value(), QStringLiteral("Committing…"));
    worker.finishAll();
    EXPECT_EQ(error(), "");
    EXPECT_EQ(repo.read({"log", "-1", "--format=%B"}), "#12 fix\n") << "what was typed is what is recorded";
    EXPECT_EQ(store.draft().commitSubject.value(), QString());
    EXPECT_EQ(store.draft().commitBody.value(), QString());
}

TEST_F(StoreStaging, AFailedCommitKeepsWhatWasTyped)
{
    repo.write("a", "1").commit("one").write("a", "2").git({"add", "a"});
    repo.write(".git/hooks/pre-commit", "#!/bin/sh\necho 'the hook says no' >&2\nexit 1\n");
    std::filesystem::permissions(repo / ".git/hooks/pre-commit", std::filesystem::perms::owner_all);
    load();
    store.draft().setSubject(QStringLiteral("subject"));
    store.draft().setBody(QStringLiteral("body"));
    store.draft().commit();
    worker.finishAll();
    EXPECT_EQ(error(), "the hook says no");
    EXPECT_EQ(store.draft().commitSubject.value(), QStringLiteral("subject"));
    EXPECT_EQ(store.draft().commitBody.value(), QStringLiteral("body"));
}

TEST_F(StoreStaging, AnUntouchedAmendChangesNoByteOfTheMessage)
{
    repo.write("a", "1").commit("one").write("a", "2").git({"add", "a"});
    const std::string odd = "subject \n    indented\n\n\n# not a comment\ntrailing  \n\n";
    repo.git({"commit", "-q", "--cleanup=verbatim", "-F", "-"}, odd);
    repo.write("a", "3").git({"add", "a"});
    load();
    store.draft().setAmend(true);
    worker.finishAll();
    EXPECT_EQ(store.draft().commitSubject.value(), QStringLiteral("subject "));
    store.draft().commit();
    EXPECT_EQ(store.changes().activity.value(), QStringLiteral("Amending…"));
    worker.finishAll();
    ASSERT_EQ(error(), "");
    EXPECT_EQ(
        repo.read({"cat-file", "commit", "HEAD"}).substr(repo.read({"cat-file", "commit", "HEAD"}).find("\n\n") + 2) +
            "\n",
        odd);
    EXPECT_FALSE(store.draft().amend.value());

    // What is typed already is not written over.
    store.draft().setSubject(QStringLiteral("mine"));
    store.draft().setAmend(true);
    worker.finishAll();
    EXPECT_EQ(store.draft().commitSubject.value(), QStringLiteral("mine"));
}

} // namespace
} // namespace plovik

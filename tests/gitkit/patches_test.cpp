// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/Patches.h"

#include "GitKit/repository/Folders.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/Operations.h"
#include "GitKit/runner/GitError.h"
#include "tests/support/TestRepository.h"
#include "tests/support/WholeState.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace gitkit {
namespace {

namespace fs = std::filesystem;

const std::string binary("\0\1\2\xff\0", 5);

struct Patches : testing::Test {
    Patches() { repo.write("a", "1\n2\n3\n").write("gone", "x\n").commit("one"); }

    /// A commit with all that a patch can hold, on top of the first one.
    std::string everything()
    {
        repo.write("a", "1\r\n2\n3").write("b\xe4 \"x", binary).remove("gone").write("dir/moved", "x\n");
        return repo.commit("Änderung\n\nbody").head();
    }
    std::optional<OperationInProgress> stopped() const
    {
        const GitRepository door = repo.repository();
        return operationInProgress(door, gitDirectories(door).own);
    }

    TestRepository repo;
};

TEST_F(Patches, AMailIsTheSameWhateverTheSettingsAre)
{
    const std::string commit = everything();
    const std::string mail = mailedPatch(repo.repository(), commit);
    for (const char* setting : {"format.attach=x",
                                "format.headers=X-A: b\n",
                                "format.signature=s",
                                "format.coverLetter=true",
                                "format.subjectPrefix=P",
                                "format.thread=deep",
                                "format.numbered=true",
                                "format.signOff=true",
                                "format.useAutoBase=true",
                                "format.to=a@b",
                                "format.cc=a@b",
                                "format.from=true",
                                "format.notes=true",
                                "format.encodeEmailHeaders=true",
                                "format.noprefix=true",
                                "diff.noprefix=true",
                                "diff.mnemonicPrefix=true",
                                "format.suffix=.txt",
                                "format.outputDirectory=/nowhere",
                                "diff.renames=copies",
                                "format.pretty=oneline"})
    {
        const std::string text = setting;
        const std::size_t end = text.find('=');
        repo.git({"config", text.substr(0, end), text.substr(end + 1)});
        EXPECT_EQ(mailedPatch(repo.repository(), commit), mail) << setting;
        repo.git({"config", "--unset", text.substr(0, end)});
    }
    EXPECT_TRUE(mail.starts_with("From " + commit)) << mail;
    EXPECT_NE(mail.find("GIT binary patch"), std::string::npos);
}

TEST_F(Patches, AMergeHasNoPatchOfItsOwn)
{
    repo.git({"checkout", "-q", "-b", "topic"}).write("b", "1").commit("two").git({"checkout", "-q", "main"});
    repo.git({"merge", "-q", "--no-ff", "topic"});
    EXPECT_THROW(mailedPatch(repo.repository(), repo.head()), GitError);
    EXPECT_THROW(barePatch(repo.repository(), repo.head()), GitError);
}

TEST_F(Patches, SavedOnesBecomeTheSameCommitsElsewhere)
{
    const std::string one = repo.head();
    everything();
    repo.write("a", "4\n").commit("fix: a/b *");
    const std::string tree = repo.read({"rev-parse", "HEAD^{tree}"});
    TemporaryFolder folder;
    const std::vector<std::string> commits{repo.read({"rev-parse", "HEAD~1"}), repo.head()};
    const auto names = saveMailedPatches(repo.repository(), commits, folder.path());
    EXPECT_EQ(names, (std::vector<std::string>{"0001-nderung.patch", "0002-fix-a-b.patch"}));
    EXPECT_THROW(saveMailedPatches(repo.repository(), commits, folder.path()), GitError) << "nothing is written over";

    std::string mails;
    for (const std::string& name : names)
        mails += bytesAt(folder / name);
    repo.git({"reset", "-q", "--hard", one}).git({"config", "mailinfo.scissors", "true"});
    const PatchContents contents = patchContents(repo.repository(), mails);
    EXPECT_EQ(contents.mails, 2);
    EXPECT_EQ(contents.paths, (std::vector<std::string>{"a", "b\xe4 \"x", "dir/moved", "gone"}));
    applyMails(repo.repository(), mails);
    EXPECT_EQ(repo.read({"rev-parse", "HEAD^{tree}"}), tree);
    EXPECT_EQ(repo.read({"log", "-2", "--format=%B"}), "fix: a/b *\n\nÄnderung\n\nbody\n");
}

TEST_F(Patches, MailsThatDoNotFitStopLikeARebase)
{
    repo.write("a", "theirs\n").commit("two");
    const std::string mail = mailedPatch(repo.repository(), repo.head());
    repo.git({"reset", "-q", "--hard", "HEAD~1"}).write("a", "ours\n").commit("ours");
    EXPECT_THROW(applyMails(repo.repository(), mail), GitError);
    ASSERT_TRUE(stopped());
    EXPECT_EQ(stopped()->kind, OperationInProgress::Kind::applyPatches);
    proceed(repo.repository(), *stopped(), OperationStep::abort);
    EXPECT_FALSE(stopped());
    EXPECT_EQ(bytesAt(repo / "a"), "ours\n");
    EXPECT_THROW(applyMails(repo.repository(), barePatch(repo.repository(), repo.head())), GitError);
    EXPECT_FALSE(stopped()) << "changes alone are no commits";
}

TEST_F(Patches, ChangesApplyAllOrNotAtAll)
{
    const std::string patch = barePatch(repo.repository(), everything());
    repo.git({"reset", "-q", "--hard", "HEAD~1"});
    repo.write("dir/moved", "mine");
    EXPECT_THROW(applyPatch(repo.repository(), patch, PatchWay::exact), GitError) << "a file is in the way";
    EXPECT_EQ(bytesAt(repo / "a") + bytesAt(repo / "dir/moved"), "1\n2\n3\nmine");
    repo.remove("dir/moved");
    applyPatch(repo.repository(), patch, PatchWay::exact);
    EXPECT_EQ(bytesAt(repo / "a"), "1\r\n2\n3");
    EXPECT_EQ(bytesAt(repo / "b\xe4 \"x"), binary);
    EXPECT_FALSE(fs::exists(repo / "gone"));
    EXPECT_EQ(repo.read({"diff", "--cached", "--name-only"}), "") << "nothing is staged";
}

TEST_F(Patches, WhatDoesNotFitCanBeMergedIn)
{
    repo.write("a", "1\n2\nthree\n").commit("two");
    const std::string patch = barePatch(repo.repository(), repo.head());
    repo.git({"reset", "-q", "--hard", "HEAD~1"}).write("a", "0\n0\n0\n1\n2\nours\n").commit("ours");
    try {
        applyPatch(repo.repository(), patch, PatchWay::exact);
        FAIL();
    } catch (const GitError& error) {
        EXPECT_EQ(error.kind(), ErrorKind::changedMeanwhile);
    }
    try {
        applyPatch(repo.repository(), patch, PatchWay::threeWay);
        FAIL();
    } catch (const GitError& error) {
        EXPECT_EQ(error.kind(), ErrorKind::conflicts);
    }
    EXPECT_NE(bytesAt(repo / "a").find("<<<<<<<"), std::string::npos);
}

TEST_F(Patches, LeadsNowhereOutsideOfTheRepository)
{
    const std::string evil = "--- /dev/null\n+++ b/../evil\n@@ -0,0 +1 @@\n+x\n";
    EXPECT_THROW(applyPatch(repo.repository(), evil, PatchWay::exact), GitError);
    EXPECT_FALSE(fs::exists(repo.path().parent_path() / "evil"));
    EXPECT_THROW(patchContents(repo.repository(), "no patch at all\n"), GitError);
}

TEST(PatchMessages, LinesThatEndAPatchAreFound)
{
    for (const char* message :
         {"a\n\n---\nb", "a\n\n--- \n", "a\n\ndiff --git a/x b/x", "a\n\nIndex: x", "a\n\n--- a/x"})
        EXPECT_TRUE(endsPatchEarly(message)) << message;
    for (const char* message : {"a\n\n----", "a --- b\n\n - x\n", "diff of x\n\n  diff --git", ""})
        EXPECT_FALSE(endsPatchEarly(message)) << message;
}

TEST_F(Patches, APackHasTheFilesBelowItsNameAndSaysWhatItLacks)
{
    TemporaryFolder folder;
    const fs::path zip = folder / "x.zip";
    const GitRepository door = repo.repository();
    writeArchive(door, repo.head(), ArchiveFormat::zip, "name", zip);
    EXPECT_TRUE(bytesAt(zip).starts_with("PK"));
    EXPECT_NE(bytesAt(zip).find("name/gone"), std::string::npos);
    EXPECT_EQ(leftOutOfArchive(door, repo.head()), LeftOut{});
    repo.git({"config", "tar.tar.gz.command", "touch ran; cat"});
    writeArchive(door, repo.head(), ArchiveFormat::tarGz, "name", folder / "x.tar.gz");
    EXPECT_TRUE(bytesAt(folder / "x.tar.gz").starts_with("\x1f\x8b"));
    EXPECT_FALSE(fs::exists(repo / "ran")) << "the repository chose a program";
    EXPECT_THROW(writeArchive(door, std::string(40, 'a'), ArchiveFormat::zip, "name", zip), GitError);
    EXPECT_TRUE(bytesAt(zip).starts_with("PK")) << "what was there stays";
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), {}), 2) << "nothing half is left";

    repo.write("sub/.gitattributes", "x export-ignore\n").git({"add", "."});
    repo.git({"update-index", "--add", "--cacheinfo", "160000," + repo.head() + ",module"});
    repo.git({"commit", "-q", "-m", "two"});
    EXPECT_EQ(leftOutOfArchive(door, repo.head()), (LeftOut{.submodules = true, .marked = true}));
}

} // namespace
} // namespace gitkit

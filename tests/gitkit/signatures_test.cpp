// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/Signatures.h"

#include "GitKit/repository/GitRepository.h"
#include "GitKit/runner/GitVersion.h"
#include "tests/support/OwnEnvironment.h"
#include "tests/support/TestRepository.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <thread>

namespace gitkit {
namespace {

namespace fs = std::filesystem;
using State = Signature::State;
using Obstacle = Signature::Obstacle;

/// A commit signed by a key of ssh, checked with programs that the tests make, so that none has to be installed.
struct Signatures : testing::Test {
    Signatures()
    {
        repo.write("a", "1").commit("one");
        plain = repo.head();
        const std::string tree = repo.read({"rev-parse", "HEAD^{tree}"});
        sshSigned = stored(tree, "-----BEGIN SSH SIGNATURE-----\n U1NI\n -----END SSH SIGNATURE-----");
        gpgSigned = stored(tree, "-----BEGIN PGP SIGNATURE-----\n \n iHUE\n -----END PGP SIGNATURE-----");
    }
    std::string stored(const std::string& tree, const std::string& signature) const
    {
        return repo.storeCommit("tree " + tree + "\nparent " + plain +
                                "\nauthor A <a@b> 1 +0000\ncommitter A <a@b> 1 +0000\ngpgsig " + signature +
                                "\n\ngpgsig in the message\n");
    }
    /// Makes a program that git runs to check signatures, chosen by the user's own configuration.
    void program(const std::string& key, const std::string& script)
    {
        const fs::path file = folder / key;
        std::ofstream(file) << "#!/bin/sh\n" << script << '\n';
        fs::permissions(file, fs::perms::owner_all);
        settings.emplace_back("GIT_CONFIG_GLOBAL", (folder / "config").string());
        std::ofstream(folder / "config", std::ios::app)
            << '[' << "gpg \"" << key << "\"]\n\tprogram = " << file.string() << '\n';
    }
    Signature check(const std::string& commit, std::chrono::milliseconds limit = std::chrono::seconds(60)) const
    {
        return checkedSignature(repo.repository().in({.environment = settings}), commit, limit);
    }

    TestRepository repo;
    TemporaryFolder folder;
    std::string plain, sshSigned, gpgSigned;
    std::vector<std::pair<std::string, std::string>> settings;
};

TEST_F(Signatures, AreFoundInHeadersWithoutRunningAnyProgram)
{
    program("openpgp", "touch " + (folder / "ran").string());
    program("ssh", "touch " + (folder / "ran").string());
    repo.write("a", "2").commit("gpgsig x\n\ngpgsig y");
    EXPECT_EQ(signedAmong(repo.repository(), {repo.head(), sshSigned, std::string(40, 'a'), plain, gpgSigned}),
              (std::vector<std::string>{sshSigned, gpgSigned}));
    EXPECT_TRUE(signedAmong(repo.repository(), {}).empty());
    EXPECT_FALSE(fs::exists(folder / "ran"));
    EXPECT_EQ(check(plain), Signature{});
    EXPECT_FALSE(fs::exists(folder / "ran"));
}

TEST_F(Signatures, AreNotCalledBadOrMissingWhereNothingCanCheckThem)
{
    program("ssh", "exit 0");
    EXPECT_EQ(check(sshSigned).state, State::cannotCheck);
    EXPECT_EQ(check(sshSigned).obstacle, Obstacle::noAllowedSigners);
    std::ofstream(folder / "config", std::ios::app) << "[gpg \"ssh\"]\n\tprogram = /nowhere/x\n\tallowedSignersFile = "
                                                       "/dev/null\n[gpg \"openpgp\"]\n\tprogram = /nowhere/y\n";
    EXPECT_EQ(check(sshSigned).obstacle, Obstacle::noProgram);
    EXPECT_EQ(check(gpgSigned).obstacle, Obstacle::noProgram);
}

TEST_F(Signatures, TellWhatGpgSaysOfThem)
{
    const auto saying = [this](const std::string& lines) {
        program("openpgp", "cat > /dev/null; printf '" + lines + "'");
        return check(gpgSigned);
    };
    const std::string made = "\\n[GNUPG:] NEWSIG\\n";
    EXPECT_EQ(saying(made + "[GNUPG:] GOODSIG 1A2B Ada <a@b>\\n[GNUPG:] TRUST_FULLY 0 pgp\\n"),
              (Signature{State::good, Obstacle::none, "Ada <a@b>", "1A2B"}));
    EXPECT_EQ(saying(made + "[GNUPG:] GOODSIG 1A2B Ada\\n[GNUPG:] TRUST_UNDEFINED 0 pgp\\n").state, State::unknownKey);
    EXPECT_EQ(saying(made + "[GNUPG:] EXPKEYSIG 1A2B Ada\\n").state, State::outdated);
    EXPECT_EQ(saying(made + "[GNUPG:] BADSIG 1A2B Ada\\n").state, State::bad);
    const Signature unknown = saying(made + "[GNUPG:] ERRSIG 1A2B 22 10 00 1 9\\n");
    EXPECT_EQ(unknown.obstacle, Obstacle::noKey);
    EXPECT_EQ(unknown.key, "1A2B");
}

TEST_F(Signatures, AreNeverCheckedByAProgramOfTheRepository)
{
    const std::string ran = (folder / "ran").string();
    program("mine", "touch " + ran);
    for (const char* key : {"gpg.program", "gpg.openpgp.program", "gpg.ssh.program", "gpg.x509.program"})
        repo.git({"config", key, (folder / "mine").string()});
    repo.git({"config", "gpg.ssh.allowedSignersFile", "/dev/null"});
    check(gpgSigned);
    check(sshSigned);
    EXPECT_FALSE(fs::exists(ran));
}

TEST_F(Signatures, AProgramThatDoesNotAnswerIsEnded)
{
    program("openpgp", "exec sleep 600");
    EXPECT_EQ(check(gpgSigned, std::chrono::milliseconds(100)).obstacle, Obstacle::tooSlow);
    std::stop_source stop;
    stop.request_stop();
    EXPECT_THROW(checkedSignature(repo.repository().in({.stop = stop.get_token()}), gpgSigned), RunStopped);
}

} // namespace
} // namespace gitkit

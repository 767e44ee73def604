// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/AdministratorCommand.h"
#include "app/services/commandline/CommandLineTool.h"
#include "app/shell/CommandLineSettings.h"
#include "tests/app/EventWait.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QProcess>
#include <QThread>

#include <optional>

using namespace Qt::StringLiterals;

namespace plovik {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using Command = std::vector<std::string>;
using Installation = CommandLineTool::Installation;
using Offer = CommandLineState::Offer;

void writeProgram(const fs::path& path, const std::string& script = "exit 0\n")
{
    writeFile(path, "#!/bin/sh\n" + script);
    fs::permissions(path, fs::perms::owner_all);
}

/// An application with its tool, the user's folder for links and the machine's.
class CommandLineToolTest : public testing::Test {
protected:
    CommandLineToolTest() { writeProgram(bundled); }

    CommandLineTool tool() const
    {
        return {{.programs = programs, .linkFolders = {own, machine}, .searchPath = {own, machine}}, administrator};
    }
    std::string installProblem() const
    {
        try {
            tool().install();
        } catch (const CommandLineTool::InstallError& error) {
            return error.what();
        }
        return "none";
    }
    static void link(const fs::path& target, const fs::path& at)
    {
        fs::create_directories(at.parent_path());
        fs::create_symlink(target, at);
    }

    TemporaryFolder folder;
    fs::path programs = folder / "Plovik's \"own\" $HOME/bin";
    fs::path bundled = programs / "plovik";
    fs::path own = folder / "home/.local/bin";
    fs::path machine = folder / "usr/local/bin";
    CommandLineTool::Administrator administrator = [](const Command&) -> bool {
        throw AdministratorFailure("nobody was to be asked");
    };
};

TEST_F(CommandLineToolTest, LooksWhereTerminalsLook)
{
    const auto linkFolders = [&](const fs::path& home, const std::string& path) {
        return CommandLineTool::placesFor(programs, home, path).linkFolders;
    };
    const fs::path home = folder / "home";
    EXPECT_THAT(linkFolders(home, own.string() + "/:/usr/bin"), ElementsAre(own, "/usr/local/bin"));
    EXPECT_THAT(linkFolders(home, "/usr/bin::.local/bin:" + own.string() + "x"), ElementsAre("/usr/local/bin"));
    EXPECT_THAT(linkFolders("", "/.local/bin"), ElementsAre("/usr/local/bin"));
    fs::create_directories(own);
    link(own, folder / "bin");
    EXPECT_THAT(linkFolders(home, (folder / "bin").string()), ElementsAre(own, "/usr/local/bin"));
}

TEST_F(CommandLineToolTest, NeedsAToolBesideTheApplication)
{
    EXPECT_EQ(tool().bundled(), bundled);
    fs::permissions(bundled, fs::perms::owner_read);
    EXPECT_EQ(tool().bundled(), std::nullopt);
    EXPECT_EQ(installProblem(), "This copy of Plovik does not contain the command line tool.");
    EXPECT_EQ(commandLineCommands(tool()).state().statement,
              u"Only an installed Plovik contains the command line tool."_s);
}

TEST_F(CommandLineToolTest, FindsTheFirstEntryWhateverItIs)
{
    EXPECT_EQ(tool().installation(), std::nullopt);
    link(bundled, machine / "plovik");
    EXPECT_EQ(tool().installation(), (Installation{machine / "plovik", bundled, true}));

    // A link that leads nowhere is there all the same, and comes first.
    link("nowhere", own / "plovik");
    const Installation dangling{own / "plovik", "nowhere", false};
    EXPECT_EQ(tool().installation(), dangling);
    EXPECT_EQ(CommandLineTool::staleDescription(dangling).toStdString(), "Links to a file that no longer exists:");

    fs::remove(own / "plovik");
    writeFile(own / "plovik", "mine");
    const Installation file{own / "plovik", std::nullopt, false};
    EXPECT_EQ(tool().installation(), file);
    EXPECT_EQ(CommandLineTool::staleDescription(file).toStdString(), "This is not a link to Plovik.");
}

TEST_F(CommandLineToolTest, FollowsLinksFromWhereTheyLie)
{
    // The folder of the link is itself a link, so ".." leads out of where it really is.
    fs::create_directories(folder / "real/deep");
    fs::create_directories(own.parent_path());
    fs::create_directory_symlink(folder / "real/deep", own);
    const fs::path target = fs::path("../..") / bundled.lexically_relative(folder.path());
    link(target, own / "plovik");
    EXPECT_EQ(tool().installation(), (Installation{own / "plovik", target, true}));

    writeProgram(folder / "old/plovik");
    fs::remove(own / "plovik");
    link("../../old/plovik", own / "plovik");
    const Installation other{own / "plovik", "../../old/plovik", false};
    EXPECT_EQ(tool().installation(), other);
    EXPECT_EQ(CommandLineTool::staleDescription(other).toStdString(), "Links to another copy of Plovik:");
}

TEST_F(CommandLineToolTest, LinksWhereTheUserMayWrite)
{
    EXPECT_TRUE(tool().install()); // makes the folder
    EXPECT_EQ(tool().installation(), (Installation{own / "plovik", bundled, true}));
    EXPECT_TRUE(tool().install()); // replaces a link that is current already
    EXPECT_EQ(tool().installation(), (Installation{own / "plovik", bundled, true}));

    // What is there is repaired where it is, also in the second folder, also when it leads to a folder.
    fs::remove(own / "plovik");
    link(folder.path(), machine / "plovik");
    EXPECT_TRUE(tool().install());
    EXPECT_EQ(tool().installation(), (Installation{machine / "plovik", bundled, true}));
    EXPECT_EQ(std::distance(fs::directory_iterator(machine), {}), 1);
    EXPECT_FALSE(fs::exists(folder / "plovik"));
}

TEST_F(CommandLineToolTest, LeavesAloneWhatIsNoLink)
{
    writeFile(own / "plovik", "mine");
    EXPECT_EQ(installProblem(),
              (own / "plovik").string() + " is not a link, so it was left alone. Remove it and try again.");
    EXPECT_EQ(readFile(own / "plovik"), "mine");
    fs::remove(own / "plovik");
    fs::create_directories(own / "plovik");
    EXPECT_THAT(installProblem(), HasSubstr("is not a link, so it was left alone."));
}

TEST_F(CommandLineToolTest, AsksTheAdministratorWhereTheUserMayNotWrite)
{
    // Files where folders belong: nobody can write there, not even the tests' own user when that is root.
    writeFile(folder / "home", "");
    writeFile(machine, "");
    Command asked;
    administrator = [&asked](const Command& command) {
        asked = command;
        return false;
    };
    EXPECT_FALSE(tool().install());
    EXPECT_THAT(asked, ElementsAre("/bin/ln", "-sfn", bundled.string(), (machine / "plovik").string()));

    machine = folder / "usr/it's new/bin";
    writeFile(folder / "usr/it's new", "");
    administrator = [&asked, this](const Command& command) {
        asked = command;
        fs::remove(folder / "usr/it's new");
        const QStringList arguments{QString::fromStdString(command.at(1)), QString::fromStdString(command.at(2))};
        return QProcess::execute(QString::fromStdString(command.at(0)), arguments) == 0;
    };
    EXPECT_TRUE(tool().install());
    EXPECT_EQ(asked.at(0), "/bin/sh");
    EXPECT_THAT(asked.at(2), HasSubstr(R"(it'\''s new)"));
    EXPECT_EQ(tool().installation(), (Installation{machine / "plovik", bundled, true}));

    fs::remove_all(machine);
    writeFile(machine, "");
    administrator = [](const Command&) -> bool { throw AdministratorFailure("No agent."); };
    EXPECT_EQ(installProblem(), "No agent.");
    administrator = [](const Command&) -> bool { throw AdministratorFailure(""); };
    EXPECT_EQ(installProblem(), "The command line tool could not be installed.");
}

TEST_F(CommandLineToolTest, NeedsNoLinkWhereTerminalsFindItAlready)
{
    const auto packaged = [this](std::vector<fs::path> searchPath) {
        return CommandLineTool({programs, {machine}, std::move(searchPath)}, administrator).packaged();
    };
    link(programs, folder / "bin");
    EXPECT_EQ(packaged({machine}), std::nullopt);
    EXPECT_EQ(packaged({machine, folder / "bin"}), folder / "bin/plovik");
    writeProgram(machine / "plovik"); // found before it
    EXPECT_EQ(packaged({machine, folder / "bin"}), std::nullopt);
    // Installed into a link folder, the tool itself is no foreign file.
    programs = machine;
    EXPECT_EQ(packaged({}), machine / "plovik");
}

TEST_F(CommandLineToolTest, TellsTheSettings)
{
    const CommandLineCommands commands = commandLineCommands(tool());
    EXPECT_EQ(commands.state().statement, u"Not installed"_s);
    EXPECT_EQ(commands.state().offer, Offer::install);

    link("nowhere", own / "plovik");
    EXPECT_EQ(commands.state().path, "nowhere");
    EXPECT_EQ(commands.state().offer, Offer::update);

    std::optional<QString> problem;
    commands.install([&problem](const QString& told) {
        EXPECT_EQ(QThread::currentThread(), qApp->thread());
        problem = told;
    });
    ASSERT_TRUE(test::waitUntil([&problem] { return problem.has_value(); }));
    EXPECT_EQ(problem, QString());
    EXPECT_EQ(commands.state().statement, u"Installed at"_s);
    EXPECT_EQ(commands.state().path, own / "plovik");
    EXPECT_EQ(commands.state().offer, Offer::reveal);
}

TEST(RunAsAdministrator, HearsWhatPkexecAnswers)
{
    const TemporaryFolder folder;
    const std::string script = "printf '%s|' \"$SHELL\" \"$@\" > '" + (folder / "heard").string() + "'\n";
    const auto answered = [&](const std::string& answer) -> std::string {
        writeProgram(folder / "pkexec", script + answer);
        try {
            return runAsAdministrator({"/bin/tool", "it's", "\xe9\n"}) ? "done" : "dismissed";
        } catch (const AdministratorFailure& failure) {
            return failure.what();
        }
    };
    const ScopedVariable path("PATH", folder.path().string());
    const ScopedVariable shell("SHELL", "/opt/odd/shell");
    EXPECT_EQ(answered("exit 0\n"), "done");
    EXPECT_EQ(readFile(folder / "heard"), "|--disable-internal-agent|/bin/tool|it's|\xe9\n|");
    EXPECT_EQ(answered("echo 'Request dismissed' >&2; exit 126\n"), "dismissed");
    EXPECT_EQ(answered("printf '\\nNot authorized.\\n\\nThis incident has been reported.\\n' >&2; exit 127\n"),
              "Not authorized.");
    EXPECT_EQ(answered("exit 127\n"), "");
    EXPECT_EQ(answered("kill -9 $$\n"), "");

    const ScopedVariable nowhere("PATH", (folder / "empty").string());
    EXPECT_THAT(answered("exit 0\n"), HasSubstr("“pkexec”, which asks for them, is not installed."));
}

} // namespace
} // namespace plovik

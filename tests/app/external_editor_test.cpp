// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/settings/Settings.h"
#include "app/shell/ExternalEditor.h"
#include "tests/app/EventWait.h"
#include "tests/support/TemporaryFolder.h"

#include <QTimer>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <gio/gio.h>

using namespace Qt::StringLiterals;

namespace plovik {
namespace {

using test::waitUntil;

/// Desktop entries of the test's own, whose program writes down what it was started with.
class ExternalEditorTest : public testing::Test {
protected:
    ExternalEditorTest()
    {
        std::filesystem::create_directories(applications);
        writeFile(program, "#!/bin/sh\nfor file in \"$@\"; do printf '%s\\0' \"$file\"; done > '" +
                               (folder / "partial").string() + "'\nprintf . >> '" + (folder / "starts").string() +
                               "'\nmv '" + (folder / "partial").string() + "' '" + (folder / "arguments").string() +
                               "'\n");
        std::filesystem::permissions(program, std::filesystem::perms::owner_all);
        wakeUp.start(10);
    }
    ~ExternalEditorTest() override
    {
        for (const auto& entry : entries)
            std::filesystem::remove(entry);
        Settings::shared().set(settings::externalEditorPath, QString());
    }

    std::filesystem::path install(const std::string& id, const std::string& name, const std::string& more = {})
    {
        entries.push_back(applications / (id + ".desktop"));
        writeFile(entries.back(), "[Desktop Entry]\nType=Application\nName=" + name + "\nExec=\"" + program.string() +
                                      "\" %F\n" + more);
        return entries.back();
    }
    static void choose(const std::filesystem::path& path)
    {
        Settings::shared().set(settings::externalEditorPath, QString::fromStdString(path.string()));
    }
    void open(const externalEditor::Files& files)
    {
        externalEditor::open(files, [this](const std::string& told) { problem = told; });
    }
    /// Waits until the desktop's library has seen the entries just written: a thread of its own watches the folder.
    static bool isDefault(const std::string& id, const std::string& type)
    {
        return waitUntil([&] {
            GAppInfo* found = g_app_info_get_default_for_type(type.c_str(), FALSE);
            const bool isIt = found != nullptr && id == g_app_info_get_id(found);
            g_clear_object(&found);
            return isIt;
        });
    }
    bool wasStarted() const { return std::filesystem::exists(folder / "arguments"); }

    TemporaryFolder folder;
    std::filesystem::path applications = std::filesystem::path(std::getenv("XDG_DATA_HOME")) / "applications";
    std::filesystem::path program = folder / "an editor.sh";
    std::vector<std::filesystem::path> entries;
    std::string problem;
    QTimer wakeUp; ///< the started program sends no event
};

TEST_F(ExternalEditorTest, ListsTheKnownEditorsByName)
{
    install("org.kde.kate", "Kate");
    install("code", "Code 10");
    install("codium", "code 9");
    install("jetbrains-phpstorm-5d9f", "PhpStorm");
    install("org.example.Paint", "A Paint Program");
    install("nvim", "Neovim", "TryExec=/nonexistent/nvim\n");
    install("gvim", "Hidden Vim", "Hidden=true\n");
    const auto linked = applications / "sublime_text.desktop";
    std::filesystem::create_symlink(install("sublime-text", "Sublime Text"), linked);
    entries.push_back(linked);

    std::vector<std::string> names;
    for (const auto& app : externalEditor::installed()) {
        if (app.path.parent_path() == applications)
            names.push_back(app.name);
    }
    EXPECT_EQ(names, (std::vector<std::string>{"code 9", "Code 10", "Kate", "PhpStorm", "Sublime Text"}));
}

TEST_F(ExternalEditorTest, NamesTheChosenEditorWhileItIsThere)
{
    const auto kate = install("org.kde.kate", "Kate");
    const QString path = QString::fromStdString(kate.string());
    EXPECT_EQ(externalEditor::menuTitle(path), u"Open in Kate"_s);
    EXPECT_EQ(externalEditor::menuTitle({}), u"Open in Default Editor"_s);
    std::filesystem::remove(kate);
    EXPECT_EQ(externalEditor::menuTitle(path), u"Open in Default Editor"_s);
    EXPECT_FALSE(externalEditor::app(QString::fromStdString(program.string())));
}

TEST_F(ExternalEditorTest, OpensAFileAtALineWhereTheEditorIsKnownToTakeOne)
{
    program = folder / "my editors/code";
    std::filesystem::create_directory(program.parent_path());
    std::filesystem::rename(folder / "an editor.sh", program);
    const auto file = folder / "a b";
    writeFile(file, "x");
    choose(install("code", "Code"));
    externalEditor::openAtLine(file, 12, 5, [this](const std::string& told) { problem = told; });
    ASSERT_TRUE(waitUntil([this] { return wasStarted(); }));
    EXPECT_EQ(readFile(folder / "arguments"), "--goto" + std::string(1, '\0') + file.string() + ":12:5" + '\0');

    // Another one opens the file.
    std::filesystem::remove(folder / "arguments");
    std::filesystem::rename(program, folder / "paint");
    program = folder / "paint";
    choose(install("org.example.Paint", "Paint"));
    externalEditor::openAtLine(file, 12, 5, [this](const std::string& told) { problem = told; });
    ASSERT_TRUE(waitUntil([this] { return wasStarted(); }));
    EXPECT_EQ(readFile(folder / "arguments"), file.string() + '\0');
    EXPECT_EQ(problem, "");

    using Arguments = std::vector<std::string>;
    EXPECT_EQ(editors::placeArguments("/x/bin/phpstorm.sh", "/f", {3, 0}),
              (Arguments{"--line", "3", "--column", "1", "/f"}));
    EXPECT_EQ(editors::placeArguments("gvim", "/f", {3, 4}), (Arguments{"+3", "/f"}));
}

TEST_F(ExternalEditorTest, OpensEveryFileOnceAndAllAtOnce)
{
    choose(install("org.kde.kate", "Kate"));
    const std::string first = (folder / "with space\nand line").string();
    const std::string second = (folder / "100% \"quoted\" 'ä'\xff").string();
    writeFile(first, "1");
    writeFile(second, "2");
    open({first, folder / "missing", second, first});
    ASSERT_TRUE(waitUntil([this] { return wasStarted() || !problem.empty(); })) << problem;
    EXPECT_EQ(readFile(folder / "arguments"), first + '\0' + second + '\0');
    EXPECT_EQ(readFile(folder / "starts"), ".");
}

TEST_F(ExternalEditorTest, TellsWhyAnEditorCouldNotBeStarted)
{
    choose(install("nvim", "Neovim", "Terminal=true\n"));
    const ScopedVariable noTerminal("PATH", folder.path().string());
    writeFile(folder / "file", "1");
    open({folder / "missing"});
    open({folder / "file"});
    ASSERT_TRUE(waitUntil([this] { return !problem.empty(); }));
    EXPECT_TRUE(problem.starts_with("“Neovim” could not be opened: ")) << problem;
}

TEST_F(ExternalEditorTest, FallsBackToTheDesktopsDefault)
{
    const auto kate = install("org.kde.kate", "Kate", "MimeType=text/plain;\n");
    choose(applications / "gone.desktop");
    writeFile(applications / "mimeapps.list", "[Default Applications]\ntext/plain=org.kde.kate.desktop\n");
    entries.push_back(applications / "mimeapps.list");
    writeFile(folder / "notes.txt", "some text\n");
    ASSERT_TRUE(isDefault("org.kde.kate.desktop", "text/plain"));
    open({folder / "notes.txt", folder / "missing.txt"});
    ASSERT_TRUE(waitUntil([this] { return wasStarted() || !problem.empty(); }));
    EXPECT_EQ(problem, "");
    EXPECT_EQ(readFile(folder / "arguments"), (folder / "notes.txt").string() + '\0');
}

TEST_F(ExternalEditorTest, ShowsAsTextWhatTheDesktopWouldRun)
{
    const auto runner = folder / "ran";
    writeFile(folder / "runner.sh", "#!/bin/sh\ntouch '" + runner.string() + "'\n");
    std::filesystem::permissions(folder / "runner.sh", std::filesystem::perms::owner_all);
    install("org.kde.kate", "Kate", "MimeType=text/plain;\n");
    entries.push_back(applications / "runner.desktop");
    writeFile(entries.back(),
              "[Desktop Entry]\nType=Application\nName=Runner\nExec=\"" + (folder / "runner.sh").string() + "\" %F\n");
    entries.push_back(applications / "mimeapps.list");
    std::string defaults = "[Default Applications]\ntext/plain=org.kde.kate.desktop\n";
    for (const std::string type :
         {"application/x-shellscript", "application/x-desktop", "application/x-executable", "application/octet-stream"})
        defaults += type + "=runner.desktop\n";
    writeFile(entries.back(), defaults);
    ASSERT_TRUE(isDefault("org.kde.kate.desktop", "text/plain"));
    ASSERT_TRUE(isDefault("runner.desktop", "application/octet-stream"));
    writeFile(folder / "script", "#!/bin/sh\ntouch '" + runner.string() + "'\n");
    writeFile(folder / "program", std::string("\x7f"
                                              "ELF\0\0",
                                              6));
    writeFile(folder / "marked", "plain\n");
    std::filesystem::permissions(folder / "marked", std::filesystem::perms::owner_all);
    writeFile(folder / "evil.desktop", "[Desktop Entry]\nType=Application\nExec=touch " + runner.string() + "\n");
    for (const char* name : {"script", "program", "marked", "evil.desktop"}) {
        std::filesystem::remove(folder / "arguments");
        open({folder / name});
        ASSERT_TRUE(waitUntil([this] { return wasStarted() || !problem.empty(); })) << name;
        EXPECT_EQ(problem, "");
        EXPECT_EQ(readFile(folder / "arguments"), (folder / name).string() + '\0');
    }
    EXPECT_FALSE(std::filesystem::exists(runner));
}

} // namespace
} // namespace plovik

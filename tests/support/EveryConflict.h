// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/support/TestRepository.h"

#include <filesystem>
#include <string>

/// Ten lines, of which one may be another.
inline std::string tenLines(const std::string& name, int changed = 0, const std::string& by = {})
{
    std::string text;
    for (int line = 1; line <= 10; ++line)
        text += name + ' ' + std::to_string(line) + (line == changed ? ' ' + by : std::string()) + '\n';
    return text;
}

inline void replaceLink(const TestRepository& repo, const char* name, const char* target)
{
    std::filesystem::remove(repo / name);
    std::filesystem::create_symlink(target, repo / name);
}

/// Makes two branches, main and topic, that conflict in every way. main is checked out; the commit on topic is called
/// “Fix the parser”.
inline void makeEveryConflict(TestRepository& repo)
{
    using namespace std::string_literals;
    for (const char* name : {"both", "goneLeft", "goneRight", "f", "renamedRight", "renamedLeft", "one", "two"})
        repo.write(name, tenLines(name));
    repo.write("bin", "\0\1"s).write("mode", "old\n");
    replaceLink(repo, "link", "old");
    repo.commit("base").git({"checkout", "-q", "-b", "topic"});
    repo.write("both", tenLines("both", 5, "right")).write("goneLeft", tenLines("goneLeft", 5, "right"));
    repo.remove("goneRight")
        .remove("renamedLeft")
        .write("bin", "\0\3"s)
        .write("dir", "file\n")
        .write("added", "right\n");
    repo.git({"mv", "f", "fRight"}).write("fRight", tenLines("f", 2, "right"));
    repo.git({"mv", "renamedRight", "newRight"}).write("newRight", tenLines("renamedRight", 2, "right"));
    repo.git({"mv", "one", "same"}).write("mode", "new\n");
    replaceLink(repo, "link", "right");
    replaceLink(repo, "typed", "x");
    repo.commit("Fix the parser").git({"checkout", "-q", "main"});
    repo.write("both", tenLines("both", 5, "left")).remove("goneLeft").remove("renamedRight");
    repo.write("goneRight", tenLines("goneRight", 5, "left")).write("bin", "\0\4"s).write("added", "left\n");
    repo.git({"mv", "f", "fLeft"}).write("fLeft", tenLines("f", 9, "left"));
    repo.git({"mv", "renamedLeft", "newLeft"}).write("newLeft", tenLines("renamedLeft", 2, "left"));
    repo.git({"mv", "two", "same"}).write("typed", "file\n").write("mode", "new\n");
    std::filesystem::create_directory(repo / "dir");
    repo.write("dir/inside", "1\n");
    replaceLink(repo, "link", "left");
    std::filesystem::permissions(repo / "mode", std::filesystem::perms::owner_exec, std::filesystem::perm_options::add);
    repo.commit("on main");
}

/// Runs git, which stops with conflicts.
inline void runIntoConflicts(const TestRepository& repo, const std::vector<std::string>& arguments)
{
    int status = 0;
    runPlainGit(repo.path(), arguments, status);
}

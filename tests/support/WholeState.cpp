// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/WholeState.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <vector>

namespace fs = std::filesystem;

std::string bytesAt(const fs::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::string wholeState(const TestRepository& repo)
{
    std::string state = repo.read({"ls-files", "-s", "-v", "-z"}) +
                        repo.read({"status", "--porcelain=v2", "-z", "-uall"}) + repo.read({"for-each-ref"}) +
                        bytesAt(repo / ".git/HEAD") + repo.read({"stash", "list"}) +
                        repo.read({"config", "--local", "--list", "-z"});
    for (const char* file : {"MERGE_HEAD", "CHERRY_PICK_HEAD", "REBASE_HEAD", "rebase-merge/done", "sequencer/todo",
                             "rebase-merge/git-rebase-todo", "BISECT_LOG"})
        state += bytesAt(repo / ".git" / file) + '|';
    std::vector<std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(repo.path())) {
        if (entry.path().string().find("/.git/") != std::string::npos || entry.is_directory())
            continue;
        files.push_back(entry.path().string() + '=' +
                        (entry.is_symlink() ? fs::read_symlink(entry).string() : bytesAt(entry.path())) +
                        std::to_string(static_cast<int>(entry.symlink_status().permissions())));
    }
    std::ranges::sort(files);
    for (const std::string& file : files)
        state += file + '\n';
    return state;
}

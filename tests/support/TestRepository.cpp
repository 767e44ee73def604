// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/TestRepository.h"

#include "GitKit/runner/GitExecutable.h"
#include "GitKit/runner/Process.h"

#include <stdexcept>
#include <unistd.h>

std::string runPlainGit(const std::filesystem::path& folder, const std::vector<std::string>& arguments, int& status,
                        std::string_view input, const std::vector<std::string>& environment)
{
    std::vector<std::string> variables = environment;
    for (char** entry = environ; *entry != nullptr; ++entry)
        variables.emplace_back(*entry);
    const auto output = gitkit::runProcess({.executable = gitkit::GitExecutable::path(),
                                            .arguments = arguments,
                                            .directory = folder,
                                            .environment = std::move(variables),
                                            .input = input});
    status = output.status;
    return output.stdoutBytes + output.stderrBytes;
}

TestRepository::TestRepository(const std::vector<std::string>& initArguments) : path_(folder_ / "repo")
{
    std::filesystem::create_directory(path_);
    std::vector<std::string> arguments{"init", "-q", "-b", "main"};
    arguments.insert(arguments.end(), initArguments.begin(), initArguments.end());
    git(arguments);
}

TestRepository& TestRepository::write(std::string_view name, std::string_view bytes)
{
    writeFile(path_ / name, bytes);
    return *this;
}

TestRepository& TestRepository::remove(std::string_view name)
{
    std::filesystem::remove_all(path_ / name);
    return *this;
}

TestRepository& TestRepository::commit(const std::string& message)
{
    ++minutes_;
    return git({"add", "-A"}).git({"commit", "-q", "--allow-empty", "--cleanup=verbatim", "-F", "-"}, message);
}

TestRepository& TestRepository::git(const std::vector<std::string>& arguments, std::string_view input)
{
    static_cast<void>(read(arguments, input));
    return *this;
}

std::string TestRepository::read(const std::vector<std::string>& arguments, std::string_view input) const
{
    const std::string date = std::to_string(1'600'000'000 + 60 * minutes_) + " +0000";
    int status = 0;
    std::string output =
        runPlainGit(path_, arguments, status, input, {"GIT_AUTHOR_DATE=" + date, "GIT_COMMITTER_DATE=" + date});
    if (status != 0)
        throw std::runtime_error("git " + (arguments.empty() ? std::string() : arguments.front()) + ": " + output);
    if (output.ends_with('\n'))
        output.pop_back();
    return output;
}

std::string TestRepository::storeCommit(std::string_view bytes) const
{
    return read({"hash-object", "-t", "commit", "-w", "--literally", "--stdin"}, bytes);
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/TemporaryFolder.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

TemporaryFolder::TemporaryFolder()
{
    std::string pattern = (std::filesystem::temp_directory_path() / "plovik-test-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr)
        throw std::runtime_error("no temporary folder");
    path_ = std::filesystem::canonical(pattern);
}

TemporaryFolder::~TemporaryFolder() { removeWithRights(path_); }

ScopedVariable::ScopedVariable(std::string name, const std::string& value) : name_(std::move(name))
{
    const char* previous = std::getenv(name_.c_str());
    existed_ = previous != nullptr;
    previous_ = existed_ ? previous : "";
    ::setenv(name_.c_str(), value.c_str(), 1);
}

ScopedVariable::~ScopedVariable()
{
    if (existed_)
        ::setenv(name_.c_str(), previous_.c_str(), 1);
    else
        ::unsetenv(name_.c_str());
}

void removeWithRights(const std::filesystem::path& folder)
{
    std::error_code ignored;
    // Tests take rights away from folders to see what happens; they come back first.
    for (auto entry = std::filesystem::recursive_directory_iterator(
             folder, std::filesystem::directory_options::skip_permission_denied, ignored);
         !ignored && entry != std::filesystem::recursive_directory_iterator(); entry.increment(ignored))
    {
        if (entry->is_directory(ignored) && !entry->is_symlink(ignored))
            std::filesystem::permissions(entry->path(), std::filesystem::perms::owner_all,
                                         std::filesystem::perm_options::add, ignored);
    }
    std::filesystem::remove_all(folder, ignored);
}

void writeFile(const std::filesystem::path& path, std::string_view bytes)
{
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << bytes;
}

std::string readFile(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/RepositoryFolder.h"

#include "GitKit/repository/Cloning.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/runner/GitError.h"
#include "cli/ShownName.h"

#include <QCoreApplication>

#include <string_view>
#include <system_error>

namespace plovik {

namespace {

namespace fs = std::filesystem;

struct FolderTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::CommandLine)
};

/// Returns what was typed. For ".", returns the path of the current folder if it still exists.
QString told(const std::string& name)
{
    std::error_code gone;
    const fs::path current = name == "." ? fs::current_path(gone) : fs::path(name);
    return QString::fromStdString(shownName(gone ? name : current.string()));
}

[[noreturn]] void refuse(const QString& sentence) { throw UnopenableFolder(sentence.toStdString()); }

fs::path folderOf(const std::string& name)
{
    std::error_code error;
    const fs::path path(name);
    const fs::file_status status = fs::status(path, error);
    if (fs::is_directory(status))
        return fs::canonical(path, error);
    // For a link to a file, the folder of the link counts.
    if (!fs::exists(fs::symlink_status(path, error)))
        return {};
    return fs::canonical(path.has_parent_path() ? path.parent_path() : fs::path("."), error);
}

/// Returns the first line of what git said, as a sentence.
QString reason(const std::exception& failure)
{
    const auto* const refusal = dynamic_cast<const gitkit::GitError*>(&failure);
    const std::string said = refusal ? refusal->message() : failure.what();
    std::string_view line = std::string_view(said).substr(0, said.find('\n'));
    if (line.starts_with("fatal: "))
        line.remove_prefix(std::string_view("fatal: ").size());
    std::string sentence = shownName(line);
    if (!sentence.ends_with('.'))
        sentence += '.';
    return QString::fromStdString(sentence);
}

[[noreturn]] void refuseFor(const std::string& name, const std::exception& failure)
{
    const gitkit::ErrorKind kind = gitkit::errorKindOf(failure);
    if (kind == gitkit::ErrorKind::notARepository)
        refuse(FolderTexts::tr("“%1” is not in a git repository.").arg(told(name)));
    if (kind == gitkit::ErrorKind::bareRepository)
        refuse(FolderTexts::tr("“%1” has no working tree: it is a folder of git's own, or a bare repository that "
                               "safe.bareRepository keeps git from using.")
                   .arg(told(name)));
    refuse(FolderTexts::tr("“%1” could not be opened: %2").arg(told(name), reason(failure)));
}

} // namespace

fs::path repositoryFolder(const std::string& name)
{
    fs::path folder = folderOf(name);
    if (folder.empty())
        refuse(FolderTexts::tr("“%1” does not exist or may not be entered.").arg(told(name)));
    try {
        gitkit::GitRepository::topLevel(folder);
    } catch (const std::exception& failure) {
        refuseFor(name, failure);
    }
    return folder;
}

fs::path folderForClone(const std::string& address, const std::string& name)
{
    const std::string chosen = name.empty() ? gitkit::folderNameOf(address) : name;
    if (chosen.empty())
        refuse(FolderTexts::tr("“%1” names no folder to clone into; name one after it.")
                   .arg(QString::fromStdString(shownName(address))));
    fs::path folder = fs::absolute(chosen).lexically_normal();
    std::error_code ignored;
    const fs::file_status status = fs::status(folder, ignored);
    if (fs::exists(status) && (!fs::is_directory(status) || !fs::is_empty(folder, ignored)))
        refuse(FolderTexts::tr("“%1” is not an empty folder.").arg(told(chosen)));
    return folder;
}

fs::path folderForInit(const std::string& name)
{
    std::error_code ignored;
    fs::path folder = fs::absolute(name).lexically_normal();
    if (!folder.has_filename() && folder.has_relative_path())
        folder = folder.parent_path();
    if (fs::exists(fs::symlink_status(folder / ".git", ignored)))
        refuse(FolderTexts::tr("“%1” is a repository already.").arg(told(name)));
    if (fs::exists(folder, ignored) && !fs::is_directory(folder, ignored))
        refuse(FolderTexts::tr("“%1” is a file.").arg(told(name)));
    return folder;
}

std::string addressFromAnywhere(const std::string& address)
{
    std::error_code ignored;
    const bool isHere = address.find("://") == std::string::npos && fs::exists(address, ignored);
    return isHere ? fs::absolute(address).lexically_normal().string() : address;
}

} // namespace plovik

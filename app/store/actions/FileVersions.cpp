// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/actions/FileVersions.h"

#include "GitKit/records/Commit.h"
#include "GitKit/repository/FileVersions.h"
#include "GitKit/repository/GitRepository.h"
#include "app/store/Changes.h"
#include "app/store/ShownText.h"
#include "app/store/Undoables.h"
#include "app/store/WindowState.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <QTemporaryDir>

#include <functional>
#include <memory>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace plovik::actions {

namespace {

struct VersionTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::FileVersions)
};

QString shownPath(const std::filesystem::path& path) { return QFile::decodeName(path.c_str()); }

void write(const std::filesystem::path& target, const std::string& bytes)
{
    QSaveFile file(shownPath(target));
    const bool isWritten = file.open(QIODevice::WriteOnly) &&
                           file.write(bytes.data(), static_cast<qint64>(bytes.size())) == std::ssize(bytes) &&
                           file.commit();
    if (!isWritten)
        throw std::runtime_error(VersionTexts::tr("%1 could not be written: %2")
                                     .arg(inQuotes(target.filename().native()), file.errorString())
                                     .toStdString());
}

/// Returns the folder for opened copies, which goes when the application ends.
std::filesystem::path openedFolder()
{
    static QTemporaryDir folder(QDir::tempPath() + u"/plovik-XXXXXX"_s);
    if (!folder.isValid())
        throw std::runtime_error(folder.errorString().toStdString());
    return QFile::encodeName(folder.path()).toStdString();
}

using Use = std::function<void(const std::string& bytes)>;

/// Reads the file's bytes and does something with them, unless the window has closed meanwhile.
QCoro::Task<> reading(Actors actors, gitkit::FileVersion version, Use use)
{
    std::optional<Failure> failure;
    try {
        const std::string bytes = co_await actors.git.read(&gitkit::fileBytes, version);
        use(bytes);
    } catch (const std::exception& thrown) {
        failure = failureOf(thrown);
    }
    if (failure)
        actors.window.report(*failure);
}

} // namespace

void takeFile(Actors actors, const std::string& revision, const std::string& path)
{
    const gitkit::FileVersion version{revision, path};
    actors.changes.run({.verb = Verb::takeFile,
                        .operation = [version](const gitkit::GitRepository& repo) { gitkit::takeFile(repo, version); },
                        .undo = undoable::takeFile(revision, path)});
}

void openVersion(Actors actors, const std::string& revision, const std::string& path)
{
    if (!actors.services.openInEditor)
        return;
    const std::string name =
        std::string(gitkit::shortHash(revision)) + '-' + std::filesystem::path(path).filename().string();
    launch(reading(actors, {revision, path}, [actors, name](const std::string& bytes) {
        const std::filesystem::path copy = openedFolder() / name;
        std::error_code ignored;
        std::filesystem::remove(copy, ignored);
        write(copy, bytes);
        QFile::setPermissions(shownPath(copy), QFile::ReadOwner);
        actors.services.openInEditor(
            {copy}, [&window = actors.window, alive = std::weak_ptr(actors.git.alive())](const std::string& problem) {
                if (!alive.expired())
                    window.report(failureOf(std::runtime_error(problem)));
            });
    }));
}

void saveVersion(Actors actors, const std::string& revision, const std::string& path,
                 const std::filesystem::path& target)
{
    launch(reading(actors, {revision, path}, [target](const std::string& bytes) { write(target, bytes); }));
}

} // namespace plovik::actions

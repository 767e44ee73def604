// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/patches/PatchEntries.h"

#include "app/platform/FileUri.h"
#include "app/store/ShownText.h"
#include "app/store/actions/Patches.h"
#include "app/ui/commands/Commands.h"
#include "app/ui/widgets/RowPainting.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QFile>
#include <QFileDialog>
#include <QGuiApplication>
#include <QMenu>
#include <QMimeData>
#include <QPointer>
#include <QUrl>

#include <functional>
#include <string>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

struct PatchMenuTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::PatchMenu)
};

std::filesystem::path pathFrom(const QString& name) { return QFile::encodeName(name).toStdString(); }

using Chosen = std::function<void(const std::filesystem::path&)>;

QFileDialog& openChooser(QWidget* window, const QString& title, const Chosen& chosen)
{
    auto* const dialog = new QFileDialog(window, title);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(dialog, &QFileDialog::fileSelected, dialog,
                     [chosen](const QString& name) { chosen(pathFrom(name)); });
    return *dialog;
}

QWidget* windowBehind(const QPointer<QWidget>& parent) { return parent ? parent->window() : nullptr; }

void chooseFileForPatch(RepositoryStore& store, const gitkit::Commit& commit, QWidget* window)
{
    QFileDialog& dialog =
        openChooser(window, PatchMenuTexts::tr("Save Patch"),
                    [&store, hash = commit.hash](const auto& file) { actions::savePatch(store.actors(), hash, file); });
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.selectFile(actions::patchFileName(commit));
    dialog.open();
}

void chooseFolderForPatches(RepositoryStore& store, const std::vector<std::string>& hashes, QWidget* window)
{
    QFileDialog& dialog =
        openChooser(window, PatchMenuTexts::tr("Save Patches into a Folder"),
                    [&store, hashes](const auto& folder) { actions::savePatches(store.actors(), hashes, folder); });
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly);
    dialog.open();
}

void chooseFileForArchive(RepositoryStore& store, const gitkit::Commit& commit, QWidget* window)
{
    const QString zip = PatchMenuTexts::tr("Zip archive (*.zip)");
    const QString tar = PatchMenuTexts::tr("Compressed tar archive (*.tar.gz)");
    const std::string name = store.root().filename().native() + '-' + std::string(gitkit::shortHash(commit.hash));
    const auto chosen = [&store, name, hash = commit.hash](const std::filesystem::path& file) {
        const bool isTar = file.native().ends_with(".gz") || file.native().ends_with(".tgz");
        actions::saveArchive(store.actors(), hash, isTar ? gitkit::ArchiveFormat::tarGz : gitkit::ArchiveFormat::zip,
                             name, file);
    };
    QFileDialog& dialog = openChooser(window, PatchMenuTexts::tr("Save Archive"), chosen);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setNameFilters({zip, tar});
    dialog.setDefaultSuffix(u"zip"_s);
    QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog, [&dialog, tar](const QString& filter) {
        dialog.setDefaultSuffix(filter == tar ? u"tar.gz"_s : u"zip"_s);
    });
    dialog.selectFile(QFile::decodeName((name + ".zip").c_str()));
    dialog.open();
}

} // namespace

void addPatchEntries(QMenu& menu, RepositoryStore& store, const std::vector<gitkit::Commit>& commits)
{
    menu.setToolTipsVisible(true);
    const QPointer<QWidget> parent = menu.parentWidget();
    const QString whyNot = actions::cannotMakePatch(commits);
    const auto add = [&](CommandId id, const QString& title, auto run) {
        QAction* const entry = markAs(id, menu.addAction(title, &menu, std::move(run)));
        entry->setEnabled(whyNot.isEmpty());
        entry->setToolTip(plainToolTip(whyNot));
    };
    if (commits.size() > 1) {
        std::vector<std::string> hashes; // the oldest first
        for (auto commit = commits.rbegin(); commit != commits.rend(); ++commit)
            hashes.push_back(commit->hash);
        add(CommandId::savePatch, PatchMenuTexts::tr("Save Patches…"),
            [&store, hashes, parent] { chooseFolderForPatches(store, hashes, windowBehind(parent)); });
        return;
    }
    const gitkit::Commit& commit = commits.front();
    add(CommandId::copyPatch, PatchMenuTexts::tr("Copy as Patch"), [&store, hash = commit.hash] {
        actions::copyPatch(store.actors(), hash,
                           [](const QString& patch) { QGuiApplication::clipboard()->setText(patch); });
    });
    add(CommandId::savePatch, PatchMenuTexts::tr("Save Patch…"),
        [&store, commit, parent] { chooseFileForPatch(store, commit, windowBehind(parent)); });
    markAs(CommandId::archiveCommit, menu.addAction(PatchMenuTexts::tr("Archive…"), &menu, [&store, commit, parent] {
        chooseFileForArchive(store, commit, windowBehind(parent));
    }));
}

void choosePatchToApply(RepositoryStore& store, QWidget& window)
{
    QFileDialog& dialog = openChooser(&window, PatchMenuTexts::tr("Apply Patch"),
                                      [&store](const auto& file) { actions::askToApply(store.actors(), file); });
    dialog.setFileMode(QFileDialog::ExistingFile);
    dialog.setNameFilters(
        {PatchMenuTexts::tr("Patches (*.patch *.diff *.mbox *.eml)"), PatchMenuTexts::tr("All files (*)")});
    dialog.open();
}

std::vector<std::filesystem::path> droppedPatches(const QMimeData& dropped)
{
    std::vector<std::filesystem::path> found;
    for (const QUrl& url : dropped.urls()) {
        const auto path = pathOfFileUri(url.toEncoded().toStdString());
        std::error_code unreadable;
        if (!path || !std::filesystem::is_regular_file(*path, unreadable))
            continue;
        for (const char* ending : {".patch", ".diff", ".mbox", ".eml"}) {
            if (path->extension() == ending)
                found.push_back(*path);
        }
    }
    return found;
}

} // namespace plovik

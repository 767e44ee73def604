// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/commit/CommitFileMenu.h"

#include "app/store/ShownText.h"
#include "app/store/actions/DesktopFiles.h"
#include "app/store/actions/FileVersions.h"
#include "app/ui/commands/Commands.h"
#include "app/ui/commands/OwnCommandEntries.h"
#include "app/ui/web/WebLinkEntries.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QFile>
#include <QFileDialog>
#include <QGuiApplication>
#include <QMenu>
#include <QPointer>

#include <sys/stat.h>

namespace plovik {

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(plovik::CommitFileMenu)
};

void askWhereToSave(RepositoryStore& store, const InspectedFile& version, QWidget* window)
{
    auto* const dialog = new QFileDialog(window, Texts::tr("Save This Version"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->selectFile(QFile::decodeName(std::filesystem::path(version.path).filename().c_str()));
    QObject::connect(dialog, &QFileDialog::fileSelected, dialog, [&store, version](const QString& target) {
        actions::saveVersion(store.actors(), *version.revision, version.path, QFile::encodeName(target).toStdString());
    });
    dialog->open();
}

/// Offers what can be done with the file as the commit has it.
void addVersion(QMenu& menu, RepositoryStore& store, const InspectedFile& version)
{
    const std::string revision = version.revision.value_or(std::string());
    markAs(CommandId::takeFile,
           addChange(menu, store, Verb::takeFile, Texts::tr("Take into the Working Copy"),
                     [&store, revision, path = version.path] { actions::takeFile(store.actors(), revision, path); }));
    markAs(CommandId::openVersion,
           menu.addAction(Texts::tr("Open This Version"), &menu, [&store, revision, path = version.path] {
               actions::openVersion(store.actors(), revision, path);
           }));
    markAs(CommandId::saveVersion, menu.addAction(Texts::tr("Save This Version As…"), &menu,
                                                  [&store, version, window = QPointer(menu.parentWidget())] {
                                                      askWhereToSave(store, version,
                                                                     window ? window->window() : nullptr);
                                                  }));
}

} // namespace

InspectedFile inspectedFile(const gitkit::CommitDetail& commit, const gitkit::CommitFile& file, InspectedFile::Tab tab)
{
    if (file.source)
        return {file.path, file.source, tab};
    const bool isGone = file.status == 'D' && !commit.parents.empty();
    return {file.path, isGone ? commit.parents.front() : commit.hash, tab};
}

bool isInWorkingTree(const RepositoryStore& store, const gitkit::CommitFile& file)
{
    struct stat found{};
    return ::lstat((store.root() / file.path).c_str(), &found) == 0;
}

QMenu* makeCommitFileMenu(RepositoryStore& store, const gitkit::CommitDetail& commit, const gitkit::CommitFile& file,
                          const QString& openTitle, QWidget* parent)
{
    auto* const menu = new QMenu(parent);
    menu->setToolTipsVisible(true);
    const gitkit::FileChange inTree{.path = file.path, .originalPath = {}};
    const auto inspect = [&store](const InspectedFile& inspected) {
        return [&store, inspected] { store.window().inspect(inspected); };
    };
    const auto add = [menu](CommandId id, const QString& title, auto run) {
        return markAs(id, menu->addAction(title, menu, std::move(run)));
    };
    QAction* const open =
        add(CommandId::openInEditor, openTitle, [&store, inTree] { actions::openInEditor(store.actors(), {inTree}); });
    add(CommandId::showBlame, Texts::tr("Show Blame"), inspect(inspectedFile(commit, file, InspectedFile::Tab::blame)));
    add(CommandId::showFileHistory, Texts::tr("Show File History"),
        inspect(inspectedFile(commit, file, InspectedFile::Tab::history)));
    menu->addSeparator();
    addVersion(*menu, store, inspectedFile(commit, file, InspectedFile::Tab::blame));
    menu->addSeparator();
    add(CommandId::copyPath, Texts::tr("Copy Path"),
        [path = exactText(file.path)] { QGuiApplication::clipboard()->setText(path); });
    const InspectedFile version = inspectedFile(commit, file, InspectedFile::Tab::blame);
    addWebLinks(*menu, store, {.commit = version.revision.value_or(std::string()), .path = version.path});
    QAction* const reveal = add(CommandId::revealFile, Texts::tr("Reveal in File Browser"),
                                [&store, inTree] { actions::reveal(store.actors(), {inTree}); });
    if (!isInWorkingTree(store, file)) {
        for (QAction* const action : {open, reveal}) {
            action->setEnabled(false);
            action->setToolTip(Texts::tr("The file is not in the working tree now."));
        }
    }
    addOwnCommands(*menu, store,
                   {.place = ownCommands::Entry::Place::file, .commit = commit.hash, .files = {file.path}});
    return menu;
}

} // namespace plovik

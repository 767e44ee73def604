// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/commit/CommitFileMenu.h"

#include "app/store/ShownText.h"
#include "app/store/actions/DesktopFiles.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QMenu>

#include <sys/stat.h>

namespace plovik {

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(plovik::CommitFileMenu)
};

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
    QAction* const open =
        menu->addAction(openTitle, menu, [&store, inTree] { actions::openInEditor(store.actors(), {inTree}); });
    menu->addAction(Texts::tr("Show Blame"), menu, inspect(inspectedFile(commit, file, InspectedFile::Tab::blame)));
    menu->addAction(Texts::tr("Show File History"), menu,
                    inspect(inspectedFile(commit, file, InspectedFile::Tab::history)));
    menu->addSeparator();
    menu->addAction(Texts::tr("Copy Path"), menu,
                    [path = exactText(file.path)] { QGuiApplication::clipboard()->setText(path); });
    QAction* const reveal = menu->addAction(Texts::tr("Reveal in File Browser"), menu,
                                            [&store, inTree] { actions::reveal(store.actors(), {inTree}); });
    if (!isInWorkingTree(store, file)) {
        for (QAction* const action : {open, reveal}) {
            action->setEnabled(false);
            action->setToolTip(Texts::tr("The file is not in the working tree now."));
        }
    }
    return menu;
}

} // namespace plovik

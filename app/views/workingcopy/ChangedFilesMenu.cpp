#include "app/views/workingcopy/ChangedFilesMenu.h"

#include "app/store/ShownText.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMenu>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

bool isGone(const gitkit::FileChange& file)
{
    return file.worktree == 'D' || (file.index == 'D' && file.worktree == '.' && !file.isConflicted);
}

void copyPaths(const RepositoryStore::Files& files)
{
    QStringList paths;
    for (const gitkit::FileChange& file : files)
        paths.append(shownText(file.path));
    QGuiApplication::clipboard()->setText(paths.join(u'\n'));
}

} // namespace

QMenu* makeChangedFilesMenu(RepositoryStore& store, const RepositoryStore::Files& files, const QString& openTitle,
                            QWidget* parent)
{
    auto* menu = new QMenu(parent);
    const auto stateIs = [&store](gitkit::StageState state) {
        return [&store, state](const gitkit::FileChange& file) { return store.shownStageState(file) == state; };
    };
    if (!std::ranges::all_of(files, stateIs(gitkit::StageState::full)))
        menu->addAction(u"Stage"_s, menu, [&store, files] { store.stage(files); });
    if (!std::ranges::all_of(files, stateIs(gitkit::StageState::none)))
        menu->addAction(u"Unstage"_s, menu, [&store, files] { store.unstage(files); });
    menu->addAction(RepositoryStore::discardTitle(files), menu, [&store, files] { store.confirmDiscard(files); });
    menu->addSeparator();
    auto* open = menu->addAction(openTitle, menu, [&store, files] { store.openInEditor(files); });
    auto* reveal = menu->addAction(u"Reveal in File Browser"_s, menu, [&store, files] { store.reveal(files); });
    for (QAction* action : {open, reveal})
        action->setEnabled(!std::ranges::all_of(files, isGone));
    menu->addAction(u"Copy Path"_s, menu, [files] { copyPaths(files); });
    return menu;
}

} // namespace plovik

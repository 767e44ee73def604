// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/shell/RepositoryWindow.h"

#include "GitKit/repository/Folders.h"
#include "app/platform/DetachedProgram.h"
#include "app/platform/FileBrowser.h"
#include "app/platform/Terminal.h"
#include "app/platform/Trash.h"
#include "app/services/askpass/Askpass.h"
#include "app/services/watcher/RepositoryWatcher.h"
#include "app/settings/CacheFolder.h"
#include "app/settings/Settings.h"
#include "app/settings/SettledQuestions.h"
#include "app/settings/TrustedPrograms.h"
#include "app/shell/CommitMessages.h"
#include "app/shell/ExternalEditor.h"
#include "app/shell/WindowFrames.h"
#include "app/store/ShownText.h"
#include "app/store/actions/Patches.h"
#include "app/ui/commands/MainMenu.h"
#include "app/ui/patches/PatchEntries.h"
#include "app/ui/welcome/DroppedRepositories.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/window/RepositoryView.h"

#include <QCloseEvent>
#include <QDropEvent>
#include <QMenuBar>

#include <utility>

namespace plovik {

namespace {

constexpr QSize smallestSize{640, 480};
// The frame is stored only after this pause, so that dragging an edge does not write the settings at every step.
constexpr std::chrono::milliseconds frameSettles{300};
/// How often a repository is read that cannot be watched as a whole.
constexpr std::chrono::seconds checkPause{30};

StoreServices desktopServices(MenuTarget& application)
{
    StoreServices services;
    services.openWindow = [&application](const std::filesystem::path& folder) { application.openFolder(folder); };
    services.reveal = &revealFiles;
    services.openInEditor = &externalEditor::open;
    services.openAtLine = &externalEditor::openAtLine;
    services.startGit = &startGitDetached;
    services.openTerminal = &openTerminal;
    services.trash = &moveToTrash;
    services.messages = commitMessageWriter();
    services.signIn = askpass::opener();
    services.cacheFolder = cacheFolder();
    services.keepsIndexes = [] { return Settings::shared().value(settings::keepsIndexes); };
    services.trust = {.trusted = &trustedPrograms::trusted,
                      .keptOff = &trustedPrograms::keptOff,
                      .trust = &trustedPrograms::trust,
                      .keepOff = &trustedPrograms::keepOff};
    services.questions = {.isSettled = &settledQuestions::contains, .settle = &settledQuestions::add};
    return services;
}

} // namespace

RepositoryWindow::RepositoryWindow(std::filesystem::path root, SidebarItem section, MenuTarget& menuTarget,
                                   std::function<void()> onClose)
    : application_(menuTarget),
      store_(std::make_unique<RepositoryStore>(std::move(root), Worker::pool(), desktopServices(menuTarget))),
      onClose_(std::move(onClose))
{
    // Started first, so that git reads while the views are made. Only the selected section's views are made now.
    const bool hasTree = !gitkit::isBare(this->root());
    store_->window().select(hasTree || section != SidebarItem::workingCopy() ? std::move(section)
                                                                             : SidebarItem::history());
    store_->snapshot().refresh(RefreshScope::full);
    view_ = new RepositoryView(*store_, this);
    setAttribute(Qt::WA_DeleteOnClose);
    setAcceptDrops(true);
    setMinimumSize(smallestSize);
    setCentralWidget(view_);
    view_->setEditorTitle([] { return plainMenuText(externalEditor::menuTitle()); });
    view_->setApplication(menuTarget);
    mainMenu::build(*menuBar(), menuTarget, *store_);
    windowFrames::restore(*this, this->root());

    frameTimer_.setSingleShot(true);
    connect(&frameTimer_, &QTimer::timeout, this, [this] { windowFrames::remember(*this, this->root()); });

    connect(&checkTimer_, &QTimer::timeout, this, [this] {
        if (isVisible() && !isMinimized())
            store_->snapshot().refresh(RefreshScope::full);
    });

    notifiers_.push_back(store_->snapshot().status.addNotifier([this] {
        updateTitle();
        showWarnings();
    }));
    updateTitle();

    // Watching begins once the first read is on the screen, so that it does not slow that down.
    connect(this, &RepositoryWindow::settled, this, &RepositoryWindow::startWatching);
    notifiers_.push_back(store_->snapshot().hasLoaded.addNotifier(
        // A timer fires after the window has been painted; a queued call would run before.
        [this] { QTimer::singleShot(0, this, &RepositoryWindow::settled); }));
}

RepositoryWindow::~RepositoryWindow()
{
    notifiers_.clear();
    // The views refer to the store, so they are deleted before it.
    delete takeCentralWidget();
}

void RepositoryWindow::show(SidebarItem item) { store_->window().select(std::move(item)); }

void RepositoryWindow::updateTitle()
{
    const QString name = shownText(root().filename().native());
    const QString folder = store_->changes().isReadOnly() ? tr("%1 (bare)", "folder").arg(name) : name;
    const QString head = store_->snapshot().headDescription();
    setWindowTitle(plainTitle(head.isEmpty() ? folder : tr("%1 — %2", "folder, branch").arg(folder, head)));
}

void RepositoryWindow::showNotice(const QString& notice) { view_->showNotice(notice); }

void RepositoryWindow::showWarnings()
{
    const std::string& warnings = store_->snapshot().status.value().warnings;
    if (!warnings.empty() && warnings != shownWarnings_)
        showNotice(QString::fromStdString(warnings));
    shownWarnings_ = warnings;
}

void RepositoryWindow::startWatching()
{
    WatcherCallbacks callbacks;
    callbacks.onChange = [this](bool gitDirectoryChanged) {
        store_->snapshot().refresh(gitDirectoryChanged ? RefreshScope::full : RefreshScope::status);
    };
    // Changes between the first read and this moment have not been noticed by anyone.
    callbacks.onWatching = [this] { store_->snapshot().refresh(RefreshScope::full); };
    callbacks.onLimitReached = [this] {
        checkTimer_.start(checkPause);
        view_->showNotice(
            tr("This repository has more folders than the system lets Plovik watch. Changes in some of them show when "
               "this window comes to the front, and now and then."));
    };
    watcher_ = std::make_unique<RepositoryWatcher>(root(), WatcherGit::installed(), std::move(callbacks));
}

void RepositoryWindow::rememberFrameSoon()
{
    if (isVisible())
        frameTimer_.start(frameSettles);
}

void RepositoryWindow::changeEvent(QEvent* event)
{
    // Finds changes that the watcher has missed. Before the first load has ended, no second one is needed.
    if (event->type() == QEvent::ActivationChange && isActiveWindow() && store_->snapshot().hasLoaded.value())
        store_->snapshot().refresh(RefreshScope::full);
    QMainWindow::changeEvent(event);
}

void RepositoryWindow::resizeEvent(QResizeEvent* event)
{
    rememberFrameSoon();
    QMainWindow::resizeEvent(event);
}

void RepositoryWindow::moveEvent(QMoveEvent* event)
{
    rememberFrameSoon();
    QMainWindow::moveEvent(event);
}

void RepositoryWindow::dragEnterEvent(QDragEnterEvent* event)
{
    if (!droppedRepositories(*event->mimeData()).isEmpty() || !droppedPatches(*event->mimeData()).empty())
        event->acceptProposedAction();
}

void RepositoryWindow::dropEvent(QDropEvent* event)
{
    const DroppedRepositories dropped = droppedRepositories(*event->mimeData());
    event->acceptProposedAction();
    for (const std::filesystem::path& folder : dropped.folders)
        application_.openFolder(folder);
    if (!dropped.address.isEmpty())
        application_.cloneFrom(dropped.address);
    // One at a time is asked about.
    if (const auto patches = droppedPatches(*event->mimeData()); !patches.empty())
        actions::askToApply(store_->actors(), patches.front());
}

void RepositoryWindow::closeEvent(QCloseEvent* event)
{
    if (frameTimer_.isActive())
        windowFrames::remember(*this, root());
    frameTimer_.stop();
    if (watcher_)
        watcher_->stop();
    if (const std::function<void()> closed = std::exchange(onClose_, nullptr))
        closed();
    QMainWindow::closeEvent(event);
}

} // namespace plovik

#include "moc_RepositoryWindow.cpp"

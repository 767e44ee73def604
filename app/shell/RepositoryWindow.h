// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"

#include <QMainWindow>
#include <QPropertyNotifier>
#include <QTimer>

#include <filesystem>
#include <functional>
#include <memory>
#include <vector>

namespace plovik {

class MenuTarget;
class RepositoryView;
class RepositoryWatcher;

/// The window of one repository. Owns its store and its watcher. A folder that is dropped on it is opened in its own
/// window, and the address of a repository cloned. When it is closed, it calls `onClose` and deletes
/// itself. Main thread.
class RepositoryWindow : public QMainWindow {
    Q_OBJECT

public:
    /// Opens with `section` selected. `menuTarget` outlives the window.
    RepositoryWindow(std::filesystem::path root, SidebarItem section, MenuTarget& menuTarget,
                     std::function<void()> onClose);
    ~RepositoryWindow() override;

    RepositoryStore& store() { return *store_; }
    const std::filesystem::path& root() const { return store_->root(); }

    /// Shows another section of the repository.
    void show(SidebarItem item);
    using QMainWindow::show;
    /// Shows a notice that the user can dismiss and that blocks nothing.
    void showNotice(const QString& notice);

Q_SIGNALS:
    /// Emitted when the first read is on the screen, so that less urgent work can begin.
    void settled();

protected:
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void updateTitle();
    void showWarnings();
    void startWatching();
    void rememberFrameSoon();

    MenuTarget& application_;
    std::unique_ptr<RepositoryStore> store_;
    std::function<void()> onClose_;
    RepositoryView* view_ = nullptr;
    std::unique_ptr<RepositoryWatcher> watcher_;
    QTimer frameTimer_;
    QTimer checkTimer_;         ///< runs where not everything is watched
    std::string shownWarnings_; ///< git's last warnings, which are shown once
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik

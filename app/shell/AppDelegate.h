// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/await/Await.h"
#include "app/platform/ColorScheme.h"
#include "app/shell/LaunchOptions.h"
#include "app/ui/commands/MainMenu.h"

#include <QObject>
#include <QPointer>

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

class QWidget;

namespace plovik {

class RepositoryWindow;
class UpdateDialog;
class SettingsView;

/// Owns every window and decides what opens: one window a repository, the welcome window when there is none, and the
/// settings. Lives as long as the application, on the main thread.
class AppDelegate : public QObject, public MenuTarget {
    Q_OBJECT

public:
    explicit AppDelegate(LaunchOptions options);
    ~AppDelegate() override;

    /// Something to tell in the first window that opens.
    void setNotice(const QString& notice) { notice_ = notice; }

    /// Opens what the command line names, or the welcome window unless an open request arrives first.
    void finishLaunching();

    /// Another launch, or the desktop, asks for folders.
    void open(const std::vector<std::filesystem::path>& folders);
    /// Another launch without folders: brings a window.
    void reopen();
    /// One of launchActions; another name brings a window.
    void carryOut(std::string_view action);

    /// Shows the repository that holds `folder`, or says why there is none.
    QCoro::Task<> openRepository(std::filesystem::path folder);
    /// Shows the window of a working tree's top level, a new one when there is none.
    void showRepository(const std::filesystem::path& root);
    void showWelcome();

    void openDocument() override;
    void showSettings() override;
    void hideAll() override;
    void showAll() override;
    void quit() override;
    void about() override;
    void checkForUpdates() override;
    void bringAllToFront() override;

Q_SIGNALS:
    /// A repository window was created.
    void windowOpened(RepositoryWindow* window);
    /// The window that the command line asks for by name is shown.
    void askedWindowShown(QWidget* window);

private:
    RepositoryWindow* currentWindow() const;
    std::vector<QWidget*> windows() const;
    void applyAppearance();
    void followSettings();
    void addKeys(QWidget& window);
    void reportUnopenable(const std::filesystem::path& folder, const std::exception& failure);

    LaunchOptions options_;
    QString notice_;
    ColorScheme colorScheme_;
    std::map<std::string, RepositoryWindow*> repositoryWindows_; ///< by top level, as bytes
    QPointer<QWidget> welcomeWindow_;
    QPointer<UpdateDialog> updateDialog_;
    QPointer<SettingsView> settingsWindow_;
    bool receivedOpenRequest_ = false;
    AliveToken alive_ = std::make_shared<const std::monostate>();
};

} // namespace plovik

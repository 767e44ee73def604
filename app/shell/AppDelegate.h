// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/await/Await.h"
#include "app/platform/ColorScheme.h"
#include "app/services/instance/SingleInstance.h"
#include "app/shell/Beginnings.h"
#include "app/shell/LaunchOptions.h"
#include "app/ui/commands/MainMenu.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

class QWidget;

namespace plovik {

class AboutDialog;
class RepositoryWindow;
class UpdateDialog;
class SettingsView;

/// Owns every window and decides which one opens: one window for each repository, the welcome window when none is open,
/// and the settings. Lives as long as the application. Main thread.
class AppDelegate : public QObject, public MenuTarget {
    Q_OBJECT

public:
    explicit AppDelegate(LaunchOptions options);
    ~AppDelegate() override;

    /// Sets a notice that the first repository window shows.
    void setNotice(const QString& notice) { notice_ = notice; }

    /// Opens what the command line asks for. Without such a wish, shows the welcome window unless a request to open a
    /// folder arrives first.
    void finishLaunching();

    /// Opens the repositories of folders, for another launch or for the desktop. Without folders, brings a window to the
    /// front.
    void open(const std::vector<std::filesystem::path>& folders);
    /// Brings a window to the front, for another launch without folders.
    void reopen();
    /// Notices that a window has gone.
    bool eventFilter(QObject* watched, QEvent* event) override;
    /// Carries out one of launchActions. Any other name brings a window to the front.
    void carryOut(const LaunchAction& action);

    /// Shows the repository that contains `folder`, or an alert that says why it cannot be opened.
    QCoro::Task<> openRepository(std::filesystem::path folder, ActivationToken token = {});
    /// Shows the window of the working tree whose top level is `root`, and makes it when there is none.
    void showRepository(const std::filesystem::path& root);
    void showWelcome();

    void openDocument() override;
    void cloneRepository() override;
    void cloneFrom(const QString& address) override;
    void newRepository() override;
    void openFolder(const std::filesystem::path& folder) override;
    std::vector<std::filesystem::path> openRoots() const override;
    void showSettings() override;
    void quit() override;
    /// Closes all windows, which ends what they read, and emits finished() once the changes have ended, or a few seconds
    /// later.
    void endSoon();
    void about() override;
    void checkForUpdates() override;
    void bringAllToFront() override;

Q_SIGNALS:
    /// Emitted when a repository window was created.
    void windowOpened(RepositoryWindow* window);
    /// Emitted before an alert opens, which may be the first window of all.
    void alertOpening();
    /// Emitted when the window that the command line names is shown.
    void askedWindowShown(QWidget* window);
    /// Emitted when the last window has gone, and what ran in it has ended; with the program's exit status.
    void finished(int status);

private:
    RepositoryWindow* currentWindow() const;
    std::vector<QWidget*> windows() const;
    void applyAppearance();
    void followSettings();
    void addKeys(QWidget& window);
    void finishIfUnused();
    void showBeginning(QWidget& dialog);
    QCoro::Task<> showMade(std::filesystem::path folder, QString problem);
    void reportUnopenable(const std::filesystem::path& folder, const std::exception& failure);

    LaunchOptions options_;
    bool isDesktopPlain_; ///< the desktop's palette is black and white
    int status_ = 0;
    QString notice_;
    ColorScheme colorScheme_;
    std::map<std::string, RepositoryWindow*> repositoryWindows_; ///< by the bytes of their top level
    QPointer<QWidget> welcomeWindow_;
    QPointer<UpdateDialog> updateDialog_;
    QPointer<AboutDialog> aboutDialog_;
    QPointer<SettingsView> settingsWindow_;
    bool receivedOpenRequest_ = false;
    std::shared_ptr<const std::monostate> opening_ =
        std::make_shared<const std::monostate>(); ///< shared while it goes on
    QTimer finishSoon_;
    AliveToken alive_ = std::make_shared<const std::monostate>();
    Beginnings beginnings_; ///< the last, since windows that go are noticed by the others
};

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/shell/AppDelegate.h"

#include "GitKit/repository/CommitGraphCache.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/runner/GitError.h"
#include "app/settings/CacheFolder.h"
#include "app/settings/RecentRepositories.h"
#include "app/settings/Settings.h"
#include "app/shell/AISettings.h"
#include "app/shell/AboutDialog.h"
#include "app/shell/CommandLineSettings.h"
#include "app/shell/ExternalEditor.h"
#include "app/shell/RepositoryWindow.h"
#include "app/shell/TopLevelLookup.h"
#include "app/shell/UpdateDialog.h"
#include "app/shell/WindowFrames.h"
#include "app/store/ShownText.h"
#include "app/store/StoreServices.h"
#include "app/ui/commands/Commands.h"
#include "app/ui/dialogs/MessageDialog.h"
#include "app/ui/settings/SettingsView.h"
#include "app/ui/welcome/WelcomeView.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/Theme.h"

#include <QApplication>
#include <QFileDialog>
#include <QShortcut>
#include <QStyle>
#include <QTimer>

#include <algorithm>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

// Requests to open a folder that arrive within this time after the launch replace the welcome window.
constexpr std::chrono::milliseconds welcomeDelay{300};

QString nameOf(const std::filesystem::path& folder)
{
    const std::string name =
        folder.has_filename() ? folder.filename().string() : folder.parent_path().filename().string();
    return shownText(name.empty() ? folder.string() : name);
}

void bringToFront(QWidget* window)
{
    if (window->isMinimized())
        window->showNormal();
    window->show();
    if (QGuiApplication::platformName() != u"offscreen"_s)
        window->raise();
    window->activateWindow();
}

/// Puts a window that was not shown yet over the middle of another one, or of the screen: not every window manager
/// places windows.
void centre(QWidget& window, const QWidget* over)
{
    if (window.isVisible())
        return;
    window.ensurePolished();
    if (!window.testAttribute(Qt::WA_Resized))
        window.adjustSize();
    const QRect available = (over ? over : &window)->screen()->availableGeometry();
    const QPoint middle = over ? over->geometry().center() : available.center();
    window.setGeometry(
        windowFrames::fitted({middle - QPoint(window.width() / 2, window.height() / 2), window.size()}, available));
}

IndexChoices indexChoices()
{
    const std::filesystem::path folder = StoreServices{.cacheFolder = cacheFolder()}.indexFolder();
    return {.bytes = [folder] { return static_cast<qint64>(gitkit::commitGraphBytes(folder)); },
            .clear = [folder] { gitkit::removeCommitGraphs(folder); }};
}

/// Returns the desktop's scheme, or that of the toolkit's palette when the desktop names none.
AppAppearance desktopAppearance(ColorScheme::Preference preference)
{
    if (preference != ColorScheme::Preference::Unknown)
        return preference == ColorScheme::Preference::Dark ? AppAppearance::dark : AppAppearance::light;
    const QColor background = QApplication::style()->standardPalette().color(QPalette::Window);
    return background.lightness() < 128 ? AppAppearance::dark : AppAppearance::light;
}

/// Returns whether the desktop's palette is black and white, as the high contrast themes of some desktops have it.
/// Called before the application has a palette of its own.
bool isDesktopPlain()
{
    const QPalette palette = QApplication::palette();
    return Theme::contrast(palette.color(QPalette::Window), palette.color(QPalette::WindowText)) > 20.5;
}

} // namespace

AppDelegate::AppDelegate(LaunchOptions options) : options_(std::move(options)), isDesktopPlain_(isDesktopPlain())
{
    QApplication::setQuitOnLastWindowClosed(false);
    connect(&beginnings_, &Beginnings::made, this,
            [this](const std::filesystem::path& folder, const QString& problem) { launch(showMade(folder, problem)); });
    connect(&colorScheme_, &ColorScheme::changed, this, &AppDelegate::applyAppearance);
    followSettings();
    applyAppearance();
    finishSoon_.setSingleShot(true);
    connect(&finishSoon_, &QTimer::timeout, this, &AppDelegate::finishIfUnused);
    qApp->installEventFilter(this);
}

AppDelegate::~AppDelegate()
{
    // Iterates over a copy, because a window that is closed is removed from the map.
    const std::vector<QWidget*> open = windows();
    for (QWidget* window : open)
        delete window;
}

void AppDelegate::finishLaunching()
{
    if (options_.window != LaunchWindow::fitting) {
        options_.window == LaunchWindow::settings ? showSettings() : showWelcome();
        QWidget* const asked = options_.window == LaunchWindow::settings ? settingsWindow_ : welcomeWindow_;
        Q_EMIT askedWindowShown(asked);
        return;
    }
    if (!options_.action.name.empty()) {
        carryOut(options_.action);
        return;
    }
    if (!options_.folders.empty()) {
        open(options_.folders);
        return;
    }
    QTimer::singleShot(welcomeDelay, this, [this] {
        if (!receivedOpenRequest_ && repositoryWindows_.empty())
            showWelcome();
    });
}

void AppDelegate::open(const std::vector<std::filesystem::path>& folders)
{
    if (folders.empty()) {
        reopen(); // nothing of what was asked for lies on this machine
        return;
    }
    receivedOpenRequest_ = true;
    const ActivationToken token = ActivationToken::current();
    for (const std::filesystem::path& folder : folders)
        launch(openRepository(folder, token));
}

void AppDelegate::reopen()
{
    const std::vector<QWidget*> all = windows();
    const auto visible = std::ranges::find_if(all, &QWidget::isVisible);
    if (visible == all.end())
        showWelcome();
    else
        bringToFront(currentWindow() ? static_cast<QWidget*>(currentWindow()) : *visible);
}

void AppDelegate::carryOut(const LaunchAction& action)
{
    const std::filesystem::path folder = action.folders.empty() ? std::filesystem::path() : action.folders.front();
    const auto start = folder.empty() ? Beginnings::Start::asked : Beginnings::Start::atOnce;
    const auto recent = action.name == launchActions::recentRepository ? recentRepositories::all()
                                                                       : std::vector<std::filesystem::path>();
    if (!recent.empty())
        open({recent.front()});
    else if (action.name == launchActions::openRepository || action.name == launchActions::recentRepository)
        showWelcome();
    else if (action.name == launchActions::cloneRepository)
        showBeginning(beginnings_.clone({exactText(action.argument), folder}, start));
    else if (action.name == launchActions::newRepository)
        showBeginning(beginnings_.create(folder, start));
    else
        reopen();
}

void AppDelegate::showBeginning(QWidget& dialog)
{
    receivedOpenRequest_ = true;
    QWidget* const over = currentWindow() ? static_cast<QWidget*>(currentWindow()) : welcomeWindow_.data();
    centre(dialog, over && over->isVisible() ? over : nullptr);
    bringToFront(&dialog);
}

void AppDelegate::cloneRepository() { cloneFrom({}); }

void AppDelegate::cloneFrom(const QString& address)
{
    showBeginning(beginnings_.clone({.address = address}, Beginnings::Start::asked));
}

void AppDelegate::newRepository() { showBeginning(beginnings_.create({}, Beginnings::Start::asked)); }

/// Shows a repository that was just made. What could not be brought blocks nothing.
QCoro::Task<> AppDelegate::showMade(std::filesystem::path folder, QString problem)
{
    if (!problem.isEmpty())
        notice_ = tr("The repository was cloned, but not all of it: %1").arg(problem);
    co_await openRepository(folder);
}

QCoro::Task<> AppDelegate::openRepository(std::filesystem::path folder, ActivationToken token)
{
    const auto opening = opening_;
    try {
        const std::filesystem::path root = co_await BlockingCall<std::filesystem::path>(
            Worker::pool(), Worker::Lane::shortRead, alive_, std::bind_front(&topLevelOf, folder));
        token.lend([this, &root] { showRepository(root); });
    } catch (const std::exception& failure) {
        token.lend([&] { reportUnopenable(folder, failure); });
    }
}

/// Qt's own lastWindowClosed() does not count dialogs: one that is closed after the last window would leave a process
/// without any.
bool AppDelegate::eventFilter(QObject* watched, QEvent* event)
{
    // Another window may open at once, as when the welcome window gives way.
    if (event->type() == QEvent::Hide && watched->isWidgetType() && static_cast<QWidget*>(watched)->isWindow())
        finishSoon_.start(0);
    return QObject::eventFilter(watched, event);
}

void AppDelegate::finishIfUnused()
{
    constexpr std::chrono::milliseconds pause{200};
    const auto isShown = [](const QWidget* window) { return window->isVisible(); };
    if (opening_.use_count() > 1 || std::ranges::any_of(QApplication::topLevelWidgets(), isShown))
        return;
    if (GitAccess::areChangesUnderWay())
        finishSoon_.start(pause);
    else
        Q_EMIT finished(status_);
}

void AppDelegate::reportUnopenable(const std::filesystem::path& folder, const std::exception& failure)
{
    QString title = tr("“%1” is not a git repository").arg(nameOf(folder));
    QString detail = shownText(folder.string());
    const gitkit::ErrorKind kind = gitkit::errorKindOf(failure);
    if (kind == gitkit::ErrorKind::bareRepository) {
        title = tr("“%1” has no working tree").arg(nameOf(folder));
        detail +=
            u"\n\n"_s + tr("It is a folder of git's own, or a bare repository that safe.bareRepository keeps git from "
                           "using.");
    } else if (kind != gitkit::ErrorKind::notARepository) {
        title = tr("“%1” could not be opened").arg(nameOf(folder));
        detail += u"\n\n"_s + QString::fromUtf8(failure.what());
    }
    if (!options_.screenshot.empty()) {
        // No window opens, so no picture can be taken.
        std::fprintf(stderr, "plovik-app: %s: %s\n", qUtf8Printable(title), qUtf8Printable(detail));
        status_ = 1;
        Q_EMIT finished(status_);
        return;
    }
    Q_EMIT alertOpening();
    auto* const box = new MessageDialog(title, detail, currentWindow());
    connect(box, &QDialog::finished, this, [this] {
        if (repositoryWindows_.empty())
            showWelcome();
    });
    box->open();
}

void AppDelegate::showRepository(const std::filesystem::path& root)
{
    if (welcomeWindow_)
        welcomeWindow_->close();
    if (options_.screenshot.empty())
        recentRepositories::add(root);
    if (const auto found = repositoryWindows_.find(root.string()); found != repositoryWindows_.end()) {
        bringToFront(found->second);
        return;
    }

    auto* const window = new RepositoryWindow(root, options_.show.value_or(SidebarItem::workingCopy()), *this,
                                              [this, key = root.string()] { repositoryWindows_.erase(key); });
    repositoryWindows_.emplace(root.string(), window);
    // The size of a screenshot must not depend on the screen.
    if (options_.size.isValid() || !options_.screenshot.empty())
        window->resize(options_.size.isValid() ? options_.size : windowFrames::ordinarySize);
    if (!notice_.isEmpty())
        window->showNotice(std::exchange(notice_, QString()));
    Q_EMIT windowOpened(window);
    bringToFront(window);
}

void AppDelegate::showWelcome()
{
    if (!welcomeWindow_) {
        auto* const view =
            new WelcomeView({.open = [this](const std::filesystem::path& root) { launch(openRepository(root)); },
                             .browse = [this] { openDocument(); },
                             .clone = [this](const QString& address) { cloneFrom(address); },
                             .create = [this] { newRepository(); }});
        view->setWindowTitle(tr("Plovik"));
        addKeys(*view);
        welcomeWindow_ = view;
    }
    centre(*welcomeWindow_, nullptr);
    bringToFront(welcomeWindow_);
}

void AppDelegate::showSettings()
{
    if (!settingsWindow_) {
        const EditorChoices editors{&externalEditor::installed, &externalEditor::app,
                                    &externalEditor::chooseApplication};
        settingsWindow_ = new SettingsView(settingsTabs(editors, commandLineCommands(), aiChoices(), indexChoices()));
        settingsWindow_->showTab(options_.settingsTab);
        addKeys(*settingsWindow_);
    }
    centre(*settingsWindow_, currentWindow());
    bringToFront(settingsWindow_);
}

/// Adds the shortcuts of the application's menu to a window without a menu bar.
void AppDelegate::addKeys(QWidget& window)
{
    for (const CommandId id :
         {CommandId::openRepository, CommandId::cloneRepository, CommandId::showSettings, CommandId::quit})
    {
        const Command& offered = command(id);
        connect(new QShortcut(offered.shortcut(), &window), &QShortcut::activated, this,
                [this, &offered] { offered.run(*this); });
    }
}

void AppDelegate::openFolder(const std::filesystem::path& folder) { launch(openRepository(folder)); }

std::vector<std::filesystem::path> AppDelegate::openRoots() const
{
    std::vector<std::filesystem::path> roots;
    for (const auto& [key, window] : repositoryWindows_)
        roots.push_back(window->root());
    return roots;
}

RepositoryWindow* AppDelegate::currentWindow() const
{
    // A dialog counts as the window that it belongs to.
    for (QWidget* front = QApplication::activeWindow(); front; front = front->parentWidget()) {
        for (const auto& [key, window] : repositoryWindows_) {
            if (window == front)
                return window;
        }
    }
    return nullptr;
}

std::vector<QWidget*> AppDelegate::windows() const
{
    std::vector<QWidget*> all;
    for (const auto& [key, window] : repositoryWindows_)
        all.push_back(window);
    for (QWidget* const window : {welcomeWindow_.data(), static_cast<QWidget*>(settingsWindow_)}) {
        if (window)
            all.push_back(window);
    }
    return all;
}

void AppDelegate::followSettings()
{
    connect(&Settings::shared(), &Settings::changed, this, [this](const QString& key) {
        if (key != QLatin1String(settings::appearance.key))
            return;
        options_.appearance.reset(); // the newer choice replaces the one of the command line
        applyAppearance();
    });
}

void AppDelegate::applyAppearance()
{
    AppAppearance wanted = options_.appearance.value_or(storedAppearance());
    if (wanted == AppAppearance::system)
        wanted = desktopAppearance(colorScheme_.preference());
    std::optional<QColor> accent;
    if (const auto& named = colorScheme_.accent())
        accent = QColor::fromRgbF((*named)[0], (*named)[1], (*named)[2]);
    Theme::apply(Theme::of({.isDark = wanted == AppAppearance::dark,
                            .isHighContrast = colorScheme_.wantsHighContrast() || isDesktopPlain_,
                            .accent = accent}),
                 *qApp);
}

void AppDelegate::openDocument()
{
    auto* const panel = new QFileDialog(currentWindow(), tr("Choose a git repository (any folder inside it works)"));
    panel->setAttribute(Qt::WA_DeleteOnClose);
    panel->setFileMode(QFileDialog::Directory);
    panel->setOption(QFileDialog::ShowDirsOnly);
    panel->setLabelText(QFileDialog::Accept, tr("Open"));
    connect(panel, &QFileDialog::fileSelected, this,
            [this](const QString& folder) { launch(openRepository(QFile::encodeName(folder).toStdString())); });
    panel->open();
}

void AppDelegate::quit()
{
    // A clone that is cancelled removes what it has begun.
    const bool waits = beginnings_.isAnyRunning();
    QApplication::closeAllWindows();
    if (waits)
        finishIfUnused();
    else
        QApplication::quit();
}

void AppDelegate::endSoon()
{
    constexpr std::chrono::seconds patience{5};
    QTimer::singleShot(patience, this, [this] { Q_EMIT finished(status_); });
    QApplication::closeAllWindows();
    finishIfUnused();
}

void AppDelegate::about()
{
    if (!aboutDialog_)
        aboutDialog_ = new AboutDialog(currentWindow());
    centre(*aboutDialog_, currentWindow());
    bringToFront(aboutDialog_);
}

void AppDelegate::checkForUpdates()
{
    if (!updateDialog_)
        updateDialog_ = new UpdateDialog(UpdateSource::built(), currentWindow());
    centre(*updateDialog_, currentWindow());
    bringToFront(updateDialog_);
}

void AppDelegate::bringAllToFront()
{
    QWidget* const active = QApplication::activeWindow();
    for (QWidget* window : windows()) {
        if (window->isVisible() && window != active)
            window->raise();
    }
    if (active)
        active->raise();
}

} // namespace plovik

#include "moc_AppDelegate.cpp"

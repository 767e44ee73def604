// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/runner/Process.h"
#include "app/platform/EndRequest.h"
#include "app/platform/Fonts.h"
#include "app/platform/Memory.h"
#include "app/services/instance/SingleInstance.h"
#include "app/services/loginshell/LoginShell.h"
#include "app/shell/AppDelegate.h"
#include "app/shell/LaunchOptions.h"
#include "app/shell/RepositoryWindow.h"
#include "app/shell/Screenshot.h"
#include "app/shell/TopLevelLookup.h"
#include "app/translations/Translations.h"

#include <QApplication>
#include <QIcon>

#include <cstdio>
#include <cstdlib>
#include <span>

using namespace Qt::StringLiterals;

namespace {

/// Sets the icon for desktops that do not find it by the application's id: on X11, or when the application is not
/// installed.
void setWindowIcon()
{
    QIcon icon;
    for (const int size : {16, 24, 32, 48, 64, 128})
        icon.addFile(u":/icons/%1.png"_s.arg(size), QSize(size, size));
    QApplication::setWindowIcon(icon);
}

/// Prints the answer to a command line that starts no application, and returns its exit status. The user's language
/// needs an application, but no display.
int answer(std::span<char* const> arguments, char** argv)
{
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    int ownArgument = 1;
    const QCoreApplication application(ownArgument, argv);
    plovik::installTranslations();
    const auto answer = std::get<plovik::LaunchAnswer>(plovik::parseLaunchOptions(arguments));
    std::fputs(answer.text.c_str(), answer.status == 0 ? stdout : stderr);
    return answer.status;
}

/// Runs the application until it quits, and returns its exit status.
int runApplication(QApplication& application, plovik::LaunchOptions options)
{
    using namespace plovik;
    const std::filesystem::path screenshot = options.screenshot;
    const bool opensRepository = !options.folders.empty();
    SingleInstance instance;
    if (screenshot.empty() &&
        (options.action.name.empty() ? instance.handOver(options.folders) : instance.handOverAction(options.action)))
        return 0;

    if (screenshot.empty())
        loginShell::beginReadingSearchPath();
    AppDelegate delegate(std::move(options));
    // Reading an icon loads all image plugins, so it happens after a repository is on the screen.
    if (opensRepository) {
        QObject::connect(&delegate, &AppDelegate::windowOpened, &delegate, [](const RepositoryWindow* window) {
            if (QApplication::windowIcon().isNull())
                QObject::connect(window, &RepositoryWindow::settled, window, &setWindowIcon);
        });
        QObject::connect(&delegate, &AppDelegate::alertOpening, &delegate, [] {
            if (QApplication::windowIcon().isNull())
                setWindowIcon();
        });
    } else {
        setWindowIcon();
    }
    delegate.setNotice(instance.problem());
    if (screenshot.empty()) {
        instance.listen({.open = [&delegate](const auto& folders) { delegate.open(folders); },
                         .activate = [&delegate] { delegate.reopen(); },
                         .action = [&delegate](const LaunchAction& action) { delegate.carryOut(action); }});
    } else {
        QObject::connect(&delegate, &AppDelegate::windowOpened, &delegate,
                         [&](RepositoryWindow* window) { new Screenshot(*window, screenshot, &delegate); });
        QObject::connect(&delegate, &AppDelegate::askedWindowShown, &delegate,
                         [&](QWidget* window) { new Screenshot(*window, screenshot, &delegate); });
    }
    // Queued, because a failure may be known before the event loop runs.
    QObject::connect(
        &delegate, &AppDelegate::finished, &application, [](int status) { QApplication::exit(status); },
        Qt::QueuedConnection);
    bool isAskedToEnd = false;
    onEndRequest([&] {
        isAskedToEnd = true;
        delegate.endSoon();
    });
    delegate.finishLaunching();
    const int status = application.exec();
    if (isAskedToEnd)
        gitkit::endAllPrograms();
    return status;
}

} // namespace

int main(int argc, char** argv)
{
    plovik::shareMemoryBetweenThreads();
    const std::span<char* const> arguments(argv + 1, argv + argc);
    auto parsed = plovik::parseLaunchOptions(arguments);
    if (std::holds_alternative<plovik::LaunchAnswer>(parsed))
        return answer(arguments, argv);
    auto& options = std::get<plovik::LaunchOptions>(parsed);
    if (!options.screenshot.empty())
        qputenv("QT_QPA_PLATFORM", "offscreen");

    plovik::beginReadingFonts();
    if (!options.folders.empty())
        plovik::beginTopLevelLookup(options.folders.front());

    // Qt gets no arguments, because all have been read already.
    int ownArgument = 1;
    QApplication application(ownArgument, argv);
    plovik::installTranslations();
    QApplication::setApplicationName(u"Plovik"_s);
    QApplication::setDesktopFileName(u"app.plovik.Plovik"_s);
    QApplication::setApplicationVersion(QLatin1String(PLOVIK_VERSION));

    const int status = runApplication(application, std::move(options));
    std::fflush(nullptr);
    // Ends without waiting for threads, since these may be waiting for a git process.
    std::_Exit(status);
}

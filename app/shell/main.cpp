// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/Memory.h"
#include "app/services/instance/SingleInstance.h"
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

namespace {

/// For desktops that do not find the icon by the application's id: X11, and an application that is not installed.
void setWindowIcon()
{
    QIcon icon;
    for (const int size : {16, 24, 32, 48, 64, 128})
        icon.addFile(QStringLiteral(":/icons/%1.png").arg(size), QSize(size, size));
    QApplication::setWindowIcon(icon);
}

/// The application proper: returns when it was quit.
int runApplication(QApplication& application, plovik::LaunchOptions options)
{
    using namespace plovik;
    const std::filesystem::path screenshot = options.screenshot;
    const bool opensRepository = !options.folders.empty();
    SingleInstance instance;
    if (screenshot.empty() &&
        (options.action.empty() ? instance.handOver(options.folders) : instance.handOverAction(options.action)))
        return 0;

    AppDelegate delegate(std::move(options));
    // Reading an icon loads all plugins for pictures, which no repository waits for.
    if (opensRepository) {
        QObject::connect(&delegate, &AppDelegate::windowOpened, &delegate, [](const RepositoryWindow* window) {
            if (QApplication::windowIcon().isNull())
                QObject::connect(window, &RepositoryWindow::settled, window, &setWindowIcon);
        });
    } else {
        setWindowIcon();
    }
    delegate.setNotice(instance.problem());
    if (screenshot.empty()) {
        instance.listen({.open = [&delegate](const auto& folders) { delegate.open(folders); },
                         .activate = [&delegate] { delegate.reopen(); },
                         .action = [&delegate](const std::string& name) { delegate.carryOut(name); }});
    } else {
        QObject::connect(&delegate, &AppDelegate::windowOpened, &delegate,
                         [&](RepositoryWindow* window) { new Screenshot(*window, screenshot, &delegate); });
        QObject::connect(&delegate, &AppDelegate::askedWindowShown, &delegate,
                         [&](QWidget* window) { new Screenshot(*window, screenshot, &delegate); });
    }
    delegate.finishLaunching();
    return application.exec();
}

} // namespace

int main(int argc, char** argv)
{
    plovik::shareMemoryBetweenThreads();
    const std::span<char* const> arguments(argv + 1, argv + argc);
    auto parsed = plovik::parseLaunchOptions(arguments);
    if (const auto* const answer = std::get_if<plovik::LaunchAnswer>(&parsed)) {
        std::fputs(answer->text.c_str(), answer->status == 0 ? stdout : stderr);
        return answer->status;
    }
    auto& options = std::get<plovik::LaunchOptions>(parsed);
    if (!options.screenshot.empty())
        qputenv("QT_QPA_PLATFORM", "offscreen");

    if (!options.folders.empty())
        plovik::beginTopLevelLookup(options.folders.front());

    // Qt takes its own arguments out of the list; the rest has been read.
    int ownArgument = 1;
    QApplication application(ownArgument, argv);
    plovik::installTranslations();
    QApplication::setApplicationName(QStringLiteral("Plovik"));
    QApplication::setDesktopFileName(QStringLiteral("app.plovik.Plovik"));
    QApplication::setApplicationVersion(QStringLiteral(PLOVIK_VERSION));

    const int status = runApplication(application, std::move(options));
    std::fflush(nullptr);
    // Quitting waits for no git process, and so for no thread that waits for one.
    std::_Exit(status);
}

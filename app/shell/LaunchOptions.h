// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/services/instance/SingleInstance.h"
#include "app/settings/AppAppearance.h"
#include "app/store/SidebarItem.h"

#include <QSize>
#include <QString>
#include <QStringList>

#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace plovik {

/// The names of the actions: the first two are the desktop entry's, the others the command line tool's.
namespace launchActions {
inline constexpr std::string_view openRepository = "open-repository";
inline constexpr std::string_view recentRepository = "recent-repository";
inline constexpr std::string_view cloneRepository = "clone-repository";
inline constexpr std::string_view newRepository = "new-repository";
} // namespace launchActions

/// The window to begin with. `fitting` stands for a repository's window, or the welcome window when no repository is
/// named.
enum class LaunchWindow { fitting, welcome, settings };

/// What the command line asks of the application.
struct LaunchOptions {
    std::vector<std::filesystem::path> folders; ///< absolute
    std::optional<SidebarItem> show;            ///< the section that the windows open with
    LaunchWindow window = LaunchWindow::fitting;
    QString settingsTab; ///< the title of the first shown tab of the settings; empty for the default
    std::optional<AppAppearance> appearance; ///< replaces the stored one for this run
    LaunchAction action;                     ///< what is done instead of opening folders
    std::filesystem::path screenshot;        ///< a picture of the first window is written here; empty for none
    QSize size;                              ///< of the window; invalid for the remembered one
};

/// The answer to a command line that starts no application: what to print, and the exit status.
struct LaunchAnswer {
    std::string text;
    int status = 0;
};

/// Reads the arguments after the program's name. Folders are taken relative to the current one. No application is
/// needed, but without one an answer is in English.
std::variant<LaunchOptions, LaunchAnswer> parseLaunchOptions(std::span<char* const> arguments);

} // namespace plovik

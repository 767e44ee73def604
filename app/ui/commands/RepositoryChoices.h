// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <filesystem>

class QMenu;

namespace plovik {

class MenuTarget;

/// Fills a menu with the recent repositories that have no window, the latest first. Main thread.
void addRecentRepositories(QMenu& menu, MenuTarget& target);

/// Returns the name of a repository's folder.
QString repositoryName(const std::filesystem::path& root);
/// Returns a path with "~" for the user's own folder.
QString shortenedPath(const std::filesystem::path& path);

} // namespace plovik

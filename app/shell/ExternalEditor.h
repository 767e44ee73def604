// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/platform/Editors.h"

#include <QString>

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

class QWidget;

/// Opens files of the working tree in the application that the user chose in the settings, or in the desktop's default
/// for each. Main thread.
namespace plovik::externalEditor {

using App = editors::Application;

/// Returns the known editors that are installed, sorted by their shown names.
std::vector<App> installed();

/// Returns the application at a path; nullopt for an empty path and for an application that is gone.
std::optional<App> app(const QString& path);

/// Returns the title of the command that opens files with the application at `path`.
QString menuTitle(const QString& path);
/// Returns the title for the user's choice.
QString menuTitle();

/// Lets the user pick any application; `chosen` is called with it unless the user cancels. Returns at once.
void chooseApplication(QWidget* parent, std::function<void(App)> chosen);

using Files = std::vector<std::filesystem::path>; ///< absolute
using Failed = std::function<void(std::string problem)>;

/// Opens those of `files` that exist, each once and in their order. An application that the user chose gets all of them
/// in one request. Returns at once; `failed` is called on the main thread with a sentence for the user.
void open(const Files& files, const Failed& failed);
/// Opens a file at a line, counted from 1, and a column, or 0 where none is known. An application that cannot be told a line
/// opens the file.
void openAtLine(const std::filesystem::path& file, int line, int column, const Failed& failed);

} // namespace plovik::externalEditor

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Trash.h"
#include "app/platform/SignIn.h"
#include "app/store/MessageWriter.h"

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace plovik {

/// What the store needs of the desktop; the shell gives it to the store. All but `trash` are called on the main thread;
/// `failed` is called there too, with a sentence for the user.
struct StoreServices {
    using Files = std::vector<std::filesystem::path>; ///< absolute
    using Failed = std::function<void(std::string problem)>;

    /// Selects files in the desktop's file browser.
    std::function<void(const Files& files, Failed failed)> reveal = {};
    /// Opens files in the editor that the user chose.
    std::function<void(const Files& files, Failed failed)> openInEditor = {};
    /// Moves a file to the Trash; called on the worker's threads.
    gitkit::Trash trash = {};
    /// Writes commit messages, where there is something that does.
    MessageWriter messages = {};
    /// Where there is none, what git starts asks as the application's environment says.
    OpenSignIn signIn = {};
};

} // namespace plovik

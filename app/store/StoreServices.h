// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Trash.h"
#include "app/platform/SignIn.h"
#include "app/store/MessageWriter.h"
#include "app/store/QuestionMemory.h"

#include <QString>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace plovik {

/// Remembers by a repository's root which programs of its configuration the user trusts, and which are to be kept off
/// without a question. Its functions may be empty.
struct TrustMemory {
    using Root = std::filesystem::path;
    /// Return the fingerprint that was remembered last; an empty text when there is none.
    std::function<QString(const Root& root)> trusted = {};
    std::function<QString(const Root& root)> keptOff = {};
    std::function<void(const Root& root, const QString& fingerprint)> trust = {};
    std::function<void(const Root& root, const QString& fingerprint)> keepOff = {};
};

/// The services of the desktop that the store uses; the shell provides them. All but `trash` are called on the main
/// thread. `failed` is called on the main thread with a sentence for the user.
struct StoreServices {
    using Files = std::vector<std::filesystem::path>; ///< absolute
    using Failed = std::function<void(std::string problem)>;

    /// Selects files in the desktop's file browser.
    std::function<void(const Files& files, Failed failed)> reveal = {};
    /// Opens files in the editor that the user chose.
    std::function<void(const Files& files, Failed failed)> openInEditor = {};
    /// Opens a file in that editor at a line, counted from 1, and a column, or 0 where none is known. An editor that cannot
    /// be told a line opens the file.
    std::function<void(const std::filesystem::path& file, int line, int column, Failed failed)> openAtLine = {};
    /// Starts git in a folder for a program of its own. Paths among the arguments are taken literally.
    std::function<void(const std::vector<std::string>& arguments, const std::filesystem::path& folder, Failed failed)>
        startGit = {};
    /// Brings the window of a working tree to the front, and makes it where there is none.
    std::function<void(const std::filesystem::path& folder)> openWindow = {};
    /// Opens a terminal in a folder.
    std::function<void(const std::filesystem::path& folder, Failed failed)> openTerminal = {};
    /// Moves a file to the Trash. Called on the worker's threads.
    gitkit::Trash trash = {};
    /// Writes commit messages. Its functions may be empty.
    MessageWriter messages = {};
    /// Opens the line on which git's programs ask the user. When empty, they ask as the environment tells them.
    OpenSignIn signIn = {};
    TrustMemory trust = {};
    QuestionMemory questions = {};
    /// The application's folder for what can be made again. When empty, nothing of that is kept.
    std::filesystem::path cacheFolder = {};
    /// Returns whether an index of the history may be kept there. When empty, none is.
    std::function<bool()> keepsIndexes = {};

    /// Returns where the indexes of all repositories are; empty when none are kept.
    std::filesystem::path indexFolder() const
    {
        return cacheFolder.empty() ? cacheFolder : cacheFolder / "commit-graphs";
    }
};

} // namespace plovik

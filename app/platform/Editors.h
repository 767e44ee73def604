// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <vector>

/// The applications of this machine that edit files.
namespace plovik::editors {

/// An application as the desktop knows it.
struct Application {
    std::filesystem::path path; ///< the file that describes it to the desktop, absolute
    std::string name;           ///< as the desktop shows it, in the user's language

    bool operator==(const Application&) const = default;
};

/// Returns the application that the file at `path` describes; nullopt when it is gone or cannot be started. Any thread.
std::optional<Application> at(const std::filesystem::path& path);

/// Returns the known editors that are installed, each once, in the order of our table. Any thread.
std::vector<Application> known();

/// Returns the folder where the desktop keeps most applications.
std::filesystem::path applicationsFolder();
/// Returns a file chooser's pattern for the files that describe applications: "*.suffix".
std::string applicationPattern();

using Files = std::span<const std::filesystem::path>; ///< absolute; they exist

/// Opens all files with an application at once. Throws std::runtime_error with a sentence for the user. Blocks while
/// the application is being started; any thread.
void open(const Application& application, Files files);

/// A place in a file, counted from 1; column 0 where none is known.
struct Place {
    int line = 1;
    int column = 0;
};

/// Returns what follows a program's name so that it opens a file at a place; nullopt for a program that is not known to take
/// one. `program` is its path or its name.
std::optional<std::vector<std::string>> placeArguments(const std::filesystem::path& program,
                                                       const std::filesystem::path& file, Place place);

/// Opens a file with an application at a place, or anywhere with one that cannot be told a place. Throws and blocks as open()
/// does; any thread.
void openAt(const Application& application, const std::filesystem::path& file, Place place);

/// Opens each file with the desktop's default for it, or for text if it might be run; one that fails keeps none of the
/// others from opening. Throws std::runtime_error with a sentence for the first that failed. Blocks; any thread.
void openWithDefaults(Files files);

} // namespace plovik::editors

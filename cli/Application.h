// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <span>
#include <stdexcept>

namespace plovik {

/// The application cannot be started; what() is a sentence for the user.
struct LaunchFailure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Starts the application that is installed beside this program and leaves it to itself: in a session of its own, in
/// the root folder, with nothing of this terminal. It hands `folders`, absolute ones, to the application that already
/// runs, if one does. Returns as soon as it is started; throws LaunchFailure.
void openInApplication(std::span<const std::filesystem::path> folders);

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <span>
#include <stdexcept>

namespace plovik {

/// Thrown when the application cannot be started. what() is a sentence for the user.
struct LaunchFailure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Starts the application that is installed beside this program, in a session of its own, in the root folder and
/// without this terminal. A running application gets `folders`, which must be absolute. Returns as soon as the
/// application is started; throws LaunchFailure.
void openInApplication(std::span<const std::filesystem::path> folders);

} // namespace plovik

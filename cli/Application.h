// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <span>
#include <stdexcept>
#include <string>

namespace plovik {

/// Thrown when the application cannot be started. what() is a sentence for the user.
struct LaunchFailure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// What the application does instead of opening folders.
struct ApplicationAction {
    std::string name = {}; ///< empty for none
    std::string argument = {};
};

/// Starts the application that is installed beside this program, in a session of its own, in the root folder and
/// without this terminal. A running application gets `folders`, which must be absolute, and the action. Returns as soon
/// as the application is started; throws LaunchFailure.
void openInApplication(std::span<const std::filesystem::path> folders, const ApplicationAction& action = {});

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/platform/SignIn.h"

#include <filesystem>

namespace plovik::askpass {

/// Returns the path of the program that git and ssh start to ask: beside this program, or where it is installed. Empty
/// when it is missing.
std::filesystem::path program();

/// Lets the processes that one store's actions start ask in its window, unless the user's environment names a program
/// for asking. Git and ssh start `program`, which asks over a socket that only this user can reach, with a token that
/// only one action's processes know. The first action makes the socket; it is removed with the result. Main thread.
OpenSignIn opener(std::filesystem::path program = askpass::program());

} // namespace plovik::askpass

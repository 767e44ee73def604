// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/platform/SignIn.h"

#include <filesystem>

namespace plovik::askpass {

/// The program beside this one, or where it is installed, that git and ssh start to ask; empty when it is missing.
std::filesystem::path program();

/// Lets what the actions of one store start ask in its window, where the user's environment names no program of its
/// own: git and ssh start `program`, which asks over a socket that only this user reaches, with a token that only one
/// action's processes know. The socket is made by the first action and goes with the result. Main thread.
OpenSignIn opener(std::filesystem::path program = askpass::program());

} // namespace plovik::askpass

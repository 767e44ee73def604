// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>

/// Makes a test program independent of the machine, the user and the session that it is started in.
///
/// The first object of every main. The constructor replaces the process by the same program, started anew with an
/// environment that is built from nothing: of the old one only a short list is let through. Home, temporary and XDG
/// folders, locale, time zone, fonts and git's configuration are the same everywhere, and there is neither a display
/// nor a session bus. In the program that is started anew the constructor only returns, and the destructor removes the
/// folders. A test that needs a variable sets it itself.
class OwnEnvironment {
public:
    /// `arguments` are those of main. Throws std::runtime_error or std::filesystem::filesystem_error when no folder can
    /// be made or the program cannot be started again.
    explicit OwnEnvironment(char** arguments);
    ~OwnEnvironment();
    OwnEnvironment(const OwnEnvironment&) = delete;
    OwnEnvironment& operator=(const OwnEnvironment&) = delete;

private:
    std::filesystem::path folder_;
};

/// Returns whether the machine knows the user of this process by name. Neither dbus-daemon nor sshd serves another.
bool userHasAccount();

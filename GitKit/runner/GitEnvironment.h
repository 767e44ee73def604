// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace gitkit {

/// What is done to one variable of the environment that git inherits.
struct VariablePin {
    enum class Action { set, remove, removePrefix };

    std::string_view name;
    Action action = Action::remove;
    std::string_view value; ///< for Action::set
    std::string_view reason;
};

/// One git setting that every run fixes, whatever the user's and the repository's configuration say.
struct ConfigurationPin {
    std::string_view key;
    std::string_view value;
    std::string_view reason;
};

/// The one table of what every run of git is given beside its arguments. The user's configuration, environment and
/// locale decide what git does, never how what it prints is to be read.
std::span<const VariablePin> variablePins();
std::span<const ConfigurationPin> configurationPins();

/// The environment of a git process, as NAME=value, made from the application's own.
///
/// `inherited` is what the application was started with; `overrides` come last and win. `fileSystemMonitor` is the
/// value that the user's own configuration gives core.fsmonitor: that setting names a program which git runs at every
/// status, and a repository that came from somewhere else must not choose it.
std::vector<std::string> gitEnvironment(std::span<const std::string_view> inherited,
                                        std::span<const std::pair<std::string, std::string>> overrides,
                                        const std::optional<std::string>& fileSystemMonitor);

/// The application's own environment as it is now.
std::vector<std::string_view> applicationEnvironment();

} // namespace gitkit

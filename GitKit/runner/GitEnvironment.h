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

/// The tables of what every run of git gets besides its arguments. The user's configuration, environment and locale may
/// change what git does, but never the format of what it prints.
std::span<const VariablePin> variablePins();
std::span<const ConfigurationPin> configurationPins();

/// The environment of a git process, as NAME=value, made from the application's own.
///
/// `inherited` is the application's environment; `overrides` come last and win. `fileSystemMonitor` is the value of
/// core.fsmonitor in the user's own configuration. It names a program that git runs at every status, so a repository
/// from somewhere else must not choose it. `more` are settings that this run gets besides the table's.
std::vector<std::string> gitEnvironment(std::span<const std::string_view> inherited,
                                        std::span<const std::pair<std::string, std::string>> overrides,
                                        const std::optional<std::string>& fileSystemMonitor,
                                        std::span<const std::pair<std::string, std::string>> more = {});

/// Returns the application's current environment, with the search path that git's programs get. Any thread.
std::vector<std::string> applicationEnvironment();

/// Sets where git and the programs that it starts look for programs, in place of the application's own PATH. Any thread.
void setSearchPath(std::string path);

/// Changes one variable of the application, or removes it if `value` is empty. Any thread: no run of git reads the
/// environment meanwhile.
void setApplicationVariable(const std::string& name, const std::string& value);

} // namespace gitkit

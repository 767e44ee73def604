// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <vector>

/// The commands that the user has written for the menus. They are in the user's settings: no repository has a say in them. Main
/// thread.
namespace plovik::ownCommands {

struct Entry {
    /// Whose menu it stands in, and what its line is run for.
    enum class Place { repository, commit, branch, file };

    QString title;
    QString line; ///< for the shell
    Place place = Place::repository;
    QString keys = {}; ///< as QKeySequence writes them portably; may be empty
    bool asksFirst = false;

    bool operator==(const Entry&) const = default;
    /// Returns whether it can stand in a menu.
    bool isComplete() const { return !title.trimmed().isEmpty() && !line.trimmed().isEmpty(); }
};

/// Returns those that are stored, in the user's order.
std::vector<Entry> all();
void store(const std::vector<Entry>& entries);

} // namespace plovik::ownCommands

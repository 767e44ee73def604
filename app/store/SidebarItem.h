// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>

namespace plovik {

/// An item of the sidebar. The selected one decides what the detail area shows.
struct SidebarItem {
    enum class Kind { ref, workingCopy, history, stashes, timeline, refLog };

    Kind kind = Kind::workingCopy;
    std::string refName; ///< full ref name, or HEAD for its log; empty for other kinds

    static SidebarItem ref(std::string fullName) { return {Kind::ref, std::move(fullName)}; }
    static SidebarItem workingCopy() { return {Kind::workingCopy, {}}; }
    static SidebarItem history() { return {Kind::history, {}}; }
    static SidebarItem stashes() { return {Kind::stashes, {}}; }
    static SidebarItem timeline() { return {Kind::timeline, {}}; }
    /// Where a ref was: HEAD, or a full name.
    static SidebarItem refLog(std::string ref) { return {Kind::refLog, std::move(ref)}; }

    bool isRef() const { return kind == Kind::ref; }
    /// Returns whether the detail area shows the commit list for it.
    bool showsHistory() const { return kind == Kind::ref || kind == Kind::history; }

    bool operator==(const SidebarItem&) const = default;
};

} // namespace plovik

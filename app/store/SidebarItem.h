// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>

namespace plovik {

/// An item of the sidebar. The selected one decides what the detail area shows.
struct SidebarItem {
    enum class Kind { ref, workingCopy, history, stashes, timeline };

    Kind kind = Kind::workingCopy;
    std::string refName; ///< full ref name; empty for other kinds

    static SidebarItem ref(std::string fullName) { return {Kind::ref, std::move(fullName)}; }
    static SidebarItem workingCopy() { return {Kind::workingCopy, {}}; }
    static SidebarItem history() { return {Kind::history, {}}; }
    static SidebarItem stashes() { return {Kind::stashes, {}}; }
    static SidebarItem timeline() { return {Kind::timeline, {}}; }

    bool isRef() const { return kind == Kind::ref; }
    /// Returns whether the detail area shows the commit list for it.
    bool showsHistory() const { return kind == Kind::ref || kind == Kind::history; }

    bool operator==(const SidebarItem&) const = default;
};

} // namespace plovik

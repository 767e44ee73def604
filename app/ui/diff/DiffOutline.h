// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <string_view>
#include <vector>

namespace plovik {

class ShownDiff;

/// Tells in which function a row of a diff stands: in the one that its hunk's header names, or in that of the nearest
/// line above which begins one. Goes through the rows once, when it is first asked after they have changed. Main thread.
class DiffOutline {
public:
    /// `diff` outlives the outline.
    explicit DiffOutline(const ShownDiff& diff) : diff_(diff) {}

    /// Returns the row that names the function of a row, which may be the row itself; -1 if nothing is known.
    int nameRow(int row) const;
    /// Returns the name in such a row.
    QString name(int row) const;
    bool isEmpty() const;

private:
    void read() const;

    const ShownDiff& diff_;
    mutable int revision_ = -1;
    struct Entry {
        int row = 0;
        bool hasName = true; ///< not of the header of a hunk in no function
    };
    mutable std::vector<Entry> entries_;
};

/// Returns whether a line of code begins a function, a class or the like, as far as a single line can tell. Pure.
bool beginsFunction(std::string_view line);

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QKeyCombination>

#include <span>

class QKeyEvent;

namespace plovik {

class DiffController;

/// A key with what it does in a diff that has the focus, besides what moves the cursor and extends the selection.
struct DiffKey {
    QKeyCombination keys;
    bool (*act)(DiffController& controller); ///< returns whether the key meant anything
};
std::span<const DiffKey> diffKeys();

/// Returns whether a key belongs to a diff with the focus even where a menu has it too, as single letters do.
bool isDiffKey(const QKeyEvent& event);
/// Does what a key means in a diff. `page` is how many lines are in sight. Returns whether the key means anything.
bool handleDiffKey(DiffController& controller, const QKeyEvent& event, int page);

} // namespace plovik

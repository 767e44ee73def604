// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

#include <functional>

namespace plovik {

/// What the settings show of the indexes of large repositories. Both functions may be empty; main thread.
struct IndexChoices {
    std::function<qint64()> bytes = {}; ///< returns how much room they take
    std::function<void()> clear = {};   ///< removes all of them
};

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace plovik {

/// How the two sides of a diff are arranged: one below the other, or each in its own half.
enum class DiffLayout { unified, sideBySide };

/// A side of a diff. `both` stands for a row that belongs to both sides, or for the whole width.
enum class DiffSide { both, before, after };

} // namespace plovik

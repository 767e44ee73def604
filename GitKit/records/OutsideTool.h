// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace gitkit {

/// What the user's own tool is to show or resolve.
enum class OutsideTool { unstaged, staged, conflict };

} // namespace gitkit

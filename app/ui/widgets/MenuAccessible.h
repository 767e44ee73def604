// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace plovik {

/// Lets assistive technology read the entries of menus that show keys behind their titles: the title is the name, and the
/// keys are told apart from it. Further calls do nothing.
void installMenuAccessibility();

} // namespace plovik

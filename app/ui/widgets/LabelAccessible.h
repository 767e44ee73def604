// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace plovik {

/// Lets assistive technology read the text of labels that have an accessible name of their own: the toolkit tells the
/// name alone. The text stands in the description. Main thread; later calls do nothing.
void installLabelAccessibility();

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace plovik {

class DiffSectionView;

/// Lets assistive technology read diffs as text, as lines with their signs. Further calls do nothing.
void installDiffAccessibility();
/// Tells assistive technology that the text has changed.
void announceDiffChange(DiffSectionView* view);
/// Tells it that the current line or the selection has changed.
void announceDiffCursor(DiffSectionView* view);

} // namespace plovik

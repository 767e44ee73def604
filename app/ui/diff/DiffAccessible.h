// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace plovik {

class DiffSectionView;

/// Lets assistive technology read diffs as text: lines with their signs. Done once, however often it is asked for.
void installDiffAccessibility();
void announceDiffChange(DiffSectionView* view);
/// To be called when the current line or the selection has changed.
void announceDiffCursor(DiffSectionView* view);

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QMenu;

namespace plovik {

class DiffSectionView;

/// Makes the context menu of a diff, which deletes itself when it closes. It closes when another diff comes, and goes
/// with its view.
QMenu* makeDiffMenu(DiffSectionView& view);

} // namespace plovik

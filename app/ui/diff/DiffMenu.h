// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class QMenu;

namespace plovik {

class DiffDocument;
class DiffSectionView;

/// Makes the context menu of a diff, which deletes itself when it closes. It closes when another diff comes, and goes
/// with its view.
QMenu* makeDiffMenu(DiffSectionView& view);

/// Returns where a moved line comes from or has gone to, as a sentence; empty for another line.
QString movedText(const DiffDocument& document, int row);

} // namespace plovik

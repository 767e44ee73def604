// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/Undo.h"

namespace plovik {

Undo::Undo(const GitAccess& git, WindowState& window, Snapshot& snapshot, Changes& changes)
    : git_(git), window_(window), snapshot_(snapshot), changes_(changes)
{}

QString Undo::whyNoUndo() const { return tr("There is nothing to undo."); }
void Undo::undo() {}
void Undo::redo() {}
void Undo::showTimeline() {}
void Undo::confirmUndoTo(const std::string&) {}
void Undo::confirmRestoreFiles(const std::string&) {}
void Undo::newBranchBefore(const std::string&) {}
void Undo::confirmForget(const std::string&) {}
void Undo::restoreInterrupted() {}
void Undo::leaveInterrupted() {}

} // namespace plovik

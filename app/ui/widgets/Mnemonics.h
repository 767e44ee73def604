// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>

class QAction;

/// The underlined letters that choose the entries of menus. They are found for the words of any language. Main thread.
namespace plovik {

/// Gives every entry a letter of its own, as far as the letters reach: the first of a word if possible. Letters that
/// entries have already are kept.
void assignMnemonics(const QList<QAction*>& entries);

/// Returns the text of an entry as it is read: without the mark of its letter and without its keys.
QString withoutMnemonic(const QString& text);

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <initializer_list>

class QDialog;
class QHBoxLayout;
class QLabel;
class QPushButton;
class QString;
class QVBoxLayout;
class QWidget;

/// What sheets, alerts and questions are made of, so that they look alike. Main thread.
namespace plovik::dialogParts {

/// Makes `dialog` one that blocks its window alone, is named by `title` and deletes itself when it closes.
void prepare(QDialog& dialog, const QString& title);
/// The dialog's layout, at least as wide as a sentence is well read.
QVBoxLayout* column(QDialog& dialog);
QLabel* heading(const QString& title, QWidget* parent);
/// Plain text that wraps.
QLabel* text(QWidget* parent);
/// The same in the colour of what is less important.
QLabel* secondaryText(const QString& sentence, QWidget* parent);
/// The buttons at the right end of their row, the confirming one last.
QHBoxLayout* buttonRow(std::initializer_list<QPushButton*> buttons);
/// Makes the dialog as high as its texts need at its least width, or at `width` where that is more and the screen has
/// the room; `moreHeight` is for what can be scrolled. To be called when a text changes.
void fit(QDialog& dialog, int width = 0, int moreHeight = 0);

} // namespace plovik::dialogParts

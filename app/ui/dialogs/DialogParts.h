// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/Confirmation.h"

#include <vector>

class QDialog;
class QHBoxLayout;
class QLabel;
class QPushButton;
class QRadioButton;
class QString;
class QVBoxLayout;
class QWidget;

/// The parts of sheets, alerts and questions, so that all of them look alike. Main thread.
namespace plovik::dialogParts {

/// Gives `dialog` its title, lets it block only its own window, and has it deleted when it closes.
void prepare(QDialog& dialog, const QString& title);
/// Makes and returns the dialog's layout, which is wide enough for reading sentences.
QVBoxLayout* column(QDialog& dialog);
QLabel* heading(const QString& title, QWidget* parent);
/// Returns an empty label for plain text that wraps.
QLabel* text(QWidget* parent);
/// Returns such a label with a sentence in the secondary colour.
QLabel* secondaryText(const QString& sentence, QWidget* parent);
/// One of several ways to do something, and the words below it that say what it does.
struct ChoiceRow {
    QRadioButton* button = nullptr;
    QLabel* words = nullptr;

    /// Shows the words, also to those who cannot see them.
    void say(const QString& sentence) const;
};
/// Adds such a row to a sheet's fields.
ChoiceRow choiceRow(const QString& title, QVBoxLayout& fields, QWidget* parent);
/// Puts the buttons at the right end of a row; the confirming one comes last.
QHBoxLayout* buttonRow(const std::vector<QPushButton*>& buttons);
/// Makes the dialog as high as its texts need at its least width, or at `width` where that is larger and fits on the
/// screen. `moreHeight` is added for widgets that scroll. To be called when a text changes.
void fit(QDialog& dialog, int width = 0, int moreHeight = 0);
/// Lets the user choose a file or folder, and calls `place.chosen` unless `parent` is gone by then.
void askForPlace(const Confirmation::Place& place, QWidget* parent);

} // namespace plovik::dialogParts

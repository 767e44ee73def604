// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFormLayout>
#include <QString>

class QComboBox;
class QLabel;

namespace plovik {

/// The layout of one settings tab: titles at the left, their controls at the right, notes in a quiet colour below them.
/// Main thread.
class SettingsForm : public QFormLayout {
public:
    explicit SettingsForm(QWidget& page);

    /// Adds a title above the controls that follow.
    void addSection(const QString& title);
    /// Adds a control beside its title, which becomes the control's accessible name.
    void addControl(const QString& title, QWidget* control);
    /// Adds a sentence in a quiet colour below the last control.
    QLabel* addNote(const QString& text);
};

/// Makes a picker as wide as its entries, within what looks well in a form.
void fitPicker(QComboBox& picker);

/// Returns a label for plain text that wraps, in the colour of notes.
QLabel* noteLabel(const QString& text, QWidget* parent);

/// Returns a label in the colour of problems; hidden until tellProblem() gives it a sentence.
QLabel* problemLabel(const QString& accessibleName, QWidget* parent);
/// Shows a sentence in such a label, or hides the label when the sentence is empty.
void tellProblem(QLabel& label, const QString& problem);

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFormLayout>
#include <QString>

class QLabel;

namespace plovik {

/// The page of one settings tab: titles at the left, their controls at the right, quiet notes below them. Main thread.
class SettingsForm : public QFormLayout {
public:
    explicit SettingsForm(QWidget& page);

    /// The title of the controls that follow.
    void addSection(const QString& title);
    /// A control beside its title, which becomes the control's accessible name.
    void addControl(const QString& title, QWidget* control);
    /// A quiet sentence below the last control.
    QLabel* addNote(const QString& text);
};

/// A label of plain text over several lines, in the colour of notes.
QLabel* noteLabel(const QString& text, QWidget* parent);

/// A label in the colour of what went wrong; hidden until it has something to say.
QLabel* problemLabel(const QString& accessibleName, QWidget* parent);
/// Shows a sentence in such a label, or hides it for an empty one.
void tellProblem(QLabel& label, const QString& problem);

} // namespace plovik

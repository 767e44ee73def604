// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLineEdit>

class QLabel;

namespace plovik {

/// The editor for the first line of a commit message. It shows the length in characters from 50 on, and beyond 72 in
/// the colour of a warning. Of pasted lines it keeps the first. Main thread.
class SubjectField : public QLineEdit {
    Q_OBJECT

public:
    explicit SubjectField(QWidget* parent = nullptr);

    /// Replaces the whole text as one step that can be undone.
    void replaceText(const QString& text);

Q_SIGNALS:
    /// Lines were pasted. `lines` are those after the first, and the text that followed the place of pasting.
    void moreLinesEntered(const QString& lines);
    void focusLost();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void enterLines(const QString& lines);
    void takeOutLines(const QString& text);
    void showLength();
    void placeLength();

    QLabel* length_;
};

} // namespace plovik

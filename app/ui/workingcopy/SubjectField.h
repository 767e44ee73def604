// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLineEdit>

class QLabel;

namespace plovik {

/// The first line of a commit message, with its length in characters inside the field: quiet, plain past 50, in the
/// warning's colour past 72. Pasted text of several lines leaves its first line here. Main thread.
class SubjectField : public QLineEdit {
    Q_OBJECT

public:
    explicit SubjectField(QWidget* parent = nullptr);

    /// Writes a whole text as one step that can be undone.
    void replaceText(const QString& text);

Q_SIGNALS:
    /// The lines after the first, with what stood behind the place where they were pasted.
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

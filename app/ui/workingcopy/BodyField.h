// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/platform/SpellChecker.h"

#include <QPlainTextEdit>

#include <memory>

namespace plovik {

class SpellingMarks;

/// The editor for the body of a commit message, in the code's font. It grows with its text from five lines to twelve. In
/// a wide window its lines end at the 72nd column, which a guide shows; in a narrow one the column is marked in every
/// line that is longer. Words are checked where the system has a dictionary. Main thread.
class BodyField : public QPlainTextEdit {
    Q_OBJECT

public:
    explicit BodyField(QWidget* parent = nullptr);

    /// Returns the text with every character as it was typed. Lines end in line feeds.
    QString text() const;
    /// Replaces the whole text as one step that can be undone.
    void replaceText(const QString& text);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

    /// Underlines the words that `checker` does not know.
    void checkSpelling(std::unique_ptr<SpellChecker> checker);
    void stopCheckingSpelling();

Q_SIGNALS:
    void focusChanged(bool hasFocus);

protected:
    void paintEvent(QPaintEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    double guideX() const;
    void limitLines();

    SpellingMarks* spelling_ = nullptr; ///< null while nothing is checked
};

/// A frame around a body field that looks like that of the other fields. Becomes the parent of the field.
class BodyPanel : public QWidget {
    Q_OBJECT

public:
    explicit BodyPanel(BodyField* field, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void inset();

    BodyField* field_;
};

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPlainTextEdit>

namespace plovik {

/// The editor for the body of a commit message. It grows with its text from five lines to twelve, and marks the 72nd
/// column in every line that is longer. Main thread.
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

Q_SIGNALS:
    void focusChanged(bool hasFocus);

protected:
    void paintEvent(QPaintEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
};

/// A frame around a body field that looks like that of the other fields. Becomes the parent of the field.
class BodyPanel : public QWidget {
    Q_OBJECT

public:
    explicit BodyPanel(BodyField* field, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    BodyField* field_;
};

} // namespace plovik

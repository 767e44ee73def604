// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPlainTextEdit>

namespace plovik {

/// The rest of a commit message. Grows with its text from five lines to twelve; a quiet mark stands in every line that
/// goes past the 72nd column, where it passes it. Main thread.
class BodyField : public QPlainTextEdit {
    Q_OBJECT

public:
    explicit BodyField(QWidget* parent = nullptr);

    /// The text with every character as it was typed; lines end in line feeds.
    QString text() const;
    /// Writes a whole text as one step that can be undone.
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

/// A body field on a panel that looks like the other fields. Takes the field as its own.
class BodyPanel : public QWidget {
    Q_OBJECT

public:
    explicit BodyPanel(BodyField* field, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    BodyField* field_;
};

} // namespace plovik

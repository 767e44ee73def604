// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QWidget>

namespace plovik {

/// Shows the name of the function that the lines below it stand in. A click asks for where that begins. Main thread.
class FunctionBar : public QWidget {
    Q_OBJECT

public:
    explicit FunctionBar(QWidget* parent);

    /// `left` is where the text begins.
    void setText(const QString& text, const QFont& font, int left);

Q_SIGNALS:
    void pressed();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QString text_;
    QFont font_;
    int left_ = 0;
};

} // namespace plovik

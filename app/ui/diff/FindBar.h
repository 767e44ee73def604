// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/diff/DiffFinder.h"

#include <QWidget>

class QLabel;
class QLineEdit;

namespace plovik {

class IconButton;

/// The line at the bottom of a diff in which its text is searched. Main thread.
class FindBar : public QWidget {
    Q_OBJECT

public:
    /// `finder` outlives the bar.
    explicit FindBar(DiffFinder& finder, QWidget* parent);

    /// Shows itself with the focus in the field; `text` is what to search for, what stands there when it is empty.
    void open(const QString& text);
    /// Hides itself and ends the search.
    void close();
    void step(int direction);

Q_SIGNALS:
    /// The bar goes, and the keyboard is still in it.
    void focusReturned();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void search();
    void showCount();
    void applyTheme();

    DiffFinder& finder_;
    QLineEdit* field_;
    QLabel* count_;
    QLabel* wrap_; ///< says that the search went on at the other end
    IconButton* previous_;
    IconButton* next_;
    IconButton* cases_;
};

} // namespace plovik

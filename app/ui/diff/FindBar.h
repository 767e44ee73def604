// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/widgets/Finder.h"

#include <QWidget>

class QLabel;
class QLineEdit;

#include <functional>

class QKeyEvent;

namespace plovik {

class IconButton;

/// The bar at the bottom of a diff, or of another text, for searching it. Main thread.
class FindBar : public QWidget {
    Q_OBJECT

public:
    /// `finder` outlives the bar.
    explicit FindBar(Finder& finder, QWidget* parent);

    /// Sets the field's accessible name and what it says while it is empty, for a text that is no diff.
    void setSubject(const QString& name, const QString& placeholder);
    /// Shows the bar with the focus in its field and searches for `text`, or for the field's text if that is empty.
    void open(const QString& text);
    /// Hides the bar and ends the search.
    void close();
    void step(int direction);

Q_SIGNALS:
    /// The bar is about to hide while it has the focus.
    void focusReturned();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void search();
    void showCount();
    void applyTheme();

    Finder& finder_;
    QLineEdit* field_;
    QLabel* count_;
    QLabel* wrap_; ///< tells that the search went on at the other end
    IconButton* previous_;
    IconButton* next_;
    IconButton* cases_;
};

/// Returns whether a key opens, steps or closes a search, whose bar is null before it was first opened.
bool isFindKey(const FindBar* bar, const QKeyEvent& event);
/// Does what such a key asks for; `open` opens the bar.
void handleFindKey(FindBar* bar, const QKeyEvent& event, const std::function<void()>& open);

} // namespace plovik

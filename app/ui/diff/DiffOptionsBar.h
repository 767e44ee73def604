// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

class QAbstractButton;

namespace plovik {

class IconButton;

/// The small buttons at the top right of a diff that choose how it is read. The layout and the white space are settings
/// for all diffs; the whole file is shown for one. Main thread.
class DiffOptionsBar : public QWidget {
    Q_OBJECT

public:
    explicit DiffOptionsBar(QWidget* parent);

    void setWholeFile(bool isWhole);
    /// Shows the buttons only where there is text to read. Returns whether that changed the bar's width.
    bool setHasText(bool hasText);

    /// Lets the tab key come here behind a widget.
    void orderTabs(QWidget* before);
    /// Shows a button before the others. Takes ownership.
    void addOption(QAbstractButton* button);

Q_SIGNALS:
    void wholeFileToggled(bool isWhole);
    void findRequested();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void follow();

    QAbstractButton* added_ = nullptr;
    IconButton* sideBySide_;
    IconButton* whiteSpace_;
    IconButton* wholeFile_;
    IconButton* wrap_;
    IconButton* find_;
};

} // namespace plovik

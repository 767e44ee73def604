// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

namespace plovik {

class IconButton;

/// The small buttons at the top right of a diff: how it is read. Side by side and ignoring white space are the
/// preferences of all diffs; the whole file is for one. Main thread.
class DiffOptionsBar : public QWidget {
    Q_OBJECT

public:
    explicit DiffOptionsBar(QWidget* parent);

    void setWholeFile(bool isWhole);

Q_SIGNALS:
    void wholeFileToggled(bool isWhole);
    void findRequested();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void follow();

    IconButton* sideBySide_;
    IconButton* whiteSpace_;
    IconButton* wholeFile_;
};

} // namespace plovik

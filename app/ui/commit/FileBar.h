// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/commit/CommitReading.h"
#include "app/ui/diff/DiffMetrics.h"

#include <QAbstractButton>

namespace plovik {

/// The bar above one of the diffs of a commit: what happened to the file, its path and its line counts. A click, Space,
/// Left and Right fold its diff; with Alt, all of them. Its accessible name is the path. Main thread.
class FileBar : public QAbstractButton {
    Q_OBJECT

public:
    static int barHeight() { return DiffMetrics::barHeight(); }

    explicit FileBar(QWidget* parent);

    void setFile(const gitkit::CommitFile& file, const gitkit::ChangeCounts* counts);
    void setFolded(bool isFolded);
    bool isFolded() const { return isFolded_; }
    /// Keeps room at the right end, in pixels, for a widget that stands over the bar.
    void setReserve(int width);

Q_SIGNALS:
    void foldRequested(bool isFolded, bool isForAll);

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    gitkit::CommitFile file_;
    std::optional<gitkit::ChangeCounts> counts_;
    bool isFolded_ = false;
    int reserve_ = 0;
};

} // namespace plovik

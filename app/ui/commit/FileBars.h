// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

#include <cstddef>
#include <functional>
#include <map>
#include <vector>

class QPoint;
class QWidget;

namespace plovik {

class FileBar;

/// The bars of the files that are in sight in a view, by the files' places in their commit. A bar that goes out of sight
/// is used again for another file. Main thread.
class FileBars : public QObject {
    Q_OBJECT

public:
    /// The bars stand in `viewport`.
    explicit FileBars(QWidget* viewport);

    /// Shows the bars of the files from `first` up to `end`, and that of the file whose bar has the focus. `fill` is
    /// called for every bar that is new there.
    void show(std::size_t first, std::size_t end, const std::function<void(std::size_t file, FileBar& bar)>& fill);
    void hideAll();
    const std::map<std::size_t, FileBar*>& shown() const { return shown_; }
    /// Returns a file's bar, or null while it is not shown.
    FileBar* of(std::size_t file) const;
    /// Returns the bar that has the focus or is at a place of the viewport, and its file; null if there is none.
    std::pair<std::size_t, FileBar*> at(const QPoint& place) const;

    /// Keeps room at the right end of the bars, in pixels.
    void setReserve(int width);

Q_SIGNALS:
    void foldRequested(std::size_t file, bool isFolded, bool isForAll);

private:
    void hide(FileBar* bar);
    FileBar* spare();

    QWidget* viewport_;
    std::map<std::size_t, FileBar*> shown_;
    std::vector<FileBar*> spare_;
    int reserve_ = 0;
};

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"
#include "app/store/readers/CommitReaders.h"
#include "app/store/readers/Latest.h"
#include "app/ui/commit/CommitReading.h"

#include <QAbstractScrollArea>

#include <memory>
#include <utility>
#include <vector>

namespace plovik {

class FileBars;
class FileDiff;

/// The diffs of all files of a commit in one scroll. Each file has a bar, which stays at the top while its diff scrolls
/// by, and folds it. A diff is read when it comes near what is in sight, and dropped when it is far, so that a commit of
/// thousands of files costs what is looked at. Until a diff was read, its height is estimated from its line counts, and
/// what is in sight stays in place when that was wrong. Main thread.
class AllFilesView : public QAbstractScrollArea {
    Q_OBJECT

public:
    /// `store` outlives the view.
    explicit AllFilesView(RepositoryStore& store, QWidget* parent = nullptr);

    /// Shows a commit from its first file on; null shows none.
    void setReading(std::shared_ptr<const CommitReading> reading);
    const std::shared_ptr<const CommitReading>& reading() const { return reading_; }
    /// Must be called when the counts of the reading have changed.
    void countsChanged();
    /// Scrolls to a file's bar.
    void goTo(std::size_t file);
    /// Returns the file that was gone to or scrolled to last.
    std::size_t currentFile() const { return current_; }
    void fold(std::size_t file, bool isFolded);
    void foldAll(bool areFolded);
    bool isFolded(std::size_t file) const { return items_[file].isFolded; }
    /// Puts the keyboard focus into the current file's diff, or on its bar.
    void focusCurrent();

    /// Returns a file's diff, or null while it is not in memory.
    FileDiff* diffOf(std::size_t file) const { return items_[file].diff; }
    /// Returns how many diffs are in memory.
    int diffsHeld() const;
    /// Returns the text that is selected in the first diff with a selection.
    QString selectedText() const;
    /// Keeps room at the right end of the bars, in pixels, for a widget that stands over them.
    void setBarReserve(int width);
    void setShowsWholeFile(bool whole);
    gitkit::DiffReading diffReading() const;

public Q_SLOTS:
    void copy();
    void selectAll();
    void nextChange() { walk(currentInUse(), 1); }
    void previousChange() { walk(currentInUse(), -1); }

Q_SIGNALS:
    /// The user has come to another file by scrolling or with the keyboard.
    void currentFileChanged();
    void showsWholeFileChanged(bool whole);
    /// The diff of a file has come into memory.
    void diffShown(std::size_t file);
    void menuRequested(const QPoint& position);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void paintEvent(QPaintEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    struct Item {
        int height = 0; ///< below the bar, of an open item
        bool isMeasured = false;
        bool isFolded = false;
        gitkit::DiffReach reach = gitkit::DiffReach::beginning;
        bool isReadOn = false; ///< all lines were asked for, and are not there yet
        FileDiff* diff = nullptr;
        QString problem; ///< why it could not be read
    };

    int top(std::size_t file) const { return tops_[file]; }
    int scrolled() const;
    int openHeight(const Item& item) const { return item.isFolded ? 0 : item.height; }
    std::size_t fileAt(int y) const;
    std::pair<std::size_t, std::size_t> filesBetween(int begin, int end) const;
    void estimate();
    void layOut();
    void place();
    void placeBars(std::size_t first, std::size_t end);
    void placeDiff(std::size_t file);
    void keepNear(std::size_t first, std::size_t end);
    void drop(Item& item);
    void readNext();
    void ask(std::size_t file);
    void diffRead();
    FileDiff* makeDiff(std::size_t file);
    void reveal(std::size_t file, const QRect& area);
    void leave(std::size_t file, int direction);
    void walk(std::size_t file, int direction);
    std::size_t currentInUse() const;
    void settingChanged(const QString& key);
    void applyOptions(FileDiff& diff) const;

    RepositoryStore& store_;
    std::shared_ptr<const CommitReading> reading_;
    std::vector<Item> items_;
    std::vector<int> tops_{0}; ///< of each bar before scrolling, and the end of the last file
    FileBars* bars_;
    std::size_t current_ = 0;
    std::size_t asked_ = 0;                               ///< the file whose diff is being read
    std::optional<std::pair<std::size_t, int>> arriving_; ///< where the keyboard goes when that diff has come
    bool showsWholeFile_ = false;
    bool isMoving_ = false;
    bool isArriving_ = false; ///< a diff is being put in place
    Latest<CommitDiffRequest, gitkit::ParsedDiff> diffs_;
};

} // namespace plovik

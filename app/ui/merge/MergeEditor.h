// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/merge/MergePlace.h"
#include "app/ui/merge/MergeResult.h"

#include <QPlainTextEdit>

#include <memory>

namespace plovik {

class FileSyntax;

/// The result of a merge, to be edited. Lines are tinted by where they come from; a conflict that is not decided is one
/// line that says so. Undo and redo cover choices and typing alike, in their order. Main thread.
class MergeEditor : public QPlainTextEdit {
    Q_OBJECT

public:
    explicit MergeEditor(QWidget* parent = nullptr);

    /// Shows a result, which outlives the editor or the next call. Choices are to be made with choose().
    void setResult(MergeResult* result);
    void choose(std::size_t segment, gitkit::MergeChoice choice);
    /// Takes other contents, as a change that can be undone. Returns false if the text cannot hold them.
    bool replaceAll(const std::vector<MergeResult::Start>& starts);
    bool canUndo() const { return result_ && result_->canUndo(); }
    bool canRedo() const { return result_ && result_->canRedo(); }
    void setSyntax(std::shared_ptr<const FileSyntax> syntax);
    void setTabWidth(int columns);

    /// Brings a segment into sight.
    void reveal(std::size_t segment);
    MergePlace place() const;
    void setPlace(const MergePlace& place);

public Q_SLOTS:
    void undo();
    void redo();

Q_SIGNALS:
    /// The text or a choice has changed: by the user, by undo, or by what another program wrote.
    void resultChanged();
    void scrolled();

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool event(QEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    QMimeData* createMimeDataFromSelection() const override;

private:
    void take(const MergeResult::Edit& edit);
    void contentsChanged(int position, int removed, int added);
    void clearSigns();
    void colourVisible();
    QTextBlock blockAt(qsizetype position) const;

    MergeResult* result_ = nullptr;
    std::shared_ptr<const FileSyntax> syntax_;
    bool isTaking_ = false; ///< the text changes because the result has
    bool isClearingDue_ = false;
    int tabWidth_ = 8;
};

} // namespace plovik

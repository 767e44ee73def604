// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/merge/MergeNames.h"
#include "app/ui/merge/MergeResult.h"
#include "app/ui/merge/MergeStart.h"

#include <QWidget>

#include <memory>
#include <optional>
#include <string>
#include <vector>

class QBoxLayout;
class QLabel;
class QPushButton;
class QTimer;

namespace plovik {

class FileSyntax;
class MergeColumns;
class MergeEditor;

/// One merge of a file, with which the view is filled. Value.
struct MergeContent {
    std::string path;
    MergeResult::Sides sides;
    std::vector<MergeResult::Start> starts; ///< of a result that was begun; empty for a new one
    MergeNames names;
    QString note; ///< a sentence about it; empty for none
    bool isRemembered = false;
    bool comparesWithoutLineEnds = false;
};

/// A conflict of lines: both sides, and below them the result, in which each conflict is decided by a button, a key or
/// by writing. Main thread.
class MergeView : public QWidget {
    Q_OBJECT

public:
    explicit MergeView(QWidget* parent = nullptr);
    ~MergeView() override;

    void setContent(MergeContent content);
    const std::string& path() const { return content_.path; }
    const MergeContent& content() const { return content_; }
    /// Takes what the file holds by now, as a change that can be undone, and says so.
    void takeOutside(const std::vector<MergeResult::Start>& starts);
    /// Returns whether something was decided or written since the content was set.
    bool isChanged() const;
    /// Returns the result, with markers where nothing is decided; nullopt if the file's encoding lacks a character.
    std::optional<std::string> bytes(const gitkit::MergeMarkers& markers) const;
    int undecidedCount() const;
    /// Lets nothing be decided while a change is under way.
    void setAvailable(bool available);
    MergeColumns* columns() const { return columns_; }
    MergeEditor* editor() const { return editor_; }
    void setTabWidth(int columns);
    void setSyntax(gitkit::MergeSide side, std::shared_ptr<const FileSyntax> syntax);
    void setResultSyntax(std::shared_ptr<const FileSyntax> syntax);
    /// Returns the text of the result as it is shown, for its colours.
    std::string shownResult() const;

public Q_SLOTS:
    void nextConflict() { walk(1); }
    void previousConflict() { walk(-1); }

Q_SIGNALS:
    void resolveRequested();
    void startOverRequested();
    void forgetRequested();
    void withoutLineEndsRequested();
    /// The result has changed; it comes a moment after the last key.
    void resultSettled();

protected:
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;

private:
    QWidget* makeHead();
    QWidget* makeNote();
    QWidget* makeResultPane();
    void makeKeys();
    void walk(int direction);
    void choose(gitkit::MergeChoice choice);
    void resultChanged();
    void showCount();
    void showNote();
    void follow(bool columnsLead);

    MergeContent content_;
    std::unique_ptr<MergeResult> result_;
    MergeColumns* columns_;
    MergeEditor* editor_;
    QLabel *title_ = nullptr, *count_ = nullptr, *noteText_ = nullptr;
    QPushButton *base_ = nullptr, *startOver_ = nullptr, *more_ = nullptr, *resolve_ = nullptr, *noteAction_ = nullptr;
    QBoxLayout* head_ = nullptr;
    QWidget* note_ = nullptr;
    QTimer* settling_;
    bool isFollowing_ = false; ///< one view scrolls because the other has
};

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"
#include "app/store/readers/ConflictReaders.h"
#include "app/store/readers/Latest.h"
#include "app/ui/merge/MergeSyntaxReader.h"

#include <QProperty>
#include <QWidget>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace plovik {

class MergeView;

/// The merge of the selected file, if that is in conflict line by line.
///
/// What is decided or written is kept in the working file a moment later, so that it outlives the program. When the
/// working file is changed elsewhere meanwhile, nothing is written over it: its contents become the result, which undo
/// takes back. Main thread.
class MergePane : public QWidget {
    Q_OBJECT

public:
    /// `store` outlives the pane.
    explicit MergePane(RepositoryStore& store, QWidget* parent = nullptr);
    ~MergePane() override;

    /// Whether the selected file is shown as a merge.
    bool isFilled() const { return !shown_.empty(); }
    MergeView* view() const { return view_; }

Q_SIGNALS:
    void filledChanged();

protected:
    void hideEvent(QHideEvent* event) override;

private:
    void follow();
    void mergeRead();
    void empty();
    void fill(const MergeRequest& request, const ReadMerge& merge);
    std::optional<std::string> currentBytes();
    void keep();
    void write();
    void kept(std::string bytes, std::optional<gitkit::FileStamp> stamp);
    void resolve();
    void resolveNow();
    void startOver();
    const gitkit::Conflict* conflict() const;

    RepositoryStore& store_;
    MergeView* view_;
    MergeSyntaxReader syntax_;
    Latest<MergeRequest, ReadMerge> reading_;
    std::string shown_;                       ///< path of the file on display; empty for none
    std::optional<gitkit::Conflict> merging_; ///< whose merge that is
    bool ignoresLineEnds_ = false;
    std::optional<gitkit::FileStamp> seen_;      ///< of the working file, as it was read or written here
    std::optional<gitkit::FileStamp> suspected_; ///< of a working file that was not written here, as it seems
    std::string kept_;                           ///< what the working file has got from here, or had when it was read
    bool isKeeping_ = false;
    std::function<void()> afterKeep_; ///< what waits for the file to be written
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik

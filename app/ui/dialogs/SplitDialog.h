// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/SheetKind.h"
#include "app/store/readers/CommitReaders.h"
#include "app/store/readers/Latest.h"
#include "app/ui/dialogs/Sheet.h"
#include "app/ui/diff/DiffAction.h"

#include <cstddef>
#include <optional>

class QHBoxLayout;
class QListView;
class QPlainTextEdit;

namespace plovik {

class DiffPane;
class SplitFilesModel;

/// Asks which changes of a commit become a commit of their own, by files, hunks and lines, and for the words of both. With
/// a plan it puts the split into that; without one it is done at once. Main thread.
class SplitDialog : public Sheet {
    Q_OBJECT

public:
    SplitDialog(RepositoryStore& store, SplitSheet sheet, QWidget* parent);

    void submit() override;

protected:
    QString problem() const override;
    bool isComplete() const override;
    std::optional<Verb> verb() const override;

private:
    /// One of the two commits: what it has, and its message.
    struct Half {
        QLabel* extent = nullptr;
        QPlainTextEdit* message = nullptr;
    };
    struct HalfNames {
        QString title, extent, message;
    };
    Half addHalf(QHBoxLayout& row, const HalfNames& names, const std::string& message);
    QWidget* makeChoice();
    void filesRead();
    std::optional<std::size_t> currentFile() const;
    void readDiff();
    void showDiff();
    void apply(const DiffContent& content, const DiffAction& action);
    void choiceChanged();
    void showExtents();

    SplitSheet sheet_;
    bool isPlanned_;
    SplitFilesModel* model_;
    QListView* list_;
    DiffPane* diff_;
    Half first_;
    Half second_;
    std::optional<std::size_t> shownFile_;
    Latest<CommitRequest, gitkit::CommitDetail> files_;
    Latest<CommitRequest, std::vector<gitkit::ChangeCounts>> counts_;
    Latest<CommitDiffRequest, gitkit::ParsedDiff> diffs_;
};

} // namespace plovik

#pragma once

#include "app/views/diff/DiffAction.h"

#include <QWidget>

#include <vector>

class QStackedLayout;

namespace plovik {

class DiffView;
class EmptyState;
class RepositoryStore;

/// The place where one file's diffs are shown, or a sentence in their stead. Main thread.
class DiffPane : public QWidget {
    Q_OBJECT

public:
    /// `store` outlives the pane.
    explicit DiffPane(RepositoryStore& store, QWidget* parent = nullptr);

    DiffView* view() const { return view_; }
    bool isSentenceShown() const;
    void showDiffs(std::vector<DiffContent> contents, DiffPlace place);
    void showSentence(const QString& title, const QString& description);

private:
    RepositoryStore& store_;
    DiffView* view_;
    EmptyState* empty_;
    QStackedLayout* pages_;
};

} // namespace plovik

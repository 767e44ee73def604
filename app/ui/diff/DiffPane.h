// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/diff/DiffAction.h"

#include <QTimer>
#include <QWidget>

#include <vector>

class QStackedWidget;

namespace plovik {

class DiffExtras;
class DiffFilesLoader;
class DiffFinder;
class DiffOptionsBar;
class DiffView;
class EmptyState;
class FindBar;
class RepositoryStore;

/// Shows one file's diffs, or a sentence where there are none, with options for reading them and a search. Main thread.
class DiffPane : public QWidget {
    Q_OBJECT

public:
    /// `store` outlives the pane.
    explicit DiffPane(RepositoryStore& store, QWidget* parent = nullptr);

    DiffView* view() const { return view_; }
    bool isSentenceShown() const;
    void showDiffs(std::vector<DiffContent> contents, DiffPlace place);
    /// Shows the diff of one file of a commit from its start. `name` is the section's accessible name.
    void showDiff(const QString& name, const std::string& path, gitkit::ParsedDiff diff);
    void showSentence(const QString& title, const QString& description);
    /// Must be called when another diff is being read. If that takes longer than a moment, a sentence replaces the diff
    /// on display, which belongs to something else.
    void awaitDiff() { readingSoon_.start(); }

    /// Returns how the next diffs are to be read.
    gitkit::WhiteSpace whiteSpace() const;

Q_SIGNALS:
    /// The option has changed, and what is shown is to be read again.
    void whiteSpaceChanged();

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void find();
    bool isMine(const QKeyEvent& event) const;
    void settingChanged(const QString& key);
    void loadFiles();
    void placeOptions();

    RepositoryStore& store_;
    DiffView* view_;
    EmptyState* empty_;
    QStackedWidget* pages_;
    DiffOptionsBar* options_;
    DiffExtras* extras_;
    DiffFilesLoader* files_;
    DiffFinder* finder_;
    FindBar* findBar_ = nullptr; ///< made for the first search
    QTimer readingSoon_;
};

} // namespace plovik

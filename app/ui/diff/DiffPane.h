// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/diff/DiffAction.h"

#include <QTimer>
#include <QWidget>

#include <functional>
#include <vector>

class QAbstractButton;
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
    /// Shows a button before the options. Takes ownership.
    void addOption(QAbstractButton* button);
    bool isSentenceShown() const;
    void showDiffs(std::vector<DiffContent> contents, DiffPlace place);
    /// Shows the diff of one file of a commit: from its start, unless more of the same diff was read. `name` is the section's accessible name,
    /// `revision` the hash of the commit that has the file, if there is one.
    void showDiff(const QString& name, const std::string& path, gitkit::ParsedDiff diff,
                  const std::string& revision = {});
    void showSentence(const QString& title, const QString& description);
    /// Shows a sentence with a button below it, which calls `act`.
    void showOffer(const QString& title, const QString& description, const QString& button, std::function<void()> act);
    /// Must be called when a diff of a commit is being read. If that takes longer than a moment, a sentence replaces the
    /// diff on display, if that belongs to something else.
    void awaitDiff();

    /// Returns how the diffs of a file are to be read: of a long one the beginning, until all of it is asked for here.
    /// `file` identifies the file and its commit among all that the pane shows.
    gitkit::DiffReading readingOf(const std::string& file);

Q_SIGNALS:
    /// readingOf() has changed, and what is shown is to be read again.
    void readingChanged();

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    Q_INVOKABLE void find();
    bool isMine(const QKeyEvent& event) const;
    void settingChanged(const QString& key);
    void loadFiles();
    void placeOptions();
    void showOptions();
    void countSoon();
    void readOn(gitkit::DiffReach reach);
    bool isMoreOfTheSame(const gitkit::ParsedDiff& diff) const;

    RepositoryStore& store_;
    DiffView* view_;
    EmptyState* empty_;
    QStackedWidget* pages_;
    DiffOptionsBar* options_;
    DiffExtras* extras_;
    DiffFilesLoader* files_;
    DiffFinder* finder_;
    QMetaObject::Connection offering_;
    std::function<void()> offered_; ///< what the button does that a sentence has; empty while there is none
    FindBar* findBar_ = nullptr;    ///< made for the first search
    QTimer readingSoon_;
    std::string file_;      ///< whose diffs were asked for last
    std::string shownFile_; ///< whose diffs are shown
    gitkit::DiffReach reach_ = gitkit::DiffReach::beginning;
};

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/ParsedDiff.h"

#include <QWidget>

#include <string>

namespace plovik {

class DiffController;
class DiffExtras;
class DiffFilesLoader;
class DiffFinder;
class DiffSectionView;
class DiffView;
class RepositoryStore;

/// One diff of a commit, as high as all of its lines, for a view that scrolls many of them. Main thread.
class FileDiff : public QWidget {
    Q_OBJECT

public:
    /// `room` is the height of the view around it.
    FileDiff(RepositoryStore& store, int room, QWidget* parent);

    void setDiff(const std::string& path, gitkit::ParsedDiff diff, const std::string& revision);
    /// Sets the width and the height that the lines need with it.
    void fit(int width, int room);

    DiffView& view() const { return *view_; }
    DiffFinder& finder() const { return *finder_; }
    DiffSectionView& section() const;
    DiffController& controller() const;
    /// Returns whether the user is at work in it: the focus or a selection is there.
    bool isInUse() const;

Q_SIGNALS:
    void heightChanged();
    /// What is looked at has moved down by `shift`.
    void shifted(int shift);
    /// An area of this widget is to be brought into sight.
    void revealRequested(const QRect& area);
    void leaveRequested(int direction);
    void walkEnded(int direction);
    void allLinesRequested();

private:
    void followSection();
    void take();

    DiffView* view_;
    DiffExtras* extras_;
    DiffFilesLoader* files_;
    DiffFinder* finder_;
    const DiffSectionView* followed_ = nullptr;
    int room_;
};

} // namespace plovik

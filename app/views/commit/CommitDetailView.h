#pragma once

#include "app/store/RepositoryStore.h"

#include <QProperty>
#include <QWidget>

#include <QCoroTask>

#include <optional>
#include <string>
#include <vector>

class QLabel;

namespace plovik {

class CommitFilesList;
class DiffPane;

/// The selected commit of the history, or the selected stash: its message where it is a commit, the files it touched,
/// and the diff of one of them.
///
/// Reads in the background; of several requests the last one counts, and what stands on display stays until it has
/// arrived. Main thread.
class CommitDetailView : public QWidget {
    Q_OBJECT

public:
    /// `store` outlives the view.
    CommitDetailView(RepositoryStore& store, gitkit::GitRepository::CommitKind kind, QWidget* parent = nullptr);

private:
    static QCoro::Task<> readDetails(QPointer<CommitDetailView> view);
    static QCoro::Task<> readDiffs(QPointer<CommitDetailView> view);

    QWidget* makeLeftSide();
    std::optional<std::string> selected() const;
    void follow();
    void takeDetail(const gitkit::CommitDetail& detail);
    void takeProblem(const QString& title, const QString& problem);
    void fileChanged();
    void takeDiff(const gitkit::CommitFile& file, gitkit::ParsedDiff diff);

    struct WantedDiff {
        std::string hash;
        gitkit::CommitFile file;
        bool operator==(const WantedDiff&) const = default;
    };

    RepositoryStore& store_;
    gitkit::GitRepository::CommitKind kind_;
    QLabel* summary_;
    CommitFilesList* files_;
    DiffPane* diff_;
    std::string shown_;                 ///< hash of the commit whose files stand there
    std::optional<std::string> wanted_; ///< hash of the commit to read next
    bool isReadingDetail_ = false;
    std::optional<WantedDiff> wantedDiff_;   ///< to read next
    std::optional<WantedDiff> expectedDiff_; ///< the one that is to be on display
    bool isReadingDiff_ = false;
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik

#pragma once

#include "app/store/RepositoryStore.h"

#include <QCache>
#include <QWidget>

#include <QCoroTask>

#include <vector>

class QLabel;
class QScrollArea;
class QStackedLayout;

namespace plovik {

class MessageText;

/// The selected commit in words: its whole message, who made it and when, its hash and its parents.
///
/// Shows the store's `selectedCommit`. What the commit's row knows stands at once; the rest of the message is read from
/// git, one reading at a time, and only that of the commit selected last is shown. Main thread.
class CommitHeader : public QWidget {
    Q_OBJECT

public:
    explicit CommitHeader(RepositoryStore& store, QWidget* parent = nullptr);

protected:
    void changeEvent(QEvent* event) override;

private:
    static QCoro::Task<> readMessages(QPointer<CommitHeader> header);

    const gitkit::Commit* commitOnPage(const std::string& hash) const;
    void showCommit();
    void showMessage(const std::string& message);
    void showFacts();
    void takeMessage(const std::string& hash, const std::string& message);
    void followParent(const QString& link);
    void applyTheme();

    RepositoryStore& store_;
    std::string shown_;     ///< hash of the commit on display
    bool isOnPage_ = false; ///< its row was there to take the facts from
    std::string wanted_;    ///< hash of the message to read next
    bool isReading_ = false;
    QCache<std::string, std::string> messages_;

    QStackedLayout* pages_;
    QScrollArea* area_;
    MessageText* message_;
    QLabel* facts_;
    QLabel* notice_;
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik

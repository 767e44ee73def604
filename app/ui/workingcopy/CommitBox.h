// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"

#include <QProperty>
#include <QTimer>
#include <QWidget>

#include <vector>

class QCheckBox;
class QHBoxLayout;
class QPushButton;

namespace plovik {

class BodyField;
class CommitIntoButton;
class SubjectField;

/// The editor of the commit draft: subject, body, "Amend" and the button that commits. It follows the draft of the store
/// in both directions. Typed text is saved until it is committed, and is restored when the store has no message yet.
/// Main thread.
class CommitBox : public QWidget {
    Q_OBJECT

public:
    /// `store` outlives the box.
    explicit CommitBox(RepositoryStore& store, QWidget* parent = nullptr);
    /// Waits until the draft is on disk.
    ~CommitBox() override;

    Q_INVOKABLE void commit();
    /// Opens the list of the commits into which it may write.
    Q_INVOKABLE void commitInto();

Q_SIGNALS:
    /// A commit has succeeded and the box is empty again.
    void committed();

protected:
    void paintEvent(QPaintEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void arrange();
    void connectFields();
    void observeStore();
    void restoreDraft();
    void userTyped();
    void userToggledAmend(bool isOn);
    void enterMoreLines(const QString& lines);
    void showMessage();
    void activityChanged();
    void intoChanged();
    void commitEnded();
    void updateControls();
    void showAbsorb();
    QString whyNotCommit() const;
    bool goesOn() const;
    void keepDraft();
    void keepDraftIfWaiting();
    QCoro::Task<> checkingSpelling();
    void spellingChosen();

    RepositoryStore& store_;
    SubjectField* subject_;
    BodyField* body_;
    QCheckBox* amend_;
    CommitIntoButton* into_;
    QHBoxLayout* buttons_;
    QPushButton* absorb_;
    QPushButton* commit_;
    QTimer draftDelay_;
    bool hasDictionary_ = false; ///< it was looked for
    bool isUpdating_ = false;    ///< the fields change because of the store, not because of the user
    bool isTyping_ = false;      ///< the store changes because of the fields
    bool isCommitting_ = false;  ///< a commit is running
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik

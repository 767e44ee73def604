// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/CommitDetail.h"
#include "GitKit/records/CommitKind.h"
#include "GitKit/records/RefLabel.h"

#include <QWidget>

#include <vector>

class QBoxLayout;
class QLabel;

namespace plovik {

class CommitRefs;
class HashField;

/// The facts of a commit in rows: the author with initials and dates, the hash, the parents and the refs; of a stash its
/// date and the commit that it was made on. A notice may stand below. Main thread.
class CommitFactsBox : public QWidget {
    Q_OBJECT

public:
    /// In the brief form, author and date stand on one line, and hash, parents and refs on another where they fit.
    enum class Form { full, brief };

    explicit CommitFactsBox(gitkit::CommitKind kind, QWidget* parent = nullptr);

    void setFacts(const gitkit::CommitDetail& commit);
    void setLabels(const std::vector<gitkit::RefLabel>& labels);
    /// Shows what is known of the commit's signature; nothing for none.
    void setSignature(const gitkit::Signature& signature);
    /// Shows a sentence below the facts, or none.
    void say(const QString& sentence);

    /// Returns whether the form has changed.
    bool setForm(Form form);
    /// Returns the height that the facts need at a width, in pixels.
    int heightIn(Form form, int width) const;
    /// Returns where the lines stand that are not to be cut, from top to bottom.
    std::vector<QRect> lines() const;

Q_SIGNALS:
    /// Emitted when the user follows a link to a commit, with its full hash.
    void commitRequested(const QString& hash);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void arrange();
    bool fitsInOneRow(int width) const;
    QLabel* people(Form form) const { return form == Form::full ? people_ : brief_; }
    std::vector<QWidget*> rest() const;
    int circleSize(Form form) const;

    gitkit::CommitKind kind_;
    Form form_ = Form::full;
    QString initials_;
    std::string mail_;
    QLabel* people_;
    QLabel* brief_; ///< what stands in place of `people_` in the brief form
    QBoxLayout* row_;
    HashField* hash_;
    QLabel* parents_;
    int parentsWidth_ = 0; ///< on one line
    CommitRefs* refs_;
    QLabel* signature_;
    QLabel* notice_;
};

} // namespace plovik

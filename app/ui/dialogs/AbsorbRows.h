// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Absorb.h"

#include <QAbstractTableModel>

#include <optional>
#include <vector>

namespace plovik {

/// The staged changes, each with the commit that it goes into: first those that belong to one, then those that stay staged.
/// The user ticks them and chooses other commits. Main thread.
class AbsorbRows : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { changeColumn, commitColumn, columns };

    using QAbstractTableModel::QAbstractTableModel;

    /// Shows another proposal. What the user has chosen stays where it is about the same commits and changes.
    void show(gitkit::AbsorbProposal proposal);
    const gitkit::AbsorbProposal& proposal() const { return proposal_; }
    /// Returns the proposal with the targets that are chosen.
    gitkit::AbsorbProposal chosen() const;
    /// Returns how many changes go into commits, and how many commits these are.
    int chosenCount() const;
    int chosenCommits() const;

    /// Returns the change of a row; nullptr for a whole file.
    const gitkit::AbsorbHunk* hunkAt(int row) const;
    /// Returns the index of the commit that a row goes into; nullopt where it stays staged.
    std::optional<std::size_t> targetAt(int row) const;
    /// Has a row go into a commit that it fits into, or stay.
    void setTarget(int row, std::optional<std::size_t> commit);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    struct Row {
        std::optional<std::size_t> hunk = {};
        std::size_t other = 0; ///< without a hunk
        std::optional<std::size_t> target = {};
        std::optional<std::size_t> lastTarget = {}; ///< into which ticking sends it
    };
    void keepChoices(const gitkit::AbsorbProposal& before, const std::vector<Row>& rows);
    QString shownChange(const Row& row) const;
    QString shownTarget(const Row& row) const;
    QString shownReason(gitkit::StaysStaged reason) const;

    gitkit::AbsorbProposal proposal_;
    std::vector<Row> rows_;
};

} // namespace plovik

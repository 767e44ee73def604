// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/inspector/BlameDocument.h"

#include <QAbstractListModel>

#include <memory>

namespace plovik {

/// The lines of a blame for a list. Main thread.
class BlameModel : public QAbstractListModel {
    Q_OBJECT

public:
    using QAbstractListModel::QAbstractListModel;

    void setDocument(std::shared_ptr<const BlameDocument> document);
    /// Returns null before the first document.
    const std::shared_ptr<const BlameDocument>& document() const { return document_; }

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

    /// Returns who wrote a row, when and why, with the full hash.
    QString about(int row) const;

private:
    std::shared_ptr<const BlameDocument> document_;
};

} // namespace plovik

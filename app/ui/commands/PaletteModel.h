// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/readers/Palette.h"
#include "app/ui/commands/PalettePopup.h"

#include <QAbstractListModel>

#include <functional>
#include <memory>

class QAbstractItemDelegate;

namespace plovik {

/// The entries of a palette that were found, the best first. Owned by its parent; main thread.
class PaletteModel : public QAbstractListModel {
public:
    PaletteModel(std::function<PaletteRow(const PaletteEntry&)> row, QObject* parent)
        : QAbstractListModel(parent), row_(std::move(row))
    {}

    /// Shows what was found for a text, and `always` after it.
    void show(std::shared_ptr<const PaletteEntries> entries, PaletteFound found, QString typed, PaletteEntries always);

    const QString& typed() const { return typed_; }
    /// How many of what was found are not listed.
    std::size_t hiddenCount() const { return found_.count - found_.places.size(); }
    bool hasFound() const { return found_.count > 0; }
    const PaletteEntry& entry(const QModelIndex& index) const;
    /// Returns how an entry is shown now.
    PaletteRow shown(const QModelIndex& index) const { return row_(entry(index)); }
    QModelIndex indexOf(const PaletteEntry& entry) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

private:
    std::function<PaletteRow(const PaletteEntry&)> row_;
    std::shared_ptr<const PaletteEntries> entries_;
    PaletteFound found_;
    PaletteEntries always_;
    QString typed_;
};

/// Returns what draws the rows of a PaletteModel. Its parent owns it.
QAbstractItemDelegate* makePaletteDelegate(QObject* parent);

} // namespace plovik

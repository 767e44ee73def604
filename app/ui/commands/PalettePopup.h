// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/readers/Latest.h"
#include "app/store/readers/Palette.h"

#include <QFrame>

#include <functional>

class QLabel;
class QLineEdit;
class QModelIndex;

namespace plovik {

class PaletteModel;
class RowList;

/// How an entry of a palette is shown.
struct PaletteRow {
    QString title;
    QString detail = {};    ///< at the other end of the row
    QString whyNot = {};    ///< why it cannot be chosen, in place of the detail
    bool isCurrent = false; ///< it is what is chosen already
    bool isOffered = true;
};

/// A list over the window from which one thing is chosen by typing. What is in it is read and searched off the main
/// thread, and only the rows in sight are made. It closes when something was chosen, by Escape, or by a click beside it,
/// and deletes itself; the focus is then where it was. Owned by its parent; main thread.
class PalettePopup : public QFrame {
    Q_OBJECT

public:
    /// What assistive technology calls its parts.
    struct Names {
        QString list;
        QString field;
        QString hint; ///< in the empty field
    };
    struct Actions {
        std::function<PaletteRow(const PaletteEntry&)> row;
        std::function<void(const PaletteEntry&)> choose; ///< called once the list is closed
        /// What can be done with any typed text; goes after what was found. May be empty.
        std::function<PaletteEntries(const QString& typed)> always = {};
        std::function<void(const PaletteEntry&)> pin = {}; ///< by Ctrl+P; the list stays open. May be empty.
    };

    /// Shows the first entries of the request until the rest is read. `git` outlives the list.
    PalettePopup(const GitAccess& git, const Names& names, PaletteRequest request, Actions actions, QWidget* parent);
    ~PalettePopup() override;

    /// Shows it below a widget, with room for so many rows and no more than fit.
    void openBelow(const QWidget& button, std::size_t rows);
    /// Shows it at the top of a window, in the middle.
    void openOver(const QWidget& window);

    /// Shows the rows in sight anew, for which more is known.
    void rowsChanged();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void look();
    void showFound();
    void showState();
    void wish(const QModelIndex& index);
    void choose(const QModelIndex& index);
    void open(QPoint place, int width, int rows);

    Actions actions_;
    std::shared_ptr<const PaletteEntries> entries_; ///< never null
    Latest<PaletteRequest, std::shared_ptr<const PaletteEntries>> reading_;
    Latest<PaletteQuery, PaletteFound> search_;
    bool choosesWhenFound_ = false; ///< Return was pressed before the answer came
    PaletteModel* model_;
    QLineEdit* field_;
    RowList* list_;
    QLabel* state_;
};

} // namespace plovik

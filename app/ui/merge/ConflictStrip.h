// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/merge/MergeNames.h"
#include "app/ui/merge/MergeResult.h"

#include <QWidget>

class QMenu;
class QPushButton;

namespace plovik {

class ElidedLabel;

/// The bar above a conflict in a merge: its number, what was decided, and buttons that decide it; one with a menu
/// where there is no room for all. Main thread.
class ConflictStrip : public QWidget {
    Q_OBJECT

public:
    explicit ConflictStrip(QWidget* parent = nullptr);

    struct Shown {
        std::size_t segment = 0;
        int number = 0; ///< from 1
        int count = 0;
        MergeResult::Piece piece;
        bool isWhitespaceOnly = false;
        bool isLineEndsOnly = false;
        bool isCurrent = false;
        MergeNames names;

        bool operator==(const Shown&) const = default;
    };
    void show(const Shown& shown);
    std::size_t segment() const { return shown_.segment; }

    static int heightOfAll();

Q_SIGNALS:
    void chosen(std::size_t segment, gitkit::MergeChoice choice);
    void pressed(std::size_t segment);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void arrange();
    void fillMenu(QMenu& menu, bool isOfAll);
    void addMenu(QPushButton& button, bool isOfAll);

    Shown shown_;
    ElidedLabel* title_;
    QPushButton *left_, *right_, *both_, *none_, *all_;
};

/// Returns what was decided for a conflict: "decided: main".
QString decisionText(const MergeResult::Piece& piece, const MergeNames& names);

} // namespace plovik

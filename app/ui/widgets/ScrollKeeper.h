// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QModelIndex>
#include <QObject>

#include <functional>
#include <string>

class QAbstractItemView;

namespace plovik {

/// Keeps the rows of a list at their places on the screen while its model is reset. It notes the topmost row whenever
/// the user scrolls, because a reset makes the old rows unreachable. For views that scroll by pixel. Owned by its view.
/// Main thread.
class ScrollKeeper : public QObject {
    Q_OBJECT

public:
    using KeyOf = std::function<std::string(const QModelIndex&)>;
    using IndexOf = std::function<QModelIndex(const std::string&)>;

    /// `keyOf` returns a name of a row that survives a reset; `indexOf` returns the row of that name or an invalid
    /// index.
    ScrollKeeper(QAbstractItemView* view, KeyOf keyOf, IndexOf indexOf);

    /// To be called after a reset, when rows have been opened again.
    void restore();
    /// To be called when rows have moved for another reason than scrolling.
    void note();

private:
    QAbstractItemView* view_;
    KeyOf keyOf_;
    IndexOf indexOf_;
    std::string topKey_; ///< empty at the top, where the list stays when rows are added
    int topOffset_ = 0;
    int value_ = 0;
    bool isRestoring_ = false;
};

} // namespace plovik

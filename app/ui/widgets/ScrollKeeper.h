// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QModelIndex>
#include <QObject>

#include <functional>
#include <string>

class QAbstractItemView;

namespace plovik {

/// Keeps the rows of a list where they are on screen while its model is reset around them. Notes the topmost row
/// whenever the user scrolls, because at a reset the old rows cannot be asked any more. For views that scroll by pixel;
/// owned by its view. Main thread.
class ScrollKeeper : public QObject {
    Q_OBJECT

public:
    using KeyOf = std::function<std::string(const QModelIndex&)>;
    using IndexOf = std::function<QModelIndex(const std::string&)>;

    /// `keyOf` names a row across resets, `indexOf` finds it again or gives an invalid index.
    ScrollKeeper(QAbstractItemView* view, KeyOf keyOf, IndexOf indexOf);

    /// To be called after a reset, once rows are as open as they were.
    void restore();
    /// To be called when rows moved for another reason than scrolling.
    void note();

private:
    QAbstractItemView* view_;
    KeyOf keyOf_;
    IndexOf indexOf_;
    std::string topKey_; ///< empty at the very top, where the list stays whatever comes
    int topOffset_ = 0;
    int value_ = 0;
    bool isRestoring_ = false;
};

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>

namespace plovik {

/// Searches a text that a view shows and goes from one match to the next, for FindBar. Main thread.
class Finder : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    struct Query {
        QString text;
        Qt::CaseSensitivity cases = Qt::CaseInsensitive;

        bool operator==(const Query&) const = default;
    };
    /// Goes to the first match at or behind the current one, else at or behind what is in sight. An empty text ends the
    /// search.
    virtual void search(const Query& query) = 0;
    void stop() { search({}); }
    /// Goes to the previous (-1) or next (1) match.
    virtual void step(int direction) = 0;

    virtual int count() const = 0;
    virtual int current() const = 0; ///< from 0; -1 for none
    virtual bool isSearching() const = 0;
    /// Returns whether there may be more matches than are counted.
    virtual bool isCut() const = 0;

Q_SIGNALS:
    /// The count, the current match or the progress has changed.
    void changed();
    /// The last step went on at the other end.
    void wrapped(int direction);
};

} // namespace plovik

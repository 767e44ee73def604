// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

namespace plovik {

class CommitFilesList;
class CommitHeader;

/// A commit's header with the list of its files below. The header is as high as its text, unless the list would get
/// less than it needs, or less than its fair part where both need more than there is. Main thread.
class HeaderOverFiles : public QWidget {
    Q_OBJECT

public:
    /// Takes the widgets over; `summary` stands between the two.
    HeaderOverFiles(CommitHeader* header, QLayout* summary, CommitFilesList* files, QWidget* parent = nullptr);

    /// Divides the height anew; to be called when another commit stands there.
    void share();

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    CommitHeader* header_;
    QLayout* summary_;
    CommitFilesList* files_;
};

} // namespace plovik

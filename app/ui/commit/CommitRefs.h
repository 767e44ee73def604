// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/history/RefBadges.h"

#include <QWidget>

namespace plovik {

/// The branches and tags of a commit as badges on one line; hidden when there are none. Main thread.
class CommitRefs : public QWidget {
    Q_OBJECT

public:
    explicit CommitRefs(QWidget* parent = nullptr);

    void setLabels(const std::vector<gitkit::RefLabel>& labels);
    const std::vector<gitkit::RefLabel>& labels() const { return labels_; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return {60, sizeHint().height()}; }

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    RefBadges laidOut() const;

    std::vector<gitkit::RefLabel> labels_;
};

} // namespace plovik

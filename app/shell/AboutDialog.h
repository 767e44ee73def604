// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/await/Await.h"

#include <QCoroTask>
#include <QDialog>

#include <vector>

class QLabel;
class QFormLayout;

namespace plovik {

/// Says what this program is, its licence, and what it works with, which can be copied for a report. Deletes itself
/// when it closes. Main thread.
class AboutDialog : public QDialog {
    Q_OBJECT

public:
    explicit AboutDialog(QWidget* parent);

    /// Returns the version and what it works with, a line each.
    QString details() const;

private:
    void addFact(QFormLayout& facts, const QString& name, const QString& text);
    QCoro::Task<> readingGit();

    std::vector<QLabel*> names_;
    std::vector<QLabel*> facts_;
    QLabel* git_ = nullptr; ///< one of the facts, which is known after a moment
    AliveToken alive_ = std::make_shared<const std::monostate>();
};

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/welcome/BeginDialog.h"

class QLineEdit;

namespace plovik {

class FolderField;

/// Asks for a folder and the name of the first branch, and makes an empty repository. Main thread.
class CreateDialog : public BeginDialog {
    Q_OBJECT

public:
    explicit CreateDialog(QWidget* parent);

    void fill(const std::filesystem::path& folder);
    /// Confirms as soon as the name of the first branch is known.
    void beginSoon();

protected:
    QString problem() const override;
    QString note() const override;
    bool isComplete() const override;
    void start(RepositoryMaker& maker, RepositoryMaker::Made made) override;

private:
    void branchKnown(const std::string& name);

    FolderField* folder_;
    QLineEdit* branch_;
    bool isKnown_ = false; ///< what the configuration says of the branch
    bool beginsSoon_ = false;
};

} // namespace plovik

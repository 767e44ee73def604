// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/dialogs/Sheet.h"

class QCheckBox;
class QComboBox;
class QLineEdit;

namespace plovik {

/// Asks for the name and the addresses of a new remote, or changes those of one that is there. Main thread.
class RemoteDialog : public Sheet {
    Q_OBJECT

public:
    RemoteDialog(RepositoryStore& store, RemoteSheet sheet, QWidget* parent);

    void submit() override;

protected:
    QString problem() const override;
    QString note() const override;
    bool isComplete() const override;
    std::optional<Verb> verb() const override { return Verb::editRemote; }

private:
    void show(const gitkit::RemoteSettings& remote);
    gitkit::RemoteSettings wanted() const;
    bool isNew() const { return sheet_.known.empty(); }

    RemoteSheet sheet_;
    gitkit::RemoteSettings shown_; ///< as it is before; without a name for a new one
    QComboBox* which_;
    QLineEdit* name_;
    QLineEdit* url_;
    QLineEdit* pushUrl_;
    QCheckBox* isFetched_;
};

} // namespace plovik

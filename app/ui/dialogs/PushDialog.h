// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Push.h"
#include "app/store/SheetKind.h"
#include "app/store/readers/Latest.h"
#include "app/ui/dialogs/Sheet.h"

class QCheckBox;
class QComboBox;
class QLineEdit;
class QListWidget;

namespace plovik {

/// Asks what is pushed where: the remote and the name there, the upstream, tags that go along, and whether what is there is
/// replaced, which it lists before. Main thread.
class PushDialog : public Sheet {
    Q_OBJECT

public:
    PushDialog(RepositoryStore& store, PushSheet sheet, QWidget* parent);

    void submit() override;

protected:
    QString problem() const override;
    QString note() const override;
    bool isComplete() const override;
    std::optional<Verb> verb() const override { return Verb::push; }

private:
    void layOut();
    gitkit::RemoteBranch target() const;
    gitkit::PushQuestion question() const;
    void askAgain();
    void showPreview();
    const gitkit::PushPreview* preview() const;
    bool replaces() const;
    QString whatIsSent(const gitkit::PushPreview& found) const;
    QString whatIsReplaced(const gitkit::PushPreview& found) const;
    static void showChoice(QCheckBox& box, const QString& text);

    PushSheet sheet_;
    QComboBox* remote_;
    QLineEdit* name_;
    QCheckBox* upstream_;
    QCheckBox* tags_;
    QCheckBox* replace_;
    QCheckBox* along_;
    QListWidget* list_;
    Latest<gitkit::PushQuestion, gitkit::PushPreview> preview_;
    QPropertyNotifier notifier_;
};

} // namespace plovik

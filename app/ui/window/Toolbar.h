// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"
#include "app/ui/commands/Commands.h"

#include <QProperty>
#include <QWidget>

#include <map>
#include <vector>

class QHBoxLayout;

namespace plovik {

class ActivityView;
class Foretelling;
class MenuTarget;
class ToolButton;

/// The row at the top of the repository window: the repository with a list of others, the branch with a list to switch
/// to, the commands that are used most, and what runs. Where the room is short the commands show their pictures alone.
/// Main thread.
class Toolbar : public QWidget {
    Q_OBJECT

public:
    /// `store` outlives the toolbar.
    explicit Toolbar(RepositoryStore& store, QWidget* parent = nullptr);

    /// Sets what opens other repositories. `application` outlives the toolbar.
    void setApplication(MenuTarget& application) { application_ = &application; }

    QSize minimumSizeHint() const override;

    // Open the lists of the two names.
    Q_INVOKABLE void switchRepository();
    Q_INVOKABLE void switchBranch();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void makeButtons(QHBoxLayout& row);
    void statusChanged();
    void updateButtons();
    void fitTitles();

    RepositoryStore& store_;
    MenuTarget* application_ = nullptr;
    ToolButton* project_;
    ToolButton* branch_;
    ActivityView* activity_;
    std::map<CommandId, ToolButton*> buttons_;
    Foretelling* foretelling_;
    QString pullWords_; ///< what a pull would do, while the pointer is on its button
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik

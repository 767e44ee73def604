// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"
#include "app/ui/widgets/ContextMenuSource.h"

#include <QPointer>
#include <QProperty>
#include <QWidget>

#include <vector>

class QLabel;
class QMenu;
class QPushButton;

namespace plovik {

class IconButton;
class Spinner;

/// The menu of what can be done with a commit message, and the button that has one written, which is shown only while the
/// settings enable it. While a message is being written, a spinner and "Cancel" take their place. Main thread.
class MessageButtons : public QWidget, public ContextMenuSource {
    Q_OBJECT

public:
    /// `store` outlives the buttons.
    explicit MessageButtons(RepositoryStore& store, QWidget* parent = nullptr);

    QWidget* firstInTabOrder() const;

    /// Returns the menu, in which what changes the message is disabled while a message is written or committed.
    QMenu* makeContextMenu() override;

Q_SIGNALS:
    /// Something was added at the end of the body, where the user may want to go on.
    void bodyExtended();

private:
    void arrange();
    void write();
    void showMenu();
    void showPeople();
    void showState();
    void addPeople(QMenu& menu);
    void showMessages();
    QCoro::Task<> addingMessages(QPointer<QMenu> menu);
    QString whyNotChange() const;
    void extendBody(const QString& trailer);
    QCoro::Task<> signingOff();

    RepositoryStore& store_;
    IconButton* write_;
    IconButton* more_;
    Spinner* spinner_;
    QLabel* writing_;
    QPushButton* cancel_;
    std::vector<QPropertyNotifier> notifiers_;
};

/// Starts writing a message for the staged changes.
void writeCommitMessage(RepositoryStore& store);

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/CommandLog.h"
#include "app/store/Confirmation.h"
#include "app/store/Failure.h"
#include "app/store/InspectedFile.h"
#include "app/store/Observed.h"
#include "app/store/SheetKind.h"
#include "app/store/SidebarItem.h"

#include <QString>

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace plovik {

/// What the user of one window looks at and is asked: selections, the sheet, the question, the alert, the notice, the
/// panels. It knows no other part; the parts that follow a selection listen to it. Owned by the store; main thread.
class WindowState {
public:
    WindowState() = default;
    WindowState(const WindowState&) = delete;
    WindowState& operator=(const WindowState&) = delete;

    // Selections. What the user selects is told to the listeners; what follows from something else is not.

    Observed<SidebarItem, WindowState> selection{SidebarItem::workingCopy()};
    Observed<std::set<std::string>, WindowState> selectedPaths;
    Observed<std::optional<std::string>, WindowState> selectedCommit;
    Observed<std::optional<std::string>, WindowState> selectedStash;

    /// How the user came to a selection: straight, or past it on the way to another, as held keys do.
    enum class Step { straight, passing };
    struct Listener {
        std::function<void(Step)> moved = {}; ///< the selection, or what is selected in it, has changed
        std::function<void()> chosen = {};    ///< an item of the sidebar was chosen, perhaps the same again
    };
    /// Listeners are called in the order in which they were added. They outlive the window's use.
    void listen(Listener listener) { listeners_.push_back(std::move(listener)); }

    /// The user chooses what the sidebar shows.
    void select(SidebarItem item);
    void selectPaths(std::set<std::string> paths) { selectedPaths = std::move(paths); }
    void selectCommit(std::optional<std::string> hash, Step step = Step::straight);
    void selectStash(std::optional<std::string> hash);

    // The same without telling the listeners: a selection that follows from something else.
    void follow(SidebarItem item) { selection = std::move(item); }
    void followCommit(std::optional<std::string> hash) { selectedCommit = std::move(hash); }
    void followStash(std::optional<std::string> hash) { selectedStash = std::move(hash); }

    // What stands over the window.

    Observed<std::optional<SheetKind>, WindowState> sheet;
    void showSheet(SheetKind kind) { sheet = std::move(kind); }
    void closeSheet() { sheet = std::nullopt; }

    Observed<std::optional<Confirmation>, WindowState> confirmation;
    void ask(Confirmation question) { confirmation = std::move(question); }
    /// Takes the question away, and then does what it asked about. Does nothing when that question stands no more.
    void confirm(const QUuid& id);
    void dismissQuestion() { confirmation = std::nullopt; }

    /// The sentence of `failure`, which views show as an alert.
    Observed<std::optional<QString>, WindowState> errorMessage;
    /// The command that `errorMessage` tells of, where there is one.
    Observed<std::optional<CommandLog::Number>, WindowState> failedCommand;
    void report(const Failure& failure);
    void dismissError() { errorMessage = std::nullopt; }

    /// Something to tell quietly; empty again once it no longer matters.
    Observed<QString, WindowState> notice;
    /// Tells a sentence, also when it was told before.
    void tell(const QString& sentence);
    void clearNotice() { notice = QString(); }

    // Panels.

    /// The file that the inspector shows; the inspector is closed without one.
    Observed<std::optional<InspectedFile>, WindowState> inspected;
    void inspect(InspectedFile file) { inspected = std::move(file); }
    void closeInspector() { inspected = std::nullopt; }

    /// Whether the panel with the commands is open.
    Observed<bool, WindowState> showsCommandLog{false};
    void showCommandLog(bool shows) { showsCommandLog = shows; }
    /// The command that is selected there.
    Observed<std::optional<CommandLog::Number>, WindowState> shownCommand;
    void showCommand(std::optional<CommandLog::Number> number) { shownCommand = number; }

private:
    void moved(Step step);

    std::vector<Listener> listeners_;
};

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/platform/Editors.h"

#include <QString>

#include <functional>
#include <optional>
#include <vector>

class QWidget;

namespace plovik {

/// What the picker of the editor needs to know about applications. All functions are called on the main thread.
struct EditorChoices {
    /// Returns the editors found on this machine, in the order in which they are shown.
    std::function<std::vector<editors::Application>()> installed;
    /// Returns the application at a stored path; nullopt for an empty path and for one that does not exist any more.
    std::function<std::optional<editors::Application>(const QString& path)> at;
    /// Lets the user pick any application. Returns at once; `chosen` is not called when the user cancels.
    std::function<void(QWidget* parent, std::function<void(editors::Application)> chosen)> choose;
};

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/platform/Editors.h"

#include <QString>

#include <functional>
#include <optional>
#include <vector>

class QWidget;

namespace plovik {

/// What the picker of the editor asks of whoever knows the applications. All are called on the main thread.
struct EditorChoices {
    /// The editors found on this machine, in the order to show them in.
    std::function<std::vector<editors::Application>()> installed;
    /// The application at a stored path; none for an empty path and for one that is there no more.
    std::function<std::optional<editors::Application>(const QString& path)> at;
    /// Lets the user pick any application. Returns at once; `chosen` is not called when the user cancels.
    std::function<void(QWidget* parent, std::function<void(editors::Application)> chosen)> choose;
};

} // namespace plovik

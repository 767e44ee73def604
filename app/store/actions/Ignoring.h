// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Ignore.h"
#include "app/store/Staging.h"
#include "app/store/actions/Actors.h"

#include <QString>

#include <string>
#include <vector>

namespace plovik::actions {

enum class IgnoreWhat {
    files,  ///< themselves
    ending, ///< all files that end like them
    folder, ///< the folders that they are in
};

/// What is offered for some changed files.
struct IgnoreChoice {
    QString title; ///< as in a menu
    std::vector<std::string> patterns;
    QString patternsInLines; ///< to be shown
    QString whyNot;          ///< a sentence; empty when it can be done
};
IgnoreChoice ignoreChoice(const Staging::Files& files, IgnoreWhat what);

/// Adds the patterns to a list. Asks first what to do about files that git tracks.
void ignore(Actors actors, const Staging::Files& files, IgnoreWhat what, gitkit::IgnorePlace place);

} // namespace plovik::actions

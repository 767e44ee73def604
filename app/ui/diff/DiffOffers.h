// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/diff/DiffAction.h"

#include <QString>

#include <vector>

namespace plovik {

class DiffController;

/// A button or a menu entry that does something with a part of a diff. Value.
struct DiffOffer {
    DiffAction::Verb verb = DiffAction::Verb::stage;
    DiffAction::Part part = DiffAction::Part::hunk;
    QString title;
    QString name;    ///< for assistive technology; does not depend on a count
    QString refusal; ///< why it is disabled; empty when it is enabled

    bool operator==(const DiffOffer&) const = default;
};

/// Returns what is offered in the bar above a diff: for the selected lines, else for all hunks; or the sides of a
/// conflict.
std::vector<DiffOffer> barOffers(const DiffController& controller);
/// Returns what is offered in the header of every hunk.
std::vector<DiffOffer> hunkOffers(const DiffController& controller);
/// Returns what is offered in the context menu: for the selected lines and for the active hunk.
std::vector<DiffOffer> menuOffers(const DiffController& controller);

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/actions/Actors.h"

namespace plovik::actions {

void fetch(Actors actors);
void pull(Actors actors);
/// Pushes the current branch. Without an upstream, pushes to "origin" or else to the first remote, and makes that the
/// upstream. Reports when there is no branch or no remote.
/// Fetches a pull or merge request by its number, and checks it out as a new branch.
struct Request {
    std::string remote;
    int number = 0;
    std::string branch;
};
void checkOutRequest(Actors actors, const Request& request);
void push(Actors actors);

} // namespace plovik::actions

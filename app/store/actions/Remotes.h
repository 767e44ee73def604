// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/RemoteSettings.h"
#include "app/store/actions/Actors.h"

#include <functional>

namespace plovik::actions {

void fetch(Actors actors);
void pull(Actors actors);
/// Shows the settings of the remotes, to be changed. `remote` is shown first.
enum class RemoteFocus { address, name };
void askToEditRemote(Actors actors, const std::string& remote, RemoteFocus focus = RemoteFocus::address);
/// Adds a remote and fetches it, unless a fetch of all leaves it out.
void addRemote(Actors actors, const gitkit::RemoteSettings& added);
void changeRemote(Actors actors, const gitkit::RemoteSettings& before, const gitkit::RemoteSettings& after);
/// Asks first, and names what goes with it.
void confirmRemoveRemote(Actors actors, const std::string& remote);
/// Fetches a pull or merge request by its number, and checks it out as a new branch.
struct Request {
    std::string remote;
    int number = 0;
    std::string branch;
};
void checkOutRequest(Actors actors, const Request& request);
/// Fetches what the diffs of a commit need in a partial clone, and calls `then` once that is here.
void downloadContents(Actors actors, const std::string& hash, std::function<void()> then);
/// Replays the own commits on top of the upstream's, and calls `then` once that has gone well.
void rebaseOnUpstream(Actors actors, std::function<void()> then);

} // namespace plovik::actions

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace gitkit {

class GitRepository;

/// Returns the text of the file that `commit.template` names, with which every new message begins, without its
/// comments; empty when there is no such text. It begins with an empty line when the template leaves the first line to
/// the subject. Any thread; blocks, and throws as the methods of GitRepository do.
std::string commitTemplate(const GitRepository& repo);

} // namespace gitkit

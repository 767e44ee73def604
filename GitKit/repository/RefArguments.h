// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace gitkit {

class GitRunner;

// How names become arguments of git: a name that begins with "-" is never read as an option, and a name that exists is
// read as the very ref that it names. All of these throw GitError, which tells `command` as the one that failed.

/// A revision in any form that git reads. Throws when it begins with "-".
std::string revisionArgument(const char* command, const std::string& revision);

/// The commit that a revision stands for: an annotated tag's object stands for its commit. Throws as
/// revisionArgument() does.
std::string commitArgument(const char* command, const std::string& revision);

/// A revision that can be taken for no other: throws unless it is a full ref name, a hash, or HEAD.
std::string exactArgument(const char* command, const std::string& revision);

/// The short name of a ref that is about to be made. Throws when git would read it as an option or as another
/// revision; git itself refuses whatever else is no name.
std::string newNameArgument(const char* command, const std::string& name);

/// The short name of a ref if git reads it as this very ref, otherwise the full name. For messages that git writes.
std::string shortestName(const GitRunner& runner, const std::string& ref);

} // namespace gitkit

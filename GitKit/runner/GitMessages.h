// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/ErrorKind.h"
#include "GitKit/runner/GitError.h"
#include "GitKit/runner/GitOutput.h"

#include <string>
#include <string_view>
#include <vector>

namespace gitkit {

/// What a failed run of `git COMMAND` means. Reads git's own sentences, which every run of git prints in English; this
/// is the only place that knows them.
ErrorKind errorKind(std::string_view command, const GitOutput& output);

/// Whether a failed run of `git COMMAND` has changed nothing because another git holds the lock of the index.
bool isKeptFromIndex(std::string_view command, const GitOutput& output);

/// The full names of the refs that git left out of a list because it could not read them.
std::vector<std::string> brokenRefs(const GitOutput& output);

/// The repositories inside this one that a run of `git add` staged, with its warning, as one commit each.
std::vector<std::string> embeddedRepositories(const GitOutput& output);

/// Whether a program that git wanted to run, as one that checks signatures, was not there.
bool hasMissedProgram(const GitOutput& output);

/// What a server has said, line by line.
std::vector<std::string> serverLines(const GitOutput& output);

/// The path of the lock that git could not take, as it tells it; empty when it tells of none.
std::string lockNamedIn(std::string_view message);

/// Returns whether a refusal, of git's or our own, names something in quotes.
bool namesInQuotes(std::string_view message, const std::string& name);

/// The failure that a run has ended with. `command` is git's subcommand.
GitError failureOf(const std::string& command, const GitOutput& output);

} // namespace gitkit

// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/Signatures.h"

#include "GitKit/Text.h"
#include "GitKit/parsers/Fields.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/RefArguments.h"
#include "GitKit/runner/GitMessages.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <stop_token>
#include <thread>
#include <utility>

namespace gitkit {

namespace {

using State = Signature::State;
using Obstacle = Signature::Obstacle;

/// Returns the header of a commit's bytes: its lines up to the first empty one.
std::string_view headerOfCommit(std::string_view commit) { return commit.substr(0, commit.find("\n\n") + 1); }

bool isOfSsh(std::string_view commit)
{
    return headerOfCommit(commit).find("-----BEGIN SSH SIGNATURE-----") != std::string_view::npos;
}

/// Takes the next object from what `cat-file --batch` has printed: "HASH TYPE SIZE", its bytes, a line end.
std::optional<std::pair<std::string_view, std::string_view>> takeObject(std::string_view& rest)
{
    const std::size_t end = rest.find('\n');
    if (end == std::string_view::npos)
        return std::nullopt;
    const std::string_view line = rest.substr(0, end);
    rest.remove_prefix(end + 1);
    const std::string_view hash = line.substr(0, line.find(' '));
    const auto fields = splitFields<3>(line, ' ');
    std::size_t size = 0;
    if (!fields ||
        std::from_chars(fields->at(2).data(), fields->at(2).data() + fields->at(2).size(), size).ec != std::errc())
        return std::pair(hash, std::string_view()); // missing
    const std::string_view bytes = rest.substr(0, size);
    rest.remove_prefix(std::min(size + 1, rest.size()));
    return std::pair(hash, fields->at(1) == "commit" ? bytes : std::string_view());
}

/// Returns settings with the programs that the user's own configuration names. What is in the repository may come from
/// somebody else, and selecting a commit must not run it.
std::vector<std::string> ownPrograms(const GitRepository& repo)
{
    std::array<std::pair<std::string, std::string>, 3> programs{
        {{"gpg.openpgp.program", "gpg"}, {"gpg.ssh.program", "ssh-keygen"}, {"gpg.x509.program", "gpgsm"}}};
    const GitOutput listed =
        repo.runner().output({"config", "--show-scope", "-z", "--get-regexp", "^gpg\\.(.*\\.)?program$"});
    NulFields fields(listed.stdoutBytes);
    while (const auto entry = fields.take<2>()) {
        const auto& [scope, setting] = *entry;
        const std::string key(setting.substr(0, setting.find('\n')));
        if ((scope != "global" && scope != "system") || key.size() >= setting.size())
            continue;
        for (auto& [name, program] : programs) {
            if (key == name || (key == "gpg.program" && name == "gpg.openpgp.program"))
                program = setting.substr(key.size() + 1);
        }
    }
    std::vector<std::string> settings;
    for (const auto& [name, program] : programs)
        settings.push_back(name + '=' + program);
    return settings;
}

/// Requests a stop when the time is over, or when the run's own context asks for one.
class TimeLimit {
public:
    TimeLimit(const std::stop_token& outer, std::chrono::milliseconds limit)
        : forwarded_(outer, [this] { stop_.request_stop(); }), clock_([this, limit](const std::stop_token& ended) {
              std::unique_lock lock(mutex_);
              if (!condition_.wait_for(lock, ended, limit, [&ended] { return ended.stop_requested(); })) {
                  isOver_ = true;
                  stop_.request_stop();
              }
          })
    {}

    std::stop_token token() const { return stop_.get_token(); }
    bool isOver()
    {
        const std::lock_guard lock(mutex_);
        return isOver_;
    }

private:
    std::stop_source stop_;
    std::mutex mutex_;
    std::condition_variable_any condition_;
    bool isOver_ = false;
    std::stop_callback<std::function<void()>> forwarded_;
    std::jthread clock_;
};

/// Reads git's letter. Git calls a signature bad, or says that there is none, also where nothing could check it.
Signature readLetter(std::string_view letter, bool isProgramMissing, bool isSsh)
{
    const char sign = letter.empty() ? 'N' : letter.front();
    if (isProgramMissing)
        return {State::cannotCheck, Obstacle::noProgram};
    switch (sign) {
    case 'G':
        return {State::good};
    case 'U':
        return {State::unknownKey};
    case 'X':
    case 'Y':
    case 'R':
        return {State::outdated};
    case 'B':
        return {State::bad};
    case 'E':
        return {State::cannotCheck, Obstacle::noKey};
    default:
        return {State::cannotCheck, isSsh ? Obstacle::noAllowedSigners : Obstacle::other};
    }
}

Signature checkNow(const GitRepository& repo, const std::string& commit, bool isSsh)
{
    RunOptions options;
    options.settings = ownPrograms(repo);
    const GitOutput checked =
        repo.runner().output({"log", "-1", "--no-walk", "--format=%G?%x00%GS%x00%GK%x00%GF", commit, "--"}, options);
    NulFields fields(withoutLineEnd(checked.stdoutBytes));
    const std::string_view letter = fields.next().value_or(std::string_view());
    Signature signature = readLetter(letter, hasMissedProgram(checked), isSsh);
    signature.signer = fields.next().value_or(std::string_view());
    signature.key = fields.next().value_or(std::string_view());
    if (const auto print = fields.next(); print && !print->empty())
        signature.key = *print;
    return signature;
}

} // namespace

bool hasSignature(std::string_view commit)
{
    const std::string_view header = headerOfCommit(commit);
    return header.find("\ngpgsig ") != std::string_view::npos ||
           header.find("\ngpgsig-sha256 ") != std::string_view::npos;
}

std::vector<std::string> signedAmong(const GitRepository& repo, const std::vector<std::string>& commits)
{
    RunOptions options;
    options.input = std::string();
    for (const std::string& commit : commits)
        *options.input += commit + '\n';
    const std::string printed = repo.runner().bytes({"cat-file", "--batch"}, options);
    std::string_view rest = printed;
    std::vector<std::string> found;
    while (const auto object = takeObject(rest)) {
        if (hasSignature(object->second))
            found.emplace_back(object->first);
    }
    return found;
}

Signature checkedSignature(const GitRepository& repo, const std::string& commit, std::chrono::milliseconds limit)
{
    const std::string bytes = repo.runner().bytes({"cat-file", "commit", exactArgument("cat-file", commit)});
    if (!hasSignature(bytes))
        return {};
    TimeLimit clock(repo.runner().context().stop, limit);
    RunContext context = repo.runner().context();
    context.stop = clock.token();
    try {
        return checkNow(repo.in(context), commit, isOfSsh(bytes));
    } catch (const RunStopped&) {
        if (!clock.isOver())
            throw;
        return {State::cannotCheck, Obstacle::tooSlow};
    }
}

} // namespace gitkit

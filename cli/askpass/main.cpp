// SPDX-License-Identifier: GPL-3.0-or-later
// Asks what git or ssh want to know in the window whose action started them, and prints the answer.
//
//   plovik-askpass PROMPT
//
// PLOVIK_ASKPASS is "TOKEN:SOCKET". It sends token, kind, destination and prompt, each ended by a zero byte, and gets
// "+ANSWER\n". Everything else, the end of the connection above all, is a refusal: status 1 and no word, so that git
// fails with its own sentence.

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <poll.h>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr std::size_t mostOfPrompt = 16 * 1024;

/// Holds an answer, and leaves nothing of it in memory.
class Answer {
public:
    Answer() = default;
    ~Answer() { ::explicit_bzero(bytes_.data(), bytes_.size()); }
    Answer(const Answer&) = delete;
    Answer& operator=(const Answer&) = delete;

    char* free() { return bytes_.data() + size_; }
    std::size_t room() const { return bytes_.size() - size_; }
    void grow(std::size_t read) { size_ += read; }
    std::string_view text() const { return {bytes_.data(), size_}; }

private:
    std::array<char, 64 * 1024> bytes_{};
    std::size_t size_ = 0;
};

std::string_view variable(const char* name)
{
    const char* const value = std::getenv(name);
    return value ? value : "";
}

/// Returns how many arguments from `at` on are one of ssh's options with its value; 0 where the options end.
std::size_t optionAt(const std::vector<std::string_view>& arguments, std::size_t at)
{
    constexpr std::string_view withValue = "BbcDEeFIiJLlmOoPpQRSWw";
    const std::string_view argument = arguments[at];
    if (argument.size() < 2 || argument.front() != '-')
        return 0;
    const std::size_t option = argument.find_first_of(withValue, 1);
    return option + 1 == argument.size() ? 2 : 1; // a value may follow in the same argument
}

/// Returns the destination that a process has in its command line when it is ssh, or a script that stands for ssh, as git
/// starts it; otherwise an empty text. The system may not tell.
std::string destinationOf(long process)
{
    std::ifstream stream("/proc/" + std::to_string(process) + "/cmdline", std::ios::binary);
    const std::string line((std::istreambuf_iterator<char>(stream)), {});
    std::vector<std::string_view> arguments;
    for (std::string_view rest = line; !rest.empty();) {
        const std::size_t end = std::min(rest.find('\0'), rest.size());
        arguments.push_back(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    // Git gives ssh options, the destination and then one command. A script that stands for ssh comes behind its shell.
    for (std::size_t first = 1; first < arguments.size(); ++first) {
        std::size_t at = first;
        while (at < arguments.size() && arguments[at] != "--" && optionAt(arguments, at) > 0)
            at += optionAt(arguments, at);
        at += at < arguments.size() && arguments[at] == "--" ? 1 : 0;
        const bool isLast = at + 2 == arguments.size();
        if (isLast && (arguments[at + 1].starts_with("git-") || arguments[at + 1].starts_with("git ")))
            return std::string(arguments[at]);
    }
    return {};
}

/// Returns 0 when the system does not tell.
long parentOf(long process)
{
    std::ifstream stream("/proc/" + std::to_string(process) + "/stat", std::ios::binary);
    const std::string line((std::istreambuf_iterator<char>(stream)), {});
    // The name, in brackets, may hold anything. Behind it come the state and the parent.
    const std::size_t name = line.rfind(") ");
    return name == std::string::npos || line.size() < name + 4 ? 0 : std::strtol(line.c_str() + name + 4, nullptr, 10);
}

/// Returns the host that ssh connects to when it is ssh that asks: a question about a key does not name it. It is not
/// said when a script that stands for ssh was given another one by git: the user knows only the address of the remote.
std::string destination()
{
    long process = ::getppid();
    std::string actual = destinationOf(process);
    for (std::string given = actual; !given.empty() && process > 0; given = destinationOf(process)) {
        if (given != actual)
            return {};
        process = parentOf(process);
    }
    return actual;
}

int connected(std::string_view path)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.empty() || path.size() >= sizeof address.sun_path)
        return -1;
    path.copy(address.sun_path, path.size());
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (socket < 0 || ::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        return -1;
    return socket;
}

bool sendAll(int socket, std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t sent = ::send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent < 0 && errno != EINTR)
            return false;
        bytes.remove_prefix(sent < 0 ? 0 : static_cast<std::size_t>(sent));
    }
    return true;
}

bool writeAll(std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t written = ::write(STDOUT_FILENO, bytes.data(), bytes.size());
        if (written < 0 && errno != EINTR)
            return false;
        bytes.remove_prefix(written < 0 ? 0 : static_cast<std::size_t>(written));
    }
    return true;
}

/// Waits for the whole answer; false when nobody is there any more who gives it, or who reads it.
bool receive(int socket, Answer& answer)
{
    // Without events a pipe still tells that its reader is gone.
    std::array<pollfd, 2> watched{{{socket, POLLIN, 0}, {STDOUT_FILENO, 0, 0}}};
    while (!answer.text().ends_with('\n')) {
        if (::poll(watched.data(), watched.size(), -1) < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        if (watched[1].revents != 0)
            return false;
        const ssize_t read = ::read(socket, answer.free(), answer.room());
        if (read < 0 && errno == EINTR)
            continue;
        if (read <= 0)
            return false;
        answer.grow(static_cast<std::size_t>(read));
    }
    return answer.text().starts_with('+');
}

} // namespace

int main(int argc, char** argv)
{
    const std::string_view address = variable("PLOVIK_ASKPASS");
    const std::size_t colon = address.find(':');
    if (argc < 2 || colon == std::string_view::npos)
        return 1;
    const int socket = connected(address.substr(colon + 1));
    if (socket < 0)
        return 1;
    std::string question;
    const std::string asker = destination();
    for (const std::string_view part : {address.substr(0, colon), variable("SSH_ASKPASS_PROMPT"),
                                        std::string_view(asker), std::string_view(argv[1]).substr(0, mostOfPrompt)})
        question.append(part).push_back('\0');
    Answer answer;
    if (!sendAll(socket, question) || !receive(socket, answer))
        return 1;
    return writeAll(answer.text().substr(1)) ? 0 : 1;
}

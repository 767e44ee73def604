// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/CommandLine.h"

#include "app/store/Secrets.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <ranges>
#include <span>
#include <string_view>

namespace plovik {

namespace {

using Arguments = std::span<const std::string>;

/// Leaves out the options that every command gets, which say nothing about this one.
Arguments withoutPins(Arguments arguments)
{
    constexpr std::array<std::string_view, 2> pins{"core.quotepath=false", "color.ui=false"};
    while (arguments.size() > 1 && arguments[0] == "-c" && std::ranges::find(pins, arguments[1]) != pins.end())
        arguments = arguments.subspan(2);
    return arguments;
}

Arguments withoutOptions(Arguments arguments)
{
    while (!arguments.empty() && arguments.front().starts_with('-'))
        arguments = arguments.subspan(arguments.front() == "-c" && arguments.size() > 1 ? 2 : 1);
    return arguments;
}

bool isPlain(char character)
{
    constexpr std::string_view signs = "@%+=:,./-_";
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
           (character >= '0' && character <= '9') || signs.find(character) != std::string_view::npos;
}

/// Returns whether a terminal would not take the pasted character as text.
bool isControl(char character)
{
    return (static_cast<unsigned char>(character) < ' ' && character != '\n') || character == '\x7f';
}

/// Returns the number of bytes of the UTF-8 character at the beginning, or 0 when it is malformed.
std::size_t characterSize(std::string_view text)
{
    const auto lead = static_cast<unsigned char>(text.front());
    const std::size_t size = lead < 0x80                   ? 1
                             : lead >= 0xC2 && lead < 0xE0 ? 2
                             : lead >= 0xE0 && lead < 0xF0 ? 3
                             : lead >= 0xF0 && lead < 0xF5 ? 4
                                                           : 0;
    if (size == 0 || text.size() < size)
        return 0;
    const auto follows = [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; };
    return std::ranges::all_of(text.substr(1, size - 1), follows) ? size : 0;
}

/// Characters that cannot stand in quotes go through printf. Line ends do not, because the shell drops them at the end
/// of printf's output.
std::string shellWord(std::string_view word)
{
    if (!word.empty() && word.front() != '=' && std::ranges::all_of(word, isPlain))
        return std::string(word);
    std::string line = "'";
    while (!word.empty()) {
        const std::size_t size = characterSize(word);
        if (size == 0 || isControl(word.front())) {
            std::array<char, 8> octal{};
            std::snprintf(octal.data(), octal.size(), "\\%03o",
                          static_cast<unsigned>(static_cast<unsigned char>(word.front())));
            line += "'\"$(printf '";
            line += octal.data();
            line += "')\"'";
            word.remove_prefix(1);
            continue;
        }
        line += word.front() == '\'' ? std::string_view("'\\''") : word.substr(0, size);
        word.remove_prefix(size);
    }
    return line + '\'';
}

std::string joined(Arguments arguments, std::size_t mostBytes)
{
    std::string line = "git";
    for (const std::string& argument : arguments) {
        if (line.size() > mostBytes)
            break;
        line += ' ';
        line += shellWord(withoutSecrets(argument));
    }
    return line;
}

} // namespace

std::string shellLine(const std::filesystem::path& directory, const std::vector<std::string>& arguments)
{
    return "cd " + shellWord(directory.native()) + " && " + gitLine(arguments);
}

std::string gitLine(const std::vector<std::string>& arguments)
{
    return joined(arguments, std::numeric_limits<std::size_t>::max());
}

std::string shownCommand(const std::vector<std::string>& arguments, std::size_t mostBytes)
{
    return joined(withoutPins(arguments), mostBytes);
}

bool isRead(const std::vector<std::string>& arguments)
{
    constexpr std::array<std::string_view, 20> reads{
        "blame",        "cat-file",  "check-ignore", "check-ref-format", "config",     "diff",     "diff-tree",
        "for-each-ref", "log",       "ls-files",     "ls-tree",          "merge-base", "name-rev", "remote",
        "rev-list",     "rev-parse", "show",         "status",           "var",        "version"};
    const Arguments words = withoutOptions(arguments);
    if (words.empty())
        return true;
    if (std::ranges::find(reads, words.front()) != reads.end())
        return true;
    if (words.front() == "stash")
        return words.size() > 1 && words[1] == "list";
    if (words.front() == "hash-object")
        return std::ranges::find(words, "-w") == words.end();
    // With one name it reads, with a second name it writes.
    return words.front() == "symbolic-ref" &&
           std::ranges::count_if(words.subspan(1), [](const std::string& word) { return !word.starts_with('-'); }) < 2;
}

} // namespace plovik

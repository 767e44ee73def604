// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/FileUri.h"

#include <charconv>

namespace plovik {

namespace {

constexpr std::string_view kScheme = "file://";

bool isPlain(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
           std::string_view("-._~/").find(c) != std::string_view::npos;
}

} // namespace

std::string fileUri(const std::filesystem::path& path)
{
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string uri(kScheme);
    for (const char c : path.native()) {
        if (isPlain(c)) {
            uri += c;
            continue;
        }
        const auto byte = static_cast<unsigned char>(c);
        uri += '%';
        uri += digits[byte >> 4];
        uri += digits[byte & 15];
    }
    return uri;
}

std::optional<std::filesystem::path> pathOfFileUri(std::string_view uri)
{
    if (!uri.starts_with(kScheme))
        return std::nullopt;
    uri.remove_prefix(kScheme.size());
    if (uri.starts_with("localhost/"))
        uri.remove_prefix(std::string_view("localhost").size());
    if (!uri.starts_with('/'))
        return std::nullopt;

    std::string path;
    for (std::size_t at = 0; at < uri.size(); ++at) {
        if (uri[at] != '%') {
            path += uri[at];
            continue;
        }
        unsigned char byte = 0;
        const std::string_view digits = uri.substr(at + 1, 2);
        const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), byte, 16);
        if (digits.size() != 2 || error != std::errc() || end != digits.data() + 2 || byte == 0)
            return std::nullopt;
        path += static_cast<char>(byte);
        at += 2;
    }
    return path;
}

} // namespace plovik

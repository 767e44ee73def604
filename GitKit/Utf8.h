#pragma once

#include <string>
#include <string_view>

namespace gitkit {

/// Whether `bytes` are well-formed UTF-8.
bool isUtf8(std::string_view bytes);

/// `bytes` with every invalid UTF-8 sequence replaced by U+FFFD; a copy when there is none.
std::string repairedUtf8(std::string bytes);

} // namespace gitkit

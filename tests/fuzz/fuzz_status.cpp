// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/parsers/StatusParser.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const auto status = gitkit::StatusParser::parse(bytes);
    // An entry is at least a type, a blank and a path.
    if (3 * status.files.size() > size)
        std::abort();
    for (const auto& file : status.files) {
        if (bytes.find(file.path) == std::string_view::npos)
            std::abort();
    }
    return 0;
}

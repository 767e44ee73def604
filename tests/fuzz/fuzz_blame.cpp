// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/parsers/BlameParser.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    for (const auto& line : gitkit::BlameParser::parse(bytes)) {
        if (bytes.find(line.text) == std::string_view::npos || line.hash.size() % 8 != 0)
            std::abort();
    }
    return 0;
}

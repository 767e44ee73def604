// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/parsers/LogParser.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    for (const auto& revision : gitkit::LogParser::parseFileLog(bytes, "asked")) {
        if (revision.commit.hash.empty() || revision.commit.hash.find('\n') != std::string::npos)
            std::abort();
    }
    return 0;
}

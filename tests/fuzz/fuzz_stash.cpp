// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/Text.h"
#include "GitKit/parsers/StashParser.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    for (const auto& stash : gitkit::StashParser::parse(bytes)) {
        if (!gitkit::isUtf8(stash.message))
            std::abort();
    }
    gitkit::RemoteParser::parse(bytes);
    return 0;
}

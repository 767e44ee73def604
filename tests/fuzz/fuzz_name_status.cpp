// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/parsers/NameStatusParser.h"
#include "GitKit/records/QuotedName.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    for (const auto& file : gitkit::NameStatusParser::parse(bytes)) {
        if (file.path.empty() || file.originalPath.has_value() != (file.status == 'R' || file.status == 'C'))
            std::abort();
    }
    if (gitkit::unquotedName(bytes).size() > size)
        std::abort();
    return 0;
}

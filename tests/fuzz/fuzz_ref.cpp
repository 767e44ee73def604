// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/parsers/RefLabels.h"
#include "GitKit/parsers/RefParser.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    for (const auto& ref : gitkit::RefParser::parse(bytes)) {
        if (!ref.fullName.ends_with(ref.name) || ref.ahead < 0 || ref.behind < 0)
            std::abort();
    }
    for (const auto& ref : gitkit::RefParser::parseListing(bytes)) {
        if (!ref.fullName.ends_with(ref.name) || ref.ahead != 0 || ref.behind != 0)
            std::abort();
    }
    for (const auto& [hash, labels] : gitkit::refLabels({.lines = std::string(bytes), .headRef = "refs/heads/main"})) {
        if (labels.empty())
            std::abort();
    }
    return 0;
}

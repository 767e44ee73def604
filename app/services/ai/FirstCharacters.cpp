// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/services/ai/FirstCharacters.h"

#include <unicode/ubrk.h>
#include <unicode/utext.h>

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>

namespace plovik {

namespace {

bool isAscii(char byte) { return static_cast<unsigned char>(byte) < 0x80; }

/// ASCII between ASCII needs no rules: only CR LF belongs together.
bool standsAlone(std::string_view text, std::size_t at)
{
    return isAscii(text[at]) && (at + 1 == text.size() || isAscii(text[at + 1]));
}

/// Unicode's rules, applied to UTF-8 where it lies.
class Boundaries {
public:
    /// `count` characters from `start`, or as many as there are before the next one that stands alone: `count` is what
    /// remains of it. Returns where they end.
    std::size_t skip(std::string_view text, std::size_t start, std::size_t& count)
    {
        // ICU's positions have 32 bits; what is longer than that goes on in a second look.
        const std::string_view rest = text.substr(start, std::size_t{INT32_MAX} / 2);
        open(rest);
        std::size_t end = 0;
        while (count > 0) {
            const int32_t next = ubrk_next(iterator_.get());
            if (next == UBRK_DONE)
                break;
            end = static_cast<std::size_t>(next);
            --count;
            if (end == rest.size() || standsAlone(rest, end))
                break;
        }
        return start + end;
    }

private:
    void open(std::string_view text)
    {
        UErrorCode error = U_ZERO_ERROR;
        if (!iterator_)
            iterator_.reset(ubrk_open(UBRK_CHARACTER, "", nullptr, 0, &error));
        utext_openUTF8(&text_, text.data(), static_cast<int64_t>(text.size()), &error);
        ubrk_setUText(iterator_.get(), &text_, &error);
        if (U_FAILURE(error))
            throw std::runtime_error("Text cannot be counted: " + std::string(u_errorName(error)));
    }

    struct Closing {
        void operator()(UBreakIterator* iterator) const { ubrk_close(iterator); }
        void operator()(UText* text) const { utext_close(text); }
    };

    UText text_ = UTEXT_INITIALIZER;
    std::unique_ptr<UText, Closing> closingText_{&text_};
    std::unique_ptr<UBreakIterator, Closing> iterator_;
};

} // namespace

std::string_view firstCharacters(std::string_view text, std::size_t count)
{
    Boundaries boundaries;
    std::size_t at = 0;
    while (count > 0 && at < text.size()) {
        if (standsAlone(text, at)) {
            at += text.substr(at, 2) == "\r\n" ? 2 : 1;
            --count;
        } else {
            at = boundaries.skip(text, at, count);
        }
    }
    return text.substr(0, at);
}

} // namespace plovik

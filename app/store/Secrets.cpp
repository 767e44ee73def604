// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/Secrets.h"

#include "app/store/ShownText.h"

#include <algorithm>
#include <array>
#include <optional>

namespace plovik {

namespace {

constexpr std::string_view mask = "•••";

char lower(char character)
{
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character + 32) : character;
}
bool isDigit(char character) { return character >= '0' && character <= '9'; }

/// Returns whether a character ends an address: blanks and control characters do.
bool endsWord(char character) { return static_cast<unsigned char>(character) <= ' ' || character == '\x7f'; }

bool isOfScheme(char character)
{
    const char letter = lower(character);
    return (letter >= 'a' && letter <= 'z') || isDigit(letter) || letter == '+' || letter == '-' || letter == '.';
}

bool equalIgnoringCase(std::string_view text, std::string_view lowerCase)
{
    return std::ranges::equal(text, lowerCase, {}, lower);
}

/// Returns whether an address of this scheme may have a secret as its user name.
bool isOfWeb(std::string_view scheme)
{
    constexpr std::array<std::string_view, 4> web{"http", "https", "ftp", "ftps"};
    return std::ranges::any_of(web, [scheme](std::string_view name) { return equalIgnoringCase(scheme, name); });
}

/// Returns whether this is "host:part" where part is no port, and so may be a password that goes on after a "/".
bool mayHoldPassword(std::string_view authority)
{
    const std::size_t colon = authority.find(':');
    return colon != std::string_view::npos && !authority.starts_with('[') &&
           !std::ranges::all_of(authority.substr(colon + 1), isDigit);
}

/// Whether a parameter is one of those with which servers say where a merge request is made. All others may be secrets.
bool isHarmless(std::string_view name)
{
    constexpr std::array<std::string_view, 6> names{"source", "dest", "sourceref", "targetref", "expand", "service"};
    return name.starts_with("merge_request%5B") || name.starts_with("merge_request[") ||
           std::ranges::find(names, name) != names.end();
}

/// Finds the addresses in a text and masks their secrets.
class AddressMasker {
public:
    explicit AddressMasker(std::string_view text) : text_(text) { masked_.reserve(text.size()); }

    std::string masked()
    {
        constexpr std::string_view sign = "://";
        for (std::size_t found = text_.find(sign); found != std::string_view::npos; found = text_.find(sign, found)) {
            const std::size_t begin = found + sign.size();
            if (const std::optional<std::size_t> at = endOfUser(begin))
                hide(schemeBefore(found), begin, *at);
            hideParameters(std::max(begin, done_));
            found = std::max(begin, done_);
        }
        masked_ += text_.substr(done_);
        return std::move(masked_);
    }

private:
    std::string_view schemeBefore(std::size_t end) const
    {
        std::size_t begin = end;
        while (begin > done_ && isOfScheme(text_[begin - 1]))
            --begin;
        return text_.substr(begin, end - begin);
    }

    /// Returns the position of the "@" before the host, or nullopt when the address has none.
    std::optional<std::size_t> endOfUser(std::size_t begin)
    {
        std::size_t end = begin;
        std::optional<std::size_t> at;
        while (end < text_.size() && !endsWord(text_[end]) && text_[end] != '/' && text_[end] != '?' &&
               text_[end] != '#')
        {
            if (text_[end] == '@')
                at = end;
            ++end;
        }
        if (at || !mayHoldPassword(text_.substr(begin, end - begin)))
            return at;
        return nextAtOfWord(end);
    }

    std::optional<std::size_t> nextAtOfWord(std::size_t place)
    {
        if (place < withoutAt_) // searched before
            return std::nullopt;
        while (place < text_.size() && !endsWord(text_[place])) {
            if (text_[place] == '@')
                return place;
            ++place;
        }
        withoutAt_ = place;
        return std::nullopt;
    }

    /// Hides the values behind "?" and everything behind "#", up to the end of the word and the signs that close it.
    void hideParameters(std::size_t place)
    {
        if (place < withoutParameters_) // searched before
            return;
        std::size_t end = place;
        while (end < text_.size() && !endsWord(text_[end]))
            ++end;
        withoutParameters_ = end;
        while (end > place && std::string_view("'\":,.;)>").find(text_[end - 1]) != std::string_view::npos)
            --end;
        for (place = nextOf("?#", place, end); place < end; place = nextOf("&#", place + 1, end)) {
            if (text_[place] == '#') {
                conceal(place + 1, end);
                return;
            }
            hideParameter(place + 1, nextOf("&#", place + 1, end));
        }
    }

    /// The position of the first of these signs, or `end`.
    std::size_t nextOf(std::string_view signs, std::size_t place, std::size_t end) const
    {
        return std::min(text_.substr(0, end).find_first_of(signs, place), end);
    }

    void hideParameter(std::size_t begin, std::size_t end)
    {
        const std::size_t equal = nextOf("=", begin, end);
        if (!isHarmless(text_.substr(begin, equal - begin)))
            conceal(equal == end ? begin : equal + 1, end);
    }

    void conceal(std::size_t begin, std::size_t end)
    {
        if (begin >= end || begin < done_)
            return;
        masked_ += text_.substr(done_, begin - done_);
        masked_ += mask;
        done_ = end;
    }

    void hide(std::string_view scheme, std::size_t begin, std::size_t at)
    {
        std::size_t secret = begin;
        if (!isOfWeb(scheme)) {
            const std::size_t colon = text_.substr(begin, at - begin).find(':');
            if (colon == std::string_view::npos)
                return;
            secret = begin + colon + 1;
        }
        if (secret == at)
            return;
        masked_ += text_.substr(done_, secret - done_);
        masked_ += mask;
        done_ = at;
    }

    std::string_view text_;
    std::string masked_;
    std::size_t done_ = 0;              ///< bytes of the text that are in `masked_` already
    std::size_t withoutAt_ = 0;         ///< the last searched word has no "@" up to here
    std::size_t withoutParameters_ = 0; ///< the end of the word whose parameters were hidden last
};

/// Masks the values of headers, as in "http.extraHeader=Authorization: Basic …", to the ends of their lines.
std::string withoutHeaders(std::string text)
{
    constexpr std::string_view key = "extraheader=";
    const auto equal = [](char character, char wanted) { return lower(character) == wanted; };
    auto found = std::search(text.begin(), text.end(), key.begin(), key.end(), equal);
    if (found == text.end())
        return text;
    std::string masked;
    auto done = text.begin();
    while (found != text.end()) {
        const auto value = found + static_cast<std::ptrdiff_t>(key.size());
        const auto end = std::find(value, text.end(), '\n');
        const auto colon = std::find(value, end, ':');
        masked.append(done, colon == end ? value : colon + 1);
        if (value != end)
            masked += colon == end ? mask : " •••";
        done = end;
        found = std::search(end, text.end(), key.begin(), key.end(), equal);
    }
    masked.append(done, text.end());
    return masked;
}

} // namespace

std::string withoutSecrets(std::string_view text) { return withoutHeaders(AddressMasker(text).masked()); }

QString withoutSecrets(const QString& text)
{
    const QByteArray bytes = text.toUtf8();
    return exactText(withoutSecrets(std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size()))));
}

} // namespace plovik

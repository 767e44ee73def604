// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <exception>
#include <functional>
#include <optional>
#include <type_traits>
#include <utility>
#include <variant>

namespace plovik {

/// Carries the value or the exception of a piece of work from its thread to the thread that waits for it. Filled once,
/// then taken once.
template <typename Result>
struct Outcome {
    std::optional<std::conditional_t<std::is_void_v<Result>, std::monostate, Result>> value;
    std::exception_ptr error;

    void fill(const std::function<Result()>& work) noexcept
    {
        try {
            if constexpr (std::is_void_v<Result>)
                work();
            else
                value.emplace(work());
        } catch (...) {
            error = std::current_exception();
        }
    }

    /// Returns the value, or throws the exception.
    Result take()
    {
        if (error)
            std::rethrow_exception(std::exchange(error, nullptr));
        if constexpr (!std::is_void_v<Result>)
            return std::move(*value);
    }
};

} // namespace plovik

#pragma once

#include "base/SendrelError.h"

#include <optional>
#include <utility>

namespace sendrel::test {

// The SendrelError that f throws, or nothing when it returns.
template <typename F> std::optional<SendrelError> FailureOf(F &&f)
{
    try {
        std::forward<F>(f)();
    } catch (const SendrelError &e) {
        return e;
    }
    return std::nullopt;
}

}  // namespace sendrel::test

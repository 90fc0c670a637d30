// The result of an operation that can fail: a value or the error of the operation's family (APIError,
// HttpError, DecodeError …). Exceptions are kept for broken invariants of our own code.
#pragma once

#include <expected>

namespace nimbara {

template <class T, class E>
using Result = std::expected<T, E>;

}  // namespace nimbara

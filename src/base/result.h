// The result of an operation that can fail: a value or the error of the operation's family (APIError,
// HttpError, DecodeError …). Exceptions are kept for broken invariants of our own code.
#ifndef NIMBARA_BASE_RESULT_H
#define NIMBARA_BASE_RESULT_H

#include <expected>

namespace nimbara {

template <class T, class E>
using Result = std::expected<T, E>;

}  // namespace nimbara

#endif  // NIMBARA_BASE_RESULT_H

// The port through which a text is signed with a user's key: ES256 (RFC 7518), ECDSA on the curve P-256 with
// SHA-256.
#pragma once

#include "base/result.h"

#include <functional>
#include <string>
#include <string_view>

namespace nimbara {

/// The two numbers of the signature side by side, 64 bytes. The key is in PEM form; the error is a sentence
/// about it that has no part of it.
using Es256Signer =
    std::function<Result<std::string, std::string>(std::string_view keyPem, std::string_view text)>;

}  // namespace nimbara

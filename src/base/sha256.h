// SHA-256 (FIPS 180-4) through libnettle.
#pragma once

#include <string>
#include <string_view>

namespace nimbara {

/// The digest as 64 lower-case hexadecimal digits.
std::string sha256Hex(std::string_view bytes);

}  // namespace nimbara

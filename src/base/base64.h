// Base64 in the form for URLs (RFC 4648, section 5), without padding.
#pragma once

#include <string>
#include <string_view>

namespace nimbara {

std::string base64UrlEncoded(std::string_view bytes);

}  // namespace nimbara

// Compression by gzip (RFC 1952) through zlib.
#pragma once

#include <string>
#include <string_view>

namespace nimbara {

std::string gzipped(std::string_view bytes);

}  // namespace nimbara

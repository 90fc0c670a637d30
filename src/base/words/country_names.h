// The names of countries in the languages that ICU knows.
#pragma once

#include <string>
#include <string_view>

namespace nimbara {

/// "Alemanha" for "DE" in "pt"; the code itself where there is no name, empty for what is no two-letter code.
std::string countryName(std::string_view code, std::string_view language);

}  // namespace nimbara

// Codes of countries as European services write them. Plain function.
#pragma once

#include <string>
#include <string_view>

namespace nimbara {

/// ISO 3166-1 in upper case; "UK" and "EL", as European services write them, become "GB" and "GR".
std::string isoCountryCode(std::string_view code);

}  // namespace nimbara

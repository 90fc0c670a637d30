// Codes of countries, as ISO 3166-1 and as European services write them. Plain functions.
#pragma once

#include <string>
#include <string_view>

namespace nimbara {

/// ISO 3166-1 in upper case; "UK" and "EL", as European services write them, become "GB" and "GR".
std::string isoCountryCode(std::string_view code);

/// "KAZ" of "KZ", in any letters and spelling that `isoCountryCode` reads; Kosovo is "XK" and "XKX". Empty
/// for what is no country's code.
std::string alpha3CountryCode(std::string_view code);

/// "KZ" of "KAZ" in any letters; empty for what is no country's code.
std::string alpha2CountryCode(std::string_view alpha3);

/// "KZ" of 398, the number of ISO 3166-1; empty for those that are no country's.
std::string countryCodeOfNumber(int number);

}  // namespace nimbara

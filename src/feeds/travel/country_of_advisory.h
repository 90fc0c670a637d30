// Which country a travel advisory is about. The issuer writes the codes of FIPS 10-4, which look like those
// of ISO 3166 and mean other countries: "GM" is Germany, "CH" China, "AU" Austria. Pure.
#pragma once

#include <string>
#include <string_view>

namespace nimbara {

/// ISO 3166-1 of two letters for a code of FIPS 10-4 ("DE" for "GM"; "XK" for Kosovo). Codes that FIPS does
/// not know are taken for ISO's where those are a country's; empty for others.
std::string isoOfFips(std::string_view code);

/// The country by its English name, when that is one ("Germany", "Burma (Myanmar)", "The Gambia"); empty when
/// not.
std::string isoOfCountryName(std::string_view name);

/// The name decides where it is known, else the code.
std::string countryOfAdvisory(std::string_view name, std::string_view code);

}  // namespace nimbara

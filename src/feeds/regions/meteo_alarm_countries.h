// The countries that MeteoAlarm has warnings of.
#pragma once

#include "regions/country_code.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace nimbara {

struct MeteoAlarmCountry {
  std::string_view code;      ///< ISO 3166-1
  std::string_view feedName;  ///< what ends the address of the country's feed
};

/// All of them, by code.
std::span<MeteoAlarmCountry const> meteoAlarmCountries();

/// The country whose service warns for this one: Finland's for Åland, Norway's for Svalbard and Jan Mayen;
/// for all others the country itself, as `isoCountryCode` writes it.
std::string warningCountry(std::string_view countryCode);

/// Nothing for a country that no feed warns for.
std::optional<std::string_view> meteoAlarmFeedName(std::string_view countryCode);

}  // namespace nimbara

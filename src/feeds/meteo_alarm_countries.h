// The countries that MeteoAlarm has warnings of.
#pragma once

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

/// ISO 3166-1 in upper case; "UK" and "EL", as European services write them, become "GB" and "GR".
std::string isoCountryCode(std::string_view code);

/// Nothing for a country that has no feed.
std::optional<std::string_view> meteoAlarmFeedName(std::string_view countryCode);

}  // namespace nimbara

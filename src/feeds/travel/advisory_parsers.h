// The travel advisories of Canada, the United Kingdom and Germany as each of them publishes them. What
// concerns parts of a country is of level 2 at most: the level is that of the whole country. Pure; any bytes
// may be given.
#pragma once

#include "feeds/travel/travel_advisory.h"

#include <map>

namespace nimbara {

/// All countries, by country.
Result<std::vector<TravelAdvisory>, DecodeError> parseCanadianAdvisories(std::string_view body);
Result<std::vector<TravelAdvisory>, DecodeError> parseGermanAdvisories(std::string_view body);

/// The path of the page of each country of the United Kingdom's list: "/foreign-travel-advice/japan" for
/// "JP".
using AdvisoryPages = std::map<std::string, std::string>;
Result<AdvisoryPages, DecodeError> parseBritishList(std::string_view body);

/// One country's page.
Result<TravelAdvisory, DecodeError> parseBritishAdvisory(std::string_view body);

}  // namespace nimbara

// What Open-Meteo would answer, made from the generated weather: the forecast and the place search. Pure
// functions from a query and a moment to an answer, in the service's own shape and with its own habits (one
// fixed offset for all times, nulls nowhere, the day's bounds where the sun does not rise or set).
#pragma once

#include "base/instant.h"

#include <functional>
#include <string>
#include <string_view>

namespace nimbara {

struct DemoAnswer {
  int status = 200;
  std::string body;
};

/// The value of a query parameter, empty when it is absent.
using DemoQuery = std::function<std::string(std::string_view)>;

/// "/v1/forecast".
DemoAnswer openMeteoForecast(DemoQuery const& query, Instant now);

/// "/v1/search".
DemoAnswer openMeteoSearch(DemoQuery const& query);

}  // namespace nimbara

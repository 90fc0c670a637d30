// What the governments would answer that publish travel advisories: those of some sixty countries, with the
// Department of State's own codes and texts in HTML and nothing for a client that does not name itself; the
// lists of Canada and Germany; the list and the pages of the United Kingdom.
#pragma once

#include "demo/demo_exchange.h"

namespace nimbara {

/// "/api/TravelAdvisories".
DemoAnswer travelAdvisories(DemoRequest const& request, Instant now);
/// "/travel-voyage/index-alpha-eng.json".
DemoAnswer canadianAdvisories(DemoRequest const& request, Instant now);
/// "/api/content/foreign-travel-advice" and the pages below it.
DemoAnswer britishAdvisories(DemoRequest const& request, Instant now);
/// "/opendata/travelwarning".
DemoAnswer germanAdvisories(DemoRequest const& request, Instant now);

}  // namespace nimbara

// What the WMO's Severe Weather Information Centre would answer: the messages of every country of the demo's
// world whose issuer it mirrors, found by a point or listed by member, and the messages themselves. As there,
// what is wrong with a question is told with status 200.
#pragma once

#include "demo/demo_exchange.h"

namespace nimbara {

/// "/f/wfs": the rows around the point of `cql_filter`, latitude first. Warnings for a whole country are not
/// found by a point. By "capurl IN ('…')" the types of the rows of those messages.
DemoAnswer wmoPointQuery(DemoRequest const& request, Instant now);

/// "/g/wfs": the rows of a member or of all, without geometry; those of a country around its town.
DemoAnswer wmoWarningList(DemoRequest const& request, Instant now);

/// "/json/wmo_member.json".
DemoAnswer wmoMembers(DemoRequest const& request, Instant now);

/// "/v2/json/sources.json".
DemoAnswer wmoSources(DemoRequest const& request, Instant now);

/// "/v2/cap-alerts/…xml".
DemoAnswer wmoMessage(DemoRequest const& request, Instant now);

/// As a map server puts it.
extern char const kWmoException[];

}  // namespace nimbara

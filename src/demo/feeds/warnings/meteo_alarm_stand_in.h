// What MeteoAlarm would answer, made from the generated weather of the demo's European towns: a country's
// feed of warnings and their documents, and the outlines of its warning regions. Each town stands in a region
// of its own with another one beside it.
#pragma once

#include "demo/demo_exchange.h"

namespace nimbara {

/// "/feeds/meteoalarm-legacy-atom-germany". Warnings of what the weather of the next two days brings to each
/// town's region, some of them updates that go on; besides, what such feeds also have in them: a warning that
/// has ended, a green one and one for the region beside.
DemoAnswer meteoAlarmFeed(DemoRequest const& request, Instant now);

/// "/api/v1/warnings/feeds-germany": the same warnings as whole messages.
DemoAnswer meteoAlarmList(DemoRequest const& request, Instant now);

/// "/api/v1/warnings/feeds-germany/…": the document that an entry of the feed links to.
DemoAnswer meteoAlarmDocument(DemoRequest const& request, Instant now);

/// The list of the documents that the outlines are one of.
DemoAnswer meteoAlarmOutlineList(DemoRequest const& request, Instant now);

/// The outlines as GeoJSON.
DemoAnswer meteoAlarmOutlines(DemoRequest const& request, Instant now);

}  // namespace nimbara

// What wttr.in would answer, made from the generated weather, with the service's habits: everything a text,
// three days of an entry every three hours, failures as plain text with status 200.
#pragma once

#include "demo/demo_exchange.h"

namespace nimbara {

/// "/52.52,13.41" with "format=j1".
DemoAnswer wttrForecast(DemoRequest const& request, Instant now);

}  // namespace nimbara

// What a service does that knows what it has said: validators on the answer, 304 for whoever has it already.
#pragma once

#include "demo/demo_exchange.h"

#include <string>

namespace nimbara {

/// 200 with `body` and its ETag, or 304.
DemoAnswer conditionalAnswer(DemoRequest const& request, std::string body, int maxAgeSeconds);

}  // namespace nimbara

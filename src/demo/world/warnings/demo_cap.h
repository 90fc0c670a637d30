// The messages of the demo's world as documents of the Common Alerting Protocol, with the habits of their
// issuers. Pure.
#pragma once

#include "demo/world/demo_world.h"

#include <string>

namespace nimbara {

std::string demoCapDocument(DemoWorldMessage const& message);

/// "Demo Weather Service of Kenya".
std::string demoServiceName(DemoIssuer const& issuer);
/// What the message's areas are called.
std::string demoAreaName(DemoEvent const& event);
/// "Unknown" for issuers that state none.
std::string_view demoSeverity(DemoIssuer const& issuer, DemoStep const& step);
/// "3; orange; Severe".
std::string demoAwarenessLevel(int level);

}  // namespace nimbara

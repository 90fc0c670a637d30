// What the stand-ins see of a request and what they answer: plain values, so that each stand-in is a pure
// function from a request and a moment to an answer.
#pragma once

#include "base/geodesy.h"
#include "base/time/instant.h"
#include "demo/demo_fault.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace nimbara {

/// The value of a query parameter or a header, empty when it is absent.
using DemoLookup = std::function<std::string(std::string_view)>;

struct DemoRequest {
  std::string path;  ///< decoded, without the query
  DemoLookup query;
  DemoLookup header;
  bool elsewhere = false;  ///< a forecast is to be that of another place than was asked for
  /// That the service is to show, for those that show it themselves.
  std::optional<DemoFault::Kind> fault = std::nullopt;

  /// The place whose weather is to be answered: as asked, or its antipode.
  Coordinate answeredPlace(Coordinate asked) const;
};

struct DemoAnswer {
  int status = 200;
  std::string body;
  std::vector<std::pair<std::string, std::string>> headers;
};

using DemoStandIn = DemoAnswer (*)(DemoRequest const&, Instant);

/// A place on the globe from two texts; nothing for other texts.
std::optional<Coordinate> demoCoordinate(std::string_view latitude, std::string_view longitude);

}  // namespace nimbara

// Who gives element sets of satellites: a function, so that this folder knows no service.
#pragma once

#include "base/result.h"
#include "base/time/instant.h"
#include "platform/service_failure.h"

#include <functional>
#include <stop_token>
#include <string>
#include <string_view>

namespace nimbara {

/// A group's element sets, as somebody has them.
struct ElementSets {
  std::string text;
  Instant fetched;  ///< when their source gave them
};

/// Asks for a group by its name; blocks. Whoever answers decides how often sources are asked.
using ElementSource =
    std::function<Result<ElementSets, ServiceFailure>(std::string_view group, std::stop_token const& stop)>;

}  // namespace nimbara

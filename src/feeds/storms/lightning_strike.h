#pragma once

#include "base/geodesy.h"
#include "base/time/instant.h"

namespace nimbara {

struct LightningStrike {
  Instant time;
  Coordinate coordinate;

  bool operator==(LightningStrike const&) const = default;
};

}  // namespace nimbara

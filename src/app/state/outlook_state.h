// The days beyond the forecast of the place that somebody looks at.
#pragma once

#include "app/places/place.h"
#include "feeds/outlook/outlook_service.h"

#include <optional>
#include <vector>

namespace nimbara {

struct OutlookState {
  std::optional<Place> place;  ///< whose; nobody's before anybody has looked
  FeedReading<std::vector<OutlookDay>> days;
  bool isAsking = false;
};

}  // namespace nimbara

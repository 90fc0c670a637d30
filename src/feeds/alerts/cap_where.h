// Where a block of a message lies to a place. Pure.
#pragma once

#include "feeds/alerts/events/cap_events.h"

#include <vector>

namespace nimbara {

/// Ascending: the better of two is the greater.
enum class Reach { elsewhere, unplaced, near, here };

struct ReachedArea {
  CapArea const* area = nullptr;
  double km = 0;
};

struct Whereabouts {
  Reach reach = Reach::elsewhere;
  double km = 0;                   ///< of `near`: to the nearest area; 0 where the issuer is a neighbour's
  std::vector<ReachedArea> areas;  ///< that decide
};

/// `drawn` are the areas that count: the block's own, or those of its twin in another language where the
/// block draws nothing itself.
Whereabouts whereaboutsOf(std::vector<CapArea> const& drawn, CapMessage const& message, CapView const& view);

bool drawsAnything(CapInfo const& info);

/// Whether an issuer's warnings are a place's own: those of its country, or of the one whose service warns
/// there too. Codes of ISO 3166-1; nobody is foreign where one of them is not known.
bool isOwnIssuer(std::string_view issuerCountry, std::string_view placeCountry);

}  // namespace nimbara

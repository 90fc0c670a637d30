// A message of the Common Alerting Protocol as a source lists it for a place, and such a list. What a message
// means for the place is not judged here (`feeds/alerts/events/cap_events.h`).
#pragma once

#include "feeds/cap/cap_store.h"
#include "platform/service_failure.h"

#include <optional>
#include <string>
#include <vector>

namespace nimbara {

struct CapMessage {
  CapDocument alert;    ///< never null
  std::string link;     ///< to the message as it was issued; empty where nobody offers it
  std::string country;  ///< of the issuer, ISO 3166-1; empty when not known
  bool isHit = false;   ///< the source itself says that the place lies within
  /// By which the source placed a message that draws nothing itself.
  std::vector<WarningPolygon> outline;
  bool lacksReferences = false;  ///< the source does not pass on which messages this one follows
};

struct CapListing {
  std::vector<CapMessage> messages;
  /// Nothing is listed, and the source is not known to have the warnings of the place's country.
  bool isBlind = false;
  /// Why the list is not whole; what could be read stands in it all the same.
  std::optional<ServiceFailure> failure;
};

}  // namespace nimbara

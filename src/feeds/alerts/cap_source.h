// A service that lists messages of the Common Alerting Protocol as a source of official warnings.
#pragma once

#include "feeds/alerts/gov_alert_service.h"
#include "feeds/cap/cap_message.h"

#include <functional>
#include <stop_token>
#include <string>

namespace nimbara {

/// `list` asks the service for a place and may be called for several places at once; whom it serves is for
/// the caller to decide: the source covers every place. Texts are chosen for readers of `language`. The clock
/// must outlive the source.
GovAlertSource capAlertSource(std::string name,
                              std::function<CapListing(GovAlertPlace const&, std::stop_token const&)> list,
                              Clock const& clock, std::string language);

}  // namespace nimbara

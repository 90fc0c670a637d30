// Which country a message of the Common Alerting Protocol comes from. Pure.
#pragma once

#include "feeds/cap/cap_alert.h"

#include <string>

namespace nimbara {

/// ISO 3166-1, by the object identifier under which the WMO's members issue ("2.49.0.0.398.0" is Kazakhstan)
/// or by the domain of the sender. Empty where neither tells.
std::string issuerCountry(CapAlert const& alert);

}  // namespace nimbara

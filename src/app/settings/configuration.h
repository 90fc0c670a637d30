// Who runs the program and how services are reached, as the settings say.
#pragma once

#include "platform/settings/settings.h"

#include <map>
#include <optional>
#include <string>

namespace nimbara {

/// Departures from a service's usual address.
struct ServiceConfiguration {
  std::optional<std::string> host;  ///< "https://customer-api.open-meteo.com"
  std::optional<std::string> apiKey;
};

struct Configuration {
  std::optional<std::string> contact;  ///< an e-mail or web address, part of the User-Agent
  std::map<std::string, ServiceConfiguration, std::less<>> services;  ///< by the service's name
};

Configuration configurationOf(Settings const& settings);

/// Whom a service that asks for a contact may write to: the user's choice, else the makers of this program.
std::string contactOf(Configuration const& configuration);

/// "nimbara/0.1.0 (https://nimbara.github.io; contact)", without characters that would break a header: for
/// every service but the National Weather Service, which has its own.
std::string userAgent(Configuration const& configuration);

}  // namespace nimbara

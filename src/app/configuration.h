// The hand-written configuration: who runs the program and how services are reached. A file that is missing
// means the defaults; one that cannot be read is an error that names the place in it, and is never
// overwritten.
#pragma once

#include "base/json.h"
#include "base/result.h"

#include <filesystem>
#include <map>
#include <optional>
#include <string>

namespace nimbara {

/// Departures from a service's usual address.
struct ServiceConfiguration {
  std::optional<std::string> host;  ///< "https://customer-api.open-meteo.com"
  std::optional<std::string> apiKey;
};

template <>
inline constexpr auto jsonFields<ServiceConfiguration> =
    std::tuple{field("host", &ServiceConfiguration::host), field("apiKey", &ServiceConfiguration::apiKey)};

struct Configuration {
  std::optional<std::string> contact;  ///< an e-mail or web address, part of the User-Agent
  std::map<std::string, ServiceConfiguration, std::less<>> services;  ///< by the service's name
};

template <>
inline constexpr auto jsonFields<Configuration> =
    std::tuple{field("contact", &Configuration::contact), fieldOr("services", &Configuration::services)};

/// The error is a sentence that names the file and what is wrong in it.
Result<Configuration, std::string> loadConfiguration(std::filesystem::path const& file);

/// "nimbara/0.1.0 (contact)": one for every service, without characters that would break a header.
std::string userAgent(Configuration const& configuration);

}  // namespace nimbara
